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
#include <cmath>

#include "tyre/kmagicformula.h"
#include "tyre/kpacejka.h"

using kpacejka::DEG_TO_RAD;
using kpacejka::MFSideBySide;
using kpacejka::RAD_TO_DEG;
using kpacejka::Sign;
using kpacejka::TWO_OVER_PI;

void KPacejka::CalculatePac2006() {
  // ---- Working quantities ----
  // 1. no guard: a zero nominal load is left to the NaN guard
  const float Fz0s = fz0 * lfz0;
  const float inv = 1.0f / Fz0s;
  const float Fz = this->Fz * 1000.0f;  // N
  const float dfz = (Fz - Fz0s) * inv;
  const float dfz2 = dfz * dfz;
  // 2.
  const float kappa = slipPercentage * 0.01f;
  const float alpha = sideSlip * DEG_TO_RAD;
  const float gs = sinf(camber * DEG_TO_RAD);  // γ*
  const float gs2 = gs * gs;

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
  const float SVx = Fz * (pvx1 + pvx2 * dfz) * w * lvx * zeta1;
  // 4.
  const float SHx = (phx1 + phx2 * dfz) * lhx;
  const float kx = kappa + SHx;
  // 5.
  const float Cx = pcx1 * lcx;
  // 6. no upper bound
  const float Ex = (pex1 + pex2 * dfz + pex3 * dfz2) * (1.0f - pex4 * Sign(kx)) * lex;
  // 7.
  const float Dx = (pdx1 + pdx2 * dfz) * lmux * Fz * zeta1;
  // 8.
  const float Kx = Fz * (pkx1 + pkx2 * dfz) * expf(pkx3 * dfz) * lkx;
  // 9. a vanishing C·D gets 0.1 added so the stiffness division stays finite
  const float CDx = Cx * Dx;
  const float Bx = Kx / (CDx + (fabsf(CDx) < 0.001f ? 0.1f : 0.0f));
  // 10. Fx0 = Dx·sin(MF(Bx, Cx, Ex, kx)) + SVx, with the curves below

  // ---- Pure lateral slip ----
  // 11-12.
  const float Cy = pcy1 * lcy;
  const float Dy = (pdy1 + pdy2 * dfz) * (1.0f - pdy3 * gs2) * lmuy * Fz * zeta2;
  // 13. lyka and γ*², as the simulator forms it
  const float Kya =
      pky1 * Fz0s * sinf(2.0f * atanf(Fz / (pky2 * Fz0s))) * lyka * (1.0f - pky3 * gs2) * zeta3;
  // 14. the same kind of guard on the lateral C·D, adding 0.001
  const float CDy = Cy * Dy;
  const float By = Kya / (CDy + (fabsf(CDy) < 0.001f ? 0.001f : 0.0f));
  // 15.
  const float SHy = (phy1 + phy2 * dfz) * lhy + phy3 * gs * lky * zeta0 + zeta4 - 1.0f;
  const float ay = alpha + SHy;
  // 16.
  const float SVy =
      Fz * (pvy1 + pvy2 * dfz) * lvy * lmuy * zeta2 + Fz * (pvy3 + pvy4 * dfz) * gs * lky * lmuy * zeta2;
  // 17. no upper bound
  const float Ey = (pey1 + pey2 * dfz) * (1.0f - (pey3 + pey4 * gs) * Sign(ay)) * ley;
  // 18. Fy0 = Dy·sin(MF(By, Cy, Ey, ay)) + SVy, with the curves below

  // ---- Aligning moment, common terms ----
  // 19.
  const float SHt = qhz1 + qhz2 * dfz + (qhz3 + qhz4 * dfz) * gs;
  const float at = alpha + SHt;
  // 20. Kya divides the residual shift and the equivalent slips: a plain lower
  //     bound (a negative stiffness becomes 0.01 as well)
  const float Kp = Kya < 0.01f ? 0.01f : Kya;
  const float SHf = SHy + SVy / Kp;
  const float ar = alpha + SHf;
  // 21.
  const float Bt = (qbz1 + qbz2 * dfz + qbz3 * dfz2) * (1.0f + qbz5 * fabsf(gs) + qbz6 * gs2) * lyka / lmuy;
  const float Ct = qcz1;
  // 22.
  const float Dt = Fz * (qdz1 + qdz2 * dfz) * r0 * inv * ltr * (1.0f + qdz3 * fabsf(gs) + qdz4 * gs2) * zeta5;
  // 23. no upper bound
  const float Et = (qez1 + qez2 * dfz + qez3 * dfz2) *
                   (1.0f + (qez4 + qez5 * gs) * TWO_OVER_PI * atanf(Bt * Ct * at));
  // 24.
  const float Br = (qbz9 * lky / lmuy + qbz10 * By * Cy) * zeta6;
  const float Cr = zeta7;
  // 25. cos of αt, no lmuy and no zeta8: the simulator's form
  const float Dr = cosf(at) * Fz * r0 * ((qdz6 + qdz7 * dfz) * lres * zeta2 + (qdz8 + qdz9 * dfz) * gs * lky * zeta0);
  // 26. (The pure-slip moment is not formed: the combined moment replaces it.)

  // ---- Combined slip ----
  // The arctangents inside steps 27-29 first, side by side; then the
  // cosines and the sine that take them
  const float atanBxa = atanf(rbx2 * kappa);
  const float atanSVyka = atanf(rvy4 * alpha);
  const float atanSVykk = atanf(rvy6 * kappa);
  const float atanByk = atanf(rby2 * (alpha - rby3));
  // 27. longitudinal weighting (the curves below)
  const float Bxa = cosf(atanBxa) * (rbx1 + rbx3 * gs2) * lxal;
  const float Cxa = rcx1;
  const float Exa = rex1 + rex2 * dfz;
  const float SHxa = rhx1;
  // 28. lateral shift with the stored load in kN, as in Magic Formula 5.2
  const float SVyk = cosf(atanSVyka) * (rvy1 + rvy2 * dfz + rvy3 * gs) * fyShiftScale *
                     this->Fz * zeta2 * sinf(rvy5 * atanSVykk) * lvyka;
  // 29. lateral weighting (the curves below)
  const float Byk = cosf(atanByk) * (rby1 + rby4 * gs2) * lyka;
  const float Cyk = rcy1;
  const float Eyk = rey1 + rey2 * dfz;
  const float SHyk = rhy1 + rhy2 * dfz;
  // 31. equivalent slips (ahead of 30: the moment's trail curve takes them)
  const float r = (Kx / Kp) * (Kx / Kp) * kappa * kappa;
  const float ateq = sqrtf(at * at + r) * Sign(at);
  const float areq = sqrtf(ar * ar + r) * Sign(ar);

  // ---- The curves, side by side ----
  enum { FX0, FY0, GXA0, GXA, GYK, GYK0, TRAIL, CURVES };
  float arg[CURVES];
  MFSideBySide({{Bx, Cx, Ex, kx},                   // 10
                {By, Cy, Ey, ay},                   // 18
                {Bxa, Cxa, Exa, SHxa},              // 27, normaliser
                {Bxa, Cxa, Exa, alpha + SHxa},      // 27
                {Byk, Cyk, Eyk, kappa + SHyk},      // 29
                {Byk, Cyk, Eyk, SHyk},              // 29, normaliser
                {Bt, Ct, Et, ateq}},                // 32, trail
               arg);
  const float residual = cosf(Cr * atanf(Br * areq));  // 33
  const float Fx0 = Dx * sinf(arg[FX0]) + SVx;
  const float Fy0 = Dy * sinf(arg[FY0]) + SVy;

  // ---- Combined slip, the forces and the moment ----
  // 27. a vanishing normaliser means no force
  const float G0 = cosf(arg[GXA0]);
  const float Gxa = fabsf(G0) > 0.00001f ? cosf(arg[GXA]) / G0 : 0.0f;
  Fx = Gxa * Fx0;
  // 29. (unguarded division)
  const float Gyk = cosf(arg[GYK]) / cosf(arg[GYK0]);
  // 30.
  const float FyC = Gyk * Fy0 + SVyk;
  // 32-34.
  const float tTerm = -Dt * cosf(arg[TRAIL]) * cosf(alpha) * (FyC - SVyk);
  const float rTerm = Dr * residual;
  const float sTerm = (ssz1 + ssz2 * FyC * inv + (ssz3 + ssz4 * dfz) * gs) * r0 * ls * Fx;
  Mz = tTerm + rTerm + sTerm;
  // 35. only the lateral force changes sign here; the moment keeps its own
  Fy = -FyC;
  // 36.
  corneringStiffness = -(By * Cy * Dy) * RAD_TO_DEG;
  longStiffness = Bx * Cx * Dx;
}
