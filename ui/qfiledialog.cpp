#include "ui/qfiledialog.h"

#include <filesystem>
#include <system_error>

#include "ui/qbutton.h"
#include "ui/qdlgowner.h"
#include "ui/qentryfield.h"
#include "ui/qfilebrowse.h"
#include "ui/qfilelist.h"
#include "ui/qlabel.h"
#include "ui/qlang.h"
#include "ui/qtextdlg.h"
#include "ui/qwinmgr.h"

namespace fs = std::filesystem;

namespace {
constexpr int MARGIN = 10, TOP = 30, FIELD_HGT = 24, LABEL_WID = 50;

// "/a/b/" -> "/a/b"; the root stays "/".
std::string Tidy(const fs::path &p) {
  std::string s = p.lexically_normal().string();
  while (s.size() > 1 && s.back() == '/') s.pop_back();
  return s;
}
}  // namespace

QFileDialog::QFileDialog(QWindow *parent, const QRect &r, const char *title_, bool save_, const std::string &dir,
                         const std::string &file, std::vector<QFileFilter> filters_, bool multiple)
    : QDialog(parent, r.x, r.y, r.wid, r.hgt, title_), save(save_), filters(std::move(filters_)) {
  if (filters.empty()) filters.push_back({"All Files (*.*)", "*.*"});
  int lh = QDialogLineHeight();
  int inner = r.wid - 2 * MARGIN;
  QTextDlgLayout l = QTextDlgPlace(r.wid, r.hgt, 0);
  // From the bottom up: buttons, filter row, name row; the list takes the rest.
  int typeY = l.ok.y - 8 - FIELD_HGT;
  int nameY = typeY - 6 - FIELD_HGT;
  int listY = TOP + lh + 8;
  folderLabel = new QLabel(this, MARGIN, TOP, inner, lh + 4, "");
  list = new QFileList(this, MARGIN, listY, inner, nameY - 8 - listY);
  list->SetMultiple(multiple);
  nameLabel = new QLabel(this, MARGIN, nameY + (FIELD_HGT - lh) / 2, LABEL_WID, lh, "Name:");
  entry = new QEntryField(this, MARGIN + LABEL_WID, nameY, inner - LABEL_WID, FIELD_HGT, file, ENTRY_MAX - 1);
  typeLabel = new QLabel(this, MARGIN, typeY + (FIELD_HGT - lh) / 2, LABEL_WID, lh, "Type:");
  filterButton = new QButton(this, MARGIN + LABEL_WID, typeY, inner - LABEL_WID, FIELD_HGT, filters[0].label.c_str());
  ok = new QButton(this, l.ok.x, l.ok.y, l.ok.wid, l.ok.hgt, QLangText("misc.ok", "OK").c_str());
  status = new QLabel(this, l.ok.x + l.ok.wid + 8, l.ok.y + (l.ok.hgt - lh) / 2, l.cancel.x - l.ok.x - l.ok.wid - 16,
                      lh, "");
  status->SetElide(true);  // a long typed path must not run under Cancel
  cancel = new QButton(this, l.cancel.x, l.cancel.y, l.cancel.wid, l.cancel.hgt,
                       QLangText("misc.cancel", "Cancel").c_str());
  entry->SetTabOrder(0);
  list->SetTabOrder(1);
  filterButton->SetTabOrder(2);
  ok->SetTabOrder(3);
  cancel->SetTabOrder(4);
  SetFolder(dir);
}

QFileDialog::~QFileDialog() {
  delete cancel;
  delete status;
  delete ok;
  delete filterButton;
  delete typeLabel;
  delete entry;
  delete nameLabel;
  delete list;
  delete folderLabel;
}

bool QFileDialog::Create() {
  if (!QDialog::Create()) return false;
  bool good = true;
  for (QWindow *w : std::initializer_list<QWindow *>{folderLabel, list, nameLabel, entry, typeLabel, filterButton, ok,
                                                     status, cancel})
    good = w->Create() && good;
  entry->Focus();
  entry->SelectAll();
  return good;
}

const char *QFileDialog::GetStatus() const { return status->GetText(); }

