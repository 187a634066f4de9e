// qstring: editing, searching, the number checks and the wide-text reports.
#include <gtest/gtest.h>

#include <string>

#include "base/qstring.h"
#include "tests/base/capture.h"

namespace {

std::string S(const qstring &q) { return q.c_str(); }

TEST(Qstring, GrowsFromThirtyTwo) {
  qstring s;
  EXPECT_EQ(s.Capacity(), 32);
  for (int i = 0; i < 100; i++) s += "x";
  EXPECT_EQ(s.Length(), 100);
  EXPECT_GT(s.Capacity(), 100);
  s = s.c_str() + 90;  // assigning a piece of itself
  EXPECT_EQ(S(s), std::string(10, 'x'));
  s += s.c_str();
  EXPECT_EQ(s.Length(), 20);
}

TEST(Qstring, PathCuts) {
  struct {
    const char *in, *path, *ext, *file;
  } rows[] = {
      {"data/cars/a/car.ini", "car.ini", "data/cars/a/car", "data/cars/a/"},
      {"c:\\t\\shot.tga", "shot.tga", "c:\\t\\shot", "c:\\t\\"},
      {"noext", "noext", "noext", ""},
      {"dir.v2/file", "file", "dir.v2/file", "dir.v2/"},
  };
  for (auto &r : rows) {
    qstring a(r.in), b(r.in), c(r.in);
    a.CutPath();
    b.CutExtension();
    c.CutFile();
    EXPECT_EQ(S(a), r.path) << r.in;
    EXPECT_EQ(S(b), r.ext) << r.in;
    EXPECT_EQ(S(c), r.file) << r.in;
  }
  qstring sp("  padded \t ");
  sp.CutTrailingSpaces();
  sp.CutLeadingSpaces();
  EXPECT_EQ(S(sp), "padded");
}

TEST(Qstring, SearchAndReplace) {
  qstring s("wheel0.pacejka.a0");
  EXPECT_TRUE(s.BeginsWith("wheel"));
  EXPECT_TRUE(s.EndsWith(".a0"));
  EXPECT_FALSE(s.EndsWith("much longer than the text"));
  EXPECT_EQ(s.Find("pacejka"), 7);
  EXPECT_EQ(s.Find('.'), 6);
  EXPECT_EQ(s.Find('.', 7), 14);
  EXPECT_EQ(s.FindLast('.'), 14);
  EXPECT_EQ(s.Find("zz"), -1);
  EXPECT_EQ(S(s.GetSubstring(7, 7)), "pacejka");
  EXPECT_EQ(S(s.GetSubstring(15, 99)), "a0");
  EXPECT_EQ(s.ReplaceAll(".", "/"), 2);
  EXPECT_EQ(S(s), "wheel0/pacejka/a0");
  qstring t("aaa");
  EXPECT_EQ(t.ReplaceAll("a", "aa"), 3);
  EXPECT_EQ(S(t), "aaaaaa");
}

TEST(Qstring, IndexIsRangeChecked) {
  ReportCapture cap;
  qstring s("abc");
  EXPECT_EQ(s[2], 'c');
  EXPECT_EQ(s[3], 0);
  EXPECT_EQ(s[-1], 0);
  EXPECT_EQ(cap.errors,
            "qstring(abc): ([]) index 3 out of range (0..2)\n"
            "qstring(abc): ([]) index -1 out of range (0..2)\n");
}

TEST(Qstring, NumberChecks) {
  struct {
    const char *text;
    bool intOk;
    const char *intReason;
    bool floatOk;
    const char *floatReason;
  } rows[] = {
      {"", true, "", true, ""},
      {"12 + 3*4%5", true, "", false, "character '*' is not allowed"},
      {"-1.5e3", false, "a '.' is not allowed (floating point)", true, ""},
      {"1,5", false, "character ',' is not allowed", false, "use '.' instead of ','"},
      {"1E5", false, "character 'E' is not allowed", false, "character 'E' is not allowed"},
      {"$ff", false, "character '$' is not allowed", false, "character '$' is not allowed"},
  };
  for (auto &r : rows) {
    qstring s(r.text), why;
    EXPECT_EQ(s.ValidateInt(&why), r.intOk) << r.text;
    EXPECT_EQ(S(why), r.intReason) << r.text;
    why = "";
    EXPECT_EQ(s.ValidateFloat(&why), r.floatOk) << r.text;
    EXPECT_EQ(S(why), r.floatReason) << r.text;
  }
  EXPECT_TRUE(qstring("-42").IsNumber());
  EXPECT_FALSE(qstring("4.2").IsNumber());
  EXPECT_FALSE(qstring("-").IsNumber());
  EXPECT_TRUE(qstring("4.2e-1").IsFloat());
  EXPECT_FALSE(qstring("4.2x").IsFloat());
}

TEST(Qstring, WideModeReportsAndDoesNothing) {
  ReportCapture cap;
  qstring s("a/b.txt");
  s.SetWide(true);
  s.CutPath();
  EXPECT_EQ(cap.errors, "qstring:CutPath() NYI for Unicode\n");
  EXPECT_STREQ(s.c_str(), "<unicodestr-nyi>");
  s.SetWide(false);
  EXPECT_EQ(S(s), "a/b.txt");
}

TEST(Qstring, FileMessages) {
  ReportCapture cap;
  qstring s;
  EXPECT_FALSE(s.FromFile("/no/such/file.txt"));
  EXPECT_FALSE(qstring("x").ToFile("/no/such/dir/file.txt"));
  EXPECT_EQ(cap.errors,
            "qstring:FromFile(/no/such/file.txt); file not found\n"
            "qstring:ToFile(/no/such/dir/file.txt); can't open file for writing\n");
}

}  // namespace
