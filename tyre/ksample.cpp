// Sampling a tyre over its ranges into measured data.
#include "tyre/ksample.h"

#include <algorithm>
#include <cmath>

#include "tyre/kpacejka.h"
#include "tyre/ktyre.h"

namespace {

// Working limits where a tyre's own range is open or reaches into nonsense.
constexpr double KAPPA_LIMIT = 1.0;
constexpr double ALPHA_LIMIT = 0.3490658503988659;   // 20 degrees
constexpr double CAMBER_LIMIT = 0.10471975511965977;  // 6 degrees
constexpr double PAC96_NOMINAL_LOAD = 4000.0;         // N

// Slip of the combined sweeps: the other slip held at these fractions of
// its range's larger end.
const double kCombinedFractions[] = {-0.5, -0.15, 0.15, 0.5};

double Lerp(double a, double b, int i, int n) { return n > 1 ? a + (b - a) * i / (n - 1) : 0.5 * (a + b); }

// Point i of n over [lo, hi], dense near zero slip where the curves bend
// most: uniform in t with slip = end·t·|t| (end the range's larger end).
double SweepSlip(double lo, double hi, int i, int n) {
  const double end = std::max(std::fabs(lo), std::fabs(hi));
  if (end == 0) return 0;
  auto root = [end](double x) { return std::copysign(std::sqrt(std::fabs(x) / end), x); };
  const double t = Lerp(root(lo), root(hi), i, n);
  return end * t * std::fabs(t);
}

void Add(const KTyreParams &tyre, KMeasuredData *out, double fz, double kappa, double alpha, double gamma) {
  const KOperatingPoint at{float(fz), float(kappa), float(alpha), float(gamma)};
  const KTyreResult r = KTyreEvaluate(tyre, at);
  KTyreReport(tyre, at, r);
  KMeasuredPoint p;
  p.fz = fz, p.kappa = kappa, p.alpha = alpha, p.gamma = gamma;
  p.force[KCH_FX] = double(r.Fx), p.force[KCH_FY] = double(r.Fy), p.force[KCH_MZ] = double(r.Mz);
  out->points.push_back(p);
}

}  // namespace

KSamplePlan KSamplePlanFor(const KTyreParams &t, int loads) {
  KSamplePlan plan;
  const bool magic = t.model == KPacejka::MF52 || t.model == KPacejka::MF61;
  // 1. loads
  const double nominal = magic && t.fz0 > 0 ? double(t.fz0) : PAC96_NOMINAL_LOAD;
  const double lo = std::max(double(t.fzMin), 0.25 * nominal);
  const double hi = std::min(double(t.fzMax), 2.0 * nominal);
  for (int i = 0; i < loads; i++) plan.loads.push_back(hi > lo ? Lerp(lo, hi, i, loads) : lo);
  // 2. slips
  plan.kappaMin = std::max(double(t.slipRatioMin), -KAPPA_LIMIT);
  plan.kappaMax = std::min(double(t.slipRatioMax), KAPPA_LIMIT);
  plan.alphaMin = std::max(double(t.slipAngleMin), -ALPHA_LIMIT);
  plan.alphaMax = std::min(double(t.slipAngleMax), ALPHA_LIMIT);
  // 3. cambers: both ends and zero
  const double cmin = std::max(double(t.camberMin), -CAMBER_LIMIT);
  const double cmax = std::min(double(t.camberMax), CAMBER_LIMIT);
  plan.cambers = {cmin, 0.0, cmax};
  if (cmin >= 0 || cmax <= 0) plan.cambers = {cmin, 0.5 * (cmin + cmax), cmax};
  plan.combined = magic;
  return plan;
}

void KSampleTyre(const KTyreParams &tyre, const KSamplePlan &plan, KMeasuredData *out) {
  *out = KMeasuredData();
  for (bool &h : out->has) h = true;
  const double kEnd = std::max(std::fabs(plan.kappaMin), std::fabs(plan.kappaMax));
  const double aEnd = std::max(std::fabs(plan.alphaMin), std::fabs(plan.alphaMax));
  auto inKappa = [&](double k) { return std::clamp(k, plan.kappaMin, plan.kappaMax); };
  auto inAlpha = [&](double a) { return std::clamp(a, plan.alphaMin, plan.alphaMax); };
  for (double fz : plan.loads) {
    for (double gamma : plan.cambers) {
      // 1. pure sweeps (the other slip exactly zero)
      for (int i = 0; i < plan.steps; i++)
        Add(tyre, out, fz, SweepSlip(plan.kappaMin, plan.kappaMax, i, plan.steps), 0.0, gamma);
      for (int i = 0; i < plan.steps; i++)
        Add(tyre, out, fz, 0.0, SweepSlip(plan.alphaMin, plan.alphaMax, i, plan.steps), gamma);
      if (!plan.combined) continue;
      // 2. combined sweeps: slip ratio at fixed slip angles, then the reverse
      for (double f : kCombinedFractions) {
        const double alpha = inAlpha(f * aEnd), kappa = inKappa(f * kEnd);
        for (int i = 0; i < plan.combinedSteps; i++) {
          if (alpha != 0) Add(tyre, out, fz, SweepSlip(plan.kappaMin, plan.kappaMax, i, plan.combinedSteps), alpha, gamma);
          if (kappa != 0) Add(tyre, out, fz, kappa, SweepSlip(plan.alphaMin, plan.alphaMax, i, plan.combinedSteps), gamma);
        }
      }
    }
  }
}
