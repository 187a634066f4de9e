#include "ui/qlang.h"

#include "base/qinfo.h"
#include "base/qstring.h"
#include "ui/qapp.h"

std::string QLangText(const char *key, const char *def) {
  std::string fallback = def ? def : "";
  QInfo *info = app ? app->GetInfo() : nullptr;
  if (info == nullptr || key == nullptr) return fallback;
  qstring s;
  if (!info->GetString(key, s, def)) return fallback;
  return std::string(s.c_str());
}
