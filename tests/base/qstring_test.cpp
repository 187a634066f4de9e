// qstring: editing, searching and the reports.
#include <gtest/gtest.h>

#include <string>

#include "base/qstring.h"
#include "tests/base/capture.h"

namespace {

std::string S(const qstring &q) { return q.c_str(); }

TEST(Qstring, GrowsTakesPiecesOfItselfAndEdits) {
  qstring s;
  for (int i = 0; i < 100; i++) s += "x";
  s = s.c_str() + 90;
  s += s.c_str();
  EXPECT_EQ(S(s), std::string(20, 'x'));
  qstring t("wheel0.pacejka.a0 \t ");
  t.CutTrailingSpaces();
  EXPECT_EQ(t.Find('.', 7), 14);
  EXPECT_EQ(S(t.GetSubstring(15, 99)), "a0");
  EXPECT_EQ(t.ReplaceAll("a", "aa"), 3);  // the inserted text is not searched again
  EXPECT_EQ(S(t), "wheel0.paacejkaa.aa0");
}

TEST(Qstring, Reports) {
  ReportCapture cap;
  qstring s("abc");
  EXPECT_EQ(s[2], 'c');
  EXPECT_EQ(s[3], 0);
  EXPECT_EQ(s[-1], 0);
  EXPECT_FALSE(s.FromFile("/no/such/file.txt"));
  EXPECT_FALSE(qstring("x").ToFile("/no/such/dir/file.txt"));
  qstring w("a/b.txt");
  w.SetWide(true);
  w.CutPath();  // wide text is not handled: reported, left alone
  EXPECT_STREQ(w.c_str(), "<unicodestr-nyi>");
  w.SetWide(false);
  EXPECT_EQ(S(w), "a/b.txt");
  EXPECT_EQ(cap.errors,
            "qstring(abc): ([]) index 3 out of range (0..2)\n"
            "qstring(abc): ([]) index -1 out of range (0..2)\n"
            "qstring:FromFile(/no/such/file.txt); file not found\n"
            "qstring:ToFile(/no/such/dir/file.txt); can't open file for writing\n"
            "qstring:CutPath() NYI for Unicode\n");
}

}  // namespace
