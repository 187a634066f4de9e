// The batch: a point at a time through the float core, or 8 or 16 at a time
// through the vector files (kpacejka_batch_avx2.cpp, kpacejka_batch_avx512.cpp)
// when the processor can; and the reports of what it found.
#include "tyre/kpacejka_batch.h"

#include <algorithm>
#include <cmath>

#include "tyre/kpacejka.h"
#include "tyre/kpacejka_eval.h"
#include "tyre/kpacejka_point.h"

#ifdef TYRO_BATCH_AVX2
// kpacejka_batch_avx2.cpp; n a multiple of eight not required.
void KTyreEvaluateBatch8(const KTyreParams &tyre, size_t n, const float *fz, const float *kappa,
                         const float *alpha, const float *gamma, const float *pressure, float *fx, float *fy,
                         float *mz, KBatchIssues *issues);
void KTyreEvaluateBatch8(const KTyreParams &tyre, size_t n, const double *fz, const double *kappa,
                         const double *alpha, const double *gamma, const double *pressure, float *fx, float *fy,
                         float *mz, KBatchIssues *issues);
#endif
#ifdef TYRO_BATCH_AVX512
// kpacejka_batch_avx512.cpp; n a multiple of sixteen not required.
void KTyreEvaluateBatch16(const KTyreParams &tyre, size_t n, const float *fz, const float *kappa,
                          const float *alpha, const float *gamma, const float *pressure, float *fx, float *fy,
                          float *mz, KBatchIssues *issues);
void KTyreEvaluateBatch16(const KTyreParams &tyre, size_t n, const double *fz, const double *kappa,
                          const double *alpha, const double *gamma, const double *pressure, float *fx, float *fy,
                          float *mz, KBatchIssues *issues);
#endif

namespace {

// The widths this processor can run.
bool Has8() {
#ifdef TYRO_BATCH_AVX2
  static const bool avx2 = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
  return avx2;
#else
  return false;
#endif
}

bool Has16() {
#ifdef TYRO_BATCH_AVX512
  static const bool avx512 = __builtin_cpu_supports("avx512f");
  return avx512;
#else
  return false;
#endif
}

// Double inputs are rounded to float as they are read.
template <typename T>
void EvaluateExact(const KTyreParams &tyre, size_t n, const T *fz, const T *kappa, const T *alpha,
                   const T *gamma, const T *pressure, float *fx, float *fy, float *mz, KBatchIssues *issues) {
  bool badCamber = false;
  for (size_t i = 0; i < n; i++) {
    const float g = float(gamma[i]);
    badCamber = badCamber || !std::isfinite(g);
    const kpacejka::Point<float> p =
        pressure ? kpacejka::StoredPoint(tyre, float(fz[i]), float(kappa[i]), float(alpha[i]), g, float(pressure[i]))
                 : kpacejka::StoredPoint(tyre, float(fz[i]), float(kappa[i]), float(alpha[i]), g);
    kpacejka::Guarded<float> bad;
    const kpacejka::Forces<float> f = tyre.Evaluate(p, nullptr, &bad);
    if (fx) fx[i] = f.Fx;
    if (fy) fy[i] = f.Fy;
    if (mz) mz[i] = f.Mz;
    const bool zeroed[3] = {bad.Fx, bad.Fy, bad.Mz};
    for (int q = 0; q < 3; q++)
      if (zeroed[q] && issues && issues->first[q] == KBatchIssues::NONE) issues->first[q] = i, issues->at[q] = p;
  }
  if (issues && badCamber) issues->badCamber = true;
}

template <typename T>
void Evaluate(const KTyreParams &tyre, size_t n, const T *fz, const T *kappa, const T *alpha, const T *gamma,
              const T *pressure, float *fx, float *fy, float *mz, KBatchMode mode, KBatchIssues *issues) {
  switch (KBatchLanes(mode)) {
#ifdef TYRO_BATCH_AVX512
    case 16: KTyreEvaluateBatch16(tyre, n, fz, kappa, alpha, gamma, pressure, fx, fy, mz, issues); return;
#endif
#ifdef TYRO_BATCH_AVX2
    case 8: KTyreEvaluateBatch8(tyre, n, fz, kappa, alpha, gamma, pressure, fx, fy, mz, issues); return;
#endif
    default: EvaluateExact(tyre, n, fz, kappa, alpha, gamma, pressure, fx, fy, mz, issues); return;
  }
}

}  // namespace

