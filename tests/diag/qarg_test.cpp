// Argument tracing, the trace file, QOLOF, and the reporters that end the
// process.
#include <unistd.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>

#include "ui/diag/qdebug.h"
#include "ui/diag/qdiag_internal.h"

namespace fs = std::filesystem;

namespace {

struct Captured {
  std::string err, dbg;
};
Captured *g_cap;

class ArgTest : public ::testing::Test {
 protected:
  void SetUp() override {
    qargReset();
    qSetDevFlags(QDEV_ARGUMENT_TRACING);
    g_cap = &cap_;
    prevErr_ = qSetErrorHook([](const char *, const char *m) { g_cap->err += m; return 0; });
    prevDbg_ = qSetDebugHook([](const char *, const char *m) { g_cap->dbg += m; return 0; });
    prevMask_ = qGetLogMask();
    qSetLogMask(0);  // notes stay out of the log and stderr
  }
  void TearDown() override {
    qSetErrorHook(prevErr_);
    qSetDebugHook(prevDbg_);
    qSetLogMask(prevMask_);
    qSetDevFlags(0);
    qargReset();
  }
  Captured cap_;
  QReportHook prevErr_, prevDbg_;
  unsigned prevMask_;
};

TEST_F(ArgTest, OverflowReportedOnceAndNeverUnderflows) {
  for (int i = 0; i < 101; i++) qargPush("f", "F::g", i, "entry %d", i);
  EXPECT_EQ(qargDepth(0), 101);
  EXPECT_STREQ(qargText(0, 99), "entry 99");
  for (int i = 0; i < 101; i++) qargPop();
  EXPECT_EQ(qargDepth(0), 0);
  EXPECT_EQ(cap_.err, "qargPush overflow; verify your qargPush/qargPop calls\n");
  qargPop();
  qargPop();
  EXPECT_EQ(cap_.err,
            "qargPush overflow; verify your qargPush/qargPop calls\n"
            "qargPop underflow; verify your qargPush/qargPop calls\n");
}

TEST_F(ArgTest, TextIsCutAt200Characters) {
  std::string long_(300, 'x');
  qargPush("f", "F::g", 1, "%s", long_.c_str());
  EXPECT_EQ(std::string(qargText(0, 0)), std::string(200, 'x'));
}

TEST_F(ArgTest, InactiveWithoutTheDevFlag) {
  qSetDevFlags(0);
  qargPush("f", "F::g", 1, "ignored");
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
  EXPECT_NE(cap_.err.find("No space for qarg thread "), std::string::npos) << cap_.err;
}

TEST_F(ArgTest, PrintShowsStacksTopDown) {
  qargPush("kpacejka", "KPacejka::Load", 10, "tyre %s", "front");
  qargPush("qinfo", "QInfo::Read", 20, "file %s", "car.ini");
  qargPrint("why", false);
  std::string want = "Argument stack(s) [why]:\n  Stack for threadID 0 [" + std::to_string(gettid()) +
                     "]:\nstack[1]=file car.ini\n  (set at qinfo line 20 in QInfo::Read()\n"
                     "stack[0]=tyre front\n  (set at kpacejka line 10 in KPacejka::Load()\n"
                     "  Stack for threadID 1 [0]:\n<empty stack> (is dev.argument_tracing set to 1?)\n";
  EXPECT_EQ(cap_.dbg, want);
}

TEST(TraceFile, MaskSelectsLinesAndNewlinesCollapse) {
  fs::path p = fs::temp_directory_path() / ("trace_" + std::to_string(getpid()) + ".txt");
  ASSERT_TRUE(qtraceOpen(p.c_str(), QTRACE_ERR));
  qtraceLine(QTRACE_ERR, "error one\n\n\n");
  qtraceLine(QTRACE_WARN, "not selected\n");
  int obj = 0;
  qtraceEnter("QInfo", "Read");
  EXPECT_EQ(qtraceDepth(), 1);
  qtraceEnter("QInfo", "Write", &obj);
  qtraceLeave("QInfo", "Write", &obj);
  qtraceLeave("QInfo", "Read");
  EXPECT_EQ(qtraceDepth(), 0);
  qtraceSetLevel(2);
  qtraceLeveled(3, "too deep");
  qtraceLeveled(2, "level two");
  qtraceClose();
  std::ifstream in(p);
  std::stringstream ss;
  ss << in.rdbuf();
  char ptr[64];
  snprintf(ptr, sizeof ptr, "0x%p", static_cast<void *>(&obj));
  EXPECT_EQ(ss.str(), std::string("error one\n>QInfo::Read\n>QInfo::Write (this=") + ptr + ")\n<QInfo::Write (this=" +
                          ptr + ")\n<QInfo::Read\nlevel two\n");
  fs::remove(p);
}

TEST(Qolof, PrintsLinesAroundWithMarker) {
  fs::path p = fs::temp_directory_path() / ("qolof_" + std::to_string(getpid()) + ".cpp");
  {
    std::ofstream out(p);
    out << "one\ntwo\nthree\nfour\n";
  }
  static std::string got;
  got.clear();
  QReportHook prev = qSetDebugHook([](const char *, const char *m) { got += m; return 0; });
  QOLOF(p.c_str(), 2, 0);
  QOLOF(p.c_str(), 4, 3);  // the last line: output stops at the end of the file
  qSetDebugHook(prev);
  EXPECT_EQ(got, "    1: one\n*   2: two\n    3: three\n" "       3: three\n*      4: four\n");
  fs::remove(p);
}

TEST(QolofDeath, AssertReportsAndShowsSource) {
  static std::string err;
  err.clear();
  QReportHook prevE = qSetErrorHook([](const char *, const char *m) { err += m; return 0; });
  QReportHook prevD = qSetDebugHook([](const char *, const char *) { return 0; });
  qasserterr("no/such/file.cpp", 12);
  qSetErrorHook(prevE);
  qSetDebugHook(prevD);
  EXPECT_EQ(err, "Assertion failed in 'no/such/file.cpp', line 12\n");
}

class EndTest : public ::testing::Test {
 protected:
  void SetUp() override {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    // The death test's child runs SetUp again: the folder must not depend on
    // the process.
    dir_ = fs::path(TYRO_BINARY_DIR) / "tests" / ("qend_" + std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
    fs::create_directories(dir_);
  }
  fs::path dir_;
};

TEST_F(EndTest, FatalLogsThenCrashes) {
  fs::path log = dir_ / "QLOG.txt";
  EXPECT_DEATH(
      {
        qSetLogFileName(log.c_str());
        qSetMessageBoxHandler([](const char *text, const char *title) { fprintf(stderr, "BOX<%s|%s>\n", title, text); });
        qfatal("wheel %d lost", 3);
      },
      "wheel 3 lost\nBOX<Fatal error - the program will exit\\|wheel 3 lost>");
  std::ifstream in(log);
  std::stringstream ss;
  ss << in.rdbuf();
  std::string s = ss.str();
  EXPECT_NE(s.find("(FATAL): [-] wheel 3 lost [%s]\n"), std::string::npos) << s;
  EXPECT_NE(s.find("(INFO ): [-] Going to crash, reason: qfatal [qdebug:444 / QCrash]\n"), std::string::npos) << s;
}

TEST_F(EndTest, ExitMessageEndsNormally) {
  fs::path log = dir_ / "QLOG.txt";
  EXPECT_EXIT(
      {
        qSetLogFileName(log.c_str());
        qSetMessageBoxHandler([](const char *, const char *) {});
        qexitmsg("done at %d%%", 100);
      },
      ::testing::ExitedWithCode(0), "");
  std::ifstream in(log);
  std::stringstream ss;
  ss << in.rdbuf();
  EXPECT_NE(ss.str().find("(FATAL): [-] done at 100% [%s]\n"), std::string::npos) << ss.str();
}

}  // namespace
