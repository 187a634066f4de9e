// QDialog: a window that runs modally until it has a result.
//
// Create the dialog before its child windows: windows paint in the order
// they were created, so the children then lie on the dialog's body. The hit
// test then finds the dialog first; the dialog hands mouse events on to the
// child under the mouse.
//
// Execute makes the dialog the window manager's active group and the focus
// shell's modal window, then runs the application's loop one event at a
// time (the idle procedure paints each frame) until a result other than 0 is
// set. Each event the loop dispatches reaches Filter through the focus
// shell; Filter sets the result and never consumes the event.
#pragma once

#include <string>

#include "ui/qapp.h"
#include "ui/qdlgroute.h"
#include "ui/qwindow.h"

class QDialog : public QWindow {
 public:
  // A dialog at (x, y) of `parent` (null: the application's main window).
  QDialog(QWindow *parent, int x, int y, int wid, int hgt, const char *title = nullptr);
  ~QDialog() override;
  const char *ClassName() const override { return "QDialog"; }
  // Height of the title strip at the top; contents start below it.
  static constexpr int TITLE_HEIGHT = 22;

  void SetTitle(const char *t) { title = t ? t : ""; }
  const char *GetTitle() const { return title.c_str(); }
  int GetResult() const { return result; }
  void SetResult(int r) { result = r; }

  // Runs modally; returns the result. A dialog that is not created yet is
  // created first. The earlier active group, modal window and focus come
  // back afterwards.
  int Execute();
  // Sees each event dispatched while the dialog is modal.
  virtual void Filter(QEvent *ev);
  // Frame, title strip and background.
  void Paint(QCanvas *cv) override;
  // Mouse events go on to the child under the mouse; the dialog keeps those
  // on its empty parts, so nothing reaches the windows beneath.
  bool OnEvent(QEvent *ev) override;

 protected:
  QDialogRouter router;
  std::string title;
  int result = 0;
};

// The focus shell that keeps dialogs modal: it hands every event to the
// modal dialog's Filter and consumes nothing.
class QDialogShell : public QFocusShell {
 public:
  const char *ClassName() const override { return "QDialogShell"; }
  bool ProcessEvent(QEvent *ev) override;
};
