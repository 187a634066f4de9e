// The log writer and the reporters, against real files in a scratch folder.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <vector>

#include "tests/base/scratch.h"
#include "diag/qdebug.h"
#include "diag/qdiag_internal.h"

namespace fs = std::filesystem;

namespace {

class LogTest : public ScratchTest {
 protected:
  void SetUp() override {
    ScratchTest::SetUp();
    qlogReset();
    qSetLogMask(0x0E);
    qSetAppName("");
  }
  void TearDown() override {
    qlogFlush();
    qlog_last_close();
    qlogReset();
    ScratchTest::TearDown();
  }
  // The log's lines without the time stamp "Sun 22/11/2026 23:00:00 ".
  static std::vector<std::string> Log() {
    std::vector<std::string> out;
    std::stringstream ss(ReadFile("QLOG.txt"));
    for (std::string l; std::getline(ss, l);) out.push_back(l.size() > 24 ? l.substr(24) : l);
    return out;
  }
};

TEST_F(LogTest, StartLinesThenLabelsFollowingTheFirstBitSet) {
  qSetAppName("Tyrograph");
  const std::pair<unsigned, const char *> rows[] = {{0x1, "ERR"},   {0x3, "ERR"},   {0x2, "WARN"},
                                                    {0x4, "CRIT"},  {0x8, "NOTE"},  {0x10, "INFO"},
                                                    {0x40, "FATAL"}, {0x800, "INFO"}, {0x20, "?"}};
  for (size_t k = 0; k < std::size(rows); k++) qlogf(rows[k].first | QLOG_NO_STDERR, "here", "line %zu", k);
  std::string file = (dir_ / "QLOG.txt").string();
  EXPECT_EQ(QLogFileName(), file);
  auto l = Log();
  ASSERT_EQ(l.size(), 2u + std::size(rows));
  EXPECT_EQ(l[0], "(INFO ): [Tyrograph] --- application start ---");
  EXPECT_EQ(l[1], "(INFO ): [Tyrograph] QLog file is: " + file);
  for (size_t k = 0; k < std::size(rows); k++) {
    char want[64];
    snprintf(want, sizeof want, "(%-5s): [Tyrograph] line %zu [here]", rows[k].second, k);
    EXPECT_EQ(l[2 + k], want);
  }
}

TEST_F(LogTest, RepeatsCollapseIntoOneLineWrittenByTheNextOtherOrAFlush) {
  for (int i = 0; i < 3; i++) qwarn("f", "F::g", 1, "same");
  qwarn("f", "F::h", 2, "other");
  qlogf(QLOG_ERR | QLOG_NO_STDERR, "src", "again");
  qlogf(QLOG_ERR | QLOG_NO_STDERR, "src", "again");
  qlogFlush();
  auto l = Log();
  ASSERT_EQ(l.size(), 7u);
  EXPECT_EQ(l[2], "(WARN ): [-] same [WARN,f:1,F::g]");
  EXPECT_EQ(l[3], "(WARN ): [-] [2x repeat] same [WARN,f:1,F::g]");
  EXPECT_EQ(l[4], "(WARN ): [-] other [WARN,f:2,F::h]");
  EXPECT_EQ(l[6], "(ERR  ): [-] [1x repeat] again [src]");
}

TEST_F(LogTest, RotatesAboveTenMillionBytes) {
  qlogf(QLOG_INFO | QLOG_NO_STDERR, nullptr, "start");
  fs::resize_file("QLOG.txt", 10000000);  // exactly at the limit: still appended to
  qlogf(QLOG_INFO | QLOG_NO_STDERR, nullptr, "at the limit");
  EXPECT_FALSE(fs::exists("QLOG_OLD.txt"));
  qlogf(QLOG_INFO | QLOG_NO_STDERR, nullptr, "after the limit");  // above: moved aside
  ASSERT_TRUE(fs::exists("QLOG_OLD.txt"));
  EXPECT_GT(fs::file_size("QLOG_OLD.txt"), 10000000u);
  EXPECT_EQ(Log(), std::vector<std::string>{"(INFO ): [-] after the limit"});
}

TEST_F(LogTest, UnwritableLogStillReachesStderr) {
  fs::create_directories("QLOG.txt");  // a folder where the file should be
  testing::internal::CaptureStderr();
  qlogf(QLOG_ERR, "s", "still seen");
  std::string err = testing::internal::GetCapturedStderr();
  EXPECT_NE(err.find("still seen\n"), std::string::npos);
  EXPECT_NE(err.find("** [-/" + std::to_string(getpid()) + "] Can't open log file (QLOG)\n"), std::string::npos);
}

TEST_F(LogTest, LastFileGetsErrorsWithQuirkyLineEnds) {
  ASSERT_TRUE(qlog_last_open("QLOG_LAST.txt"));
  EXPECT_FALSE(qlog_last_written());
  qlogf(QLOG_INFO | QLOG_NO_STDERR, "s", "info is not copied");
  qlogf(QLOG_NOTE | QLOG_NO_STDERR, nullptr, "note is not copied");
  qlogf(QLOG_INFO2 | QLOG_NO_STDERR, nullptr, "no source");
  qlogf(QLOG_FATAL | QLOG_NO_STDERR, "src", "fatal");
  EXPECT_TRUE(qlog_last_written());
  qlog_last_close();
  std::string s = ReadFile("QLOG_LAST.txt");
  EXPECT_NE(s.find(" (INFO): no source"), std::string::npos) << s;  // no line end
  EXPECT_NE(s.find(" (FATAL): fatal [src]\n"), std::string::npos) << s;
  EXPECT_EQ(s.find('\n'), s.size() - 1) << s;
  EXPECT_EQ(s.find("copied"), std::string::npos);
}

TEST_F(LogTest, ReportersFollowTheLogMask) {
  testing::internal::CaptureStderr();
  qerr("kpacejka", "KPacejka::Load", 12, "no newline");
  qwarn("kpacejka", "KPacejka::Load", 13, "a warning\n");
  qnote("kpacejka", "KPacejka::Load", 14, "a note");
  qdbg("kpacejka", "KPacejka::Load", 15, "debug only");
  qdbgplain("plain %d%%%%", 5);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "no newline\na warning\na note\ndebug onlyplain 5%%");
  qSetLogMask(0x1);  // plain debug lines are logged with source "%s", '%' read once more
  testing::internal::CaptureStderr();
  qdbgplain("plain %d%%%%", 6);
  qerr("f", "g", 1, "not logged now");
  testing::internal::GetCapturedStderr();
  auto l = Log();
  ASSERT_EQ(l.size(), 6u);
  EXPECT_EQ(l[2], "(ERR  ): [-] no newline [ERR,kpacejka:12,KPacejka::Load]");
  EXPECT_EQ(l[3], "(WARN ): [-] a warning [WARN,kpacejka:13,KPacejka::Load]");
  EXPECT_EQ(l[4], "(INFO ): [-] a note [kpacejka:14 / KPacejka::Load]");
  EXPECT_EQ(l[5], "(INFO ): [-] plain 6% [%s]");
}

