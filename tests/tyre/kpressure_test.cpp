// Inflation pressure: the pressure keys of a TIR file survive the writer,
// each pressure term scales its quantity as the equations say (ratios worked
// out by hand at 15 % under and 20 % over the nominal pressure), the nominal
// pressure changes no bit, the batch takes each point's pressure, and a fit
// of data at two pressures finds the pressure terms.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "tests/base/capture.h"
#include "tests/tyre/tyre_fixtures.h"
#include "tyre/kfit.h"
#include "tyre/kpacejka_batch.h"
#include "tyre/kpacejka_tirwrite.h"

using PressureTest = TyreFileTest;

namespace {

const char *const kMF61 = TYRO_SOURCE_DIR "/data/tyres/MagicFormula61_Parameters.tir";
const char *const kSample = TYRO_SOURCE_DIR "/data/tyres/sample.tir";

bool SameBits(float a, float b) { return memcmp(&a, &b, sizeof a) == 0; }

// The sample tyre with a pressure coefficient of its own size on every term
// and the vertical shifts off, so the statistics' peaks are the D values.
void PressureTyre(KPacejka &t) {
  ReportCapture quiet;
  t.LoadFromTirFile(kSample);
  SetMembers(t, {{"ppx1", 0.3}, {"ppx2", -0.5}, {"ppx3", -0.2}, {"ppx4", 0.4}, {"ppy1", 0.6}, {"ppy2", 0.8},
                 {"ppy3", -0.25}, {"ppy4", 0.3}, {"ppz1", 0.7}, {"ppz2", 0.9}, {"pvx1", 0}, {"pvx2", 0},
                 {"pvy1", 0}, {"pvy2", 0}, {"pvy3", 0}, {"pvy4", 0}});
}

KTyreResult At(const KPacejka &t, float fz, float kappa, float alpha, float gamma, float pressure) {
  return KTyreEvaluate(t, KOperatingPoint{fz, kappa, alpha, gamma, pressure});
}

}  // namespace

// Every pressure key of a real MF6.1 file is read, written and read back to
// the same bits; a tyre without pressure writes none of them.
TEST_F(PressureTest, TirPressureKeysRoundTrip) {
  ReportCapture quiet;
  KPacejka t;
  t.LoadFromTirFile(kMF61);
  EXPECT_EQ(t.nompres, 260000.0f);
  EXPECT_EQ(t.inflpres, 260000.0f);
  EXPECT_EQ(t.ppx1, -1.043804f);
  EXPECT_EQ(t.ppy2, 1.079097f);
  EXPECT_EQ(t.ppy5, -0.9813187f);
  EXPECT_EQ(t.ppz1, 0.8521928f);
  EXPECT_EQ(t.ppz2, -0.06776439f);
  t.inflpres = 230000.0f;  // a value of its own, so INFLPRES and NOMPRES cannot swap unseen
  t.qpz1 = 0.25f, t.qpz2 = -0.125f;
  std::string text;
  ASSERT_TRUE(KPacejkaTirText(t, &text));
  EXPECT_NE(text.find("[OPERATING_CONDITIONS]\nINFLPRES"), std::string::npos);
  KPacejka back;
  back.LoadFromTirFile(Write("pressure.tir", text).c_str());
  int pressureMembers = 0;
  for (int i = 0; i < kpacejkaMemberCount; i++) {
    const KPacejkaMember &m = kpacejkaMembers[i];
    if (m.group != KPacejkaMember::PRESSURE) continue;
    pressureMembers++;
    EXPECT_NE(KPacejkaGetMember(t, m), 0.0) << m.name;
    EXPECT_TRUE(SameBits(float(KPacejkaGetMember(t, m)), float(KPacejkaGetMember(back, m)))) << m.name;
  }
  EXPECT_EQ(pressureMembers, 15);

  KPacejka none;
  SetTestMF(none, KPacejka::MF61);
  text.clear();
  ASSERT_TRUE(KPacejkaTirText(none, &text));
  EXPECT_EQ(text.find("OPERATING_CONDITIONS"), std::string::npos);
  EXPECT_EQ(text.find("PPX1"), std::string::npos);
  EXPECT_EQ(text.find("NOMPRES"), std::string::npos);
}

