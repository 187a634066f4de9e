// Pacejka89/96 (model 0): Fx over slip in percent, Fy and Mz over slip angle
// in degrees, all with the load in kN and camber in degrees. The coefficients
// carry those units (a2, b2 are friction × 1000, so D comes out in N).
#include <cmath>

#include "tyre/kmagicformula.h"
#include "tyre/kpacejka.h"

using kpacejka::RAD_TO_DEG;

// A C·D product this small would blow B up; such a curve is flat anyway, so
// B takes a large finite stand-in instead of a division.
static constexpr float CD_MIN = 0.00001f;
static constexpr float B_FLAT = 99999.0f;

// One force's curve, y = D·sin(C·atan(E·atan(B·x) + (1 − E)·B·x)) + Sv, and
// the point x at which it is read.
struct KPacejka::Pac96Curve {
  float B, C, D, E, Sv, x;
};

inline KPacejka::Pac96Curve KPacejka::Pac96FxCurve() {
  const float FzP = FzPeak;
  const float Fz2 = Fz * Fz;
  // 1-3. shape, peak, and C·D with the plain load in place of FzPeak
  const float C = b0;
  const float D = FzP * (b1 * Fz + b2);
  const float CD = (b1 * Fz + b2) * b0 * Fz;
  // 4. stiffness factor (an old NaN test on it decided nothing and is gone).
  //    The decay is formed whether it is used or not: straight-line code
  //    keeps the call from being spilled around as a side path.
  const float decay = expf(-b5 * Fz);
  float B;
  if (fabsf(CD) < CD_MIN) B = B_FLAT;
  else B = (b3 * Fz2 + b4 * Fz) * decay / CD;
  // 5. curvature, capped at 1 only from above
  float E = b6 * Fz2 + b7 * Fz + b8;
  if (E > 1.0f) E = 1.0f;
  // 6. shifts
  const float Sh = b9 * Fz + b10;
  const float Sv = b11 * Fz + b12;
  // 7. curve parameters for the graph and the analysis
  longStiffness = B * C * D;
  Bx = B;
  Cx = C;
  Dx = D;
  peakFx = Sv + D;
  // 8. read at the slip plus the shift
  return {B, C, D, E, Sv, slipPercentage + Sh};
}

inline KPacejka::Pac96Curve KPacejka::Pac96FyCurve() {
  const float FzP = FzPeak;
  const float absGamma = fabsf(camber);
  // 1-4.
  const float C = a0;
  const float D = FzP * (a1 * Fz + a2);
  float E = a6 * Fz + a7;
  if (E > 1.0f) E = 1.0f;
  const float CD = (a1 * Fz + a2) * a0 * Fz;
  // 5. a4 divides the load inside the stiffness term: guard it like C·D; the
  //    cornering stiffness then keeps its last value. (The sine is formed
  //    either way, as the decay in Fx.)
  const float load = sinf(2.0f * atanf(Fz / a4));
  float B;
  if (fabsf(CD) < CD_MIN || fabsf(a4) < CD_MIN) {
    B = B_FLAT;
  } else {
    const float BCD = a3 * load * (1.0f - a5 * absGamma);
    B = BCD / CD;
    corneringStiffness = BCD * RAD_TO_DEG;  // per degree -> per radian
  }
  // 6.
  By = B;
  Cy = C;
  Dy = D;
  // 7. camber-dependent vertical shift
  const float Sv = ((a111 * Fz + a112) * camber + a12) * Fz + a13;
  peakFy = Sv + D;
  // 8.
  const float Sh = a8 * camber + a9 * Fz + a10;
  // 9. read at the slip angle plus the shift
  return {B, C, D, E, Sv, sideSlip + Sh};
}

inline KPacejka::Pac96Curve KPacejka::Pac96MzCurve() {
  const float FzP = FzPeak;
  const float Fz2 = Fz * Fz;
  const float absGamma = fabsf(camber);
  // 1-3.
  const float C = c0;
  const float D = (c1 * FzP + c2) * FzP;
  float E = (c7 * Fz2 + c8 * Fz + c9) * (1.0f - c10 * absGamma);
  if (E > 1.0f) E = 1.0f;
  // 4-5.
  const float CD = (c1 * Fz2 + c2 * Fz) * c0;
  const float decay = expf(-c5 * Fz);  // formed either way, as in Fx
  float B;
  if (fabsf(CD) < CD_MIN) B = B_FLAT;
  else B = (c3 * Fz2 + c4 * Fz) * (1.0f - c6 * absGamma) * decay / CD;
  // 6-7.
  const float Sh = c11 * camber + c12 * Fz + c13;
  const float Sv = (c14 * Fz2 + c15 * Fz) * camber + c16 * Fz + c17;
  // 8. the moment leaves no curve parameters behind; read at the slip angle
  //    plus the shift
  return {B, C, D, E, Sv, sideSlip + Sh};
}

void KPacejka::CalculatePac96() {
  // Fy's stiffness is itself a chain of two calls (atanf, sinf) ahead of its
  // curve, the longest of the three: start it first. (The three routines are
  // inline so this body holds every call and nothing goes through memory.)
  const Pac96Curve fy = Pac96FyCurve();
  const Pac96Curve curve[3] = {Pac96FxCurve(), fy, Pac96MzCurve()};
  // The three curves are independent chains of two atanf and a sinf each.
  // Taking them a stage at a time, all three side by side, lets the processor
  // work on one curve's library call while another's result is still coming,
  // instead of waiting out each chain in turn. Each curve is still formed
  // exactly as D·sin(C·atan(E·atan(B·x) + (1 − E)·B·x)) + Sv.
  float Bx[3], inner[3], y[3];
  for (int i = 0; i < 3; i++) {
    Bx[i] = curve[i].B * curve[i].x;
    inner[i] = atanf(Bx[i]);
  }
  for (int i = 0; i < 3; i++) {
    const float E = curve[i].E;
    inner[i] = curve[i].C * atanf(E * inner[i] + (1.0f - E) * Bx[i]);
  }
  for (int i = 0; i < 3; i++) y[i] = curve[i].D * sinf(inner[i]) + curve[i].Sv;
  Fx = y[0];
  Fy = y[1];
  Mz = y[2];
}
