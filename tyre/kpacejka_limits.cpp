// KPacejka::Calculate: dispatch by model, then the friction limits and the
// NaN guard that every model's results pass through.
#include <cmath>
#include <cstdint>
#include <cstring>

#include "tyre/kpacejka.h"
#include "diag/qdebug.h"

// Process-wide once-flags of the NaN reports (Fx, Fy, Mz), shared by every
// tyre: a bad coefficient set would otherwise flood the log once per sample.
static bool reportFxNaN = true;
static bool reportFyNaN = true;
static bool reportMzNaN = true;

void KPacejka::RearmNaNReports() { reportFxNaN = reportFyNaN = reportMzNaN = true; }

// NaN or ±infinity: all exponent bits set.
static bool IsBad(float v) {
  uint32_t bits;
  memcpy(&bits, &v, sizeof bits);
  return (bits & 0x7f800000u) == 0x7f800000u;
}

static float Limit(float v, float L) {
  if (v < -L) return -L;
  if (v > L) return L;
  return v;
}

void KPacejka::Calculate() {
  // 1. dispatch; every number without a routine of its own runs Magic Formula 5.2
  switch (model) {
    case PAC96: CalculatePac96(); break;
    case PAC2006: CalculatePac2006(); break;
    case MF61: CalculateMF61(); break;
    default: CalculateMF52(); break;
  }
  ApplyLimits();
}

void KPacejka::ApplyLimits() {
  // 2. no force beyond twice the nominal friction force. Only the MF models
  //    keep their friction in pdx1/pdy1; every other model number (Pacejka2006
  //    included) reads the Pacejka89/96 b2/a2.
  const bool mf = model == MF52 || model == MF61;
  const float muX = mf ? pdx1 : b2 * 0.001f;
  const float muY = mf ? pdy1 : a2 * 0.001f;
  const float Lx = fabsf(muX * 2.0f * Fz * 1000.0f);
  const float Ly = fabsf(muY * 2.0f * Fz * 1000.0f);
  Fx = Limit(Fx, Lx);
  Fy = Limit(Fy, Ly);

  // 3. a NaN or infinity would poison every curve and sum it enters: zero it,
  //    and say so once per process and quantity
  struct Guard { float *value; bool *armed; const char *label; };
  const Guard guards[] = {
      {&Fx, &reportFxNaN, "Fx"}, {&Fy, &reportFyNaN, "Fy"}, {&Mz, &reportMzNaN, "Mz"}};
  for (const Guard &g : guards) {
    if (!IsBad(*g.value)) continue;
    *g.value = 0.0f;
    if (!*g.armed) continue;
    qerr("kpacejka", "KPacejka::Calculate", __LINE__,
         "%s NaN detected in Pacejka; camber %f, sideSlip %f, slipPerc %f, Fz %f", g.label,
         double(camber), double(sideSlip), double(slipPercentage), double(Fz));
    qerr("kpacejka", "KPacejka::Calculate", __LINE__, "Only reporting the NaN once.");
    *g.armed = false;
  }
}
