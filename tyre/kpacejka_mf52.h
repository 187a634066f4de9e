// Magic Formula 5.2 (model 1, and every model number without a routine of
// its own) and Magic Formula 6.1 (model 3): pure and combined slip.
//
// Units inside: Fz in N, slips as fractions and radians. Locals carry the
// model's own names; the ones called Bx, Cx, Dx, By, Cy, Dy deliberately
// shadow the Pacejka89/96 curve parameters, which these models leave alone.
//
// The two models differ only where the 6.1 routine has always differed from
// 5.2 in the simulator: no guard on the nominal load, and ltr in place of
// lres in the residual torque.
//
// Written over the number type T (tyre/knumber.h); included by
// kpacejka_eval.h only.
#pragma once

#include <type_traits>

#include "tyre/kmagicformula.h"
#include "tyre/ktyre.h"

namespace kpacejka {
// The C·D products divide the cornering and slip stiffness. The guard adds
// rather than bounds: a tiny negative product stays small (the formula's
// history, kept so results match the simulator).
template <class T>
inline T GuardCD(T CD) { return Select(Abs(CD) < 0.001f, CD + 0.001f, CD); }
}  // namespace kpacejka

template <class T>
kpacejka::Forces<T> KTyreParams::EvalMagicFormula(bool mf61, const kpacejka::Point<T> &p,
                                               kpacejka::Stats *stats) const {
  using namespace kpacejka;
  // ---- Working quantities ----
  const T Fz = p.Fz * 1000.0f;  // N
  const T kappa = p.slipPercentage * 0.01f;
  const T alpha = p.sideSlip * DEG_TO_RAD;
  const T gamma = p.camber * DEG_TO_RAD;
  const float Fz0s = fz0 * lfz0;
  // 5.2 keeps a zero nominal load from dividing; 6.1 lets it through to the NaN guard.
  const T dfz = (!mf61 && fabsf(Fz0s) <= 0.00001f) ? T(0.0f) : (Fz - Fz0s) / Fz0s;
  const T dfz2 = dfz * dfz;
  const T gx = lgax * gamma;
  const T gy = lgay * gamma;
  const T gz = lgaz * gamma;
  // Inflation pressure against the nominal one: each pressure term is a
  // factor that is exactly 1 at dpi = 0, so a tyre at its nominal pressure
  // gives the very bits it gave before pressure was modelled.
  const T dpi = p.dpi;

  // Every sine-arctangent curve (the pure-slip forces, the four weighting
  // curves, the moment's trail curve) is formed in one place further down,
  // side by side: each is a chain of library calls waiting on itself, and
  // next to each other they overlap. The sections below form their
  // parameters; the steps keep their numbers.

  // ---- Pure longitudinal slip ----
  // 1.
  const T SHx = (phx1 + phx2 * dfz) * lhx;
  const T kx = kappa + SHx;
  const T SVx = Fz * (pvx1 + pvx2 * dfz) * lvx * lmux;
  // 2.
  const T Cx = pcx1 * lcx;
  const T Dx = (pdx1 + pdx2 * dfz) * (1.0f + ppx3 * dpi + ppx4 * dpi * dpi) * (1.0f - pdx3 * gx * gx) *
               lmux * Fz;
  // 3. curvature, capped at 1 only from above
  const T Ex = CapAtOne((pex1 + pex2 * dfz + pex3 * dfz2) * (1.0f - pex4 * Sign(kx)) * lex);
  // 4.
  const T Kx = Fz * (pkx1 + pkx2 * dfz) * Exp(pkx3 * dfz) * (1.0f + ppx1 * dpi + ppx2 * dpi * dpi) * lkx;
  // 5.
  const T Bx = Kx / GuardCD(Cx * Dx);
  // 6. Fx0 = Dx·sin(MF(Bx, Cx, Ex, kx)) + SVx, with the curves below

  // ---- Pure lateral slip ----
  // 1.
  const T Cy = pcy1 * lcy;
  const T Dy = (pdy1 + pdy2 * dfz) * (1.0f + ppy3 * dpi + ppy4 * dpi * dpi) * (1.0f - pdy3 * gy * gy) *
               lmuy * Fz;
  // 2. the scaled nominal load and then lfz0 once more: the simulator's form;
  //    pressure scales the stiffness (ppy1) and the load of its peak (ppy2)
  const T Ky = pky1 * Fz0s * (1.0f + ppy1 * dpi) * SinTwoAtan(Fz / (pky2 * Fz0s * (1.0f + ppy2 * dpi))) *
               (1.0f - pky3 * Abs(gy)) * lfz0 * lky;
  // 3.
  const T By = Ky / GuardCD(Cy * Dy);
  // 4.
  const T SHy = (phy1 + phy2 * dfz) * lhy + phy3 * gy;
  const T ay = alpha + SHy;
  // 5.
  const T SVy = Fz * ((pvy1 + pvy2 * dfz) * lvy + (pvy3 + pvy4 * dfz) * gy) * lmuy;
  // 6.
  const T Ey = CapAtOne((pey1 + pey2 * dfz) * (1.0f - (pey3 + pey4 * gy) * Sign(ay)) * ley);
  // 7. Fy0 = Dy·sin(MF(By, Cy, Ey, ay)) + SVy, with the curves below

  // ---- Aligning moment, common terms ----
  // 1.
  const T SHt = qhz1 + qhz2 * dfz + (qhz3 + qhz4 * dfz) * gz;
  const T at = alpha + SHt;
  // 2. Ky divides the residual shift and the equivalent slip below: keep it
  //    away from zero, on its own side (zero counts as positive)
  const T KyG = Select(Abs(Ky) < 0.001f, Select(Ky >= 0.0f, T(0.001f), T(-0.001f)), Ky);
  const T SHf = SHy + SVy / KyG;
  const T ar = alpha + SHf;
  // 3. the qbz5 term takes the lateral camber, as the simulator always has
  const T Bt = (qbz1 + qbz2 * dfz + qbz3 * dfz2) * (1.0f + qbz4 * gz + qbz5 * Abs(gy)) *
                   lky / lmuy;
  const T Ct = qcz1;
  // 4. a harder tyre has a shorter trail (ppz1)
  const T Dt = Fz * (qdz1 + qdz2 * dfz) * (1.0f - ppz1 * dpi) * (1.0f + qdz3 * gz + qdz4 * gz * gz) *
               (r0 / Fz0s) * ltr;
  // 5.
  const T Et = CapAtOne((qez1 + qez2 * dfz + qez3 * dfz2) *
                        (1.0f + (qez4 + qez5 * gz) * TWO_OVER_PI * Atan(Bt * Ct * at)));
  // 6.
  const T Br = qbz9 * lky / lmuy + qbz10 * By * Cy;
  // 7. 6.1 scales the residual torque with ltr, 5.2 with lres
  //    pressure scales the camber part (ppz2)
  const T Dr = Fz * ((qdz6 + qdz7 * dfz) * (mf61 ? ltr : lres) + (qdz8 + qdz9 * dfz) * (1.0f + ppz2 * dpi) * gz) *
                   r0 * lmuy;
  // (The pure-slip moment is not formed: the combined moment replaces it.)

  // ---- Combined slip ----
  // The arctangents inside steps 1-3 first, side by side (three only as
  // cos(atan(x)), see CosAtan in tyre/knumber.h); then the sine that takes
  // the fourth
  const T cosAtanBxa = CosAtan(rbx2 * kappa);
  const T cosAtanSVyka = CosAtan(rvy4 * alpha);
  const T atanSVykk = Atan(rvy6 * kappa);
  const T cosAtanByk = CosAtan(rby2 * (alpha - rby3));
  // 1. longitudinal weighting (the curves below)
  const T Bxa = rbx1 * cosAtanBxa * lxal;
  const T Cxa = rcx1;
  const T Exa = rex1 + rex2 * dfz;
  const T SHxa = rhx1;
  // 2. lateral shift: unscaled camber, the stored load in kN and fyShiftScale
  //    in place of a friction coefficient, as the simulator forms it
  const T SVyk = cosAtanSVyka * (rvy1 + rvy2 * dfz + rvy3 * gamma) * fyShiftScale *
                     p.Fz * Sin(rvy5 * atanSVykk) * lvyka;
  // 3. lateral weighting (the curves below)
  const T Byk = rby1 * cosAtanByk * lyka;
  const T Cyk = rcy1;
  const T Eyk = rey1 + rey2 * dfz;
  const T SHyk = rhy1 + rhy2 * dfz;
  // 5. equivalent slips (ahead of 4: the moment's trail curve takes them)
  const T r = (Kx / KyG) * (Kx / KyG) * kappa * kappa;
  const T ateq = Sqrt(at * at + r) * Sign(at);
  const T areq = Sqrt(ar * ar + r) * Sign(ar);

  // ---- The curves, side by side ----
  enum { FX0, FY0, GXA0, GXA, GYK, GYK0, TRAIL, CURVES };
  T arg[CURVES];
  MFSideBySide<T, CURVES>({{Bx, Cx, Ex, kx},                   // pure longitudinal 6
                {By, Cy, Ey, ay},                   // pure lateral 7
                {Bxa, Cxa, Exa, SHxa},              // combined 1, normaliser
                {Bxa, Cxa, Exa, alpha + SHxa},      // combined 1
                {Byk, Cyk, Eyk, kappa + SHyk},      // combined 3
                {Byk, Cyk, Eyk, SHyk},              // combined 3, normaliser
                {Bt, Ct, Et, ateq}},                // combined 6, trail
               arg);
  const T residual = CosAtan(Br * areq);  // combined 6
  const T Fx0 = Dx * Sin(arg[FX0]) + SVx;
  const T Fy0 = Dy * Sin(arg[FY0]) + SVy;

  // ---- Combined slip, the forces and the moment ----
  // 1. a vanishing normaliser means no force
  const T G0 = Cos(arg[GXA0]);
  const T Gxa = Select(Abs(G0) <= 0.00001f, T(0.0f), Cos(arg[GXA]) / G0);
  const T Fx = Gxa * Fx0;
  // 3. (unguarded division)
  const T Gyk = Cos(arg[GYK]) / Cos(arg[GYK0]);
  // 4.
  const T FyC = Gyk * Fy0 + SVyk;
  // 6.
  const T cosAlpha = Cos(alpha);
  const T MzC = Dr * residual * cosAlpha -
                    Dt * Cos(arg[TRAIL]) * cosAlpha * (FyC - SVyk) +
                    (ssz1 + ssz2 * FyC / Fz0s + (ssz3 + ssz4 * dfz) * gamma) * r0 * ls * Fx;
  // 8.
  if constexpr (std::is_same_v<T, float>) {
    if (stats) {
      stats->longStiffness = Bx * Cx * Dx;
      stats->corneringStiffness = -(By * Cy * Dy) * RAD_TO_DEG;
      stats->peakFx = Dx + SVx;
      stats->peakFy = SVy + Dy;
    }
  }
  // 7. the simulator's axes: lateral force and moment change sign
  return {Fx, -FyC, -MzC};
}
