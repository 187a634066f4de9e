// The stateless tyre core: a tyre's coefficients and validity ranges as a
// plain value type (KTyreParams), an operating point in SI units, and the
// result of one evaluation, with free functions that evaluate them. Nothing
// here changes the tyre it evaluates, keeps state between calls or reports:
// a caller on a worker thread may run it, and the thread that owns the
// reporters says what went wrong (KTyreReport).
//
// KPacejka (tyre/kpacejka.h) is a KTyreParams plus the operating point and
// the results of its last Calculate; its setters and Calculate give, bit for
// bit, what KTyreEvaluate gives at the same point.
//
// Units: the point in N, slip ratio as a fraction, radians; forces in N, the
// moment in N·m. All numbers are single precision.
#pragma once

#include <cstdint>

namespace kpacejka {
// One operating point in the stored units (degrees, percent, kN), per lane;
// dpi is the inflation pressure relative to the tyre's nominal pressure,
// (p - nompres) / nompres: 0 runs the tyre at its nominal pressure.
template <class T>
struct Point {
  T camber, sideSlip, slipPercentage, Fz, FzPeak;
  T dpi;
};
// Results of one evaluation: N, N, N·m.
template <class T>
struct Forces {
  T Fx, Fy, Mz;
};
// Which results the NaN guard zeroed (a mask per quantity).
template <class T>
struct Guarded;
// The curve statistics an evaluation forms, as far as the model forms them
// (the others keep whatever the caller put there).
struct Stats {
  float Bx, Cx, Dx, By, Cy, Dy;
  float longStiffness, corneringStiffness, peakFx, peakFy;
};
}  // namespace kpacejka

// A tyre's coefficients, tyre data and validity ranges: everything the
// member table (tyre/kpacejka.h) names. Copying it copies the tyre.
struct KTyreParams {
  // Model numbers.
  enum : int { PAC96 = 0, MF52 = 1, PAC2006 = 2, MF61 = 3 };
  // Bits of `flags`.
  enum : uint32_t { NEGATE_CAMBER = 0x1 };
  static constexpr int PAC96_COUNT = 46;    // a0 ... c17
  static constexpr int SCALING_COUNT = 28;  // lfz0 ... lres

  // ==== Data, in declaration order ================================================
  uint32_t flags;  // bit 0: negate_camber

  // Pacejka89/96 coefficients (46, contiguous; no a11, no b13).
  float a0, a1, a2, a3, a4, a5, a6, a7, a8, a9, a10, a111, a112, a12, a13;
  float b0, b1, b2, b3, b4, b5, b6, b7, b8, b9, b10, b11, b12;
  float c0, c1, c2, c3, c4, c5, c6, c7, c8, c9, c10, c11, c12, c13, c14, c15, c16, c17;

  // Scaling factors (28, contiguous).
  float lfz0, lcx, lmux, lex, lkx, lhx, lvx, lgax, lcy, lmuy, ley, lky, lhy, lvy, lgay,
      lxal, lyka, lvyka, ls, lsgkp, lsgal, lgyr, lmx, lvmx, lmy, lgaz, ltr, lres;

  // Magic Formula, longitudinal.
  float pcx1, pdx1, pdx2, pdx3, pex1, pex2, pex3, pex4, pkx1, pkx2, pkx3, phx1, phx2, pvx1,
      pvx2, rbx1, rbx2, rbx3, rcx1, rex1, rex2, rhx1, ptx1, ptx2, ptx3;
  // Magic Formula, lateral.
  float pcy1, pdy1, pdy2, pdy3, pey1, pey2, pey3, pey4, pky1, pky2, pky3, phy1, phy2, phy3,
      pvy1, pvy2, pvy3, pvy4, rby1, rby2, rby3, rby4, rcy1, rey1, rey2, rhy1, rhy2, rvy1,
      rvy2, rvy3, rvy4, rvy5, rvy6, pty1, pty2;
  float lateralSpare[7];  // lateral-model floats no key reads (0)
  // Magic Formula, aligning (no qbz7, qbz8, qdz5).
  float qbz1, qbz2, qbz3, qbz4, qbz5, qbz6, qbz9, qbz10, qcz1, qdz1, qdz2, qdz3, qdz4, qdz6,
      qdz7, qdz8, qdz9, qez1, qez2, qez3, qez4, qez5, qhz1, qhz2, qhz3, qhz4, ssz1, ssz2, ssz3,
      ssz4;
  // Turn-slip factors of the Pacejka2006 model (1.0: turn slip neglected).
  float zeta0, zeta1, zeta2, zeta3, zeta4, zeta5, zeta6, zeta7, zeta8;
  float turnSlipSpare;  // 0

  // Tyre data.
  float r0;            // unloaded radius (m)
  float fz0;           // nominal load (N)
  float longv;         // reference speed (m/s)
  float mbelt;         // belt mass
  float tyreSpare;     // 1.0
  float fyShiftScale;  // factor of the combined-slip lateral shift
  float tyreSpare3[3];  // 0
  float lmp, lkyc, lt;

  int32_t model;

  // Validity ranges (the operating point is clamped into them).
  float slipAngleMin, slipAngleMax;  // radians
  float slipRatioMin, slipRatioMax;
  float camberMin, camberMax;
  float fzMin, fzMax;  // N

