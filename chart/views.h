// The views beside the window's three graphs, as charts (chart/chart.h):
//
//   ellipse    Fy over Fx for slip-ratio sweeps at several slip angles at the
//              operating load and camber (the model's combined slip, where
//              it has one), with the pure-slip envelope;
//   mu-load    the curves' peak Fx/Fz and Fy/Fz over load, 0 .. the tyre's
//              load range (ViewLoadRangeOf);
//   stiffness  longitudinal and cornering stiffness over load, likewise.
//
// Below a tyre's minimum load the model clamps the load, so the sweeps go on
// there only as faded lines without a legend entry.
//
// Each tyre is evaluated at its own operating point through the stateless
// core (tyre/ktyre.h): nothing changes it.
#pragma once

#include <string>
#include <vector>

#include "chart/chart.h"
#include "chart/curves.h"

struct ViewTyre {
  const KTyreParams *tyre;
  CurveRange fxRange, fyRange;  // the Fx and Fy graphs' ranges (zoom)
  QColor fxColor, fyColor;      // colours of its longitudinal and lateral quantities
  std::string label;            // legend text; may be empty for one tyre
  kpacejka::Point<float> at{};  // its operating point (KPacejka::GetStoredPoint)
};

// Slip angles of the ellipse's sweeps, degrees.
constexpr float VIEW_ELLIPSE_ANGLES[] = {-12.0f, -8.0f, -4.0f, -2.0f, 0.0f, 2.0f, 4.0f, 8.0f, 12.0f};
constexpr int VIEW_LOAD_STEPS = 60;

// Where a tyre's load sweeps end, and why (the views' subtitle says so):
//   its maximum load (a TIR file's FZMAX) when it names one;
//   else 3 x its nominal load (FNOMIN times LFZO) for a Magic Formula tyre;
//   else 3 x a typical load for a Pacejka89/96 tyre, a quarter of the load
//     where its peak friction (b1 Fz + b2, a1 Fz + a2) first falls to zero;
//   else the load slider's 30000 N.
struct ViewLoadRange {
  float top = 30000.0f;  // N
  std::string why;       // e.g. "3 x typical load 4091 N (no load range given)"
};
ViewLoadRange ViewLoadRangeOf(const KTyreParams &tyre);
float ViewMaxLoad(const KTyreParams &tyre);  // ViewLoadRangeOf(tyre).top

Chart ViewEllipse(const std::vector<ViewTyre> &tyres);
Chart ViewMuLoad(const std::vector<ViewTyre> &tyres);
Chart ViewStiffness(const std::vector<ViewTyre> &tyres);
