// Mapping a run's signs onto our axes. Ours are those of ISO 8855 wheel
// axes (x forward, y left, z up): a positive load, and with the usual Magic
// Formula tyre Fy falling and Mz rising as the slip angle grows. SAE axes
// (y right, z down) are ours turned half round about x: load, slip angle,
// lateral force and aligning moment change sign; slip ratio, camber, Fx
// and Mx keep theirs.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <utility>
#include <vector>

#include "tyre/krun.h"

namespace {

// Which channels a half turn about x changes.
const bool kSaeFlips[KRUN_CHANNELS] = {
    /*time*/ false, /*fz*/ true,  /*kappa*/ false, /*alpha*/ true,    /*gamma*/ false, /*fx*/ false,
    /*fy*/ true,    /*mz*/ true,  /*mx*/ false,    /*pressure*/ false, /*speed*/ false};

// The least-squares slope of `channel` over the slip angle where both slips
// are small; 0 when there are too few such rows.
double SmallSlipSlope(const KRunData &run, int channel) {
  const KRunColumn &y = run.channel[channel], &a = run.channel[KRUN_ALPHA], &k = run.channel[KRUN_KAPPA];
  if (!y.present || !a.present) return 0;
  double sa = 0, sy = 0, saa = 0, say = 0;
  int n = 0;
  for (size_t i = 0; i < run.rows; i++) {
    if (std::fabs(a.v[i]) > 0.03 || (k.present && std::fabs(k.v[i]) > 0.01)) continue;
    sa += a.v[i], sy += y.v[i], saa += a.v[i] * a.v[i], say += a.v[i] * y.v[i];
    n++;
  }
  if (n < 10) return 0;
  const double d = n * saa - sa * sa;
  return d > 0 ? (n * say - sa * sy) / d : 0;
}

// A slope with its t value (slope over its standard error) and the rows it
// stands on (below 10: no line, slope 0).
struct SmallSlipLine {
  double slope = 0, t = 0;
  int n = 0;
};

// The slope over the same rows fitted within set points: the rows grouped
// by load (bins of 2 % of the median load) and camber (bins of 0.2°), each
// group about its own mean, so the offsets camber, load and conicity give
// each set point do not count as scatter about the common slope. What the
// check of Fy against Mz weighs.
SmallSlipLine SmallSlipWithin(const KRunData &run, int channel) {
  SmallSlipLine line;
  const KRunColumn &y = run.channel[channel], &a = run.channel[KRUN_ALPHA], &k = run.channel[KRUN_KAPPA];
  const KRunColumn &fz = run.channel[KRUN_FZ], &g = run.channel[KRUN_GAMMA];
  if (!y.present || !a.present) return line;
  std::vector<size_t> rows;
  std::vector<double> loads;
  for (size_t i = 0; i < run.rows; i++)
    if (std::fabs(a.v[i]) <= 0.03 && !(k.present && std::fabs(k.v[i]) > 0.01)) rows.push_back(i);
  line.n = int(rows.size());
  if (rows.size() < 10) return line;
  for (size_t i : rows) loads.push_back(std::fabs(fz.present ? fz.v[i] : 0.0));
  std::nth_element(loads.begin(), loads.begin() + long(loads.size() / 2), loads.end());
  const double fzBin = std::max(1.0, 0.02 * loads[loads.size() / 2]), gBin = 0.2 * M_PI / 180;
  struct Sums {
    double n = 0, a = 0, y = 0, aa = 0, ay = 0, yy = 0;
  };
  std::map<std::pair<long, long>, Sums> groups;
  auto bin = [](double v, double width) { return std::lround(std::clamp(v / width, -1e15, 1e15)); };
  for (size_t i : rows) {
    Sums &s = groups[{fz.present ? bin(fz.v[i], fzBin) : 0, g.present ? bin(g.v[i], gBin) : 0}];
    s.n++, s.a += a.v[i], s.y += y.v[i], s.aa += a.v[i] * a.v[i], s.ay += a.v[i] * y.v[i], s.yy += y.v[i] * y.v[i];
  }
  double sxx = 0, sxy = 0, syy = 0;
  for (const auto &[key, s] : groups) {
    sxx += s.aa - s.a * s.a / s.n;
    sxy += s.ay - s.a * s.y / s.n;
    syy += s.yy - s.y * s.y / s.n;
  }
  const double dof = double(rows.size()) - double(groups.size()) - 1;
  if (!(sxx > 0) || dof < 8) return line;
  line.slope = sxy / sxx;
  const double se = std::sqrt(std::max(0.0, syy - sxy * sxy / sxx) / dof / sxx);
  line.t = se > 0 ? line.slope / se : line.slope == 0 ? 0 : HUGE_VAL * (line.slope > 0 ? 1 : -1);
  return line;
}

// How many standard errors a slope must stand from zero to count: far
// beyond what noise gives, with room for the rows of a time series not
// being independent.
constexpr double kClearSlopeT = 10;

}  // namespace

