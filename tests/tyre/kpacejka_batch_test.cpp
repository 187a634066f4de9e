// The batch against the setters plus Calculate, point by point: the exact
// path bit for bit, the 8- and 16-lane paths within their rounding, over every model,
// the bundled TIR files, clamped and NaN inputs.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "tests/base/capture.h"
#include "tests/tyre/tyre_fixtures.h"
#include "tyre/kpacejka_batch.h"

namespace {

struct Sweep {
  std::vector<float> fz, kappa, alpha, gamma;
  size_t size() const { return fz.size(); }
  void Add(float z, float k, float a, float g) {
    fz.push_back(z), kappa.push_back(k), alpha.push_back(a), gamma.push_back(g);
  }
};

// Loads, slips and cambers over and past the usual ranges, 1001 points (not
// a multiple of eight: the vector path's short last group is in it).
Sweep MakeSweep() {
  Sweep s;
  for (int i = 0; i < 1001; i++) {
    const float u = float(i) / 1000.0f;
    s.Add(500.0f + 9000.0f * u, -1.2f + 2.4f * float((i * 7) % 101) / 100.0f,
          -0.6f + 1.2f * float((i * 13) % 97) / 96.0f, -0.12f + 0.24f * float((i * 5) % 11) / 10.0f);
  }
  return s;
}

struct Results {
  std::vector<float> fx, fy, mz;
  explicit Results(size_t n) : fx(n), fy(n), mz(n) {}
};

Results RunCalculate(KPacejka &t, const Sweep &s) {
  Results r(s.size());
  for (size_t i = 0; i < s.size(); i++) {
    Evaluate(t, s.fz[i], s.kappa[i], s.alpha[i], s.gamma[i]);
    r.fx[i] = t.Fx, r.fy[i] = t.Fy, r.mz[i] = t.Mz;
  }
  return r;
}

Results RunBatch(const KPacejka &t, const Sweep &s, KBatchMode mode) {
  Results r(s.size());
  KPacejkaEvaluateBatch(t, s.size(), s.fz.data(), s.kappa.data(), s.alpha.data(), s.gamma.data(), r.fx.data(),
                        r.fy.data(), r.mz.data(), mode);
  return r;
}

uint32_t Bits(float v) {
  uint32_t b;
  memcpy(&b, &v, sizeof b);
  return b;
}

// Each tyre the batch is checked on: the test sets of every model, a
// negate_camber tyre with narrowed ranges (clamping), and the bundled TIRs.
struct NamedTyre {
  std::string name;
  void (*set)(KPacejka &) = nullptr;  // none: the bundled TIR file of that name