  // Inflation pressure (Pa): the file's operating pressure, kept and written
  // back but never evaluated at by itself, and the nominal pressure the
  // pressure terms are relative to (0: the tyre has no pressure terms).
  float inflpres, nompres;
  // Pressure coefficients of the Magic Formula models: slip stiffness
  // (ppx1, ppx2), longitudinal friction (ppx3, ppx4), cornering stiffness
  // and its load (ppy1, ppy2), lateral friction (ppy3, ppy4), camber
  // stiffness (ppy5), pneumatic trail (ppz1) and the camber part of the
  // residual torque (ppz2). ppy5, qpz1 and qpz2 (the older files' names of
  // the trail and residual-torque terms) are kept and written back only:
  // these models have no camber stiffness term and read ppz1, ppz2.
  float ppx1, ppx2, ppx3, ppx4, ppy1, ppy2, ppy3, ppy4, ppy5, ppz1, ppz2, qpz1, qpz2;

  // ---- The formula core (tyre/kpacejka_eval.h) ----------------------------------
  // Over the number type T of tyre/knumber.h: float, or a vector of lanes.
  // Evaluate: the model's forces at `p` with the friction limits and the NaN
  // guard applied; `bad` says which results the guard zeroed. With T = float
  // and `stats` given, the curve statistics the model forms land there.
  template <class T>
  kpacejka::Forces<T> Evaluate(const kpacejka::Point<T> &p, kpacejka::Stats *stats,
                               kpacejka::Guarded<T> *bad) const;

 private:
  template <class T>
  struct Pac96Curve;  // one force's curve parameters (kpacejka_pac96.h)
  template <class T>
  kpacejka::Forces<T> EvalPac96(const kpacejka::Point<T> &p, kpacejka::Stats *stats) const;
  template <class T>
  Pac96Curve<T> Pac96FxCurve(const kpacejka::Point<T> &p, kpacejka::Stats *stats) const;
  template <class T>
  Pac96Curve<T> Pac96FyCurve(const kpacejka::Point<T> &p, kpacejka::Stats *stats) const;
  template <class T>
  Pac96Curve<T> Pac96MzCurve(const kpacejka::Point<T> &p) const;
  template <class T>
  kpacejka::Forces<T> EvalMagicFormula(bool mf61, const kpacejka::Point<T> &p, kpacejka::Stats *stats) const;
  template <class T>
  kpacejka::Forces<T> EvalPac2006(const kpacejka::Point<T> &p, kpacejka::Stats *stats) const;
  template <class T>
  kpacejka::Guarded<T> ApplyLimits(kpacejka::Forces<T> &f, const kpacejka::Point<T> &p) const;
};

// The coefficients of a reset tyre (KPacejka's constructor): model 0, every
// coefficient 0, the scaling and turn-slip factors 1, the tyre data and the
// open ranges of a new tyre.
KTyreParams KTyreDefaults();

// One operating point: load (N), slip ratio, slip angle (rad), camber (rad),
// inflation pressure (Pa; 0 or less: the tyre's nominal pressure).
struct KOperatingPoint {
  float fz = 0, kappa = 0, alpha = 0, gamma = 0;
  float pressure = 0;
};

// What one evaluation gives: the forces (N, N, N·m) and the curve
// statistics the window prints. A model forms only some statistics (a
// Pacejka2006 tyre none of Bx ... Dy nor the peaks, a flat Pacejka89/96
// lateral curve no cornering stiffness): the others are what `previous` of
// KTyreEvaluate held, 0 without one.
struct KTyreResult {
  float Fx = 0, Fy = 0, Mz = 0;
  float Bx = 0, Cx = 0, Dx = 0, By = 0, Cy = 0, Dy = 0;
  float longStiffness = 0, corneringStiffness = 0, peakFx = 0, peakFy = 0;
  // What went wrong: bit 0, 1, 2 when the NaN guard zeroed Fx, Fy, Mz; bit
  // 3 when the camber was no finite number.
  uint8_t issues = 0;
  enum : uint8_t { ZEROED_FX = 1, ZEROED_FY = 2, ZEROED_MZ = 4, BAD_CAMBER = 8 };
};

// The tyre at one point: the point clamped into the tyre's ranges and
// converted as KPacejka's setters do, then the model. No reports.
KTyreResult KTyreEvaluate(const KTyreParams &tyre, const KOperatingPoint &point,
                          const KTyreResult *previous = nullptr);
// The same at a point already in the stored units (degrees, percent, kN;
// camber negated for a negate_camber tyre), as KPacejka keeps it.
KTyreResult KTyreEvaluateStored(const KTyreParams &tyre, const kpacejka::Point<float> &stored,
                                const KTyreResult *previous = nullptr);
// The reports the setters and Calculate make for what `result.issues` holds:
// the camber report, then the NaN reports (once per process and quantity).
// On the reporters' thread only.
void KTyreReport(const KTyreParams &tyre, const KOperatingPoint &point, const KTyreResult &result);
// The NaN reports Calculate makes for `result` at a stored point.
void KTyreReportStored(const kpacejka::Point<float> &stored, const KTyreResult &result);
