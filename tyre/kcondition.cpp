// Conditioning a rig run into fitting points; the steps are described in
// tyre/kcondition.h.
//
//   [1] set points   [2] segments and sweeps   [3] relaxation
//   [4] spikes       [5] points                [6] summary
//   [7] set points of tidy points
#include "tyre/kcondition.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>

#include "diag/qdebug.h"

namespace {

const char *const kKindNames[] = {"slip angle", "slip ratio", "combined"};
const char *const kDropNames[KDROP_COUNT] = {"warm-up (before the first set point)", "transition between set points",
                                             "set point held too briefly", "spike", "thinned"};

// The clustered operating variables and the spread below which one is held.
const int kClustered[] = {KRUN_FZ, KRUN_GAMMA, KRUN_PRESSURE, KRUN_SPEED};
enum { CLUSTERED = 4 };
const double kHeld[CLUSTERED] = {50.0, 0.0035, 5000.0, 0.5};  // N, rad (0.2°), Pa, m/s

// Below these a slip counts as zero.
const double kAlphaZero = 0.0044;  // 0.25°
const double kKappaZero = 0.004;

// A set point is keyed by its cluster index of each variable, in this base
// (more than the clusters 200 bins can hold).
const long kKeyBase = 256;

double Median(std::vector<double> v) {
  if (v.empty()) return 0;
  const size_t m = v.size() / 2;
  std::nth_element(v.begin(), v.begin() + long(m), v.end());
  return v[m];
}

// ---- [1] set points ------------------------------------------------------------------

// Cluster index per row (-1: in no cluster) and the cluster medians. Values
// are binned over their range; bins holding at least 2 % of the fullest
// bin are dense, and dense bins with at most one sparse bin between them
// form a cluster.
void Cluster(const std::vector<double> &v, double held, std::vector<int> *id, std::vector<double> *centre) {
  const size_t n = v.size();
  id->assign(n, 0);
  centre->clear();
  const double vmin = *std::min_element(v.begin(), v.end()), vmax = *std::max_element(v.begin(), v.end());
  if (vmax - vmin <= held) {
    centre->push_back(Median(v));
    return;
  }
  const int bins = 200;
  const double w = (vmax - vmin) / bins;
  std::vector<size_t> count(bins, 0);
  auto bin = [&](double x) { return std::min(bins - 1, int((x - vmin) / w)); };
  for (double x : v) count[size_t(bin(x))]++;
  const size_t fullest = *std::max_element(count.begin(), count.end());
  const size_t dense = std::max<size_t>(2, fullest / 50);
  std::vector<int> binCluster(bins, -1);
  int clusters = 0, lastDense = -10;
  for (int b = 0; b < bins; b++) {
    if (count[size_t(b)] < dense) continue;
    if (b - lastDense > 2) clusters++;
    else
      for (int k = lastDense + 1; k < b; k++) binCluster[size_t(k)] = clusters - 1;
    binCluster[size_t(b)] = clusters - 1;
    lastDense = b;
  }
  // each cluster reaches half its width further on both sides (at least two
  // bins), for the tails of the noise, short of its neighbours
  std::vector<int> lo, hi;
  lo.resize(static_cast<size_t>(clusters), bins);
  hi.resize(static_cast<size_t>(clusters), -1);
  for (int b = 0; b < bins; b++)
    if (binCluster[size_t(b)] >= 0) {
      const size_t k = size_t(binCluster[size_t(b)]);
      lo[k] = std::min(lo[k], b), hi[k] = std::max(hi[k], b);
    }
  for (size_t k = 0; k < size_t(clusters); k++) {
    const int reach = std::max(2, (hi[k] - lo[k] + 1) / 2);
    for (int b = lo[k] - 1; b >= std::max(0, lo[k] - reach) && binCluster[size_t(b)] < 0; b--)
      binCluster[size_t(b)] = int(k);
    for (int b = hi[k] + 1; b <= std::min(bins - 1, hi[k] + reach) && binCluster[size_t(b)] < 0; b++)
      binCluster[size_t(b)] = int(k);
  }
  std::vector<std::vector<double>> members(static_cast<size_t>(clusters));
  for (size_t i = 0; i < n; i++) {
    (*id)[i] = binCluster[size_t(bin(v[i]))];
    if ((*id)[i] >= 0) members[size_t((*id)[i])].push_back(v[i]);
  }
  for (auto &m : members) centre->push_back(Median(m));
}

// ---- [2] sweeps ------------------------------------------------------------------------

int RowKind(double alpha, double kappa) {
  const bool a = std::fabs(alpha) > kAlphaZero, k = std::fabs(kappa) > kKappaZero;
  return a && k ? KSWEEP_COMBINED : a ? KSWEEP_ALPHA : k ? KSWEEP_KAPPA : -1;
}

struct Piece {
  size_t first, last;  // rows, inclusive
  int kind;
  size_t count[3];
};

// ---- [3] relaxation ------------------------------------------------------------------

// The slip x at time t (linear between rows first..last, held beyond).
double SlipAt(const std::vector<double> &time, const std::vector<double> &x, size_t first, size_t last, double t,
              size_t *hint) {
  if (t <= time[first]) return x[first];
  if (t >= time[last]) return x[last];
  size_t i = std::max(*hint, first);
  while (i + 1 <= last && time[i + 1] < t) i++;
  while (i > first && time[i] > t) i--;
  *hint = i;
  const double dt = time[i + 1] - time[i];
  const double f = dt > 0 ? (t - time[i]) / dt : 0;
  return x[i] + f * (x[i + 1] - x[i]);
}

// The mismatch of the rising and falling branches when the slip is taken
// `tau` earlier: the force/load binned over the common slip range, the
// squared difference of the two branches' bin means, per bin with both.
double Mismatch(const std::vector<double> &time, const std::vector<double> &x, const std::vector<double> &y,
                const std::vector<int> &dir, size_t first, size_t last, double tau) {
  const int bins = 48;
  double lo = 1e300, hi = -1e300;
  std::vector<double> xs(last - first + 1);
  size_t hint = first;
  for (size_t i = first; i <= last; i++) {
    xs[i - first] = SlipAt(time, x, first, last, time[i] - tau, &hint);
    lo = std::min(lo, xs[i - first]);
    hi = std::max(hi, xs[i - first]);
  }
  if (!(hi > lo)) return 0;
  double sum[2][bins] = {}, n[2][bins] = {};
  for (size_t i = first; i <= last; i++) {
    if (!dir[i]) continue;
    const int b = std::min(bins - 1, int((xs[i - first] - lo) / (hi - lo) * bins));
    const int s = dir[i] > 0;
    sum[s][b] += y[i];
    n[s][b] += 1;
  }
  double cost = 0, used = 0;
  for (int b = 0; b < bins; b++) {
    if (n[0][b] < 1 || n[1][b] < 1) continue;
    const double d = sum[0][b] / n[0][b] - sum[1][b] / n[1][b];
    cost += d * d;
    used += 1;
  }
  return used >= 4 ? cost / used : -1;
}

// The delay in [0, tauMax] that minimises the mismatch: a coarse scan, then
// golden sections around the best step. -1 when the branches do not overlap.
double EstimateLag(const std::vector<double> &time, const std::vector<double> &x, const std::vector<double> &y,
                   const std::vector<int> &dir, size_t first, size_t last, double tauMax) {
  const int steps = 24;
  double best = -1, bestCost = 1e300;
  for (int s = 0; s <= steps; s++) {
    const double tau = tauMax * s / steps;
    const double c = Mismatch(time, x, y, dir, first, last, tau);
    if (c < 0) return -1;
    if (c < bestCost) bestCost = c, best = tau;
  }
  double a = std::max(0.0, best - tauMax / steps), b = std::min(tauMax, best + tauMax / steps);
  const double g = 0.6180339887498949;
  for (int it = 0; it < 20; it++) {
    const double c1 = b - g * (b - a), c2 = a + g * (b - a);
    if (Mismatch(time, x, y, dir, first, last, c1) < Mismatch(time, x, y, dir, first, last, c2)) b = c2;
    else a = c1;
  }
  return 0.5 * (a + b);
}

}  // namespace

