// Calculate against reference values computed independently in double
// precision (tests/tyre/make_reference.py), per model, plus the edge cases of
// each routine: guards, bounds, sign conventions and the common limits.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>

#include "tests/base/capture.h"
#include "tests/tyre/tyre_fixtures.h"

// Fz (N), kappa, alpha (rad), gamma (rad), Fx, Fy, Mz, then statistics.
struct RefRow {
  double Fz, kappa, alpha, gamma, Fx, Fy, Mz, s[10];
};

// ---- Pacejka89/96 ---------------------------------------------------------------

// longStiffness corneringStiffness peakFx peakFy Bx Cx Dx By Cy Dy
static const RefRow pac96Rows[] = {
    {4000, 0, 0, 0, 470.089981, -181.368396, 12.1450501, {1491.11891, 92429.9847, 5440, 4988.8, 0.166122874, 1.65, 5440, 0.21154046, 1.55, 4920}},
    {4000, 0.1, 0, 0, 5417.48998, -181.368396, 12.1450501, {1491.11891, 92429.9847, 5440, 4988.8, 0.166122874, 1.65, 5440, 0.21154046, 1.55, 4920}},
    {3000, -0.05, 0.05, 0.02, -3798.47569, 2761.68061, -49.6942018, {1149.6238, 76058.3638, 4410, 3817.34051, 0.157991315, 1.65, 4410, 0.222161225, 1.55, 3855}},
    {5500, 0.03, -0.1, -0.03, 5043.58596, -5578.65988, 69.1947144, {1959.38401, 102502.014, 6572.5, 6851.45693, 0.180677895, 1.65, 6572.5, 0.182878513, 1.55, 6311.25}},
    {2000, 0.2, 0.15, 0.05, 2812.05478, 2609.1683, -6.79219701, {785.998524, 53894.7075, 3160, 2614.1356, 0.150747703, 1.65, 3160, 0.226442005, 1.55, 2680}},
};

TEST(Pac96, MatchesReferenceValues) {
  for (const RefRow &r : pac96Rows) {
    SCOPED_TRACE(testing::Message() << "Fz " << r.Fz << " kappa " << r.kappa << " alpha " << r.alpha);
    KPacejka t;
    SetTouringPac96(t);
    Evaluate(t, r.Fz, r.kappa, r.alpha, r.gamma);
    EXPECT_REF(t.Fx, r.Fx);
    EXPECT_REF(t.Fy, r.Fy);
    EXPECT_REF(t.Mz, r.Mz);
    const float got[10] = {t.longStiffness, t.corneringStiffness, t.peakFx, t.peakFy, t.Bx,
                           t.Cx, t.Dx, t.By, t.Cy, t.Dy};
    for (int i = 0; i < 10; i++) EXPECT_REF(got[i], r.s[i]) << " statistic " << i;
  }
}

TEST(Pac96, AllZeroCoefficientsGiveZeroAndFlatB) {
  ReportCapture cap;
  KPacejka t;
  Evaluate(t, 4000, 0.1, 0.1, 0.02);
  EXPECT_EQ(t.Fx, 0.0f);
  EXPECT_EQ(t.Fy, 0.0f);
  EXPECT_EQ(t.Mz, 0.0f);
  EXPECT_EQ(t.Bx, 99999.0f);
  EXPECT_EQ(t.By, 99999.0f);
  EXPECT_EQ(cap.errors, "");
}

TEST(Pac96, FrictionLimitIsTwiceNominalFriction) {
  KPacejka t;
  t.b0 = 1.65f;
  t.b2 = 1000.0f;
  t.b3 = 5000.0f;  // very stiff, so small slips already saturate
  t.b12 = 9000.0f;  // a vertical shift that would push Fx past the limit
  for (double kappa : {-0.5, -0.1, 0.0, 0.1, 0.5}) {
    Evaluate(t, 4000, kappa, 0, 0);
    EXPECT_FLOAT_EQ(t.Dx, 4000.0f);
    EXPECT_LE(std::fabs(t.Fx), 8000.0f);
  }
  Evaluate(t, 4000, 0.0, 0, 0);
  EXPECT_FLOAT_EQ(t.Fx, 8000.0f);  // 0 + 9000 clamped
}

