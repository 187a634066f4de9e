// The sine–arctangent core shared by every tyre model.
//
// Each force is  y = D·sin(C·atan(B·x − E·(B·x − atan(B·x)))) + Sv.
// MF() is the argument of the outer sine (or cosine, for the weighting
// functions and the aligning moment); the routines put D, Sv and the shifts
// around it. (The Pacejka89/96 routines form the inner term as
// E·atan(B·x) + (1 − E)·B·x and evaluate their three curves side by side:
// see kpacejka_pac96.cpp.)
#pragma once

#include <cmath>

namespace kpacejka {

// C·atan(B·x − E·(B·x − atan(B·x)))
inline float MF(float B, float C, float E, float x) {
  const float Bx = B * x;
  return C * atanf(Bx - E * (Bx - atanf(Bx)));
}

// s(v): 1 when v ≥ 0 (zero counts as positive), −1 otherwise.
inline float Sign(float v) { return v >= 0.0f ? 1.0f : -1.0f; }

constexpr float DEG_TO_RAD = 0.017453292f;
constexpr float RAD_TO_DEG = 57.29578f;
constexpr float TWO_OVER_PI = 0.63661975f;

}  // namespace kpacejka
