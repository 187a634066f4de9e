// Values at the operating point.
#include "chart/opvalues.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "tyre/kpacejka.h"
#include "tyre/kpacejka_point.h"

namespace {

// The setters clamp in float; anything beyond rounding is a real clamp.
bool Differs(float asked, float used) { return std::fabs(asked - used) > 1e-4f * std::max(1.0f, std::fabs(asked)); }

}  // namespace

OpValues OpValuesAt(const KTyreParams &tyre, const OperatingPoint &point) {
  const KOperatingPoint si = OpPointSI(point);
  const KTyreResult r = KTyreEvaluate(tyre, si);
  KTyreReport(tyre, si, r);
  const kpacejka::Point<float> used = OpStoredPoint(tyre, point);
  OpValues v;
  v.Fx = r.Fx;
  v.Fy = r.Fy;
  v.Mz = r.Mz;
  v.load = point.load;
  v.slipRatio = point.slipRatio;
  v.slipAngle = point.slipAngle;
  v.loadUsed = used.Fz * 1000.0f;
  v.slipRatioUsed = used.slipPercentage / 100.0f;
  v.slipAngleUsed = used.sideSlip;
  return v;
}

void OpValuesText(const OpValues &v, const char *wheel, char *out, int outSize) {
  snprintf(out, size_t(outSize), "%s at the sliders: Fx %.1f N, Fy %.1f N, Mz %.2f N\xB7m", wheel, double(v.Fx),
           double(v.Fy), double(v.Mz));
}

int OpClampNotes(const OpValues &v, char notes[OP_NOTES_MAX][OP_NOTE_SIZE]) {
  int n = 0;
  if (Differs(v.load, v.loadUsed))
    snprintf(notes[n++], OP_NOTE_SIZE, "load %.0f N, clamped to %.0f N", double(v.load), double(v.loadUsed));
  if (Differs(v.slipRatio, v.slipRatioUsed))
    snprintf(notes[n++], OP_NOTE_SIZE, "slip ratio %.2f, clamped to %.2f", double(v.slipRatio),
             double(v.slipRatioUsed));
  if (Differs(v.slipAngle, v.slipAngleUsed))
    snprintf(notes[n++], OP_NOTE_SIZE, "slip angle %.2f deg, clamped to %.2f deg", double(v.slipAngle),
             double(v.slipAngleUsed));
  return n;
}