TEST(Pac96, ZeroA4KeepsCorneringStiffness) {
  KPacejka t;
  SetTouringPac96(t);
  t.corneringStiffness = 123.0f;
  t.a4 = 0.0f;
  Evaluate(t, 4000, 0, 0.05, 0);
  EXPECT_EQ(t.By, 99999.0f);
  EXPECT_EQ(t.corneringStiffness, 123.0f);
}

TEST(Pac96, CurvatureCappedAboveOnly) {
  KPacejka t;
  SetTouringPac96(t);
  t.b6 = t.b7 = 0.0f;
  t.b8 = 3.0f;  // used as 1.0
  Evaluate(t, 4000, 0.05, 0, 0);
  const float capped = t.Fx;
  t.b8 = 1.0f;
  Evaluate(t, 4000, 0.05, 0, 0);
  EXPECT_EQ(t.Fx, capped);
  t.b8 = -20.0f;  // used as it is
  Evaluate(t, 4000, 0.05, 0, 0);
  EXPECT_NE(t.Fx, capped);
}

TEST(Pac96, PeakLoadScalesOnlyD) {
  KPacejka t;
  SetTouringPac96(t);
  Evaluate(t, 4000, 0.05, 0.05, 0);
  const float Bx = t.Bx, Dx = t.Dx;
  t.SetPeakLoad(2000.0f);
  t.Calculate();
  EXPECT_EQ(t.Bx, Bx);
  EXPECT_FLOAT_EQ(t.Dx, Dx * 0.5f);
}

// ---- Magic Formula 5.2 and 6.1 -----------------------------------------------------

// longStiffness corneringStiffness peakFx peakFy
static const RefRow mf52Rows[] = {
    {4000, 0, 0, 0, 122.798859, 35.9242918, -6.3842272, {90657.1447, 4419040.32, 4630.81818, 4120.36364}},
    {4000, 0.1, 0, 0, 4534.57184, 29.0410632, -30.3340915, {90657.1447, 4419040.32, 4630.81818, 4120.36364}},
    {3000, -0.05, 0.05, 0.02, -2100.55667, 2336.67837, -10.905009, {64812.9566, 3602808.83, 3518.47051, 3182.9328}},
    {5500, 0.03, -0.1, -0.03, 2226.13788, -5139.68982, 24.17444, {133832.791, 5070829.68, 6134.50321, 5422.0518}},
    {2000, 0.2, 0.15, 0.05, 1549.53917, 1262.45184, -17.00546, {41171.2409, 2544312.69, 2328.80582, 2182.18909}},
};
static const RefRow mf61Rows[] = {
    {4000, 0, 0, 0, 122.798859, 35.9242918, -5.31897878, {90657.1447, 4419040.32, 4630.81818, 4120.36364}},
    {4000, 0.1, 0, 0, 4534.57184, 29.0410632, -29.7946159, {90657.1447, 4419040.32, 4630.81818, 4120.36364}},
    {3000, -0.05, 0.05, 0.02, -2100.55667, 2336.67837, -10.2706027, {64812.9566, 3602808.83, 3518.47051, 3182.9328}},
    {5500, 0.03, -0.1, -0.03, 2226.13788, -5139.68982, 24.768339, {133832.791, 5070829.68, 6134.50321, 5422.0518}},
    {2000, 0.2, 0.15, 0.05, 1549.53917, 1262.45184, -16.8134929, {41171.2409, 2544312.69, 2328.80582, 2182.18909}},
};

static void CheckMFRows(int model, const RefRow *rows, int n) {
  for (int i = 0; i < n; i++) {
    const RefRow &r = rows[i];
    SCOPED_TRACE(testing::Message() << "model " << model << " row " << i);
    KPacejka t;
    SetTestMF(t, model);
    Evaluate(t, r.Fz, r.kappa, r.alpha, r.gamma);
    EXPECT_REF(t.Fx, r.Fx);
    EXPECT_REF(t.Fy, r.Fy);
    EXPECT_REF(t.Mz, r.Mz);
    EXPECT_REF(t.longStiffness, r.s[0]);
    EXPECT_REF(t.corneringStiffness, r.s[1]);
    EXPECT_REF(t.peakFx, r.s[2]);
    EXPECT_REF(t.peakFy, r.s[3]);
  }
}

TEST(MF52, MatchesReferenceValues) { CheckMFRows(KPacejka::MF52, mf52Rows, 5); }
TEST(MF61, MatchesReferenceValues) { CheckMFRows(KPacejka::MF61, mf61Rows, 5); }

