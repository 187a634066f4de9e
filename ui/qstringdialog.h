// The string-entry dialog: the text dialog's layout, buttons, keys and
// results with a one-line entry field under the prompt. The entry has the
// keyboard focus; Enter (or OK) accepts the text, Escape (or Cancel, or a
// close request) leaves it.
#pragma once

#include <string>

#include "ui/qtextdialog.h"

class QEntryField;

class QStringDialog : public QTextDialog {
 public:
  QStringDialog(QWindow *parent, const QRect &r, const char *title, const char *prompt, const std::string &text,
                int limit);
  ~QStringDialog() override;
  const char *ClassName() const override { return "QStringDialog"; }
  bool Create() override;
  QEntryField *GetEntry() const { return entry; }

 private:
  QEntryField *entry = nullptr;
};

// True on OK with *text = the typed text (at most `limit` characters); false
// on Cancel with *text unchanged. Without a main window nothing can be typed:
// a warning, and false.
bool QStringDialogRun(const char *title, const char *prompt, std::string *text, int limit);
