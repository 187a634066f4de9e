// Queries on a tree: the lookup (hash probe, walk, references, fallback),
// the typed getters with their number checks, and node access.
#include <cmath>

#include "base/qstring.h"
#include "tests/base/qinfo_test_util.h"

using namespace qinfotest;

namespace {

// ---- Typed getters, one row per (value, getter) -----------------------------------

struct NumberCase {
  const char *id;
  const char *value;  // the text after "x="
  int asInt;
  float asFloat;
  const char *intWarning;    // reason, or "" for none
  const char *floatWarning;  // reason, or "" for none
};

const NumberCase kNumbers[] = {
    {"N01 plain", "42", 42, 42.0f, "", ""},
    {"N02 leading blank", " 5", 5, 5.0f, "", ""},
    {"N03 decimal point", "12.5", 12, 12.5f, "a '.' is not allowed (floating point)", ""},
    {"N04 comma", "1,5", 1, 1.0f, "character ',' is not allowed", "use '.' instead of ','"},
    {"N05 upper-case E", "1E3", 1, 1000.0f, "character 'E' is not allowed", "character 'E' is not allowed"},
    {"N06 lower-case e", "1e3", 1, 1000.0f, "character 'e' is not allowed", ""},
    {"N07 unary minus takes the rest", "-2+3", -5, -2.0f, "", ""},
    {"N08 expression", "2*3%4", 2, 2.0f, "", "character '*' is not allowed"},
    {"N09 hex", "$ff", 255, 0.0f, "character '$' is not allowed", "character '$' is not allowed"},
    {"N10 empty", "", 0, 0.0f, "", ""},
};

void PrintTo(const NumberCase &c, std::ostream *os) { *os << c.id; }

class Numbers : public InfoTest, public testing::WithParamInterface<NumberCase> {};

TEST_P(Numbers, IntAndFloat) {
  const NumberCase &c = GetParam();
  auto info = ReadText(std::string("x=") + c.value + "\n");
  Reports reports;
  EXPECT_EQ(info->GetInt("x", -99), c.asInt) << c.id;
  std::string want = *c.intWarning ? std::string("W: x value '") + c.value +
                                         "' (in t.ini) is not a valid integer: " + c.intWarning
                                   : "";
  EXPECT_EQ(reports.Joined(), want) << c.id;
  reports.Clear();
  EXPECT_FLOAT_EQ(info->GetFloat("x", -99.0f), c.asFloat) << c.id;
  want = *c.floatWarning ? std::string("W: x value '") + c.value + "' (in t.ini) is not a valid float: " +
                               c.floatWarning
                         : "";
  EXPECT_EQ(reports.Joined(), want) << c.id;
}

INSTANTIATE_TEST_SUITE_P(Getters, Numbers, testing::ValuesIn(kNumbers),
                         [](const auto &info) { return "N" + std::to_string(info.index + 1); });

TEST_F(InfoTest, MissingKeyGivesDefaultSilently) {
  auto info = ReadText("a=1\n");
  Reports reports;
  char buf[16];
  qstring s;
  EXPECT_EQ(info->GetInt("resolution.width", 910), 910);
  EXPECT_FLOAT_EQ(info->GetFloat("x", 2.5f), 2.5f);
  EXPECT_FALSE(info->GetString("x", buf, "dflt"));
  EXPECT_STREQ(buf, "dflt");
  EXPECT_FALSE(info->GetString("x", buf));
  EXPECT_STREQ(buf, "");
  EXPECT_FALSE(info->GetString("x", s, "d2"));
  EXPECT_STREQ(s.c_str(), "d2");
  EXPECT_TRUE(info->GetBool("x", true));
  EXPECT_EQ(reports.Joined(), "");
}

TEST_F(InfoTest, BareNameReadsAsQuestionMark) {
  auto info = ReadText("flag\n");
  Reports reports;
  char buf[8];
  EXPECT_TRUE(info->GetString("flag", buf));
  EXPECT_STREQ(buf, "?");
  info->GetInt("flag", 1);
  EXPECT_EQ(reports.Joined(), "W: flag value '?' (in t.ini) is not a valid integer: character '?' is not allowed");
}

TEST_F(InfoTest, LastLineByteFFWarnsButConverts) {
  auto info = ReadText("a0=1.5");
  Reports reports;
  EXPECT_FLOAT_EQ(info->GetFloat("a0", 0), 1.5f);
  EXPECT_EQ(reports.Joined(),
            "W: a0 value '1.5\xFF' (in t.ini) is not a valid float: character '\xFF' is not allowed");
}

TEST_F(InfoTest, StringKeepsBlanksAndIsCut) {
  auto info = ReadText("x = 5\nlong=abcdefghij\n");
  char buf[64], small[5];
  EXPECT_TRUE(info->GetString("x", buf));
  EXPECT_STREQ(buf, " 5");
  EXPECT_TRUE(info->GetString("long", small));
  EXPECT_STREQ(small, "abcd");
  qstring key("x"), out;
  EXPECT_TRUE(info->GetString(key, out));
  EXPECT_STREQ(out.c_str(), " 5");
  EXPECT_EQ(info->GetInt(key, 0), 5);
  EXPECT_FLOAT_EQ(info->GetFloat(key, 0), 5.0f);
}

TEST_F(InfoTest, KeysAreCaseSensitive) {
  auto info = ReadText("wheel0\n{\npacejka\n{\na0=1.6\n}\n}\n");
  EXPECT_FLOAT_EQ(info->GetFloat("wheel0.pacejka.a0", 0), 1.6f);
  EXPECT_FLOAT_EQ(info->GetFloat("Wheel0.pacejka.a0", 7), 7.0f);
}

TEST_F(InfoTest, BoolsListsAndVectors) {
  auto info = ReadText("on=1\noff=0\nexpr=2-2\nf=1.5, 2.5 ,,3.5\ni=1 2,$10 4 5\n");
  EXPECT_TRUE(info->GetBool("on", false));
  EXPECT_FALSE(info->GetBool("off", true));
  EXPECT_FALSE(info->GetBool("expr", true));

  float f[5];
  const float defs[5] = {9, 9, 9, 8, 7};
  EXPECT_TRUE(info->GetFloats("f", 5, f, defs));
  EXPECT_EQ(std::vector<float>(f, f + 5), (std::vector<float>{1.5f, 2.5f, 3.5f, 8, 7}));
  EXPECT_TRUE(info->GetFloats("f", 2, f));
  EXPECT_EQ(std::vector<float>(f, f + 2), (std::vector<float>{1.5f, 2.5f}));
  EXPECT_TRUE(info->GetFloats("none", 2, f));  // missing: zeros, still true
  EXPECT_EQ(std::vector<float>(f, f + 2), (std::vector<float>{0, 0}));

  int v[6];
  EXPECT_TRUE(info->GetInts("i", 6, v, -1));
  EXPECT_EQ(std::vector<int>(v, v + 6), (std::vector<int>{1, 2, 16, 4, 5, -1}));
  EXPECT_FALSE(info->GetInts("none", 3, v, 4));
  EXPECT_EQ(std::vector<int>(v, v + 3), (std::vector<int>{4, 4, 4}));
  EXPECT_TRUE(info->GetInt2("i", v));
  EXPECT_EQ(std::vector<int>(v, v + 2), (std::vector<int>{1, 2}));
  EXPECT_TRUE(info->GetInt3("i", v));
  EXPECT_EQ(v[2], 16);
  EXPECT_FALSE(info->GetInt4("none", v));
  EXPECT_EQ(std::vector<int>(v, v + 4), (std::vector<int>{0, 0, 0, 0}));
}

TEST_F(InfoTest, Hosts) {
  auto info = ReadText("plain=example.org\nslash=/3+7\nbad=/37\nplus=+5\nplus2=+5+2\nplus3=+15+2\n");
  Reports reports;
  char h[64];
  EXPECT_TRUE(info->GetHost("plain", h));
  EXPECT_STREQ(h, "example.org");
  EXPECT_TRUE(info->GetHost("slash", h));
  EXPECT_STREQ(h, "192.168.3.7");
  EXPECT_TRUE(info->GetHost("plus", h));
  EXPECT_STREQ(h, "192.168.0.5");
  EXPECT_TRUE(info->GetHost("plus2", h));
  EXPECT_STREQ(h, "192.168.0.7");
  EXPECT_TRUE(info->GetHost("plus3", h));  // second '+' not third: ignored
  EXPECT_STREQ(h, "192.168.0.15");
  EXPECT_FALSE(info->GetHost("none", h));
  EXPECT_STREQ(h, "");
  EXPECT_EQ(reports.Joined(), "");
  EXPECT_TRUE(info->GetHost("bad", h));
  EXPECT_STREQ(h, "127.0.0.1");
  EXPECT_EQ(reports.Joined(), "W: QInfo:GetHost(); bad format of host IP (/37) for key 'bad'");
}

// ---- The lookup -----------------------------------------------------------------------

TEST_F(InfoTest, FirstOfEqualKeysIsFound) {
  auto info = ReadText("a=1\na=2\ng\n{\nk=1\nk=2\n}\n");
  EXPECT_EQ(info->GetInt("a", 0), 1);
  EXPECT_EQ(info->GetInt("g.k", 0), 1);
}

TEST_F(InfoTest, GroupAnswersOnlyWithAValue) {
  auto info = ReadText("car=base\n{\nm=1\n}\ng\n{\nk=1\n}\n");
  qstring s;
  EXPECT_TRUE(info->GetString("car", s));
  EXPECT_STREQ(s.c_str(), "base");
  EXPECT_FALSE(info->GetString("g", s, "none"));
  EXPECT_STREQ(s.c_str(), "none");
  EXPECT_EQ(info->GetInt("g.k.x", 5), 5);  // a key with parts left over
}

TEST_F(InfoTest, ReferencesInheritAndOverride) {
  auto info = ReadText(
      "base\n{\nx=1\ny=2\nsub\n{\ns=9\n}\n}\n"
      "mid~base\n{\ny=3\n}\n"
      "top~mid\n{\nz=4\n}\n");
  EXPECT_EQ(info->GetInt("mid.x", 0), 1);
  EXPECT_EQ(info->GetInt("mid.y", 0), 3);
  EXPECT_EQ(info->GetInt("top.x", 0), 1);  // through two references
  EXPECT_EQ(info->GetInt("top.y", 0), 3);
  EXPECT_EQ(info->GetInt("top.z", 0), 4);
  EXPECT_EQ(info->GetInt("top.sub.s", 0), 9);
  EXPECT_EQ(info->GetInt("top.w", -1), -1);
}

TEST_F(InfoTest, UsedFlagMarksReadKeys) {
  auto info = ReadText("a=1\nb=2\ng\n{\nc=3\n}\n");
  info->GetInt("a", 0);
  info->GetInt("g.c", 0);
  EXPECT_TRUE(info->FindNode("a")->flags & NODEF_USED);
  EXPECT_FALSE(info->FindNode("b")->flags & NODEF_USED);
  EXPECT_TRUE(info->FindNode("g.c")->flags & NODEF_USED);
}

TEST_F(InfoTest, DeletedKeyStillFoundThroughHashUntilReread) {
  auto info = ReadText("a=1\ng\n{\nk=2\n}\n");
  info->SetString("made", "3");  // setters do not hash: only the walk finds it
  EXPECT_TRUE(info->Delete("a"));
  EXPECT_TRUE(info->Delete("made"));
  EXPECT_FALSE(info->Delete("nothere"));
  EXPECT_FALSE(info->Delete(""));
  EXPECT_TRUE(info->GetFlags() & QINFO_MODIFIED);
  EXPECT_EQ(info->GetInt("a", 0), 1);
  EXPECT_EQ(info->GetInt("made", 0), 0);
  EXPECT_EQ(info->FindNode("a"), nullptr);
  info->SetFlags(info->GetFlags() & ~QINFO_MODIFIED);
}

TEST_F(InfoTest, FallbackAnswersWhatIsMissing) {
  WriteFile("fb.ini", "shared=1\nonly_fb=2\n");
  auto info = ReadText("shared=5\n", QINFO_WARN_FALLBACK);
  info->SetFallback(new QInfo("fb.ini"));
  testing::internal::CaptureStderr();
  EXPECT_EQ(info->GetInt("shared", 0), 5);
  EXPECT_EQ(info->GetInt("only_fb", 0), 2);
  EXPECT_EQ(info->GetInt("in_neither", 7), 7);
  std::string err = testing::internal::GetCapturedStderr();
  EXPECT_NE(err.find("QInfo: 'only_fb' only found in fallback file."), std::string::npos) << err;
  EXPECT_EQ(err.find("'shared' only found"), std::string::npos) << err;
}

TEST_F(InfoTest, RequiredKeyWarns) {
  auto info = ReadText("a=1\n", QINFO_REQUIRED);
  Reports reports;
  EXPECT_EQ(info->GetInt("a", 0), 1);
  EXPECT_EQ(info->GetInt("b", 3), 3);
  EXPECT_EQ(reports.Joined(), "W: QInfo: 'b' not found in info or fallback - required");
}

TEST_F(InfoTest, RequiredIsAskedOfTheFallback) {
  WriteFile("fb.ini", "x=1\n");
  auto info = ReadText("a=1\n", QINFO_REQUIRED);
  info->SetFallback(new QInfo("fb.ini", QINFO_REQUIRED));
  Reports reports;
  EXPECT_EQ(info->GetInt("x", 0), 1);
  EXPECT_EQ(info->GetInt("b", 3), 3);
  EXPECT_EQ(reports.Joined(), "W: QInfo: 'b' not found in info or fallback - required");
}

// ---- Node access -------------------------------------------------------------------

TEST_F(InfoTest, FindNodeAndCountChildren) {
  auto info = ReadText("g\n{\n;c\na=1\nsub\n{\nx=1\n}\n}\nk=2\nref~g\n");
  EXPECT_EQ(info->FindNode(""), info->GetRoot());
  EXPECT_EQ(info->FindNode(nullptr), info->GetRoot());
  ASSERT_NE(info->FindNode("g.sub"), nullptr);
  EXPECT_EQ(info->FindNode("g.sub")->kind, unsigned(NODE_TREE));
  EXPECT_EQ(info->FindNode("ref.a"), info->FindNode("g.a"));
  EXPECT_EQ(info->FindNode("k.x"), nullptr);
  EXPECT_EQ(info->FindNode("g..a"), info->FindNode("g.a"));  // empty parts are skipped
  EXPECT_EQ(info->CountChildren("g"), 2);
  EXPECT_EQ(info->CountChildren(""), 3);
  EXPECT_EQ(info->CountChildren("k"), 0);
  EXPECT_EQ(info->CountChildren("none"), 0);
  info->Delete("g.a");
  EXPECT_EQ(info->CountChildren("g"), 1);
  info->SetFlags(0);
}

TEST_F(InfoTest, FullPathHoldsAtMostTenNames) {
  QInfo info("n.ini", QINFO_NO_READ);
  ASSERT_TRUE(info.SetString("a.b.c.d.e.f.g.h.i.j.k.l", "1"));
  qstring p;
  QInfo::GetFullPath(info.FindNode("a.b.c.d.e.f.g.h.i.j.k.l"), p);
  EXPECT_STREQ(p.c_str(), "c.d.e.f.g.h.i.j.k.l");
  QInfo::GetFullPath(info.GetRoot(), p);
  EXPECT_STREQ(p.c_str(), "");
  info.SetFlags(0);
}

}  // namespace