void QFileDialog::SetFolder(const std::string &dir) {
  std::error_code ec;
  fs::path at = fs::absolute(dir.empty() ? fs::path(".") : fs::path(dir), ec);
  folder = ec ? dir : Tidy(at);
  list->SetEntries(QBrowseList(folder, filters[static_cast<size_t>(filterIndex)].pattern));
  folderLabel->SetText(folder.c_str());
}

void QFileDialog::SetFilterIndex(int i) {
  if (i < 0 || i >= static_cast<int>(filters.size())) return;
  filterIndex = i;
  filterButton->SetText(filters[static_cast<size_t>(i)].label.c_str());
  SetFolder(folder);
}

void QFileDialog::Pick(const std::string &name) {
  status->SetText("");
  std::string path;
  switch (QBrowsePick(folder, name, save, &path)) {
    case QBrowseAction::EnterFolder:
      // A typed folder has done its work; a proposed file name stays.
      if (entry->GetText() == name) entry->SetText("");
      SetFolder(path);
      break;
    case QBrowseAction::Choose:
      chosen = path;
      chosenNames.clear();
      SetResult(QFILEDIALOG_CHOSEN);
      break;
    case QBrowseAction::AskOverwrite:
      chosen = path;
      chosenNames.clear();
      SetResult(QFILEDIALOG_ASK_OVERWRITE);
      break;
    case QBrowseAction::Reject:
      if (!name.empty()) status->SetText(("'" + name + "' not found").c_str());
      break;
  }
}

// OK or Enter: several selected files are chosen together; else the name in
// the entry (or the list's current row when the entry is empty) is picked.
void QFileDialog::Accept() {
  std::vector<std::string> files;
  for (int row : list->GetSelection()) {
    const QBrowseEntry &e = list->GetEntries()[static_cast<size_t>(row)];
    if (!e.folder) files.push_back(e.name);
  }
  if (files.size() > 1) {
    chosenNames = files;
    chosen = Tidy(fs::path(folder) / files[0]);
    SetResult(QFILEDIALOG_CHOSEN);
    return;
  }
  std::string name = entry->GetText();
  if (name.empty() && list->GetCurrent() >= 0) name = list->GetEntries()[static_cast<size_t>(list->GetCurrent())].name;
  Pick(name);
}

void QFileDialog::ListClicked(int row) {
  if (row < 0 || row >= list->GetCount()) return;
  Pick(list->GetEntries()[static_cast<size_t>(row)].name);
}

// A selected file's name goes into the entry; with several, all of them.
void QFileDialog::ListChanged() {
  std::vector<std::string> files;
  for (int row : list->GetSelection()) {
    const QBrowseEntry &e = list->GetEntries()[static_cast<size_t>(row)];
    if (!e.folder) files.push_back(e.name);
  }
  if (files.size() == 1) {
    entry->SetText(files[0]);
  } else if (files.size() > 1) {
    std::string all;
    for (const std::string &f : files) all += (all.empty() ? "\"" : " \"") + f + "\"";
    entry->SetText(all);
  }
}

void QFileDialog::Filter(QEvent *ev) {
  if (ev == nullptr || GetResult() != 0) return;
  switch (ev->type) {
    case QEVENT_CLICK:
      if (ev->win == ok) Accept();
      else if (ev->win == cancel) SetResult(QFILEDIALOG_CANCEL);
      else if (ev->win == filterButton) SetFilterIndex((filterIndex + 1) % static_cast<int>(filters.size()));
      else if (ev->win == list) ListClicked(ev->n);
      break;
    case QEVENT_CHANGE:
      if (ev->win == list) ListChanged();
      break;
    case QEVENT_KEYPRESS: {
      QWindowManager *wm = QGetWindowManager();
      QWindow *focus = wm ? wm->GetFocus() : nullptr;
      if (ev->n == QK_ESC) {
        SetResult(QFILEDIALOG_CANCEL);
      } else if ((ev->n == QK_ENTER || ev->n == 300) && focus != ok && focus != cancel && focus != filterButton) {
        // (A focused button takes its own Enter as a click.)
        int row = list->GetCurrent();
        if (focus == list && row >= 0 && list->GetEntries()[static_cast<size_t>(row)].folder) ListClicked(row);
        else Accept();
      }
      break;
    }
    case QEVENT_CLOSE:
      SetResult(QFILEDIALOG_CANCEL);
      break;
    default:
      break;
  }
}

