// QTextDialog: a modal dialog with a message and OK / Cancel buttons (only
// OK when the mode has QTEXTDLG_OKONLY). Its result is 0 while it runs, 1 for
// OK (Enter, the OK button, Escape without a Cancel button) and 2 for Cancel
// (the Cancel button or its Escape key, a close request).
#pragma once

#include <string>

#include "ui/qdialog.h"
#include "ui/qtextdlg.h"

class QButton;
class QLabel;

class QTextDialog : public QDialog {
 public:
  // `r` relative to `parent` (null: the main window).
  QTextDialog(QWindow *parent, const QRect &r, const char *title, const char *text, int mode);
  ~QTextDialog() override;
  const char *ClassName() const override { return "QTextDialog"; }

  // The dialog, then its buttons and message label.
  bool Create() override;
  void Filter(QEvent *ev) override;

  QButton *GetOK() const { return ok; }
  QButton *GetCancel() const { return cancel; }  // null in OK-only mode
  QLabel *GetLabel() const { return label; }
  int GetMode() const { return mode; }

 protected:
  int mode = 0;
  QButton *ok = nullptr;
  QButton *cancel = nullptr;
  QLabel *label = nullptr;
};

// Shows a text dialog owned by the main window at `r` (null: (100, 150),
// 300 x 160) and returns its result (1 OK, 2 Cancel). A given label replaces
// the button's default text ("misc.ok" / "misc.cancel" of the language
// table). Without a main window the platform's message box asks instead.
int QTextDialogRun(const char *title, const char *text, int mode, const QRect *r = nullptr,
                   const char *okLabel = nullptr, const char *cancelLabel = nullptr);
