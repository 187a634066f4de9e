// The file dialog's remembered folder and file in a real settings file.
#include <gtest/gtest.h>

#include "base/qinfo.h"
#include "tests/ui/dialog_fixture.h"
#include "ui/qfiledlg_settings.h"

namespace {

TEST(QDlgFileSettings, RecallAndRemember) {
  std::filesystem::path dir = FreshDir("qfiledlg");
  std::string ini = (dir / "settings.ini").string();
  std::ofstream(ini) << "qfiledlg\n{\n  car\n  {\n    dir=/stored\n    file=a.ini\n    filter=*.ini\n"
                        "    x=40\n    y=50\n  }\n}\n";
  {
    QInfo info(ini.c_str());
    QDlgFileMemory m = QDlgFileRecall(&info, "car", nullptr);
    EXPECT_EQ(m.dir + " " + m.file + " " + m.filter, "/stored a.ini *.ini");
    EXPECT_EQ(m.x * 1000 + m.y, 40050);
    EXPECT_EQ(QDlgFileRecall(&info, "car", "").dir, "/stored");
    EXPECT_EQ(QDlgFileRecall(&info, "car", "/given").dir, "/given");  // the caller's folder wins
    QDlgFileMemory none = QDlgFileRecall(&info, "tir", nullptr);
    EXPECT_EQ(none.dir + none.file + none.filter, "");
    ASSERT_TRUE(QDlgFileRemember(&info, "tir", "/data/tyres", "front.tir"));
  }
  QInfo again(ini.c_str());
  QDlgFileMemory m = QDlgFileRecall(&again, "tir", nullptr);
  EXPECT_EQ(m.dir + " " + m.file + " " + m.filter, "/data/tyres front.tir ");
  QInfo unwritable((ini + "/settings.ini").c_str(), QINFO_SILENT);  // under a file: never writable
  EXPECT_FALSE(QDlgFileRemember(&unwritable, "tir", "/x", "y.tir"));
  std::filesystem::remove_all(dir);
}

}  // namespace
