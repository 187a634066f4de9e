// Problems as values: the text's place read back, and reports collected
// per thread while a collector lives.
#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "diag/qcollect.h"
#include "diag/qdebug.h"

namespace {

TEST(QProblem, PlaceReadFromTheTextAndWrittenBackTheSame) {
  struct Case {
    const char *text, *file;
    int line;
    const char *message;
  } cases[] = {
      {"data.csv:12: column 3 (fy): 'abc' is not a number\n", "data.csv", 12, "column 3 (fy): 'abc' is not a number"},
      {"/a b/c.tir:7: bad key", "/a b/c.tir", 7, "bad key"},
      {"nope.tir: no such file", "", 0, "nope.tir: no such file"},  // no line: all message
      {"x.csv:0: no line 0", "", 0, "x.csv:0: no line 0"},
      {"x.csv:12 no colon after the line", "", 0, "x.csv:12 no colon after the line"},
      {":3: no file", "", 0, ":3: no file"},
      {"first\nsecond:4: the file has a line break", "", 0, "first\nsecond:4: the file has a line break"},
      {"plain", "", 0, "plain"},
  };
  for (const Case &c : cases) {
    QProblem p = QProblemFromText(c.text, true);
    EXPECT_EQ(p.file, c.file) << c.text;
    EXPECT_EQ(p.line, c.line) << c.text;
    EXPECT_EQ(p.message, c.message) << c.text;
    EXPECT_TRUE(p.warning);
    std::string text = c.text;
    while (!text.empty() && text.back() == '\n') text.pop_back();
    EXPECT_EQ(p.Text(), text) << "written back differently";
  }
  QProblem about = QProblemFromText("nope.tir: no such file");
  QProblemPlace(&about, "nope.tir");
  EXPECT_TRUE(about.file == "nope.tir" && about.line == 0 && about.message == "no such file");
  EXPECT_EQ(about.Text(), "nope.tir: no such file");
  QProblem other = QProblemFromText("--start: nope.tir: no such file");
  QProblemPlace(&other, "nope.tir");
  EXPECT_TRUE(other.file.empty());
  EXPECT_FALSE(QProblemsHaveError({QProblemFromText("w", true)}));
  EXPECT_TRUE(QProblemsHaveError({QProblemFromText("w", true), about}));
}

int Outside(const char *, const char *) { return 0; }

TEST(QReportCollector, CollectsItsThreadsReportsInOrderAndGivesTheHooksBack) {
  QReportHook before = qSetErrorHook(Outside);
  {
    QReportCollector outer;
    QERR("a.csv:2: first");
    {
      QReportCollector inner;  // the innermost collects
      QWARN("careful");
      QDBG("dropped");
      ASSERT_EQ(inner.problems.size(), 1u);
      EXPECT_TRUE(inner.problems[0].warning && inner.problems[0].message == "careful");
    }
    // another thread's collector keeps its own reports
    QReportCollector *seen = nullptr;
    size_t otherCount = 0;
    std::thread t([&] {
      QReportCollector mine;
      QERR("b.csv:9: theirs");
      otherCount = mine.problems.size();
      seen = &mine;
    });
    t.join();
    EXPECT_EQ(otherCount, 1u);
    EXPECT_NE(seen, &outer);
    QERR("second");
    ASSERT_EQ(outer.problems.size(), 2u);
    EXPECT_TRUE(outer.problems[0].file == "a.csv" && outer.problems[0].line == 2 && !outer.problems[0].warning);
    EXPECT_EQ(outer.problems[1].message, "second");
  }
  EXPECT_EQ(qSetErrorHook(before), Outside) << "the hook before the collectors is back";
}

}  // namespace
