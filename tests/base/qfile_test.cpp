// QFile's reports, QMapPath and QPath's limit, in a scratch folder.
#include "base/qfile.h"
#include "base/qpath.h"
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

TEST_F(FileTest, MapPathSendsScreenshotsToTheTemporaryFolder) {
  char buf[256];
  setenv("TMPDIR", "/var/tmp", 1);  // the scratch folder goes to the temporary one
  EXPECT_STREQ(QMapPath("c:/t/shot00001.tga", buf, sizeof buf), "/var/tmp/shot00001.tga");
  unsetenv("TMPDIR");
  EXPECT_STREQ(QMapPath("data/cars/x", buf, sizeof buf), "data/cars/x");
}

TEST_F(FileTest, PathKeepsTwenty) {
  QPath path;
  ReportCapture cap;
  for (int i = 0; i < 20; i++) EXPECT_TRUE(path.Add("/nowhere"));
  EXPECT_FALSE(path.Add("/one-too-many"));
  EXPECT_EQ(path.GetPath(20), nullptr);
  EXPECT_EQ(cap.warnings, "QPath:Add(); maximum (20) reached\nQPath:GetPath(20) out of range\n");
}

}  // namespace
