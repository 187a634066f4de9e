// The operating point the four sliders under the graphs set: load, slip
// ratio, slip angle and camber, with the mapping from slider position
// (0..1000) to value and the caption each slider shows.
#pragma once

#include "tyre/ktyre.h"

class KPacejka;

enum OpSlider { OP_LOAD = 0, OP_SLIP_RATIO = 1, OP_SLIP_ANGLE = 2, OP_CAMBER = 3, OP_SLIDERS = 4 };

// Values as the panel shows them: N, ratio, degrees, degrees.
struct OperatingPoint {
  float load = 2500.0f;
  float slipRatio = 0.0f;
  float slipAngle = 0.0f;
  float camber = 0.0f;
};

// Slider positions at start-up. The load slider starts at 83 (2490 N) while
// the load itself starts at 2500 N; the two agree once the slider moves.
int OpStartPosition(OpSlider slider);
// Value of a slider position.
float OpValue(OpSlider slider, int position);
// The slider's caption for a value ("Load %.fN", "Slipratio %.2f", ...).
void OpCaption(OpSlider slider, float value, char *out, int outSize);
// Stores the value of one slider into the point.
void OpSet(OperatingPoint *point, OpSlider slider, float value);
// Applies one quantity of the point to a tyre (angles passed in radians).
void OpApply(KPacejka *tyre, OpSlider slider, const OperatingPoint &point);
// Applies all four in the order load, slip ratio, slip angle, camber.
void OpApplyAll(KPacejka *tyre, const OperatingPoint &point);
// The point in SI (N, ratio, radians, radians), as the core takes it.
KOperatingPoint OpPointSI(const OperatingPoint &point);
// The stored point OpApplyAll leaves in `tyre`, without changing it.
kpacejka::Point<float> OpStoredPoint(const KTyreParams &tyre, const OperatingPoint &point);
