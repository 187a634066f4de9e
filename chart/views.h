// The views beside the window's three graphs, as charts (chart/chart.h):
//
//   ellipse    Fy over Fx for slip-ratio sweeps at several slip angles at the
//              operating load and camber (the model's combined slip, where
//              it has one), with the pure-slip envelope;
//   mu-load    the curves' peak Fx/Fz and Fy/Fz over load, 0 .. maximum load;
//   stiffness  longitudinal and cornering stiffness over load.
//
// Each tyre is evaluated at its own operating point and left as it was.
#pragma once

#include <string>
#include <vector>

#include "chart/chart.h"
#include "chart/curves.h"

class KPacejka;

struct ViewTyre {
  KPacejka *tyre;
  CurveRange fxRange, fyRange;  // the Fx and Fy graphs' ranges (zoom)
  QColor fxColor, fyColor;      // colours of its longitudinal and lateral quantities
  std::string label;            // legend text; may be empty for one tyre
};

// Slip angles of the ellipse's sweeps, degrees.
constexpr float VIEW_ELLIPSE_ANGLES[] = {-12.0f, -8.0f, -4.0f, -2.0f, 0.0f, 2.0f, 4.0f, 8.0f, 12.0f};
constexpr int VIEW_LOAD_STEPS = 60;

// The load axis ends at the tyre's maximum load (the TIR file's FZMAX), or at
// the load slider's 30000 N for a tyre that names none.
float ViewMaxLoad(const KPacejka &tyre);

Chart ViewEllipse(const std::vector<ViewTyre> &tyres);
Chart ViewMuLoad(const std::vector<ViewTyre> &tyres);
Chart ViewStiffness(const std::vector<ViewTyre> &tyres);
