// Reading info files: the tree a text becomes and the reader's reports.
#include "base/qfile.h"
#include "tests/base/qinfo_test_util.h"

using namespace qinfotest;

namespace {

struct ReadCase {
  const char *id;
  std::string text, tree, reports;
  unsigned flags = 0;
};

std::string Rep(char c, int n) { return std::string(size_t(n), c); }

std::string Nested(int depth, bool dump) {
  std::string s;
  for (int i = 1; i <= depth; i++) s.append("n").append(std::to_string(i)).append(dump ? "{" : "\n{\n");
  s += dump ? "k=1" : "k=1\n";
  for (int i = 1; i <= depth; i++) s += dump ? "}" : "}\n";
  return s;
}

const ReadCase kCases[] = {
    {"tab is part of a name", "key\t=1\n", "key\t=1", ""},
    {"dotted name: value lands on the node before; CR LF counts every line", "c=3\r\na.b=1\r\n", "c=1",
     "W: QInfo(t.ini): key with '.' found (a.b) - won't work; use { } to define subtrees (line 2)"},
    {"= after a comment sets the comment's text", ";note\n=text\n", ";text", ""},
    {"names are cut at 1023", Rep('n', 1500) + "=1\n", Rep('n', 1023) + " " + Rep('n', 477) + "=1", ""},
    {"values are cut at 1023", "a=" + Rep('x', 1500) + "\n", "a=" + Rep('x', 1023) + " " + Rep('x', 477), ""},
    {"ten nested groups", Nested(10, false), Nested(10, true),
     "W: QInfo: 't.ini' nests too deep (max 10 levels) | E: QInfo(t.ini); more '}' brackets than '{' near line 30"},
    {"name running into the end is dropped", "a=1\nb", "a=1", ""},
    {"} at the very end still closes", "a\n{\nb=1\n}", "a{b=1}", ""},
    {"single = at the very end", "a=", "a=\xFF", ""},
    {"0xA0 is blank", "\xA0" "a\xA0=\xA0" "1\n", "a=\xA0" "1", ""},
    {"assign without symbol", "=1\n", "", "W: QInfo: assign without symbol in line 1"},
    {"{ without group name", "{\n}\n", "",
     "W: QInfo: { without groupname | E: QInfo(t.ini); more '}' brackets than '{' near line 2"},
    {"reference without symbol", "~base\n", "", "W: QInfo: reference without symbol in line 1"},
    {"reference to an unknown tree", "a~nothere\n", "a",
     "W: QInfo(t.ini): reference (~) to unknown tree 'nothere' in line 1"},
    {"reference to a tree without child", "e\n{\n}\nf~e\n", "e{} f",
     "W: QInfo(t.ini): ref to tree 'e' without child in line 4"},
    {"reference through a dotted path", "a\n{\nb\n{\nx=1\n}\n}\nc~a.b\n", "a{b{x=1}} c~a.b{}", ""},
    {"stop at close", "a\n{\nb=1\n}\nc=2\n", "a{b=1}", "", QINFO_STOP_AT_CLOSE},
    {"; inside a name is text", "a;b=1\nc;d\n", "a;b=1 c;d", ""},
    {"{ after a closed group reopens the last name", "a\n{\nb=1\n}\n{\nc=2\n}\n", "a{b=1{c=2}}", ""},
    {"empty file", "", "", ""},
};

TEST_F(InfoTest, SyntaxTreeAndReports) {
  for (const ReadCase &c : kCases) {
    ReportCapture cap;
    auto info = ReadText(c.text, c.flags);
    EXPECT_EQ(Dump(*info), c.tree) << c.id;
    EXPECT_EQ(cap.joined, c.reports) << c.id;
  }
}

TEST_F(InfoTest, MissingSilentAndDirectoryFiles) {
  ReportCapture cap;
  QInfo info("missing.ini");
  EXPECT_EQ(cap.joined, "W: QInfo: can't open 'missing.ini', current directory is '" + dir_.string() + "'");
  EXPECT_EQ(info.GetInt("resolution.width", 910), 910);
  cap.joined.clear();
  QInfo silent("missing.ini", QINFO_SILENT);
  std::filesystem::create_directory("d.ini");
  QInfo dir("d.ini", QINFO_SILENT);
  EXPECT_EQ(Dump(dir), "");
  EXPECT_EQ(cap.joined, "");
}

TEST_F(InfoTest, EqualPathsAreAllHashedAndTheFirstReadIsFound) {
  auto info = ReadText("g\n{\nk=1\n}\ng\n{\nk=2\nj=3\n}\nk=4\nk=5\n");
  EXPECT_EQ(Dump(*info), "g{k=1} g{k=2 j=3} k=4 k=5");
  EXPECT_EQ(info->GetInt("g.k", 0), 1);
  EXPECT_EQ(info->GetInt("g.j", 0), 3);  // the second group, through the hash only
  EXPECT_EQ(info->FindNode("g.j"), nullptr);
  EXPECT_EQ(info->GetInt("k", 0), 4);
}

}  // namespace
