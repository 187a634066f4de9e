// QProp: a horizontal slider over an integer range, with a caption drawn on
// it. The position is kept as it is set, even outside the range, and drawn
// clamped into it.
//
// The user moves it by dragging the knob, by clicking beside the knob (one
// big step towards the click), with the mouse wheel (one small step), and
// with the focus by the arrow keys (small step), PageUp/PageDown (big step)
// and Home/End (the ends). Each move that changes the position posts
// QEVENT_CHANGE with the new position; setting it from code posts nothing.
// A press and release on the knob without moving the mouse is no move: a
// position outside the range, drawn at the nearer end, stays as it is.
#pragma once

#include <string>

#include "ui/qslider.h"
#include "ui/qwindow.h"

class QProp : public QWindow {
 public:
  // Width of the knob in pixels; its centre marks the position.
  static constexpr int KNOB_WID = 9;

  QProp(QWindow *parent, int x, int y, int wid, int hgt);
  const char *ClassName() const override { return "QProp"; }

  // A range with max below min is read as min..min.
  void SetRange(int min, int max);
  int GetMin() const { return minPos; }
  int GetMax() const { return maxPos; }
  void SetStepSizes(int small, int big);
  int GetSmallStep() const { return smallStep; }
  int GetBigStep() const { return bigStep; }
  void SetPosition(int p) { pos = p; }
  int GetPosition() const { return pos; }
  void SetCaption(const char *text) { caption = text ? text : ""; }
  const char *GetCaption() const { return caption.c_str(); }
  bool IsDragging() const { return dragging; }

  // The mapping between positions and the knob centre's pixel in the real
  // window (the knob's travel, inside the frame).
  QSliderMap GetMap() const;
  // The knob's rectangle at the (clamped) position.
  QRect GetKnobRect() const;

  // Left end of a caption `textWid` pixels wide in `room`: centred, or
  // beside the knob when the knob stands where the centred caption would.
  int CaptionX(int textWid, const QRect &room) const;

  void Paint(QCanvas *cv) override;
  bool OnEvent(QEvent *ev) override;

 private:
  // Moves to `p` clamped into the range; posts when the position changed.
  void UserMove(int p);
  int Clamped(int p) const;
  int PositionAt(int x) const;

  int minPos = 0, maxPos = 100;
  int smallStep = 1, bigStep = 10;
  int pos = 0;
  std::string caption;
  bool dragging = false;
  int grabOffset = 0;  // mouse x minus knob centre when the drag began
  int pressX = 0;      // where the drag began
  bool moved = false;  // the mouse has left pressX since
  bool hot = false;    // the mouse is over the knob
};
