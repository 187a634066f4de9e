// The operating point as the setters store it: SI in, clamped into the
// tyre's validity ranges, then degrees, percent and kN. The setters, the
// single-point core and the batch all convert through these, over the number type T of
// tyre/knumber.h.
#pragma once

#include "tyre/kmagicformula.h"
#include "tyre/ktyre.h"

namespace kpacejka {

// Below the minimum gives the minimum, above the maximum the maximum; a NaN
// passes through (both comparisons fail).
template <class T>
inline T Clamp(T v, float lo, float hi) {
  return Select(v < lo, T(lo), Select(v > hi, T(hi), v));
}

template <class T>
inline T StoredLoad(const KTyreParams &t, T newtons) {  // kN
  return Clamp(newtons, t.fzMin, t.fzMax) * 0.001f;
}
template <class T>
inline T StoredSlipRatio(const KTyreParams &t, T ratio) {  // percent
  return Clamp(ratio, t.slipRatioMin, t.slipRatioMax) * 100.0f;
}
template <class T>
inline T StoredSlipAngle(const KTyreParams &t, T radians) {  // degrees
  return Clamp(radians, t.slipAngleMin, t.slipAngleMax) * RAD_TO_DEG;
}
// The camber is stored unclamped, negated for a negate_camber tyre.
template <class T>
inline T StoredCamber(const KTyreParams &t, T radians) {  // degrees
  const T c = radians * RAD_TO_DEG;
  return (t.flags & KTyreParams::NEGATE_CAMBER) ? -c : c;
}

// The pressure as the core takes it: (p - nompres) / nompres, 0 for a
// pressure of 0 or less (none given) and for a tyre without a nominal
// pressure.
template <class T>
inline T StoredDpi(const KTyreParams &t, T pascals) {
  if (!(t.nompres > 0.0f)) return T(0.0f);
  return Select(pascals > 0.0f, (pascals - t.nompres) / t.nompres, T(0.0f));
}

// The point SetNormalLoad, SetSlipRatio, SetSlipAngle and SetCamber store
// (the peak load follows the load).
template <class T>
inline Point<T> StoredPoint(const KTyreParams &t, T newtons, T ratio, T radians, T camberRadians) {
  const T load = StoredLoad(t, newtons);
  return {StoredCamber(t, camberRadians), StoredSlipAngle(t, radians), StoredSlipRatio(t, ratio), load, load,
          T(0.0f)};
}
// The same at an inflation pressure (Pa).
template <class T>
inline Point<T> StoredPoint(const KTyreParams &t, T newtons, T ratio, T radians, T camberRadians, T pascals) {
  Point<T> p = StoredPoint(t, newtons, ratio, radians, camberRadians);
  p.dpi = StoredDpi(t, pascals);
  return p;
}

}  // namespace kpacejka
