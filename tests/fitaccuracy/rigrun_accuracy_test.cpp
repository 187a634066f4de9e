// A realistic rig run (tyre/krigrun.h: SAE signs, degrees, units row,
// noise, load wobble, relaxation lag, grip drift, offsets, spikes, warm-up)
// made from the bundled Magic Formula 6.1 tyre, read from its text form and
// conditioned as `fit RUN --model mf61` does, fitted with the default
// options, and checked against the noise-free steady-state truth at the
// loads halfway between the set points: Fx, Fy within 2 % of peak, Mz
// within 5 %. (Its TYDEX form conditions to the same points:
// tests/tyre/kcondition_test.cpp.) Prints the figures.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>

#include "tests/base/capture.h"
#include "tyre/kdataload.h"
#include "tyre/kfit.h"
#include "tyre/kpacejka.h"
#include "tyre/krigrun.h"

namespace {

void At(KPacejka &t, double fz, double kappa, double alpha, double gamma, double f[3]) {
  t.SetNormalLoad(float(fz));
  t.SetSlipRatio(float(kappa));
  t.SetSlipAngle(float(alpha));
  t.SetCamber(float(gamma));
  t.Calculate();
  f[0] = double(t.Fx), f[1] = double(t.Fy), f[2] = double(t.Mz);
}

// RMS of `fitted` against `truth` as % of each channel's peak, over pure
// sweeps at the loads halfway between the plan's set points, at every camber;
// returns the number of points compared.
int BetweenLoads(const KRigRunPlan &plan, KPacejka &truth, KPacejka &fitted, double pct[3]) {
  double sum[3] = {}, peak[3] = {};
  int n = 0;
  for (size_t l = 0; l + 1 < plan.loads.size(); l++)
    for (double g : plan.cambers)
      for (int i = -40; i <= 40; i++)
        for (int sweep = 0; sweep < 2; sweep++) {
          const double fz = 0.5 * (plan.loads[l] + plan.loads[l + 1]);
          const double kappa = sweep ? plan.kappaMax * i / 40 : 0, alpha = sweep ? 0 : plan.alphaMax * i / 40;
          double want[3], got[3];
          At(truth, fz, kappa, alpha, g, want);
          At(fitted, fz, kappa, alpha, g, got);
          for (int c = 0; c < 3; c++) {
            sum[c] += (got[c] - want[c]) * (got[c] - want[c]);
            peak[c] = std::fmax(peak[c], std::fabs(want[c]));
          }
          n++;
        }
  for (int c = 0; c < 3; c++) pct[c] = 100 * std::sqrt(sum[c] / n) / peak[c];
  return n;
}

// The bundled Magic Formula 6.1 tyre, the truth the runs are made from.
void LoadTruth(KPacejka *truth) {
  ReportCapture quiet;
  ASSERT_TRUE(truth->LoadFromTirFile(TYRO_SOURCE_DIR "/data/tyres/MagicFormula61_Parameters.tir"));
}

// The run `plan` makes of `truth`, in its text form, read and conditioned
// as `fit RUN` does (with `thin` points a sweep at most; 0: all) and fitted
// to mf61 with the default options.
void MakeAndFit(KPacejka &truth, const KRigRunPlan &plan, int thin, KRunData *run, KDataLoad *load,
                KPacejka *fitted, KFitResult *r) {
  KRigRun(truth, plan, run);
  {
    ReportCapture quiet;
    KConditionOptions c;
    c.thin = thin;
    ASSERT_TRUE(KDataLoadText(KRigRunText(*run, {"generated"}), "run.txt", KRunOptions(), c, false, load))
        << load->error;
  }
  ASSERT_TRUE(load->problems.empty());
  KFitOptions o;
  o.model = KPacejka::MF61;
  ReportCapture quiet;
  ASSERT_TRUE(KFitTyre(load->data, o, fitted, r)) << r->error;
}

// The run's text form fitted with `thin` points a sweep at most (0: all);
// prints the figures under `label` and checks them.
void FitTheRun(int thin, const char *label) {
  KPacejka truth, fitted;
  ASSERT_NO_FATAL_FAILURE(LoadTruth(&truth));
  const KRigRunPlan plan = KRigRunPlanFor(truth);
  KRunData run;
  KDataLoad load;
  KFitResult r;
  ASSERT_NO_FATAL_FAILURE(MakeAndFit(truth, plan, thin, &run, &load, &fitted, &r));
  double pct[3];
  const int n = BetweenLoads(plan, truth, fitted, pct);
  printf("%s (%zu rows, %zu points) to mf61: RMS of peak Fx %.2f %%, Fy %.2f %%, Mz %.2f %% (%d points, %.1f s)\n",
         label, run.rows, load.data.points.size(), pct[0], pct[1], pct[2], n, r.seconds);
  EXPECT_LT(pct[0], 2.0);
  EXPECT_LT(pct[1], 2.0);
  EXPECT_LT(pct[2], 5.0);
}

TEST(RigRunAccuracy, Mf61FromTheTextForm) { FitTheRun(0, "rig run"); }

TEST(RigRunAccuracy, Mf61ThinnedTo40PointsASweep) { FitTheRun(40, "rig run, --thin 40"); }

// The same tyre run at its NOMPRES and 85 % of it through its pressure
// coefficients: the fit finds the nominal pressure, and at each pressure
// (the low one through the fitted pressure terms) meets the same bounds.
// With two pressures the linear and quadratic terms cannot be told apart,
// so the figures compare the factors they make at the low pressure.
TEST(RigRunAccuracy, Mf61PressureTermsFromTwoPressures) {
  KPacejka truth, fitted;
  ASSERT_NO_FATAL_FAILURE(LoadTruth(&truth));
  KRigRunPlan plan = KRigRunPlanFor(truth);
  plan.pressureTerms = true;
  plan.pressures = {double(truth.nompres), 0.85 * double(truth.nompres)};
  KRunData run;
  KDataLoad load;
  KFitResult r;
  ASSERT_NO_FATAL_FAILURE(MakeAndFit(truth, plan, 0, &run, &load, &fitted, &r));
  EXPECT_NEAR(fitted.nompres, truth.nompres, 0.01 * truth.nompres);
  for (double p : plan.pressures) {
    truth.SetPressure(float(p)), fitted.SetPressure(float(p));
    double pct[3];
    BetweenLoads(plan, truth, fitted, pct);
    printf("two-pressure run at %.0f kPa: RMS of peak Fx %.2f %%, Fy %.2f %%, Mz %.2f %% (%.1f s)\n", p / 1000,
           pct[0], pct[1], pct[2], r.seconds);
    EXPECT_LT(pct[0], 2.0);
    EXPECT_LT(pct[1], 2.0);
    EXPECT_LT(pct[2], 5.0);
  }
  truth.SetPressure(0), fitted.SetPressure(0);
  // what the pressure terms make of the tyre at the nominal load, at each
  // pressure: slip and cornering stiffness, the friction peaks
  for (double p : plan.pressures) {
    const KOperatingPoint at{truth.fz0, 0, 0, 0, float(p)};
    const KTyreResult t = KTyreEvaluate(truth, at), f = KTyreEvaluate(fitted, at);
    const double want[4] = {t.longStiffness, std::fabs(t.corneringStiffness), t.peakFx, std::fabs(t.peakFy)};
    const double got[4] = {f.longStiffness, std::fabs(f.corneringStiffness), f.peakFx, std::fabs(f.peakFy)};
    printf("at %.0f kPa, %.0f N, source / fitted: Kx %.0f / %.0f, Ky %.0f / %.0f, peak Fx %.0f / %.0f, peak Fy %.0f / %.0f\n",
           p / 1000, double(truth.fz0), want[0], got[0], want[1], got[1], want[2], got[2], want[3], got[3]);
    for (int q = 0; q < 4; q++) EXPECT_NEAR(got[q] / want[q], 1.0, q < 2 ? 0.08 : 0.04) << q << " at " << p;
  }
}

}  // namespace
