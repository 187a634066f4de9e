// The number type the model formulas are written over, single precision.
//
// Every formula routine is a template over its number type T: float for
// KPacejka::Calculate, an 8-lane vector for the batch (tyre/kvec8.h, built
// only into the vector file of the batch). The routines use only what both
// types provide:
//   arithmetic with T and float     + - * / and unary -
//   comparisons                     < > <= >=, giving Mask<T> (bool for float)
//   Select(mask, a, b)              a where the mask holds, else b
//   Abs Sqrt Sin Cos Atan Exp       the maths functions
//   CosAtan SinTwoAtan              cos(atan(x)) and sin(2·atan(x)), below
// Select takes the place of `if`: both sides are formed and one is kept,
// which for float gives the same value as the branch it replaces.
#pragma once

#include <cmath>

namespace kpacejka {

template <class T>
struct NumberTraits;
template <>
struct NumberTraits<float> {
  using Mask = bool;
};
template <class T>
using Mask = typename NumberTraits<T>::Mask;

// Internal linkage: the vector file is built for another instruction set,
// and no copy of these may stand in for the other's.
static inline float Select(bool m, float a, float b) { return m ? a : b; }
static inline float Abs(float v) { return fabsf(v); }
static inline float Sqrt(float v) { return sqrtf(v); }
static inline float Sin(float v) { return sinf(v); }
static inline float Cos(float v) { return cosf(v); }
static inline float Atan(float v) { return atanf(v); }
static inline float Exp(float v) { return expf(v); }

// cos(atan(x)) and sin(2·atan(x)). Calculate forms them through the library
// calls, as it always has; the vector types take the identities
// 1/√(1+x²) and 2x/(1+x²) (no atan, no cosine: the rounding of a square
// root and a division, within the lanes' accuracy, at a fraction of the
// cost), with the limits 1/|x| and 2/x where x² would overflow.
static inline float CosAtan(float v) { return cosf(atanf(v)); }
static inline float SinTwoAtan(float v) { return sinf(2.0f * atanf(v)); }
template <class T>
inline T CosAtan(T x) {
  const T a = Abs(x);
  return Select(a > 1e18f, 1.0f / a, 1.0f / Sqrt(1.0f + x * x));
}
template <class T>
inline T SinTwoAtan(T x) {
  return Select(Abs(x) > 1e18f, 2.0f / x, 2.0f * x / (1.0f + x * x));
}

}  // namespace kpacejka
