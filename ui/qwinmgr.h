// QWindowManager: the list of windows of the user interface, the window
// under the mouse, the keyboard focus and its tab order, and the active
// group that keeps a modal dialog modal.
//
// Input routing (ProcessEvent, offered each event after the keyboard
// handlers): a button press goes to the window under the mouse, which keeps
// the mouse until the release; motion and release go to that window or, with
// none holding the mouse, to the window under it. Key presses first trigger
// the shortcut of a window in the active group (not consumed), then Tab and
// Shift+Tab move the focus (consumed), then the rest goes to the focus
// window. While an active group is set, only its windows take input.
#pragma once

#include <cstddef>
#include <vector>

#include "ui/qapp.h"

class QCanvas;
class QWindow;

// Keyboard focus order among a window's controls: Tab moves forward,
// Shift+Tab back, both wrapping around and skipping controls that cannot take
// the focus (disabled or hidden).
// Returns the index that takes the focus after `current` (-1: none has it) in
// direction `step` (+1 or -1), or -1 when no control can take it.
int QFocusNext(const std::vector<bool> &can_focus, int current, int step);

typedef void (*QAddWindowCallback)(QWindow *w, void *user);

class QWindowManager : public QEventSink {
 public:
  const char *ClassName() const override { return "QWindowManager"; }

  // Appends the window; refuses (false, with the warning) one outside the
  // active group; then tells the add callback.
  bool AddWindow(QWindow *w);
  void RemoveWindow(QWindow *w);
  int GetWindowCount() const { return static_cast<int>(windows.size()); }
  QWindow *GetWindow(int i) const { return windows[static_cast<size_t>(i)]; }
  void SetAddCallback(QAddWindowCallback cb, void *user) { addCb = cb; addUser = user; }

  // First window in list order of the platform window `pw` (null: any) that
  // is enabled, visible, in the active group and contains (x, y).
  QWindow *WindowAt(QPWindow *pw, int x, int y) const;

  QWindow *GetFocus() const { return focus; }
  void SetFocus(QWindow *w) { focus = w; }
  QWindow *FocusFirst();
  QWindow *FocusLast();
  QWindow *FocusNext();
  QWindow *FocusPrev();

  // The dialog whose windows alone take input (null: all windows).
  void SetActiveGroup(QWindow *group) { activeGroup = group; }
  QWindow *GetActiveGroup() const { return activeGroup; }
  bool InActiveGroup(const QWindow *w) const;

  // The window holding the mouse between a press and its release.
  QWindow *GetCapture() const { return capture; }

  bool ProcessEvent(QEvent *ev) override;
  // Paints every visible window of the platform window `pw` (null: all) in
  // list order, so windows added later (dialogs) lie on top.
  void Paint(QCanvas *cv, QPWindow *pw = nullptr);

 private:
  bool TakesInput(const QWindow *w) const;
  bool SendToFocus(QEvent *ev);
  void TrackHover(QWindow *now, QEvent *ev);
  std::vector<QWindow *> windows;
  QWindow *focus = nullptr;
  QWindow *activeGroup = nullptr;
  QWindow *capture = nullptr;
  QWindow *hover = nullptr;
  QAddWindowCallback addCb = nullptr;
  void *addUser = nullptr;
};

// The application's window manager (null without an application).
QWindowManager *QGetWindowManager();