TEST(MF52, UnknownModelNumbersRunMF52) {
  for (int model : {9, -1}) {
    KPacejka t;
    SetTestMF(t, model);
    t.a2 = t.b2 = 2000.0f;  // the limits of unknown models read a2/b2
    Evaluate(t, 3000, -0.05, 0.05, 0.02);
    EXPECT_REF(t.Fx, mf52Rows[2].Fx);
    EXPECT_REF(t.Fy, mf52Rows[2].Fy);
    EXPECT_REF(t.Mz, mf52Rows[2].Mz);
  }
}

TEST(MF52, AllZeroSetGivesSignedZeros) {
  ReportCapture cap;
  for (int model : {KPacejka::MF52, KPacejka::MF61}) {
    KPacejka t;
    t.model = model;
    t.pdx1 = 0.0f;
    Evaluate(t, 4000, 0.1, 0.05, 0.01);
    EXPECT_EQ(t.Fx, 0.0f);
    EXPECT_EQ(t.Fy, 0.0f);
    EXPECT_EQ(t.Mz, 0.0f);
  }
  EXPECT_EQ(cap.errors, "");
}

TEST(MF52, LeavesPac96CurveParametersAlone) {
  KPacejka t;
  SetTestMF(t, KPacejka::MF52);
  t.Bx = 1.0f, t.Cx = 2.0f, t.Dx = 3.0f, t.By = 4.0f, t.Cy = 5.0f, t.Dy = 6.0f;
  Evaluate(t, 4000, 0.1, 0.1, 0.02);
  EXPECT_EQ(t.Bx + t.Cx + t.Dx + t.By + t.Cy + t.Dy, 21.0f);
}

TEST(MF52, LresOnlyMattersForMF52) {
  KPacejka m1, m3;
  SetTestMF(m1, KPacejka::MF52);
  SetTestMF(m3, KPacejka::MF61);
  m1.lres = m3.lres = m1.ltr;  // equal: the two models agree
  Evaluate(m1, 3000, 0.05, 0.08, 0.02);
  Evaluate(m3, 3000, 0.05, 0.08, 0.02);
  EXPECT_EQ(m1.Mz, m3.Mz);
  const float before1 = m1.Mz, before3 = m3.Mz;
  m1.lres = m3.lres = 2.0f;
  m1.Calculate();
  m3.Calculate();
  EXPECT_NE(m1.Mz, before1);
  EXPECT_EQ(m3.Mz, before3);
}

TEST(MF52, ZeroNominalLoadIsGuardedOnlyIn52) {
  ReportCapture cap;
  KPacejka::RearmNaNReports();
  KPacejka m1;
  SetTestMF(m1, KPacejka::MF52);
  m1.fz0 = 0.0f;
  m1.qdz1 = m1.ssz2 = 0.0f;  // the terms that divide by the nominal load outside dfz
  m1.pky1 = 0.0f;
  Evaluate(m1, 3000, 0.05, 0.05, 0.0);
  EXPECT_TRUE(std::isfinite(m1.Fx));
  EXPECT_NE(m1.Fx, 0.0f);
  EXPECT_EQ(cap.errors.find("Fx NaN"), std::string::npos);

  KPacejka m3;
  SetTestMF(m3, KPacejka::MF61);
  m3.fz0 = 0.0f;
  Evaluate(m3, 3000, 0.05, 0.05, 0.0);
  EXPECT_EQ(m3.Fx, 0.0f);
  EXPECT_NE(cap.errors.find("Fx NaN detected in Pacejka"), std::string::npos);
}

TEST(MF52, PureLateralSlipWithoutShiftIsNegatedWeightedForce) {
  KPacejka t;
  SetTestMF(t, KPacejka::MF52);
  SetMembers(t, {{"rvy1", 0}, {"rvy2", 0}, {"rvy3", 0}, {"rvy4", 0}, {"rvy5", 0}, {"rvy6", 0}});
  // At zero slip ratio both cosines of Gyk agree, so the lateral weighting's
  // coefficients cannot matter; at a non-zero slip ratio they do.
  Evaluate(t, 4000, 0.0, 0.08, 0.0);
  const float pure = t.Fy;
  t.rby1 = 20.0f;
  t.rcy1 = 0.8f;
  t.Calculate();
  EXPECT_EQ(t.Fy, pure);
  Evaluate(t, 4000, 0.1, 0.08, 0.0);
  EXPECT_LT(std::fabs(t.Fy), std::fabs(pure));
}

