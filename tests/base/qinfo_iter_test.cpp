// Walking trees: the iterator, sorting by name and the debug dumps.
#include "base/qstring.h"
#include "tests/base/qinfo_test_util.h"

using namespace qinfotest;

namespace {

std::string Walk(QInfoIterator &it) {
  std::string s;
  while (QInfoNode *n = it.GetNextAny()) s += std::string(s.empty() ? "" : " ") + n->Name();
  return s;
}

TEST_F(InfoTest, IteratorGoesDepthFirstInFileOrder) {
  auto info = ReadText("a=1\ng\n{\n;c\nh\n{\nx=1\n}\ny=2\n}\nz=3\n");
  QInfoIterator all(info.get());
  EXPECT_EQ(Walk(all), "a g ; h x y z");
  QInfoIterator sub(info.get(), "g");
  EXPECT_EQ(Walk(sub), "; h x y");
  QInfoIterator none(info.get(), "nothere");
  EXPECT_EQ(none.GetNextAny(), nullptr);
}

TEST_F(InfoTest, FilteredStepGivesPathsAndSkipsComments) {
  auto info = ReadText(";top\ng\n{\n;c\nh\n{\nx=1\n}\n}\n");
  QInfoIterator it(info.get());
  qstring path, name;
  std::string s;
  while (it.GetNext(&path, &name)) s += std::string(path.c_str()) + "/" + name.c_str() + " ";
  EXPECT_EQ(s, "g/g g.h/h g.h.x/x ");
}

TEST_F(InfoTest, IteratorReportsTreesDeeperThanItsStack) {
  QInfo info("n.ini", QINFO_NO_READ);
  info.SetString("a.b.c.d.e.f.g.h.i.j.k.l", "1");
  info.SetString("top", "2");
  Reports reports;
  QInfoIterator it(&info);
  EXPECT_EQ(Walk(it), "a b c d e f g h i j k l top");
  EXPECT_EQ(reports.Joined(), "E: nestLevel>10 (QInfo::MAX_LEVEL) in QInfoIterator");
  info.SetFlags(0);
}

TEST_F(InfoTest, SortOrdersEveryLevelAndLeavesCommentsInPlace) {
  auto info = ReadText("c=1\n;keep\nb\n{\nz=1\ny=2\n}\na=3\n");
  Reports reports;
  info->SortLevel();
  EXPECT_EQ(Dump(*info), "a=3 ;keep b{y=2 z=1} c=1");
  EXPECT_TRUE(info->GetFlags() & QINFO_MODIFIED);
  info->SetFlags(0);
  // The progress lines go to the debug output.
  const auto &r = reports.All();
  ASSERT_FALSE(r.empty());
  EXPECT_EQ(r[0], "D: Sort level (root)");
  EXPECT_NE(std::find(r.begin(), r.end(), "D: Swap!"), r.end());
  EXPECT_NE(std::find(r.begin(), r.end(), "D: Run again"), r.end());
  bool cmp = false, newRoot = false;
  for (const std::string &l : r) {
    cmp |= l.rfind("D: Cmp c - b [", 0) == 0;
    newRoot |= l.rfind("D: New root child ", 0) == 0;
  }
  EXPECT_TRUE(cmp);
  EXPECT_TRUE(newRoot);
}

TEST_F(InfoTest, DbgPrintListsUnusedKeys) {
  auto info = ReadText("a=1\nb=2\ng\n{\nc=3\n}\n");
  info->GetInt("a", 0);
  Reports reports;
  testing::internal::CaptureStderr();
  info->DbgPrint("check", 1);
  std::string err = testing::internal::GetCapturedStderr();
  EXPECT_NE(err.find("QInfo(t.ini) [check] - UNUSED KEYS ONLY"), std::string::npos) << err;
  EXPECT_EQ(reports.Joined(), "W: - b (=2) | W: - g.c (=3)");
}

TEST_F(InfoTest, DbgPrintDumpsTheTree) {
  auto info = ReadText("a=1\ng\n{\nc=3\n}\n");
  Reports reports;
  info->DbgPrint("all");
  EXPECT_EQ(reports.Joined(), "D: QInfo(t.ini) [all] | D: a=1 | D: g= | D: { | D:   c=3 | D: }");
}

}  // namespace