TEST_F(LogTest, HooksReplaceDefaultOutputAndMessageBoxesHaveTitles) {
  static std::vector<std::string> got;
  got.clear();
  QReportHook prev = qSetErrorHook([](const char *prefix, const char *msg) {
    got.push_back(std::string(prefix) + "|" + msg);
    return 0;
  });
  EXPECT_EQ(prev, nullptr);
  qerr("qinfo", "QInfo::Write", 99, "x=%d", 3);
  EXPECT_NE(qSetErrorHook(prev), nullptr);
  EXPECT_FALSE(fs::exists("QLOG.txt"));  // the hook took it all
  QMessageBoxFunc old = qSetMessageBoxHandler([](const char *text, const char *title) {
    got.push_back(std::string(title) + "|" + text);
  });
  qlogf(QLOG_ERR | QLOG_MSGBOX | QLOG_NO_STDERR, nullptr, "disk full\n");
  qlogf(QLOG_FATAL | QLOG_MSGBOX | QLOG_NO_STDERR, nullptr, "gone");
  qSetMessageBoxHandler(old);
  EXPECT_EQ(got, (std::vector<std::string>{"ERR,qinfo:99,QInfo::Write|x=3\n", "Error|disk full",
                                           "Fatal error - the program will exit|gone"}));
}

TEST_F(LogTest, UdpChannelSendsLines) {
  qdbgChannelClose();
  qdbgChannelSend("x");  // without a destination the channel turns unavailable
  EXPECT_EQ(qdbgChannelState(), -1);
  int rx = socket(AF_INET, SOCK_DGRAM, 0);
  ASSERT_GE(rx, 0);
  sockaddr_in addr{};
  addr.sin_family = AF_INET;
  addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  ASSERT_EQ(bind(rx, reinterpret_cast<sockaddr *>(&addr), sizeof addr), 0);
  socklen_t len = sizeof addr;
  getsockname(rx, reinterpret_cast<sockaddr *>(&addr), &len);
  ASSERT_TRUE(qdbgChannelOpen("127.0.0.1", ntohs(addr.sin_port)));
  EXPECT_EQ(qdbgChannelState(), 1);
  qlogf(QLOG_WARN | QLOG_NO_STDERR, nullptr, "first");  // start lines go out too
  qlogf(QLOG_WARN | QLOG_NO_STDERR, "src", "over the wire");
  qlogf(QLOG_WARN | QLOG_NO_STDERR | QLOG_NO_CHANNEL, "src", "not sent");
  std::vector<std::string> got;
  char buf[2048];
  for (ssize_t n; (n = recv(rx, buf, sizeof buf, MSG_DONTWAIT)) > 0;) got.emplace_back(buf, size_t(n));
  qdbgChannelClose();
  close(rx);
  ASSERT_EQ(got.size(), 4u);
  EXPECT_EQ(got[0], "[] INFO: --- application start ---\n");
  EXPECT_EQ(got[2], "[] WARN: first\n");
  EXPECT_EQ(got[3], "[src] WARN: over the wire\n");
}

}  // namespace