const char *KSweepKindName(int kind) { return kind >= 0 && kind < 3 ? kKindNames[kind] : "?"; }
const char *KDropReasonName(int reason) { return reason >= 0 && reason < KDROP_COUNT ? kDropNames[reason] : "?"; }

bool KConditionRun(const KRunData &run, const KConditionOptions &options, KConditioned *out) {
  *out = KConditioned();
  const size_t n = run.rows;
  out->rows = n;
  auto col = [&run, n](int c) {
    return run.channel[c].present ? run.channel[c].v : std::vector<double>(n, 0.0);
  };
  const std::vector<double> time = col(KRUN_TIME), fz = col(KRUN_FZ), alpha = col(KRUN_ALPHA),
                            kappa = col(KRUN_KAPPA);
  std::vector<int> drop(n, -1);  // KDropReason per row, -1 kept

  // 1. set points: the tuple of cluster indices of each row
  std::vector<int> tuple(n, 0);
  std::vector<std::vector<double>> centres(CLUSTERED);
  {
    std::vector<int> id;
    std::vector<long> key(n, 0);
    for (int k = 0; k < CLUSTERED; k++) {
      if (!run.channel[kClustered[k]].present || n == 0) {
        centres[size_t(k)].assign(1, 0.0);
        id.assign(n, 0);
      } else {
        Cluster(run.channel[kClustered[k]].v, k == 0 ? std::max(kHeld[0], 0.01 * std::fabs(Median(fz))) : kHeld[k],
                &id, &centres[size_t(k)]);
      }
      for (size_t i = 0; i < n; i++) key[i] = id[i] < 0 || key[i] < 0 ? -1 : key[i] * kKeyBase + id[i];
      // the warm-up: everything before the run first reaches its main speed
      // (the speed held for the most rows)
      if (kClustered[k] == KRUN_SPEED && centres[size_t(k)].size() > 1) {
        std::vector<size_t> rows(centres[size_t(k)].size(), 0);
        for (int c : id)
          if (c >= 0) rows[size_t(c)]++;
        const int main = int(std::max_element(rows.begin(), rows.end()) - rows.begin());
        for (size_t i = 0; i < n && id[i] != main; i++) key[i] = -2;
      }
    }
    std::map<long, int> seen;  // key -> set point
    for (size_t i = 0; i < n; i++) {
      if (key[i] < 0) {
        tuple[i] = int(key[i]);
        continue;
      }
      auto it = seen.find(key[i]);
      if (it != seen.end()) {
        tuple[i] = it->second;
      } else {
        tuple[i] = int(seen.size());
        seen[key[i]] = tuple[i];
        KSetPoint sp;
        long k = key[i];
        double v[CLUSTERED];
        for (int c = CLUSTERED - 1; c >= 0; c--) {
          v[c] = centres[size_t(c)][size_t(k % kKeyBase)];
          k /= kKeyBase;
        }
        sp.fz = v[0], sp.gamma = v[1], sp.pressure = v[2], sp.speed = v[3];
        out->setPoints.push_back(sp);
      }
    }
  }
  // 2. segments: runs at one set point; before the first long one, warm-up
  struct Segment {
    size_t first, last;
    int setPoint;
  };
  std::vector<Segment> segments;
  bool started = false;
  // a short table (not a time series) has no brief set points to drop
  const size_t minSegment = std::min(size_t(std::max(options.minSegment, 1)), std::max<size_t>(1, n / 50));
  for (size_t i = 0; i < n;) {
    size_t j = i;
    while (j + 1 < n && tuple[j + 1] == tuple[i]) j++;
    if (tuple[i] < 0) {
      for (size_t r = i; r <= j; r++) drop[r] = started && tuple[i] == -1 ? KDROP_TRANSITION : KDROP_WARMUP;
    } else if (j - i + 1 < minSegment) {
      for (size_t r = i; r <= j; r++) drop[r] = started ? KDROP_SHORT : KDROP_WARMUP;
    } else {
      segments.push_back({i, j, tuple[i]});
      started = true;
    }
    i = j + 1;
  }
  // 3. sweeps: pieces of one row kind, short pieces joined to their neighbours
  for (const Segment &s : segments) {
    std::vector<Piece> pieces;
    for (size_t i = s.first; i <= s.last; i++) {
      const int k = RowKind(alpha[i], kappa[i]);
      if (pieces.empty() || (k >= 0 && pieces.back().kind >= 0 && k != pieces.back().kind)) {
        pieces.push_back({i, i, k, {0, 0, 0}});
      } else {
        pieces.back().last = i;
        if (pieces.back().kind < 0) pieces.back().kind = k;
      }
      if (k >= 0) pieces.back().count[k]++;
    }
    std::vector<Piece> joined;
    // a time series crosses zero slip in a few rows; a table (no time) has
    // short sweeps of its own
    const size_t shortPiece = run.timeFromRows ? 3 : 12;
    for (const Piece &p : pieces) {
      if (!joined.empty() && (p.last - p.first + 1 < shortPiece || joined.back().last - joined.back().first + 1 < shortPiece)) {
        Piece &q = joined.back();
        q.last = p.last;
        for (int k = 0; k < 3; k++) q.count[k] += p.count[k];
        continue;
      }
      joined.push_back(p);
    }
    for (Piece &p : joined) {
      KSweep w;
      w.setPoint = s.setPoint;
      w.firstRow = p.first;
      w.lastRow = p.last;
      w.kind = int(std::max_element(p.count, p.count + 3) - p.count);
      if (p.count[KSWEEP_COMBINED] * 4 > p.last - p.first + 1) w.kind = KSWEEP_COMBINED;
      out->sweeps.push_back(w);
    }
  }
  // 4. relaxation: the delay of each sweep from its branches (a run with
  // no time has none)
  const bool relax = options.relax && !run.timeFromRows;
  std::vector<double> alphaOut = alpha, kappaOut = kappa;
  {
    std::vector<int> dir(n, 0);
    std::vector<double> y(n, 0.0);
    std::vector<double> lags;
    for (KSweep &w : out->sweeps) {
      // the swept slip: the one that moves more, each against its scale
      double amin = 1e300, amax = -1e300, kmin = 1e300, kmax = -1e300;
      for (size_t i = w.firstRow; i <= w.lastRow; i++) {
        amin = std::min(amin, alpha[i]), amax = std::max(amax, alpha[i]);
        kmin = std::min(kmin, kappa[i]), kmax = std::max(kmax, kappa[i]);
      }
      const bool sweptAlpha = (amax - amin) / 0.1 >= (kmax - kmin) / 0.1;
      const std::vector<double> &x = sweptAlpha ? alpha : kappa;
      w.sweptAlpha = sweptAlpha;
      w.slipMin = sweptAlpha ? amin : kmin;
      w.slipMax = sweptAlpha ? amax : kmax;
      int ych = sweptAlpha ? (run.channel[KRUN_FY].present ? KRUN_FY : KRUN_MZ) : KRUN_FX;
      if (!run.channel[ych].present) ych = run.channel[KRUN_FY].present ? KRUN_FY : run.channel[KRUN_FX].present ? KRUN_FX : KRUN_MZ;
      for (size_t i = w.firstRow; i <= w.lastRow; i++)
        y[i] = run.channel[ych].v[i] / std::max(1.0, std::fabs(fz[i]));
      // branches: the sign of the slip's change over a few rows
      const size_t h = 2;
      int last = 0;
      w.branches = 0;
      // a slip held still only jitters: moves under a third of the sweep's
      // usual move are none
      std::vector<double> moves;
      for (size_t i = w.firstRow + h; i + h <= w.lastRow; i++) moves.push_back(std::fabs(x[i + h] - x[i - h]));
      std::sort(moves.begin(), moves.end());
      const double still = moves.empty() ? 0 : moves[moves.size() * 3 / 4] / 3;
      for (size_t i = w.firstRow; i <= w.lastRow; i++) {
        const size_t a = i >= w.firstRow + h ? i - h : w.firstRow, b = std::min(w.lastRow, i + h);
        const double dx = x[b] - x[a];
        dir[i] = dx > still ? 1 : dx < -still ? -1 : 0;
        if (dir[i] && dir[i] != last) w.branches++, last = dir[i];
      }
      if (!relax || w.branches < 2) continue;
      const double span = time[w.lastRow] - time[w.firstRow];
      const double tau = EstimateLag(time, x, y, dir, w.firstRow, w.lastRow, std::min(1.0, span / 8));
      if (tau < 0) continue;
      w.lag = tau;
      w.lagEstimated = true;
      lags.push_back(tau);
    }
    out->medianLag = Median(lags);
    if (relax)
      for (KSweep &w : out->sweeps) {
        if (!w.lagEstimated) w.lag = out->medianLag;
        size_t hint = w.firstRow;
        for (size_t i = w.firstRow; i <= w.lastRow; i++)
          alphaOut[i] = SlipAt(time, alpha, w.firstRow, w.lastRow, time[i] - w.lag, &hint);
        hint = w.firstRow;
        for (size_t i = w.firstRow; i <= w.lastRow; i++)
          kappaOut[i] = SlipAt(time, kappa, w.firstRow, w.lastRow, time[i] - w.lag, &hint);
      }
  }
  // 5. spikes: a point that stands out from both neighbours the same way,
  // by more than eight times the sweep's scatter and 5 % of the peak (in a
  // time series only: a table's neighbours need not be close)
  const int forceCh[KCH_COUNT] = {KRUN_FX, KRUN_FY, KRUN_MZ};
  for (int ch = 0; ch < KCH_COUNT; ch++) {
    if (!run.channel[forceCh[ch]].present || run.timeFromRows) continue;
    const std::vector<double> &f = run.channel[forceCh[ch]].v;
    double peak = 0;
    for (double v : f) peak = std::max(peak, std::fabs(v));
    for (const KSweep &w : out->sweeps) {
      if (w.lastRow - w.firstRow < 8) continue;
      std::vector<double> bend;  // the second difference, which a ramp does not have
      for (size_t i = w.firstRow + 1; i < w.lastRow; i++) bend.push_back(std::fabs(f[i] - 0.5 * (f[i - 1] + f[i + 1])));
      const double limit = std::max(8 * 1.4826 * Median(bend), 0.05 * peak);
      for (size_t i = w.firstRow + 1; i < w.lastRow; i++) {
        const double up = f[i] - f[i - 1], down = f[i] - f[i + 1];
        if (up * down > 0 && std::fabs(f[i] - 0.5 * (f[i - 1] + f[i + 1])) > limit && drop[i] < 0) drop[i] = KDROP_SPIKE;
      }
    }
  }
  // 6. thinning, then the points
  for (size_t s = 0; s < out->sweeps.size(); s++) {
    KSweep &w = out->sweeps[s];
    size_t kept = 0;
    for (size_t i = w.firstRow; i <= w.lastRow; i++) kept += drop[i] < 0;
    const size_t stride = options.thin > 0 && kept > size_t(options.thin) ? (kept + size_t(options.thin) - 1) / size_t(options.thin) : 1;
    size_t k = 0;
    for (size_t i = w.firstRow; i <= w.lastRow; i++) {
      if (drop[i] >= 0) continue;
      if (k++ % stride) {
        drop[i] = KDROP_THINNED;
        continue;
      }
      KMeasuredPoint p;
      p.fz = fz[i];
      p.alpha = alphaOut[i];
      p.kappa = kappaOut[i];
      // the slip a pure sweep holds at zero is zero: what the rig logs there
      // is its noise and offset
      if (w.kind == KSWEEP_ALPHA && std::fabs(p.kappa) <= kKappaZero) p.kappa = 0;
      if (w.kind == KSWEEP_KAPPA && std::fabs(p.alpha) <= kAlphaZero) p.alpha = 0;
      p.gamma = run.channel[KRUN_GAMMA].present ? run.channel[KRUN_GAMMA].v[i] : 0;
      for (int ch = 0; ch < KCH_COUNT; ch++)
        p.force[ch] = run.channel[forceCh[ch]].present ? run.channel[forceCh[ch]].v[i] : 0;
      if (run.channel[KRUN_PRESSURE].present) p.pressure = out->setPoints[size_t(w.setPoint)].pressure;
      out->data.points.push_back(p);
      out->pressure.push_back(run.channel[KRUN_PRESSURE].present ? run.channel[KRUN_PRESSURE].v[i] : 0);
      out->speed.push_back(run.channel[KRUN_SPEED].present ? run.channel[KRUN_SPEED].v[i] : 0);
      out->setPoint.push_back(w.setPoint);
      out->sweep.push_back(int(s));
      out->setPoints[size_t(w.setPoint)].points++;
      w.points++;
    }
  }
  // rows in segments but in no sweep cannot happen; rows dropped are counted once
  for (size_t i = 0; i < n; i++)
    if (drop[i] >= 0) out->dropped[drop[i]]++;
  for (int ch = 0; ch < KCH_COUNT; ch++) out->data.has[ch] = run.channel[forceCh[ch]].present;
  if (out->data.points.empty()) {
    out->data.error = run.fileName + ": no points left after conditioning (" + std::to_string(n) +
                      " rows, none at a steady set point)";
    if (!options.quiet) QERR_IN("KConditionRun", "%s", out->data.error.c_str());
    return false;
  }
  return true;
}

