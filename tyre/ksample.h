// Sampling a tyre into measured data: sweeps of slip ratio and slip angle at
// a set of loads and cambers, pure and (optionally) combined, evaluated as
// `tyrograph-cli eval` does. `convert` fits what this produces; the fitting
// tests make their synthetic data with it.
#pragma once

#include <vector>

#include "tyre/kmeasured.h"

struct KTyreParams;

struct KSamplePlan {
  std::vector<double> loads;    // N
  std::vector<double> cambers;  // rad
  double kappaMin = -1, kappaMax = 1;
  double alphaMin = -0.35, alphaMax = 0.35;  // rad
  int steps = 31;           // points of each pure sweep
  bool combined = false;    // add combined sweeps
  int combinedSteps = 21;   // points of each combined sweep
};

// The plan for sampling `tyre` over its own validity ranges: `loads` loads
// evenly over its load range, three cambers (both ends of its camber range
// and zero), its slip ranges; combined slip for the Magic Formula models.
// Ranges a tyre leaves open (as Pacejka89/96 sets do) and load ranges down to
// zero are narrowed to working ranges: slip ratio ±1, slip angle ±20°,
// camber ±6°, loads a quarter to twice the nominal load (4000 N for a
// Pacejka89/96 tyre, which has none).
KSamplePlan KSamplePlanFor(const KTyreParams &tyre, int loads);

// Evaluates `tyre` over the plan into `out` (every channel measured),
// through the exact core: each point as `eval` gives it. Changes nothing.
void KSampleTyre(const KTyreParams &tyre, const KSamplePlan &plan, KMeasuredData *out);
