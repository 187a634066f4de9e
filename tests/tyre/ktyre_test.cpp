// The stateless core: it equals the setters plus Calculate bit for bit (the
// statistics included), leaves the tyre it evaluates as it was, and its
// batch gives each point its own lane's result at every lane count.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

#include "tests/base/capture.h"
#include "tests/tyre/tyre_fixtures.h"
#include "tyre/kpacejka_batch.h"
#include "tyre/ktyre.h"

namespace {

static_assert(std::is_trivially_copyable_v<KTyreParams> && std::is_standard_layout_v<KTyreParams>,
              "the coefficients are a plain value: copied by bytes, addressed by offset");

uint32_t Bits(float v) {
  uint32_t b;
  memcpy(&b, &v, sizeof b);
  return b;
}

// The coefficients of a test tyre of each model, with narrowed ranges and a
// negated camber on the last so the clamping and the sign take part.
std::vector<KTyreParams> TestTyres() {
  std::vector<KTyreParams> out;
  for (int model : {int(KPacejka::PAC96), int(KPacejka::MF52), int(KPacejka::PAC2006), int(KPacejka::MF61), 7, -1}) {
    KPacejka t;
    if (model == KPacejka::PAC96 || model == -1) SetTouringPac96(t);
    else SetTestMF(t, model);
    if (model == KPacejka::PAC2006) t.a2 = t.b2 = 1500.0f;
    if (model == -1) {
      t.flags = KPacejka::NEGATE_CAMBER;
      t.fzMin = 1000.0f, t.fzMax = 7000.0f;
      t.slipRatioMin = -0.5f, t.slipRatioMax = 0.4f;
      t.slipAngleMin = -0.3f, t.slipAngleMax = 0.25f;
    }
    out.push_back(t);
  }
  return out;
}

// Points over and past the usual ranges; each differs from its neighbours
// in every input, so a lane that read a neighbour's input would show.
std::vector<KOperatingPoint> TestPoints(int n) {
  std::vector<KOperatingPoint> p;
  for (int i = 0; i < n; i++) {
    const float u = float(i) / float(n);
    p.push_back({300.0f + 9000.0f * float((i * 37) % n) / float(n), -1.1f + 2.2f * float((i * 7) % 29) / 28.0f,
                 -0.6f + 1.2f * float((i * 13) % 31) / 30.0f, -0.12f + 0.24f * u});
  }
  return p;
}

// Two results the same to the bit, statistics and issues included.
void ExpectSameBits(const KTyreResult &a, const KTyreResult &b, const std::string &where) {
  const float KTyreResult::*f[] = {&KTyreResult::Fx, &KTyreResult::Fy, &KTyreResult::Mz, &KTyreResult::Bx,
                                   &KTyreResult::Cx, &KTyreResult::Dx, &KTyreResult::By, &KTyreResult::Cy,
                                   &KTyreResult::Dy, &KTyreResult::longStiffness,
                                   &KTyreResult::corneringStiffness, &KTyreResult::peakFx, &KTyreResult::peakFy};
  for (auto m : f) ASSERT_EQ(Bits(a.*m), Bits(b.*m)) << where;
  ASSERT_EQ(a.issues, b.issues) << where;
}

}  // namespace

// The core at a point gives what the setters and Calculate leave in the
// tyre, statistics included: a model that does not form a statistic keeps
// the one `previous` held, as Calculate keeps its member.
TEST(TyreCore, EqualsTheSettersAndCalculateBitForBit) {
  ReportCapture quiet;
  for (const KTyreParams &params : TestTyres()) {
    KPacejka t;
    static_cast<KTyreParams &>(t) = params;
    KTyreResult previous;
    for (const KOperatingPoint &p : TestPoints(300)) {
      t.SetNormalLoad(p.fz), t.SetSlipRatio(p.kappa), t.SetSlipAngle(p.alpha), t.SetCamber(p.gamma);
      t.Calculate();
      const KTyreResult r = KTyreEvaluate(params, p, &previous);
      KTyreResult fromTyre;
      fromTyre.Fx = t.Fx, fromTyre.Fy = t.Fy, fromTyre.Mz = t.Mz;
      fromTyre.Bx = t.Bx, fromTyre.Cx = t.Cx, fromTyre.Dx = t.Dx, fromTyre.By = t.By, fromTyre.Cy = t.Cy;
      fromTyre.Dy = t.Dy, fromTyre.longStiffness = t.longStiffness;
      fromTyre.corneringStiffness = t.corneringStiffness, fromTyre.peakFx = t.peakFx, fromTyre.peakFy = t.peakFy;
      fromTyre.issues = r.issues;
      ExpectSameBits(r, fromTyre, "model " + std::to_string(params.model) + " fz " + std::to_string(p.fz));
      previous = r;
    }
  }
  KPacejka::RearmNaNReports();
}

