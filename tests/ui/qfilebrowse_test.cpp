// The file browser's folder listing and pick decisions on a real temp folder.
#include <gtest/gtest.h>

#include "tests/ui/dialog_fixture.h"
#include "ui/qfilebrowse.h"

namespace {

std::vector<std::string> Names(const std::vector<QBrowseEntry> &v) {
  std::vector<std::string> out;
  for (const auto &e : v) out.push_back(e.name + (e.folder ? "/" : ""));
  return out;
}

TEST(QBrowse, ListingAndPicks) {
  std::filesystem::path dir = FreshDir("qbrowse");
  for (const char *d : {"Cars", "archive", ".hidden"}) std::filesystem::create_directories(dir / d);
  for (const char *f : {"rear.tir", "Front.TIR", "notes.txt", ".secret.tir"}) std::ofstream(dir / f) << "x";
  using V = std::vector<std::string>;
  EXPECT_EQ(Names(QBrowseList(dir.string(), "*.tir")), (V{"../", "archive/", "Cars/", "Front.TIR", "rear.tir"}));
  EXPECT_EQ(Names(QBrowseList(dir.string(), "*.*")),
            (V{"../", "archive/", "Cars/", "Front.TIR", "notes.txt", "rear.tir"}));
  EXPECT_EQ(Names(QBrowseList((dir / "nope").string(), "*.*")), (V{"../"}));
  for (const QBrowseEntry &e : QBrowseList("/", "*.nothing-has-this")) EXPECT_NE(e.name, "..");  // the root has none

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
  std::string path;
  for (const Row &r : rows)
    EXPECT_EQ(QBrowsePick(dir.string(), r.name, r.save, &path), r.action) << r.name << " save=" << r.save;
  QBrowsePick(dir.string(), "Cars/../rear.tir", false, &path);
  EXPECT_EQ(path, (dir / "rear.tir").string());
  std::filesystem::remove_all(dir);
}

}  // namespace
