// KPacejka: construction, coefficient reset, operating-point setters, the
// small accessors and the live parameter set.
#include "tyre/kpacejka.h"

#include <cmath>
#include <cstddef>
#include <cstring>
#include <initializer_list>

#include "tyre/kpacejka_point.h"
#include "tyre/psystem.h"
#include "diag/qdebug.h"

using kpacejka::Clamp;
using kpacejka::DEG_TO_RAD;

// Sets the contiguous run of floats from member `first` to member `last`
// (kpacejka_names.cpp checks the runs against the member table).
#define FILL(first, last, value) \
  Fill(p, offsetof(KTyreParams, first), offsetof(KTyreParams, last), value)
static void Fill(KTyreParams *tyre, size_t first, size_t last, float value) {
  char *base = reinterpret_cast<char *>(tyre);
  for (size_t at = first; at <= last; at += sizeof(float)) memcpy(base + at, &value, sizeof value);
}

static_assert(offsetof(KTyreParams, c17) - offsetof(KTyreParams, a0) == (KTyreParams::PAC96_COUNT - 1) * sizeof(float),
              "a0 ... c17 are one run of floats");
static_assert(offsetof(KTyreParams, lres) - offsetof(KTyreParams, lfz0) == (KTyreParams::SCALING_COUNT - 1) * sizeof(float),
              "lfz0 ... lres are one run of floats");

// model = 0, the coefficients 0, the factors 1 (ResetCoefficients).
static void ResetCoefficientsOf(KTyreParams *p) {
  p->model = KTyreParams::PAC96;
  FILL(a0, c17, 0.0f);
  FILL(lfz0, lres, 1.0f);
  FILL(pcx1, ssz4, 0.0f);
  FILL(zeta0, zeta8, 1.0f);
  FILL(ppx1, qpz2, 0.0f);
  p->turnSlipSpare = 0.0f;
  FILL(tyreSpare3[0], tyreSpare3[2], 0.0f);
  p->lmp = p->lkyc = p->lt = 1.0f;
}

KTyreParams KTyreDefaults() {
  KTyreParams p{};
  ResetCoefficientsOf(&p);
  p.flags = 0;
  p.mbelt = 0.0f;
  p.r0 = 0.3f;
  p.fz0 = 1500.0f;
  p.longv = 30.0f;
  p.tyreSpare = 1.0f;
  p.fyShiftScale = 1.0f;
  p.slipAngleMin = p.slipRatioMin = p.camberMin = -99.0f;
  p.slipAngleMax = p.slipRatioMax = p.camberMax = 99.0f;
  p.fzMin = 0.0f;
  p.fzMax = 999999.0f;
  return p;
}

// ---- Construction ----------------------------------------------------------------

KPacejka::KPacejka() : KTyreParams(KTyreDefaults()) {
  camber = sideSlip = slipPercentage = Fz = 0.0f;
  FzPeak = 0.0f;
  Bx = Cx = By = Cy = 0.0f;
  Dx = Dy = 0.0f;  // left to the first evaluation; zero so nothing reads garbage
  Fx = Fy = Mz = 0.0f;
  resultSpare = 0.0f;
  longStiffness = corneringStiffness = peakFx = peakFy = 0.0f;
  for (float &v : resultSpares) v = 0.0f;
  system = nullptr;
  pressure = 0.0f;
}

KPacejka::~KPacejka() { delete system; }

void KPacejka::ResetCoefficients() { ResetCoefficientsOf(this); }

// ---- Operating point ---------------------------------------------------------------

void KPacejka::ReportBadCamber() {
  QERR_IN("KPacejka::SetCamber", "Trying to set not a NaN to camber");
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

float &KPacejka::Pac96(int i) { return *KPacejkaFloat(*this, *KPacejkaPac96Member(i)); }

// ---- Live parameter set -------------------------------------------------------------

void KPacejka::CreateSystem(PSystem *parent) {
  if (system) {
    QWARN("CreateSystem() called twice");
    return;
  }
  if (!parent) return;
  system = new PSystem(parent, "pacejka");
  // Parameters: the first four coefficients of each Pacejka89/96 force (a,
  // b, c in that order), the two combined-slip weights, then the slip-angle,
  // slip-ratio and camber range ends under their short live names (the load
  // range is not registered).
  const KPacejkaMember::Group forces[] = {KPacejkaMember::PURE_FY, KPacejkaMember::PURE_FX,
                                         KPacejkaMember::PURE_MZ};
  for (KPacejkaMember::Group g : forces) {
    int n = 0;
    for (int i = 0; i < kpacejkaMemberCount && n < 4; i++) {
      const KPacejkaMember &m = kpacejkaMembers[i];
      if (m.family != KPacejkaMember::PAC96_FAMILY || m.group != g) continue;
      PSystemParameter(system, m.name, "-", KPacejkaFloat(*this, m));
      n++;
    }
  }
  for (const char *name : {"lxal", "lyka"})
    PSystemParameter(system, name, "-", KPacejkaFloat(*this, *KPacejkaFindMember(name)));
  static const char *const rangeNames[] = {"sa_min", "sa_max", "sr_min", "sr_max", "camber_min", "camber_max"};
  int r = 0;
  for (int i = 0; i < kpacejkaMemberCount && r < 6; i++)
    if (kpacejkaMembers[i].group == KPacejkaMember::RANGES)
      PSystemParameter(system, rangeNames[r++], "-", KPacejkaFloat(*this, kpacejkaMembers[i]));
  PSystemSignal(system, "side_slip", "deg", &sideSlip);
  PSystemSignal(system, "slip_percentage", "%", &slipPercentage);
  PSystemSignal(system, "camber", "%", &camber);  // "%" for camber is the unit it always had
}
