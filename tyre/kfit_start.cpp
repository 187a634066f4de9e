// KFitBuiltinStart: a starting set for each model, from generic shape
// factors and a few quantities read off the data: friction (peak force over
// load), slip stiffness (slope at small slip over load), pneumatic trail
// (moment slope over force slope) and the typical load.
//
// The data is taken in the usual signs (Fy rising and Mz falling with the
// slip angle); KFitTyre mirrors data that points the other way first.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>
#include <vector>

#include "tyre/kfit.h"

namespace {

constexpr double DEG_TO_RAD = 0.017453292519943295;

// Least-squares slope (with intercept) of `y` over `x` for the pure points of
// one slip that lie within `limit` of zero slip.
struct SlopeFit {
  double n = 0, sx = 0, sy = 0, sxx = 0, sxy = 0;
  void Add(double x, double y) { n++, sx += x, sy += y, sxx += x * x, sxy += x * y; }
  bool Get(double *slope) const {
    const double d = n * sxx - sx * sx;
    if (n < 2 || d <= 0) return false;
    *slope = (n * sxy - sx * sy) / d;
    return true;
  }
};

// Shape factor and curvature of a curve.
struct Shape {
  double C, E;
};

// Friction and slip stiffness over the load (see EstimateLoadTrend).
struct LoadTrend {
  double mu0, mu1, k0, k1;
};

// What the start takes from the data; each has a generic fallback.
struct DataFeatures {
  double meanFz = 4000, maxFz = 6000;  // N
  double muX = 1.0, muY = 1.0;         // peak force / load
  double kx = 20.0;                    // dFx/dkappa / Fz
  double ky = 15.0;                    // dFy/dalpha / Fz, per rad
  double trail = 0.03;                 // −dMz/dalpha / dFy/dalpha, m
  double mzPerFz = 0.02;               // peak |Mz| / Fz, m
  bool combined = false;               // points with both slips non-zero
  Shape shape[KCH_COUNT] = {{1.65, 0}, {1.3, 0}, {2.3, 0}};  // C, E of each curve
  double shapeESlope[KCH_COUNT] = {0, 0, 0};  // dE / ((Fz − meanFz) / meanFz), see EstimateESlope
  LoadTrend trend[KCH_COUNT] = {};  // of Fx and Fy, where the data allows
  bool hasTrend[KCH_COUNT] = {false, false, false};
};

// Slopes are read within this slip of zero: the linear part of the curves.
constexpr double SMALL_KAPPA = 0.02, SMALL_ALPHA = 0.035;

// The slope of channel `ch` over the slip `slip` (kappa for Fx, alpha
// otherwise), per newton of load, from the pure points nearest zero slip.
bool SmallSlipSlope(const KMeasuredData &d, int ch, bool perLoad, double *out) {
  const bool lon = ch == KCH_FX;
  auto slip = [lon](const KMeasuredPoint &p) { return lon ? p.kappa : p.alpha; };
  auto pure = [lon](const KMeasuredPoint &p) { return lon ? p.alpha == 0 : p.kappa == 0; };
  double smallest = HUGE_VAL;
  for (const KMeasuredPoint &p : d.points)
    if (pure(p) && slip(p) != 0) smallest = std::min(smallest, std::fabs(slip(p)));
  if (smallest == HUGE_VAL) return false;
  const double limit = std::max(lon ? SMALL_KAPPA : SMALL_ALPHA, 1.5 * smallest);
  SlopeFit f;
  for (const KMeasuredPoint &p : d.points)
    if (pure(p) && std::fabs(slip(p)) <= limit && p.fz > 0)
      f.Add(slip(p), perLoad ? p.force[ch] / p.fz : p.force[ch]);
  return f.Get(out);
}

// The shape factor C and curvature E of one pure-slip curve, read off the
// sweep nearest the mean load at the smallest camber: with D the peak, x_m
// its slip, y_end the value at the largest slip and K the slope at zero,
//   y_end / D = sin(C·π/2)                      (the curve's far end)
//   B·x_m − E·(B·x_m − atan(B·x_m)) = tan(π/(2C))  (its peak), B = K/(C·D).
// Shifts are ignored; this is a start, the fit does the rest.
bool EstimateShape(const KMeasuredData &d, int ch, int usualSign, double meanFz, Shape *out) {
  const bool lon = ch == KCH_FX;
  auto slip = [lon](const KMeasuredPoint &p) { return lon ? p.kappa : p.alpha; };
  auto pure = [lon](const KMeasuredPoint &p) { return lon ? p.alpha == 0 : p.kappa == 0; };
  // 1. the sweep: the load nearest the mean, the smallest camber there
  double fzRef = 0, gRef = HUGE_VAL;
  for (const KMeasuredPoint &p : d.points)
    if (pure(p) && std::fabs(p.fz - meanFz) < std::fabs(fzRef - meanFz)) fzRef = p.fz;
  for (const KMeasuredPoint &p : d.points)
    if (pure(p) && std::fabs(p.fz - fzRef) <= 0.02 * fzRef) gRef = std::min(gRef, std::fabs(p.gamma));
  std::vector<std::pair<double, double>> sweep;  // (slip, value in the rising sign)
  for (const KMeasuredPoint &p : d.points)
    if (pure(p) && std::fabs(p.fz - fzRef) <= 0.02 * fzRef && std::fabs(p.gamma) <= gRef + 0.005)
      sweep.push_back({slip(p), usualSign * p.force[ch]});
  std::sort(sweep.begin(), sweep.end());
  // 2. slope at zero, peak and far end on the positive side
  SlopeFit f;
  double D = 0, xm = 0, xEnd = 0, yEnd = 0;
  const double small = lon ? SMALL_KAPPA : SMALL_ALPHA;
  for (const auto &[x, y] : sweep) {
    if (std::fabs(x) <= small) f.Add(x, y);
    if (x > 0 && y > D) D = y, xm = x;
    if (x > xEnd) xEnd = x, yEnd = y;
  }
  double K;
  if (!f.Get(&K) || K <= 0 || D <= 0 || xm <= 0 || xm >= xEnd) return false;
  // 3. C from the far end, then E from the peak
  const double C = std::clamp(2.0 - 2.0 / M_PI * std::asin(std::clamp(yEnd / D, -1.0, 1.0)), 1.05, 2.8);
  const double u = K / (C * D) * xm;
  if (u <= 0.1) return false;
  const double E = (u - std::tan(M_PI / (2 * C))) / (u - std::atan(u));
  out->C = C;
  out->E = std::clamp(E, -5.0, 0.9);
  return true;
}

// How the curvature E of one curve changes with the load: E read off the
// sweep of each load (EstimateShape at that load) and a straight line
// through them over (Fz − Fz̄)/Fz̄. Curvature that grows with the load is
// common (a truck tyre's runs from 0.2 to past 1 over its load range), and a
// start with a flat E leaves the fit in a minimum where E sits at its cap of
// 1 at the high loads and the load terms of E have no gradient.
bool EstimateESlope(const KMeasuredData &d, int ch, int usualSign, double meanFz, double *slope) {
  const bool lon = ch == KCH_FX;
  std::vector<double> loads;
  for (const KMeasuredPoint &p : d.points)
    if ((lon ? p.alpha == 0 : p.kappa == 0) && p.fz > 0 &&
        std::none_of(loads.begin(), loads.end(), [&](double l) { return std::fabs(p.fz - l) <= 0.02 * l; }))
      loads.push_back(p.fz);
  SlopeFit f;
  for (double fz : loads) {
    Shape sh;
    if (EstimateShape(d, ch, usualSign, fz, &sh)) f.Add((fz - meanFz) / meanFz, sh.E);
  }
  return f.Get(slope);
}

// Friction (peak |force| / load) and slip stiffness (slope / load) of one
// channel as straight lines over the load: a + b·(Fz − Fz̄)/Fz̄ from the pure
// sweeps of each load (loads within 2 % of each other form one group).

bool EstimateLoadTrend(const KMeasuredData &d, int ch, int usualSign, double meanFz, LoadTrend *out) {
  const bool lon = ch == KCH_FX;
  std::vector<const KMeasuredPoint *> pts;
  for (const KMeasuredPoint &p : d.points)
    if ((lon ? p.alpha == 0 : p.kappa == 0) && p.fz > 0) pts.push_back(&p);
  std::sort(pts.begin(), pts.end(), [](auto *a, auto *b) { return a->fz < b->fz; });
  SlopeFit mu, k;
  const double small = lon ? SMALL_KAPPA : SMALL_ALPHA;
  for (size_t i = 0; i < pts.size();) {
    // 1. one load group
    size_t j = i;
    while (j < pts.size() && pts[j]->fz <= pts[i]->fz * 1.02) j++;
    double peak = 0, fz = 0, smallest = HUGE_VAL;
    for (size_t n = i; n < j; n++) {
      const double x = lon ? pts[n]->kappa : pts[n]->alpha;
      peak = std::max(peak, std::fabs(pts[n]->force[ch]) / pts[n]->fz);
      fz += pts[n]->fz / double(j - i);
      if (x != 0) smallest = std::min(smallest, std::fabs(x));
    }
    // 2. its slope at small slip, then one point of each trend
    SlopeFit s;
    for (size_t n = i; n < j; n++) {
      const double x = lon ? pts[n]->kappa : pts[n]->alpha;
      if (std::fabs(x) <= std::max(small, 1.5 * smallest)) s.Add(x, usualSign * pts[n]->force[ch] / pts[n]->fz);
    }
    double slope;
    const double dfz = (fz - meanFz) / meanFz;
    if (peak > 0) mu.Add(dfz, peak);
    if (s.Get(&slope) && slope > 0) k.Add(dfz, slope);
    i = j;
  }
  // 3. the lines (a single load: flat)
  auto line = [](const SlopeFit &f, double *a, double *b) {
    if (f.n == 0) return false;
    if (!f.Get(b)) *b = 0;
    *a = (f.sy - *b * f.sx) / f.n;
    return true;
  };
  return line(mu, &out->mu0, &out->mu1) && line(k, &out->k0, &out->k1);
}

DataFeatures Features(const KMeasuredData &d) {
  DataFeatures f;
  if (d.points.empty()) return f;
  double sum = 0, maxFz = 0, peak[KCH_COUNT] = {0, 0, 0};
  for (const KMeasuredPoint &p : d.points) {
    sum += p.fz;
    maxFz = std::max(maxFz, p.fz);
    f.combined = f.combined || (p.kappa != 0 && p.alpha != 0);
    if (p.fz <= 0) continue;
    // peaks of pure slip only: under combined slip Mz takes an Fx term
    for (int ch = 0; ch < KCH_COUNT; ch++)
      if ((ch == KCH_FX ? p.alpha : p.kappa) == 0)
        peak[ch] = std::max(peak[ch], std::fabs(p.force[ch]) / p.fz);
  }
  if (sum > 0) f.meanFz = sum / double(d.points.size()), f.maxFz = maxFz;
  if (d.has[KCH_FX] && peak[KCH_FX] > 0.05) f.muX = peak[KCH_FX];
  if (d.has[KCH_FY] && peak[KCH_FY] > 0.05) f.muY = peak[KCH_FY];
  if (d.has[KCH_MZ] && peak[KCH_MZ] > 0) f.mzPerFz = peak[KCH_MZ];
  double s;
  if (d.has[KCH_FX] && SmallSlipSlope(d, KCH_FX, true, &s) && s > 1) f.kx = s;
  if (d.has[KCH_FY] && SmallSlipSlope(d, KCH_FY, true, &s) && s > 1) f.ky = s;
  for (int ch = 0; ch < KCH_COUNT; ch++) {
    Shape sh;
    if (d.has[ch] && EstimateShape(d, ch, KFitUsualSign(ch), f.meanFz, &sh)) f.shape[ch] = sh;
  }
  for (int ch : {KCH_FX, KCH_FY}) {
    double slope;
    if (d.has[ch] && EstimateESlope(d, ch, KFitUsualSign(ch), f.meanFz, &slope)) f.shapeESlope[ch] = slope;
  }
  for (int ch : {KCH_FX, KCH_FY}) {
    LoadTrend t;
    if (d.has[ch] && EstimateLoadTrend(d, ch, KFitUsualSign(ch), f.meanFz, &t) && t.mu0 > 0.05 && t.k0 > 1)
      f.trend[ch] = t, f.hasTrend[ch] = true;
  }
  double mz, fy;
  if (d.has[KCH_MZ] && d.has[KCH_FY] && SmallSlipSlope(d, KCH_MZ, false, &mz) &&
      SmallSlipSlope(d, KCH_FY, false, &fy) && fy > 0 && -mz / fy > 0.002)
    f.trail = std::min(-mz / fy, 0.3);
  return f;
}

// Pacejka89/96: load in kN, slip in percent, angles in degrees. With the
// quadratic and exponential load terms at 0: D = b2·Fz, BCD = b4·Fz (per
// percent), and alike for Fy (BCD = a3·sin(2·atan(Fz/a4)), per degree) and
// Mz (D = c2·Fz, BCD = c4·Fz; both negative for the usual sign).
void StartPac96(const DataFeatures &f, KPacejka *t) {
  const double fz = f.meanFz * 0.001, fzMax = f.maxFz * 0.001;
  const double csDeg = f.ky * f.meanFz * DEG_TO_RAD;  // N per degree at the mean load
  t->b0 = float(f.shape[KCH_FX].C);
  t->b8 = float(f.shape[KCH_FX].E - f.shapeESlope[KCH_FX]);  // E = b7·Fz + b8
  t->b7 = float(f.shapeESlope[KCH_FX] / fz);
  t->b2 = float(1000 * f.muX);
  t->b4 = float(10 * f.kx);  // kx·Fz·1000 N per unit slip = 10·kx·Fz per percent
  if (f.hasTrend[KCH_FX]) {  // D/Fz = b1·Fz + b2, BCD/Fz = b3·Fz + b4 (per percent)
    const LoadTrend &l = f.trend[KCH_FX];
    t->b1 = float(1000 * l.mu1 / fz), t->b2 = float(1000 * (l.mu0 - l.mu1));
    t->b3 = float(10 * l.k1 / fz), t->b4 = float(10 * (l.k0 - l.k1));
  }
  t->a0 = float(f.shape[KCH_FY].C);
  t->a7 = float(f.shape[KCH_FY].E - f.shapeESlope[KCH_FY]);  // E = a6·Fz + a7
  t->a6 = float(f.shapeESlope[KCH_FY] / fz);
  t->a2 = float(1000 * f.muY);
  if (f.hasTrend[KCH_FY]) {
    const LoadTrend &l = f.trend[KCH_FY];
    t->a1 = float(1000 * l.mu1 / fz), t->a2 = float(1000 * (l.mu0 - l.mu1));
  }
  t->a4 = float(std::max(1.5 * fzMax, 1.0));
  t->a3 = float(csDeg / std::sin(2 * std::atan(fz / double(t->a4))));
  t->c0 = float(f.shape[KCH_MZ].C);
  t->c9 = float(f.shape[KCH_MZ].E);
  t->c2 = float(-1000 * f.mzPerFz);
  t->c4 = float(-f.trail * csDeg / fz);
}

// Magic Formula: loads relative to a nominal load at the data's mean.
void StartMagic(const DataFeatures &f, KPacejka *t) {
  t->fz0 = float(f.meanFz);
  t->r0 = 0.3f;
  // longitudinal
  t->pcx1 = float(f.shape[KCH_FX].C);
  t->pex1 = float(f.shape[KCH_FX].E);
  t->pex2 = float(f.shapeESlope[KCH_FX]);
  t->pdx1 = float(f.muX);
  t->pkx1 = float(f.kx);
  if (f.hasTrend[KCH_FX]) {  // the nominal load is the mean: dfz is the trends' variable
    const LoadTrend &l = f.trend[KCH_FX];
    t->pdx1 = float(l.mu0), t->pdx2 = float(l.mu1), t->pkx1 = float(l.k0), t->pkx2 = float(l.k1);
  }
  // lateral: Ky(Fz0) = pky1·Fz0·sin(2·atan(1/pky2)); negative for the usual sign
  t->pcy1 = float(f.shape[KCH_FY].C);
  t->pey1 = float(f.shape[KCH_FY].E);
  t->pey2 = float(f.shapeESlope[KCH_FY]);
  t->pdy1 = float(f.muY);
  t->pky2 = 2.0f;
  t->pky1 = float(-f.ky / std::sin(2 * std::atan(0.5)));
  if (f.hasTrend[KCH_FY]) t->pdy1 = float(f.trend[KCH_FY].mu0), t->pdy2 = float(f.trend[KCH_FY].mu1);
  // aligning: trail Dt = qdz1·r0 at the nominal load; the residual torque starts at 0
  t->qbz1 = 10.0f;
  t->qcz1 = 1.2f;
  t->qdz1 = float(std::clamp(f.trail / double(t->r0), 0.01, 0.5));
  t->qbz9 = 10.0f;
  // combined slip: a generic passenger-car weighting (each force falls off
  // as the other slip grows), the start of the combined stages when the data
  // has combined points and what the tyre keeps when it has none; no
  // combined-slip shift of Fy (rvy1 ... rvy3 at 0)
  if (f.combined) {
    t->rbx1 = 10.0f, t->rbx2 = 8.0f, t->rcx1 = 1.0f;
    t->rby1 = 10.0f, t->rby2 = 8.0f, t->rcy1 = 1.0f;
  } else {
    t->rbx1 = 13.0f, t->rbx2 = 10.0f, t->rcx1 = 1.0f;
    t->rby1 = 10.0f, t->rby2 = 8.0f, t->rcy1 = 1.05f;
  }
  t->rvy4 = 10.0f, t->rvy5 = 1.9f, t->rvy6 = 10.0f;
}

}  // namespace

