// QDlgFile: asks the user for a file with the framework's file browser
// (ui/qfiledialog.h) and remembers, per dialog name, the last folder and file
// in the settings tree (ui/qfiledlg_settings.h).
#pragma once

#include <string>
#include <vector>

class QInfo;

constexpr int QDLGFILE_PATH_MAX = 2600, QDLGFILE_NAME_MAX = 260;

// True when the user chose a file, false on cancel.
//  settings    tree of "qfiledlg.<name>.*" (may be null: nothing remembered)
//  initialDir  folder to start in; null or "" takes the remembered one
//  path        receives the chosen path (QDLGFILE_PATH_MAX); with several
//              files chosen "folder|name1|name2..."; null: nothing is stored
//  title       a title containing "xport" or "ave" gives a save dialog
//  filter      "*.ext" offers "EXT files" and all files; else all files
//  list        with it, several files may be chosen: it receives each name,
//              or the single path when one file was chosen
//  fileName    receives the chosen file's name alone (QDLGFILE_NAME_MAX)
// The process's working directory is the same afterwards, and the modifier
// keys are forgotten (their releases may have gone to the dialog).
bool QDlgFile(QInfo *settings, const char *name, const char *initialDir, char *path, const char *title,
              const char *filter, std::vector<std::string> *list, char *fileName);
