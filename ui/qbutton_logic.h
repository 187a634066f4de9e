// Push button logic: the pressed/hovered state machine and the click it
// reports. Input goes in as mouse events; the logic says whether the user
// completed a click (pressed and released inside). Drawing reads State().
#pragma once

#include "ui/qevent.h"
#include "render/qrect.h"

enum class QButtonState { Idle, Hover, Pressed, PressedOut };
enum class QButtonInput { Enter, Leave, Press, Release };

struct QButtonStep {
  QButtonState next;
  bool clicked;
};

// One row of the state table: what `in` does to a button in state `s`.
QButtonStep QButtonNext(QButtonState s, QButtonInput in);

class QPushLogic {
 public:
  explicit QPushLogic(QRect r = QRect()) : rect_(r) {}
  // Feeds one event; returns true when it completes a click.
  bool Feed(const QEvent &ev);
  QButtonState State() const { return state_; }
  // Back to Idle (the control was disabled or hidden mid-press).
  void Reset() { state_ = QButtonState::Idle; }
  const QRect &Rect() const { return rect_; }
  void SetRect(QRect r) { rect_ = r; }

 private:
  bool Apply(QButtonInput in);
  QRect rect_;
  QButtonState state_ = QButtonState::Idle;
};
