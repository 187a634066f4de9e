#include "ui/qdlgfile.h"

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <system_error>

#include "diag/qdebug.h"
#include "ui/qapp.h"
#include "ui/qdlgowner.h"
#include "ui/qfiledialog.h"
#include "ui/qfiledlg.h"
#include "ui/qfiledlg_settings.h"
#include "ui/qmsgbox.h"

namespace fs = std::filesystem;

namespace {
void Copy(char *out, int size, const std::string &s) {
  if (out) snprintf(out, static_cast<size_t>(size), "%s", s.c_str());
}

// Runs the browser until a file is chosen (answering the overwrite question
// with OK) or the user cancels.
bool Browse(QFileDialog *dlg, const char *title) {
  for (;;) {
    int r = dlg->Execute();
    if (r == QFILEDIALOG_CHOSEN) return true;
    if (r != QFILEDIALOG_ASK_OVERWRITE) return false;
    std::string text = dlg->GetChosen() + " already exists.\nDo you want to replace it?";
    if (QMessageBox(title, text.c_str(), 0) == 0) return true;
    dlg->SetResult(0);
  }
}
}  // namespace

bool QDlgFile(QInfo *settings, const char *name, const char *initialDir, char *path, const char *title,
              const char *filter, std::vector<std::string> *list, char *fileName) {
  // 1. The working directory comes back afterwards.
  char cwd[260] = {};
  if (getcwd(cwd, sizeof(cwd)) == nullptr) cwd[0] = 0;
  // 2. What this dialog remembers.
  QDlgFileMemory mem = QDlgFileRecall(settings, name, initialDir);
  if (settings == nullptr || name == nullptr)
    QNOTE("initialDir: '%s'\n", initialDir ? initialDir : "");
  if (mem.dir.empty() && initialDir) mem.dir = initialDir;
  std::error_code ec;
  if (mem.dir.empty() || !fs::is_directory(mem.dir, ec)) mem.dir = cwd;
  // 3. Save or open.
  bool save = QDlgFileIsSave(title ? title : "");
  // 4. The owner.
  QWindow *owner = QDialogOwner();
  bool chosen = false;
  std::string chosenPath, chosenDir, chosenName;
  std::vector<std::string> names;
  if (owner == nullptr) {
    QWARN("QDlgFile(%s); no window to show the file dialog in", title ? title : "");
  } else {
    // 5. The filter choices: the given filter, else the stored one.
    std::vector<QFileFilter> filters = QDlgFileFilters(filter && *filter ? filter : mem.filter);
    // 6.-7. The browser, proposing the remembered file name.
    QRect at = QDialogCentred(520, 400);
    QFileDialog *dlg = new QFileDialog(owner, QDialogPlace(owner, at), title, save, mem.dir, mem.file,
                                       std::move(filters), list != nullptr);
    chosen = Browse(dlg, title);
    if (chosen) {
      names = dlg->GetChosenNames();
      if (names.size() > 1) {
        chosenDir = dlg->GetFolder();
        chosenName = names[0];
        chosenPath = chosenDir;
        for (const std::string &n : names) chosenPath += "|" + n;
      } else {
        chosenPath = dlg->GetChosen();
        fs::path p(chosenPath);
        chosenDir = p.parent_path().string();
        chosenName = p.filename().string();
      }
    }
    delete dlg;
  }
  if (chosen) {
    // 8. The answer.
    QDBG("You chose: '%s'\n", chosenPath.c_str());
    Copy(path, QDLGFILE_PATH_MAX, chosenPath);
    Copy(fileName, QDLGFILE_NAME_MAX, chosenName);
    if (list) {
      if (names.size() > 1) list->insert(list->end(), names.begin(), names.end());
      else list->push_back(chosenPath);
    }
    // 9. Remember the folder chosen in and the file name.
    if (path && settings && name) QDlgFileRemember(settings, name, chosenDir, chosenName);
  }
  if (cwd[0] && chdir(cwd) != 0) QWARN("Can't return to folder '%s'", cwd);
  // 10. The key releases of Shift, Control and Alt may have gone to the dialog.
  if (app) app->ResetModifiers();
  return chosen;
}
