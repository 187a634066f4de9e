// Queries on a tree: the typed getters with their number checks, the lookup
// (references, fallback).
#include "base/qstring.h"
#include "tests/base/qinfo_test_util.h"

using namespace qinfotest;

namespace {

struct NumberCase {
  const char *value;  // the text after "x="
  int asInt;
  float asFloat;
  const char *intWarning, *floatWarning;  // the reason, or "" for none
};

const NumberCase kNumbers[] = {
    {"42", 42, 42.0f, "", ""},
    {" 5", 5, 5.0f, "", ""},
    {"12.5", 12, 12.5f, "a '.' is not allowed (floating point)", ""},
    {"1,5", 1, 1.0f, "character ',' is not allowed", "use '.' instead of ','"},
    {"1E3", 1, 1000.0f, "character 'E' is not allowed", "character 'E' is not allowed"},
    {"1e3", 1, 1000.0f, "character 'e' is not allowed", ""},
    {"-2+3", -5, -2.0f, "", ""},  // the unary minus takes the rest
    {"2*3%4", 2, 2.0f, "", "character '*' is not allowed"},
    {"$ff", 255, 0.0f, "character '$' is not allowed", "character '$' is not allowed"},
    {"", 0, 0.0f, "", ""},
};

TEST_F(InfoTest, IntAndFloatNumberChecks) {
  for (const NumberCase &c : kNumbers) {
    auto info = ReadText(std::string("x=") + c.value + "\n");
    ReportCapture cap;
    std::string head = std::string("W: x value '") + c.value + "' (in t.ini) is not a valid ";
    EXPECT_EQ(info->GetInt("x", -99), c.asInt) << c.value;
    EXPECT_EQ(cap.joined, *c.intWarning ? head + "integer: " + c.intWarning : "");
    cap.joined.clear();
    EXPECT_FLOAT_EQ(info->GetFloat("x", -99.0f), c.asFloat) << c.value;
    EXPECT_EQ(cap.joined, *c.floatWarning ? head + "float: " + c.floatWarning : "");
  }
}

TEST_F(InfoTest, StringsDefaultsAndOddValues) {
  auto info = ReadText("x = 5\nlong=abcdefghij\ncar=base\n{\nm=1\n}\ng\n{\nk=1\n}\nflag\na0=1.5");
  ReportCapture cap;
  char buf[5];
  qstring s;
  EXPECT_TRUE(info->GetString("long", buf));
  EXPECT_STREQ(buf, "abcd");
  EXPECT_TRUE(info->GetString(qstring("x"), s));
  EXPECT_STREQ(s.c_str(), " 5");
  EXPECT_TRUE(info->GetString("car", s));  // a group answers only with a value
  EXPECT_STREQ(s.c_str(), "base");
  EXPECT_FALSE(info->GetString("g", s, "none"));
  EXPECT_STREQ(s.c_str(), "none");
  EXPECT_FALSE(info->GetString("X", buf));  // keys are case-sensitive
  EXPECT_STREQ(buf, "");
  EXPECT_EQ(info->GetInt("g.k.x", 910), 910);  // a key with parts left over
  EXPECT_TRUE(info->GetBool("none", true));
  EXPECT_TRUE(info->GetString("flag", buf));  // a bare name reads as "?"
  EXPECT_STREQ(buf, "?");
  info->GetInt("flag", 1);
  EXPECT_FLOAT_EQ(info->GetFloat("a0", 0), 1.5f);  // the last line keeps its 0xFF
  EXPECT_EQ(cap.joined,
            "W: flag value '?' (in t.ini) is not a valid integer: character '?' is not allowed | "
            "W: a0 value '1.5\xFF' (in t.ini) is not a valid float: character '\xFF' is not allowed");
}

TEST_F(InfoTest, BoolsFloatListsAndHosts) {
  auto info = ReadText("on=1\nexpr=2-2\nf=1.5, 2.5 ,,3.5\nplain=example.org\nslash=/3+7\n"
                       "bad=/37\nplus=+5\nplus2=+5+2\nplus3=+15+2\n");
  EXPECT_TRUE(info->GetBool("on", false));
  EXPECT_FALSE(info->GetBool("expr", true));
  float f[5];
  const float defs[5] = {9, 9, 9, 8, 7};
  EXPECT_TRUE(info->GetFloats("f", 5, f, defs));
  EXPECT_EQ(std::vector<float>(f, f + 5), (std::vector<float>{1.5f, 2.5f, 3.5f, 8, 7}));
  const char *hosts[][2] = {{"plain", "example.org"}, {"slash", "192.168.3.7"},  {"plus", "192.168.0.5"},
                            {"plus2", "192.168.0.7"}, {"plus3", "192.168.0.15"}, {"bad", "127.0.0.1"}};
  ReportCapture cap;
  char h[64];
  for (auto &r : hosts) {
    EXPECT_TRUE(info->GetHost(r[0], h));
    EXPECT_STREQ(h, r[1]) << r[0];
  }
  EXPECT_FALSE(info->GetHost("none", h));
  EXPECT_EQ(cap.joined, "W: QInfo:GetHost(); bad format of host IP (/37) for key 'bad'");
}

TEST_F(InfoTest, ReferencesInheritAndOverride) {
  auto info = ReadText("base\n{\nx=1\ny=2\nsub\n{\ns=9\n}\n}\nmid~base\n{\ny=3\n}\ntop~mid\n{\nz=4\n}\n");
  const std::pair<const char *, int> rows[] = {{"mid.x", 1}, {"mid.y", 3}, {"top.x", 1}, {"top.y", 3},
                                               {"top.z", 4}, {"top.sub.s", 9}, {"top.w", -1}};
  for (auto &[key, want] : rows) EXPECT_EQ(info->GetInt(key, -1), want) << key;
}

TEST_F(InfoTest, FallbackAnswersWhatIsMissingAndRequiredKeysWarn) {
  WriteFile("fb.ini", "shared=1\nonly_fb=2\n");
  auto info = ReadText("shared=5\n", QINFO_WARN_FALLBACK | QINFO_REQUIRED);
  info->SetFallback(new QInfo("fb.ini", QINFO_REQUIRED));
  ReportCapture cap;
  testing::internal::CaptureStderr();
  EXPECT_EQ(info->GetInt("shared", 0), 5);
  EXPECT_EQ(info->GetInt("only_fb", 0), 2);
  EXPECT_EQ(info->GetInt("b", 3), 3);
  std::string err = testing::internal::GetCapturedStderr();
  EXPECT_NE(err.find("QInfo: 'only_fb' only found in fallback file."), std::string::npos) << err;
  EXPECT_EQ(err.find("'shared' only found"), std::string::npos) << err;
  EXPECT_EQ(cap.joined, "W: QInfo: 'b' not found in info or fallback - required");
}

}  // namespace
