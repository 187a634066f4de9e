// Mapping a run's signs onto our axes. Ours are those of ISO 8855 wheel
// axes (x forward, y left, z up): a positive load, and with the usual Magic
// Formula tyre Fy falling and Mz rising as the slip angle grows. SAE axes
// (y right, z down) are ours turned half round about x: load, slip angle,
// lateral force and aligning moment change sign; slip ratio, camber, Fx
// and Mx keep theirs.
#include <cmath>
#include <cstdio>

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

}  // namespace

bool KRunAxesFlips(int axes, int channel) { return axes == KAXES_SAE && kSaeFlips[channel]; }

void KRunMapAxes(KRunData *run, int axes) {
  std::string why;
  if (axes == KAXES_AUTO) {
    size_t negative = 0;
    for (double fz : run->channel[KRUN_FZ].v) negative += fz < 0;
    axes = 2 * negative > run->rows ? KAXES_SAE : KAXES_ISO;
    why = negative * 2 > run->rows ? "axes auto: the loads are negative, so SAE (fz, alpha, fy, mz turned round)"
                                   : "axes auto: the loads are positive, so ISO (signs kept)";
  } else {
    why = axes == KAXES_SAE ? "axes sae: fz, alpha, fy, mz turned round" : "axes iso: signs kept";
  }
  for (int c = 0; c < KRUN_CHANNELS; c++)
    if (KRunAxesFlips(axes, c) && run->channel[c].present)
      for (double &v : run->channel[c].v) v = -v;
  char buf[200];
  for (int c : {int(KRUN_FY), int(KRUN_MZ)}) {
    const double s = SmallSlipSlope(*run, c);
    if (s == 0) continue;
    snprintf(buf, sizeof buf, "; %s %s with the slip angle (%.4g %s/rad)", c == KRUN_FY ? "Fy" : "Mz",
             s > 0 ? "rises" : "falls", s, c == KRUN_FY ? "N" : "N·m");
    why += buf;
  }
  run->notes.push_back(why);
}
