// What the file dialog remembers per dialog name in the settings tree:
// position (read, unused), last folder, last file name and a stored filter.
// The filter is read but never written back.
#pragma once

#include <string>

class QInfo;

struct QDlgFileMemory {
  int x = 0, y = 0;
  std::string dir;     // the initial folder: the given one, else the stored one
  std::string file;    // the proposed file name
  std::string filter;  // the stored filter ("" when none)
};

// Reads "qfiledlg.<name>.*". A null or empty initial_dir takes the stored dir.
QDlgFileMemory QDlgFileRecall(QInfo *info, const char *name, const char *initial_dir);
// Stores the folder (at most 1,024 characters) and the file name after a
// successful choice and writes the tree; false (with a warning) when that fails.
bool QDlgFileRemember(QInfo *info, const char *name, const std::string &dir, const std::string &file);
