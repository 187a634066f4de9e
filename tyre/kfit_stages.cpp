// The stages of a fit, in order, and which members each one varies (the
// member table's group, model family and fit bounds decide).
#include "tyre/kfit.h"

#include <algorithm>
#include <cstring>

namespace {

using G = KPacejkaMember;

// Pure slip first, each force before the moment that takes it; the
// combined-slip weightings last, on top of the pure curves they scale.
const KFitStage kFitStages[] = {
    {G::PURE_FX, KCH_FX, false},     {G::PURE_FY, KCH_FY, false},     {G::PURE_MZ, KCH_MZ, false},
    {G::COMBINED_FX, KCH_FX, true},  {G::COMBINED_FY, KCH_FY, true},  {G::COMBINED_MZ, KCH_MZ, true},
};

// The pressure terms, each fitted to the channel it shapes.
const KFitStage kPressureStages[] = {
    {G::PRESSURE, KCH_FX, false}, {G::PRESSURE, KCH_FY, false}, {G::PRESSURE, KCH_MZ, false}};

// The channel a pressure coefficient shapes, by its TIR section.
int PressureChannel(const KPacejkaMember &m) {
  if (!m.tirSection) return -1;
  if (!strcmp(m.tirSection, "longitudinal_coefficients")) return KCH_FX;
  if (!strcmp(m.tirSection, "lateral_coefficients")) return KCH_FY;
  if (!strcmp(m.tirSection, "aligning_coefficients")) return KCH_MZ;
  return -1;
}

}  // namespace

int KFitPressureStagesFor(int model, const KFitStage *stages[], int maxStages) {
  if (KPacejkaFittedMembers(model, G::PRESSURE, nullptr, 0) == 0) return 0;
  int n = 0;
  for (const KFitStage &s : kPressureStages) {
    if (n < maxStages) stages[n] = &s;
    n++;
  }
  return n;
}

std::vector<KFitPressureSetPoint> KFitPressureSetPoints(const KMeasuredData &data) {
  std::vector<double> p;
  for (const KMeasuredPoint &q : data.points)
    if (q.pressure > 0) p.push_back(q.pressure);
  std::sort(p.begin(), p.end());
  std::vector<KFitPressureSetPoint> out;
  size_t first = 0;
  for (size_t i = 1; i <= p.size(); i++) {
    if (i < p.size() && p[i] <= p[first] * 1.02) continue;
    out.push_back({p[first + (i - first) / 2], int(i - first)});  // the cluster's median
    first = i;
  }
  // most points first; of two with as many, the higher pressure (a rig
  // usually adds the lower ones to the nominal)
  std::sort(out.begin(), out.end(), [](const KFitPressureSetPoint &a, const KFitPressureSetPoint &b) {
    return a.points != b.points ? a.points > b.points : a.pressure > b.pressure;
  });
  return out;
}

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
  if (m.group == G::PRESSURE && PressureChannel(m) != s.channel) return false;
  *lo = m.fitMin, *hi = m.fitMax;
  return true;
}
