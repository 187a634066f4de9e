// Calculate against double-precision references from tests/tyre/make_reference.py,
// per model, plus each routine's guards, caps, sign conventions and the limits.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "tests/base/capture.h"
#include "tests/tyre/tyre_fixtures.h"

// Model, Fz (N), kappa, alpha (rad), gamma (rad), Fx, Fy, Mz, then the
// statistics longStiffness corneringStiffness peakFx peakFy Bx Cx Dx By Cy Dy
// (as many as the model's rows give). Pacejka2006 rows have a2 = b2 = 1500.
struct RefRow {
  int model;
  double Fz, kappa, alpha, gamma, Fx, Fy, Mz, s[10];
};
static const RefRow refRows[] = {
    {0, 4000, 0, 0, 0, 470.089981, -181.368396, 12.1450501, {1491.11891, 92429.9847, 5440, 4988.8, 0.166122874, 1.65, 5440, 0.21154046, 1.55, 4920}},
    {0, 4000, 0.1, 0, 0, 5417.48998, -181.368396, 12.1450501, {1491.11891, 92429.9847, 5440, 4988.8, 0.166122874, 1.65, 5440, 0.21154046, 1.55, 4920}},
    {0, 3000, -0.05, 0.05, 0.02, -3798.47569, 2761.68061, -49.6942018, {1149.6238, 76058.3638, 4410, 3817.34051, 0.157991315, 1.65, 4410, 0.222161225, 1.55, 3855}},
    {0, 5500, 0.03, -0.1, -0.03, 5043.58596, -5578.65988, 69.1947144, {1959.38401, 102502.014, 6572.5, 6851.45693, 0.180677895, 1.65, 6572.5, 0.182878513, 1.55, 6311.25}},
    {0, 2000, 0.2, 0.15, 0.05, 2812.05478, 2609.1683, -6.79219701, {785.998524, 53894.7075, 3160, 2614.1356, 0.150747703, 1.65, 3160, 0.226442005, 1.55, 2680}},
    {1, 4000, 0, 0, 0, 122.798859, 35.9242918, -6.3842272, {90657.1447, 4419040.32, 4630.81818, 4120.36364}},
    {1, 4000, 0.1, 0, 0, 4534.57184, 29.0410632, -30.3340915, {90657.1447, 4419040.32, 4630.81818, 4120.36364}},
    {1, 3000, -0.05, 0.05, 0.02, -2100.55667, 2336.67837, -10.905009, {64812.9566, 3602808.83, 3518.47051, 3182.9328}},
    {1, 5500, 0.03, -0.1, -0.03, 2226.13788, -5139.68982, 24.17444, {133832.791, 5070829.68, 6134.50321, 5422.0518}},
    {1, 2000, 0.2, 0.15, 0.05, 1549.53917, 1262.45184, -17.00546, {41171.2409, 2544312.69, 2328.80582, 2182.18909}},
    {3, 4000, 0, 0, 0, 122.798859, 35.9242918, -5.31897878, {90657.1447, 4419040.32, 4630.81818, 4120.36364}},
    {3, 4000, 0.1, 0, 0, 4534.57184, 29.0410632, -29.7946159, {90657.1447, 4419040.32, 4630.81818, 4120.36364}},
    {3, 3000, -0.05, 0.05, 0.02, -2100.55667, 2336.67837, -10.2706027, {64812.9566, 3602808.83, 3518.47051, 3182.9328}},
    {3, 5500, 0.03, -0.1, -0.03, 2226.13788, -5139.68982, 24.768339, {133832.791, 5070829.68, 6134.50321, 5422.0518}},
    {3, 2000, 0.2, 0.15, 0.05, 1549.53917, 1262.45184, -16.8134929, {41171.2409, 2544312.69, 2328.80582, 2182.18909}},
    {2, 4000, 0, 0, 0, 86.5261317, -1.77236769, 0.486669814, {90657.1447, 3286889.49}},
    {2, 4000, 0.1, 0, 0, 4498.29911, -1.63438769, 27.9176114, {90657.1447, 3286889.49}},
    {2, 3000, -0.05, 0.05, 0.02, -2124.32179, 1948.54627, -25.2437903, {64812.9566, 2705101.07}},
    {2, 5500, 0.03, -0.1, -0.03, 2196.19591, -4805.90976, 84.1968343, {133832.791, 3824731.52}},
    {2, 2000, 0.2, 0.15, 0.05, 1591.94573, 1266.88773, 16.3164147, {41171.2409, 1936093.91}},
};

static void SetModel(KPacejka &t, int model) {
  if (model == KPacejka::PAC96) SetTouringPac96(t);
  else SetTestMF(t, model);
}

static void CheckRows(int model, int stats) {
  int rows = 0;
  for (const RefRow &r : refRows) {
    if (r.model != model) continue;
    rows++;
    KPacejka t;
    SetModel(t, model);
    if (model == KPacejka::PAC2006) t.a2 = t.b2 = 1500.0f;
    Evaluate(t, r.Fz, r.kappa, r.alpha, r.gamma);
    const float got[13] = {t.Fx, t.Fy, t.Mz, t.longStiffness, t.corneringStiffness, t.peakFx, t.peakFy,
                           t.Bx, t.Cx, t.Dx, t.By, t.Cy, t.Dy};
    const double want[13] = {r.Fx, r.Fy, r.Mz, r.s[0], r.s[1], r.s[2], r.s[3], r.s[4], r.s[5], r.s[6], r.s[7],
                             r.s[8], r.s[9]};
    for (int i = 0; i < 3 + stats; i++) EXPECT_REF(got[i], want[i]) << i << " at Fz " << r.Fz << " kappa " << r.kappa;
  }
  EXPECT_EQ(rows, 5);
}

