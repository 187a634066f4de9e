// One tyre at many operating points: the batch form of the setters plus
// Calculate, for sweeps, fitting and the Python module.
//
// Point i gets what SetNormalLoad(fz[i]), SetSlipRatio(kappa[i]),
// SetSlipAngle(alpha[i]), SetCamber(gamma[i]) and Calculate() leave in Fx,
// Fy and Mz: the same clamping, formulas, limits, NaN guard and sign flips
// (the one formula core, tyre/kpacejka_eval.h). The tyre itself is not
// changed. Reports: the NaN reports of Calculate (once per process and
// quantity, as there), and SetCamber's report of a non-finite camber once
// per call rather than once per point.
//
// KBATCH_EXACT evaluates one point at a time and gives Calculate's results
// bit for bit. KBATCH_FAST runs eight points at once when the processor has
// AVX2 and FMA (else it is KBATCH_EXACT); +, -, *, / and sqrt round as in
// Calculate, sin, cos, atan and exp are SLEEF's (within 1 ulp of the exact
// value, like the C library's), so a result may differ from Calculate's in
// its last bits, and by more where the formula cancels (README, "Batch
// evaluation", lists the largest differences over the bundled tyres).
// A point's result does not depend on its position in the arrays.
#pragma once

#include <cstddef>

class KPacejka;

enum KBatchMode { KBATCH_EXACT = 0, KBATCH_FAST = 1 };

// Inputs in SI: N, slip ratio, radians, radians. Outputs N, N, N·m. Input
// and output arrays may not overlap.
void KPacejkaEvaluateBatch(const KPacejka &tyre, size_t n, const float *fz, const float *kappa,
                           const float *alpha, const float *gamma, float *fx, float *fy, float *mz,
                           KBatchMode mode = KBATCH_FAST);
// The same on double inputs, each rounded to float as it is read: a point
// gets exactly what the float call gives on float(fz[i]), float(kappa[i]),
// ... (no converted copy of the arrays is made).
void KPacejkaEvaluateBatchDouble(const KPacejka &tyre, size_t n, const double *fz, const double *kappa,
                           const double *alpha, const double *gamma, float *fx, float *fy, float *mz,
                           KBatchMode mode = KBATCH_FAST);

// True when KBATCH_FAST runs the eight-lane code on this processor.
bool KPacejkaBatchIsVector();
