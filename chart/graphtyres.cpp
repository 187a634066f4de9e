// A tyre as the graphs use it.
#include "chart/graphtyres.h"

void GraphTyreCopy(const KTyreParams &tyre, KPacejka *out) { static_cast<KTyreParams &>(*out) = tyre; }

void GraphTyreFrom(const KTyreParams &base, const OperatingPoint &point, const TyreEdits &edits, KPacejka *out) {
  GraphTyreCopy(base, out);
  OpApplyAll(out, point);
  for (const auto &[name, value] : edits)
    if (const KPacejkaMember *m = KPacejkaFindMember(name.c_str())) KPacejkaSetMember(*out, *m, value);
}

void GraphTyresSample(const KPacejka &tyre, bool zoom, CurveRange ranges[CURVE_COUNT], Curve curves[CURVE_COUNT]) {
  for (int g = 0; g < CURVE_COUNT; g++) {
    const CurveKind kind = CurveKind(g);
    ranges[g] = CurveInitialRange(kind);
    CurveApplyZoom(kind, zoom, &ranges[g]);
    CurveSample(tyre, tyre.GetStoredPoint(), kind, ranges[g], &curves[g]);
  }
}
