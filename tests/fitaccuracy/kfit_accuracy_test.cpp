// How well the fitter recovers real tyres, on every bundled one:
//   - synthetic data (3 loads × 3 cambers, pure and combined sweeps, 1 %
//     Gaussian noise, fixed seed) fitted from the built-in start to the
//     source's own model family, checked noise-free at the loads between the
//     fitted ones: Fx, Fy within 2 % of peak, Mz within 5 %;
//   - convert of every TIR file to pac96 and of every car to mf61, checked
//     over the source's ranges at three loads between the sampled ones:
//     Fx, Fy within 3 %, Mz within 8 %.
// Each case prints its figures (RMS as % of peak per channel).
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "tests/fitaccuracy/fit_sources.h"
#include "tyre/kfit.h"
#include "tyre/ksample.h"

namespace {

using Source = FitSource;


// Cases short of the general limits: the figure reached is pinned here, with
// a little room, so it cannot get worse unnoticed.
//   - The Pacejka89/96 longitudinal force has no camber term and one
//     curvature for both slip directions; the MF5.2 file's Fx has both
//     (PDX3 = -8.8: 10 % more friction at 6 degrees; PEX4 = -1.7). With
//     either set to 0 the conversion comes to about 2.7-2.9 %, with both
//     0.4 %.
//   - The Generic file's trail stiffness (QBZ1 ... QBZ3) falls through zero
//     near 55 kN, between its loads, and its moment at 20 degrees goes
//     -113, -493, -941, -316, +120 N·m from 39 to 70 kN. The Pacejka89/96
//     moment, smooth in the load, cannot follow that. Three loads (8.75,
//     39.4, 70 kN) do not show it either: fitting only the pure Mz group,
//     with every other coefficient the file's own, reaches the noise
//     (1.04 % on the data, the file itself 1.02 %) with a trail stiffness
//     that stays positive, and is 14 % off between the loads. The per-load
//     start of the moment fits the five sampled loads closer still and
//     lands at 16.8 % between them: which of the many sets that reproduce
//     those loads the fit ends in decides the figure.
const Known kShortOfTheLimits[] = {
    {"fit Generic_Pac02Tire.tir -> mf52", {2, 2, 15}},
    {"convert Generic_Pac02Tire.tir -> pac96", {3, 3, 17}},
    {"convert MagicFormula52_Parameters.tir -> pac96", {4.2, 3, 8}},
};

void ExpectWithin(const std::string &what, const KFitChannelStats s[KCH_COUNT], Limits l, const KFitResult &r) {
  l = LimitsFor(kShortOfTheLimits, what, l);
  printf("%-44s Fx %6.3f %%  Fy %6.3f %%  Mz %6.3f %%  (%d iterations, %.2f s%s%s)\n", what.c_str(),
         s[KCH_FX].rmsPercent, s[KCH_FY].rmsPercent, s[KCH_MZ].rmsPercent, r.iterations, r.seconds,
         r.mirrored[KCH_FY] ? ", Fy mirrored" : "", r.mirrored[KCH_MZ] ? ", Mz mirrored" : "");
  EXPECT_LE(s[KCH_FX].rmsPercent, l.fx) << what << " Fx";
  EXPECT_LE(s[KCH_FY].rmsPercent, l.fy) << what << " Fy";
  EXPECT_LE(s[KCH_MZ].rmsPercent, l.mz) << what << " Mz";
}

}  // namespace

TEST(FitAccuracy, SyntheticDataOfEveryBundledTyreFromTheBuiltinStart) {
  for (const Source &src : BundledFitSources()) {
    KPacejka *source = new KPacejka, *fitted = new KPacejka;
    LoadFitSource(src, source);
    // 1. 3 loads × 3 cambers, noisy
    KSamplePlan plan = KSamplePlanFor(*source, 3);
    KMeasuredData data, check;
    KSampleTyre(*source, plan, &data);
    AddFitNoise(&data, 20261123);
    // 2. fit to the same family
    KFitOptions o;
    o.model = source->model;
    KFitResult r;
    ASSERT_TRUE(KFitTyre(data, o, fitted, &r)) << r.error;
    // 3. noise-free points between the fitted loads
    plan.loads = LoadsBetween(plan.loads);
    KSampleTyre(*source, plan, &check);
    KFitChannelStats s[KCH_COUNT];
    KFitEvaluate(*fitted, check, s, !KFitHasCombined(o.model));
    ExpectWithin("fit " + FitSourceName(src) + " -> " + KFitModelKey(o.model), s, {2, 2, 5}, r);
    delete source;
    delete fitted;
  }
}

TEST(FitAccuracy, ConvertEveryBundledTyre) {
  for (const Source &src : BundledFitSources()) {
    KPacejka *source = new KPacejka, *converted = new KPacejka;
    LoadFitSource(src, source);
    KFitOptions o;
    o.model = src.car ? KPacejka::MF61 : KPacejka::PAC96;
    KFitResult r;
    ASSERT_TRUE(KFitConvert(*source, o, converted, &r)) << r.error;
    // three loads between the sampled ones, over the source's ranges; a
    // Pacejka89/96 target has no combined slip, so it is held to pure slip
    KSamplePlan plan = KSamplePlanFor(*source, KFIT_CONVERT_LOADS);
    plan.loads = LoadsBetween(plan.loads);
    plan.loads.erase(plan.loads.begin());
    if (o.model == KPacejka::PAC96) plan.combined = false;
    KMeasuredData check;
    KSampleTyre(*source, plan, &check);
    KFitChannelStats s[KCH_COUNT];
    KFitEvaluate(*converted, check, s, !KFitHasCombined(o.model));
    ExpectWithin("convert " + FitSourceName(src) + " -> " + KFitModelKey(o.model), s, {3, 3, 8}, r);
    delete source;
    delete converted;
  }
}
