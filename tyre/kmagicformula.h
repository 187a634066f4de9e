// The sine–arctangent core shared by every tyre model.
//
// Each force is  y = D·sin(C·atan(B·x − E·(B·x − atan(B·x)))) + Sv.
// MF() is the argument of the outer sine (or cosine, for the weighting
// functions and the aligning moment); the routines put D, Sv and the shifts
// around it; MFSideBySide() forms several at once. (The Pacejka89/96
// routines form the inner term as E·atan(B·x) + (1 − E)·B·x and evaluate
// their three curves side by side: see kpacejka_pac96.h.) All of it is
// written over the number type T of tyre/knumber.h.
#pragma once

#include "tyre/knumber.h"

namespace kpacejka {

// C·atan(B·x − E·(B·x − atan(B·x)))
template <class T>
inline T MF(T B, T C, T E, T x) {
  const T Bx = B * x;
  return C * Atan(Bx - E * (Bx - Atan(Bx)));
}

// One curve for MFSideBySide(): MF(B, C, E, x).
template <class T>
struct MFCurve {
  T B, C, E, x;
};

// MF() of several independent curves, a stage at a time: first atan(B·x) of
// every curve, then every outer atan. Each curve is a chain of two library
// calls that waits on itself; issued side by side, one curve's call runs
// while another's result is still coming. arg[i] is, bit for bit,
// MF(c[i].B, c[i].C, c[i].E, c[i].x).
template <class T, int N>
inline void MFSideBySide(const MFCurve<T> (&c)[N], T (&arg)[N]) {
  T Bx[N], inner[N];
  for (int i = 0; i < N; i++) {
    Bx[i] = c[i].B * c[i].x;
    inner[i] = Atan(Bx[i]);
  }
  for (int i = 0; i < N; i++) arg[i] = c[i].C * Atan(Bx[i] - c[i].E * (Bx[i] - inner[i]));
}

// s(v): 1 when v ≥ 0 (zero counts as positive), −1 otherwise.
template <class T>
inline T Sign(T v) { return Select(v >= 0.0f, T(1.0f), T(-1.0f)); }

// min(v, 1) as the routines cap a curvature: a NaN stays NaN.
template <class T>
inline T CapAtOne(T v) { return Select(v > 1.0f, T(1.0f), v); }

constexpr float DEG_TO_RAD = 0.017453292f;
constexpr float RAD_TO_DEG = 57.29578f;
constexpr float TWO_OVER_PI = 0.63661975f;

}  // namespace kpacejka
