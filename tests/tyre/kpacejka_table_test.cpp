// The member table: fit bounds hold every bundled tyre and each fitted
// coefficient sits in the group whose force it really shapes.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "base/qinfo.h"
#include "tyre/kpacejka.h"
#include "tyre_fixtures.h"

namespace fs = std::filesystem;
using K = KPacejkaMember;

namespace {

// ---- Bundled tyres ----------------------------------------------------------------

struct Bundled {
  std::string label;
  std::unique_ptr<KPacejka> tyre;
};

std::vector<std::string> FilesIn(const std::string &dir, const std::string &ext) {
  std::vector<std::string> out;
  if (!fs::is_directory(dir)) return out;
  for (const auto &e : fs::directory_iterator(dir))
    if (e.path().extension() == ext) out.push_back(e.path().string());
  std::sort(out.begin(), out.end());
  return out;
}

// Every tyre the project ships: the four wheels of each sample car (the
// Pacejka89/96 sets and an imported TIR file) and each TIR file.
std::vector<Bundled> BundledTyres() {
  std::vector<Bundled> all;
  for (const auto &car : FilesIn(TYRO_SOURCE_DIR "/data/cars", "")) {
    const std::string ini = car + "/car.ini";
    if (!fs::exists(ini)) continue;
    QInfo info(ini.c_str());
    for (int w = 0; w < 4; w++) {
      auto t = std::make_unique<KPacejka>();
      char path[32];
      snprintf(path, sizeof path, "wheel%d.pacejka", w);
      t->Load(&info, path);
      all.push_back({ini + " " + path, std::move(t)});
    }
  }
  for (const auto &f : FilesIn(TYRO_SOURCE_DIR "/data/tyres", ".tir")) {
    auto t = std::make_unique<KPacejka>();
    t->LoadFromTirFile(f.c_str());
    all.push_back({f, std::move(t)});
  }
  return all;
}

// The coefficient set a tyre carries: model 0 its own, every Magic Formula
// tyre the whole Magic Formula set (TIR files carry all of it, whichever
// model the import picks).
bool CarriesSet(const K &m, int model) {
  if (model == KPacejka::PAC96) return m.family == K::PAC96_FAMILY;
  return m.family != K::PAC96_FAMILY && m.family != K::ANY;
}

TEST(KPacejkaTable, FitBoundsHoldEveryBundledTyre) {
  const std::vector<Bundled> tyres = BundledTyres();
  ASSERT_GE(tyres.size(), 16u + 7u);  // 4 cars x 4 wheels, 7 TIR files
  int checked = 0;
  for (const Bundled &b : tyres) {
    for (int i = 0; i < kpacejkaMemberCount; i++) {
      const K &m = kpacejkaMembers[i];
      if (!KPacejkaIsFitted(m) || !CarriesSet(m, b.tyre->model)) continue;
      const double v = KPacejkaGetMember(*b.tyre, m);
      EXPECT_TRUE(v >= m.fitMin && v <= m.fitMax)
          << b.label << ": " << m.name << " = " << v << " outside [" << m.fitMin << ", " << m.fitMax << "]";
      checked++;
    }
  }
  EXPECT_GT(checked, 1000);
}

// ---- Groups by effect -----------------------------------------------------------
// Each fitted coefficient is nudged and the three outputs compared bit for
// bit under pure and combined slip: a pure-slip coefficient must move its own
// force under pure slip, a combined one must leave pure slip alone and move
// combined slip, and nothing may move another force's pure-slip curve.

struct Outputs {
  std::vector<float> Fx, Fy, Mz;
};

enum Sweep { PURE_LONG, PURE_LAT, COMBINED };

Outputs Sample(KPacejka &t, Sweep sweep) {
  Outputs o;
  for (double Fz : {2000.0, 4500.0, 7000.0})
    for (double gamma : {-0.06, 0.0, 0.05})
      for (double s : {-0.3, -0.08, -0.02, 0.015, 0.06, 0.25}) {
        const double kappa = sweep == PURE_LAT ? 0.0 : s;
        const double alpha = sweep == PURE_LONG ? 0.0 : (sweep == COMBINED ? -0.7 * s : s);
        Evaluate(t, Fz, kappa, alpha, gamma);
        o.Fx.push_back(t.Fx);
        o.Fy.push_back(t.Fy);
        o.Mz.push_back(t.Mz);
      }
  return o;
}

bool Differ(const std::vector<float> &a, const std::vector<float> &b) {
  return memcmp(a.data(), b.data(), a.size() * sizeof(float)) != 0;
}

// Pacejka2006 limits its forces with the Pacejka89/96 a2 and b2, so it gets
// both sets (without them every force is limited to 0).
void SetTyre(KPacejka &t, int model) {
  if (model == KPacejka::PAC96 || model == KPacejka::PAC2006) SetTouringPac96(t);
  if (model != KPacejka::PAC96) SetTestMF(t, model);
}

// What each group's coefficients do to the three outputs under each sweep.
struct Expect {
  bool pureLongFx, pureLatFy, combFx, combFy;  // must change
  bool keepPureLongFx, keepPureLatFy, keepFx, keepFy, keepMz;  // must not change
};

Expect ExpectFor(K::Group g) {
  switch (g) {
    case K::PURE_FX: return {true, false, false, false, false, true, false, false, false};
    case K::PURE_FY: return {false, true, false, false, true, false, false, false, false};
    case K::PURE_MZ: return {false, false, false, false, true, true, true, true, false};
    case K::COMBINED_FX: return {false, false, true, false, true, true, false, true, false};
    case K::COMBINED_FY: return {false, false, false, true, true, true, true, false, false};
    default: return {false, false, false, false, true, true, true, true, false};  // COMBINED_MZ
  }
}

TEST(KPacejkaTable, FittedCoefficientsShapeTheirOwnGroup) {
  for (int model : {KPacejka::PAC96, KPacejka::MF52, KPacejka::PAC2006, KPacejka::MF61}) {
    KPacejka base;
    SetTyre(base, model);
    const Outputs ref[3] = {Sample(base, PURE_LONG), Sample(base, PURE_LAT), Sample(base, COMBINED)};
    int seen = 0;
    for (int g = K::PURE_FX; g <= K::COMBINED_MZ; g++) {
      const K *members[64];
      const int n = KPacejkaFittedMembers(model, K::Group(g), members, 64);
      ASSERT_LE(n, 64);
      const Expect e = ExpectFor(K::Group(g));
      for (int i = 0; i < n; i++) {
        const K &m = *members[i];
        KPacejka t;
        SetTyre(t, model);
        float *p = KPacejkaFloat(t, m);
        *p += 0.1f * fabsf(*p) + 0.01f;
        const Outputs lo = Sample(t, PURE_LONG), la = Sample(t, PURE_LAT), co = Sample(t, COMBINED);
        const std::string what = std::string(KPacejka::GetModelName(model)) + " " + m.name + " (" +
                                 KPacejkaGroupName(m.group) + ")";
        EXPECT_TRUE(!e.pureLongFx || Differ(lo.Fx, ref[0].Fx)) << what << " leaves pure Fx alone";
        EXPECT_TRUE(!e.pureLatFy || Differ(la.Fy, ref[1].Fy)) << what << " leaves pure Fy alone";
        EXPECT_TRUE(!e.combFx || Differ(co.Fx, ref[2].Fx)) << what << " leaves combined Fx alone";
        EXPECT_TRUE(!e.combFy || Differ(co.Fy, ref[2].Fy)) << what << " leaves combined Fy alone";
        EXPECT_TRUE(!e.keepPureLongFx || !(Differ(lo.Fx, ref[0].Fx))) << what << " moves pure Fx";
        EXPECT_TRUE(!e.keepPureLatFy || !(Differ(la.Fy, ref[1].Fy))) << what << " moves pure Fy";
        EXPECT_TRUE(!e.keepFx || !(Differ(co.Fx, ref[2].Fx) || Differ(lo.Fx, ref[0].Fx))) << what << " moves Fx";
        EXPECT_TRUE(!e.keepFy || !(Differ(co.Fy, ref[2].Fy) || Differ(la.Fy, ref[1].Fy))) << what << " moves Fy";
        const bool mz = g == K::PURE_MZ || g == K::COMBINED_MZ;
        EXPECT_TRUE(!mz || Differ(co.Mz, ref[2].Mz) || Differ(la.Mz, ref[1].Mz)) << what << " leaves Mz alone";
        seen++;
      }
    }
    EXPECT_GT(seen, 40) << KPacejka::GetModelName(model);
  }
}

}  // namespace
