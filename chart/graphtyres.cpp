// The three graph tyres of one tyre.
#include "chart/graphtyres.h"

#include "tyre/kfit.h"

void GraphTyreCopy(const KPacejka &tyre, KPacejka *out) { KFitCopy(tyre, out); }

void GraphTyresFrom(const KPacejka &base, const OperatingPoint &point, const TyreEdits &edits, GraphTyres *out) {
  for (KPacejka &tyre : out->tyres) {
    GraphTyreCopy(base, &tyre);
    OpApplyAll(&tyre, point);
    for (const auto &[name, value] : edits)
      if (const KPacejkaMember *m = KPacejkaFindMember(name.c_str())) KPacejkaSetMember(tyre, *m, value);
  }
}

void GraphTyresSample(KPacejka tyres[CURVE_COUNT], bool zoom, CurveRange ranges[CURVE_COUNT], Curve curves[CURVE_COUNT]) {
  for (int g = 0; g < CURVE_COUNT; g++) {
    const CurveKind kind = CurveKind(g);
    ranges[g] = CurveInitialRange(kind);
    CurveApplyZoom(kind, zoom, &ranges[g]);
    CurveSample(&tyres[g], kind, ranges[g], &curves[g]);
  }
}
