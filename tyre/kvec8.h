// Eight single-precision lanes (AVX2) as a number type of the formula
// templates (see tyre/knumber.h), with SLEEF's vector maths functions: sin,
// cos and exp within 1 ulp, atan within 3.5 ulp (its 1-ulp form costs four
// times as much and took half the batch's time).
//
// Only the batch's eight-lane file includes this header; it is built with
// -mavx2 -mfma -ffp-contract=off, so a lane computes +, -, *, / and sqrt
// exactly as float does and differs only where SLEEF's sin, cos, atan and
// exp round differently from the C library's (and where the formulas take
// cos(atan x) and sin(2 atan x) through their identities, tyre/knumber.h). Everything here sits in an
// unnamed namespace: none of it may be merged with code built without AVX2.
#pragma once

#include <immintrin.h>
#include <sleef.h>

#include "tyre/knumber.h"

namespace kpacejka {
namespace {

struct F8Mask {
  __m256 m;
  F8Mask() : m(_mm256_setzero_ps()) {}
  F8Mask(__m256 x) : m(x) {}
  explicit F8Mask(bool b) : m(_mm256_castsi256_ps(_mm256_set1_epi32(b ? -1 : 0))) {}
};

struct F8 {
  static constexpr int LANES = 8;
  __m256 v;
  F8() : v(_mm256_setzero_ps()) {}
  F8(__m256 x) : v(x) {}
  F8(float x) : v(_mm256_set1_ps(x)) {}
  static F8 Load(const float *p) { return _mm256_loadu_ps(p); }
  // cvtpd_ps rounds to nearest, as float(x) does.
  static F8 Load(const double *p) {
    return _mm256_set_m128(_mm256_cvtpd_ps(_mm256_loadu_pd(p + 4)), _mm256_cvtpd_ps(_mm256_loadu_pd(p)));
  }
  void Store(float *p) const { _mm256_storeu_ps(p, v); }
};

inline F8 operator+(F8 a, F8 b) { return _mm256_add_ps(a.v, b.v); }
inline F8 operator-(F8 a, F8 b) { return _mm256_sub_ps(a.v, b.v); }
inline F8 operator*(F8 a, F8 b) { return _mm256_mul_ps(a.v, b.v); }
inline F8 operator/(F8 a, F8 b) { return _mm256_div_ps(a.v, b.v); }
inline F8 operator-(F8 a) { return _mm256_xor_ps(a.v, _mm256_set1_ps(-0.0f)); }
inline F8 operator+(F8 a, float b) { return a + F8(b); }
inline F8 operator-(F8 a, float b) { return a - F8(b); }
inline F8 operator*(F8 a, float b) { return a * F8(b); }
inline F8 operator/(F8 a, float b) { return a / F8(b); }
inline F8 operator+(float a, F8 b) { return F8(a) + b; }
inline F8 operator-(float a, F8 b) { return F8(a) - b; }
inline F8 operator*(float a, F8 b) { return F8(a) * b; }
inline F8 operator/(float a, F8 b) { return F8(a) / b; }

// Ordered, quiet comparisons: false when either side is NaN, as for float.
inline F8Mask operator<(F8 a, F8 b) { return {_mm256_cmp_ps(a.v, b.v, _CMP_LT_OQ)}; }
inline F8Mask operator>(F8 a, F8 b) { return {_mm256_cmp_ps(a.v, b.v, _CMP_GT_OQ)}; }
inline F8Mask operator<=(F8 a, F8 b) { return {_mm256_cmp_ps(a.v, b.v, _CMP_LE_OQ)}; }
inline F8Mask operator>=(F8 a, F8 b) { return {_mm256_cmp_ps(a.v, b.v, _CMP_GE_OQ)}; }
inline F8Mask operator<(F8 a, float b) { return a < F8(b); }
inline F8Mask operator>(F8 a, float b) { return a > F8(b); }
inline F8Mask operator<=(F8 a, float b) { return a <= F8(b); }
inline F8Mask operator>=(F8 a, float b) { return a >= F8(b); }
inline F8Mask operator!(F8Mask a) { return {_mm256_xor_ps(a.m, _mm256_castsi256_ps(_mm256_set1_epi32(-1)))}; }
inline F8Mask operator|(F8Mask a, F8Mask b) { return {_mm256_or_ps(a.m, b.m)}; }

inline F8 Select(F8Mask m, F8 a, F8 b) { return _mm256_blendv_ps(b.v, a.v, m.m); }
inline F8 Select(bool m, F8 a, F8 b) { return m ? a : b; }
inline F8 Abs(F8 a) { return _mm256_andnot_ps(_mm256_set1_ps(-0.0f), a.v); }
inline F8 Sqrt(F8 a) { return _mm256_sqrt_ps(a.v); }
inline F8 Sin(F8 a) { return Sleef_sinf8_u10avx2(a.v); }
inline F8 Cos(F8 a) { return Sleef_cosf8_u10avx2(a.v); }
inline F8 Atan(F8 a) { return Sleef_atanf8_u35avx2(a.v); }
inline F8 Exp(F8 a) { return Sleef_expf8_u10avx2(a.v); }

// Bit i set when lane i of the mask holds.
inline int Lanes(F8Mask m) { return _mm256_movemask_ps(m.m); }

}  // namespace

template <>
struct NumberTraits<F8> {
  using Mask = F8Mask;
};

}  // namespace kpacejka