bool KRunAxesSlopesTurned(double fySlope, double fyT, double mzSlope, double mzT) {
  return std::fabs(fyT) >= kClearSlopeT && std::fabs(mzT) >= kClearSlopeT && (fySlope > 0) == (mzSlope > 0);
}

bool KRunAxesFlips(int axes, int channel) { return axes == KAXES_SAE && kSaeFlips[channel]; }

void KRunMapAxes(KRunData *run, int axes) {
  std::string why;
  auto negative = [](const KRunData &r) {
    size_t n = 0;
    for (double fz : r.channel[KRUN_FZ].v) n += fz < 0;
    return n;
  };
  if (axes == KAXES_AUTO) {
    why = negative(*run) * 2 > run->rows ? "axes auto: the loads are negative, so SAE (fz, alpha, fy, mz turned round)"
                                         : "axes auto: the loads are positive, so ISO (signs kept)";
  } else {
    why = axes == KAXES_SAE ? "axes sae: fz, alpha, fy, mz turned round" : "axes iso: signs kept";
  }
  const bool autoAxes = axes == KAXES_AUTO;
  if (autoAxes) axes = 2 * negative(*run) > run->rows ? KAXES_SAE : KAXES_ISO;
  for (int c = 0; c < KRUN_CHANNELS; c++)
    if (KRunAxesFlips(axes, c) && run->channel[c].present)
      for (double &v : run->channel[c].v) v = -v;
  char buf[400];
  // auto: with a positive trail Fy and Mz slope opposite ways over small
  // slip angles in any of the axis systems; the same way means one of them
  // was logged turned round, and Mz is turned back
  if (autoAxes && run->channel[KRUN_FY].present && run->channel[KRUN_MZ].present && run->channel[KRUN_ALPHA].present) {
    const SmallSlipLine fy = SmallSlipWithin(*run, KRUN_FY), mz = SmallSlipWithin(*run, KRUN_MZ);
    if (fy.n >= 10 && mz.n >= 10 && KRunAxesSlopesTurned(fy.slope, fy.t, mz.slope, mz.t)) {
      for (double &v : run->channel[KRUN_MZ].v) v = -v;
      run->mzTurned = true;
      snprintf(buf, sizeof buf,
               "; Fy and Mz both %s with the slip angle (within set points Fy %.4g N/rad, t = %.3g; Mz %.4g N·m/rad, t = %.3g; "
               "%d rows at small slip), which a positive trail never gives: Mz turned round",
               fy.slope > 0 ? "rise" : "fall", fy.slope, fy.t, mz.slope, mz.t, mz.n);
      why += buf;
    } else if (fy.n < 10 || mz.n < 10 || std::fabs(fy.t) < kClearSlopeT || std::fabs(mz.t) < kClearSlopeT) {
      if (fy.n < 10 || mz.n < 10)
        snprintf(buf, sizeof buf, "; too few rows at small slip (%d) to check Fy against Mz: Mz kept", std::min(fy.n, mz.n));
      else
        snprintf(buf, sizeof buf,
                 "; the slopes of Fy and Mz are too flat or noisy to check one against the other (t = %.3g, %.3g; "
                 "%g needed): Mz kept",
                 fy.t, mz.t, kClearSlopeT);
      why += buf;
    }
  }
  for (int c : {int(KRUN_FY), int(KRUN_MZ)}) {
    const double s = SmallSlipSlope(*run, c);
    if (s == 0) continue;
    snprintf(buf, sizeof buf, "; %s %s with the slip angle (%.4g %s/rad)", c == KRUN_FY ? "Fy" : "Mz",
             s > 0 ? "rises" : "falls", s, c == KRUN_FY ? "N" : "N·m");
    why += buf;
  }
  run->notes.push_back(why);
}
