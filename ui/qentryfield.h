// QEntryField: a one-line text entry window. Typed characters arrive as
// QEVENT_CHAR, the editing keys (arrows, Home, End, Backspace, Delete) as
// key presses; the text keeps to a character limit. Enter, Escape and Tab
// are left to the dialog and the window manager.
//
// A proposed text can be offered selected (SelectAll): the first typed
// character, Backspace or Delete then replaces all of it, while the caret
// keys and a click keep it and drop the selection.
#pragma once

#include <string>

#include "ui/qstringdlg.h"
#include "ui/qwindow.h"

class QEntryField : public QWindow {
 public:
  QEntryField(QWindow *parent, int x, int y, int wid, int hgt, const std::string &text, int limit);
  const char *ClassName() const override { return "QEntryField"; }

  const std::string &GetText() const { return entry.Text(); }
  // Replaces the text; the caret goes to its end.
  void SetText(const std::string &text);
  int GetCaret() const { return entry.Caret(); }
  int GetLimit() const { return limit; }
  void SelectAll() { allSelected = !entry.Text().empty(); }
  bool IsAllSelected() const { return allSelected; }

  // Frame, text and (with the focus) the caret, in the canvas font.
  void Paint(QCanvas *cv) override;
  // Editing keys and characters are consumed; a click takes the focus.
  bool OnEvent(QEvent *ev) override;

 private:
  QStringEntry entry;
  int limit;
  bool allSelected = false;
};