// Each term against its hand-worked factor. Kx, the Fx and Fy peaks: the
// statistics' ratio to the nominal pressure's. The trail: Mz/Fy with no
// residual torque. The residual torque's camber part: Mz with no trail.
TEST(Pressure, EachTermScalesItsQuantityWithItsSign) {
  KPacejka t;
  PressureTyre(t);
  const float p0 = t.nompres;
  ASSERT_EQ(p0, 200000.0f);
  struct Case {
    double dpi;
    double kx, peakFx, peakFy, trail, residual;  // 1 + ppx1·dpi + ppx2·dpi², ...
  };
  const Case cases[] = {
      // dpi = -0.15: 1 - 0.045 - 0.01125; 1 + 0.03 + 0.009; 1 + 0.0375 + 0.00675; 1 + 0.105; 1 - 0.135
      {-0.15, 0.94375, 1.039, 1.04425, 1.105, 0.865},
      // dpi = +0.2: 1 + 0.06 - 0.02; 1 - 0.04 + 0.016; 1 - 0.05 + 0.012; 1 - 0.14; 1 + 0.18
      {0.2, 1.04, 0.976, 0.962, 0.86, 1.18},
  };
  const float fz = 4000.0f;
  for (const Case &c : cases) {
    SCOPED_TRACE(c.dpi);
    const float p = float(p0 * (1 + c.dpi));
    const KTyreResult nom = At(t, fz, 0, 0, 0, 0), at = At(t, fz, 0, 0, 0, p);
    EXPECT_NEAR(at.longStiffness / nom.longStiffness, c.kx, 2e-5);
    EXPECT_NEAR(at.peakFx / nom.peakFx, c.peakFx, 2e-5);
    EXPECT_NEAR(at.peakFy / nom.peakFy, c.peakFy, 2e-5);
    // the cornering stiffness: (1 + ppy1·dpi) and the load of its peak
    // moved by (1 + ppy2·dpi) inside sin(2 atan(Fz / (pky2·Fz0·...)))
    const double x = fz / (double(t.pky2) * t.fz0 * t.lfz0);
    const double ky = (1 + 0.6 * c.dpi) * std::sin(2 * std::atan(x / (1 + 0.8 * c.dpi))) / std::sin(2 * std::atan(x));
    EXPECT_NEAR(at.corneringStiffness / nom.corneringStiffness, ky, 2e-5);

    KPacejka trail;
    PressureTyre(trail);
    SetMembers(trail, {{"qdz6", 0}, {"qdz7", 0}, {"qdz8", 0}, {"qdz9", 0}, {"ssz1", 0}, {"ssz2", 0}});
    const KTyreResult tn = At(trail, fz, 0, 0.02f, 0, 0), tp = At(trail, fz, 0, 0.02f, 0, p);
    EXPECT_NEAR((tp.Mz / tp.Fy) / (tn.Mz / tn.Fy), c.trail, 2e-5);

    KPacejka residual;
    PressureTyre(residual);
    SetMembers(residual, {{"qdz1", 0}, {"qdz6", 0}, {"qdz7", 0}, {"qbz10", 0}, {"ssz1", 0}, {"ssz2", 0},
                          {"ssz3", 0}, {"ssz4", 0}});
    const KTyreResult rn = At(residual, fz, 0, 0.02f, 0.05f, 0), rp = At(residual, fz, 0, 0.02f, 0.05f, p);
    ASSERT_GT(std::fabs(rn.Mz), 1.0f);
    EXPECT_NEAR(rp.Mz / rn.Mz, c.residual, 2e-5);
  }
}

