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

}  // namespace kpacejka
