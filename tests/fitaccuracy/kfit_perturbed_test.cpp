// Fits that reach the noise: every bundled tyre and three perturbed copies of
// it (main shape, friction, stiffness and trail coefficients each scaled by a
// factor in 0.9 ... 1.1, fixed seeds), sampled at 3 loads × 3 cambers with
// 1 % noise, fitted to the source's own model family from the built-in
// start and checked noise-free at the loads between the fitted ones:
// Fx, Fy within 1 % of peak, Mz within 2 %, except the cases listed with
// their reason. With TYRO_FIT_TABLE set each case prints its row of the
// table: RMS % of peak between the loads (Fx, Fy, Mz), and Mz on the data.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "tests/fitaccuracy/fit_sources.h"
#include "tyre/kfit.h"
#include "tyre/ksample.h"

namespace {

// Cases short of the general limits, with the figure reached (and a little
// room) and why. Names are "<source> #<copy>", copy 0 the source itself.
//   - Generic_Pac02Tire.tir: its loads run from 1.75 to 78.75 kN, and at
//     1.75 kN the moment stays within 1 N·m, under the 6 N·m of noise. Even
//     noise-free the fit reproduces the three sampled loads to 0.03 % of
//     peak and is 14-18 % off between them: three loads, one of them
//     carrying no moment, leave the moment's load terms open. Its Fx is 0.4
//     to 1.4 % off between loads noise-free as well, 0.6-1.3 % with noise.
//   - MagicFormula52_Parameters.tir: Fx with an exponential and a quadratic
//     load term (PKX3, PEX3) and a sign term of the curvature (PEX4):
//     noise-free the fit reproduces the data to 0.15-0.26 % and is 0.9-1.6 %
//     off between the loads.
const Known kShortOfTheLimits[] = {
    {"Generic_Pac02Tire.tir #0", {1.5, 1, 19}},       {"Generic_Pac02Tire.tir #1", {1.5, 1, 19}},
    {"Generic_Pac02Tire.tir #2", {1.5, 1, 19}},       {"Generic_Pac02Tire.tir #3", {1.5, 1, 19}},
    {"MagicFormula52_Parameters.tir #0", {1.7, 1, 2}}, {"MagicFormula52_Parameters.tir #1", {1.7, 1, 2}},
    {"MagicFormula52_Parameters.tir #2", {1.7, 1, 2}}, {"MagicFormula52_Parameters.tir #3", {1.7, 1, 2}},
};

Limits LimitsFor(const std::string &what) { return LimitsFor(kShortOfTheLimits, what, {1, 1, 2}); }

class FitPerturbed : public testing::TestWithParam<FitSource> {};

}  // namespace

TEST_P(FitPerturbed, ReachesTheNoiseFromTheBuiltinStart) {
  const FitSource &src = GetParam();
  for (unsigned copy = 0; copy < 4; copy++) {
    KPacejka *source = new KPacejka, *fitted = new KPacejka;
    LoadFitSource(src, source);
    if (copy) PerturbFitSource(source, 1000 + copy);
    // 1. 3 loads × 3 cambers, pure and (Magic Formula) combined sweeps, 1 % noise
    KSamplePlan plan = KSamplePlanFor(*source, 3);
    KMeasuredData data, check;
    KSampleTyre(*source, plan, &data);
    if (!getenv("TYRO_FIT_NONOISE")) AddFitNoise(&data, 20261124 + copy);
    // 2. the source's own family, from the built-in start
    KFitOptions o;
    o.model = FitFamilyOf(*source);
    KFitResult r;
    ASSERT_TRUE(KFitTyre(data, o, fitted, &r)) << r.error;
    // 3. noise-free, between the fitted loads
    plan.loads = LoadsBetween(plan.loads);
    KSampleTyre(*source, plan, &check);
    KFitChannelStats s[KCH_COUNT];
    KFitEvaluate(*fitted, check, s, !KFitHasCombined(o.model));
    const std::string what = FitSourceName(src) + " #" + std::to_string(copy);
    const Limits l = LimitsFor(what);
    // the row of the table (printed with TYRO_FIT_TABLE set, and with a failure)
    char row[160];
    snprintf(row, sizeof row, "| %-36s | %-5s | %6.3f | %6.3f | %6.3f | %6.3f |", what.c_str(), KFitModelKey(o.model),
             s[KCH_FX].rmsPercent, s[KCH_FY].rmsPercent, s[KCH_MZ].rmsPercent, r.channel[KCH_MZ].rmsPercent);
    if (getenv("TYRO_FIT_TABLE")) printf("%s\n", row);
    SCOPED_TRACE(row);
    EXPECT_LE(s[KCH_FX].rmsPercent, l.fx) << what << " Fx";
    EXPECT_LE(s[KCH_FY].rmsPercent, l.fy) << what << " Fy";
    EXPECT_LE(s[KCH_MZ].rmsPercent, l.mz) << what << " Mz";
    delete source;
    delete fitted;
  }
}

INSTANTIATE_TEST_SUITE_P(Bundled, FitPerturbed, testing::ValuesIn(BundledFitSources()), FitSourceTestName);
