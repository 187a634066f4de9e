#include "ui/qmsgbox.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "ui/qapp.h"
#include "ui/qbutton.h"
#include "ui/qcanvas.h"
#include "ui/qdlgowner.h"
#include "ui/qfont.h"
#include "ui/qlang.h"
#include "ui/qplatform.h"
#include "ui/qtextdialog.h"

namespace {
int depth = 0;

int PlatformBox(const char *title, const char *text, int flags) {
  unsigned pf = QPMB_OKCANCEL;
  if (flags & QMB_OK) pf = QPMB_OK;
  else if (flags & QMB_YESNO) pf = QPMB_YESNO;
  int answer = qpMessageBox(nullptr, title ? title : "", text ? text : "", pf);
  return (answer == QPMB_IDOK || answer == QPMB_IDYES) ? 0 : 1;
}
}  // namespace

bool QMessageBoxActive() { return depth > 0; }

void QMessageBoxSize(const char *text, int *wid, int *hgt) {
  QFont *font = (app && app->GetBC()) ? app->GetBC()->GetFont() : nullptr;
  bool metrics = font && font->IsCreated();
  int lineHgt = metrics ? font->GetHeight() : 16;
  int widest = 0, lines = 0;
  const char *p = text ? text : "";
  for (;;) {
    const char *end = std::strchr(p, '\n');
    int len = end ? static_cast<int>(end - p) : static_cast<int>(std::strlen(p));
    int w = metrics ? font->GetWidth(p, len) : len * 8;
    widest = std::max(widest, w);
    lines++;
    if (!end) break;
    p = end + 1;
  }
  // The message starts at (10, 48); the buttons take the bottom 40 pixels.
  *wid = std::max(300, widest + 2 * 10 + 8);
  *hgt = std::max(160, 48 + lines * lineHgt + 12 + 40);
}

int QMessageBoxAt(const char *title, const char *text, int flags, const QRect &r) {
  QWindow *owner = QDialogOwner();
  if (owner == nullptr) return PlatformBox(title, text, flags);
  int mode = (flags & QMB_OK) ? QTEXTDLG_OKONLY : 0;
  QTextDialog *dlg = new QTextDialog(owner, QDialogPlace(owner, r), title, text, mode);
  if (!(flags & QMB_OK) && (flags & QMB_YESNO)) {
    dlg->GetOK()->SetText(QLangText("misc.yes", "Yes").c_str());
    dlg->GetCancel()->SetText(QLangText("misc.no", "No").c_str());
  }
  depth++;
  int result = dlg->Execute();
  depth--;
  delete dlg;
  return result == QTEXTDLG_OK ? 0 : 1;
}

int QMessageBox(const char *title, const char *text, int flags) {
  if (QDialogOwner() == nullptr) return PlatformBox(title, text, flags);
  int wid = 0, hgt = 0;
  QMessageBoxSize(text, &wid, &hgt);
  return QMessageBoxAt(title, text, flags, QDialogCentred(wid, hgt));
}
