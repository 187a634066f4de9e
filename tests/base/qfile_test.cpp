// QFile, the file functions and QPath against real files in a scratch folder.
#include "base/qfile.h"
#include "base/qpath.h"
#include "base/qstring.h"
#include "tests/base/capture.h"
#include "tests/base/scratch.h"

namespace {

class FileTest : public ScratchTest {
 protected:
  void SetUp() override {
    ScratchTest::SetUp();
    open_ = qfOpenCount();
  }
  void TearDown() override {
    EXPECT_EQ(qfOpenCount(), open_) << "a file was left open";
    ScratchTest::TearDown();
  }
  int open_ = 0;
};

// The end shows only after one read past it; a put-back byte hides it again.
TEST_F(FileTest, StreamAndPreloadReadAlike) {
  WriteFile("a.ini", "ab\xff\n");
  for (int mode : {int(QFile::READ_BINARY), QFile::READ_BINARY | QFile::MEMORY}) {
    QFile f("a.ini", mode);
    ASSERT_TRUE(f.IsOpen());
    EXPECT_EQ(f.IsMemory(), mode != QFile::READ_BINARY);
    std::string s;
    for (int c = f.GetByte(); !f.AtEnd(); c = f.GetByte()) s += char(c);
    EXPECT_EQ(s, "ab\xff\n") << mode;
    EXPECT_EQ(f.GetByte(), mode == QFile::READ_BINARY ? EOF : 0xFF);
    EXPECT_TRUE(f.AtEnd()) << mode;
    f.UnGetByte('y');
    EXPECT_FALSE(f.AtEnd()) << mode;
    EXPECT_EQ(f.GetByte(), 'y');
    EXPECT_TRUE(f.AtEnd()) << mode;
  }
  WriteFile("empty.ini", "");
  QFile empty("empty.ini", QFile::READ_BINARY | QFile::MEMORY);
  EXPECT_TRUE(empty.IsOpen());
  EXPECT_FALSE(empty.IsMemory());  // an empty file stays a stream
}

TEST_F(FileTest, MemoryFlagMessages) {
  WriteFile("c.ini", "abc");
  ReportCapture cap;
  {
    QFile f("c.ini", QFile::READ_TEXT | QFile::MEMORY);
    EXPECT_FALSE(f.IsMemory());
    EXPECT_EQ(f.GetByte(), 'a');
    QFile u("c.ini", QFile::UPDATE_BINARY | QFile::MEMORY);
    EXPECT_FALSE(u.IsMemory());
    QFile taken("taken", qfopen("c.ini", "rb"), QFile::READ_BINARY | QFile::MEMORY);
    EXPECT_EQ(taken.GetByte(), 'a');
    QFile buf("buf", "zz", 2);
    EXPECT_FALSE(buf.PutChar('q'));
  }
  qfclose(nullptr);
  EXPECT_EQ(cap.joined,
            "E: QFile ctor: READ_TEXT and MEMORY flags are incompatible (buggy); turning off MEMORY | "
            "W: QFile:ctor MEMORY req'd for 'c.ini' but incompatible mode given | "
            "W: QFile: can't use memory mapping with 'fp' takeover | "
            "E: QFile:PutChar() not supported for memory files | E: qfclose(0) called");
}

TEST_F(FileTest, ModesOpenAsTheCRuntimeDoes) {
  {
    QFile w("m.txt", QFile::WRITE_TEXT);
    EXPECT_TRUE(w.Write("one\n", 4));
    qfFailNextWrites(1);
    EXPECT_FALSE(w.Write("x", 1));
  }
  {
    QFile a("m.txt", QFile::APPEND_BINARY);
    EXPECT_TRUE(a.PutChar('2'));
  }
  EXPECT_EQ(ReadFile("m.txt"), "one\n2");
  QFile none("m.txt", 42);
  EXPECT_FALSE(none.IsOpen());
  EXPECT_EQ(none.GetByte(), 0);
  EXPECT_TRUE(none.AtEnd());
  EXPECT_FALSE(QFile("nope", QFile::READ_BINARY).IsOpen());
}

TEST_F(FileTest, FileFunctions) {
  WriteFile("size.bin", std::string(1234, 'z'));
  EXPECT_TRUE(QFileExists("size.bin"));
  EXPECT_FALSE(QFileExists(""));
  EXPECT_FALSE(QFileExists("none"));
  EXPECT_EQ(QFileSize("size.bin"), 1234);
  EXPECT_EQ(QFileSize("none"), -1);
  EXPECT_STREQ(QFileBase("data/cars/a\\car.ini"), "car.ini");
  EXPECT_EQ(QFileExtension("noext"), nullptr);
  char buf[256];
  setenv("TMPDIR", "/var/tmp", 1);  // the scratch folder goes to the temporary one
  EXPECT_STREQ(QMapPath("c:/t/shot00001.tga", buf, sizeof buf), "/var/tmp/shot00001.tga");
  unsetenv("TMPDIR");
  EXPECT_STREQ(QMapPath("data/cars/x", buf, sizeof buf), "data/cars/x");
}

TEST_F(FileTest, PathFindsInOrderAndKeepsTwenty) {
  std::filesystem::create_directories("one");
  std::filesystem::create_directories("two");
  WriteFile("two/x.ini", "x");
  QPath path;
  ReportCapture cap;
  for (const char *dir : {"one", "two"}) EXPECT_TRUE(path.Add(dir));
  for (int i = 2; i < 20; i++) path.Add("/nowhere");
  EXPECT_FALSE(path.Add("/one-too-many"));
  EXPECT_EQ(path.GetPath(20), nullptr);
  EXPECT_EQ(cap.warnings, "QPath:Add(); maximum (20) reached\nQPath:GetPath(20) out of range\n");
  qstring full, dir;
  EXPECT_TRUE(path.FindFile("x.ini", &full, &dir));
  EXPECT_EQ(std::string(full.c_str()) + "|" + dir.c_str(), "two/x.ini|two");
  EXPECT_FALSE(path.FindFile("z.ini", &full, &dir));
  EXPECT_EQ(std::string(full.c_str()) + "|" + dir.c_str(), "z.ini|");
  EXPECT_STREQ(path.FindFile("z.ini"), "z.ini");
}

}  // namespace
