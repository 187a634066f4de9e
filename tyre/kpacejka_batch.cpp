// The batch: a point at a time through the float core, or eight at a time
// through the vector file (kpacejka_batch_avx2.cpp) when the processor can.
#include "tyre/kpacejka_batch.h"

#include <cmath>

#include "tyre/kpacejka.h"
#include "tyre/kpacejka_eval.h"
#include "tyre/kpacejka_point.h"

#ifdef TYRO_BATCH_AVX2
// kpacejka_batch_avx2.cpp; n a multiple of eight not required.
void KPacejkaEvaluateBatch8(const KPacejka &tyre, size_t n, const float *fz, const float *kappa,
                            const float *alpha, const float *gamma, float *fx, float *fy, float *mz);
void KPacejkaEvaluateBatch8(const KPacejka &tyre, size_t n, const double *fz, const double *kappa,
                            const double *alpha, const double *gamma, float *fx, float *fy, float *mz);
#endif

bool KPacejkaBatchIsVector() {
#ifdef TYRO_BATCH_AVX2
  static const bool avx2 = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
  return avx2;
#else
  return false;
#endif
}

// Double inputs are rounded to float as they are read.
template <typename T>
static void EvaluateExact(const KPacejka &tyre, size_t n, const T *fz, const T *kappa, const T *alpha,
                          const T *gamma, float *fx, float *fy, float *mz) {
  bool badCamber = false;
  for (size_t i = 0; i < n; i++) {
    const float g = float(gamma[i]);
    badCamber = badCamber || !std::isfinite(g);
    const kpacejka::Point<float> p =
        kpacejka::StoredPoint(tyre, float(fz[i]), float(kappa[i]), float(alpha[i]), g);
    kpacejka::Guarded<float> bad;
    const kpacejka::Forces<float> f = tyre.Evaluate(p, nullptr, &bad);
    fx[i] = f.Fx;
    fy[i] = f.Fy;
    mz[i] = f.Mz;
    const bool zeroed[3] = {bad.Fx, bad.Fy, bad.Mz};
    for (int q = 0; q < 3; q++)
      if (zeroed[q]) KPacejka::ReportNaN(q, p);
  }
  if (badCamber) KPacejka::ReportBadCamber();
}

template <typename T>
static void Evaluate(const KPacejka &tyre, size_t n, const T *fz, const T *kappa, const T *alpha,
                     const T *gamma, float *fx, float *fy, float *mz, KBatchMode mode) {
#ifdef TYRO_BATCH_AVX2
  if (mode == KBATCH_FAST && KPacejkaBatchIsVector()) {
    KPacejkaEvaluateBatch8(tyre, n, fz, kappa, alpha, gamma, fx, fy, mz);
    return;
  }
#endif
  (void)mode;
  EvaluateExact(tyre, n, fz, kappa, alpha, gamma, fx, fy, mz);
}

void KPacejkaEvaluateBatch(const KPacejka &tyre, size_t n, const float *fz, const float *kappa,
                           const float *alpha, const float *gamma, float *fx, float *fy, float *mz,
                           KBatchMode mode) {
  Evaluate(tyre, n, fz, kappa, alpha, gamma, fx, fy, mz, mode);
}

void KPacejkaEvaluateBatchDouble(const KPacejka &tyre, size_t n, const double *fz, const double *kappa,
                           const double *alpha, const double *gamma, float *fx, float *fy, float *mz,
                           KBatchMode mode) {
  Evaluate(tyre, n, fz, kappa, alpha, gamma, fx, fy, mz, mode);
}
