// The aligning moment's second start (KFitStageStart) on its own, on every
// bundled tyre and three perturbed copies (as kfit_perturbed_test.cpp has
// them): pure sweeps at 3 loads × 3 cambers with 1 % noise, the lateral
// force fitted first (as the staged fit has it when the moment's stage
// begins), then
//   - the start's pneumatic trail (within 12 %) and residual torque (within
//     6 % of the load's peak moment) at each sampled load, read at small
//     slip angles, against the source's;
//   - the moment's stage run from that start alone, checked noise-free
//     between the sampled loads: within 3 % of peak (the full fit, from
//     both starts, is held to 2 %).
// A full fit runs each stage from the built-in start as well and keeps the
// better, so a start that reads nothing off the data goes unnoticed there.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "tests/fitaccuracy/fit_sources.h"
#include "tyre/kfit.h"
#include "tyre/ksample.h"

namespace {

// Trail −dMz/dFy (m) and residual torque Mz + trail·Fy (N·m) at zero slip
// angle and camber, by central differences over ±0.01 rad.
struct SmallSlip {
  double trail, residual;
};
SmallSlip ReadSmallSlip(const KTyreParams &t, double fz) {
  auto at = [&](float alpha) { return KTyreEvaluate(t, {float(fz), 0.0f, alpha, 0.0f}); };
  const KTyreResult plus = at(0.01f), minus = at(-0.01f), zero = at(0.0f);
  const double trail = -(double(plus.Mz) - minus.Mz) / (double(plus.Fy) - minus.Fy);
  return {trail, zero.Mz + trail * zero.Fy};
}

// Cases short of the limits, with the figure reached (and a little room):
// Limits{trail % off, residual torque off in % of the load's peak moment,
// Mz % between the loads}. The trail and residual torque of each are right.
//   - Generic_Pac02Tire.tir: 24-28 % between the loads at 0.9-1.7 % on the
//     data (see kfit_perturbed_test.cpp: three loads leave its moment's load
//     terms open);
//   - mf_185_80R14.tir #1, #2: 5.6 and 3.1 % between the loads at the noise
//     on the data (0.90, 0.96 %): another set that reproduces the three
//     loads as well is right between them (the full fit, from both starts,
//     ends 0.2 % off);
//   - the MF 6.1 tyre #1 (mf61 and both files of it): 5.4 % between the
//     loads at 3.4 % on the data, a minimum. Its moment's curvature differs
//     with the sign of the slip (qez4 = 0.53), which the per-load fits hold
//     at 0; fitting it per load reaches the noise (2.0 % between the loads,
//     1.0 % on the data), but the 5000-point benchmark fit then took 17 %
//     longer, its later moment stages starting from another pure-slip
//     solution.
const Known kShortOfTheLimits[] = {
    {"Generic_Pac02Tire.tir #0", {12, 6, 30}},     {"Generic_Pac02Tire.tir #1", {12, 6, 30}},
    {"Generic_Pac02Tire.tir #2", {12, 6, 30}},     {"Generic_Pac02Tire.tir #3", {12, 6, 30}},
    {"mf_185_80R14.tir #1", {12, 6, 6}},           {"mf_185_80R14.tir #2", {12, 6, 3.5}},
    {"mf61 #1", {12, 6, 6}},                       {"MagicFormula61_Parameters.tir #1", {12, 6, 6}},
    {"MagicFormula62_Parameters.tir #1", {12, 6, 6}},
};

class FitStageStart : public testing::TestWithParam<FitSource> {};

}  // namespace

TEST_P(FitStageStart, TheMomentStartReadsTrailAndResidualTorqueOffTheData) {
  const FitSource &src = GetParam();
  for (unsigned copy = 0; copy < 4; copy++) {
    KPacejka *source = new KPacejka, *start = new KPacejka, *fitted = new KPacejka;
    LoadFitSource(src, source);
    if (copy) PerturbFitSource(source, 1000 + copy);
    const std::string what = FitSourceName(src) + " #" + std::to_string(copy);
    SCOPED_TRACE(what);
    const Limits l = LimitsFor(kShortOfTheLimits, what, {12, 6, 3});
    // 1. pure sweeps, 1 % noise; the lateral force fitted from the built-in start
    KSamplePlan plan = KSamplePlanFor(*source, 3);
    plan.combined = false;
    KMeasuredData data, check;
    KSampleTyre(*source, plan, &data);
    AddFitNoise(&data, 20261125 + copy);
    KFitOptions o;
    o.model = FitFamilyOf(*source);
    o.channel = KCH_FY;
    KFitResult r;
    ASSERT_TRUE(KFitTyre(data, o, start, &r)) << r.error;
    // 2. the moment's start, in the usual signs as the fit takes it
    KMeasuredData work = data;
    for (KMeasuredPoint &p : work.points) {
      if (r.mirrored[KCH_FY]) p.force[KCH_FY] = -p.force[KCH_FY];
      if (r.mirrored[KCH_MZ]) p.force[KCH_MZ] = -p.force[KCH_MZ];
    }
    KFitMirror(*start, r.mirrored[KCH_FY], r.mirrored[KCH_MZ]);
    KFitMirror(*source, r.mirrored[KCH_FY], r.mirrored[KCH_MZ]);
    ASSERT_TRUE(KFitStageStart(work, {KPacejkaMember::PURE_MZ, KCH_MZ, false}, start));
    // 3. its trail and residual torque at each load where the moment stands
    //    well above the noise (1 % of the data's peak: within 5 % of the
    //    load's own peak; at the lightest load it is often 10-40 %)
    double dataPeak = 0;
    for (const KMeasuredPoint &p : work.points) dataPeak = std::max(dataPeak, std::fabs(p.force[KCH_MZ]));
    for (double fz : plan.loads) {
      double peak = 0;
      for (const KMeasuredPoint &p : work.points)
        if (p.fz == fz && p.gamma == 0 && p.kappa == 0) peak = std::max(peak, std::fabs(p.force[KCH_MZ]));
      if (0.01 * dataPeak > 0.05 * peak) continue;
      const SmallSlip want = ReadSmallSlip(*source, fz), got = ReadSmallSlip(*start, fz);
      EXPECT_NEAR(got.trail, want.trail, 0.01 * l.fx * std::fabs(want.trail)) << "trail at " << fz << " N";
      EXPECT_NEAR(got.residual, want.residual, 0.01 * l.fy * peak) << "residual torque at " << fz << " N";
    }
    // 4. the moment's stage from that start alone (a given start runs no
    //    other), noise-free between the loads
    KFitMirror(*start, r.mirrored[KCH_FY], r.mirrored[KCH_MZ]);
    KFitMirror(*source, r.mirrored[KCH_FY], r.mirrored[KCH_MZ]);
    KFitOptions m = o;
    m.channel = KCH_MZ;
    m.start = start;
    ASSERT_TRUE(KFitTyre(data, m, fitted, &r)) << r.error;
    plan.loads = LoadsBetween(plan.loads);
    KSampleTyre(*source, plan, &check);
    KFitChannelStats s[KCH_COUNT];
    KFitEvaluate(*fitted, check, s, true);
    EXPECT_LE(s[KCH_MZ].rmsPercent, l.mz) << "Mz between the loads";
    delete source;
    delete start;
    delete fitted;
  }
}

INSTANTIATE_TEST_SUITE_P(Bundled, FitStageStart, testing::ValuesIn(BundledFitSources()), FitSourceTestName);
