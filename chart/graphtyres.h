// A tyre as the window's graphs use it, without the window or a file: its
// coefficients, data and ranges, the operating point applied after loading
// and the edits after that, as the window applies them. The Python module
// builds it from a tyre in memory.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "chart/curves.h"
#include "chart/oppoint.h"
#include "tyre/kpacejka.h"

// Member edits in the order made: (member name, value).
using TyreEdits = std::vector<std::pair<std::string, float>>;

// A copy of `tyre` into `out`: everything the member table names
// (coefficients, tyre data, model, flags, ranges); the operating point and
// the last results are not copied.
void GraphTyreCopy(const KTyreParams &tyre, KPacejka *out);
// `base` (as loaded, before any edit) into `out`, then the operating point,
// then the edits in order (names the member table does not know are skipped).
void GraphTyreFrom(const KTyreParams &base, const OperatingPoint &point, const TyreEdits &edits, KPacejka *out);
// Samples the three graphs (Fx, Fy, Mz) of `tyre` at its stored operating
// point as the frame does, over the initial ranges with the zoom applied.
void GraphTyresSample(const KPacejka &tyre, bool zoom, CurveRange ranges[CURVE_COUNT], Curve curves[CURVE_COUNT]);
