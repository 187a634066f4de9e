#include "ui/qtextdialog.h"

#include <algorithm>

#include "diag/qdebug.h"
#include "ui/qbutton.h"
#include "ui/qdlgowner.h"
#include "ui/qlabel.h"
#include "ui/qlang.h"
#include "ui/qplatform.h"

QTextDialog::QTextDialog(QWindow *parent, const QRect &r, const char *title_, const char *text, int mode_)
    : QDialog(parent, r.x, r.y, r.wid, r.hgt, title_), mode(mode_) {
  QTextDlgLayout l = QTextDlgPlace(r.wid, r.hgt, mode);
  ok = new QButton(this, l.ok.x, l.ok.y, l.ok.wid, l.ok.hgt, QLangText("misc.ok", "OK").c_str());
  ok->SetShortcut(QK_ENTER);
  ok->SetTabOrder(0);
  if (!(mode & QTEXTDLG_OKONLY)) {
    cancel = new QButton(this, l.cancel.x, l.cancel.y, l.cancel.wid, l.cancel.hgt,
                         QLangText("misc.cancel", "Cancel").c_str());
    cancel->SetShortcut(QK_ESC);
    cancel->SetTabOrder(1);
  }
  // As high as its lines, so that the message starts at the label's top.
  int lines = 1;
  for (const char *p = text ? text : ""; *p; p++) lines += (*p == '\n');
  int hgt = std::min(lines * QDialogLineHeight(), l.ok.y - l.label_y - 4);
  label = new QLabel(this, l.label_x, l.label_y, r.wid - 2 * l.label_x, std::max(1, hgt), text ? text : "");
}

QTextDialog::~QTextDialog() {
  delete label;
  delete cancel;
  delete ok;
}

bool QTextDialog::Create() {
  if (!QDialog::Create()) return false;
  bool good = ok->Create();
  if (cancel) good = cancel->Create() && good;
  return label->Create() && good;
}

void QTextDialog::Filter(QEvent *ev) {
  if (ev) SetResult(QTextDlgFilter(*ev, ok, cancel, GetResult()));
}

int QTextDialogRun(const char *title, const char *text, int mode, const QRect *r, const char *okLabel,
                   const char *cancelLabel) {
  QWindow *owner = QDialogOwner();
  if (owner == nullptr) {
    // No window of our own to draw in: the platform asks.
    unsigned flags = (mode & QTEXTDLG_OKONLY) ? QPMB_OK : QPMB_OKCANCEL;
    int answer = qpMessageBox(nullptr, title ? title : "", text ? text : "", flags);
    return (answer == QPMB_IDOK || answer == QPMB_IDYES) ? QTEXTDLG_OK : QTEXTDLG_CANCEL;
  }
  QRect at = r ? *r : QRect(100, 150, 300, 160);
  QTextDialog *dlg = new QTextDialog(owner, QDialogPlace(owner, at), title, text, mode);
  if (okLabel || cancelLabel) {
    dlg->GetOK()->SetText(okLabel ? okLabel : "OK");
    if (dlg->GetCancel()) dlg->GetCancel()->SetText(cancelLabel ? cancelLabel : "Cancel");
  }
  int result = dlg->Execute();
  delete dlg;
  return result;
}

