#include "ui/qtextdlg.h"

QTextDlgLayout QTextDlgPlace(int wid, int hgt, int mode) {
  QTextDlgLayout l;
  bool ok_only = (mode & QTEXTDLG_OKONLY) != 0;
  l.ok = QRect(ok_only ? wid / 2 - 50 : 12, hgt - 40, 100, 35);
  if (!ok_only) l.cancel = QRect(wid - 110, hgt - 40, 100, 35);
  return l;
}

int QTextDlgFilter(const QEvent &ev, const QWindow *ok, const QWindow *cancel, int current) {
  switch (ev.type) {
    case QEVENT_CLICK:
      if (ev.win != nullptr && ev.win == ok) return QTEXTDLG_OK;
      if (ev.win != nullptr && ev.win == cancel) return QTEXTDLG_CANCEL;
      return current;
    case QEVENT_KEYPRESS:
      // 300 is the keypad Enter some window systems report separately.
      if (ev.n == QK_ENTER || ev.n == 300) return QTEXTDLG_OK;
      // With a Cancel button, Escape is that button's key and arrives as its click.
      if (ev.n == QK_ESC && cancel == nullptr) return QTEXTDLG_OK;
      return current;
    case QEVENT_CLOSE:
      return QTEXTDLG_CANCEL;
    default:
      return current;
  }
}
