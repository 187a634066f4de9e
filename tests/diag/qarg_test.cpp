// Argument tracing, QOLOF and the reporters that end the process.
#include <unistd.h>

#include <thread>

#include "tests/base/capture.h"
#include "tests/base/scratch.h"
#include "diag/qdiag_internal.h"

namespace fs = std::filesystem;

namespace {

class ArgTest : public testing::Test {
 protected:
  void SetUp() override {
    qargReset();
    qSetDevFlags(QDEV_ARGUMENT_TRACING);
    prevMask_ = qGetLogMask();
    qSetLogMask(0);  // notes stay out of the log and stderr
  }
  void TearDown() override {
    qSetLogMask(prevMask_);
    qSetDevFlags(0);
    qargReset();
  }
  ReportCapture cap_;
  unsigned prevMask_;
};

TEST_F(ArgTest, OverflowAndUnderflowReportedOnceTextsCut) {
  std::string long_(300, 'x');
  qargPush("f", "F::g", 0, "%s", long_.c_str());
  for (int i = 1; i < 101; i++) qargPush("f", "F::g", i, "entry %d", i);
  EXPECT_EQ(qargDepth(0), 101);
  EXPECT_STREQ(qargText(0, 99), "entry 99");
  EXPECT_EQ(std::string(qargText(0, 0)), std::string(200, 'x'));
  for (int i = 0; i < 103; i++) qargPop();
  EXPECT_EQ(qargDepth(0), 0);
  EXPECT_EQ(cap_.errors,
            "qargPush overflow; verify your qargPush/qargPop calls\n"
            "qargPop underflow; verify your qargPush/qargPop calls\n");
  qSetDevFlags(0);
  qargPush("f", "F::g", 1, "ignored without the development flag");
  EXPECT_EQ(qargDepth(0), 0);
}

TEST_F(ArgTest, ThirdThreadSharesSlotZero) {
  qargPush("f", "main", 1, "main thread");  // slot 0
  int second = -1, third = -1;
  std::thread a([&] {
    second = qargFindThreadID();
    std::thread b([&] { third = qargFindThreadID(); });
    b.join();
  });
  a.join();
  EXPECT_EQ(second, 1);
  EXPECT_EQ(third, 0);
  EXPECT_NE(cap_.errors.find("No space for qarg thread "), std::string::npos) << cap_.errors;
}

TEST_F(ScratchTest, QolofPrintsLinesAroundWithMarkerAndAssertShowsSource) {
  WriteFile("src.cpp", "one\ntwo\nthree\nfour\n");
  ReportCapture cap;
  QOLOF("src.cpp", 2, 0);
  QOLOF("src.cpp", 4, 3);  // the last line: output stops at the end of the file
  EXPECT_EQ(cap.debug, "    1: one\n*   2: two\n    3: three\n" "       3: three\n*      4: four\n");
  qasserterr("no/such/file.cpp", 12);
  EXPECT_EQ(cap.errors, "Assertion failed in 'no/such/file.cpp', line 12\n");
}

// The death test's child runs SetUp again: the folder must not depend on the process.
TEST(EndTest, FatalLogsThenCrashesExitMessageEndsNormally) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  fs::path log = fs::path(TYRO_BINARY_DIR) / "tests" / "qend" / "QLOG.txt";
  fs::create_directories(log.parent_path());
  EXPECT_DEATH(
      {
        qSetLogFileName(log.c_str());
        qSetMessageBoxHandler([](const char *text, const char *title) { fprintf(stderr, "BOX<%s|%s>\n", title, text); });
        qfatal("wheel %d lost", 3);
      },
      "wheel 3 lost\nBOX<Fatal error - the program will exit\\|wheel 3 lost>");
  EXPECT_EXIT(
      {
        qSetLogFileName(log.c_str());
        qSetMessageBoxHandler([](const char *, const char *) {});
        qexitmsg("done at %d%%", 100);
      },
      testing::ExitedWithCode(0), "");
  std::string s = ReadFile(log);
  EXPECT_NE(s.find("(FATAL): [-] wheel 3 lost [%s]\n"), std::string::npos) << s;
  EXPECT_NE(s.find("(INFO ): [-] Going to crash, reason: qfatal [qdebug:444 / QCrash]\n"), std::string::npos) << s;
  EXPECT_NE(s.find("(FATAL): [-] done at 100% [%s]\n"), std::string::npos) << s;
}

}  // namespace
