// The batch eight points at a time: the formula core over F8 (tyre/kvec8.h).
// Built with -mavx2 -mfma -ffp-contract=off; only called after
// KPacejkaBatchIsVector() said the processor can run it.
#include <cmath>
#include <cstddef>

#include "tyre/kpacejka.h"
#include "tyre/kvec8.h"
#include "tyre/kpacejka_eval.h"
#include "tyre/kpacejka_point.h"

using kpacejka::F8;

namespace {

// The NaN reports of the lanes the guard zeroed, with each lane's point.
void ReportLanes(const kpacejka::Guarded<F8> &bad, const kpacejka::Point<F8> &p, int lanes) {
  const int masks[3] = {kpacejka::Lanes(bad.Fx), kpacejka::Lanes(bad.Fy), kpacejka::Lanes(bad.Mz)};
  alignas(32) float c[8], s[8], k[8], z[8], zp[8];
  _mm256_store_ps(c, p.camber.v);
  _mm256_store_ps(s, p.sideSlip.v);
  _mm256_store_ps(k, p.slipPercentage.v);
  _mm256_store_ps(z, p.Fz.v);
  _mm256_store_ps(zp, p.FzPeak.v);
  for (int lane = 0; lane < lanes; lane++)
    for (int q = 0; q < 3; q++)
      if (masks[q] >> lane & 1) KPacejka::ReportNaN(q, {c[lane], s[lane], k[lane], z[lane], zp[lane]});
}

// Eight inputs from p[0..7]: float as they are, double rounded to float
// (cvtpd_ps rounds to nearest, as float(x) does).
__m256 Load8(const float *p) { return _mm256_loadu_ps(p); }
__m256 Load8(const double *p) {
  return _mm256_set_m128(_mm256_cvtpd_ps(_mm256_loadu_pd(p + 4)), _mm256_cvtpd_ps(_mm256_loadu_pd(p)));
}

template <typename T>
void Evaluate8(const KPacejka &tyre, size_t n, const T *fz, const T *kappa, const T *alpha, const T *gamma,
               float *fx, float *fy, float *mz) {
  kpacejka::F8Mask badCamber;
  for (size_t i = 0; i < n; i += 8) {
    // 1. eight inputs; a short last group repeats its last point (a lane's
    //    result depends only on its own inputs)
    const size_t lanes = n - i < 8 ? n - i : 8;
    const T *src[4] = {fz + i, kappa + i, alpha + i, gamma + i};
    __m256 in[4];
    for (int a = 0; a < 4; a++) {
      if (lanes == 8) {
        in[a] = Load8(src[a]);
      } else {
        alignas(32) float part[8];
        for (size_t l = 0; l < 8; l++) part[l] = float(src[a][l < lanes ? l : lanes - 1]);
        in[a] = _mm256_load_ps(part);
      }
    }
    const F8 g(in[3]);
    badCamber = badCamber | kpacejka::IsBad(g);
    // 2. the stored point and the core
    const kpacejka::Point<F8> p = kpacejka::StoredPoint(tyre, F8(in[0]), F8(in[1]), F8(in[2]), g);
    kpacejka::Guarded<F8> bad;
    const kpacejka::Forces<F8> f = tyre.Evaluate(p, nullptr, &bad);
    // 3. results
    alignas(32) float out[3][8];
    _mm256_store_ps(out[0], f.Fx.v);
    _mm256_store_ps(out[1], f.Fy.v);
    _mm256_store_ps(out[2], f.Mz.v);
    for (size_t l = 0; l < lanes; l++) {
      fx[i + l] = out[0][l];
      fy[i + l] = out[1][l];
      mz[i + l] = out[2][l];
    }
    if (kpacejka::Lanes(bad.Fx | bad.Fy | bad.Mz)) ReportLanes(bad, p, int(lanes));
  }
  if (kpacejka::Lanes(badCamber)) KPacejka::ReportBadCamber();
}

}  // namespace

void KPacejkaEvaluateBatch8(const KPacejka &tyre, size_t n, const float *fz, const float *kappa,
                            const float *alpha, const float *gamma, float *fx, float *fy, float *mz) {
  Evaluate8(tyre, n, fz, kappa, alpha, gamma, fx, fy, mz);
}

void KPacejkaEvaluateBatch8(const KPacejka &tyre, size_t n, const double *fz, const double *kappa,
                            const double *alpha, const double *gamma, float *fx, float *fy, float *mz) {
  Evaluate8(tyre, n, fz, kappa, alpha, gamma, fx, fy, mz);
}
