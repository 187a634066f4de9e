// Conditioning a rig run (tyre/krun.h, already on our axes) into fitting
// points (tyre/kmeasured.h). The CLI's `data` and `fit`, the Python module
// and the window call this one function.
//
//  1. Set points: load, camber, pressure and speed are each clustered by the
//     density of their values; a row whose value lies in no dense cluster is
//     in a transition between set points (before the first set point: the
//     warm-up) and is dropped.
//  2. Segments: runs of rows at one set point. Runs shorter than
//     KConditionOptions::minSegment rows (and than a fiftieth of the run)
//     are dropped.
//  3. Sweeps: within a segment, a run of rows at zero slip ratio is a
//     slip-angle sweep, one at zero slip angle a slip-ratio sweep, one with
//     both a combined sweep; short stretches (the swept slip crossing zero)
//     stay with the sweep around them. The slip a pure sweep holds at zero
//     is exactly 0 in its points (the fit's pure stages take those).
//  4. Relaxation: the tyre's slip lags the rig's by the relaxation length
//     over the speed, a delay τ. Each sweep is split into branches where its
//     swept slip rises and where it falls; τ is the delay that, applied to
//     the slip, brings the rising and the falling branches onto one curve
//     (the binned force/load of both compared over their common slip range).
//     Every point then takes the slip as it was τ earlier, which cancels the
//     hysteresis to first order. A sweep with one branch only takes the
//     median τ of the others. A run without a time column is a table, not
//     a time series: no lag.
//  5. Spikes (time series only): a force that stands out from both its
//     neighbours the same way, by more than eight times its sweep's robust
//     scatter and 5 % of the channel's peak, is dropped.
//  6. Thinning (optional): every sweep cut to about `thin` evenly spaced
//     points.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tyre/kmeasured.h"
#include "tyre/krun.h"

struct KConditionOptions {
  int thin = 0;         // points per sweep to keep at most; 0 keeps all
  int minSegment = 20;  // rows a set point must hold for
  bool relax = true;    // cancel the relaxation lag
  bool quiet = false;   // nothing to the reporters: a problem only in data.error (a worker thread)
};

enum KSweepKind : int { KSWEEP_ALPHA, KSWEEP_KAPPA, KSWEEP_COMBINED };
const char *KSweepKindName(int kind);  // "slip angle", "slip ratio", "combined"

enum KDropReason : int { KDROP_WARMUP, KDROP_TRANSITION, KDROP_SHORT, KDROP_SPIKE, KDROP_THINNED, KDROP_COUNT };
const char *KDropReasonName(int reason);

struct KSetPoint {
  double fz = 0, gamma = 0, pressure = 0, speed = 0;  // cluster medians (N, rad, Pa, m/s)
  size_t points = 0;                                   // kept
};

struct KSweep {
  int kind = KSWEEP_ALPHA;
  int setPoint = 0;
  size_t firstRow = 0, lastRow = 0;  // in the run
  size_t points = 0;                 // kept
  bool sweptAlpha = true;            // the slip angle moves (else the slip ratio)
  double slipMin = 0, slipMax = 0;   // of the swept slip
  int branches = 0;                  // rising and falling runs
  double lag = 0;                    // τ, s
  bool lagEstimated = false;         // from its own branches (else borrowed)
};

struct KConditioned {
  KMeasuredData data;                   // the fitting points, in time order
  std::vector<double> pressure, speed;  // per point; 0 where the run has none
  std::vector<int> setPoint, sweep;     // per point
  std::vector<KSetPoint> setPoints;
  std::vector<KSweep> sweeps;
  size_t dropped[KDROP_COUNT] = {};
  size_t rows = 0;
  double medianLag = 0;  // s
};

// Conditions `run`; false (with out->data.error set and reported) when no
// point survives.
bool KConditionRun(const KRunData &run, const KConditionOptions &options, KConditioned *out);

// The set points of points already conditioned (a tidy file): load and
// camber clustered as a run's are; a point in no cluster goes to the set
// point nearest in load, then camber; points with a pressure are grouped by
// it too (within 2 %). `setPoint` gets each point's index.
void KConditionSetPoints(const KMeasuredData &data, std::vector<KSetPoint> *setPoints, std::vector<int> *setPoint);

// What `tyrograph-cli data` prints: channels and units, the readers' notes,
// set points with their point counts, sweeps, and the points dropped and why.
std::string KConditionSummary(const KRunData &run, const KConditioned &c);
