// KPacejka: construction, coefficient reset, operating-point setters, the
// small accessors and the live parameter set.
#include "tyre/kpacejka.h"

#include <cmath>
#include <cstddef>
#include <cstring>

#include "tyre/kpacejka_point.h"
#include "tyre/psystem.h"
#include "diag/qdebug.h"

using kpacejka::Clamp;
using kpacejka::DEG_TO_RAD;

// Sets the contiguous run of floats from member `first` to member `last`.
#define FILL(first, last, value) \
  Fill(this, offsetof(KPacejka, first), offsetof(KPacejka, last), value)
static void Fill(KPacejka *tyre, size_t first, size_t last, float value) {
  char *base = reinterpret_cast<char *>(tyre);
  for (size_t at = first; at <= last; at += sizeof(float)) memcpy(base + at, &value, sizeof value);
}

// ---- Construction ----------------------------------------------------------------

KPacejka::KPacejka() {
  ResetCoefficients();
  flags = 0;
  camber = sideSlip = slipPercentage = Fz = 0.0f;
  FzPeak = 0.0f;
  mbelt = 0.0f;
  r0 = 0.3f;
  fz0 = 1500.0f;
  longv = 30.0f;
  tyreSpare = 1.0f;
  fyShiftScale = 1.0f;
  slipAngleMin = slipRatioMin = camberMin = -99.0f;
  slipAngleMax = slipRatioMax = camberMax = 99.0f;
  fzMin = 0.0f;
  fzMax = 999999.0f;
  Bx = Cx = By = Cy = 0.0f;
  Dx = Dy = 0.0f;  // left to the first evaluation; zero so nothing reads garbage
  Fx = Fy = Mz = 0.0f;
  resultSpare = 0.0f;
  longStiffness = corneringStiffness = peakFx = peakFy = 0.0f;
  FILL(resultSpares[0], resultSpares[3], 0.0f);
  system = nullptr;
}

KPacejka::~KPacejka() { delete system; }

void KPacejka::ResetCoefficients() {
  model = PAC96;
  FILL(a0, c17, 0.0f);
  FILL(lfz0, lres, 1.0f);
  FILL(pcx1, ssz4, 0.0f);
  FILL(zeta0, zeta8, 1.0f);
  turnSlipSpare = 0.0f;
  FILL(tyreSpare3[0], tyreSpare3[2], 0.0f);
  lmp = lkyc = lt = 1.0f;
}

// ---- Operating point ---------------------------------------------------------------

void KPacejka::ReportBadCamber() {
  qerr("kpacejka", "KPacejka::SetCamber", __LINE__, "Trying to set not a NaN to camber");
}

void KPacejka::SetCamber(float radians) {
  if (!std::isfinite(radians)) ReportBadCamber();
  // The range check acts on the value about to be replaced; the new value is
  // stored unclamped, as the simulator has always done.
  camber = Clamp(camber, camberMin, camberMax);
  camber = kpacejka::StoredCamber(*this, radians);
}

void KPacejka::SetNormalLoad(float newtons) { Fz = FzPeak = kpacejka::StoredLoad(*this, newtons); }

void KPacejka::SetPeakLoad(float newtons) { FzPeak = kpacejka::StoredLoad(*this, newtons); }

void KPacejka::SetSlipAngle(float radians) { sideSlip = kpacejka::StoredSlipAngle(*this, radians); }

void KPacejka::SetSlipRatio(float ratio) { slipPercentage = kpacejka::StoredSlipRatio(*this, ratio); }

float KPacejka::GetCamber() const {
  float c = camber * DEG_TO_RAD;
  return (flags & NEGATE_CAMBER) ? -c : c;
}

// ---- Accessors -------------------------------------------------------------------

float KPacejka::GetLateralFriction() const {
  return (model == MF52 || model == MF61) ? pdy1 : a2 * 0.001f;
}

// Model 2 takes the Pacejka89/96 coefficients here, like the force limits.
float KPacejka::GetLongitudinalFriction() const {
  return (model == MF52 || model == MF61) ? pdx1 : b2 * 0.001f;
}

const char *KPacejka::GetModelName(int m) {
  switch (m) {
    case PAC96: return "Pacejka89/96";
    case MF52: return "Magic Formula 5.2";
    case PAC2006: return "Pacejka2006";
    case MF61: return "Magic Formula 6.1";
    default: return "<PacejkaModel?" "?>";  // split: "??>" would read as a trigraph
  }
}

const char *KPacejka::GetModelName() const { return GetModelName(model); }

float &KPacejka::Pac96(int i) {
  return reinterpret_cast<float *>(reinterpret_cast<char *>(this) + offsetof(KPacejka, a0))[i];
}

// ---- Live parameter set -------------------------------------------------------------

void KPacejka::CreateSystem(PSystem *parent) {
  if (system) {
    qwarn("kpacejka", "KPacejka::CreateSystem", __LINE__, "CreateSystem() called twice");
    return;
  }
  if (!parent) return;
  system = new PSystem(parent, "pacejka");
  struct Bound { const char *name; float *value; };
  const Bound params[] = {
      {"a0", &a0}, {"a1", &a1}, {"a2", &a2}, {"a3", &a3},
      {"b0", &b0}, {"b1", &b1}, {"b2", &b2}, {"b3", &b3},
      {"c0", &c0}, {"c1", &c1}, {"c2", &c2}, {"c3", &c3},
      {"lxal", &lxal}, {"lyka", &lyka},
      {"sa_min", &slipAngleMin}, {"sa_max", &slipAngleMax},
      {"sr_min", &slipRatioMin}, {"sr_max", &slipRatioMax},
      {"camber_min", &camberMin}, {"camber_max", &camberMax},
  };
  for (const Bound &p : params) PSystemParameter(system, p.name, "-", p.value);
  PSystemSignal(system, "side_slip", "deg", &sideSlip);
  PSystemSignal(system, "slip_percentage", "%", &slipPercentage);
  PSystemSignal(system, "camber", "%", &camber);  // "%" for camber is the unit it always had
}