void KFitBuiltinStart(int model, const KMeasuredData &data, KPacejka *out) {
  out->ResetCoefficients();
  out->model = model;
  out->flags = 0;
  out->fyShiftScale = 1.0f;
  const DataFeatures f = Features(data);
  if (model == KPacejka::PAC96) StartPac96(f, out);
  else StartMagic(f, out);
}

// ---- The second start of the moment and Fx: per load, then the load trends ---------------
//
// Each load of the pure lateral sweeps at the smallest camber is fitted on
// its own with the moment's load and camber terms at 0, so that its base
// coefficients are that load's values; then polynomials over the load
// through the per-load values give the load terms. Several starts per load,
// from what the data shows:
//   Magic Formula  Mz = −t·Fy + Mzr: the pneumatic trail
//                  t = Dt·cos(Ct·atan(Bt·α − Et(...))) times the (already
//                  fitted) lateral force, plus the residual torque
//                  Mzr = Dr·cos(atan(Br·α)). The trail is read off the data
//                  as −Mz/Fy near zero slip, the residual torque as what is
//                  left of Mz there, and Bt from where the trail part crosses
//                  zero. Load variable dfz = (Fz − Fz0)/Fz0.
//   Pacejka89/96   Mz = D·sin(C·atan(B·α − E(...))) + Sv, like a force: D
//                  from the peak, B·C·D from the slope at zero. Load
//                  variable Fz in kN; D and B·C·D are per kN of load.
// The longitudinal force of either family takes the same course over the
// pure longitudinal sweeps (D from the peak, B·C·D from the slope, C and E
// from the sweep's shape).

