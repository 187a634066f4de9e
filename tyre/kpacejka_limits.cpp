// KPacejka::Calculate: the stateless core (tyre/ktyre.h) at the stored
// operating point, and the NaN reports of the results its guard zeroed.
#include "diag/qdebug.h"
#include "tyre/kpacejka.h"

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

KTyreResult KPacejka::GetLastResult() const {
  KTyreResult r;
  r.Fx = Fx, r.Fy = Fy, r.Mz = Mz;
  r.Bx = Bx, r.Cx = Cx, r.Dx = Dx, r.By = By, r.Cy = Cy, r.Dy = Dy;
  r.longStiffness = longStiffness, r.corneringStiffness = corneringStiffness;
  r.peakFx = peakFx, r.peakFy = peakFy;
  return r;
}

void KPacejka::Calculate() {
  const kpacejka::Point<float> p = GetStoredPoint();
  // Statistics the model does not form keep their values.
  const KTyreResult last = GetLastResult();
  const KTyreResult r = KTyreEvaluateStored(*this, p, &last);
  Bx = r.Bx, Cx = r.Cx, Dx = r.Dx, By = r.By, Cy = r.Cy, Dy = r.Dy;
  longStiffness = r.longStiffness;
  corneringStiffness = r.corneringStiffness;
  peakFx = r.peakFx;
  peakFy = r.peakFy;
  Fx = r.Fx;
  Fy = r.Fy;
  Mz = r.Mz;
  KTyreReportStored(p, r);
}
