// Conditioning generated rig runs: set points, sweeps split where the rig
// changed what it swept, the relaxation lag found and cancelled, spikes
// dropped; and the text and TYDEX forms of one run conditioned alike.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "tests/base/capture.h"
#include "tyre/kcondition.h"
#include "tyre/kdataload.h"
#include "tyre/kpacejka.h"
#include "tyre/krigrun.h"

namespace {

struct GenRun {
  KPacejka tyre;
  KRigRunPlan plan;
  KRunData run;
  GenRun(bool clean) {
    ReportCapture quiet;
    EXPECT_TRUE(tyre.LoadFromTirFile(TYRO_SOURCE_DIR "/data/tyres/MagicFormula61_Parameters.tir"));
    plan = KRigRunPlanFor(tyre);
    if (clean) {  // only the lag: no noise, wobble, drift, offsets or spikes
      plan.noise = plan.wobble = plan.drift = plan.fyOffset = plan.mzOffset = 0;
      plan.spikes = 0;
      plan.pressures.resize(1);
      plan.cambers = {0.0};
    }
    KRigRun(tyre, plan, &run);
  }
};

// RMS of Fy against the steady-state truth at each point's slip.
double FyError(KPacejka &tyre, const KMeasuredData &d) {
  double s = 0;
  for (const KMeasuredPoint &p : d.points) {
    tyre.SetNormalLoad(float(p.fz));
    tyre.SetSlipRatio(float(p.kappa));
    tyre.SetSlipAngle(float(p.alpha));
    tyre.SetCamber(float(p.gamma));
    tyre.Calculate();
    const double e = p.force[KCH_FY] - double(tyre.Fy);
    s += e * e;
  }
  return std::sqrt(s / double(d.points.size()));
}

TEST(KCondition, RelaxationLagFoundAndCancelled) {
  GenRun r(true);
  const double tau = r.plan.relaxation / r.plan.speed;  // 0.045 s
  KConditioned with, without;
  KConditionOptions o;
  ASSERT_TRUE(KConditionRun(r.run, o, &with));
  o.relax = false;
  ASSERT_TRUE(KConditionRun(r.run, o, &without));
  EXPECT_NEAR(tau, with.medianLag, 0.1 * tau);
  for (const KSweep &w : with.sweeps) {
    if (w.lagEstimated && w.kind != KSWEEP_COMBINED) {
      EXPECT_NEAR(tau, w.lag, 0.25 * tau) << "sweep at row " << w.firstRow;
    }
  }
  // the hysteresis: against the truth at the rig's slip the error is the
  // lag's; at the corrected slip it nearly goes
  const double before = FyError(r.tyre, without.data), after = FyError(r.tyre, with.data);
  printf("Fy RMS against the steady state: %.4g N as recorded, %.4g N with the lag cancelled\n", before, after);
  EXPECT_GT(before, 100.0);
  EXPECT_LT(after, 0.15 * before);
}

TEST(KCondition, SetPointsAndSweepsOfARealisticRun) {
  GenRun r(false);
  KRunData run = r.run;
  KRunMapAxes(&run, KAXES_ISO);
  KConditioned c;
  ASSERT_TRUE(KConditionRun(run, KConditionOptions(), &c));
  // every load × camber × pressure, found at its own value despite the wobble
  const size_t want = r.plan.loads.size() * r.plan.cambers.size() * r.plan.pressures.size();
  ASSERT_EQ(want, c.setPoints.size());
  for (size_t i = 0; i < want; i++) {
    const KSetPoint &s = c.setPoints[i];
    const double fz = r.plan.loads[i % r.plan.loads.size()];
    const double g = r.plan.cambers[(i / r.plan.loads.size()) % r.plan.cambers.size()];
    EXPECT_NEAR(fz, s.fz, 0.01 * fz) << i;
    EXPECT_NEAR(g, s.gamma, 1e-9) << i;
    EXPECT_GT(s.points, 300u) << i;
  }
  // each set point: one slip-angle sweep over ±12° and one slip-ratio sweep
  // over ±0.2, split where the rig changed over (within a few rows)
  std::vector<int> angle(want, 0), ratio(want, 0);
  size_t combined = 0;
  for (const KSweep &w : c.sweeps) {
    // no slivers where a swept slip crosses zero
    EXPECT_GE(w.lastRow - w.firstRow + 1, 12u) << "sweep at row " << w.firstRow;
    combined += w.kind == KSWEEP_COMBINED;
    if (w.kind == KSWEEP_ALPHA && w.slipMax - w.slipMin > 0.4) angle[size_t(w.setPoint)]++;
    if (w.kind == KSWEEP_KAPPA) {
      ratio[size_t(w.setPoint)]++;
      EXPECT_NEAR(-0.2, w.slipMin, 0.01);
      EXPECT_NEAR(0.2, w.slipMax, 0.01);
      // the row before the sweep has the slip angle back at zero, the first
      // of the ramp has the slip ratio moving
      EXPECT_LT(std::fabs(run.channel[KRUN_ALPHA].v[w.firstRow - 1]), 0.002);
      EXPECT_LT(std::fabs(run.channel[KRUN_KAPPA].v[w.firstRow + 3]), 0.025);
      EXPECT_GT(std::fabs(run.channel[KRUN_KAPPA].v[w.firstRow + 3]), 0.004);
    }
  }
  // the combined ramps (camber 0, first pressure: one per load), each split
  // where the slip ratio crosses zero into its driving and braking halves
  EXPECT_EQ(2 * r.plan.loads.size(), combined);
  for (size_t i = 0; i < want; i++) {
    EXPECT_EQ(1, angle[i]) << "set point " << i + 1;
    EXPECT_EQ(1, ratio[i]) << "set point " << i + 1;
  }
  // the slip a pure sweep holds is exactly zero in its points (the fit
  // takes those as its pure points), the swept one is left as measured
  size_t pureAngle = 0, pureRatio = 0;
  for (size_t i = 0; i < c.data.points.size(); i++) {
    const KMeasuredPoint &p = c.data.points[i];
    const int kind = c.sweeps[size_t(c.sweep[i])].kind;
    if (kind == KSWEEP_ALPHA) pureAngle += p.kappa == 0 && p.alpha != 0;
    if (kind == KSWEEP_KAPPA) pureRatio += p.alpha == 0 && p.kappa != 0;
    if (kind == KSWEEP_COMBINED) {
      EXPECT_TRUE(p.alpha != 0 || p.kappa != 0) << i;
    }
  }
  EXPECT_GT(pureAngle, 300 * want);
  EXPECT_GT(pureRatio, 150 * want);
  // the spikes go, and few else
  EXPECT_GE(c.dropped[KDROP_SPIKE], size_t(r.plan.spikes));
  EXPECT_LT(c.dropped[KDROP_SPIKE], size_t(3 * r.plan.spikes));
  EXPECT_GT(c.dropped[KDROP_WARMUP], 0u);
  EXPECT_GT(c.dropped[KDROP_TRANSITION], 0u);
  // thinning keeps about the target per sweep
  KConditioned thin;
  KConditionOptions o;
  o.thin = 50;
  ASSERT_TRUE(KConditionRun(run, o, &thin));
  for (const KSweep &w : thin.sweeps) EXPECT_LE(w.points, 50u);
  EXPECT_GT(thin.dropped[KDROP_THINNED], 0u);
}

TEST(KCondition, TextAndTydexFormsAgree) {
  // the text form has SAE signs and degrees, the TYDEX form ISO signs: read
  // with --axes auto both give the generator's own points, signs included
  GenRun r(false);
  KDataLoad text, tydex;
  {
    ReportCapture quiet;
    ASSERT_TRUE(KDataLoadText(KRigRunText(r.run, {"generated"}), "run.txt", KRunOptions(), KConditionOptions(), false, &text))
        << text.error;
    ASSERT_TRUE(KDataLoadText(KRigRunTydex(r.run, {"generated"}), "run.tdx", KRunOptions(), KConditionOptions(), false,
                              &tydex))
        << tydex.error;
  }
  EXPECT_TRUE(text.problems.empty());
  ASSERT_EQ(text.data.points.size(), tydex.data.points.size());
  KRunData iso = r.run;
  KConditioned direct;
  ASSERT_TRUE(KConditionRun(iso, KConditionOptions(), &direct));
  ASSERT_EQ(direct.data.points.size(), text.data.points.size());
  for (size_t i = 0; i < text.data.points.size(); i += 97) {
    const KMeasuredPoint &a = direct.data.points[i], &b = text.data.points[i], &t = tydex.data.points[i];
    EXPECT_NEAR(a.fz, b.fz, 1e-5 * a.fz);
    EXPECT_NEAR(a.alpha, b.alpha, 1e-3);  // the lag, estimated from rounded numbers, moves a little
    EXPECT_NEAR(a.gamma, b.gamma, 1e-5);
    EXPECT_NEAR(a.kappa, b.kappa, 1e-3);
    for (int ch = 0; ch < KCH_COUNT; ch++) {
      EXPECT_NEAR(a.force[ch], b.force[ch], 1e-4 * std::fabs(a.force[ch]) + 1e-3) << ch;
      EXPECT_NEAR(b.force[ch], t.force[ch], 1e-9 * std::fabs(a.force[ch]) + 1e-9) << ch;
    }
    EXPECT_DOUBLE_EQ(b.alpha, t.alpha);
  }
  EXPECT_NEAR(240000, text.conditioned.pressure[0], 2000);
  EXPECT_NEAR(40 / 3.6, text.conditioned.speed[0], 0.2);
}

}  // namespace