// Nothing in the core writes into the tyre: every byte of the coefficients
// is the same after thousands of evaluations, one by one and in batches of
// every width; and the core reports nothing itself.
TEST(TyreCore, EvaluatingChangesNoByteOfTheTyreAndReportsNothing) {
  for (KTyreParams params : TestTyres()) {
    params.c17 = params.pdy1 = NAN;  // the NaN guard fires on every point
    const KTyreParams &tyre = params;
    const KTyreParams before = tyre;
    ReportCapture cap;
    KPacejka::RearmNaNReports();
    const std::vector<KOperatingPoint> pts = TestPoints(257);
    for (const KOperatingPoint &p : pts) (void)KTyreEvaluate(tyre, p);
    std::vector<float> in[4], out[3];
    for (const KOperatingPoint &p : pts)
      in[0].push_back(p.fz), in[1].push_back(p.kappa), in[2].push_back(p.alpha), in[3].push_back(NAN);
    for (auto &o : out) o.resize(pts.size());
    for (KBatchMode mode : {KBATCH_EXACT, KBATCH_LANES8, KBATCH_LANES16}) {
      KBatchIssues issues;
      KTyreEvaluateBatch(tyre, pts.size(), in[0].data(), in[1].data(), in[2].data(), in[3].data(), out[0].data(),
                         out[1].data(), out[2].data(), mode, &issues);
      EXPECT_TRUE(issues.Any() && issues.badCamber) << mode;
    }
    EXPECT_EQ(0, memcmp(&before, &tyre, sizeof before)) << "model " << tyre.model;
    EXPECT_EQ(cap.joined, "");
  }
  KPacejka::RearmNaNReports();
}

// What the core found comes back as issues; KTyreReport makes the reports
// the setters and Calculate make, in their order.
TEST(TyreCore, IssuesReportAsTheSettersAndCalculateDo) {
  KPacejka t;
  SetTestMF(t, KPacejka::MF52);
  const KOperatingPoint bad{NAN, 0.1f, 0.05f, NAN};
  const KTyreResult r = KTyreEvaluate(t, bad);
  EXPECT_EQ(r.issues, KTyreResult::BAD_CAMBER | KTyreResult::ZEROED_FX | KTyreResult::ZEROED_FY |
                          KTyreResult::ZEROED_MZ);
  std::string viaCore, viaTyre;
  {
    KPacejka::RearmNaNReports();
    ReportCapture cap;
    KTyreReport(t, bad, r);
    viaCore = cap.joined;
  }
  {
    KPacejka::RearmNaNReports();
    ReportCapture cap;
    Evaluate(t, bad.fz, bad.kappa, bad.alpha, bad.gamma);
    viaTyre = cap.joined;
  }
  EXPECT_NE(viaCore.find("not a NaN to camber"), std::string::npos) << viaCore;
  EXPECT_EQ(viaCore, viaTyre);
  KPacejka::RearmNaNReports();
}

TEST(TyreCore, DefaultsAreTheCoefficientsOfANewTyre) {
  const KPacejka t;
  const KTyreParams d = KTyreDefaults();
  EXPECT_EQ(0, memcmp(&d, static_cast<const KTyreParams *>(&t), sizeof d));
}

