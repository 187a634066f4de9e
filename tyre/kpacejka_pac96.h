// Pacejka89/96 (model 0): Fx over slip in percent, Fy and Mz over slip angle
// in degrees, all with the load in kN and camber in degrees. The coefficients
// carry those units (a2, b2 are friction × 1000, so D comes out in N).
//
// Written over the number type T (tyre/knumber.h); included by
// kpacejka_eval.h only.
#pragma once

#include <type_traits>

#include "tyre/kmagicformula.h"
#include "tyre/ktyre.h"

namespace kpacejka {
// A C·D product this small would blow B up; such a curve is flat anyway, so
// B takes a large finite stand-in instead of a division.
constexpr float PAC96_CD_MIN = 0.00001f;
constexpr float PAC96_B_FLAT = 99999.0f;
}  // namespace kpacejka

// One force's curve, y = D·sin(C·atan(E·atan(B·x) + (1 − E)·B·x)) + Sv, and
// the point x at which it is read.
template <class T>
struct KTyreParams::Pac96Curve {
  T B, C, D, E, Sv, x;
};

template <class T>
inline KTyreParams::Pac96Curve<T> KTyreParams::Pac96FxCurve(const kpacejka::Point<T> &p,
                                                      kpacejka::Stats *stats) const {
  using namespace kpacejka;
  const T Fz = p.Fz;
  const T FzP = p.FzPeak;
  const T Fz2 = Fz * Fz;
  // 1-3. shape, peak, and C·D with the plain load in place of FzPeak
  const T C = b0;
  const T D = FzP * (b1 * Fz + b2);
  const T CD = (b1 * Fz + b2) * b0 * Fz;
  // 4. stiffness factor (an old NaN test on it decided nothing and is gone).
  //    The decay is formed whether it is used or not: straight-line code
  //    keeps the call from being spilled around as a side path.
  const T decay = Exp(-b5 * Fz);
  const T B = Select(Abs(CD) < PAC96_CD_MIN, T(PAC96_B_FLAT), (b3 * Fz2 + b4 * Fz) * decay / CD);
  // 5. curvature, capped at 1 only from above
  const T E = CapAtOne(b6 * Fz2 + b7 * Fz + b8);
  // 6. shifts
  const T Sh = b9 * Fz + b10;
  const T Sv = b11 * Fz + b12;
  // 7. curve parameters for the graph and the analysis
  if constexpr (std::is_same_v<T, float>) {
    if (stats) {
      stats->longStiffness = B * C * D;
      stats->Bx = B;
      stats->Cx = C;
      stats->Dx = D;
      stats->peakFx = Sv + D;
    }
  }
  // 8. read at the slip plus the shift
  return {B, C, D, E, Sv, p.slipPercentage + Sh};
}

template <class T>
inline KTyreParams::Pac96Curve<T> KTyreParams::Pac96FyCurve(const kpacejka::Point<T> &p,
                                                      kpacejka::Stats *stats) const {
  using namespace kpacejka;
  const T Fz = p.Fz;
  const T FzP = p.FzPeak;
  const T camber = p.camber;
  const T absGamma = Abs(camber);
  // 1-4.
  const T C = a0;
  const T D = FzP * (a1 * Fz + a2);
  const T E = CapAtOne(a6 * Fz + a7);
  const T CD = (a1 * Fz + a2) * a0 * Fz;
  // 5. a4 divides the load inside the stiffness term: guard it like C·D; the
  //    cornering stiffness then keeps its last value. (The sine is formed
  //    either way, as the decay in Fx.)
  const T load = SinTwoAtan(Fz / a4);
  const Mask<T> flat = (Abs(CD) < PAC96_CD_MIN) | Mask<T>(fabsf(a4) < PAC96_CD_MIN);
  const T BCD = a3 * load * (1.0f - a5 * absGamma);
  const T B = Select(flat, T(PAC96_B_FLAT), BCD / CD);
  // 6.
  if constexpr (std::is_same_v<T, float>) {
    if (stats) {
      if (!flat) stats->corneringStiffness = BCD * RAD_TO_DEG;  // per degree -> per radian
      stats->By = B;
      stats->Cy = C;
      stats->Dy = D;
    }
  }
  // 7. camber-dependent vertical shift
  const T Sv = ((a111 * Fz + a112) * camber + a12) * Fz + a13;
  if constexpr (std::is_same_v<T, float>) {
    if (stats) stats->peakFy = Sv + D;
  }
  // 8.
  const T Sh = a8 * camber + a9 * Fz + a10;
  // 9. read at the slip angle plus the shift
  return {B, C, D, E, Sv, p.sideSlip + Sh};
}

template <class T>
inline KTyreParams::Pac96Curve<T> KTyreParams::Pac96MzCurve(const kpacejka::Point<T> &p) const {
  using namespace kpacejka;
  const T Fz = p.Fz;
  const T FzP = p.FzPeak;
  const T Fz2 = Fz * Fz;
  const T camber = p.camber;
  const T absGamma = Abs(camber);
  // 1-3.
  const T C = c0;
  const T D = (c1 * FzP + c2) * FzP;
  const T E = CapAtOne((c7 * Fz2 + c8 * Fz + c9) * (1.0f - c10 * absGamma));
  // 4-5.
  const T CD = (c1 * Fz2 + c2 * Fz) * c0;
  const T decay = Exp(-c5 * Fz);  // formed either way, as in Fx
  const T B = Select(Abs(CD) < PAC96_CD_MIN, T(PAC96_B_FLAT),
                     (c3 * Fz2 + c4 * Fz) * (1.0f - c6 * absGamma) * decay / CD);
  // 6-7.
  const T Sh = c11 * camber + c12 * Fz + c13;
  const T Sv = (c14 * Fz2 + c15 * Fz) * camber + c16 * Fz + c17;
  // 8. the moment leaves no curve parameters behind; read at the slip angle
  //    plus the shift
  return {B, C, D, E, Sv, p.sideSlip + Sh};
}

template <class T>
kpacejka::Forces<T> KTyreParams::EvalPac96(const kpacejka::Point<T> &p, kpacejka::Stats *stats) const {
  using namespace kpacejka;
  // Fy's stiffness is itself a chain of two calls (atan, sin) ahead of its
  // curve, the longest of the three: start it first. (The three routines are
  // inline so this body holds every call and nothing goes through memory.)
  const Pac96Curve<T> fy = Pac96FyCurve(p, stats);
  const Pac96Curve<T> curve[3] = {Pac96FxCurve(p, stats), fy, Pac96MzCurve(p)};
  // The three curves are independent chains of two atan and a sin each.
  // Taking them a stage at a time, all three side by side, lets the processor
  // work on one curve's library call while another's result is still coming,
  // instead of waiting out each chain in turn. Each curve is still formed
  // exactly as D·sin(C·atan(E·atan(B·x) + (1 − E)·B·x)) + Sv.
  T Bx[3], inner[3], y[3];
  for (int i = 0; i < 3; i++) {
    Bx[i] = curve[i].B * curve[i].x;
    inner[i] = Atan(Bx[i]);
  }
  for (int i = 0; i < 3; i++) {
    const T E = curve[i].E;
    inner[i] = curve[i].C * Atan(E * inner[i] + (1.0f - E) * Bx[i]);
  }
  for (int i = 0; i < 3; i++) y[i] = curve[i].D * Sin(inner[i]) + curve[i].Sv;
  return {y[0], y[1], y[2]};
}
