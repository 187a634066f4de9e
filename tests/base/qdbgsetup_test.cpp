// qdbg_setup: the dev.* switches of a settings tree, in their order.
#include "base/qdbgsetup.h"

#include "tests/base/qinfo_test_util.h"

using namespace qinfotest;

namespace {

class DbgSetup : public InfoTest {
 protected:
  void SetUp() override {
    InfoTest::SetUp();
    qSetDevFlags(0);
  }
  void TearDown() override {
    qlog_last_close();
    qdbgChannelClose();
    qSetDevFlags(0);
    InfoTest::TearDown();
  }
  static std::string Dev(const std::string &keys) { return "dev\n{\n" + keys + "}\n"; }
};

struct SetupCase {
  const char *keys, *reports;
  unsigned devFlags;
  bool lastFile;  // QLOG_LAST.txt opened
};

const char kSlow[] = " is 1; may slow the program down - only use when tracking down a bug";

TEST_F(DbgSetup, SwitchesInTheirOrder) {
  const std::string both = std::string("W: dev.opengl_checks") + kSlow + " | W: dev.argument_tracing" + kSlow;
  const SetupCase rows[] = {
      {"", "", 0, false},
      {"opengl_checks=1\nargument_tracing=1\n", both.c_str(), QDEV_OPENGL_CHECKS | QDEV_ARGUMENT_TRACING, false},
      {"strict=1\n", "", 0, true},
      // A channel setting that fails stops the setup before the later switches.
      {"udp_out=localhost\nlog_last=1\nopengl_checks=1\n",
       "W: qdbg_setup: need host:port in dev_udpout (now 'localhost')", 0, false},
      {"udp_out=no such host:4000\nopengl_checks=1\n", "W: qdbg_setup: can't open no such host:4000", 0, false},
  };
  qdbg_setup(nullptr);
  int i = 0;
  for (const SetupCase &r : rows) {
    std::string name = std::string("s").append(std::to_string(i++)).append(".ini");
    auto info = ReadText(Dev(r.keys), 0, name);
    ReportCapture cap;
    qdbg_setup(info.get());
    EXPECT_EQ(cap.joined, r.reports) << r.keys;
    EXPECT_EQ(qGetDevFlags(), r.devFlags) << r.keys;
    EXPECT_EQ(std::filesystem::exists("QLOG_LAST.txt"), r.lastFile) << r.keys;
    qlog_last_close();
    std::filesystem::remove("QLOG_LAST.txt");
    qdbgChannelClose();
  }
}

}  // namespace
