// Pacejka2006 (model 2): pure and combined slip with the turn-slip factors
// zeta0 ... zeta7 (all 1.0 unless code sets them: turn slip neglected).
//
// It follows the Magic Formula 5.2 routine with the differences the simulator
// has always had: camber enters as sin γ without the camber scalings, no
// guard on the nominal load, no upper bounds on Ex, Ey, Et, no camber term
// in Dx, the longitudinal C·D guard adds 0.1, SVx is always 0, Kya takes lyka
// and γ², the Kya guard is a plain lower bound, Dr carries cos(αt), only Fy
// is negated, and the peaks and Bx ... Dy are not written. Locals named
// Bx ... Dy shadow the Pacejka89/96 members on purpose.
//
// Written over the number type T (tyre/knumber.h); included by
// kpacejka_eval.h only.
#pragma once

#include <type_traits>

#include "tyre/kmagicformula.h"
#include "tyre/ktyre.h"

template <class T>
kpacejka::Forces<T> KTyreParams::EvalPac2006(const kpacejka::Point<T> &p, kpacejka::Stats *stats) const {
  using namespace kpacejka;
  // ---- Working quantities ----
  // 1. no guard: a zero nominal load is left to the NaN guard
  const float Fz0s = fz0 * lfz0;
  const float inv = 1.0f / Fz0s;
  const T Fz = p.Fz * 1000.0f;  // N
  const T dfz = (Fz - Fz0s) * inv;
  const T dfz2 = dfz * dfz;
  // 2.
  const T kappa = p.slipPercentage * 0.01f;
  const T alpha = p.sideSlip * DEG_TO_RAD;
  const T gs = Sin(p.camber * DEG_TO_RAD);  // γ*
  const T gs2 = gs * gs;

  // Every sine-arctangent curve (the pure-slip forces, the four weighting
  // curves, the moment's trail curve) is formed in one place further down,
  // side by side: each is a chain of library calls waiting on itself, and
  // next to each other they overlap. The steps below form their parameters
  // and keep their numbers.

  // ---- Pure longitudinal slip ----
  // 3. low-speed weight of the longitudinal speed; the routine has no speed
  //    input, so V = 0 and the weight (and with it SVx) is always 0
  const float V = 0.0f;
  const float epsV = fabsf(V) < 0.0001f ? 0.1f : 0.0f;
  const float w = fabsf(V) / (fabsf(V) + epsV);
  const T SVx = Fz * (pvx1 + pvx2 * dfz) * w * lvx * zeta1;
  // 4.
  const T SHx = (phx1 + phx2 * dfz) * lhx;
  const T kx = kappa + SHx;
  // 5.
  const T Cx = pcx1 * lcx;
  // 6. no upper bound
  const T Ex = (pex1 + pex2 * dfz + pex3 * dfz2) * (1.0f - pex4 * Sign(kx)) * lex;
  // 7.
  const T Dx = (pdx1 + pdx2 * dfz) * lmux * Fz * zeta1;
  // 8.
  const T Kx = Fz * (pkx1 + pkx2 * dfz) * Exp(pkx3 * dfz) * lkx;
  // 9. a vanishing C·D gets 0.1 added so the stiffness division stays finite
  const T CDx = Cx * Dx;
  const T Bx = Kx / (CDx + Select(Abs(CDx) < 0.001f, T(0.1f), T(0.0f)));
  // 10. Fx0 = Dx·sin(MF(Bx, Cx, Ex, kx)) + SVx, with the curves below

  // ---- Pure lateral slip ----
  // 11-12.
  const T Cy = pcy1 * lcy;
  const T Dy = (pdy1 + pdy2 * dfz) * (1.0f - pdy3 * gs2) * lmuy * Fz * zeta2;
  // 13. lyka and γ*², as the simulator forms it
  const T Kya =
      pky1 * Fz0s * SinTwoAtan(Fz / (pky2 * Fz0s)) * lyka * (1.0f - pky3 * gs2) * zeta3;
  // 14. the same kind of guard on the lateral C·D, adding 0.001
  const T CDy = Cy * Dy;
  const T By = Kya / (CDy + Select(Abs(CDy) < 0.001f, T(0.001f), T(0.0f)));
  // 15.
  const T SHy = (phy1 + phy2 * dfz) * lhy + phy3 * gs * lky * zeta0 + zeta4 - 1.0f;
  const T ay = alpha + SHy;
  // 16.
  const T SVy =
      Fz * (pvy1 + pvy2 * dfz) * lvy * lmuy * zeta2 + Fz * (pvy3 + pvy4 * dfz) * gs * lky * lmuy * zeta2;
  // 17. no upper bound
  const T Ey = (pey1 + pey2 * dfz) * (1.0f - (pey3 + pey4 * gs) * Sign(ay)) * ley;
  // 18. Fy0 = Dy·sin(MF(By, Cy, Ey, ay)) + SVy, with the curves below

  // ---- Aligning moment, common terms ----
  // 19.
  const T SHt = qhz1 + qhz2 * dfz + (qhz3 + qhz4 * dfz) * gs;
  const T at = alpha + SHt;
  // 20. Kya divides the residual shift and the equivalent slips: a plain lower
  //     bound (a negative stiffness becomes 0.01 as well)
  const T Kp = Select(Kya < 0.01f, T(0.01f), Kya);
  const T SHf = SHy + SVy / Kp;
  const T ar = alpha + SHf;
  // 21.
  const T Bt = (qbz1 + qbz2 * dfz + qbz3 * dfz2) * (1.0f + qbz5 * Abs(gs) + qbz6 * gs2) * lyka / lmuy;
  const T Ct = qcz1;
  // 22.
  const T Dt = Fz * (qdz1 + qdz2 * dfz) * r0 * inv * ltr * (1.0f + qdz3 * Abs(gs) + qdz4 * gs2) * zeta5;
  // 23. no upper bound
  const T Et = (qez1 + qez2 * dfz + qez3 * dfz2) *
                   (1.0f + (qez4 + qez5 * gs) * TWO_OVER_PI * Atan(Bt * Ct * at));
  // 24.
  const T Br = (qbz9 * lky / lmuy + qbz10 * By * Cy) * zeta6;
  const T Cr = zeta7;
  // 25. cos of αt, no lmuy and no zeta8: the simulator's form
  const T Dr = Cos(at) * Fz * r0 * ((qdz6 + qdz7 * dfz) * lres * zeta2 + (qdz8 + qdz9 * dfz) * gs * lky * zeta0);
  // 26. (The pure-slip moment is not formed: the combined moment replaces it.)

  // ---- Combined slip ----
  // The arctangents inside steps 27-29 first, side by side (three only as
  // cos(atan(x)), see CosAtan in tyre/knumber.h); then the sine that takes
  // the fourth
  const T cosAtanBxa = CosAtan(rbx2 * kappa);
  const T cosAtanSVyka = CosAtan(rvy4 * alpha);
  const T atanSVykk = Atan(rvy6 * kappa);
  const T cosAtanByk = CosAtan(rby2 * (alpha - rby3));
  // 27. longitudinal weighting (the curves below)
  const T Bxa = cosAtanBxa * (rbx1 + rbx3 * gs2) * lxal;
  const T Cxa = rcx1;
  const T Exa = rex1 + rex2 * dfz;
  const T SHxa = rhx1;
  // 28. lateral shift with the stored load in kN, as in Magic Formula 5.2
  const T SVyk = cosAtanSVyka * (rvy1 + rvy2 * dfz + rvy3 * gs) * fyShiftScale *
                     p.Fz * zeta2 * Sin(rvy5 * atanSVykk) * lvyka;
  // 29. lateral weighting (the curves below)
  const T Byk = cosAtanByk * (rby1 + rby4 * gs2) * lyka;
  const T Cyk = rcy1;
  const T Eyk = rey1 + rey2 * dfz;
  const T SHyk = rhy1 + rhy2 * dfz;
  // 31. equivalent slips (ahead of 30: the moment's trail curve takes them)
  const T r = (Kx / Kp) * (Kx / Kp) * kappa * kappa;
  const T ateq = Sqrt(at * at + r) * Sign(at);
  const T areq = Sqrt(ar * ar + r) * Sign(ar);

  // ---- The curves, side by side ----
  enum { FX0, FY0, GXA0, GXA, GYK, GYK0, TRAIL, CURVES };
  T arg[CURVES];
  MFSideBySide<T, CURVES>({{Bx, Cx, Ex, kx},                   // 10
                {By, Cy, Ey, ay},                   // 18
                {Bxa, Cxa, Exa, SHxa},              // 27, normaliser
                {Bxa, Cxa, Exa, alpha + SHxa},      // 27
                {Byk, Cyk, Eyk, kappa + SHyk},      // 29
                {Byk, Cyk, Eyk, SHyk},              // 29, normaliser
                {Bt, Ct, Et, ateq}},                // 32, trail
               arg);
  const T residual = Cos(Cr * Atan(Br * areq));  // 33
  const T Fx0 = Dx * Sin(arg[FX0]) + SVx;
  const T Fy0 = Dy * Sin(arg[FY0]) + SVy;

  // ---- Combined slip, the forces and the moment ----
  // 27. a vanishing normaliser means no force
  const T G0 = Cos(arg[GXA0]);
  const T Gxa = Select(Abs(G0) > 0.00001f, Cos(arg[GXA]) / G0, T(0.0f));
  const T Fx = Gxa * Fx0;
  // 29. (unguarded division)
  const T Gyk = Cos(arg[GYK]) / Cos(arg[GYK0]);
  // 30.
  const T FyC = Gyk * Fy0 + SVyk;
  // 32-34.
  const T tTerm = -Dt * Cos(arg[TRAIL]) * Cos(alpha) * (FyC - SVyk);
  const T rTerm = Dr * residual;
  const T sTerm = (ssz1 + ssz2 * FyC * inv + (ssz3 + ssz4 * dfz) * gs) * r0 * ls * Fx;
  const T Mz = tTerm + rTerm + sTerm;
  // 36.
  if constexpr (std::is_same_v<T, float>) {
    if (stats) {
      stats->corneringStiffness = -(By * Cy * Dy) * RAD_TO_DEG;
      stats->longStiffness = Bx * Cx * Dx;
    }
  }
  // 35. only the lateral force changes sign here; the moment keeps its own
  return {Fx, -FyC, Mz};
}
