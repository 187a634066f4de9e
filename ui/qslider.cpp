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
