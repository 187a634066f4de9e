// Walking trees: the iterator, sorting by name and the debug dumps.
#include "base/qstring.h"
#include "tests/base/qinfo_test_util.h"

using namespace qinfotest;

namespace {

std::string Walk(QInfoIterator &&it) {
  std::string s;
  while (QInfoNode *n = it.GetNextAny()) s += std::string(s.empty() ? "" : " ") + n->Name();
  return s;
}

TEST_F(InfoTest, IteratorGoesDepthFirstInFileOrder) {
  auto info = ReadText("a=1\ng\n{\n;c\nh\n{\nx=1\n}\ny=2\n}\nz=3\n");
  EXPECT_EQ(Walk(QInfoIterator(info.get())), "a g ; h x y z");
  EXPECT_EQ(Walk(QInfoIterator(info.get(), "g")), "; h x y");
  QInfoIterator it(info.get());
  qstring path, name;
  std::string s;
  while (it.GetNext(&path, &name)) s += std::string(path.c_str()) + "/" + name.c_str() + " ";
  EXPECT_EQ(s, "a/a g/g g.h/h g.h.x/x g.y/y z/z ");
  QInfo deep("n.ini", QINFO_NO_READ);  // deeper than the iterator's stack
  deep.SetString("a.b.c.d.e.f.g.h.i.j.k.l", "1");
  deep.SetString("top", "2");
  ReportCapture cap;
  EXPECT_EQ(Walk(QInfoIterator(&deep)), "a b c d e f g h i j k l top");
  EXPECT_EQ(cap.joined, "E: nestLevel>10 (QInfo::MAX_LEVEL) in QInfoIterator");
  deep.SetFlags(0);
}

TEST_F(InfoTest, SortOrdersEveryLevelAndLeavesCommentsInPlace) {
  auto info = ReadText("c=1\n;keep\nb\n{\nz=1\ny=2\n}\na=3\n");
  ReportCapture cap;
  info->SortLevel();
  EXPECT_EQ(Dump(*info), "a=3 ;keep b{y=2 z=1} c=1");
  EXPECT_TRUE(info->GetFlags() & QINFO_MODIFIED);
  info->SetFlags(0);
  EXPECT_EQ(cap.debug.rfind("Sort level (root)\n", 0), 0u) << cap.debug;
  EXPECT_NE(cap.debug.find("\nSwap!\n"), std::string::npos) << cap.debug;
}

TEST_F(InfoTest, DbgPrintDumpsTheTreeOrItsUnusedKeys) {
  auto info = ReadText("a=1\nb=2\ng\n{\nc=3\n}\n");
  ReportCapture cap;
  info->DbgPrint("all");
  EXPECT_EQ(cap.joined, "D: QInfo(t.ini) [all] | D: a=1 | D: b=2 | D: g= | D: { | D:   c=3 | D: }");
  cap.joined.clear();
  info->GetInt("a", 0);
  testing::internal::CaptureStderr();
  info->DbgPrint("check", 1);
  std::string err = testing::internal::GetCapturedStderr();
  EXPECT_NE(err.find("QInfo(t.ini) [check] - UNUSED KEYS ONLY"), std::string::npos) << err;
  EXPECT_EQ(cap.joined, "W: - b (=2) | W: - g.c (=3)");
}

}  // namespace