namespace {

TEST(KCondition, SetPointsWithoutPressureOrSpeedColumns) {
  // loads and cambers alone (no pressure, no speed): each set point keeps
  // its own values
  std::string text = "ET,FZ,IA,SA,FY\n";
  int row = 0;
  for (double fz : {2000.0, 4000.0})
    for (double ia : {0.0, 0.05})
      for (int i = 0; i < 60; i++, row++)
        text += std::to_string(row * 0.01) + "," + std::to_string(fz) + "," + std::to_string(ia) + "," +
                std::to_string(0.004 * (i - 30)) + "," + std::to_string(-20 * (i - 30)) + "\n";
  KDataLoad load;
  {
    ReportCapture quiet;
    ASSERT_TRUE(KDataLoadText(text, "run.csv", KRunOptions(), KConditionOptions(), false, &load)) << load.error;
  }
  ASSERT_EQ(4u, load.conditioned.setPoints.size());
  const double want[4][2] = {{2000, 0}, {2000, 0.05}, {4000, 0}, {4000, 0.05}};
  for (int i = 0; i < 4; i++) {
    const KSetPoint &s = load.conditioned.setPoints[size_t(i)];
    EXPECT_DOUBLE_EQ(want[i][0], s.fz) << i;
    EXPECT_DOUBLE_EQ(want[i][1], s.gamma) << i;
    EXPECT_EQ(60u, s.points) << i;
  }
}

}  // namespace

