// qstring: editing, searching and the reports.
#include <gtest/gtest.h>

#include <string>

#include "base/qstring.h"
#include "tests/base/capture.h"

namespace {

std::string S(const qstring &q) { return q.c_str(); }

TEST(Qstring, GrowsAndTakesPiecesOfItself) {
  qstring s;
  for (int i = 0; i < 100; i++) s += "x";
  EXPECT_EQ(s.Length(), 100);
  s = s.c_str() + 90;
  EXPECT_EQ(S(s), std::string(10, 'x'));
  s += s.c_str();
  EXPECT_EQ(S(s), std::string(20, 'x'));
}

TEST(Qstring, PathCuts) {
  const char *rows[][4] = {
      // text, CutPath, CutExtension, CutFile
      {"data/cars/a/car.ini", "car.ini", "data/cars/a/car", "data/cars/a/"},
      {"c:\\t\\shot.tga", "shot.tga", "c:\\t\\shot", "c:\\t\\"},
      {"noext", "noext", "noext", ""},
      {"dir.v2/file", "file", "dir.v2/file", "dir.v2/"},
  };
  for (auto &r : rows) {
    qstring a(r[0]), b(r[0]), c(r[0]);
    a.CutPath();
    b.CutExtension();
    c.CutFile();
    EXPECT_EQ(S(a) + "|" + S(b) + "|" + S(c), std::string(r[1]) + "|" + r[2] + "|" + r[3]);
  }
  qstring sp("padded \t ");
  sp.CutTrailingSpaces();
  EXPECT_EQ(S(sp), "padded");
}

TEST(Qstring, SearchAndReplace) {
  qstring s("wheel0.pacejka.a0");
  EXPECT_EQ(s.Find("pacejka"), 7);
  EXPECT_EQ(s.Find('.', 7), 14);
  EXPECT_EQ(s.Find("zz"), -1);
  EXPECT_EQ(S(s.GetSubstring(15, 99)), "a0");
  EXPECT_EQ(s.ReplaceAll(".", "/"), 2);
  EXPECT_EQ(S(s), "wheel0/pacejka/a0");
  qstring t("aaa");
  EXPECT_EQ(t.ReplaceAll("a", "aa"), 3);
  EXPECT_EQ(S(t), "aaaaaa");
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
