// File dialog rules that do not depend on a window: which titles give a save
// dialog, the filter choices offered for a stored filter, and whether a file
// name matches a filter pattern (used by the framework's own file browser).
#pragma once

#include <string>
#include <vector>

struct QFileFilter {
  std::string label;    // e.g. "TIR files (*.tir)"
  std::string pattern;  // e.g. "*.tir"
};

// A title containing "xport" (Export) or else "ave" (Save) gives a save dialog.
bool QDlgFileIsSave(const std::string &title);
// "*.ext" gives "EXT files (*.ext)" and "All files (*.*)"; anything else the
// single "All Files (*.*)".
std::vector<QFileFilter> QDlgFileFilters(const std::string &filter);
// "*.*" and "*" match everything; "*.ext" matches names ending in ".ext",
// regardless of case.
bool QDlgFileMatches(const std::string &pattern, const std::string &name);
