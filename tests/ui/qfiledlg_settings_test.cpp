// The file dialog's remembered folder and file in a real settings file.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "base/qinfo.h"
#include "ui/qfiledlg_settings.h"

namespace fs = std::filesystem;

namespace {

class QDlgFileSettings : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = fs::temp_directory_path() /
           ("qfiledlg_" + std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
    fs::remove_all(dir_);
    fs::create_directories(dir_);
    ini_ = (dir_ / "settings.ini").string();
  }
  void TearDown() override { fs::remove_all(dir_); }
  std::string Slurp() {
    std::ifstream f(ini_);
    std::stringstream ss;
    ss << f.rdbuf();
    return ss.str();
  }
  fs::path dir_;
  std::string ini_;
};

TEST_F(QDlgFileSettings, RecallUsesStoredDirOnlyWithoutInitial) {
  std::ofstream(ini_) << "qfiledlg\n{\n  car\n  {\n    dir=/stored\n    file=a.ini\n    filter=*.ini\n"
                         "    x=40\n    y=50\n  }\n}\n";
  QInfo info(ini_.c_str());
  QDlgFileMemory m = QDlgFileRecall(&info, "car", nullptr);
  EXPECT_EQ(m.dir, "/stored");
  EXPECT_EQ(m.file, "a.ini");
  EXPECT_EQ(m.filter, "*.ini");
  EXPECT_EQ(m.x, 40);
  EXPECT_EQ(m.y, 50);
  EXPECT_EQ(QDlgFileRecall(&info, "car", "").dir, "/stored");
  EXPECT_EQ(QDlgFileRecall(&info, "car", "/given").dir, "/given");
  QDlgFileMemory none = QDlgFileRecall(&info, "other", nullptr);
  EXPECT_EQ(none.dir, "");
  EXPECT_EQ(none.file, "");
}

TEST_F(QDlgFileSettings, RememberWritesDirAndFileButNotFilter) {
  {
    QInfo info(ini_.c_str(), QINFO_SILENT);
    QDlgFileMemory m = QDlgFileRecall(&info, "tir", nullptr);
    EXPECT_EQ(m.filter, "");
    ASSERT_TRUE(QDlgFileRemember(&info, "tir", "/data/tyres", "front.tir"));
  }
  std::string text = Slurp();
  EXPECT_NE(text.find("/data/tyres"), std::string::npos) << text;
  EXPECT_NE(text.find("front.tir"), std::string::npos) << text;
  EXPECT_EQ(text.find("filter"), std::string::npos) << text;
  QInfo again(ini_.c_str());
  QDlgFileMemory m = QDlgFileRecall(&again, "tir", nullptr);
  EXPECT_EQ(m.dir, "/data/tyres");
  EXPECT_EQ(m.file, "front.tir");
}

TEST_F(QDlgFileSettings, UnwritableSettingsFail) {
  std::string bad = (dir_ / "no" / "such" / "settings.ini").string();
  QInfo info(bad.c_str(), QINFO_SILENT);
  EXPECT_FALSE(QDlgFileRemember(&info, "tir", "/x", "y.tir"));
}

}  // namespace
