// QPath: the search-path list.
#include "base/qpath.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/qfile.h"
#include "diag/qdebug.h"

bool QPath::Add(const char *dir) {
  if (count_ >= MAX_PATHS) {
    QWARN("QPath:Add(); maximum (%d) reached\n", MAX_PATHS);
    return false;
  }
  paths_[count_++] = strdup(dir ? dir : "");
  return true;
}

void QPath::Clear() {
  for (int i = 0; i < count_; i++) free(paths_[i]);
  count_ = 0;
}

const char *QPath::GetPath(int index) const {
  if (index < 0 || index >= count_) {
    QWARN_IN("QPath::GetPath", "QPath:GetPath(%d) out of range\n", index);
    return nullptr;
  }
  return paths_[index];
}

bool QPath::FindFile(const char *name, qstring *fullPath, qstring *dir) const {
  char buf[1024];
  for (int i = 0; i < count_; i++) {
    snprintf(buf, sizeof buf, "%s/%s", paths_[i], name);
    if (QFileExists(buf, true)) {
      if (fullPath) *fullPath = buf;
      if (dir) *dir = paths_[i];
      return true;
    }
  }
  if (fullPath) *fullPath = name;
  if (dir) *dir = "";
  return false;
}
