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
#include <cmath>

#include "tyre/kmagicformula.h"
#include "tyre/kpacejka.h"

using kpacejka::DEG_TO_RAD;
using kpacejka::MFSideBySide;
using kpacejka::RAD_TO_DEG;
using kpacejka::Sign;
using kpacejka::TWO_OVER_PI;

// The C·D products divide the cornering and slip stiffness. The guard adds
// rather than bounds: a tiny negative product stays small (the formula's
// history, kept so results match the simulator).
static float GuardCD(float CD) { return fabsf(CD) < 0.001f ? CD + 0.001f : CD; }

void KPacejka::CalculateMF52() { CalculateMagicFormula(false); }
void KPacejka::CalculateMF61() { CalculateMagicFormula(true); }

void KPacejka::CalculateMagicFormula(bool mf61) {
  // ---- Working quantities ----
  const float Fz = this->Fz * 1000.0f;  // N
  const float kappa = slipPercentage * 0.01f;
  const float alpha = sideSlip * DEG_TO_RAD;
  const float gamma = camber * DEG_TO_RAD;
  const float Fz0s = fz0 * lfz0;
  // 5.2 keeps a zero nominal load from dividing; 6.1 lets it through to the NaN guard.
  const float dfz = (!mf61 && fabsf(Fz0s) <= 0.00001f) ? 0.0f : (Fz - Fz0s) / Fz0s;
  const float dfz2 = dfz * dfz;
  const float gx = lgax * gamma;
  const float gy = lgay * gamma;
  const float gz = lgaz * gamma;

  // Every sine-arctangent curve (the pure-slip forces, the four weighting
  // curves, the moment's trail curve) is formed in one place further down,
  // side by side: each is a chain of library calls waiting on itself, and
  // next to each other they overlap. The sections below form their
  // parameters; the steps keep their numbers.

  // ---- Pure longitudinal slip ----
  // 1.
  const float SHx = (phx1 + phx2 * dfz) * lhx;
  const float kx = kappa + SHx;
  const float SVx = Fz * (pvx1 + pvx2 * dfz) * lvx * lmux;
  // 2.
  const float Cx = pcx1 * lcx;
  const float Dx = (pdx1 + pdx2 * dfz) * (1.0f - pdx3 * gx * gx) * lmux * Fz;
  // 3. curvature, capped at 1 only from above
  float Ex = (pex1 + pex2 * dfz + pex3 * dfz2) * (1.0f - pex4 * Sign(kx)) * lex;
  if (Ex > 1.0f) Ex = 1.0f;
  // 4.
  const float Kx = Fz * (pkx1 + pkx2 * dfz) * expf(pkx3 * dfz) * lkx;
  // 5.
  const float Bx = Kx / GuardCD(Cx * Dx);
  // 6. Fx0 = Dx·sin(MF(Bx, Cx, Ex, kx)) + SVx, with the curves below

  // ---- Pure lateral slip ----
  // 1.
  const float Cy = pcy1 * lcy;
  const float Dy = (pdy1 + pdy2 * dfz) * (1.0f - pdy3 * gy * gy) * lmuy * Fz;
  // 2. the scaled nominal load and then lfz0 once more: the simulator's form
  float Ky = pky1 * Fz0s * sinf(2.0f * atanf(Fz / (pky2 * Fz0s))) * (1.0f - pky3 * fabsf(gy)) *
             lfz0 * lky;
  // 3.
  const float By = Ky / GuardCD(Cy * Dy);
  // 4.
  const float SHy = (phy1 + phy2 * dfz) * lhy + phy3 * gy;
  const float ay = alpha + SHy;
  // 5.
  const float SVy = Fz * ((pvy1 + pvy2 * dfz) * lvy + (pvy3 + pvy4 * dfz) * gy) * lmuy;
  // 6.
  float Ey = (pey1 + pey2 * dfz) * (1.0f - (pey3 + pey4 * gy) * Sign(ay)) * ley;
  if (Ey > 1.0f) Ey = 1.0f;
  // 7. Fy0 = Dy·sin(MF(By, Cy, Ey, ay)) + SVy, with the curves below

  // ---- Aligning moment, common terms ----
  // 1.
  const float SHt = qhz1 + qhz2 * dfz + (qhz3 + qhz4 * dfz) * gz;
  const float at = alpha + SHt;
  // 2. Ky divides the residual shift and the equivalent slip below: keep it
  //    away from zero, on its own side (zero counts as positive)
  if (fabsf(Ky) < 0.001f) Ky = Ky >= 0.0f ? 0.001f : -0.001f;
  const float SHf = SHy + SVy / Ky;
  const float ar = alpha + SHf;
  // 3. the qbz5 term takes the lateral camber, as the simulator always has
  const float Bt = (qbz1 + qbz2 * dfz + qbz3 * dfz2) * (1.0f + qbz4 * gz + qbz5 * fabsf(gy)) *
                   lky / lmuy;
  const float Ct = qcz1;
  // 4.
  const float Dt = Fz * (qdz1 + qdz2 * dfz) * (1.0f + qdz3 * gz + qdz4 * gz * gz) * (r0 / Fz0s) * ltr;
  // 5.
  float Et = (qez1 + qez2 * dfz + qez3 * dfz2) *
             (1.0f + (qez4 + qez5 * gz) * TWO_OVER_PI * atanf(Bt * Ct * at));
  if (Et > 1.0f) Et = 1.0f;
  // 6.
  const float Br = qbz9 * lky / lmuy + qbz10 * By * Cy;
  // 7. 6.1 scales the residual torque with ltr, 5.2 with lres
  const float Dr = Fz * ((qdz6 + qdz7 * dfz) * (mf61 ? ltr : lres) + (qdz8 + qdz9 * dfz) * gz) *
                   r0 * lmuy;
  // (The pure-slip moment is not formed: the combined moment replaces it.)

  // ---- Combined slip ----
  // The arctangents inside steps 1-3 first, side by side; then the cosines
  // and the sine that take them
  const float atanBxa = atanf(rbx2 * kappa);
  const float atanSVyka = atanf(rvy4 * alpha);
  const float atanSVykk = atanf(rvy6 * kappa);
  const float atanByk = atanf(rby2 * (alpha - rby3));
  // 1. longitudinal weighting (the curves below)
  const float Bxa = rbx1 * cosf(atanBxa) * lxal;
  const float Cxa = rcx1;
  const float Exa = rex1 + rex2 * dfz;
  const float SHxa = rhx1;
  // 2. lateral shift: unscaled camber, the stored load in kN and fyShiftScale
  //    in place of a friction coefficient, as the simulator forms it
  const float SVyk = cosf(atanSVyka) * (rvy1 + rvy2 * dfz + rvy3 * gamma) * fyShiftScale *
                     this->Fz * sinf(rvy5 * atanSVykk) * lvyka;
  // 3. lateral weighting (the curves below)
  const float Byk = rby1 * cosf(atanByk) * lyka;
  const float Cyk = rcy1;
  const float Eyk = rey1 + rey2 * dfz;
  const float SHyk = rhy1 + rhy2 * dfz;
  // 5. equivalent slips (ahead of 4: the moment's trail curve takes them)
  const float r = (Kx / Ky) * (Kx / Ky) * kappa * kappa;
  const float ateq = sqrtf(at * at + r) * Sign(at);
  const float areq = sqrtf(ar * ar + r) * Sign(ar);

  // ---- The curves, side by side ----
  enum { FX0, FY0, GXA0, GXA, GYK, GYK0, TRAIL, CURVES };
  float arg[CURVES];
  MFSideBySide({{Bx, Cx, Ex, kx},                   // pure longitudinal 6
                {By, Cy, Ey, ay},                   // pure lateral 7
                {Bxa, Cxa, Exa, SHxa},              // combined 1, normaliser
                {Bxa, Cxa, Exa, alpha + SHxa},      // combined 1
                {Byk, Cyk, Eyk, kappa + SHyk},      // combined 3
                {Byk, Cyk, Eyk, SHyk},              // combined 3, normaliser
                {Bt, Ct, Et, ateq}},                // combined 6, trail
               arg);
  const float residual = cosf(atanf(Br * areq));  // combined 6
  const float Fx0 = Dx * sinf(arg[FX0]) + SVx;
  const float Fy0 = Dy * sinf(arg[FY0]) + SVy;

  // ---- Combined slip, the forces and the moment ----
  // 1. a vanishing normaliser means no force
  const float G0 = cosf(arg[GXA0]);
  const float Gxa = fabsf(G0) <= 0.00001f ? 0.0f : cosf(arg[GXA]) / G0;
  Fx = Gxa * Fx0;
  // 3. (unguarded division)
  const float Gyk = cosf(arg[GYK]) / cosf(arg[GYK0]);
  // 4.
  const float FyC = Gyk * Fy0 + SVyk;
  // 6.
  const float cosAlpha = cosf(alpha);
  const float MzC = Dr * residual * cosAlpha -
                    Dt * cosf(arg[TRAIL]) * cosAlpha * (FyC - SVyk) +
                    (ssz1 + ssz2 * FyC / Fz0s + (ssz3 + ssz4 * dfz) * gamma) * r0 * ls * Fx;
  // 7. the simulator's axes: lateral force and moment change sign
  Fy = -FyC;
  Mz = -MzC;
  // 8.
  longStiffness = Bx * Cx * Dx;
  corneringStiffness = -(By * Cy * Dy) * RAD_TO_DEG;
  peakFx = Dx + SVx;
  peakFy = SVy + Dy;
}