  void Apply(KPacejka &t) const {
    if (set) set(t);
    else t.LoadFromTirFile((TYRO_SOURCE_DIR "/data/tyres/" + name).c_str());
  }
};
const NamedTyre kTyres[] = {
    {"pac96", [](KPacejka &t) { SetTouringPac96(t); }},
    {"mf52", [](KPacejka &t) { SetTestMF(t, KPacejka::MF52); }},
    {"mf61", [](KPacejka &t) { SetTestMF(t, KPacejka::MF61); }},
    {"pac2006", [](KPacejka &t) { SetTestMF(t, KPacejka::PAC2006), t.a2 = t.b2 = 1500.0f; }},
    {"model 7 runs MF5.2", [](KPacejka &t) { SetTestMF(t, 7); }},
    {"pac96 clamped, negated camber",
     [](KPacejka &t) {
       SetTouringPac96(t);
       t.flags = KPacejka::NEGATE_CAMBER;
       t.fzMin = 1000.0f, t.fzMax = 7000.0f;
       t.slipRatioMin = -0.5f, t.slipRatioMax = 0.4f;
       t.slipAngleMin = -0.3f, t.slipAngleMax = 0.25f;
     }},
    {"MagicFormula52_Parameters.tir"}, {"MagicFormula61_Parameters.tir"}, {"MagicFormula62_Parameters.tir"},
    {"Generic_Pac02Tire.tir"}, {"mf_185_80R14.tir"}, {"335_65R22_5_G275MSA_60psi.tir"},
};

// The exact path bit for bit; a vector result may differ in its last bits,
// and more where the formula subtracts nearly equal terms: 4e-6 of the
// largest magnitude of that quantity over the sweep (a slip in degrees, a
// wrong wheel or a dropped sign is far beyond that).
TEST(Batch, BothPathsAgreeWithCalculate) {
  ReportCapture quiet;
  const Sweep s = MakeSweep();
  for (const NamedTyre &nt : kTyres) {
    KPacejka t;
    nt.Apply(t);
    const Results want = RunCalculate(t, s);
    const Results exact = RunBatch(t, s, KBATCH_EXACT), fast8 = RunBatch(t, s, KBATCH_LANES8),
                  fast16 = RunBatch(t, s, KBATCH_LANES16);
    const std::vector<float> Results::*q[3] = {&Results::fx, &Results::fy, &Results::mz};
    for (int k = 0; k < 3; k++) {
      double scale = 0;
      for (float v : want.*q[k]) scale = std::fmax(scale, std::fabs(double(v)));
      for (size_t i = 0; i < s.size(); i++) {
        ASSERT_EQ(Bits((exact.*q[k])[i]), Bits((want.*q[k])[i])) << nt.name << " quantity " << k << " at " << i;
        ASSERT_NEAR((fast8.*q[k])[i], (want.*q[k])[i], 4e-6 * scale + 1e-6)
            << nt.name << " quantity " << k << " at " << i;
        ASSERT_NEAR((fast16.*q[k])[i], (want.*q[k])[i], 4e-6 * scale + 1e-6)
            << nt.name << " quantity " << k << " at " << i << " (16 lanes)";
      }
    }
  }
}

// The tyre is taken const; that a point's result does not depend on its
// place in the batch is checked from Python (test_long_arrays_equal_their_slices).

TEST(Batch, NaNInputsGiveCalculatesZerosAndItsReports) {
  for (KBatchMode mode : {KBATCH_EXACT, KBATCH_LANES8, KBATCH_LANES16}) {
    KPacejka t;
    SetTestMF(t, KPacejka::MF52);
    KPacejka::RearmNaNReports();
    ReportCapture cap;
    const float nan = std::nanf("");
    const float fz[3] = {4000, nan, 4000}, kappa[3] = {0.1f, 0.1f, nan}, alpha[3] = {0.05f, 0.05f, 0.05f},
                gamma[3] = {nan, 0, 0};
    float fx[3], fy[3], mz[3];
    KPacejkaEvaluateBatch(t, 3, fz, kappa, alpha, gamma, fx, fy, mz, mode);
    for (int i = 0; i < 3; i++) {
      Evaluate(t, fz[i], kappa[i], alpha[i], gamma[i]);
      EXPECT_TRUE(Bits(fx[i]) == Bits(t.Fx) && Bits(fy[i]) == Bits(t.Fy) && Bits(mz[i]) == Bits(t.Mz))
          << mode << " " << i;
    }
    EXPECT_EQ(fx[1], 0.0f);  // a NaN load poisons every force: zeroed
    // The NaN reports once per quantity; the camber report once for the call
    // (and once more for the single Evaluate above with a NaN camber).
    size_t camberReports = 0;
    for (size_t at = 0; (at = cap.errors.find("not a NaN to camber", at)) != std::string::npos; at++) camberReports++;
    EXPECT_EQ(camberReports, 2u) << cap.errors;
    EXPECT_NE(cap.errors.find("Fx NaN detected in Pacejka; camber"), std::string::npos) << cap.errors;
    EXPECT_EQ(cap.errors.find("Fx NaN detected", cap.errors.find("Fx NaN detected") + 1), std::string::npos);
  }
  KPacejka::RearmNaNReports();
}

TEST(Batch, OnlyTheBadQuantityIsZeroedAndReported) {
  // An infinite Mz shift spoils the moment alone, in every lane.
  for (KBatchMode mode : {KBATCH_EXACT, KBATCH_LANES8, KBATCH_LANES16}) {
    KPacejka t;
    SetTouringPac96(t);
    t.c17 = INFINITY;
    KPacejka::RearmNaNReports();
    ReportCapture cap;
    const Sweep s = MakeSweep();
    const Results r = RunBatch(t, s, mode);
    const std::string reports = cap.errors;
    for (size_t i = 0; i < s.size(); i += 97) {
      EXPECT_EQ(r.mz[i], 0.0f) << i;
      Evaluate(t, s.fz[i], s.kappa[i], s.alpha[i], s.gamma[i]);
      if (mode == KBATCH_EXACT) EXPECT_EQ(Bits(r.fx[i]), Bits(t.Fx)) << i;
      else EXPECT_NEAR(r.fx[i], t.Fx, 4e-6 * 10000.0 + 1e-6) << i;  // the lanes' contract, Fx below 10 kN
      EXPECT_NE(r.fx[i], 0.0f) << i;
    }
    EXPECT_EQ(reports.find("Fx NaN"), std::string::npos) << reports;
    EXPECT_EQ(reports.find("Mz NaN detected in Pacejka; camber"), 0u) << mode << ": " << reports;
  }
  KPacejka::RearmNaNReports();
}

// Double inputs (not float values, and NaN, inf and out of float's range)
// give what the float call gives on them rounded, in every lane.
TEST(Batch, DoubleInputsEqualTheFloatCallOnTheRoundedInputsBitForBit) {
  ReportCapture quiet;
  std::vector<double> in[4];
  for (int i = 0; i < 1001; i++) {
    const double u = i / 1000.0 + 1e-9;
    const double odd[4] = {NAN, INFINITY, -1e300, 1e-300};
    for (int a = 0; a < 4; a++) in[a].push_back(i % 97 == a ? odd[(i / 97) % 4] : (a ? 0.3 : 9000.0) * (u - a * 0.2));
  }
  std::vector<float> rounded[4];
  for (int a = 0; a < 4; a++) rounded[a].assign(in[a].begin(), in[a].end());
  for (const int model : {KPacejka::PAC96, KPacejka::MF52, KPacejka::PAC2006, KPacejka::MF61})
    for (KBatchMode mode : {KBATCH_EXACT, KBATCH_LANES8, KBATCH_LANES16}) {
      KPacejka t;
      model == KPacejka::PAC96 ? SetTouringPac96(t) : SetTestMF(t, model);
      Results want(1001), got(1001);
      KPacejkaEvaluateBatch(t, 1001, rounded[0].data(), rounded[1].data(), rounded[2].data(), rounded[3].data(),
                            want.fx.data(), want.fy.data(), want.mz.data(), mode);
      KPacejkaEvaluateBatchDouble(t, 1001, in[0].data(), in[1].data(), in[2].data(), in[3].data(), got.fx.data(),
                                  got.fy.data(), got.mz.data(), mode);
      EXPECT_EQ(0, memcmp(want.fx.data(), got.fx.data(), 1001 * sizeof(float))) << model << " mode " << mode;
      EXPECT_EQ(0, memcmp(want.fy.data(), got.fy.data(), 1001 * sizeof(float))) << model << " mode " << mode;
      EXPECT_EQ(0, memcmp(want.mz.data(), got.mz.data(), 1001 * sizeof(float))) << model << " mode " << mode;
    }
  KPacejka::RearmNaNReports();
}

}  // namespace