// ---- [6] summary -----------------------------------------------------------------------

std::string KConditionSummary(const KRunData &run, const KConditioned &c) {
  std::string s;
  char buf[512];
  snprintf(buf, sizeof buf, "%s: %s, %zu rows\n", run.fileName.c_str(), run.format.c_str(), run.rows);
  s += buf;
  s += "channels:\n";
  for (int ch = 0; ch < KRUN_CHANNELS; ch++) {
    const KRunColumn &k = run.channel[ch];
    if (!k.present) continue;
    snprintf(buf, sizeof buf, "  %-9s %-12s %s\n", KRunChannelKey(ch), k.name.c_str(),
             k.unit.empty() ? (std::string("(") + KRunSiUnit(ch) + ", no unit given)").c_str() : k.unit.c_str());
    s += buf;
  }
  if (!run.ignored.empty()) {
    s += "ignored columns:";
    for (const std::string &n : run.ignored) s += " " + n;
    s += "\n";
  }
  for (const std::string &n : run.notes) s += n + "\n";
  snprintf(buf, sizeof buf, "set points: %zu\n", c.setPoints.size());
  s += buf;
  s += "   #  load N       camber deg  pressure kPa  speed km/h  points\n";
  for (size_t i = 0; i < c.setPoints.size(); i++) {
    const KSetPoint &p = c.setPoints[i];
    snprintf(buf, sizeof buf, "  %2zu  %-11.6g  %-10.4g  %-12.5g  %-10.4g  %zu\n", i + 1, p.fz, p.gamma * 180 / M_PI,
             p.pressure / 1000, p.speed * 3.6, p.points);
    s += buf;
  }
  size_t kinds[3] = {};
  for (const KSweep &w : c.sweeps) kinds[w.kind]++;
  snprintf(buf, sizeof buf, "sweeps: %zu (%zu slip angle, %zu slip ratio, %zu combined); relaxation delay %.4g s (median)\n",
           c.sweeps.size(), kinds[0], kinds[1], kinds[2], c.medianLag);
  s += buf;
  s += "   #  kind        set point  rows           slip from .. to   branches  delay s  points\n";
  for (size_t i = 0; i < c.sweeps.size(); i++) {
    const KSweep &w = c.sweeps[i];
    const double f = w.sweptAlpha ? 180 / M_PI : 1;
    snprintf(buf, sizeof buf, "  %2zu  %-10s  %9d  %6zu-%-6zu  %7.3g .. %-7.3g%-3s %8d  %-7.3g%s %zu\n", i + 1,
             KSweepKindName(w.kind), w.setPoint + 1, w.firstRow + 1, w.lastRow + 1, w.slipMin * f, w.slipMax * f,
             w.sweptAlpha ? "°" : "", w.branches, w.lag, w.lagEstimated ? " " : "*", w.points);
    s += buf;
  }
  size_t dropped = 0;
  for (size_t d : c.dropped) dropped += d;
  snprintf(buf, sizeof buf, "points: %zu of %zu rows kept, %zu dropped\n", c.data.points.size(), c.rows, dropped);
  s += buf;
  for (int d = 0; d < KDROP_COUNT; d++)
    if (c.dropped[d]) {
      snprintf(buf, sizeof buf, "  %-8zu %s\n", c.dropped[d], KDropReasonName(d));
      s += buf;
    }
  return s;
}