namespace {

TEST(KCondition, ATableSplitsWhereItsSweepsChange) {
  // the bundled tidy table read as a run: no time, so no lag; eleven-row
  // slip-ratio and slip-angle sweeps alternate at nine set points
  std::string text, error;
  ASSERT_TRUE(KRunReadFile(TYRO_SOURCE_DIR "/data/measured/touring.csv", &text, &error)) << error;
  KDataLoad load;
  {
    ReportCapture quiet;
    ASSERT_TRUE(KDataLoadText(text, "touring.csv", KRunOptions(), KConditionOptions(), true, &load)) << load.error;
  }
  const KConditioned &c = load.conditioned;
  EXPECT_EQ(9u, c.setPoints.size());
  ASSERT_EQ(18u, c.sweeps.size());
  for (size_t i = 0; i < c.sweeps.size(); i++) {
    EXPECT_EQ(i % 2 ? KSWEEP_ALPHA : KSWEEP_KAPPA, c.sweeps[i].kind) << i;
    EXPECT_EQ(11 * i, c.sweeps[i].firstRow) << i;
    EXPECT_EQ(11 * i + 10, c.sweeps[i].lastRow) << i;
    EXPECT_EQ(0.0, c.sweeps[i].lag);
  }
  EXPECT_EQ(198u, load.data.points.size());  // nothing dropped from a clean table
}

}  // namespace
