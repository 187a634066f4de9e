// Message boxes: a question or a notice the user answers with OK/Cancel,
// Yes/No or just OK. Drawn as a modal dialog in the main window when there
// is one; otherwise the platform's own box asks.
#pragma once

#include "render/qrect.h"

enum : int {
  QMB_OK = 0x1,     // only an OK button
  QMB_YESNO = 0x4,  // Yes and No
  // no flag: OK and Cancel
};

// 0 for OK or Yes, 1 for Cancel, No or closing the box. A box without a
// rectangle is sized to its text and centred in the main window.
int QMessageBox(const char *title, const char *text, int flags);
// The same at `r` (main-window coordinates).
int QMessageBoxAt(const char *title, const char *text, int flags, const QRect &r);

// The size a box needs for `text` (several lines allowed): at least 300 x 160.
void QMessageBoxSize(const char *text, int *wid, int *hgt);
// True while a message box runs modally.
bool QMessageBoxActive();