TEST(Models, MatchReferenceValues) {
  CheckRows(KPacejka::PAC96, 10);
  CheckRows(KPacejka::MF52, 4);
  CheckRows(KPacejka::MF61, 4);
  CheckRows(KPacejka::PAC2006, 2);
}

TEST(Models, AllZeroCoefficientsGiveZerosWithoutReports) {
  ReportCapture cap;
  for (int model : {0, 1, 2, 3}) {
    KPacejka t;
    t.model = model;
    if (model == KPacejka::PAC2006) t.a2 = t.b2 = 1000.0f;
    Evaluate(t, 4000, 0.1, 0.05, 0.01);
    EXPECT_TRUE(t.Fx == 0.0f && t.Fy == 0.0f && t.Mz == 0.0f) << model << ": " << t.Fx << " " << t.Fy;
    EXPECT_TRUE(model != 0 || (t.Bx == 99999.0f && t.By == 99999.0f));  // flat B
    EXPECT_TRUE(model != 2 || std::signbit(t.Fy));
  }
  EXPECT_EQ(cap.errors, "");
}

TEST(Pac96, GuardsCapsAndPeakLoad) {
  KPacejka t;
  SetTouringPac96(t);
  t.corneringStiffness = 123.0f;
  t.a4 = 0.0f;  // no lateral stiffness: B flat, statistic left alone
  t.b6 = t.b7 = 0.0f;
  t.b8 = 3.0f;  // curvature capped at 1 from above only
  Evaluate(t, 4000, 0.05, 0.05, 0);
  EXPECT_TRUE(t.By == 99999.0f && t.corneringStiffness == 123.0f);
  const float capped = t.Fx, Bx = t.Bx, Dx = t.Dx;
  t.b8 = 1.0f;
  t.Calculate();
  EXPECT_EQ(t.Fx, capped);
  t.SetPeakLoad(2000.0f);  // scales D only
  t.Calculate();
  EXPECT_EQ(t.Bx, Bx);
  EXPECT_FLOAT_EQ(t.Dx, Dx * 0.5f);
}

TEST(MF52, UnknownModelNumbersRunMF52) {
  for (int model : {9, -1}) {
    KPacejka t;
    SetTestMF(t, model);
    t.a2 = t.b2 = 2000.0f;  // the limits of unknown models read a2/b2
    Evaluate(t, 3000, -0.05, 0.05, 0.02);
    EXPECT_REF(t.Fx, refRows[7].Fx);
    EXPECT_REF(t.Fy, refRows[7].Fy);
  }
}

TEST(Pac2006, LimitsReadA2B2AndZetaScalesAsBuilt) {
  KPacejka t;
  SetTestMF(t, KPacejka::PAC2006);
  Evaluate(t, 3000, 0.05, 0.05, 0);  // a2 = b2 = 0: forces clamped to 0, the moment never
  EXPECT_TRUE(t.Fx == 0.0f && t.Fy == 0.0f && t.Mz != 0.0f);
  t.a2 = t.b2 = 1500.0f;
  t.zeta1 = 0.5f;  // multiplies Dx exactly where lmux does
  t.Calculate();
  const float withZeta = t.Fx;
  t.zeta1 = 1.0f;
  t.lmux *= 0.5f;
  t.Calculate();
  EXPECT_FLOAT_EQ(t.Fx, withZeta);
  EXPECT_NE(t.Fx, 0.0f);
}

TEST(Limits, NaNIsZeroedAndReportedOncePerQuantity) {
  ReportCapture cap;
  KPacejka::RearmNaNReports();
  KPacejka t;
  SetTestMF(t, KPacejka::MF52);
  t.fz0 = 0.0f;  // MF5.2 guards the nominal load...
  t.qdz1 = t.ssz2 = t.pky1 = 0.0f;  // ...where it divides by it outside dfz
  Evaluate(t, 3000, 0.05, 0.05, 0.0);
  EXPECT_TRUE(std::isfinite(t.Fx) && t.Fx != 0.0f);
  EXPECT_EQ(cap.errors.find("Fx NaN"), std::string::npos);
  cap.errors.clear();
  KPacejka::RearmNaNReports();
  SetTestMF(t, KPacejka::MF61);  // ...MF6.1 does not
  t.fz0 = 0.0f;
  Evaluate(t, 3000, 0.05, 0.05, 0.0);
  EXPECT_TRUE(t.Fx == 0.0f && t.Fy == 0.0f && t.Mz == 0.0f);
  for (const char *text : {"Fx NaN detected in Pacejka; camber 0.000000, sideSlip 2.864789, "
                           "slipPerc 5.000000, Fz 3.000000",
                           "Fy NaN detected in Pacejka", "Mz NaN detected in Pacejka",
                           "Only reporting the NaN once."})
    EXPECT_NE(cap.errors.find(text), std::string::npos) << cap.errors;
  const std::string first = cap.errors;
  Evaluate(t, 3500, 0.05, 0.05, 0.0);  // a second bad evaluation: silent
  EXPECT_EQ(t.Fx, 0.0f);
  EXPECT_EQ(cap.errors, first);
  cap.errors.clear();
  KPacejka::RearmNaNReports();
  KPacejka inf;
  inf.b0 = 1.0f;
  inf.b2 = 1000.0f;
  inf.b12 = INFINITY;  // Sv infinite: Fx would be +inf, the limit makes it 2·μ·Fz
  Evaluate(inf, 2000, 0.0, 0, 0);
  EXPECT_FLOAT_EQ(inf.Fx, 4000.0f);
  EXPECT_EQ(cap.errors, "");
}
