// QFile, the file functions and QPath against real files in a scratch folder.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "base/qfile.h"
#include "base/qpath.h"
#include "base/qstring.h"
#include "tests/base/capture.h"

namespace fs = std::filesystem;

namespace {

class FileTest : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = fs::temp_directory_path() /
           ("qfile_" + std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()) + "_" +
            std::to_string(getpid()));
    fs::create_directories(dir_);
    open_ = qfOpenCount();
  }
  void TearDown() override {
    EXPECT_EQ(qfOpenCount(), open_) << "a file was left open";
    fs::remove_all(dir_);
  }
  std::string Make(const char *name, const std::string &bytes) {
    fs::path p = dir_ / name;
    std::ofstream(p, std::ios::binary) << bytes;
    return p.string();
  }
  std::string ReadAll(QFile &f) {
    std::string s;
    for (int c = f.GetByte(); !f.AtEnd(); c = f.GetByte()) s += char(c);
    return s;
  }
  fs::path dir_;
  int open_ = 0;
};

// The same reading loop gives the same bytes on a stream and on a preload,
// and both report the end only after one read past it.
TEST_F(FileTest, StreamAndPreloadReadAlike) {
  std::string path = Make("a.ini", "ab\xff\n");
  QFile stream(path.c_str(), QFile::READ_BINARY);
  QFile memory(path.c_str(), QFile::READ_BINARY | QFile::MEMORY);
  ASSERT_TRUE(stream.IsOpen());
  ASSERT_TRUE(memory.IsMemory());
  EXPECT_EQ(memory.GetSize(), 4);
  EXPECT_EQ(ReadAll(stream), "ab\xff\n");
  EXPECT_EQ(ReadAll(memory), "ab\xff\n");
  EXPECT_EQ(memory.GetByte(), 0xFF);  // past the end: 0xFF without moving
  EXPECT_TRUE(memory.AtEnd());
}

TEST_F(FileTest, PutBackHidesTheEnd) {
  std::string path = Make("b.ini", "x");
  for (int mode : {int(QFile::READ_BINARY), QFile::READ_BINARY | QFile::MEMORY}) {
    QFile f(path.c_str(), mode);
    EXPECT_EQ(f.GetByte(), 'x');
    f.GetByte();
    EXPECT_TRUE(f.AtEnd()) << mode;
    f.UnGetByte('y');
    EXPECT_FALSE(f.AtEnd()) << mode;
    EXPECT_EQ(f.GetByte(), 'y');
    EXPECT_TRUE(f.AtEnd()) << mode;
  }
}

TEST_F(FileTest, EmptyFileStaysAStream) {
  std::string path = Make("empty.ini", "");
  QFile f(path.c_str(), QFile::READ_BINARY | QFile::MEMORY);
  EXPECT_TRUE(f.IsOpen());
  EXPECT_FALSE(f.IsMemory());
  f.GetByte();
  EXPECT_TRUE(f.AtEnd());
}

TEST_F(FileTest, MemoryFlagMessages) {
  std::string path = Make("c.ini", "abc");
  ReportCapture cap;
  {
    QFile f(path.c_str(), QFile::READ_TEXT | QFile::MEMORY);
    EXPECT_FALSE(f.IsMemory());
    EXPECT_EQ(f.GetByte(), 'a');
  }
  EXPECT_EQ(cap.errors, "QFile ctor: READ_TEXT and MEMORY flags are incompatible (buggy); turning off MEMORY\n");
  {
    QFile f(path.c_str(), QFile::UPDATE_BINARY | QFile::MEMORY);
    EXPECT_FALSE(f.IsMemory());
  }
  EXPECT_EQ(cap.warnings, "QFile:ctor MEMORY req'd for '" + path + "' but incompatible mode given\n");
  cap.warnings.clear();
  {
    QFile f("taken", qfopen(path.c_str(), "rb"), QFile::READ_BINARY | QFile::MEMORY);
    EXPECT_EQ(f.GetByte(), 'a');
  }
  EXPECT_EQ(cap.warnings, "QFile: can't use memory mapping with 'fp' takeover\n");
  {
    QFile f("buf", "zz", 2);
    EXPECT_FALSE(f.PutChar('q'));
  }
  EXPECT_NE(cap.errors.find("QFile:PutChar() not supported for memory files\n"), std::string::npos);
  qfclose(nullptr);
  EXPECT_NE(cap.errors.find("qfclose(0) called\n"), std::string::npos);
}

