// The batch's loop over groups of lanes, written once over the vector type
// V (tyre/kvec8.h, tyre/kvec16.h). Each vector file of the batch includes it
// with its own V, built for its own instruction set; V sits in an unnamed
// namespace there, so nothing of one file's instantiation can stand in for
// another's. V provides what tyre/knumber.h asks of a number type plus:
//   V::LANES                    the lane count
//   V::Load(const float *)      LANES inputs (double ones rounded to float)
//   V::Load(const double *)
//   v.Store(float *)            LANES outputs
//   Lanes(mask)                 bit i set when lane i of the mask holds
#pragma once

#include <cstddef>

#include "tyre/kpacejka_batch.h"
#include "tyre/kpacejka_eval.h"
#include "tyre/kpacejka_point.h"

namespace kpacejka {

// Records in `issues` the first point of each quantity whose lanes the guard
// zeroed in this group (points before `base` were seen in earlier groups).
template <class V>
void NoteZeroed(const Guarded<V> &bad, const Point<V> &p, size_t base, int lanes, KBatchIssues *issues) {
  const unsigned masks[3] = {unsigned(Lanes(bad.Fx)), unsigned(Lanes(bad.Fy)), unsigned(Lanes(bad.Mz))};
  alignas(64) float c[V::LANES], s[V::LANES], k[V::LANES], z[V::LANES], zp[V::LANES], d[V::LANES];
  p.camber.Store(c), p.sideSlip.Store(s), p.slipPercentage.Store(k), p.Fz.Store(z), p.FzPeak.Store(zp);
  p.dpi.Store(d);
  for (int q = 0; q < 3; q++) {
    if (issues->first[q] != KBatchIssues::NONE) continue;
    for (int lane = 0; lane < lanes; lane++) {
      if (!(masks[q] >> lane & 1)) continue;
      issues->first[q] = base + size_t(lane);
      issues->at[q] = {c[lane], s[lane], k[lane], z[lane], zp[lane], d[lane]};
      break;
    }
  }
}

// The core over n points, V::LANES at a time. A short last group repeats
// its last point (a lane's result depends only on its own inputs). A null
// `pressure` runs every point at the nominal pressure.
template <class V, typename T>
void EvaluateLanes(const KTyreParams &tyre, size_t n, const T *fz, const T *kappa, const T *alpha,
                   const T *gamma, const T *pressure, float *fx, float *fy, float *mz, KBatchIssues *issues) {
  constexpr size_t L = V::LANES;
  Mask<V> badCamber;
  for (size_t i = 0; i < n; i += L) {
    // 1. the inputs
    const size_t lanes = n - i < L ? n - i : L;
    const T *src[5] = {fz + i, kappa + i, alpha + i, gamma + i, pressure ? pressure + i : nullptr};
    V in[5];
    for (int a = 0; a < 5; a++) {
      if (!src[a]) continue;
      if (lanes == L) {
        in[a] = V::Load(src[a]);
      } else {
        alignas(64) float part[L];
        for (size_t l = 0; l < L; l++) part[l] = float(src[a][l < lanes ? l : lanes - 1]);
        in[a] = V::Load(part);
      }
    }
    badCamber = badCamber | IsBad(in[3]);
    // 2. the stored point and the core
    const Point<V> p = pressure ? StoredPoint(tyre, in[0], in[1], in[2], in[3], in[4])
                                : StoredPoint(tyre, in[0], in[1], in[2], in[3]);
    Guarded<V> bad;
    const Forces<V> f = tyre.Evaluate(p, nullptr, &bad);
    // 3. results
    float *out[3] = {fx, fy, mz};
    const V *res[3] = {&f.Fx, &f.Fy, &f.Mz};
    for (int q = 0; q < 3; q++) {
      if (!out[q]) continue;
      if (lanes == L) {
        res[q]->Store(out[q] + i);
      } else {
        alignas(64) float part[L];
        res[q]->Store(part);
        for (size_t l = 0; l < lanes; l++) out[q][i + l] = part[l];
      }
    }
    if (issues && Lanes(bad.Fx | bad.Fy | bad.Mz)) NoteZeroed(bad, p, i, int(lanes), issues);
  }
  if (issues && Lanes(badCamber)) issues->badCamber = true;
}

}  // namespace kpacejka
