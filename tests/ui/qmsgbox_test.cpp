// The log's message box goes through the platform's box once a QApp exists,
// and log lines carry the application's name.
#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "platform/headless/qpscript.h"
#include "ui/diag/qdebug.h"
#include "ui/qapp.h"

namespace {

class LogBox : public ::testing::Test {
 protected:
  void SetUp() override {
    log = std::filesystem::temp_directory_path() / ("tyro_qlog_" + std::to_string(getpid()) + ".txt");
    std::filesystem::remove(log);
    qSetLogFileName(log.c_str());
    a = new QApp(0, nullptr, "boxtest");
  }
  void TearDown() override {
    delete a;
    qSetLogFileName("");
    std::filesystem::remove(log);
  }
  std::string LogText() {
    std::ifstream in(log);
    std::stringstream ss;
    ss << in.rdbuf();
    return ss.str();
  }
  std::filesystem::path log;
  QApp *a = nullptr;
};

TEST_F(LogBox, ErrorBoxShowsTheMessage) {
  int before = qpsMessageBoxCount();
  qlogf(QLOG_ERR | QLOG_MSGBOX | QLOG_NO_STDERR, "src", "disk %s is full", "C");
  EXPECT_EQ(qpsMessageBoxCount(), before + 1);
  EXPECT_STREQ(qpsLastMessageBoxTitle(), "Error");
  EXPECT_STREQ(qpsLastMessageBoxText(), "disk C is full");
  EXPECT_NE(LogText().find("(ERR  ): [boxtest] disk C is full [src]"), std::string::npos) << LogText();
}

TEST_F(LogBox, NoBoxWithoutTheFlag) {
  int before = qpsMessageBoxCount();
  qlogf(QLOG_WARN | QLOG_NO_STDERR, "src", "quiet");
  EXPECT_EQ(qpsMessageBoxCount(), before);
}

}  // namespace
