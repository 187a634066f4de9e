// Horizontal slider mapping between a value range and the pixels of a track
// (the slider control QProp places its knob and reads drags through it).
#pragma once

#include "render/qrect.h"

// Value <-> pixel mapping over a track. Values are clamped into [lo, hi];
// pixels outside the track map to the nearest end.
struct QSliderMap {
  QRect track;
  float lo = 0.0f, hi = 1.0f;
  int ValueToX(float v) const;
  float XToValue(int x) const;
};
