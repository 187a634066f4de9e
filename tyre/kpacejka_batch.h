// One tyre at many operating points: the batch form of the stateless core
// (tyre/ktyre.h), for sweeps, fitting and the Python module.
//
// Point i gets what KTyreEvaluate (and so SetNormalLoad(fz[i]),
// SetSlipRatio(kappa[i]), SetSlipAngle(alpha[i]), SetCamber(gamma[i]) and
// Calculate()) gives in Fx, Fy and Mz: the same clamping, formulas, limits,
// NaN guard and sign flips (the one formula core, tyre/kpacejka_eval.h). The
// tyre itself is not changed.
//
// KBATCH_EXACT evaluates one point at a time and gives Calculate's results
// bit for bit. KBATCH_FAST runs the widest lanes the processor has: sixteen
// points at once with AVX-512, else eight with AVX2 and FMA, else it is
// KBATCH_EXACT. KBATCH_LANES8 and KBATCH_LANES16 ask for a width (tests and
// benchmarks; a width the processor lacks falls back to the next narrower).
// In the lanes +, -, *, / and sqrt round as in Calculate, sin, cos, atan and
// exp are SLEEF's (sin, cos, exp within 1 ulp of the exact value, like the C
// library's; atan within 3.5), and cos(atan x), sin(2 atan x) are formed
// through their identities (tyre/knumber.h), so a result may differ from
// Calculate's in its last bits, and by more where
// the formula cancels (README, "Batch evaluation", lists the largest
// differences over the bundled tyres). Both widths run the same SLEEF
// algorithms and give the same bits. A point's result does not depend on
// its position in the arrays.
#pragma once

#include <cstddef>
#include <cstdint>

#include "tyre/ktyre.h"

enum KBatchMode { KBATCH_EXACT = 0, KBATCH_FAST = 1, KBATCH_LANES8 = 2, KBATCH_LANES16 = 3 };

// What a batch found, for the caller to report on the reporters' thread:
// for each quantity (Fx, Fy, Mz) the first point whose result the NaN guard
// zeroed, and whether any camber was no finite number.
struct KBatchIssues {
  static constexpr size_t NONE = SIZE_MAX;
  size_t first[3] = {NONE, NONE, NONE};
  kpacejka::Point<float> at[3] = {};  // that point, stored units
  bool badCamber = false;
  bool Any() const { return badCamber || first[0] != NONE || first[1] != NONE || first[2] != NONE; }
};

// The core over n points, reporting nothing: inputs in SI (N, slip ratio,
// radians, radians), outputs N, N, N·m; an output pointer may be null when
// that quantity is not wanted. Input and output arrays may not overlap.
// `issues` (may be null) gets what went wrong.
void KTyreEvaluateBatch(const KTyreParams &tyre, size_t n, const float *fz, const float *kappa,
                        const float *alpha, const float *gamma, float *fx, float *fy, float *mz,
                        KBatchMode mode = KBATCH_FAST, KBatchIssues *issues = nullptr);
// The same on double inputs, each rounded to float as it is read: a point
// gets exactly what the float call gives on float(fz[i]), float(kappa[i]),
// ... (no converted copy of the arrays is made).
void KTyreEvaluateBatchDouble(const KTyreParams &tyre, size_t n, const double *fz, const double *kappa,
                              const double *alpha, const double *gamma, float *fx, float *fy, float *mz,
                              KBatchMode mode = KBATCH_FAST, KBatchIssues *issues = nullptr);
// The same at an inflation pressure per point (Pa; 0 or less, or a null
// `pressure`: the tyre's nominal pressure).
void KTyreEvaluateBatchAtPressure(const KTyreParams &tyre, size_t n, const float *fz, const float *kappa,
                                  const float *alpha, const float *gamma, const float *pressure, float *fx,
                                  float *fy, float *mz, KBatchMode mode = KBATCH_FAST,
                                  KBatchIssues *issues = nullptr);
void KTyreEvaluateBatchDoubleAtPressure(const KTyreParams &tyre, size_t n, const double *fz, const double *kappa,
                                        const double *alpha, const double *gamma, const double *pressure,
                                        float *fx, float *fy, float *mz, KBatchMode mode = KBATCH_FAST,
                                        KBatchIssues *issues = nullptr);
// The reports a batch's issues call for, as Calculate and SetCamber make
// them: the NaN reports in point order (once per process and quantity),
// then the camber report once. On the reporters' thread only.
void KBatchReport(const KBatchIssues &issues);

// KTyreEvaluateBatch followed by KBatchReport.
void KPacejkaEvaluateBatch(const KTyreParams &tyre, size_t n, const float *fz, const float *kappa,
                           const float *alpha, const float *gamma, float *fx, float *fy, float *mz,
                           KBatchMode mode = KBATCH_FAST);
void KPacejkaEvaluateBatchDouble(const KTyreParams &tyre, size_t n, const double *fz, const double *kappa,
                                 const double *alpha, const double *gamma, float *fx, float *fy, float *mz,
                                 KBatchMode mode = KBATCH_FAST);

void KPacejkaEvaluateBatchAtPressure(const KTyreParams &tyre, size_t n, const float *fz, const float *kappa,
                                     const float *alpha, const float *gamma, const float *pressure, float *fx,
                                     float *fy, float *mz, KBatchMode mode = KBATCH_FAST);
void KPacejkaEvaluateBatchDoubleAtPressure(const KTyreParams &tyre, size_t n, const double *fz,
                                           const double *kappa, const double *alpha, const double *gamma,
                                           const double *pressure, float *fx, float *fy, float *mz,
                                           KBatchMode mode = KBATCH_FAST);

// The points `mode` runs at once on this processor: 1, 8 or 16.
int KBatchLanes(KBatchMode mode = KBATCH_FAST);
// True when KBATCH_FAST runs vector lanes on this processor.
bool KPacejkaBatchIsVector();