// Every batch width against the scalar core: within the vector contract of
// kpacejka_batch_test.cpp; and each point of a batch of any length gives, to
// the bit, what the same width gives for that point alone (a lane that took
// a neighbour's input, or a short last group that read past its end, would
// not).
TEST(TyreCore, EachLaneTakesItsOwnPointAtEveryWidth) {
  ReportCapture quiet;
  const std::vector<KOperatingPoint> pts = TestPoints(53);
  std::vector<float> in[4];
  for (const KOperatingPoint &p : pts)
    in[0].push_back(p.fz), in[1].push_back(p.kappa), in[2].push_back(p.alpha), in[3].push_back(p.gamma);
  for (const KTyreParams &tyre : TestTyres()) {
    for (KBatchMode mode : {KBATCH_EXACT, KBATCH_LANES8, KBATCH_LANES16}) {
      // each point alone
      std::vector<float> alone[3];
      for (auto &a : alone) a.resize(pts.size());
      for (size_t i = 0; i < pts.size(); i++)
        KTyreEvaluateBatch(tyre, 1, &in[0][i], &in[1][i], &in[2][i], &in[3][i], &alone[0][i], &alone[1][i],
                           &alone[2][i], mode);
      // batches of every length from every start (full and short groups)
      for (size_t start : {size_t(0), size_t(3), size_t(16)}) {
        for (size_t n = 1; start + n <= pts.size(); n++) {
          std::vector<float> got[3];
          for (auto &g : got) g.assign(n, -1.0f);
          KTyreEvaluateBatch(tyre, n, &in[0][start], &in[1][start], &in[2][start], &in[3][start], got[0].data(),
                             got[1].data(), got[2].data(), mode);
          for (int q = 0; q < 3; q++)
            for (size_t i = 0; i < n; i++)
              ASSERT_EQ(Bits(got[q][i]), Bits(alone[q][start + i]))
                  << "model " << tyre.model << " mode " << mode << " n " << n << " point " << start + i;
        }
      }
      // against the scalar core
      for (int q = 0; q < 3; q++) {
        double scale = 0;
        std::vector<float> want;
        for (const KOperatingPoint &p : pts) {
          const KTyreResult r = KTyreEvaluate(tyre, p);
          want.push_back(q == 0 ? r.Fx : q == 1 ? r.Fy : r.Mz);
          scale = std::fmax(scale, std::fabs(double(want.back())));
        }
        for (size_t i = 0; i < pts.size(); i++) {
          if (mode == KBATCH_EXACT) {
            ASSERT_EQ(Bits(alone[q][i]), Bits(want[i]));
          }
          ASSERT_NEAR(alone[q][i], want[i], 4e-6 * scale + 1e-6) << "model " << tyre.model << " mode " << mode;
        }
      }
    }
  }
}

// The widths run the same SLEEF algorithms: sixteen lanes give the bits of
// eight, so a fit does not depend on the processor it runs on.
TEST(TyreCore, SixteenLanesGiveTheBitsOfEight) {
  if (KBatchLanes(KBATCH_LANES16) != 16) GTEST_SKIP() << "no AVX-512 here";
  ReportCapture quiet;
  const std::vector<KOperatingPoint> pts = TestPoints(4001);
  std::vector<float> in[4];
  for (const KOperatingPoint &p : pts)
    in[0].push_back(p.fz), in[1].push_back(p.kappa), in[2].push_back(p.alpha), in[3].push_back(p.gamma);
  for (const KTyreParams &tyre : TestTyres()) {
    std::vector<float> r8[3], r16[3];
    for (int q = 0; q < 3; q++) r8[q].resize(pts.size()), r16[q].resize(pts.size());
    KTyreEvaluateBatch(tyre, pts.size(), in[0].data(), in[1].data(), in[2].data(), in[3].data(), r8[0].data(),
                       r8[1].data(), r8[2].data(), KBATCH_LANES8);
    KTyreEvaluateBatch(tyre, pts.size(), in[0].data(), in[1].data(), in[2].data(), in[3].data(), r16[0].data(),
                       r16[1].data(), r16[2].data(), KBATCH_LANES16);
    for (int q = 0; q < 3; q++)
      EXPECT_EQ(0, memcmp(r8[q].data(), r16[q].data(), pts.size() * sizeof(float))) << "model " << tyre.model;
  }
}
