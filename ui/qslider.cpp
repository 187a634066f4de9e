#include "ui/qslider.h"

#include <algorithm>
#include <cmath>

int QSliderMap::ValueToX(float v) const {
  if (!(hi > lo) || track.wid <= 1) return track.x;
  float t = std::clamp((v - lo) / (hi - lo), 0.0f, 1.0f);
  return track.x + static_cast<int>(std::lround(t * static_cast<float>(track.wid - 1)));
}

float QSliderMap::XToValue(int x) const {
  if (!(hi > lo) || track.wid <= 1) return lo;
  int px = std::clamp(x - track.x, 0, track.wid - 1);
  return lo + (hi - lo) * static_cast<float>(px) / static_cast<float>(track.wid - 1);
}

QSlider::QSlider(QRect track, float lo, float hi, float value) {
  map_.track = track;
  map_.lo = lo;
  map_.hi = hi;
  SetValue(value);
}

void QSlider::SetValue(float v) {
  // A NaN would stick the knob nowhere; keep the low end instead.
  value_ = std::isnan(v) ? map_.lo : std::clamp(v, map_.lo, std::max(map_.lo, map_.hi));
}

bool QSlider::MoveTo(int x) {
  float v = map_.XToValue(x);
  if (v == value_) return false;
  value_ = v;
  return true;
}

bool QSlider::Feed(const QEvent &ev) {
  switch (ev.type) {
    case QEVENT_BUTTONPRESS:
      if (ev.n != QMB_LEFT || !map_.track.Contains(ev.x, ev.y)) return false;
      state_ = QSliderState::Dragging;
      return MoveTo(ev.x);
    case QEVENT_MOTIONNOTIFY:
      return state_ == QSliderState::Dragging ? MoveTo(ev.x) : false;
    case QEVENT_BUTTONRELEASE:
      if (ev.n != QMB_LEFT || state_ != QSliderState::Dragging) return false;
      state_ = QSliderState::Idle;
      return MoveTo(ev.x);
    case QEVENT_LEAVE:
      // The mouse left the real window mid-drag: keep the value, end the drag.
      state_ = QSliderState::Idle;
      return false;
    default:
      return false;
  }
}