// At the nominal pressure, and with no pressure given, every result is the
// bits of the tyre without pressure terms: the single point, Calculate, the
// exact batch; a tyre without NOMPRES ignores any pressure.
TEST(Pressure, NominalPressureChangesNoBit) {
  KPacejka t;
  {
    ReportCapture quiet;
    t.LoadFromTirFile(kMF61);
  }
  KPacejka plain;
  KFitCopy(t, &plain);
  for (int i = 0; i < kpacejkaMemberCount; i++)
    if (kpacejkaMembers[i].group == KPacejkaMember::PRESSURE) KPacejkaSetMember(plain, kpacejkaMembers[i], 0);
  std::vector<float> fz, kappa, alpha, gamma, nominal;
  for (float f : {500.0f, 3000.0f, 6752.0f, 9000.0f})
    for (float k : {-0.4f, -0.05f, 0.0f, 0.02f, 0.3f})
      for (float a : {-0.3f, -0.02f, 0.0f, 0.05f, 0.25f})
        for (float g : {-0.05f, 0.0f, 0.04f}) {
          fz.push_back(f), kappa.push_back(k), alpha.push_back(a), gamma.push_back(g), nominal.push_back(260000.0f);
          const KTyreResult a0 = At(t, f, k, a, g, 0), an = At(t, f, k, a, g, 260000.0f), ap = At(plain, f, k, a, g, 0);
          const KTyreResult none = At(plain, f, k, a, g, 180000.0f);  // plain has NOMPRES but no coefficients
          for (const KTyreResult *r : {&an, &ap, &none}) {
            EXPECT_TRUE(SameBits(a0.Fx, r->Fx) && SameBits(a0.Fy, r->Fy) && SameBits(a0.Mz, r->Mz))
                << f << " " << k << " " << a << " " << g;
            EXPECT_TRUE(SameBits(a0.longStiffness, r->longStiffness) && SameBits(a0.peakFy, r->peakFy));
          }
          t.SetNormalLoad(f), t.SetSlipRatio(k), t.SetSlipAngle(a), t.SetCamber(g);
          t.Calculate();
          EXPECT_TRUE(SameBits(a0.Fx, t.Fx) && SameBits(a0.Fy, t.Fy) && SameBits(a0.Mz, t.Mz));
        }
  const size_t n = fz.size();
  std::vector<float> out[2][3];
  for (auto &o : out)
    for (auto &q : o) q.resize(n);
  KTyreEvaluateBatch(t, n, fz.data(), kappa.data(), alpha.data(), gamma.data(), out[0][0].data(),
                     out[0][1].data(), out[0][2].data(), KBATCH_EXACT);
  KTyreEvaluateBatchAtPressure(t, n, fz.data(), kappa.data(), alpha.data(), gamma.data(), nominal.data(),
                               out[1][0].data(), out[1][1].data(), out[1][2].data(), KBATCH_EXACT);
  for (int q = 0; q < 3; q++) EXPECT_EQ(memcmp(out[0][q].data(), out[1][q].data(), n * sizeof(float)), 0) << q;
  // no NOMPRES: nothing to be relative to, every pressure is the nominal one
  KPacejka bare;
  SetTestMF(bare, KPacejka::MF61);
  bare.ppx1 = 0.5f, bare.ppy3 = -0.4f;
  const KTyreResult b0 = At(bare, 4000, 0.05f, 0.05f, 0, 0), b1 = At(bare, 4000, 0.05f, 0.05f, 0, 150000.0f);
  EXPECT_TRUE(SameBits(b0.Fx, b1.Fx) && SameBits(b0.Fy, b1.Fy) && SameBits(b0.Mz, b1.Mz));
}

// Points at three pressures side by side: the exact batch gives the single
// point's bits for each, the lanes agree within their tolerance, and the
// pressures matter (a batch that dropped them would give the nominal forces).
TEST(Pressure, BatchTakesEachPointsPressure) {
  KPacejka t;
  {
    ReportCapture quiet;
    t.LoadFromTirFile(kMF61);
  }
  std::vector<float> fz, kappa, alpha, gamma, pressure;
  int i = 0;
  for (float f : {1500.0f, 4000.0f, 8000.0f})
    for (float k : {-0.2f, 0.0f, 0.04f, 0.15f})
      for (float a : {-0.15f, 0.0f, 0.03f, 0.2f})
        for (float g : {0.0f, 0.03f}) {
          fz.push_back(f), kappa.push_back(k), alpha.push_back(a), gamma.push_back(g);
          pressure.push_back(260000.0f * (i % 3 == 0 ? 0.8f : i % 3 == 1 ? 1.0f : 1.25f));
          i++;
        }
  const size_t n = fz.size();
  for (KBatchMode mode : {KBATCH_EXACT, KBATCH_LANES8, KBATCH_LANES16}) {
    SCOPED_TRACE(KBatchLanes(mode));
    std::vector<float> fx(n), fy(n), mz(n);
    KTyreEvaluateBatchAtPressure(t, n, fz.data(), kappa.data(), alpha.data(), gamma.data(), pressure.data(),
                                 fx.data(), fy.data(), mz.data(), mode);
    int moved = 0;
    for (size_t j = 0; j < n; j++) {
      const KTyreResult want = At(t, fz[j], kappa[j], alpha[j], gamma[j], pressure[j]);
      const KTyreResult nominal = At(t, fz[j], kappa[j], alpha[j], gamma[j], 0);
      moved += pressure[j] != 260000.0f && std::fabs(want.Fy - nominal.Fy) > 10.0f;
      if (KBatchLanes(mode) == 1) {
        EXPECT_TRUE(SameBits(fx[j], want.Fx) && SameBits(fy[j], want.Fy) && SameBits(mz[j], want.Mz)) << j;
      } else {
        EXPECT_NEAR(fx[j], want.Fx, 4e-6 * 10000.0 + 1e-6) << j;
        EXPECT_NEAR(fy[j], want.Fy, 4e-6 * 10000.0 + 1e-6) << j;
        EXPECT_NEAR(mz[j], want.Mz, 4e-6 * 1000.0 + 1e-6) << j;
      }
    }
    EXPECT_GT(moved, int(n) / 3);
  }
}

