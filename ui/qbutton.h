// Push button logic: the pressed/hovered state machine and the click it
// reports. Input goes in as mouse events; the button says whether the user
// completed a click (pressed and released inside). Drawing reads State().
#pragma once

#include "ui/qevent.h"
#include "ui/qrect.h"

enum class QButtonState { Idle, Hover, Pressed, PressedOut };
enum class QButtonInput { Enter, Leave, Press, Release };

struct QButtonStep {
  QButtonState next;
  bool clicked;
};

// One row of the state table: what `in` does to a button in state `s`.
QButtonStep QButtonNext(QButtonState s, QButtonInput in);

class QButton {
 public:
  explicit QButton(QRect r = QRect()) : rect_(r) {}
  // Feeds one event; returns true when it completes a click.
  bool Feed(const QEvent &ev);
  QButtonState State() const { return state_; }
  const QRect &Rect() const { return rect_; }
  void SetRect(QRect r) { rect_ = r; }

 private:
  bool Apply(QButtonInput in);
  QRect rect_;
  QButtonState state_ = QButtonState::Idle;
};

// ---- Drawing ------------------------------------------------------------------
class QCanvas;

// Arrow symbols drawn as a filled triangle centred in the button.
enum class QButtonSymbol { None, Left, Right, Up, Down };

struct QTri {
  int x[3], y[3];
};
// The symbol's triangle inside `r`, one pixel down and right when pressed.
QTri QButtonSymbolTri(const QRect &r, QButtonSymbol sym, bool pressed);

// Face colours per state; the focus ring and symbol/label are drawn on top.
void QButtonDraw(QCanvas &cv, const QButton &b, const char *label, QButtonSymbol sym, bool focused);
