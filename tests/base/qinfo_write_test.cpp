// Changing and writing trees: golden files, the setters and the overwrite
// question with the modification-time check.
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

TEST_F(WriteTest, GoldenFilesReadChangeWriteAndReadBack) {
  for (const GoldenCase &c : kGolden) {
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
    QInfo again("out.ini");  // the written text reads back to the same text
    ASSERT_TRUE(again.Write("again.ini", false));
    EXPECT_EQ(ReadFile("again.ini"), ReadFile(Data(c.expected))) << c.input;
  }
  EXPECT_EQ(Question::asked.size(), 0u);
}

TEST_F(WriteTest, SettersFailOnGroupsAndThroughKeysAndFormatNumbers) {
  auto info = ReadText("a\n{\nb=1\n}\n");
  for (const char *key : {"a", "a.b.c", "", "..", static_cast<const char *>(nullptr)})
    EXPECT_FALSE(info->SetString(key, "v")) << (key ? key : "null");
  EXPECT_FALSE(info->GetFlags() & QINFO_MODIFIED);
  EXPECT_EQ(Dump(*info), "a{b=1}");
  const float v[3] = {1.0f, 2.5f, -0.125f};
  EXPECT_TRUE(info->SetInt("i", -42));
  EXPECT_TRUE(info->SetFloat("f", 1.5f));
  EXPECT_TRUE(info->SetFloats("fs", v, 3));
  EXPECT_TRUE(info->SetFloats("none", v, 0));
  EXPECT_EQ(Dump(*info), "a{b=1} i=-42 f=1.500000 fs=1.000000 2.500000 -0.125000 none=");
  EXPECT_EQ(info->GetInt("i", 0), -42);  // setters' keys are found by the walk
  info->SetFlags(0);
}

// Deleted keys stay in the hash until the next read; setters do not hash.
TEST_F(WriteTest, DeletedKeyIsNotWrittenButStillFoundAndSetMakesANewOne) {
  auto info = ReadText("a=1\nb=2\ng\n{\nc=3\n}\n");
  info->SetString("made", "3");
  EXPECT_TRUE(info->Delete("g"));
  EXPECT_TRUE(info->Delete("a"));
  EXPECT_TRUE(info->Delete("made"));
  EXPECT_FALSE(info->Delete("nothere"));
  EXPECT_EQ(info->GetInt("a", 0), 1);
  EXPECT_EQ(info->GetInt("g.c", 0), 3);
  EXPECT_EQ(info->GetInt("made", 0), 0);
  EXPECT_EQ(info->FindNode("a"), nullptr);
  ASSERT_TRUE(info->Write("out.ini", false));
  EXPECT_EQ(ReadFile("out.ini"), "b=2\n");
  EXPECT_TRUE(info->SetString("a", "5"));
  ASSERT_TRUE(info->Write("out.ini", false));
  EXPECT_EQ(ReadFile("out.ini"), "b=2\na=5\n");
}

TEST_F(WriteTest, ReferenceWithValueAndRootGroups) {
  auto ref = ReadText("base\n{\nx=1\n}\ncar~base\n{\ny=2\n}\n");
  ref->FindNode("car")->SetValue("v");  // written on one line: does not read back
  ASSERT_TRUE(ref->Write("out.ini", false));
  EXPECT_EQ(ReadFile("out.ini"), "base\n{\n  x=1\n}\ncar~base=v\n{\n  y=2\n}\n");
  QInfo info("n.ini", QINFO_NO_READ);
  info.SetString("root.x", "1");  // groups named root have no braces
  info.SetString("g.root.y", "2");
  ASSERT_TRUE(info.Write("out.ini", false));
  EXPECT_EQ(ReadFile("out.ini"), "  x=1\ng\n{\n    y=2\n}\n");
  info.SetFlags(0);
}

TEST_F(WriteTest, WriteErrors) {
  auto info = ReadText("a=1\nb=2\n");
  info->FindNode("a")->kind = 7;
  ReportCapture cap;
  ASSERT_TRUE(info->Write("out.ini", false));
  EXPECT_EQ(cap.joined, "E: QInfo:Write() internal error; unknown node type");
  EXPECT_EQ(ReadFile("out.ini"), "b=2\n");
  cap.joined.clear();
  info->FindNode("a")->kind = NODE_KEY;
  EXPECT_FALSE(info->Write("nodir/x.ini", false));
  EXPECT_EQ(cap.joined, "W: QInfo:Write(); file (nodir/x.ini) can't be written");
  cap.joined.clear();
  info->SetInt("a", 2);
  qfFailNextWrites(1);
  EXPECT_FALSE(info->Write());
  EXPECT_EQ(cap.joined, "W: QInfo:Write(); file (t.ini) can't be written");
  EXPECT_TRUE(info->GetFlags() & QINFO_MODIFIED);  // the next try goes through
  EXPECT_TRUE(info->Write());
  EXPECT_EQ(ReadFile("t.ini"), "a=2\nb=2\n");
}

// t.ini (a=1) is read and changed to a=2, then written to `target`.
struct AskCase {
  const char *target;  // nullptr: t.ini itself
  bool ask, touched, handler, reply, written;
  size_t asked;
};

const AskCase kAsk[] = {
    {nullptr, true, false, true, true, true, 0},       // unchanged on disk: no question
    {nullptr, false, true, true, true, true, 0},       // without ask nothing is compared
    {nullptr, true, true, true, true, true, 1},        // changed on disk: asked, ok
    {nullptr, true, true, true, false, false, 1},      // cancelled: left as it is
    {nullptr, true, true, false, true, true, 0},       // no handler: the answer is ok
    {"other.ini", true, false, true, true, true, 1},   // another existing file
    {"fresh.ini", true, false, true, true, true, 0},   // a new file
};

TEST_F(WriteTest, OverwriteQuestion) {
  for (const AskCase &c : kAsk) {
    std::string target = c.target ? c.target : "t.ini";
    SCOPED_TRACE(&c - kAsk);
    Question::asked.clear();
    Question::reply = c.reply;
    QInfo::SetOverwriteQuestion(c.handler ? Question::Ask : nullptr);
    WriteFile("other.ini", "x=1\n");
    Touch("other.ini", -50);  // its time differs from the one stored for t.ini
    std::filesystem::remove("fresh.ini");
    {
      auto info = Changed();
      if (c.touched) Touch("t.ini", 5);
      EXPECT_EQ(info->Write(c.target, c.ask), c.written);
    }  // a question asked is not asked again by the destructor
    ASSERT_EQ(Question::asked.size(), c.asked);
    for (const std::string &q : Question::asked)
      EXPECT_EQ(q, "File was modified: The file '" + target +
                       "' was modified - it will be overwritten; do you want to overwrite?");
    EXPECT_EQ(ReadFile(target), c.written ? "a=2\n" : "a=1\n");
  }
}

}  // namespace