// Pure sweeps of a tyre at its nominal pressure and 85 % of it: the fit
// gives the fitted tyre the data's nominal pressure, finds the pressure
// factors at the low pressure, and leaves the pressure terms alone for
// data at one pressure.
TEST(Pressure, FitOfTwoPressuresFindsThePressureTerms) {
  KPacejka truth;
  PressureTyre(truth);
  const float p0 = truth.nompres, pLow = 0.85f * p0;
  KMeasuredData data;
  data.has[KCH_FX] = data.has[KCH_FY] = data.has[KCH_MZ] = true;
  for (float p : {p0, pLow})
    for (float f : {2000.0f, 4000.0f, 6000.0f})
      for (int s = -12; s <= 12; s++) {
        for (bool lateral : {false, true}) {
          KMeasuredPoint m;
          m.fz = f, m.pressure = p;
          (lateral ? m.alpha : m.kappa) = lateral ? 0.2 * s / 12 : 0.25 * s / 12;
          const KTyreResult r = At(truth, float(m.fz), float(m.kappa), float(m.alpha), 0, p);
          m.force[KCH_FX] = r.Fx, m.force[KCH_FY] = r.Fy, m.force[KCH_MZ] = r.Mz;
          data.points.push_back(m);
        }
      }
  KFitOptions o;
  o.model = KPacejka::MF61;
  o.threads = 1;
  KPacejka fitted;
  KFitResult result;
  {
    ReportCapture quiet;
    ASSERT_TRUE(KFitTyre(data, o, &fitted, &result));
  }
  EXPECT_EQ(fitted.nompres, p0);
  const double dpi = -0.15;
  auto factor = [&](float a, float b) { return 1 + a * dpi + b * dpi * dpi; };
  EXPECT_NEAR(factor(fitted.ppx1, fitted.ppx2), factor(truth.ppx1, truth.ppx2), 0.01);
  EXPECT_NEAR(factor(fitted.ppx3, fitted.ppx4), factor(truth.ppx3, truth.ppx4), 0.01);
  EXPECT_NEAR(factor(fitted.ppy3, fitted.ppy4), factor(truth.ppy3, truth.ppy4), 0.01);
  KFitChannelStats pure[KCH_COUNT];  // each channel on its own sweeps (the data has no combined slip)
  KFitEvaluate(fitted, data, pure, true);
  EXPECT_LT(pure[KCH_FX].rmsPercent, 1.0);
  EXPECT_LT(pure[KCH_FY].rmsPercent, 1.0);
  EXPECT_LT(pure[KCH_MZ].rmsPercent, 2.0);

  for (KMeasuredPoint &m : data.points) m.pressure = m.pressure == p0 ? 0 : m.pressure;  // one pressure left
  KPacejka single;
  {
    ReportCapture quiet;
    ASSERT_TRUE(KFitTyre(data, o, &single, &result));
  }
  EXPECT_EQ(single.nompres, 0.0f);
  EXPECT_FALSE(KPacejkaHasPressure(single));
}

// The pure stages fit at one pressure set point: the tyre's nominal one, or
// the one nearest it when a start tyre's NOMPRES is not among the data's
// (none would leave those stages every point of every sweep).
TEST(Pressure, PureStagesFitAtTheSetPointNearestTheNominalPressure) {
  KMeasuredData data;
  for (double p : {240000.0, 204000.0, 204500.0, 239800.0}) {
    KMeasuredPoint m;
    m.fz = 4000, m.pressure = p;
    data.points.push_back(m);
  }
  KPacejka t;
  t.nompres = 260000.0f;
  EXPECT_NEAR(KFitStagePressure(data, t), 240000.0, 500.0);
  t.nompres = 200000.0f;
  EXPECT_NEAR(KFitStagePressure(data, t), 204000.0, 600.0);
  t.nompres = 0;
  EXPECT_EQ(KFitStagePressure(data, t), 0.0);  // no nominal pressure: every point
  for (KMeasuredPoint &m : data.points) m.pressure = 240000.0;
  t.nompres = 260000.0f;
  EXPECT_EQ(KFitStagePressure(data, t), 0.0);  // one pressure: every point
}
