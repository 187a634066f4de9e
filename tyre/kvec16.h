// Sixteen single-precision lanes (AVX-512F) as a number type of the formula
// templates (see tyre/knumber.h), with the SLEEF functions of the eight-lane
// type (tyre/kvec8.h): sin, cos and exp within 1 ulp, atan within 3.5 ulp.
//
// Only the batch's sixteen-lane file includes this header; it is built with
// -mavx512f -ffp-contract=off, so a lane computes +, -, *, / and sqrt
// exactly as float does, and sin, cos, atan and exp run the same SLEEF
// algorithms as the eight-lane file. Everything here sits in an unnamed
// namespace: none of it may be merged with code built for another
// instruction set.
#pragma once

#include <immintrin.h>
#include <sleef.h>

#include "tyre/knumber.h"

namespace kpacejka {
namespace {

struct F16Mask {
  __mmask16 m;
  F16Mask() : m(0) {}
  F16Mask(__mmask16 x) : m(x) {}
  explicit F16Mask(bool b) : m(b ? __mmask16(0xffff) : __mmask16(0)) {}
};

struct F16 {
  static constexpr int LANES = 16;
  __m512 v;
  F16() : v(_mm512_setzero_ps()) {}
  F16(__m512 x) : v(x) {}
  F16(float x) : v(_mm512_set1_ps(x)) {}
  static F16 Load(const float *p) { return _mm512_loadu_ps(p); }
  // cvtpd_ps rounds to nearest, as float(x) does.
  static F16 Load(const double *p) {
    const __m256 lo = _mm512_maskz_cvtpd_ps(ALL8, _mm512_loadu_pd(p));
    const __m256 hi = _mm512_maskz_cvtpd_ps(ALL8, _mm512_loadu_pd(p + 8));
    return Join(lo, hi);
  }
  void Store(float *p) const { _mm512_storeu_ps(p, v); }

 private:
  // The zero-masking forms with every lane set: the plain intrinsics start
  // from an "undefined" register that GCC 12 warns about.
  static constexpr __mmask8 ALL8 = 0xff;
  // Two halves into one register with AVX-512F alone (insertf32x8 is DQ).
  static __m512 Join(__m256 lo, __m256 hi) {
    const __m512d wide = _mm512_maskz_insertf64x4(ALL8, _mm512_setzero_pd(), _mm256_castps_pd(lo), 0);
    return _mm512_castpd_ps(_mm512_maskz_insertf64x4(ALL8, wide, _mm256_castps_pd(hi), 1));
  }
};

inline F16 operator+(F16 a, F16 b) { return _mm512_add_ps(a.v, b.v); }
inline F16 operator-(F16 a, F16 b) { return _mm512_sub_ps(a.v, b.v); }
inline F16 operator*(F16 a, F16 b) { return _mm512_mul_ps(a.v, b.v); }
inline F16 operator/(F16 a, F16 b) { return _mm512_div_ps(a.v, b.v); }
inline F16 operator-(F16 a) {
  return _mm512_castsi512_ps(_mm512_xor_si512(_mm512_castps_si512(a.v), _mm512_set1_epi32(int(0x80000000u))));
}
inline F16 operator+(F16 a, float b) { return a + F16(b); }
inline F16 operator-(F16 a, float b) { return a - F16(b); }
inline F16 operator*(F16 a, float b) { return a * F16(b); }
inline F16 operator/(F16 a, float b) { return a / F16(b); }
inline F16 operator+(float a, F16 b) { return F16(a) + b; }
inline F16 operator-(float a, F16 b) { return F16(a) - b; }
inline F16 operator*(float a, F16 b) { return F16(a) * b; }
inline F16 operator/(float a, F16 b) { return F16(a) / b; }

// Ordered, quiet comparisons: false when either side is NaN, as for float.
inline F16Mask operator<(F16 a, F16 b) { return {_mm512_cmp_ps_mask(a.v, b.v, _CMP_LT_OQ)}; }
inline F16Mask operator>(F16 a, F16 b) { return {_mm512_cmp_ps_mask(a.v, b.v, _CMP_GT_OQ)}; }
inline F16Mask operator<=(F16 a, F16 b) { return {_mm512_cmp_ps_mask(a.v, b.v, _CMP_LE_OQ)}; }
inline F16Mask operator>=(F16 a, F16 b) { return {_mm512_cmp_ps_mask(a.v, b.v, _CMP_GE_OQ)}; }
inline F16Mask operator<(F16 a, float b) { return a < F16(b); }
inline F16Mask operator>(F16 a, float b) { return a > F16(b); }
inline F16Mask operator<=(F16 a, float b) { return a <= F16(b); }
inline F16Mask operator>=(F16 a, float b) { return a >= F16(b); }
inline F16Mask operator!(F16Mask a) { return {__mmask16(~a.m)}; }
inline F16Mask operator|(F16Mask a, F16Mask b) { return {__mmask16(a.m | b.m)}; }

inline F16 Select(F16Mask m, F16 a, F16 b) { return _mm512_mask_blend_ps(m.m, b.v, a.v); }
inline F16 Select(bool m, F16 a, F16 b) { return m ? a : b; }
inline F16 Abs(F16 a) { return _mm512_abs_ps(a.v); }
inline F16 Sqrt(F16 a) { return _mm512_maskz_sqrt_ps(__mmask16(0xffff), a.v); }
inline F16 Sin(F16 a) { return Sleef_sinf16_u10avx512f(a.v); }
inline F16 Cos(F16 a) { return Sleef_cosf16_u10avx512f(a.v); }
inline F16 Atan(F16 a) { return Sleef_atanf16_u35avx512f(a.v); }
inline F16 Exp(F16 a) { return Sleef_expf16_u10avx512f(a.v); }

// Bit i set when lane i of the mask holds.
inline int Lanes(F16Mask m) { return int(m.m); }

}  // namespace

template <>
struct NumberTraits<F16> {
  using Mask = F16Mask;
};

}  // namespace kpacejka
