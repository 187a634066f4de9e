// Connects the log to the user interface: the application name of every log
// line, and the modal box of QLOG_MSGBOX reports.
#include "diag/qdebug.h"
#include "ui/qapp.h"
#include "ui/qdlgowner.h"
#include "ui/qerror.h"
#include "ui/qmsgbox.h"
#include "ui/qplatform.h"

// With a main window the box is a dialog drawn in it. A report raised while
// a box is already up (or without a window) goes to the platform's box: a
// box over a full-screen window would be hidden behind it, so the window goes
// first. Owner is the main window, when there is one.
static void ShowLogBox(const char *text, const char *title) {
  if (!QMessageBoxActive() && QDialogOwner() != nullptr) {
    QMessageBox(title, text, QMB_OK);
    return;
  }
  QPWindow *owner = app ? app->GetMainPlatformWindow() : nullptr;
  if (owner && qpIsFullScreen(owner)) qpShowWindow(owner, false);
  qpMessageBox(owner, title, text, QPMB_OK | QPMB_ICONEXCLAMATION);
}

void QInstallMessageBox() {
  qSetAppName(app ? app->GetName() : nullptr);
  qSetMessageBoxHandler(ShowLogBox);
}