// ---- Pacejka2006 ---------------------------------------------------------------------

// longStiffness corneringStiffness; a2 = b2 = 1500 set for the limits
static const RefRow pac2006Rows[] = {
    {4000, 0, 0, 0, 86.5261317, -1.77236769, 0.486669814, {90657.1447, 3286889.49}},
    {4000, 0.1, 0, 0, 4498.29911, -1.63438769, 27.9176114, {90657.1447, 3286889.49}},
    {3000, -0.05, 0.05, 0.02, -2124.32179, 1948.54627, -25.2437903, {64812.9566, 2705101.07}},
    {5500, 0.03, -0.1, -0.03, 2196.19591, -4805.90976, 84.1968343, {133832.791, 3824731.52}},
    {2000, 0.2, 0.15, 0.05, 1591.94573, 1266.88773, 16.3164147, {41171.2409, 1936093.91}},
};

TEST(Pac2006, MatchesReferenceValues) {
  for (const RefRow &r : pac2006Rows) {
    SCOPED_TRACE(testing::Message() << "Fz " << r.Fz << " kappa " << r.kappa << " alpha " << r.alpha);
    KPacejka t;
    SetTestMF(t, KPacejka::PAC2006);
    t.a2 = t.b2 = 1500.0f;
    Evaluate(t, r.Fz, r.kappa, r.alpha, r.gamma);
    EXPECT_REF(t.Fx, r.Fx);
    EXPECT_REF(t.Fy, r.Fy);
    EXPECT_REF(t.Mz, r.Mz);
    EXPECT_REF(t.longStiffness, r.s[0]);
    EXPECT_REF(t.corneringStiffness, r.s[1]);
  }
}

TEST(Pac2006, ZeroPac96FrictionClampsForcesToZero) {
  KPacejka t;
  SetTestMF(t, KPacejka::PAC2006);
  Evaluate(t, 4000, 0.1, 0.05, 0);
  EXPECT_EQ(t.Fx, 0.0f);
  EXPECT_EQ(t.Fy, 0.0f);
  EXPECT_NE(t.Mz, 0.0f);  // the moment is never limited
}

TEST(Pac2006, AllZeroSetGivesZeros) {
  ReportCapture cap;
  KPacejka t;
  t.model = KPacejka::PAC2006;
  t.a2 = t.b2 = 1000.0f;
  Evaluate(t, 4000, 0.1, 0.05, 0.01);
  EXPECT_EQ(t.Fx, 0.0f);
  EXPECT_EQ(t.Fy, 0.0f);
  EXPECT_TRUE(std::signbit(t.Fy));
  EXPECT_EQ(t.Mz, 0.0f);
  EXPECT_EQ(cap.errors, "");
}

TEST(Pac2006, LongitudinalVerticalShiftHasNoEffect) {
  KPacejka t;
  SetTestMF(t, KPacejka::PAC2006);
  t.a2 = t.b2 = 1500.0f;
  Evaluate(t, 3000, 0.05, 0.02, 0);
  const float Fx = t.Fx;
  t.pvx1 = 0.5f;
  t.Calculate();
  EXPECT_EQ(t.Fx, Fx);
}

TEST(Pac2006, MomentSignOppositeToMF52) {
  // With no camber-dependent or combined terms, the two routines share every
  // moment factor; MF5.2 flips the moment, Pacejka2006 does not.
  KPacejka m1, m2;
  for (KPacejka *t : {&m1, &m2}) {
    t->pdx1 = t->pdy1 = 1.0f;
    t->a2 = t->b2 = 1000.0f;
    SetMembers(*t, {{"pcy1", 1.3}, {"pky1", 15.0}, {"pky2", 1.7}, {"qbz1", 8.0}, {"qcz1", 1.1},
                    {"qdz1", 0.1}, {"fz0", 4000}, {"qez1", -1.0}});
  }
  m1.model = KPacejka::MF52;
  m2.model = KPacejka::PAC2006;
  Evaluate(m1, 4000, 0, 0.03, 0);
  Evaluate(m2, 4000, 0, 0.03, 0);
  ASSERT_NE(m1.Mz, 0.0f);
  EXPECT_NEAR(m2.Mz, -m1.Mz, 1e-4 * std::fabs(m1.Mz));
}

