// Curve sampling: normalisation, peaks and texts.
#include "chart/curves.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "golden.h"
#include "chart/oppoint.h"
#include "tyre/kpacejka.h"

namespace {

void LoadTouring(KPacejka *tyre) {
  std::string error;
  ASSERT_TRUE(CarLoadTyreSource(TouringCar().c_str(), 0, tyre, &error)) << error;
  OpApplyAll(tyre, OperatingPoint());
}

}  // namespace

TEST(Curves, SamplesAreTheModelNormalisedByLoadAndPeakIsTheFirstHighest) {
  KPacejka tyre, check;
  LoadTouring(&tyre);
  LoadTouring(&check);
  for (CurveKind k : {CURVE_FX, CURVE_FY, CURVE_MZ}) {
    CurveRange r = CurveInitialRange(k);
    CurveApplyZoom(k, true, &r);
    Curve c;
    CurveSample(tyre, tyre.GetStoredPoint(), k, r, &c);
    for (int i : {0, 17, 145, 289}) {
      float x = CurveSampleX(r, i);
      if (k == CURVE_FX) check.SetSlipRatio(x); else check.SetSlipAngle(x / CURVE_RAD2DEG);
      check.Calculate();
      float want = k == CURVE_FX ? check.Fx / 2500.0f : k == CURVE_FY ? check.Fy / 2500.0f : check.Mz;
      EXPECT_FLOAT_EQ(c.samples[i], want) << "graph " << k << " sample " << i;
    }
    int best = 0;
    for (int i = 1; i < CURVE_SAMPLES; i++)
      if (c.samples[i] > c.samples[best]) best = i;
    ASSERT_GT(c.samples[best], 0.0f) << "a real tyre has a positive peak";
    EXPECT_TRUE(c.peakValue == c.samples[best] && c.peakX == CurveSampleX(r, best)) << k;
    EXPECT_TRUE(k == CURVE_MZ || c.peakX > 0.0f) << "positive slip gives the positive force";
  }
  // Below 1 N the samples are not divided by the load.
  tyre.SetNormalLoad(0.2f);
  check.SetNormalLoad(0.2f);
  CurveRange r = CurveInitialRange(CURVE_FX);
  Curve low;
  CurveSample(tyre, tyre.GetStoredPoint(), CURVE_FX, r, &low);
  check.SetSlipRatio(CurveSampleX(r, 160));
  check.Calculate();
  EXPECT_FLOAT_EQ(low.samples[160], check.Fx);
  for (float v : low.samples) EXPECT_TRUE(std::isfinite(v));
  // A tyre with all coefficients 0 has no force anywhere: the peak is 0 at 0.
  KPacejka reset;
  OpApplyAll(&reset, OperatingPoint());
  CurveSample(reset, reset.GetStoredPoint(), CURVE_FY, CurveInitialRange(CURVE_FY), &low);
  EXPECT_TRUE(low.peakX == 0.0f && low.peakValue == 0.0f);
}

TEST(Curves, Texts) {
  EXPECT_STREQ(CurveTitle(CURVE_FX), "Fx/Fz (normalized longitudinal force)");
  EXPECT_STREQ(CurveYUnit(CURVE_FY), "N/N (\xB5)");
  char buf[80];
  snprintf(buf, sizeof buf, CurvePeakFormat(CURVE_FY), 7.5, 1.126);
  EXPECT_STREQ(buf, "Fy peak at SA=7.50 deg, \xB5=1.13");
  snprintf(buf, sizeof buf, CurvePeakFormat(CURVE_MZ), 3.25, 41.0);
  EXPECT_STREQ(buf, "Mz peak at SA=3.25 deg, 41.00Nm");
}
