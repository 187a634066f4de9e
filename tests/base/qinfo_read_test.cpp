// Reading info files: the tokenizer, the tree a text becomes and every
// reader diagnostic, as a table of (text, tree, reports).
#include <unistd.h>

#include "base/qfile.h"
#include "tests/base/qinfo_test_util.h"

using namespace qinfotest;

namespace {

struct ReadCase {
  const char *id;
  std::string text;
  std::string tree;     // Dump() of the result
  std::string reports;  // Reports::Joined()
  unsigned flags = 0;
};

std::string Repeat(char c, int n) { return std::string(size_t(n), c); }

std::string Nested(int depth) {
  std::string s;
  for (int i = 1; i <= depth; i++) s += "n" + std::to_string(i) + "\n{\n";
  s += "k=1\n";
  for (int i = 1; i <= depth; i++) s += "}\n";
  return s;
}

std::string NestedDump(int depth) {
  std::string s;
  for (int i = 1; i <= depth; i++) s += "n" + std::to_string(i) + "{";
  return s + "k=1" + Repeat('}', depth);
}

const ReadCase kCases[] = {
    {"R01 keys", "a=1\nb=2\n", "a=1 b=2", ""},
    {"R02 value keeps its blanks", "x = 5 \n", "x= 5 ", ""},
    {"R03 ; inside a value is text", "a0=1.5 ; note\n", "a0=1.5 ; note", ""},
    {"R04 groups", "wheel0\n{\n  pacejka\n  {\n    a0=1.60000\n  }\n}\n", "wheel0{pacejka{a0=1.60000}}", ""},
    {"R05 brace inside a name", "a{\n}\n", "a{", "E: QInfo(t.ini); more '}' brackets than '{' near line 2"},
    {"R06 tab is part of a name", "key\t=1\n", "key\t=1", ""},
    {"R07 dotted name: value lands on the node before", "c=3\na.b=1\n", "c=1",
     "W: QInfo(t.ini): key with '.' found (a.b) - won't work; use { } to define subtrees (line 1)"},
    {"R08 dotted name, CR LF line ends count every line", "c=3\r\na.b=1\r\n", "c=1",
     "W: QInfo(t.ini): key with '.' found (a.b) - won't work; use { } to define subtrees (line 2)"},
    {"R09 = after a comment sets the comment's text", ";note\n=text\n", ";text", ""},
    {"R10 names are cut at 1023", Repeat('n', 1500) + "=1\n", Repeat('n', 1023) + " " + Repeat('n', 477) + "=1",
     ""},
    {"R11 values are cut at 1023", "a=" + Repeat('x', 1500) + "\n", "a=" + Repeat('x', 1023) + " " + Repeat('x', 477),
     ""},
    {"R12 ten nested groups", Nested(10), NestedDump(10),
     "W: QInfo: 't.ini' nests too deep (max 10 levels) | E: QInfo(t.ini); more '}' brackets than '{' near line 30"},
    {"R13 unclosed group", "a\n{\nb=1\n", "a{b=1}",
     "E: QInfo(t.ini); brackets don't match; still 1 closing bracket(s) expected at end of file."},
    {"R14 duplicates are kept", "a=1\na=2\n", "a=1 a=2", ""},
    {"R15 last line without line end keeps 0xFF", "a=1\na0=1.5", "a=1 a0=1.5\xFF", ""},
    {"R16 name running into the end is dropped", "a=1\nb", "a=1", ""},
    {"R17 } at the very end still closes", "a\n{\nb=1\n}", "a{b=1}", ""},
    {"R18 CR line ends", "a=1\rb\r{\rc=2\r}\r", "a=1 b{c=2}", ""},
    {"R19 CR LF line ends", "a=1\r\nb\r\n{\r\nc=2\r\n}\r\n", "a=1 b{c=2}", ""},
    {"R20 0xA0 is blank", "\xA0" "a\xA0=\xA0" "1\n", "a=\xA0" "1", ""},
    {"R21 assign without symbol", "=1\n", "", "W: QInfo: assign without symbol in line 1"},
    {"R22 { without group name", "{\n}\n", "",
     "W: QInfo: { without groupname | E: QInfo(t.ini); more '}' brackets than '{' near line 2"},
    {"R23 reference", "base\n{\nx=1\n}\ncar~base\n{\ny=3\n}\n", "base{x=1} car~base{y=3}", ""},
    {"R24 reference without symbol", "~base\n", "", "W: QInfo: reference without symbol in line 1"},
    {"R25 reference to an unknown tree", "a~nothere\n", "a",
     "W: QInfo(t.ini): reference (~) to unknown tree 'nothere' in line 1"},
    {"R26 reference to a tree without child", "e\n{\n}\nf~e\n", "e{} f",
     "W: QInfo(t.ini): ref to tree 'e' without child in line 4"},
    {"R27 stop at close", "a\n{\nb=1\n}\nc=2\n", "a{b=1}", "", QINFO_STOP_AT_CLOSE},
    {"R28 group carrying a value", "car=base\n{\nm=1\n}\n", "car=base{m=1}", ""},
    {"R29 ; inside a name is text", "a;b=1\n", "a;b=1", ""},
    {"R30 comments keep their text", "; hello\na=1 \n", "; hello a=1 ", ""},
    {"R31 bare names", "flag\nother\n", "flag other", ""},
    {"R32 reference path is raw text", "b\n{\nx=1\n}\na~ b\n", "b{x=1} a",
     "W: QInfo(t.ini): reference (~) to unknown tree ' b' in line 4"},
    {"R33 { after a closed group reopens the last name", "a\n{\nb=1\n}\n{\nc=2\n}\n", "a{b=1{c=2}}", ""},
    {"R34 reference through a dotted path", "a\n{\nb\n{\nx=1\n}\n}\nc~a.b\n", "a{b{x=1}} c~a.b{}", ""},
    {"R35 single = at the very end", "a=", "a=\xFF", ""},
    {"R36 empty file", "", "", ""},
    {"R37 comment directly after a name", "a;c\n", "a;c", ""},
};

void PrintTo(const ReadCase &c, std::ostream *os) { *os << c.id; }

class ReadTable : public InfoTest, public testing::WithParamInterface<ReadCase> {};

TEST_P(ReadTable, TreeAndReports) {
  const ReadCase &c = GetParam();
  Reports reports;
  auto info = ReadText(c.text, c.flags);
  EXPECT_EQ(Dump(*info), c.tree) << c.id;
  EXPECT_EQ(reports.Joined(), c.reports) << c.id;
  EXPECT_TRUE(info->GetFlags() & QINFO_FILE_READ);
}

INSTANTIATE_TEST_SUITE_P(Syntax, ReadTable, testing::ValuesIn(kCases), [](const auto &info) {
  return "R" + std::to_string(info.index + 1);
});

// ---- The file itself -------------------------------------------------------------------

TEST_F(InfoTest, MissingFileWarnsAndLeavesBareRoot) {
  Reports reports;
  QInfo info("missing.ini");
  char cwd[4096];
  ASSERT_TRUE(getcwd(cwd, sizeof cwd));
  EXPECT_EQ(reports.Joined(), std::string("W: QInfo: can't open 'missing.ini', current directory is '") + cwd + "'");
  EXPECT_EQ(info.GetRoot()->firstChild, nullptr);
  EXPECT_FALSE(info.GetFlags() & QINFO_FILE_READ);
  EXPECT_EQ(info.GetInt("resolution.width", 910), 910);
}

TEST_F(InfoTest, MissingFileSilent) {
  Reports reports;
  QInfo info("missing.ini", QINFO_SILENT);
  EXPECT_EQ(reports.Joined(), "");
}

TEST_F(InfoTest, NoReadFlagSkipsReading) {
  WriteFile("t.ini", "a=1\n");
  QInfo info("t.ini", QINFO_NO_READ);
  EXPECT_EQ(Dump(info), "");
  EXPECT_FALSE(info.GetFlags() & QINFO_FILE_READ);
}

TEST_F(InfoTest, EqualPathsInTwoGroupsAreBothHashed) {
  // Both `g` groups' keys are entered in the table; the walk sees only the first.
  auto info = ReadText("g\n{\na=1\n}\ng\n{\nb=2\n}\n");
  EXPECT_EQ(Dump(*info), "g{a=1} g{b=2}");
  EXPECT_EQ(info->GetInt("g.b", 0), 2);
  EXPECT_EQ(info->FindNode("g.b"), nullptr);
}

TEST_F(InfoTest, FirstReadOfEqualPathsIsFound) {
  auto info = ReadText("g\n{\nk=1\n}\ng\n{\nk=2\nj=3\n}\nk=4\nk=5\n");
  EXPECT_EQ(info->GetInt("g.k", 0), 1);
  EXPECT_EQ(info->GetInt("g.j", 0), 3);  // the second group, through the hash only
  EXPECT_EQ(info->GetInt("k", 0), 4);
}

TEST_F(InfoTest, DirectoryReadsAsEmptyTree) {
  std::filesystem::create_directory("d.ini");
  QInfo info("d.ini", QINFO_SILENT);
  EXPECT_EQ(Dump(info), "");
}

TEST_F(InfoTest, ReadsFromMemoryFile) {
  static const char text[] = "a\n{\nb=7\n}\nc=1";
  QFile file("mem.ini", text, int(sizeof text - 1));
  QInfo info("mem.ini", QINFO_NO_READ);
  info.Read(file);
  EXPECT_EQ(Dump(info), "a{b=7} c=1\xFF");
  EXPECT_EQ(info.GetInt("a.b", 0), 7);
}

TEST_F(InfoTest, HashOfAPath) {
  // Sum of byte * index: the first byte counts nothing.
  EXPECT_EQ(QInfo::PathHash("a"), 0u);
  EXPECT_EQ(QInfo::PathHash("ab"), unsigned('b'));
  EXPECT_EQ(QInfo::PathHash("a.b"), unsigned('.' + 2 * 'b'));
  std::string big(2000, '\xff');
  EXPECT_EQ(QInfo::PathHash(big.c_str()), (255u * (1999u * 2000u / 2u)) % 65536u);
}

}  // namespace