int KBatchLanes(KBatchMode mode) {
  if (mode == KBATCH_EXACT) return 1;
  if (mode != KBATCH_LANES8 && Has16()) return 16;
  return Has8() ? 8 : 1;
}

bool KPacejkaBatchIsVector() { return KBatchLanes(KBATCH_FAST) > 1; }

void KTyreEvaluateBatch(const KTyreParams &tyre, size_t n, const float *fz, const float *kappa,
                        const float *alpha, const float *gamma, float *fx, float *fy, float *mz, KBatchMode mode,
                        KBatchIssues *issues) {
  Evaluate<float>(tyre, n, fz, kappa, alpha, gamma, nullptr, fx, fy, mz, mode, issues);
}

void KTyreEvaluateBatchAtPressure(const KTyreParams &tyre, size_t n, const float *fz, const float *kappa,
                                  const float *alpha, const float *gamma, const float *pressure, float *fx,
                                  float *fy, float *mz, KBatchMode mode, KBatchIssues *issues) {
  Evaluate(tyre, n, fz, kappa, alpha, gamma, pressure, fx, fy, mz, mode, issues);
}

void KTyreEvaluateBatchDouble(const KTyreParams &tyre, size_t n, const double *fz, const double *kappa,
                              const double *alpha, const double *gamma, float *fx, float *fy, float *mz,
                              KBatchMode mode, KBatchIssues *issues) {
  Evaluate<double>(tyre, n, fz, kappa, alpha, gamma, nullptr, fx, fy, mz, mode, issues);
}

void KTyreEvaluateBatchDoubleAtPressure(const KTyreParams &tyre, size_t n, const double *fz, const double *kappa,
                                        const double *alpha, const double *gamma, const double *pressure,
                                        float *fx, float *fy, float *mz, KBatchMode mode, KBatchIssues *issues) {
  Evaluate(tyre, n, fz, kappa, alpha, gamma, pressure, fx, fy, mz, mode, issues);
}

void KBatchReport(const KBatchIssues &issues) {
  // In point order, a point's quantities in order Fx, Fy, Mz: the order a
  // loop of Calculate calls would report them in.
  int order[3] = {0, 1, 2};
  std::sort(order, order + 3, [&](int a, int b) {
    return issues.first[a] != issues.first[b] ? issues.first[a] < issues.first[b] : a < b;
  });
  for (int q : order)
    if (issues.first[q] != KBatchIssues::NONE) KPacejka::ReportNaN(q, issues.at[q]);
  if (issues.badCamber) KPacejka::ReportBadCamber();
}

void KPacejkaEvaluateBatch(const KTyreParams &tyre, size_t n, const float *fz, const float *kappa,
                           const float *alpha, const float *gamma, float *fx, float *fy, float *mz,
                           KBatchMode mode) {
  KBatchIssues issues;
  KTyreEvaluateBatch(tyre, n, fz, kappa, alpha, gamma, fx, fy, mz, mode, &issues);
  KBatchReport(issues);
}

void KPacejkaEvaluateBatchDouble(const KTyreParams &tyre, size_t n, const double *fz, const double *kappa,
                                 const double *alpha, const double *gamma, float *fx, float *fy, float *mz,
                                 KBatchMode mode) {
  KBatchIssues issues;
  KTyreEvaluateBatchDouble(tyre, n, fz, kappa, alpha, gamma, fx, fy, mz, mode, &issues);
  KBatchReport(issues);
}

void KPacejkaEvaluateBatchAtPressure(const KTyreParams &tyre, size_t n, const float *fz, const float *kappa,
                                     const float *alpha, const float *gamma, const float *pressure, float *fx,
                                     float *fy, float *mz, KBatchMode mode) {
  KBatchIssues issues;
  KTyreEvaluateBatchAtPressure(tyre, n, fz, kappa, alpha, gamma, pressure, fx, fy, mz, mode, &issues);
  KBatchReport(issues);
}

void KPacejkaEvaluateBatchDoubleAtPressure(const KTyreParams &tyre, size_t n, const double *fz,
                                           const double *kappa, const double *alpha, const double *gamma,
                                           const double *pressure, float *fx, float *fy, float *mz,
                                           KBatchMode mode) {
  KBatchIssues issues;
  KTyreEvaluateBatchDoubleAtPressure(tyre, n, fz, kappa, alpha, gamma, pressure, fx, fy, mz, mode, &issues);
  KBatchReport(issues);
}
