// The rig-run generator (tyre/krigrun.h).
//
//   [1] the plan   [2] the time series   [3] the writers
#include "tyre/krigrun.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <random>

#include "tyre/kpacejka.h"

namespace {

const double kDeg = M_PI / 180;

struct Forces {
  double fx, fy, mz;
};

Forces Steady(KPacejka &tyre, double fz, double kappa, double alpha, double gamma) {
  tyre.SetNormalLoad(float(fz));
  tyre.SetSlipRatio(float(kappa));
  tyre.SetSlipAngle(float(alpha));
  tyre.SetCamber(float(gamma));
  tyre.Calculate();
  return {double(tyre.Fx), double(tyre.Fy), double(tyre.Mz)};
}

// The commanded inputs of one sample.
struct Command {
  double fz, gamma, pressure, speed, alpha, kappa;
};

}  // namespace

// ---- [1] the plan ------------------------------------------------------------------------

KRigRunPlan KRigRunPlanFor(const KPacejka &tyre) {
  KRigRunPlan p;
  const double nominal = tyre.fz0 > 0 ? double(tyre.fz0) : 4000.0;
  for (double f : {0.4, 0.8, 1.2, 1.6}) p.loads.push_back(std::round(f * nominal / 10) * 10);
  p.cambers = {-3 * kDeg, 0.0, 3 * kDeg};
  p.pressures = {240000.0, 204000.0};
  return p;
}

// ---- [2] the time series -------------------------------------------------------------

