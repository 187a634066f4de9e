// QPath: an ordered list of at most 20 folders in which files are looked up.
#pragma once

#include "base/qstring.h"

class QPath {
 public:
  enum { MAX_PATHS = 20 };

  QPath() = default;
  ~QPath() { Clear(); }
  QPath(const QPath &) = delete;
  QPath &operator=(const QPath &) = delete;

  bool Add(const char *dir);
  void Clear();
  int GetCount() const { return count_; }
  const char *GetPath(int index) const;

  // The first "dir/name" that exists, in the order added, as the full path
  // and the folder; false (full path = name, folder empty) when no folder
  // holds it.
  bool FindFile(const char *name, qstring *fullPath, qstring *dir) const;

 private:
  char *paths_[MAX_PATHS] = {};
  int count_ = 0;
};
