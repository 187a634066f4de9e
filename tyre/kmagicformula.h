// The sine–arctangent core shared by every tyre model.
//
// Each force is  y = D·sin(C·atan(B·x − E·(B·x − atan(B·x)))) + Sv.
// MF() is the argument of the outer sine (or cosine, for the weighting
// functions and the aligning moment); the routines put D, Sv and the shifts
// around it; MFSideBySide() forms several at once. (The Pacejka89/96
// routines form the inner term as E·atan(B·x) + (1 − E)·B·x and evaluate
// their three curves side by side: see kpacejka_pac96.cpp.)
#pragma once

#include <cmath>

namespace kpacejka {

// C·atan(B·x − E·(B·x − atan(B·x)))
inline float MF(float B, float C, float E, float x) {
  const float Bx = B * x;
  return C * atanf(Bx - E * (Bx - atanf(Bx)));
}

// One curve for MFSideBySide(): MF(B, C, E, x).
struct MFCurve {
  float B, C, E, x;
};

// MF() of several independent curves, a stage at a time: first atan(B·x) of
// every curve, then every outer atan. Each curve is a chain of two library
// calls that waits on itself; issued side by side, one curve's call runs
// while another's result is still coming. arg[i] is, bit for bit,
// MF(c[i].B, c[i].C, c[i].E, c[i].x).
template <int N>
inline void MFSideBySide(const MFCurve (&c)[N], float (&arg)[N]) {
  float Bx[N], inner[N];
  for (int i = 0; i < N; i++) {
    Bx[i] = c[i].B * c[i].x;
    inner[i] = atanf(Bx[i]);
  }
  for (int i = 0; i < N; i++) arg[i] = c[i].C * atanf(Bx[i] - c[i].E * (Bx[i] - inner[i]));
}

// s(v): 1 when v ≥ 0 (zero counts as positive), −1 otherwise.
inline float Sign(float v) { return v >= 0.0f ? 1.0f : -1.0f; }

constexpr float DEG_TO_RAD = 0.017453292f;
constexpr float RAD_TO_DEG = 57.29578f;
constexpr float TWO_OVER_PI = 0.63661975f;

}  // namespace kpacejka
