// QFileDialog: the framework's own file browser window. It shows the folder,
// its subfolders and the files the current filter lets through, a filter
// choice and a name entry that has the keyboard focus when it opens.
//
// Typing a name or a full path and pressing Enter (or OK) picks it: a folder
// is opened, an existing file is chosen (result 1), a missing file is chosen
// in save mode and refused in open mode; an existing file in save mode ends
// the run with result 3 so that the caller can ask before overwriting (and
// run the dialog again on a "no"). Double-click on a folder opens it, on a
// file picks it. Cancel, Escape or a close request give 2.
#pragma once

#include <string>
#include <vector>

#include "ui/qdialog.h"
#include "ui/qfiledlg.h"

class QButton;
class QLabel;
class QEntryField;
class QFileList;

enum : int {
  QFILEDIALOG_CHOSEN = 1,
  QFILEDIALOG_CANCEL = 2,
  QFILEDIALOG_ASK_OVERWRITE = 3,
};

class QFileDialog : public QDialog {
 public:
  static constexpr int ENTRY_MAX = 260;

  // `r` relative to `parent`. `multiple`: Control+click selects several files.
  QFileDialog(QWindow *parent, const QRect &r, const char *title, bool save, const std::string &dir,
              const std::string &file, std::vector<QFileFilter> filters, bool multiple);
  ~QFileDialog() override;
  const char *ClassName() const override { return "QFileDialog"; }
  bool Create() override;
  void Filter(QEvent *ev) override;

  // Shows `dir` (made absolute); an unlistable folder shows only "..".
  void SetFolder(const std::string &dir);
  const std::string &GetFolder() const { return folder; }
  // Acts on a typed or picked name (relative to the folder, or absolute).
  void Pick(const std::string &name);
  void SetFilterIndex(int i);
  int GetFilterIndex() const { return filterIndex; }
  const std::vector<QFileFilter> &GetFilters() const { return filters; }
  bool IsSave() const { return save; }

  // After result 1 or 3: the chosen file's full path, and with several
  // files chosen, their names (all in GetFolder()).
  const std::string &GetChosen() const { return chosen; }
  const std::vector<std::string> &GetChosenNames() const { return chosenNames; }
  // The line that tells why a name was refused ("" when none).
  const char *GetStatus() const;

  QEntryField *GetEntry() const { return entry; }
  QFileList *GetList() const { return list; }
  QButton *GetOK() const { return ok; }
  QButton *GetCancel() const { return cancel; }
  QLabel *GetStatusLabel() const { return status; }
  QButton *GetFilterButton() const { return filterButton; }
  QLabel *GetFolderLabel() const { return folderLabel; }

 private:
  void Accept();
  void ListClicked(int row);
  void ListChanged();

  bool save;
  std::string folder;
  std::vector<QFileFilter> filters;
  int filterIndex = 0;
  std::string chosen;
  std::vector<std::string> chosenNames;

  QLabel *folderLabel = nullptr;
  QFileList *list = nullptr;
  QLabel *nameLabel = nullptr;
  QEntryField *entry = nullptr;
  QLabel *typeLabel = nullptr;
  QButton *filterButton = nullptr;
  QLabel *status = nullptr;
  QButton *ok = nullptr;
  QButton *cancel = nullptr;
};
