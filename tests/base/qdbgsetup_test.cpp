// qdbg_setup: the dev.* switches of a settings tree, in their order.
#include "base/qdbgsetup.h"

#include "tests/base/qinfo_test_util.h"

using namespace qinfotest;

namespace {

class DbgSetup : public InfoTest {
 protected:
  void SetUp() override {
    InfoTest::SetUp();
    QNetSetPortOffset(0);
    QNetSetFakePacketDrops(0);
    qSetDevFlags(0);
  }
  void TearDown() override {
    qlog_last_close();
    qdbgChannelClose();
    qSetDevFlags(0);
    QSetMainInfo(nullptr);
    InfoTest::TearDown();
  }
  static std::string Dev(const std::string &keys) { return "dev\n{\n" + keys + "}\n"; }
};

TEST_F(DbgSetup, EmptySettingsChangeNothing) {
  auto info = ReadText("a=1\n");
  Reports reports;
  qdbg_setup(info.get());
  qdbg_setup(nullptr);
  EXPECT_EQ(reports.Joined(), "");
  EXPECT_EQ(qGetDevFlags(), 0u);
  EXPECT_EQ(QNetPortOffset(), 0);
  EXPECT_FALSE(std::filesystem::exists("QLOG_LAST.txt"));
}

TEST_F(DbgSetup, RunFirstRunsTheCommandAndWaits) {
  auto info = ReadText(Dev("run_first=echo ran > ran.txt\n"));
  qdbg_setup(info.get());
  EXPECT_EQ(ReadFile("ran.txt"), "ran\n");
}

TEST_F(DbgSetup, NetworkSettingsAreStoredWhenPositive) {
  auto info = ReadText(Dev("port_offset=3\nfake_packet_drops=2\n"));
  qdbg_setup(info.get());
  EXPECT_EQ(QNetPortOffset(), 3);
  EXPECT_EQ(QNetFakePacketDrops(), 2);
  auto off = ReadText(Dev("port_offset=0\nfake_packet_drops=-1\n"), 0, "off.ini");
  qdbg_setup(off.get());
  EXPECT_EQ(QNetPortOffset(), 3);  // kept: only values of 1 or more are stored
  EXPECT_EQ(QNetFakePacketDrops(), 2);
}

TEST_F(DbgSetup, DevelopmentFlagsWarn) {
  auto info = ReadText(Dev("opengl_checks=1\nargument_tracing=1\n"));
  Reports reports;
  qdbg_setup(info.get());
  EXPECT_EQ(qGetDevFlags(), unsigned(QDEV_OPENGL_CHECKS | QDEV_ARGUMENT_TRACING));
  EXPECT_EQ(reports.Joined(),
            "W: dev.opengl_checks is 1; may slow the program down - only use when tracking down a bug | "
            "W: dev.argument_tracing is 1; may slow the program down - only use when tracking down a bug");
  auto off = ReadText(Dev("opengl_checks=0\n"), 0, "off.ini");
  qdbg_setup(off.get());
  EXPECT_EQ(qGetDevFlags(), 0u);  // cleared before the keys are read
}

TEST_F(DbgSetup, LogLastOrStrictOpensTheCopyFile) {
  auto info = ReadText(Dev("strict=1\n"));
  qdbg_setup(info.get());
  EXPECT_TRUE(std::filesystem::exists("QLOG_LAST.txt"));
}

TEST_F(DbgSetup, ChannelWithoutPortStopsTheSetup) {
  auto info = ReadText(Dev("udp_out=localhost\nlog_last=1\nopengl_checks=1\n"));
  Reports reports;
  qdbg_setup(info.get());
  EXPECT_EQ(reports.Joined(), "W: qdbg_setup: need host:port in dev_udpout (now 'localhost')");
  EXPECT_FALSE(std::filesystem::exists("QLOG_LAST.txt"));
  EXPECT_EQ(qGetDevFlags(), 0u);
}

TEST_F(DbgSetup, ChannelFallsBackToTheMainSettings) {
  WriteFile("main.ini", Dev("udp_out=from-main\n"));
  QInfo main("main.ini");
  QSetMainInfo(&main);
  auto info = ReadText(Dev("opengl_checks=1\n"));
  Reports reports;
  qdbg_setup(info.get());
  EXPECT_EQ(reports.Joined(), "W: qdbg_setup: need host:port in dev_udpout (now 'from-main')");
}

TEST_F(DbgSetup, UnresolvableChannelHostWarns) {
  auto info = ReadText(Dev("udp_out=no such host:4000\nopengl_checks=1\n"));
  Reports reports;
  qdbg_setup(info.get());
  EXPECT_EQ(reports.Joined(), "W: qdbg_setup: can't open no such host:4000");
  EXPECT_EQ(qGetDevFlags(), 0u);
}

TEST_F(DbgSetup, ChannelOpens) {
  auto info = ReadText(Dev("udp_out=127.0.0.1:4000\n"));
  Reports reports;
  qdbg_setup(info.get());
  EXPECT_EQ(reports.Joined(), "");
}

}  // namespace
