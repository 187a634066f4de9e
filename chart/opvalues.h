// The forces and the moment of one tyre at the sliders' operating point, and
// what the model made of that point: a load or slip outside the tyre's own
// validity ranges is clamped by the model's setters, and the frame says so.
// Worked out by the stateless core (tyre/ktyre.h), so the tyre, its curves
// and the exports stay as they are.
#pragma once

#include "chart/oppoint.h"

struct OpValues {
  float Fx = 0, Fy = 0, Mz = 0;  // N, N, N·m
  // The point as asked and as the model takes it: N, ratio, degrees.
  float load = 0, slipRatio = 0, slipAngle = 0;
  float loadUsed = 0, slipRatioUsed = 0, slipAngleUsed = 0;
};

// Evaluates `tyre` at `point` as the setters would set it, without changing it.
OpValues OpValuesAt(const KTyreParams &tyre, const OperatingPoint &point);

// "%s at the sliders: Fx %.1f N, Fy %.1f N, Mz %.2f N·m" with the wheel's
// name (the dot in the font's Latin-1 code).
void OpValuesText(const OpValues &v, const char *wheel, char *out, int outSize);

constexpr int OP_NOTES_MAX = 3;
constexpr int OP_NOTE_SIZE = 96;
// One note per clamped quantity, in the order load, slip ratio, slip angle:
// "load 2500 N, clamped to 10752 N", "slip ratio -1.00, clamped to -0.80",
// "slip angle -20.00 deg, clamped to -11.17 deg". Returns how many.
int OpClampNotes(const OpValues &v, char notes[OP_NOTES_MAX][OP_NOTE_SIZE]);
