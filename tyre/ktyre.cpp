// The stateless core at one point: the setters' conversions, the formula
// core over float, and the reports of what it found, for the caller to make.
#include "tyre/ktyre.h"

#include <cmath>

#include "tyre/kpacejka.h"
#include "tyre/kpacejka_eval.h"
#include "tyre/kpacejka_point.h"

KTyreResult KTyreEvaluateStored(const KTyreParams &tyre, const kpacejka::Point<float> &stored,
                                const KTyreResult *previous) {
  KTyreResult r = previous ? *previous : KTyreResult();
  kpacejka::Stats s{r.Bx, r.Cx, r.Dx, r.By, r.Cy, r.Dy, r.longStiffness, r.corneringStiffness, r.peakFx, r.peakFy};
  kpacejka::Guarded<float> bad;
  const kpacejka::Forces<float> f = tyre.Evaluate(stored, &s, &bad);
  r.Fx = f.Fx, r.Fy = f.Fy, r.Mz = f.Mz;
  r.Bx = s.Bx, r.Cx = s.Cx, r.Dx = s.Dx, r.By = s.By, r.Cy = s.Cy, r.Dy = s.Dy;
  r.longStiffness = s.longStiffness, r.corneringStiffness = s.corneringStiffness;
  r.peakFx = s.peakFx, r.peakFy = s.peakFy;
  r.issues = uint8_t((bad.Fx ? KTyreResult::ZEROED_FX : 0) | (bad.Fy ? KTyreResult::ZEROED_FY : 0) |
                     (bad.Mz ? KTyreResult::ZEROED_MZ : 0));
  return r;
}

KTyreResult KTyreEvaluate(const KTyreParams &tyre, const KOperatingPoint &point, const KTyreResult *previous) {
  const kpacejka::Point<float> p =
      kpacejka::StoredPoint(tyre, point.fz, point.kappa, point.alpha, point.gamma, point.pressure);
  KTyreResult r = KTyreEvaluateStored(tyre, p, previous);
  if (!std::isfinite(point.gamma)) r.issues |= KTyreResult::BAD_CAMBER;
  return r;
}

void KTyreReport(const KTyreParams &tyre, const KOperatingPoint &point, const KTyreResult &result) {
  if (result.issues & KTyreResult::BAD_CAMBER) KPacejka::ReportBadCamber();
  KTyreReportStored(kpacejka::StoredPoint(tyre, point.fz, point.kappa, point.alpha, point.gamma, point.pressure),
                    result);
}

void KTyreReportStored(const kpacejka::Point<float> &stored, const KTyreResult &result) {
  for (int q = 0; q < 3; q++)
    if (result.issues >> q & 1) KPacejka::ReportNaN(q, stored);
}