void KRigRun(KPacejka &tyre, const KRigRunPlan &plan, KRunData *out) {
  *out = KRunData();
  out->fileName = "<generated>";
  out->format = "generated";
  // 1. the commanded inputs, sample by sample
  std::vector<Command> cmd;
  const double dt = 1 / plan.rate;
  auto hold = [&](Command c, double seconds) {
    for (int i = 0, n = int(std::lround(seconds * plan.rate)); i < n; i++) cmd.push_back(c);
  };
  // a straight move of the slip from where it is to `to` at `rate`
  auto moveAlpha = [&](Command &c, double to, double rate) {
    const int n = std::max(1, int(std::ceil(std::fabs(to - c.alpha) / (rate * dt))));
    const double from = c.alpha;
    for (int i = 1; i <= n; i++) c.alpha = from + (to - from) * i / n, cmd.push_back(c);
  };
  auto moveKappa = [&](Command &c, double to, double rate) {
    const int n = std::max(1, int(std::ceil(std::fabs(to - c.kappa) / (rate * dt))));
    const double from = c.kappa;
    for (int i = 1; i <= n; i++) c.kappa = from + (to - from) * i / n, cmd.push_back(c);
  };
  auto change = [&](Command &c, const Command &to, double seconds) {
    const int n = std::max(1, int(std::lround(seconds * plan.rate)));
    const Command from = c;
    for (int i = 1; i <= n; i++) {
      const double f = double(i) / n;
      c.fz = from.fz + (to.fz - from.fz) * f;
      c.gamma = from.gamma + (to.gamma - from.gamma) * f;
      c.pressure = from.pressure + (to.pressure - from.pressure) * f;
      c.speed = from.speed + (to.speed - from.speed) * f;
      cmd.push_back(c);
    }
  };
  Command c{plan.loads.front(), plan.cambers.front(), plan.pressures.front(), 0, 0, 0};
  // warm-up: up to half the speed, a few scrubbing sweeps at the first load
  Command atSpeed = c;
  atSpeed.speed = plan.speed * 0.5;
  change(c, atSpeed, 3);
  for (int i = 0; i < 2; i++) {
    moveAlpha(c, 0.5 * plan.alphaMax, plan.alphaRate * 2);
    moveAlpha(c, -0.5 * plan.alphaMax, plan.alphaRate * 2);
  }
  moveAlpha(c, 0, plan.alphaRate * 2);
  bool first = true;
  for (double p : plan.pressures)
    for (double g : plan.cambers)
      for (double fz : plan.loads) {
        Command to{fz, g, p, plan.speed, 0, 0};
        change(c, to, first ? 1.0 : 1.5);
        first = false;
        hold(c, 0.6);
        // slip-angle sweep up and down
        moveAlpha(c, plan.alphaMax, plan.alphaRate);
        moveAlpha(c, -plan.alphaMax, plan.alphaRate);
        moveAlpha(c, 0, plan.alphaRate);
        hold(c, 0.4);
        // slip-ratio ramp: driving, braking, back
        moveKappa(c, plan.kappaMax, plan.kappaRate);
        moveKappa(c, -plan.kappaMax, plan.kappaRate);
        moveKappa(c, 0, plan.kappaRate);
        hold(c, 0.4);
        if (plan.combinedAlpha != 0 && g == 0 && p == plan.pressures.front()) {
          moveAlpha(c, plan.combinedAlpha, plan.alphaRate);
          hold(c, 0.4);
          moveKappa(c, plan.kappaMax, plan.kappaRate);
          moveKappa(c, -plan.kappaMax, plan.kappaRate);
          moveKappa(c, 0, plan.kappaRate);
          moveAlpha(c, 0, plan.alphaRate);
          hold(c, 0.4);
        }
      }
  // 2. what the tyre does: slips lag by the relaxation length, grip drifts,
  // the load wobbles; then offsets, noise and spikes
  const size_t n = cmd.size();
  std::mt19937 rng(plan.seed);
  std::normal_distribution<double> gauss(0, 1);
  for (int ch : {KRUN_TIME, KRUN_SPEED, KRUN_PRESSURE, KRUN_FZ, KRUN_ALPHA, KRUN_KAPPA, KRUN_GAMMA, KRUN_FX, KRUN_FY,
                 KRUN_MZ}) {
    out->channel[ch].present = true;
    out->channel[ch].name = KRunChannelKey(ch);
    out->channel[ch].v.resize(n);
  }
  double alphaEff = 0, kappaEff = 0;
  const double total = double(n) * dt;
  const double wobblePeriod = 1.7;
  for (size_t i = 0; i < n; i++) {
    const Command &k = cmd[i];
    const double t = double(i) * dt;
    // the lag: first order in distance rolled, integrated in small steps
    const int sub = 10;
    const double prevA = i ? cmd[i - 1].alpha : k.alpha, prevK = i ? cmd[i - 1].kappa : k.kappa;
    for (int s = 1; s <= sub; s++) {
      const double a = prevA + (k.alpha - prevA) * s / sub, kk = prevK + (k.kappa - prevK) * s / sub;
      const double decay = k.speed > 0 ? 1 - std::exp(-k.speed * dt / sub / plan.relaxation) : 0;
      alphaEff += (a - alphaEff) * decay;
      kappaEff += (kk - kappaEff) * decay;
    }
    const double fz = k.fz * (1 + plan.wobble * std::sin(2 * M_PI * t / wobblePeriod)) * (1 + 0.002 * gauss(rng));
    if (plan.pressureTerms) tyre.SetPressure(float(k.pressure));
    const Forces f = Steady(tyre, fz, kappaEff, alphaEff, k.gamma);
    const double grip = 1 + plan.drift * t / total;
    // the channel peaks at this load, for the noise
    const double peakF = 1.1 * fz, peakM = 0.02 * fz;
    out->channel[KRUN_TIME].v[i] = t;
    out->channel[KRUN_SPEED].v[i] = k.speed * (1 + 0.002 * gauss(rng));
    out->channel[KRUN_PRESSURE].v[i] = k.pressure + 300 * gauss(rng);
    out->channel[KRUN_FZ].v[i] = fz;
    out->channel[KRUN_ALPHA].v[i] = k.alpha + 0.013 * plan.noise * gauss(rng);  // 0.0002 rad at 1.5 %
    out->channel[KRUN_KAPPA].v[i] = k.kappa + 0.013 * plan.noise * gauss(rng);
    out->channel[KRUN_GAMMA].v[i] = k.gamma;
    out->channel[KRUN_FX].v[i] = grip * f.fx + plan.noise * peakF * gauss(rng);
    out->channel[KRUN_FY].v[i] = grip * f.fy + plan.fyOffset + plan.noise * peakF * gauss(rng);
    out->channel[KRUN_MZ].v[i] = grip * f.mz + plan.mzOffset + plan.noise * peakM * gauss(rng);
  }
  std::uniform_int_distribution<size_t> where(n / 10, n - 1);
  for (int s = 0; s < plan.spikes; s++) {
    const size_t i = where(rng);
    out->channel[KRUN_FY].v[i] += (s % 2 ? -0.3 : 0.3) * out->channel[KRUN_FZ].v[i];
  }
  out->rows = n;
  tyre.SetPressure(0);
}

