// Making a realistic rig run from a tyre, for the worked example, the tests
// and the benchmarks: a time series of slip-angle sweeps up and down and
// slip-ratio ramps at load, camber and pressure set points, with what a
// real rig adds: noise, load wobble, the tyre's relaxation lag, grip that
// drifts as the tread warms, conicity and ply-steer offsets, a few spikes
// and a warm-up. Deterministic for a given seed.
#pragma once

#include <string>
#include <vector>

#include "tyre/krun.h"

class KPacejka;

struct KRigRunPlan {
  std::vector<double> loads;      // N
  std::vector<double> cambers;    // rad
  std::vector<double> pressures;  // Pa
  // Whether the tyre runs at each set point's pressure (its pressure terms
  // relative to its own NOMPRES) or, as by default, at its nominal pressure
  // throughout.
  bool pressureTerms = false;
  double speed = 40 / 3.6;        // m/s
  double rate = 25;               // samples per second
  double alphaMax = 0.20943951023931953;  // 12°
  double alphaRate = 0.06981317007977318; // 4°/s
  double kappaMax = 0.2;
  double kappaRate = 0.1;          // per second
  double combinedAlpha = 0.06981317007977318;  // a slip-ratio ramp at 4° at camber 0, first pressure (0: none)
  double noise = 0.015;            // of each channel's peak at the set point, standard deviation
  double wobble = 0.03;            // load wobble, of the set point
  double relaxation = 0.5;         // m
  double drift = -0.03;            // grip change over the run
  double fyOffset = 60, mzOffset = 4;  // N, N·m (conicity, ply steer)
  int spikes = 8;
  unsigned seed = 17;
};

// The plan for `tyre`: four loads from 0.4 to 1.6 times its nominal load,
// cambers −3°, 0, 3°, two pressures (nominal and 85 %).
KRigRunPlan KRigRunPlanFor(const KPacejka &tyre);

// The run in our axes and SI units (time, speed, pressure, fz, alpha,
// kappa, gamma, fx, fy, mz and a tread temperature no channel takes).
void KRigRun(KPacejka &tyre, const KRigRunPlan &plan, KRunData *out);
// The tyre's steady-state truth at each row's operating point (no noise,
// lag, drift or offsets): Fx, Fy, Mz; with `pressureTerms` at each row's
// pressure.
void KRigRunTruth(KPacejka &tyre, const KRunData &run, std::vector<double> truth[3], bool pressureTerms = false);

// The run as a rig writes it: tab-separated names and units rows, SAE
// signs, degrees, km/h and kPa; `comment` lines first, each after "# ".
std::string KRigRunText(const KRunData &run, const std::vector<std::string> &comment);
// The same run as a TYDEX file (ISO signs, as TYDEX's wheel axes have them).
std::string KRigRunTydex(const KRunData &run, const std::vector<std::string> &comment);
