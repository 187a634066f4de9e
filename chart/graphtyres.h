// One tyre as the window's three graphs hold it, without the window: a copy
// per graph (Fx, Fy, Mz) with the operating point applied after loading and
// the edits after that, as the window applies them. The Python module fills
// it from a tyre in memory; nothing is read from disk.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "chart/curves.h"
#include "chart/oppoint.h"
#include "tyre/kpacejka.h"

// Member edits in the order made: (member name, value).
using TyreEdits = std::vector<std::pair<std::string, float>>;

struct GraphTyres {
  KPacejka tyres[CURVE_COUNT];
};

// A copy of `tyre`: every member of the member table (coefficients, tyre
// data, model, flags, ranges) into `out`; the operating point and the last
// results are not copied.
void GraphTyreCopy(const KPacejka &tyre, KPacejka *out);
// `base` (as loaded, before any edit) into each graph's tyre, then the
// operating point, then the edits in order (names the member table does not
// know are skipped).
void GraphTyresFrom(const KPacejka &base, const OperatingPoint &point, const TyreEdits &edits, GraphTyres *out);
// Samples the three graphs' tyres (Fx, Fy, Mz) as the frame does, over the
// initial ranges with the zoom applied.
void GraphTyresSample(KPacejka tyres[CURVE_COUNT], bool zoom, CurveRange ranges[CURVE_COUNT], Curve curves[CURVE_COUNT]);