void KRigRunTruth(KPacejka &tyre, const KRunData &run, std::vector<double> truth[3], bool pressureTerms) {
  for (int c = 0; c < 3; c++) truth[c].resize(run.rows);
  for (size_t i = 0; i < run.rows; i++) {
    auto v = [&](int ch) { return run.channel[ch].present ? run.channel[ch].v[i] : 0.0; };
    if (pressureTerms) tyre.SetPressure(float(v(KRUN_PRESSURE)));
    const Forces f = Steady(tyre, v(KRUN_FZ), v(KRUN_KAPPA), v(KRUN_ALPHA), v(KRUN_GAMMA));
    truth[0][i] = f.fx, truth[1][i] = f.fy, truth[2][i] = f.mz;
  }
  tyre.SetPressure(0);
}

// ---- [3] the writers -------------------------------------------------------------------

namespace {

struct Written {
  int channel;
  const char *textName, *textUnit, *tydexName, *tydexUnit, *description;
  double scale;    // file value = SI value × scale (× −1 for SAE where the axes turn it)
  int precision;   // significant digits
};

const Written kWritten[] = {
    {KRUN_TIME, "ET", "s", "RUNTIME", "s", "Elapsed time", 1, 7},
    {KRUN_SPEED, "V", "km/h", "LONGVEL", "km/h", "Rig speed", 3.6, 5},
    {KRUN_PRESSURE, "P", "kPa", "INFLPRES", "kPa", "Inflation pressure", 1e-3, 5},
    {KRUN_FZ, "FZ", "N", "FZW", "N", "Vertical load", 1, 6},
    {KRUN_ALPHA, "SA", "deg", "SLIPANGL", "deg", "Slip angle", 180 / M_PI, 5},
    {KRUN_KAPPA, "SL", "-", "LONGSLIP", "-", "Longitudinal slip", 1, 5},
    {KRUN_GAMMA, "IA", "deg", "INCLANGL", "deg", "Inclination angle", 180 / M_PI, 4},
    {KRUN_FX, "FX", "N", "FX", "N", "Longitudinal force", 1, 6},
    {KRUN_FY, "FY", "N", "FYW", "N", "Lateral force", 1, 6},
    {KRUN_MZ, "MZ", "N·m", "MZW", "Nm", "Aligning moment", 1, 5},
};

std::string Num(double v, int precision) {
  char buf[32];
  snprintf(buf, sizeof buf, "%.*g", precision, v);
  return buf;
}

// A made-up tread temperature column, as rigs record: nothing reads it.
double Tread(const KRunData &run, size_t i) { return 25 + 40 * (1 - std::exp(-run.channel[KRUN_TIME].v[i] / 120)); }

}  // namespace

std::string KRigRunText(const KRunData &run, const std::vector<std::string> &comment) {
  std::string out;
  for (const std::string &c : comment) out += "# " + c + "\n";
  for (const Written &w : kWritten) out += std::string(w.textName) + "\t";
  out += "TSTC\n";
  for (const Written &w : kWritten) out += std::string(w.textUnit) + "\t";
  out += "degC\n";
  for (size_t i = 0; i < run.rows; i++) {
    for (const Written &w : kWritten) {
      const double sign = KRunAxesFlips(KAXES_SAE, w.channel) ? -1 : 1;
      out += Num(sign * w.scale * run.channel[w.channel].v[i], w.precision) + "\t";
    }
    out += Num(Tread(run, i), 4) + "\n";
  }
  return out;
}

std::string KRigRunTydex(const KRunData &run, const std::vector<std::string> &comment) {
  std::string out;
  char buf[160];
  auto line = [&](const char *name, const char *desc, const char *unit, const std::string &rest) {
    snprintf(buf, sizeof buf, "%-10s%-30s%-10s%s\n", name, desc, unit, rest.c_str());
    out += buf;
  };
  out += "**HEADER\n";
  line("RELEASE", "Release of TYDEX format", "", "1.3");
  line("MEASID", "Measurement id", "", "generated");
  line("SUPPLIER", "Data supplier", "", "tyrograph-rigrun");
  out += "**COMMENTS\n";
  for (const std::string &c : comment) out += c + "\n";
  out += "**CONSTANTS\n";
  line("NOMPRES", "Nominal inflation pressure", "kPa", "240");
  out += "**MEASURCHANNELS\n";
  for (const Written &w : kWritten) line(w.tydexName, w.description, w.tydexUnit, "1         0");
  line("TSTC", "Tread surface temperature", "degC", "1         0");
  out += "**MEASURDATA\n";
  for (size_t i = 0; i < run.rows; i++) {
    for (const Written &w : kWritten) {
      out += Num(w.scale * run.channel[w.channel].v[i], w.precision);
      out += " ";
    }
    out += Num(Tread(run, i), 4) + "\n";
  }
  out += "**END\n";
  return out;
}