namespace {

float &Member(KPacejka *t, const char *name) { return *KPacejkaFloat(*t, *KPacejkaFindMember(name)); }

// Weighted least squares polynomial of degree `deg` (0 ... 2) through (x, y): c[0..2].
// Each point counts `w[i]` times.
void Poly(const std::vector<double> &x, const std::vector<double> &y, const std::vector<double> &w, int deg,
          double c[3]) {
  c[0] = c[1] = c[2] = 0;
  const int n = int(x.size());
  deg = std::min(deg, n - 1);
  if (n == 0) return;
  // normal equations, Gaussian elimination (at most 3 × 3)
  double a[3][4] = {};
  for (int i = 0; i < n; i++) {
    const double p[3] = {1, x[i], x[i] * x[i]};
    for (int r = 0; r <= deg; r++) {
      for (int k = 0; k <= deg; k++) a[r][k] += w[i] * p[r] * p[k];
      a[r][3] += w[i] * p[r] * y[i];
    }
  }
  for (int r = 0; r <= deg; r++) {
    if (std::fabs(a[r][r]) < 1e-300) return;
    for (int q = r + 1; q <= deg; q++) {
      const double f = a[q][r] / a[r][r];
      for (int k = r; k < 4; k++) a[q][k] -= f * a[r][k];
    }
  }
  for (int r = deg; r >= 0; r--) {
    double v = a[r][3];
    for (int k = r + 1; k <= deg; k++) v -= a[r][k] * c[k];
    c[r] = v / a[r][r];
  }
}

// One base coefficient fitted per load and the members its per-load values
// become: trend[0] + trend[1]·x + trend[2]·x² (null: not that power).
struct PerLoadTerm {
  const char *base;
  const char *trend[3];
  bool even = false;  // the curve depends on |base| only (while its load and camber terms are 0)
};

constexpr int MAX_TERMS = 8;
// Starting values of the base coefficients (in the plan's order) for one
// load's points; up to `max` of them, returns how many.
typedef int (*GuessFn)(const std::vector<const KMeasuredPoint *> &pts, const KPacejka &t, float starts[][MAX_TERMS],
                       int max);

struct PerLoadPlan {
  int channel;
  bool pac96;
  std::vector<const char *> zeroed;  // load and camber terms, 0 in the per-load fits
  std::vector<PerLoadTerm> terms;
  GuessFn guess;
};

// Slope and value at zero of Mz and Fy over the slip angle near zero.
struct SmallSlip {
  double mzSlope, mz0, fySlope, fy0;
};
bool ReadSmallSlip(const std::vector<const KMeasuredPoint *> &pts, SmallSlip *out) {
  SlopeFit mz, fy;
  for (const KMeasuredPoint *p : pts)
    if (std::fabs(p->alpha) <= SMALL_ALPHA) mz.Add(p->alpha, p->force[KCH_MZ]), fy.Add(p->alpha, p->force[KCH_FY]);
  if (!mz.Get(&out->mzSlope) || !fy.Get(&out->fySlope)) return false;
  out->mz0 = (mz.sy - out->mzSlope * mz.sx) / mz.n;
  out->fy0 = (fy.sy - out->fySlope * fy.sx) / fy.n;
  return true;
}

// Magic Formula: qbz1, qcz1, qdz1, qez1, qhz1, qdz6, qbz9.
int GuessMagicMz(const std::vector<const KMeasuredPoint *> &pts, const KPacejka &t, float starts[][MAX_TERMS],
                 int max) {
  SmallSlip ss;
  if (!ReadSmallSlip(pts, &ss) || ss.fySlope <= 0) return 0;
  const double fz = pts.front()->fz, r0 = t.r0, fz0 = t.fz0;
  const double trail = std::clamp(-ss.mzSlope / ss.fySlope, 0.002, 0.3);
  const double residual = ss.mz0 + trail * ss.fy0;
  // the smallest positive slip angle where the trail part turns over
  std::vector<std::pair<double, double>> pos;
  for (const KMeasuredPoint *p : pts)
    if (p->alpha > 0) pos.push_back({p->alpha, p->force[KCH_MZ] - residual});
  std::sort(pos.begin(), pos.end());
  double cross = 0;
  for (size_t i = 1; i < pos.size() && cross == 0; i++)
    if (pos[i - 1].second < 0 && pos[i].second >= 0)
      cross = pos[i - 1].first +
              (pos[i].first - pos[i - 1].first) * -pos[i - 1].second / (pos[i].second - pos[i - 1].second);
  const double shapes[][2] = {{1.2, 0.0}, {1.5, -1.0}, {1.05, 0.5}, {1.8, -2.0}};
  int n = 0;
  for (const auto &sh : shapes) {
    if (n >= max) break;
    const double bt = cross > 0 ? std::tan(M_PI / (2 * sh[0])) / cross : 10.0;
    const float v[] = {float(std::clamp(bt, 1.0, 40.0)), float(sh[0]),
                       float(std::clamp(trail * fz0 / (r0 * fz), 0.01, 0.9)), float(sh[1]), 0.0f,
                       float(std::clamp(residual / (fz * r0), -0.09, 0.09)), 10.0f};
    std::copy(std::begin(v), std::end(v), starts[n++]);
  }
  return n;
}

// Pacejka89/96: c0, c2, c4, c9, c13, c17 (usual sign: D and B·C·D negative).
int GuessPac96Mz(const std::vector<const KMeasuredPoint *> &pts, const KPacejka &, float starts[][MAX_TERMS],
                 int max) {
  SmallSlip ss;
  if (!ReadSmallSlip(pts, &ss)) return 0;
  const double fzk = pts.front()->fz * 0.001;
  double peak = 0;
  for (const KMeasuredPoint *p : pts) peak = std::max(peak, std::fabs(p->force[KCH_MZ]));
  const double slopeDeg = std::min(ss.mzSlope * DEG_TO_RAD, -1e-3);
  const double shapes[][2] = {{2.3, 0.0}, {2.0, -1.0}, {2.6, 0.5}, {1.8, 0.9}};
  int n = 0;
  for (const auto &sh : shapes) {
    if (n >= max) break;
    const float v[] = {float(sh[0]), float(-peak / fzk), float(slopeDeg / fzk), float(sh[1]), 0.0f, float(ss.mz0)};
    std::copy(std::begin(v), std::end(v), starts[n++]);
  }
  return n;
}

// Magic Formula longitudinal force: pcx1, pdx1, pkx1, pex1, pex4, phx1, pvx1,
// from the load's peak, slope at zero and shape (EstimateShape).
int GuessMagicFx(const std::vector<const KMeasuredPoint *> &pts, const KPacejka &, float starts[][MAX_TERMS],
                 int max) {
  KMeasuredData one;
  one.has[KCH_FX] = true;
  for (const KMeasuredPoint *p : pts) one.points.push_back(*p);
  const double fz = pts.front()->fz;
  double peak = 0, slope;
  for (const KMeasuredPoint *p : pts) peak = std::max(peak, std::fabs(p->force[KCH_FX]));
  if (!SmallSlipSlope(one, KCH_FX, true, &slope) || slope <= 0 || peak <= 0) return 0;
  Shape sh = {1.65, 0.0};
  EstimateShape(one, KCH_FX, 1, fz, &sh);
  const double shapes[][2] = {{sh.C, sh.E}, {1.65, 0.0}, {1.4, -1.0}, {1.9, 0.5}};
  int n = 0;
  for (const auto &c : shapes) {
    if (n >= max) break;
    const float v[] = {float(c[0]), float(peak / fz), float(slope), float(c[1]), 0.0f, 0.0f, 0.0f};
    std::copy(std::begin(v), std::end(v), starts[n++]);
  }
  return n;
}

// Pacejka89/96 longitudinal force: b0, b2, b4, b8, b10, b12, from the
// load's peak, slope at zero and shape; D and B·C·D per kN of load, the
// slope per percent of slip.
int GuessPac96Fx(const std::vector<const KMeasuredPoint *> &pts, const KPacejka &, float starts[][MAX_TERMS],
                 int max) {
  KMeasuredData one;
  one.has[KCH_FX] = true;
  for (const KMeasuredPoint *p : pts) one.points.push_back(*p);
  const double fzk = pts.front()->fz * 0.001;
  double peak = 0, slope;
  for (const KMeasuredPoint *p : pts) peak = std::max(peak, std::fabs(p->force[KCH_FX]));
  if (!SmallSlipSlope(one, KCH_FX, false, &slope) || slope <= 0 || peak <= 0) return 0;
  Shape sh = {1.65, 0.0};
  EstimateShape(one, KCH_FX, 1, pts.front()->fz, &sh);
  const double shapes[][2] = {{sh.C, sh.E}, {1.65, 0.0}, {1.4, -1.0}, {1.9, 0.5}};
  int n = 0;
  for (const auto &c : shapes) {
    if (n >= max) break;
    const float v[] = {float(c[0]), float(peak / fzk), float(0.01 * slope / fzk), float(c[1]), 0.0f, 0.0f};
    std::copy(std::begin(v), std::end(v), starts[n++]);
  }
  return n;
}

const PerLoadPlan kPac96Fx = {
    KCH_FX,
    true,
    {"b1", "b3", "b5", "b6", "b7", "b9", "b11"},
    {{"b0", {"b0", nullptr, nullptr}},
     {"b2", {"b2", "b1", nullptr}},
     {"b4", {"b4", "b3", nullptr}},
     {"b8", {"b8", "b7", "b6"}},
     {"b10", {"b10", "b9", nullptr}},
     {"b12", {"b12", "b11", nullptr}}},
    GuessPac96Fx,
};

const PerLoadPlan kMagicFx = {
    KCH_FX,
    false,
    {"pdx2", "pdx3", "pex2", "pex3", "pkx2", "pkx3", "phx2", "pvx2"},
    {{"pcx1", {"pcx1", nullptr, nullptr}},
     {"pdx1", {"pdx1", "pdx2", nullptr}},
     {"pkx1", {"pkx1", "pkx2", nullptr}},
     {"pex1", {"pex1", "pex2", "pex3"}},
     {"pex4", {"pex4", nullptr, nullptr}},
     {"phx1", {"phx1", "phx2", nullptr}},
     {"pvx1", {"pvx1", "pvx2", nullptr}}},
    GuessMagicFx,
};

const PerLoadPlan kMagicMz = {
    KCH_MZ,
    false,
    {"qbz2", "qbz3", "qbz4", "qbz5", "qbz10", "qdz2", "qdz3", "qdz4", "qdz7", "qdz8", "qdz9", "qez2", "qez3", "qez4",
     "qez5", "qhz2", "qhz3", "qhz4"},
    {{"qbz1", {"qbz1", "qbz2", "qbz3"}},
     {"qcz1", {"qcz1", nullptr, nullptr}},
     {"qdz1", {"qdz1", "qdz2", nullptr}},
     {"qez1", {"qez1", "qez2", nullptr}},  // a parabola through three noisy loads swings between them
     {"qhz1", {"qhz1", "qhz2", nullptr}},
     {"qdz6", {"qdz6", "qdz7", nullptr}},
     {"qbz9", {"qbz9", nullptr, nullptr}, true}},
    GuessMagicMz,
};

const PerLoadPlan kPac96Mz = {
    KCH_MZ,
    true,
    {"c1", "c3", "c5", "c6", "c7", "c8", "c10", "c11", "c12", "c14", "c15", "c16"},
    {{"c0", {"c0", nullptr, nullptr}},
     {"c2", {"c2", "c1", nullptr}},
     {"c4", {"c4", "c3", nullptr}},
     {"c9", {"c9", "c8", "c7"}},
     {"c13", {"c13", "c12", nullptr}},
     {"c17", {"c17", "c16", nullptr}}},
    GuessPac96Mz,
};

// One load fitted from each of the plan's starts, the results best first.
// With `shared` (every load after the first), the terms without a load
// trend keep the first load's value and the first load's result is one more
// start.
struct LoadFit {
  double rms;
  float v[MAX_TERMS];
};
std::vector<LoadFit> FitAtLoad(const PerLoadPlan &plan, const std::vector<const KMeasuredPoint *> &pts, bool shared,
                               const float previous[MAX_TERMS], KPacejka *t) {
  float starts[5][MAX_TERMS];
  int n = plan.guess(pts, *t, starts, 4);
  std::vector<const char *> varied;
  for (size_t j = 0; j < plan.terms.size(); j++) {
    const bool fixed = shared && !plan.terms[j].trend[1];
    if (!fixed) varied.push_back(plan.terms[j].base);
    for (int k = 0; k < n && fixed; k++) starts[k][j] = previous[j];
  }
  if (shared) std::copy(previous, previous + MAX_TERMS, starts[n++]);
  std::vector<LoadFit> out;
  for (int k = 0; k < n; k++) {
    for (size_t j = 0; j < plan.terms.size(); j++) Member(t, plan.terms[j].base) = starts[k][j];
    LoadFit f = {KFitMembers(t, pts, plan.channel, varied, 100), {}};
    if (!(f.rms < HUGE_VAL)) continue;
    for (size_t j = 0; j < plan.terms.size(); j++)
      f.v[j] = plan.terms[j].even ? std::fabs(Member(t, plan.terms[j].base)) : Member(t, plan.terms[j].base);
    out.push_back(f);
  }
  std::stable_sort(out.begin(), out.end(), [](const LoadFit &a, const LoadFit &b) { return a.rms < b.rms; });
  return out;
}

// One load's sweep can leave the terms shared by all loads open: at a high
// load a moment of shape factor 2 with curvature 0 and one of 3 with
// curvature 1 fit its points equally well, and only the other loads tell
// them apart. So the first load's results within NEAR_TIE of its best that
// differ in a shared term each start a chain down the loads (at most
// MAX_CHAINS), and the chain with the least summed square residual wins.
constexpr double NEAR_TIE = 1.1;
constexpr size_t MAX_CHAINS = 3;

// Whether `a` and `b` differ in a term without a load trend (by more than
// a hundredth of its range).
bool SharedDiffer(const PerLoadPlan &plan, const LoadFit &a, const LoadFit &b) {
  for (size_t j = 0; j < plan.terms.size(); j++) {
    const KPacejkaMember *m = KPacejkaFindMember(plan.terms[j].base);
    if (!plan.terms[j].trend[1] && std::fabs(a.v[j] - b.v[j]) > 0.01 * (m->fitMax - m->fitMin)) return true;
  }
  return false;
}

constexpr size_t MAX_LOAD_POINTS = 200;
constexpr double TOLD_APART = 10;

bool StartPerLoad(const PerLoadPlan &plan, const KMeasuredData &d, KPacejka *tyre) {
  // 1. the pure-slip points of the channel at the smallest camber, by load
  //    (the moment takes the lateral force)
  const bool lon = plan.channel == KCH_FX;
  if (!d.has[plan.channel] || (plan.channel == KCH_MZ && !d.has[KCH_FY])) return false;
  auto pure = [lon](const KMeasuredPoint &p) { return lon ? p.alpha == 0 : p.kappa == 0; };
  double gMin = HUGE_VAL;
  for (const KMeasuredPoint &p : d.points)
    if (pure(p)) gMin = std::min(gMin, std::fabs(p.gamma));
  std::vector<const KMeasuredPoint *> pts;
  for (const KMeasuredPoint &p : d.points)
    if (pure(p) && p.fz > 0 && std::fabs(p.gamma) <= gMin + 0.001) pts.push_back(&p);
  std::sort(pts.begin(), pts.end(), [](auto *a, auto *b) { return a->fz < b->fz; });
  std::vector<std::vector<const KMeasuredPoint *>> groups;
  for (size_t i = 0; i < pts.size();) {
    size_t j = i;
    while (j < pts.size() && pts[j]->fz <= pts[i]->fz * 1.02) j++;
    if (j - i >= 8) {
      // a sweep's shape needs no more than a few hundred points: dense data
      // is thinned evenly over the slip
      std::vector<const KMeasuredPoint *> g(pts.begin() + long(i), pts.begin() + long(j));
      if (g.size() > MAX_LOAD_POINTS) {
        std::sort(g.begin(), g.end(), [lon](auto *a, auto *b) { return lon ? a->kappa < b->kappa : a->alpha < b->alpha; });
        std::vector<const KMeasuredPoint *> thin;
        for (size_t k = 0; k < MAX_LOAD_POINTS; k++) thin.push_back(g[k * g.size() / MAX_LOAD_POINTS]);
        g.swap(thin);
      }
      groups.push_back(std::move(g));
    }
    i = j;
  }
  if (groups.empty()) return false;
  // 2. a copy with the load and camber terms at 0, fitted per load: the
  //    largest load first (the moment stands farthest above the noise there),
  //    then down from it, each load starting from the one before; a chain
  //    down the loads from each of the largest load's near-ties
  KPacejka *t = new KPacejka;
  KFitCopy(*tyre, t);
  for (const char *n : plan.zeroed) Member(t, n) = 0.0f;
  std::vector<LoadFit> first;
  size_t g0 = groups.size();
  while (first.empty() && g0-- > 0) first = FitAtLoad(plan, groups[g0], false, nullptr, t);
  if (first.empty()) {
    delete t;
    return false;
  }
  std::vector<LoadFit> chains = {first.front()};
  for (const LoadFit &f : first)
    if (chains.size() < MAX_CHAINS && f.rms <= NEAR_TIE * first.front().rms &&
        std::all_of(chains.begin(), chains.end(), [&](const LoadFit &c) { return SharedDiffer(plan, f, c); }))
      chains.push_back(f);
  auto loadX = [&](size_t g) {
    const double fz = groups[g].front()->fz;
    return plan.pac96 ? 0.001 * fz : (fz - t->fz0) / t->fz0;
  };
  std::vector<double> x, rms;
  std::vector<std::vector<double>> values;
  double bestTotal = HUGE_VAL;
  for (const LoadFit &c : chains) {
    std::vector<double> cx = {loadX(g0)}, cr = {c.rms};
    std::vector<std::vector<double>> cv(plan.terms.size());
    for (size_t k = 0; k < plan.terms.size(); k++) cv[k].push_back(c.v[k]);
    double total = c.rms * c.rms;
    float previous[MAX_TERMS];
    std::copy(c.v, c.v + MAX_TERMS, previous);
    for (size_t g = g0; g-- > 0;) {
      const std::vector<LoadFit> fits = FitAtLoad(plan, groups[g], true, previous, t);
      if (fits.empty()) continue;
      total += fits.front().rms * fits.front().rms;
      cx.push_back(loadX(g));
      cr.push_back(fits.front().rms);
      for (size_t k = 0; k < plan.terms.size(); k++) cv[k].push_back(fits.front().v[k]);
      std::copy(fits.front().v, fits.front().v + MAX_TERMS, previous);
    }
    if (total < bestTotal) bestTotal = total, x.swap(cx), values.swap(cv), rms.swap(cr);
  }
  delete t;
  if (x.empty()) return false;
  // 3. the load trends through the per-load values, each load weighted by
  //    how closely its fit follows its points (1 / RMS², the RMS over the
  //    load's own peak): at a light load the moment may stand no higher than
  //    the noise, and its values tell nothing. Loads more than
  //    TOLD_APART times the best one's RMS do not count towards the degree a
  //    trend can take (three loads, one of them noise, make a line, not a
  //    parabola).
  std::vector<double> weight;
  double most = 0;
  for (double r : rms) weight.push_back(1.0 / std::max(r * r, 1e-12)), most = std::max(most, weight.back());
  const int told = int(std::count_if(weight.begin(), weight.end(),
                                     [&](double w) { return w * TOLD_APART * TOLD_APART >= most; }));
  for (size_t k = 0; k < plan.terms.size(); k++) {
    const PerLoadTerm &term = plan.terms[k];
    const int deg = std::min(term.trend[2] ? 2 : term.trend[1] ? 1 : 0, std::max(told - 1, 0));
    double c[3];
    Poly(x, values[k], weight, deg, c);
    for (int e = 0; e < 3; e++) {
      if (!term.trend[e]) continue;
      const KPacejkaMember *m = KPacejkaFindMember(term.trend[e]);
      Member(tyre, term.trend[e]) = e <= deg ? float(std::clamp(c[e], double(m->fitMin), double(m->fitMax))) : 0.0f;
    }
  }
  for (const char *n : plan.zeroed) {
    bool trend = false;
    for (const PerLoadTerm &term : plan.terms)
      for (const char *t : term.trend) trend = trend || (t && !strcmp(t, n));
    if (!trend) Member(tyre, n) = 0.0f;  // camber terms: the stage fits them from 0
  }
  return true;
}

}  // namespace

bool KFitStageStart(const KMeasuredData &data, const KFitStage &stage, KPacejka *tyre) {
  const bool pac96 = tyre->model == KPacejka::PAC96;
  if (stage.group == KPacejkaMember::PURE_MZ) return StartPerLoad(pac96 ? kPac96Mz : kMagicMz, data, tyre);
  if (stage.group == KPacejkaMember::PURE_FX) return StartPerLoad(pac96 ? kPac96Fx : kMagicFx, data, tyre);
  return false;
}
