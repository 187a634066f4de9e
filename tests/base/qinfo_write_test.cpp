// Changing and writing trees: golden files, the setters, the overwrite
// question with the modification-time check, and the destructor's write.
#include "base/qfile.h"
#include "tests/base/qinfo_test_util.h"

using namespace qinfotest;

namespace {

std::string Data(const std::string &name) { return std::string(TYRO_TEST_DATA) + "/info/" + name; }

// Records the questions asked and answers with a fixed reply.
struct Question {
  static inline std::vector<std::string> asked;
  static inline bool reply = true;
  static bool Ask(const char *title, const char *text) {
    asked.push_back(std::string(title) + ": " + text);
    return reply;
  }
};

class WriteTest : public InfoTest {
 protected:
  void SetUp() override {
    InfoTest::SetUp();
    Question::asked.clear();
    Question::reply = true;
    old_ = QInfo::SetOverwriteQuestion(Question::Ask);
  }
  void TearDown() override {
    QInfo::SetOverwriteQuestion(old_);
    InfoTest::TearDown();
  }
  // Moves a file's last-write time, as an editor saving it would.
  static void Touch(const std::string &path, int seconds) {
    std::filesystem::last_write_time(path, std::filesystem::last_write_time(path) + std::chrono::seconds(seconds));
  }
  // t.ini holding a=1, read and then changed to a=2.
  static std::unique_ptr<QInfo> Changed() {
    auto info = ReadText("a=1\n");
    info->SetInt("a", 2);
    return info;
  }
  QInfoQuestion old_;
};

// ---- Golden files -------------------------------------------------------------------

struct GoldenCase {
  const char *input, *expected;
  bool change;
  const char *reports;
};

const GoldenCase kGolden[] = {
    {"syntax.ini", "syntax.expected.ini", true, ""},
    {"lineends.ini", "lineends.expected.ini", false, ""},
    {"lastline.ini", "lastline.expected.ini", false, ""},
    {"broken.ini", "broken.expected.ini", false,
     "W: QInfo(in.ini): key with '.' found (a.b) - won't work; use { } to define subtrees (line 1) | "
     "E: QInfo(in.ini); more '}' brackets than '{' near line 2 | "
     "E: QInfo(in.ini); brackets don't match; still 1 closing bracket(s) expected at end of file."},
};

void PrintTo(const GoldenCase &c, std::ostream *os) { *os << c.input; }

class Golden : public WriteTest, public testing::WithParamInterface<GoldenCase> {};

TEST_P(Golden, ReadChangeWriteAndReadBack) {
  const GoldenCase &c = GetParam();
  WriteFile("in.ini", ReadFile(Data(c.input)));
  ReportCapture cap;
  {
    QInfo info("in.ini");
    if (c.change) {
      EXPECT_TRUE(info.SetString("resolution.width", "1280"));
      EXPECT_TRUE(info.SetString("last.car", "x"));
      EXPECT_TRUE(info.Delete("old"));
      EXPECT_TRUE(info.Delete("wheel0.pacejka.a2"));
      EXPECT_TRUE(info.SetString("wheel1.radius", "0.34"));
      EXPECT_TRUE(info.SetFloat("car.mass", 1250.5f));
      EXPECT_TRUE(info.SetString("deep.inner.y", "2"));
    }
    ASSERT_TRUE(info.Write("out.ini", false));
  }
  EXPECT_EQ(cap.joined, c.reports);
  EXPECT_EQ(ReadFile("out.ini"), ReadFile(Data(c.expected))) << c.input;
  EXPECT_EQ(Question::asked.size(), 0u);
  // The written text reads back to the same text.
  QInfo again("out.ini");
  ASSERT_TRUE(again.Write("again.ini", false));
  EXPECT_EQ(ReadFile("again.ini"), ReadFile(Data(c.expected)));
}

INSTANTIATE_TEST_SUITE_P(Files, Golden, testing::ValuesIn(kGolden), [](const auto &info) {
  std::string n = info.param.input;
  return n.substr(0, n.find('.'));
});

// ---- Setters -------------------------------------------------------------------------

TEST_F(WriteTest, SetFailsOnGroupsAndThroughKeys) {
  auto info = ReadText("a\n{\nb=1\n}\n");
  for (const char *key : {"a", "a.b.c", "", "..", static_cast<const char *>(nullptr)})
    EXPECT_FALSE(info->SetString(key, "v")) << (key ? key : "null");
  EXPECT_FALSE(info->GetFlags() & QINFO_MODIFIED);
  EXPECT_EQ(Dump(*info), "a{b=1}");
}

TEST_F(WriteTest, SettersFormatNumbers) {
  QInfo info("n.ini", QINFO_NO_READ);
  const float v[3] = {1.0f, 2.5f, -0.125f};
  EXPECT_TRUE(info.SetInt("i", -42));
  EXPECT_TRUE(info.SetFloat("f", 1.5f));
  EXPECT_TRUE(info.SetFloats("fs", v, 3));
  EXPECT_TRUE(info.SetFloats("none", v, 0));
  EXPECT_TRUE(info.SetString("s", qstring("txt")));
  EXPECT_EQ(Dump(info), "i=-42 f=1.500000 fs=1.000000 2.500000 -0.125000 none= s=txt");
  EXPECT_EQ(info.GetInt("i", 0), -42);  // setters' keys are found by the walk
  info.SetFlags(0);
}

TEST_F(WriteTest, SameTextLeavesTreeUnmodifiedAndDestructorWritesNothing) {
  WriteFile("t.ini", "a=1\n");
  Touch("t.ini", -100);
  auto before = std::filesystem::last_write_time("t.ini");
  {
    QInfo info("t.ini");
    EXPECT_TRUE(info.SetString("a", "1"));
    EXPECT_FALSE(info.GetFlags() & QINFO_MODIFIED);
  }
  EXPECT_EQ(std::filesystem::last_write_time("t.ini"), before);
}

TEST_F(WriteTest, DeletedKeyIsNotWrittenButStillFoundAndSetMakesANewOne) {
  auto info = ReadText("a=1\nb=2\ng\n{\nc=3\n}\n");
  EXPECT_TRUE(info->Delete("g"));
  EXPECT_TRUE(info->Delete("a"));
  EXPECT_EQ(info->GetInt("a", 0), 1);
  EXPECT_EQ(info->GetInt("g.c", 0), 3);
  ASSERT_TRUE(info->Write("out.ini", false));
  EXPECT_EQ(ReadFile("out.ini"), "b=2\n");
  EXPECT_TRUE(info->SetString("a", "5"));
  ASSERT_TRUE(info->Write("out.ini", false));
  EXPECT_EQ(ReadFile("out.ini"), "b=2\na=5\n");
}

TEST_F(WriteTest, ReferenceAndValueTogetherDoNotReadBack) {
  auto info = ReadText("base\n{\nx=1\n}\ncar~base\n{\ny=2\n}\n");
  info->FindNode("car")->SetValue("v");
  ASSERT_TRUE(info->Write("out.ini", false));
  EXPECT_EQ(ReadFile("out.ini"), "base\n{\n  x=1\n}\ncar~base=v\n{\n  y=2\n}\n");
  ReportCapture cap;
  QInfo back("out.ini");
  EXPECT_EQ(cap.joined, "W: QInfo(out.ini): reference (~) to unknown tree 'base=v' in line 4");
}

TEST_F(WriteTest, RootGroupsEmptyGroupsAndDeepTrees) {
  QInfo info("n.ini", QINFO_NO_READ);
  info.SetString("root.x", "1");  // groups named root have no braces
  info.SetString("g.root.y", "2");
  ASSERT_TRUE(info.Write("out.ini", false));
  EXPECT_EQ(ReadFile("out.ini"), "  x=1\ng\n{\n    y=2\n}\n");
  info.Clear();
  std::string key;
  for (int i = 0; i < 300; i++) key += "d.";
  info.SetString((key + "k").c_str(), "1");
  auto *e = new QInfoNode(NODE_TREE, "empty", 5);
  e->parent = info.GetRoot();
  info.GetRoot()->firstChild->next = e;
  ASSERT_TRUE(info.Write("out.ini", false));
  std::string text = ReadFile("out.ini");
  EXPECT_EQ(text.substr(text.size() - 12), "}\nempty\n{\n}\n");
  info.SetFlags(0);
}

TEST_F(WriteTest, UnknownNodeKindIsAnInternalError) {
  auto info = ReadText("a=1\nb=2\n");
  info->FindNode("a")->kind = 7;
  ReportCapture cap;
  ASSERT_TRUE(info->Write("out.ini", false));
  EXPECT_EQ(cap.joined, "E: QInfo:Write() internal error; unknown node type");
  EXPECT_EQ(ReadFile("out.ini"), "b=2\n");
}

TEST_F(WriteTest, FailedWriteWarnsAndKeepsTheTreeModified) {
  auto info = Changed();
  ReportCapture cap;
  EXPECT_FALSE(info->Write("nodir/x.ini", false));
  EXPECT_EQ(cap.joined, "W: QInfo:Write(); file (nodir/x.ini) can't be written");
  cap.joined.clear();
  qfFailNextWrites(1);
  EXPECT_FALSE(info->Write());
  EXPECT_EQ(cap.joined, "W: QInfo:Write(); file (t.ini) can't be written");
  EXPECT_TRUE(info->GetFlags() & QINFO_MODIFIED);
  EXPECT_TRUE(info->Write());  // the next try goes through
  EXPECT_EQ(ReadFile("t.ini"), "a=2\n");
}

// ---- Write with the modification check ------------------------------------------------

TEST_F(WriteTest, OwnFileIsWrittenOnlyWhenModifiedAndWithoutQuestion) {
  auto info = ReadText("a=1\n");
  std::filesystem::remove("t.ini");
  EXPECT_TRUE(info->Write());
  EXPECT_FALSE(std::filesystem::exists("t.ini"));
  for (int v : {2, 3}) {  // the time stored by the first write is renewed
    info->SetInt("a", v);
    EXPECT_TRUE(info->Write());
    EXPECT_EQ(ReadFile("t.ini"), "a=" + std::to_string(v) + "\n");
  }
  EXPECT_EQ(Question::asked.size(), 0u);
}

TEST_F(WriteTest, FileChangedOnDiskAsksUnlessAskIsOff) {
  auto info = Changed();
  Touch("t.ini", 5);
  EXPECT_TRUE(info->Write(nullptr, false));
  EXPECT_EQ(Question::asked.size(), 0u);
  info->SetInt("a", 3);
  Touch("t.ini", 5);
  EXPECT_TRUE(info->Write());
  ASSERT_EQ(Question::asked.size(), 1u);
  EXPECT_EQ(Question::asked[0],
            "File was modified: The file 't.ini' was modified - it will be overwritten; do you want to overwrite?");
  EXPECT_EQ(ReadFile("t.ini"), "a=3\n");
  QInfo::SetOverwriteQuestion(nullptr);  // without a handler the answer is ok
  info->SetInt("a", 4);
  Touch("t.ini", 5);
  EXPECT_TRUE(info->Write());
  EXPECT_EQ(ReadFile("t.ini"), "a=4\n");
}

TEST_F(WriteTest, CancelKeepsFileAndDestructorDoesNotAskAgain) {
  {
    auto info = Changed();
    WriteFile("t.ini", "edited=1\n");
    Touch("t.ini", 5);
    Question::reply = false;
    EXPECT_FALSE(info->Write());
    EXPECT_FALSE(info->GetFlags() & QINFO_MODIFIED);
  }
  EXPECT_EQ(Question::asked.size(), 1u);
  EXPECT_EQ(ReadFile("t.ini"), "edited=1\n");
}

TEST_F(WriteTest, OtherExistingFileAsksNewFileDoesNot) {
  WriteFile("other.ini", "x=1\n");
  Touch("other.ini", -50);
  auto info = ReadText("a=1\n");
  EXPECT_TRUE(info->Write("fresh.ini", true));
  EXPECT_EQ(Question::asked.size(), 0u);
  EXPECT_TRUE(info->Write("other.ini", true));
  EXPECT_EQ(Question::asked.size(), 1u);
  EXPECT_EQ(ReadFile("other.ini"), "a=1\n");
  EXPECT_EQ(ReadFile("fresh.ini"), "a=1\n");
}

TEST_F(WriteTest, NoReadFlagSkipsTheCheckOnce) {
  WriteFile("n.ini", "old=1\n");
  QInfo info("n.ini", QINFO_NO_READ);
  info.SetString("a", "1");
  EXPECT_TRUE(info.Write());
  EXPECT_FALSE(info.GetFlags() & QINFO_NO_READ);
  EXPECT_EQ(Question::asked.size(), 0u);
  EXPECT_EQ(ReadFile("n.ini"), "a=1\n");
}

// ---- Lifetime -----------------------------------------------------------------------

TEST_F(WriteTest, DestructorWritesMissingFileAndAsksWhenFileChanged) {
  {
    QInfo info("settings.ini", QINFO_SILENT);
    info.SetString("last.car", "f1");
  }
  EXPECT_EQ(ReadFile("settings.ini"), "last\n{\n  car=f1\n}\n");
  EXPECT_EQ(Question::asked.size(), 0u);
  {
    auto info = Changed();
    Touch("t.ini", 5);
    Question::reply = false;
  }
  EXPECT_EQ(Question::asked.size(), 1u);
  EXPECT_EQ(ReadFile("t.ini"), "a=1\n");
}

TEST_F(WriteTest, ReloadWritesThenRereadsAndClearEmpties) {
  WriteFile("fb.ini", "f=1\n");
  auto info = Changed();
  info->SetFallback(new QInfo("fb.ini"));
  WriteFile("fb.ini", "f=9\n");
  info->Reload();
  EXPECT_EQ(ReadFile("t.ini"), "a=2\n");
  EXPECT_EQ(info->GetInt("a", 0), 2);
  EXPECT_EQ(info->GetInt("f", 0), 9);
  EXPECT_FALSE(info->GetFlags() & QINFO_MODIFIED);
  info->SetInt("a", 5);
  info->Clear();
  EXPECT_EQ(Dump(*info), "");
  EXPECT_EQ(info->GetInt("a", -1), -1);  // nothing left in the hash either
  EXPECT_TRUE(info->GetFlags() & QINFO_MODIFIED);
  info->SetFlags(0);
}

}  // namespace
