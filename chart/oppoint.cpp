// Slider mappings of the operating point.
#include "chart/oppoint.h"

#include <cstdio>

#include "chart/curves.h"
#include "tyre/kpacejka.h"
#include "tyre/kpacejka_point.h"

int OpStartPosition(OpSlider slider) { return slider == OP_LOAD ? 83 : 500; }

float OpValue(OpSlider slider, int p) {
  switch (slider) {
    case OP_LOAD: return static_cast<float>(p * 30);  // integer product, whole newtons
    case OP_SLIP_RATIO: return static_cast<float>(p) / 500.0f - 1.0f;
    case OP_SLIP_ANGLE: return static_cast<float>(p) / 5.0f - 100.0f;
    default: return static_cast<float>(p) / 50.0f - 10.0f;
  }
}

void OpCaption(OpSlider slider, float value, char *out, int outSize) {
  static const char *const formats[OP_SLIDERS] = {"Load %.fN", "Slipratio %.2f", "Slipangle %.2f",
                                                   "Inclination %.2f (camber)"};
  snprintf(out, size_t(outSize), formats[slider], static_cast<double>(value));
}

void OpSet(OperatingPoint *point, OpSlider slider, float value) {
  switch (slider) {
    case OP_LOAD: point->load = value; break;
    case OP_SLIP_RATIO: point->slipRatio = value; break;
    case OP_SLIP_ANGLE: point->slipAngle = value; break;
    default: point->camber = value; break;
  }
}

void OpApply(KPacejka *tyre, OpSlider slider, const OperatingPoint &point) {
  switch (slider) {
    case OP_LOAD: tyre->SetNormalLoad(point.load); break;
    case OP_SLIP_RATIO: tyre->SetSlipRatio(point.slipRatio); break;
    case OP_SLIP_ANGLE: tyre->SetSlipAngle(point.slipAngle / CURVE_RAD2DEG); break;
    default: tyre->SetCamber(point.camber / CURVE_RAD2DEG); break;
  }
}

void OpApplyAll(KPacejka *tyre, const OperatingPoint &point) {
  for (int s = 0; s < OP_SLIDERS; s++) OpApply(tyre, OpSlider(s), point);
}

KOperatingPoint OpPointSI(const OperatingPoint &point) {
  return {point.load, point.slipRatio, point.slipAngle / CURVE_RAD2DEG, point.camber / CURVE_RAD2DEG};
}

kpacejka::Point<float> OpStoredPoint(const KTyreParams &tyre, const OperatingPoint &point) {
  const KOperatingPoint si = OpPointSI(point);
  return kpacejka::StoredPoint(tyre, si.fz, si.kappa, si.alpha, si.gamma);
}
