#include "ui/qstringdialog.h"

#include <algorithm>
#include <cstring>

#include "diag/qdebug.h"
#include "ui/qbutton.h"
#include "ui/qdlgowner.h"
#include "ui/qentryfield.h"
#include "ui/qlabel.h"

namespace {
constexpr int ENTRY_HGT = 24;

int LineCount(const char *text) {
  int n = 1;
  for (const char *p = text ? text : ""; *p; p++) n += (*p == '\n');
  return n;
}
}  // namespace

QStringDialog::QStringDialog(QWindow *parent, const QRect &r, const char *title_, const char *prompt,
                             const std::string &text, int limit)
    : QTextDialog(parent, r, title_, prompt, 0) {
  QTextDlgLayout l = QTextDlgPlace(r.wid, r.hgt, 0);
  int promptHgt = LineCount(prompt) * QDialogLineHeight();
  label->Size(r.wid - 2 * l.label_x, promptHgt);
  entry = new QEntryField(this, l.label_x, l.label_y + promptHgt + 6, r.wid - 2 * l.label_x, ENTRY_HGT, text, limit);
  // The entry comes first in the tab order, before OK and Cancel.
  entry->SetTabOrder(0);
  ok->SetTabOrder(1);
  cancel->SetTabOrder(2);
}

QStringDialog::~QStringDialog() { delete entry; }

bool QStringDialog::Create() {
  if (!QTextDialog::Create()) return false;
  if (!entry->Create()) return false;
  entry->Focus();
  entry->SelectAll();
  return true;
}

bool QStringDialogRun(const char *title, const char *prompt, std::string *text, int limit) {
  QWindow *owner = QDialogOwner();
  if (owner == nullptr) {
    QWARN("QStringDialogRun(%s); no window to ask in", title ? title : "");
    return false;
  }
  // The text dialog's place and size, taller when the prompt has several lines.
  int need = 48 + LineCount(prompt) * QDialogLineHeight() + 6 + ENTRY_HGT + 10 + 40;
  QRect at(100, 150, 300, std::max(160, need));
  QStringDialog *dlg = new QStringDialog(owner, QDialogPlace(owner, at), title, prompt, text ? *text : "", limit);
  int result = dlg->Execute();
  bool accepted = result == QTEXTDLG_OK;
  if (accepted && text) *text = dlg->GetEntry()->GetText();
  delete dlg;
  return accepted;
}