// ---- [7] set points of tidy points ---------------------------------------------------

void KConditionSetPoints(const KMeasuredData &data, std::vector<KSetPoint> *setPoints, std::vector<int> *setPoint) {
  setPoints->clear();
  setPoint->assign(data.points.size(), 0);
  const size_t n = data.points.size();
  if (!n) return;
  std::vector<double> fz(n), gamma(n);
  for (size_t i = 0; i < n; i++) fz[i] = data.points[i].fz, gamma[i] = data.points[i].gamma;
  std::vector<int> fzId, gammaId;
  std::vector<double> fzCentre, gammaCentre;
  Cluster(fz, std::max(kHeld[0], 0.01 * std::fabs(Median(fz))), &fzId, &fzCentre);
  Cluster(gamma, kHeld[1], &gammaId, &gammaCentre);
  auto nearest = [](const std::vector<double> &centre, double v) {
    size_t best = 0;
    for (size_t k = 1; k < centre.size(); k++)
      if (std::fabs(centre[k] - v) < std::fabs(centre[best] - v)) best = k;
    return int(best);
  };
  // pressures (a file with a pressure column): those within 2 % of one
  // already met are that one; 0 (unknown) is a pressure of its own
  std::vector<double> pressureCentre = {0.0};
  auto pressureOf = [&pressureCentre](double p) {
    for (size_t k = 0; k < pressureCentre.size(); k++)
      if (p == pressureCentre[k] || (p > 0 && std::fabs(p - pressureCentre[k]) <= 0.02 * p)) return long(k);
    pressureCentre.push_back(p);
    return long(pressureCentre.size() - 1);
  };
  // set points in the order the points first reach them
  std::vector<long> seen;
  for (size_t i = 0; i < n; i++) {
    const int f = fzId[i] >= 0 ? fzId[i] : nearest(fzCentre, fz[i]);
    const int g = gammaId[i] >= 0 ? gammaId[i] : nearest(gammaCentre, gamma[i]);
    const long pk = pressureOf(data.points[i].pressure);
    const long key = (long(f) * 64 + g) * 64 + pk;
    auto it = std::find(seen.begin(), seen.end(), key);
    (*setPoint)[i] = int(it - seen.begin());
    if (it == seen.end()) {
      seen.push_back(key);
      KSetPoint sp;
      sp.fz = fzCentre[size_t(f)], sp.gamma = gammaCentre[size_t(g)], sp.pressure = pressureCentre[size_t(pk)];
      setPoints->push_back(sp);
    }
    (*setPoints)[size_t((*setPoint)[i])].points++;
  }
}
