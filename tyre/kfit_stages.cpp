// The stages of a fit, in order, and which members each one varies (the
// member table's group, model family and fit bounds decide).
#include <cmath>
#include <vector>

#include "tyre/kfit.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>

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

std::string KFitPressureNote(const KFitResult &r, int model) {
  if (r.pressures.empty()) return "";
  char buf[200];
  std::string out = r.pressures.size() == 1 ? "pressure: one set point, " : "pressures: " + std::to_string(r.pressures.size()) + " set points, ";
  for (size_t i = 0; i < r.pressures.size(); i++) {
    snprintf(buf, sizeof buf, "%s%.9g Pa (%d points)", i ? ", " : "", r.pressures[i].pressure, r.pressures[i].points);
    out += buf;
  }
  out += "\n";
  if (r.pressureStages > 0) {
    std::string channels;
    for (int ch = 0; ch < KCH_COUNT; ch++)
      if (r.channel[ch].points) channels += std::string(channels.empty() ? "" : ", ") + KChannelName(ch);
    char at[120] = "";
    if (std::fabs(r.stagePressure - r.nominalPressure) > 0.02 * r.nominalPressure)
      snprintf(at, sizeof at, " (no set point at it: the pure stages took the nearest, %.9g Pa)", r.stagePressure);
    snprintf(buf, sizeof buf, "pressure stages ran (%s) about NOMPRES = %.9g Pa, %s%s", channels.c_str(),
             r.nominalPressure, r.nominalFromStart ? "the start tyre's" : "the pressure with the most points", at);
  } else if (r.pressures.size() < 2) {
    snprintf(buf, sizeof buf, "pressure stages not run: one pressure only");
  } else {
    snprintf(buf, sizeof buf, "pressure stages not run: %s has no pressure terms", KFitModelKey(model));
  }
  return out + buf;
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

// ---- Terms the data cannot tell ------------------------------------------------------

namespace {

// Whether the data holds `field` at two or more values (loads within 2 % of
// each other count as one, angles within 0.001 rad).
bool Varies(const KMeasuredData &data, double KMeasuredPoint::*field, double rel, double abs) {
  if (data.points.empty()) return false;
  const double first = data.points.front().*field;
  for (const KMeasuredPoint &p : data.points)
    if (std::fabs(p.*field - first) > abs + rel * std::fabs(first)) return true;
  return false;
}

// Outputs of `tyre` at the probe points.
std::vector<float> Outputs(const KTyreParams &tyre, const std::vector<KMeasuredPoint> &probes) {
  std::vector<float> out;
  for (const KMeasuredPoint &p : probes) {
    const KTyreResult r = KTyreEvaluate(tyre, {float(p.fz), float(p.kappa), float(p.alpha), float(p.gamma)});
    out.insert(out.end(), {r.Fx, r.Fy, r.Mz});
  }
  return out;
}

bool Differ(const std::vector<float> &a, const std::vector<float> &b) {
  for (size_t i = 0; i < a.size(); i++)
    if (!(std::fabs(a[i] - b[i]) <= 1e-5f * (1.0f + std::fabs(a[i])))) return true;
  return false;
}

// Probe points at loads `loads` and cambers `cambers`, pure and combined slip.
std::vector<KMeasuredPoint> Probes(std::initializer_list<double> loads, std::initializer_list<double> cambers) {
  std::vector<KMeasuredPoint> out;
  for (double fz : loads)
    for (double g : cambers)
      for (double k : {0.0, 0.04, -0.12})
        for (double a : {0.0, 0.03, -0.15}) {
          KMeasuredPoint p;
          p.fz = fz, p.kappa = k, p.alpha = a, p.gamma = g;
          out.push_back(p);
        }
  return out;
}

}  // namespace

void KFitHeldTerms(const KPacejka &start, const KMeasuredData &data, std::vector<KFitResult::Held> *held) {
  held->clear();
  const bool oneCamber = !Varies(data, &KMeasuredPoint::gamma, 0, 0.001);
  const bool magic = start.model != KPacejka::PAC96;
  // Pacejka89/96 has no nominal load: its load terms cannot be told apart
  // this way, and stay fitted
  const bool oneLoad = magic && !Varies(data, &KMeasuredPoint::fz, 0.02, 0);
  if (!oneCamber && !oneLoad) return;
  // A camber term changes no output at zero camber and some at another; a
  // load term (Magic Formula) none at the nominal load and some elsewhere.
  KPacejka *t = new KPacejka;
  KFitCopy(start, t);
  t->slipAngleMin = t->slipRatioMin = t->camberMin = -99.0f;
  t->slipAngleMax = t->slipRatioMax = t->camberMax = 99.0f;
  t->fzMin = 0.0f, t->fzMax = 999999.0f;
  double fz0 = t->fz0;
  if (!magic || fz0 <= 0) {
    fz0 = 0;
    for (const KMeasuredPoint &p : data.points) fz0 += p.fz / double(data.points.size());
  }
  const std::vector<KMeasuredPoint> flat = Probes({0.6 * fz0, fz0, 1.4 * fz0}, {0.0});
  const std::vector<KMeasuredPoint> cambered = Probes({0.6 * fz0, fz0, 1.4 * fz0}, {0.06});
  const std::vector<KMeasuredPoint> nominal = Probes({fz0}, {0.0, 0.06});
  const std::vector<KMeasuredPoint> loaded = Probes({0.6 * fz0, 1.4 * fz0}, {0.0, 0.06});
  const std::vector<float> base[4] = {Outputs(*t, flat), Outputs(*t, cambered), Outputs(*t, nominal),
                                      Outputs(*t, loaded)};
  for (int i = 0; i < kpacejkaMemberCount; i++) {
    const KPacejkaMember &m = kpacejkaMembers[i];
    float lo, hi;
    bool fitted = false;
    for (const KFitStage &s : kFitStages) fitted = fitted || KFitVaries(start.model, s, m, &lo, &hi);
    float *v = fitted ? KPacejkaFloat(*t, m) : nullptr;
    if (!v) continue;
    const float was = *v, step = 0.1f * (hi - lo);
    *v = was + step <= hi ? was + step : was - step;
    const char *why = nullptr;
    if (oneCamber && !Differ(base[0], Outputs(*t, flat)) && Differ(base[1], Outputs(*t, cambered)))
      why = KFIT_HELD_CAMBER;
    else if (oneLoad && !Differ(base[2], Outputs(*t, nominal)) && Differ(base[3], Outputs(*t, loaded)))
      why = KFIT_HELD_LOAD;
    *v = was;
    if (why) held->push_back({m.name, why});
  }
  delete t;
}
