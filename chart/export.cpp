// The ASCII and car.ini-style exports.
#include "chart/export.h"

#include <cstdarg>
#include <cstdio>

#include "chart/coeftable.h"
#include "chart/curves.h"
#include "tyre/kpacejka.h"
#include "tyre/kpacejka_point.h"
#include "diag/qdebug.h"

namespace {

void Appendf(std::string *out, const char *fmt, ...) QFMT(2, 3);
void Appendf(std::string *out, const char *fmt, ...) {
  char buf[256];
  va_list ap;
  va_start(ap, fmt);
  int n = vsnprintf(buf, sizeof buf, fmt, ap);
  va_end(ap);
  if (n > 0) out->append(buf, size_t(n) < sizeof buf ? size_t(n) : sizeof buf - 1);
}

// One evaluation of the swept force at sweep position x: the tyre's
// operating point with the swept slip replaced as its setter would store it
// (the tyre is not changed; the reports of Calculate on this thread).
float SweepForce(const KPacejka &tyre, bool lateral, float x) {
  kpacejka::Point<float> at = tyre.GetStoredPoint();
  // The sweep value is taken as radians as it stands.
  if (lateral) at.sideSlip = kpacejka::StoredSlipAngle(tyre, x);
  else at.slipPercentage = kpacejka::StoredSlipRatio(tyre, x);
  const KTyreResult r = KTyreEvaluateStored(tyre, at);
  KTyreReportStored(at, r);
  return lateral ? r.Fy : r.Fx;
}

float SweepX(float maximum, int steps, int i) {
  const float minimum = 0.0f;
  return minimum + (maximum - minimum) * static_cast<float>(i) / static_cast<float>(steps);
}

// Two passes over the same sweep: the first finds the largest positive force,
// the second writes every value divided by it, seven to a line.
void AppendSweep(std::string *out, const KPacejka &tyre, bool lateral, int steps, float maximum) {
  float peak = 0.0f;
  for (int i = 0; i < steps; i++) {
    float f = SweepForce(tyre, lateral, SweepX(maximum, steps, i));
    if (f > peak) peak = f;
  }
  float divisor = peak > 0.0f ? peak : 1.0f;
  for (int i = 0; i < steps; i++) {
    float f = SweepForce(tyre, lateral, SweepX(maximum, steps, i));
    Appendf(out, "%5.5f", static_cast<double>(f / divisor));
    out->push_back(i % 7 == 6 ? '\n' : ' ');
  }
}

void AppendValue(std::string *out, const char *key, float value) {
  Appendf(out, "  %s=%.5f\n", key, static_cast<double>(value));
}

void AppendScaleBlock(std::string *out, const KPacejka &tyre) {
  *out += "  ; Tire scaling factors for Magic Formula 5.2 tire model\n";
  *out += "  model=1\n";
  // The statistics heading stands before the factors with nothing under it;
  // readers of these blocks expect it there.
  *out += "  ; Statistical data (SR, SA in radians)\n";
  // The factors in their car.ini order (not storage order).
  for (int order = 0; order < COEFF_SCALE_COUNT; order++) {
    const KPacejkaMember *m = KPacejkaIniScalingMember(order);
    AppendValue(out, m->name, float(KPacejkaGetMember(tyre, *m)));
  }
}

void AppendRun(std::string *out, const KPacejka &tyre, int first, int last) {
  for (int f = first; f <= last; f++) AppendValue(out, CoeffFieldKey(f), CoeffFieldGet(tyre, f));
}

void AppendPac96Block(std::string *out, const KPacejka &tyre, float fxPeakX, float fyPeakXDeg) {
  *out += "  ; Pacejka constants (Pacejka96 model)\n";
  *out += "  model=0\n";
  *out += "  ; Lateral coefficients\n";
  AppendRun(out, tyre, 0, 14);  // a0 ... a13
  *out += "  ; Longitudinal coefficients\n";
  AppendRun(out, tyre, 15, 25);  // b0 ... b10; b11 and b12 stay out of this block
  *out += "  ; Aligning moment coefficients\n";
  AppendRun(out, tyre, 28, 45);  // c0 ... c17
  *out += "  ; Statistical data (SR, SA in radians)\n";
  AppendValue(out, "optimal_slipratio", fxPeakX);
  AppendValue(out, "optimal_slipangle", fyPeakXDeg / CURVE_RAD2DEG);
}

}  // namespace

std::string ExportAsciiText(const KPacejka *fxTyre, const KPacejka *fyTyre, int steps, float maximum) {
  if (steps < 0) steps = 0;
  const float minimum = 0.0f;
  std::string out;
  out += "// ASCII export of Korvane's Tyrograph\n";
  Appendf(&out, "// Values from SR=%.2f to %.2f, %d steps, Fx normalized\n", static_cast<double>(minimum),
          static_cast<double>(maximum), steps);
  out += "\n";
  AppendSweep(&out, *fxTyre, false, steps, maximum);
  out += "\n\n";
  Appendf(&out, "// Values from SA=%.2f to %.2f radians, %d steps, Fy normalized\n", static_cast<double>(minimum),
          static_cast<double>(maximum), steps);
  out += "\n";
  AppendSweep(&out, *fyTyre, true, steps, maximum);
  return out;
}

std::string ExportCarIniText(const KPacejka &tyre, float fxPeakX, float fyPeakXDeg) {
  std::string out = "pacejka\n{\n";
  if (tyre.model == 1 || tyre.model == 3)
    AppendScaleBlock(&out, tyre);
  else
    AppendPac96Block(&out, tyre, fxPeakX, fyPeakXDeg);
  out += "}\n";
  return out;
}

bool ExportWriteFile(const char *path, const std::string &text) {
  FILE *f = fopen(path, "wb");
  if (!f) return false;
  bool ok = fwrite(text.data(), 1, text.size(), f) == text.size();
  if (fclose(f) != 0) ok = false;
  return ok;
}
