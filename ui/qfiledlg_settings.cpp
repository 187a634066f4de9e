#include "ui/qfiledlg_settings.h"

#include "base/qinfo.h"
#include "base/qstring.h"
#include "diag/qdebug.h"

namespace {
std::string Key(const char *name, const char *what) { return std::string("qfiledlg.") + name + "." + what; }
std::string Get(QInfo *info, const std::string &key) {
  qstring s;
  if (!info->GetString(key.c_str(), s, "")) return std::string();
  return std::string(s.c_str());
}
}  // namespace

QDlgFileMemory QDlgFileRecall(QInfo *info, const char *name, const char *initial_dir) {
  QDlgFileMemory m;
  if (info == nullptr || name == nullptr) return m;
  m.x = info->GetInt(Key(name, "x").c_str(), 0);
  m.y = info->GetInt(Key(name, "y").c_str(), 0);
  QNOTE_IN("QDlgFile", "initialDir: '%s'\n", initial_dir ? initial_dir : "");
  m.dir = (initial_dir && *initial_dir) ? std::string(initial_dir) : Get(info, Key(name, "dir"));
  m.file = Get(info, Key(name, "file"));
  m.filter = Get(info, Key(name, "filter"));
  return m;
}

bool QDlgFileRemember(QInfo *info, const char *name, const std::string &dir, const std::string &file) {
  if (info == nullptr || name == nullptr) return false;
  info->SetString(Key(name, "dir").c_str(), dir.substr(0, 1024).c_str());
  info->SetString(Key(name, "file").c_str(), file.c_str());
  if (!info->Write()) {
    QWARN_IN("QDlgFile", "Can't save dialog settings for '%s'", name);
    return false;
  }
  return true;
}
