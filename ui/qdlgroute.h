// Mouse routing inside a dialog. The window manager's hit test takes the
// first window in list order, and a dialog joins the list before its child
// windows, so a dialog can receive the mouse events meant for a child. The
// router hands them on: to the child under the mouse (the one created last
// wins), keeping the child that took a press until the release, and telling
// a child the mouse left it.
#pragma once

class QWindow;
struct QEvent;

class QDialogRouter {
 public:
  // True when a child of `dlg` took the event.
  bool Route(QWindow *dlg, QEvent *ev);
  // The visible, enabled window inside `dlg` (not `dlg` itself) at (x, y) of
  // the real window; null when none.
  static QWindow *ChildAt(const QWindow *dlg, int x, int y);

 private:
  QWindow *held = nullptr;
  QWindow *hover = nullptr;
};
