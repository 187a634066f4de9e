// Horizontal slider logic: mapping between a value range and the pixels of a
// track, and the drag state machine. Input goes in as mouse events; the
// slider reports whether its value changed.
#pragma once

#include "ui/qevent.h"
#include "ui/qrect.h"

// Value <-> pixel mapping over a track. Values are clamped into [lo, hi];
// pixels outside the track map to the nearest end.
struct QSliderMap {
  QRect track;
  float lo = 0.0f, hi = 1.0f;
  int ValueToX(float v) const;
  float XToValue(int x) const;
};

enum class QSliderState { Idle, Dragging };

class QSlider {
 public:
  QSlider(QRect track, float lo, float hi, float value);
  // Feeds one event; returns true when the value changed.
  bool Feed(const QEvent &ev);
  float Value() const { return value_; }
  void SetValue(float v);
  QSliderState State() const { return state_; }
  const QSliderMap &Map() const { return map_; }

 private:
  bool MoveTo(int x);
  QSliderMap map_;
  float value_ = 0.0f;
  QSliderState state_ = QSliderState::Idle;
};

// ---- Drawing ------------------------------------------------------------------
class QCanvas;

// The knob's rectangle: 8 pixels wide, the track's height plus 2 above and
// below, centred on the value's pixel.
QRect QSliderKnob(const QSlider &s);
// Track groove, filled part up to the value, knob (brighter while dragged)
// and, with the focus, a ring around the whole control.
void QSliderDraw(QCanvas &cv, const QSlider &s, bool focused);
