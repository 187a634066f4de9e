// The batch eight points at a time: the formula core over F8 (tyre/kvec8.h).
// Built with -mavx2 -mfma -ffp-contract=off; only called after
// KBatchLanes() said the processor can run it.
#include "tyre/kvec8.h"
#include "tyre/kpacejka_batch_lanes.h"

void KTyreEvaluateBatch8(const KTyreParams &tyre, size_t n, const float *fz, const float *kappa,
                         const float *alpha, const float *gamma, const float *pressure, float *fx, float *fy, float *mz,
                         KBatchIssues *issues) {
  kpacejka::EvaluateLanes<kpacejka::F8>(tyre, n, fz, kappa, alpha, gamma, pressure, fx, fy, mz, issues);
}

void KTyreEvaluateBatch8(const KTyreParams &tyre, size_t n, const double *fz, const double *kappa,
                         const double *alpha, const double *gamma, const double *pressure, float *fx, float *fy, float *mz,
                         KBatchIssues *issues) {
  kpacejka::EvaluateLanes<kpacejka::F8>(tyre, n, fz, kappa, alpha, gamma, pressure, fx, fy, mz, issues);
}
