// Curve sampling shared by the graphs and tyrograph-cli.
#include "chart/curves.h"

#include "tyre/kpacejka_point.h"

CurveRange CurveInitialRange(CurveKind kind) {
  switch (kind) {
    case CURVE_FX: return {-10.0f, 10.0f, -2.0f, 2.0f};
    case CURVE_FY: return {-180.0f, 180.0f, -2.0f, 2.0f};
    default: return {-180.0f, 180.0f, -200.0f, 200.0f};
  }
}

void CurveApplyZoom(CurveKind kind, bool zoom, CurveRange *range) {
  float half = kind == CURVE_FX ? (zoom ? 2.0f : 10.0f) : (zoom ? 20.0f : 180.0f);
  range->xMin = -half;
  range->xMax = half;
}

float CurveSampleX(const CurveRange &range, int i) {
  return range.xMin + (range.xMax - range.xMin) * static_cast<float>(i) / static_cast<float>(CURVE_SAMPLES);
}

// One model evaluation at horizontal position x, as the graph shows it.
static float SampleAt(const KTyreParams &tyre, kpacejka::Point<float> at, CurveKind kind, float x, float normaliser) {
  if (kind == CURVE_FX) at.slipPercentage = kpacejka::StoredSlipRatio(tyre, x);
  else at.sideSlip = kpacejka::StoredSlipAngle(tyre, x / CURVE_RAD2DEG);
  const KTyreResult r = KTyreEvaluateStored(tyre, at);
  KTyreReportStored(at, r);
  return kind == CURVE_FX ? r.Fx * normaliser : kind == CURVE_FY ? r.Fy * normaliser : r.Mz;
}

void CurveSample(const KTyreParams &tyre, const kpacejka::Point<float> &at, CurveKind kind, const CurveRange &range,
                 Curve *out) {
  // The model holds the load in kN. Below 1 N the forces are normalised as if
  // the load were 1 N, so Fx/Fz stays finite when the tyre is unloaded.
  float load = at.Fz * 1000.0f;
  if (load < 1.0f) load = 1.0f;
  float normaliser = 1.0f / load;

  // The peak starts at 0, so only a positive maximum counts, and the first of
  // equal maxima wins.
  out->peakX = 0.0f;
  out->peakValue = 0.0f;
  for (int i = 0; i < CURVE_SAMPLES; i++) {
    float x = CurveSampleX(range, i);
    float v = SampleAt(tyre, at, kind, x, normaliser);
    out->samples[i] = v;
    if (v > out->peakValue) {
      out->peakValue = v;
      out->peakX = x;
    }
  }
}

const char *CurveTitle(CurveKind kind) {
  static const char *const titles[CURVE_COUNT] = {"Fx/Fz (normalized longitudinal force)",
                                                  "Fy/Fz (normalized lateral force)",
                                                  "Mz (aligning moment)"};
  return titles[kind];
}

const char *CurveXQuantity(CurveKind kind) { return kind == CURVE_FX ? "SR" : "SA"; }

// The micro sign is the single byte 0xB5, the code the UI font carries it at.
const char *CurveYUnit(CurveKind kind) { return kind == CURVE_MZ ? "Nm" : "N/N (\xB5)"; }

const char *CurvePeakFormat(CurveKind kind) {
  static const char *const formats[CURVE_COUNT] = {"Fx peak at SR=%.2f, \xB5=%.2f",
                                                   "Fy peak at SA=%.2f deg, \xB5=%.2f",
                                                   "Mz peak at SA=%.2f deg, %.2fNm"};
  return formats[kind];
}
