// Curve sampling of the three graphs: Fx/Fz over slip ratio, Fy/Fz over slip
// angle and Mz over slip angle, 290 samples each, with the highest positive
// sample as the peak. No drawing here: the window's graphs and tyrograph-cli
// both sample through this file, so they always agree.
#pragma once

#include "tyre/ktyre.h"

enum CurveKind { CURVE_FX = 0, CURVE_FY = 1, CURVE_MZ = 2, CURVE_COUNT = 3 };

constexpr int CURVE_SAMPLES = 290;
// Degrees per radian, the one factor the tool converts angles with.
constexpr float CURVE_RAD2DEG = 57.29578f;

struct CurveRange {
  float xMin, xMax;
  float yMin, yMax;
};

struct Curve {
  float samples[CURVE_SAMPLES];
  float peakX;
  float peakValue;
};

// The ranges a graph is created with (x -10..10 or -180..180).
CurveRange CurveInitialRange(CurveKind kind);
// The horizontal range the zoom check box selects; y is left unchanged.
void CurveApplyZoom(CurveKind kind, bool zoom, CurveRange *range);
// Horizontal position of sample i. The step divides by the sample count, not
// count - 1, so the last sample stands one step short of xMax.
float CurveSampleX(const CurveRange &range, int i);
// Samples the tyre at the stored operating point `at` (KPacejka's
// GetStoredPoint), varying only its slip (slip ratio for Fx, slip angle for
// Fy and Mz) as the setters would set it. Changes nothing: the stateless
// core, one point at a time (the curves, the exports built on them and the
// frame digests hold Calculate's bits, which the vector batch does not
// give). The NaN reports of Calculate go out on the calling thread.
void CurveSample(const KTyreParams &tyre, const kpacejka::Point<float> &at, CurveKind kind, const CurveRange &range,
                 Curve *out);

// Texts of the graphs.
const char *CurveTitle(CurveKind kind);
const char *CurveXQuantity(CurveKind kind);  // "SR" or "SA"
const char *CurveYUnit(CurveKind kind);      // "N/N (\xB5)" or "Nm"
const char *CurvePeakFormat(CurveKind kind);  // printf format: peak x, peak value
