// KPacejka::Calculate: the formula core (tyre/kpacejka_eval.h) at the stored
// operating point, and the NaN reports of the results its guard zeroed.
#include "diag/qdebug.h"
#include "tyre/kpacejka.h"
#include "tyre/kpacejka_eval.h"

// Process-wide once-flags of the NaN reports (Fx, Fy, Mz), shared by every
// tyre: a bad coefficient set would otherwise flood the log once per sample.
static bool reportNaN[3] = {true, true, true};

void KPacejka::RearmNaNReports() { reportNaN[0] = reportNaN[1] = reportNaN[2] = true; }

void KPacejka::ReportNaN(int quantity, const kpacejka::Point<float> &p) {
  static const char *const labels[3] = {"Fx", "Fy", "Mz"};
  if (quantity < 0 || quantity > 2 || !reportNaN[quantity]) return;
  QERR_IN("KPacejka::Calculate",
       "%s NaN detected in Pacejka; camber %f, sideSlip %f, slipPerc %f, Fz %f", labels[quantity],
       double(p.camber), double(p.sideSlip), double(p.slipPercentage), double(p.Fz));
  QERR_IN("KPacejka::Calculate", "Only reporting the NaN once.");
  reportNaN[quantity] = false;
}

void KPacejka::Calculate() {
  const kpacejka::Point<float> p{camber, sideSlip, slipPercentage, Fz, FzPeak};
  // Statistics the model does not form keep their values.
  kpacejka::Stats s{Bx, Cx, Dx, By, Cy, Dy, longStiffness, corneringStiffness, peakFx, peakFy};
  kpacejka::Guarded<float> bad;
  const kpacejka::Forces<float> f = Evaluate(p, &s, &bad);
  Bx = s.Bx, Cx = s.Cx, Dx = s.Dx, By = s.By, Cy = s.Cy, Dy = s.Dy;
  longStiffness = s.longStiffness;
  corneringStiffness = s.corneringStiffness;
  peakFx = s.peakFx;
  peakFy = s.peakFy;
  Fx = f.Fx;
  Fy = f.Fy;
  Mz = f.Mz;
  const bool zeroed[3] = {bad.Fx, bad.Fy, bad.Mz};
  for (int q = 0; q < 3; q++)
    if (zeroed[q]) ReportNaN(q, p);
}
