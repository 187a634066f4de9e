// Reading pacejka.ini and storing last.car.
#include "tool/settings.h"

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <string>

#include "base/qinfo.h"
#include "golden.h"

TEST(Settings, MissingFileGivesDefaultsAndEveryKeyIsRead) {
  ScratchDir dir;
  std::string path = dir.root + "/pacejka.ini";
  ToolSettings s = SettingsRead(std::make_unique<QInfo>(path.c_str(), QINFO_SILENT).get());
  EXPECT_TRUE(s.width == 910 && s.height == 714 && s.x == -1 && !s.fullscreen && s.viewWidth == 700);
  std::ofstream(path) << "resolution\n{\n  width=1024\n  height=768\n  x=5\n  y=6\n  fullscreen=7\n  bits=32\n}\n"
                         "view\n{\n  width=640\n  height=480\n}\nlast\n{\n  car=touring\n}\n";
  s = SettingsRead(std::make_unique<QInfo>(path.c_str()).get());
  EXPECT_TRUE(s.width == 1024 && s.height == 768 && s.x == 5 && s.y == 6 && s.bits == 32 && s.fullscreen);
  EXPECT_TRUE(s.viewWidth == 640 && s.viewHeight == 480);
  EXPECT_EQ(s.lastCar, "touring");
}

TEST(Settings, LastCarIsStoredWithOrWithoutAFile) {
  ScratchDir dir;
  std::string path = dir.root + "/pacejka.ini";
  ASSERT_TRUE(SettingsStoreLastCar(std::make_unique<QInfo>(path.c_str(), QINFO_SILENT).get(), "touring"));
  EXPECT_EQ(SettingsRead(std::make_unique<QInfo>(path.c_str()).get()).lastCar, "touring");
  // Other keys and comments stay.
  std::ofstream(path, std::ios::binary) << "; Tyrograph settings\nresolution\n{\n  width=1000\n}\nlast\n{\n  car=old\n}\n";
  ASSERT_TRUE(SettingsStoreLastCar(std::make_unique<QInfo>(path.c_str()).get(), "touring"));
  ExpectGolden("settings_after_exit.ini", ReadFileBytes(path));
}
