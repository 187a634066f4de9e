// The stages of a fit, in order, and which members each one varies (the
// member table's group, model family and fit bounds decide).
#include "tyre/kfit.h"

namespace {

using G = KPacejkaMember;

// Pure slip first, each force before the moment that takes it; the
// combined-slip weightings last, on top of the pure curves they scale.
const KFitStage kFitStages[] = {
    {G::PURE_FX, KCH_FX, false},     {G::PURE_FY, KCH_FY, false},     {G::PURE_MZ, KCH_MZ, false},
    {G::COMBINED_FX, KCH_FX, true},  {G::COMBINED_FY, KCH_FY, true},  {G::COMBINED_MZ, KCH_MZ, true},
};

}  // namespace

int KFitStagesFor(int model, const KFitStage *stages[], int maxStages) {
  int n = 0;
  for (const KFitStage &s : kFitStages) {
    // a stage with nothing to fit for this model does not run (Pacejka89/96
    // has no combined-slip terms)
    if (KPacejkaFittedMembers(model, s.group, nullptr, 0) == 0) continue;
    if (n < maxStages) stages[n] = &s;
    n++;
  }
  return n;
}

bool KFitVaries(int model, const KFitStage &s, const KPacejkaMember &m, float *lo, float *hi) {
  if (m.group != s.group || !KPacejkaIsFitted(m) || !KPacejkaModelReads(m, model)) return false;
  *lo = m.fitMin, *hi = m.fitMax;
  return true;
}
