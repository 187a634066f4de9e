// Reading pacejka.ini and storing last.car.
#include "tool/settings.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <string>

#include "base/qinfo.h"
#include "golden.h"

namespace {

struct TempIni {
  std::string dir, path;
  explicit TempIni(const char *text) {
    char tmpl[] = "/tmp/tyro_setXXXXXX";
    dir = mkdtemp(tmpl);
    path = dir + "/pacejka.ini";
    if (text) std::ofstream(path, std::ios::binary) << text;
  }
  ~TempIni() {
    unlink(path.c_str());
    rmdir(dir.c_str());
  }
};

}  // namespace

TEST(Settings, MissingFileGivesDefaults) {
  TempIni t(nullptr);
  QInfo *info = new QInfo(t.path.c_str(), QINFO_SILENT);
  ToolSettings s = SettingsRead(info);
  EXPECT_EQ(s.width, 910);
  EXPECT_EQ(s.height, 714);
  EXPECT_EQ(s.x, -1);
  EXPECT_EQ(s.y, -1);
  EXPECT_FALSE(s.fullscreen);
  EXPECT_EQ(s.bits, 16);
  EXPECT_EQ(s.viewWidth, 700);
  EXPECT_EQ(s.viewHeight, 500);
  EXPECT_EQ(s.lastCar, "");
  delete info;
}

TEST(Settings, ReadsEveryKey) {
  TempIni t("resolution\n{\n  width=1024\n  height=768\n  x=5\n  y=6\n  fullscreen=7\n  bits=32\n}\n"
            "view\n{\n  width=640\n  height=480\n}\nlast\n{\n  car=touring\n}\n");
  QInfo *info = new QInfo(t.path.c_str());
  ToolSettings s = SettingsRead(info);
  EXPECT_EQ(s.width, 1024);
  EXPECT_EQ(s.height, 768);
  EXPECT_EQ(s.x, 5);
  EXPECT_EQ(s.y, 6);
  EXPECT_TRUE(s.fullscreen) << "any non-zero integer counts";
  EXPECT_EQ(s.bits, 32);
  EXPECT_EQ(s.viewWidth, 640);
  EXPECT_EQ(s.viewHeight, 480);
  EXPECT_EQ(s.lastCar, "touring");
  delete info;
}

TEST(Settings, LastCarIsStoredEvenWithoutAFile) {
  TempIni t(nullptr);
  QInfo *info = new QInfo(t.path.c_str(), QINFO_SILENT);
  ASSERT_TRUE(SettingsStoreLastCar(info, "touring"));
  delete info;
  QInfo *again = new QInfo(t.path.c_str());
  EXPECT_EQ(SettingsRead(again).lastCar, "touring");
  delete again;
}

TEST(Settings, StoringKeepsOtherKeysAndMatchesGolden) {
  TempIni t("; Tyrograph settings\nresolution\n{\n  width=1000\n}\nlast\n{\n  car=old\n}\n");
  QInfo *info = new QInfo(t.path.c_str());
  ASSERT_TRUE(SettingsStoreLastCar(info, "touring"));
  delete info;
  ExpectGolden("settings_after_exit.ini", ReadFileBytes(t.path));
}
