// The framework's own file browser, without its window: what a folder shows
// (folders first, then the files the filter lets through) and what a typed or
// picked name leads to (open a folder, choose the file, ask before
// overwriting, or refuse a missing file in open mode).
#pragma once

#include <string>
#include <vector>

struct QBrowseEntry {
  std::string name;
  bool folder = false;
};

// Lists `dir`: ".." (unless at the root), then folders, then files matching
// `pattern`, each group sorted by name regardless of case. Hidden names (a
// leading point) are left out. An unreadable folder gives a warning naming it
// and the list holds only "..".
std::vector<QBrowseEntry> QBrowseList(const std::string &dir, const std::string &pattern);

enum class QBrowseAction { EnterFolder, Choose, AskOverwrite, Reject };

// What choosing `name` in `dir` does; `path` receives the full path.
QBrowseAction QBrowsePick(const std::string &dir, const std::string &name, bool save, std::string *path);