TEST(Pac2006, ZetaFactorsScaleAsBuilt) {
  KPacejka t;
  SetTestMF(t, KPacejka::PAC2006);
  t.a2 = t.b2 = 1500.0f;
  Evaluate(t, 3000, 0.05, 0.05, 0);
  const float Fx = t.Fx;
  t.zeta1 = 0.5f;  // multiplies Dx exactly where lmux does
  t.Calculate();
  const float withZeta = t.Fx;
  EXPECT_NE(withZeta, Fx);
  t.zeta1 = 1.0f;
  t.lmux *= 0.5f;
  t.Calculate();
  EXPECT_FLOAT_EQ(t.Fx, withZeta);
  t.lmux *= 2.0f;
  t.Calculate();
  const float Mz = t.Mz;
  t.zeta8 = 0.0f;  // read by nothing
  t.Calculate();
  EXPECT_EQ(t.Mz, Mz);
}

// ---- Limits and NaN guard -----------------------------------------------------------

TEST(Limits, NaNIsZeroedAndReportedOncePerQuantity) {
  ReportCapture cap;
  KPacejka::RearmNaNReports();
  KPacejka t;
  SetTestMF(t, KPacejka::MF61);
  t.fz0 = 0.0f;
  Evaluate(t, 3000, 0.05, 0.05, 0.0);
  EXPECT_EQ(t.Fx, 0.0f);
  EXPECT_EQ(t.Fy, 0.0f);
  EXPECT_EQ(t.Mz, 0.0f);
  EXPECT_NE(cap.errors.find("Fx NaN detected in Pacejka; camber 0.000000, sideSlip 2.864789, "
                            "slipPerc 5.000000, Fz 3.000000"),
            std::string::npos)
      << cap.errors;
  EXPECT_NE(cap.errors.find("Fy NaN detected in Pacejka"), std::string::npos);
  EXPECT_NE(cap.errors.find("Mz NaN detected in Pacejka"), std::string::npos);
  EXPECT_NE(cap.errors.find("Only reporting the NaN once."), std::string::npos);
  const std::string first = cap.errors;
  Evaluate(t, 3500, 0.05, 0.05, 0.0);  // a second bad evaluation: silent
  EXPECT_EQ(t.Fx, 0.0f);
  EXPECT_EQ(cap.errors, first);
}

TEST(Limits, InfiniteForceIsClampedBeforeTheGuard) {
  ReportCapture cap;
  KPacejka::RearmNaNReports();
  KPacejka t;
  t.b0 = 1.0f;
  t.b2 = 1000.0f;
  t.b12 = INFINITY;  // Sv infinite: Fx would be +inf, the limit makes it 2·μ·Fz
  Evaluate(t, 2000, 0.0, 0, 0);
  EXPECT_FLOAT_EQ(t.Fx, 4000.0f);
  EXPECT_EQ(cap.errors.find("Fx NaN"), std::string::npos);
}

TEST(Limits, NoModelExceedsTwiceItsFrictionOverAGrid) {
  for (int model : {0, 1, 2, 3, 5}) {
    KPacejka t;
    if (model == 0) SetTouringPac96(t);
    else SetTestMF(t, model);
    t.a2 = 1450.0f;  // the Pacejka2006 and unknown-model limits read a2/b2
    t.b2 = 1800.0f;
    const bool mf = model == 1 || model == 3;
    for (double Fz = 500; Fz <= 9000; Fz += 1700)
      for (double kappa = -1.0; kappa <= 1.0; kappa += 0.25)
        for (double alpha = -0.5; alpha <= 0.5; alpha += 0.125) {
          Evaluate(t, Fz, kappa, alpha, 0.03);
          const double Lx = std::fabs((mf ? t.pdx1 : t.b2 * 0.001) * 2.0 * Fz);
          const double Ly = std::fabs((mf ? t.pdy1 : t.a2 * 0.001) * 2.0 * Fz);
          ASSERT_LE(std::fabs(t.Fx), Lx * (1 + 1e-6)) << model << " " << Fz << " " << kappa;
          ASSERT_LE(std::fabs(t.Fy), Ly * (1 + 1e-6)) << model << " " << Fz << " " << alpha;
          ASSERT_TRUE(std::isfinite(t.Mz));
        }
  }
}
