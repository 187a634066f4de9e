// Text dialog: the layout of its OK/Cancel buttons and the event filter that
// turns events into its result (0 running, 1 OK, 2 Cancel).
#pragma once

#include "ui/qevent.h"
#include "render/qrect.h"

enum : int {
  QTEXTDLG_OKONLY = 0x1,  // mode bit: only an OK button
  QTEXTDLG_RUNNING = 0,
  QTEXTDLG_OK = 1,
  QTEXTDLG_CANCEL = 2,
};

struct QTextDlgLayout {
  QRect ok;
  QRect cancel;  // empty (0x0) in OK-only mode
  int label_x = 10, label_y = 48;
};

QTextDlgLayout QTextDlgPlace(int wid, int hgt, int mode);

// The result an event gives, or `current` when it gives none. `ok` and
// `cancel` are the dialog's buttons (cancel null in OK-only mode). The filter
// never consumes the event: the Cancel button still sees its own Escape.
int QTextDlgFilter(const QEvent &ev, const QWindow *ok, const QWindow *cancel, int current);