TEST_F(FileTest, ModesOpenAsTheCRuntimeDoes) {
  std::string path = (dir_ / "m.txt").string();
  {
    QFile w(path.c_str(), QFile::WRITE_TEXT);
    EXPECT_TRUE(w.Write("one\n", 4));
  }
  {
    QFile a(path.c_str(), QFile::APPEND_BINARY);
    EXPECT_TRUE(a.PutChar('2'));
  }
  qstring s;
  EXPECT_TRUE(s.FromFile(path.c_str()));
  EXPECT_EQ(std::string(s.c_str()), "one\n2");
  QFile none(path.c_str(), 42);
  EXPECT_FALSE(none.IsOpen());
  EXPECT_EQ(none.GetByte(), 0);
  EXPECT_TRUE(none.AtEnd());
  QFile missing((dir_ / "nope").c_str(), QFile::READ_BINARY);
  EXPECT_FALSE(missing.IsOpen());
}

TEST_F(FileTest, InjectedWriteFailure) {
  std::string path = (dir_ / "w.txt").string();
  QFile f(path.c_str(), QFile::WRITE_BINARY);
  qfFailNextWrites(1);
  EXPECT_FALSE(f.Write("x", 1));
  EXPECT_TRUE(f.Write("y", 1));
}

TEST_F(FileTest, FileFunctions) {
  std::string path = Make("size.bin", std::string(1234, 'z'));
  EXPECT_TRUE(QFileExists(path.c_str()));
  EXPECT_FALSE(QFileExists(""));
  EXPECT_FALSE(QFileExists((dir_ / "none").c_str()));
  EXPECT_EQ(QFileSize(path.c_str()), 1234);
  EXPECT_EQ(QFileSize((dir_ / "none").c_str()), -1);
  EXPECT_STREQ(QFileBase("data/cars/a\\car.ini"), "car.ini");
  EXPECT_STREQ(QFileBase("car.ini"), "car.ini");
  EXPECT_STREQ(QFileExtension("a.b/c.tir"), ".tir");
  EXPECT_EQ(QFileExtension("noext"), nullptr);
  QSetVirtualFileSystem([](const char *n) { return std::string(n) == "in/archive.ini"; });
  EXPECT_TRUE(QFileExists("in/archive.ini"));
  EXPECT_FALSE(QFileExists("in/archive.ini", false));
  QSetVirtualFileSystem(nullptr);
}

TEST_F(FileTest, PathFindsInOrderAndKeepsTwenty) {
  fs::create_directories(dir_ / "one");
  fs::create_directories(dir_ / "two");
  Make("two/x.ini", "x");
  Make("one/y.ini", "y");
  QPath path;
  ReportCapture cap;
  EXPECT_TRUE(path.Add((dir_ / "one").c_str()));
  EXPECT_TRUE(path.Add((dir_ / "two").c_str()));
  for (int i = 2; i < 20; i++) EXPECT_TRUE(path.Add("/nowhere"));
  EXPECT_FALSE(path.Add("/one-too-many"));
  EXPECT_EQ(cap.warnings, "QPath:Add(); maximum (20) reached\n");
  EXPECT_EQ(path.GetCount(), 20);
  EXPECT_EQ(path.GetPath(20), nullptr);
  EXPECT_NE(cap.warnings.find("QPath:GetPath(20) out of range\n"), std::string::npos);

  const char *first = path.FindFile("x.ini");
  EXPECT_EQ(std::string(first), (dir_ / "two" / "x.ini").string());
  const char *second = path.FindFile("y.ini");
  EXPECT_EQ(first, second);  // one shared result buffer
  EXPECT_EQ(std::string(first), (dir_ / "one" / "y.ini").string());
  EXPECT_STREQ(path.FindFile("z.ini"), "z.ini");

  qstring full, dir;
  EXPECT_TRUE(path.FindFile("x.ini", &full, &dir));
  EXPECT_EQ(std::string(dir.c_str()), (dir_ / "two").string());
  EXPECT_FALSE(path.FindFile("z.ini", &full, &dir));
  EXPECT_EQ(std::string(full.c_str()), "z.ini");
  EXPECT_EQ(std::string(dir.c_str()), "");
}

TEST(MapPath, ScratchFolderGoesToTemp) {
  char buf[256];
  setenv("TMPDIR", "/var/tmp", 1);
  EXPECT_STREQ(QMapPath("c:/t/shot00001.tga", buf, sizeof buf), "/var/tmp/shot00001.tga");
  unsetenv("TMPDIR");
  EXPECT_STREQ(QMapPath("data/cars/x", buf, sizeof buf), "data/cars/x");
}

}  // namespace
