// Reading and writing the tool's settings.
#include "tool/settings.h"

#include "base/qinfo.h"

ToolSettings SettingsRead(QInfo *info) {
  ToolSettings s;
  s.width = info->GetInt("resolution.width", s.width);
  s.height = info->GetInt("resolution.height", s.height);
  s.x = info->GetInt("resolution.x", s.x);
  s.y = info->GetInt("resolution.y", s.y);
  s.fullscreen = info->GetInt("resolution.fullscreen", 0) != 0;
  s.bits = info->GetInt("resolution.bits", s.bits);
  s.viewWidth = info->GetInt("view.width", s.viewWidth);
  s.viewHeight = info->GetInt("view.height", s.viewHeight);
  char car[256];
  info->GetString("last.car", car, "");
  s.lastCar = car;
  return s;
}

bool SettingsStoreLastCar(QInfo *info, const char *car) {
  if (!info->SetString("last.car", car)) return false;
  // Written even when last.car did not change, so a session always leaves
  // the file behind.
  return info->Write(info->GetFileName(), true);
}
