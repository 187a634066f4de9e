// The file dialog's rules without a window: save mode, filters, listing and picks.
#include <gtest/gtest.h>

#include <tuple>

#include "tests/ui/dialog_fixture.h"
#include "ui/qfilebrowse.h"
#include "ui/qfiledlg.h"

namespace {

TEST(QDlgFile, SaveModeFiltersAndMatching) {
  const std::pair<const char *, bool> titles[] = {{"Export table", true}, {"Save car", true},  {"Open car", false},
                                                  {"Import TIR", false},  {"export", true},    {"SAVE", false}};
  for (const auto &[title, save] : titles) EXPECT_EQ(QDlgFileIsSave(title), save) << title;
  auto tir = QDlgFileFilters("*.tir");
  ASSERT_EQ(tir.size(), 2u);
  EXPECT_EQ(tir[0].label + tir[0].pattern + tir[1].label + tir[1].pattern, "TIR files (*.tir)*.tirAll files (*.*)*.*");
  for (const char *other : {"tir", "", "*", "x*.tir"}) {
    auto all = QDlgFileFilters(other);
    EXPECT_EQ(all.size() == 1 ? all[0].label : "", "All Files (*.*)") << other;
  }
  const std::tuple<const char *, const char *, bool> names[] = {
      {"*.tir", "front.tir", true},   {"*.tir", "FRONT.TIR", true}, {"*.tir", ".tir", false},
      {"*.tir", "front.tire", false}, {"*.tir", "fronttir", false}, {"*.*", "anything", true},
      {"*", "x", true},               {"car.ini", "car.ini", true}, {"car.ini", "car.inx", false}};
  for (const auto &[pattern, name, match] : names) EXPECT_EQ(QDlgFileMatches(pattern, name), match) << name;
}

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
  EXPECT_EQ(Names(QBrowseList((dir / "nope").string(), "*.*")), (V{"../"}));
  for (const QBrowseEntry &e : QBrowseList("/", "*.nothing-has-this")) EXPECT_NE(e.name, "..");  // the root has none

  struct Row {
    const char *name;
    bool save;
    QBrowseAction action;
  };
  const Row rows[] = {{"Cars", false, QBrowseAction::EnterFolder}, {"rear.tir", false, QBrowseAction::Choose},
                      {"rear.tir", true, QBrowseAction::AskOverwrite}, {"new.tir", true, QBrowseAction::Choose},
                      {"new.tir", false, QBrowseAction::Reject},       {"", true, QBrowseAction::Reject}};
  std::string path;
  for (const Row &r : rows)
    EXPECT_EQ(QBrowsePick(dir.string(), r.name, r.save, &path), r.action) << r.name << " save=" << r.save;
  QBrowsePick(dir.string(), "Cars/../rear.tir", false, &path);
  EXPECT_EQ(path, (dir / "rear.tir").string());
  std::filesystem::remove_all(dir);
}

}  // namespace
