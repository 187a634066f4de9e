// Where the framework's own modal dialogs go. A dialog opened while another
// one is modal (a question asked by the file dialog) becomes a child of that
// one, so that the window manager's active group takes it in; otherwise the
// main window owns it.
#pragma once

#include "render/qrect.h"

class QWindow;

// The owner of a new dialog, or null when none can be shown (no application,
// no open display or no created main window).
QWindow *QDialogOwner();
// `r`, given in the main window's coordinates, relative to `owner`.
QRect QDialogPlace(const QWindow *owner, const QRect &r);
// A rectangle of `wid` x `hgt` centred in the main window (clamped to it).
QRect QDialogCentred(int wid, int hgt);
// Height of a text line in the canvas font of the application's back-buffer
// canvas (16 when there is none yet), for laying out dialogs before painting.
int QDialogLineHeight();
