// The file browser's folder listing and pick decisions on a real temp folder.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "ui/qfilebrowse.h"

namespace fs = std::filesystem;

namespace {

class QBrowse : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = fs::temp_directory_path() / ("qbrowse_" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
                                        "_" + ::testing::UnitTest::GetInstance()->current_test_info()->name());
    fs::remove_all(dir_);
    fs::create_directories(dir_ / "Cars");
    fs::create_directories(dir_ / "archive");
    fs::create_directories(dir_ / ".hidden");
    for (const char *f : {"rear.tir", "Front.TIR", "notes.txt", ".secret.tir"}) std::ofstream(dir_ / f) << "x";
  }
  void TearDown() override { fs::remove_all(dir_); }
  fs::path dir_;
};

std::vector<std::string> Names(const std::vector<QBrowseEntry> &v) {
  std::vector<std::string> out;
  for (const auto &e : v) out.push_back(e.name + (e.folder ? "/" : ""));
  return out;
}

TEST_F(QBrowse, FoldersThenMatchingFiles) {
  EXPECT_EQ(Names(QBrowseList(dir_.string(), "*.tir")),
            (std::vector<std::string>{"../", "archive/", "Cars/", "Front.TIR", "rear.tir"}));
  EXPECT_EQ(Names(QBrowseList(dir_.string(), "*.*")),
            (std::vector<std::string>{"../", "archive/", "Cars/", "Front.TIR", "notes.txt", "rear.tir"}));
}

TEST_F(QBrowse, MissingFolderListsOnlyParent) {
  EXPECT_EQ(Names(QBrowseList((dir_ / "nope").string(), "*.*")), (std::vector<std::string>{"../"}));
  for (const QBrowseEntry &e : QBrowseList("/", "*.nothing-has-this")) EXPECT_NE(e.name, "..");  // the root has no parent
}

TEST_F(QBrowse, PickDecisions) {
  struct Row {
    const char *name;
    bool save;
    QBrowseAction action;
  };
  const Row rows[] = {
      {"Cars", false, QBrowseAction::EnterFolder}, {"..", true, QBrowseAction::EnterFolder},
      {"rear.tir", false, QBrowseAction::Choose},  {"rear.tir", true, QBrowseAction::AskOverwrite},
      {"new.tir", true, QBrowseAction::Choose},    {"new.tir", false, QBrowseAction::Reject},
      {"", true, QBrowseAction::Reject},
  };
  for (const Row &r : rows) {
    std::string path;
    EXPECT_EQ(QBrowsePick(dir_.string(), r.name, r.save, &path), r.action) << r.name << " save=" << r.save;
  }
  std::string path;
  QBrowsePick(dir_.string(), "Cars/../rear.tir", false, &path);
  EXPECT_EQ(path, (dir_ / "rear.tir").string());
}

}  // namespace
