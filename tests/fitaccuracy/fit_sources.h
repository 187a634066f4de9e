// The bundled tyres the accuracy tests sweep, and the helpers they share:
// loading a source, the loads between fitted ones, measurement noise.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <filesystem>
#include <ostream>
#include <random>
#include <string>
#include <vector>

#include "base/qinfo.h"
#include "tests/base/capture.h"
#include "tyre/kmeasured.h"
#include "tyre/kpacejka.h"

struct FitSource {
  std::string path;
  bool car;
};

// Every TIR file in data/tyres and every bundled car, by path.
inline std::vector<FitSource> BundledFitSources() {
  std::vector<FitSource> out;
  for (const auto &e : std::filesystem::directory_iterator(TYRO_SOURCE_DIR "/data/tyres"))
    if (e.path().extension() == ".tir") out.push_back({e.path().string(), false});
  for (const char *car : {"touring", "hmmwv", "wvp", "mf61"})
    out.push_back({std::string(TYRO_SOURCE_DIR "/data/cars/") + car + "/car.ini", true});
  std::sort(out.begin(), out.end(), [](const FitSource &a, const FitSource &b) { return a.path < b.path; });
  return out;
}

inline void LoadFitSource(const FitSource &s, KPacejka *t) {
  ReportCapture quiet;  // the TIR reader's notes on FITTYP
  if (!s.car) {
    t->LoadFromTirFile(s.path.c_str());
    return;
  }
  QInfo *info = new QInfo(s.path.c_str());
  t->Load(info, "wheel0.pacejka");
  delete info;
}

inline std::string FitSourceName(const FitSource &s) {
  return s.car ? std::filesystem::path(s.path).parent_path().filename().string()
               : std::filesystem::path(s.path).filename().string();
}

// The loads halfway between consecutive loads of `fitted`.
inline std::vector<double> LoadsBetween(const std::vector<double> &fitted) {
  std::vector<double> out;
  for (size_t i = 0; i + 1 < fitted.size(); i++) out.push_back(0.5 * (fitted[i] + fitted[i + 1]));
  return out;
}

// Gaussian noise of 1 % of each channel's peak, from a fixed seed.
inline void AddFitNoise(KMeasuredData *d, unsigned seed) {
  std::mt19937 rng(seed);
  std::normal_distribution<double> unit(0.0, 1.0);
  for (int ch = 0; ch < KCH_COUNT; ch++) {
    double peak = 0;
    for (const KMeasuredPoint &p : d->points) peak = std::max(peak, std::fabs(p.force[ch]));
    for (KMeasuredPoint &p : d->points) p.force[ch] += 0.01 * peak * unit(rng);
  }
}

// A perturbed copy of a tyre: the coefficients that set each curve's shape,
// height, slope and (for the moment) trail and residual torque, each scaled
// by a factor in 0.9 ... 1.1 drawn from `seed`.
inline void PerturbFitSource(KPacejka *t, unsigned seed) {
  static const char *const magic[] = {"pcx1", "pdx1", "pkx1", "pex1", "pcy1", "pdy1", "pky1",
                                      "pey1", "qbz1", "qcz1", "qdz1", "qez1", "qdz6"};
  static const char *const pac96[] = {"b0", "b2", "b4", "b8", "a0", "a2", "a3", "a7", "c0", "c2", "c4", "c9"};
  std::mt19937 rng(seed);
  std::uniform_real_distribution<double> factor(0.9, 1.1);
  auto scale = [&](const char *name) {
    const KPacejkaMember *m = KPacejkaFindMember(name);
    if (m) KPacejkaSetMember(*t, *m, KPacejkaGetMember(*t, *m) * factor(rng));
  };
  if (t->model == KPacejka::PAC96)
    for (const char *n : pac96) scale(n);
  else
    for (const char *n : magic) scale(n);
}

// The model family a fit of `source` takes: its own.
inline int FitFamilyOf(const KPacejka &source) {
  return source.model == KPacejka::PAC96 ? KPacejka::PAC96
         : source.model == KPacejka::MF52 ? KPacejka::MF52
                                           : KPacejka::MF61;
}

// gtest prints a parameter through this, and names its tests with this.
inline void PrintTo(const FitSource &s, std::ostream *os) { *os << FitSourceName(s); }
inline std::string FitSourceTestName(const testing::TestParamInfo<FitSource> &i) {
  std::string n = FitSourceName(i.param);
  for (char &c : n)
    if (!isalnum(static_cast<unsigned char>(c))) c = '_';
  return n;
}

// RMS limits, % of peak, per channel.
struct Limits {
  double fx, fy, mz;
};
// A case short of the general limits, named as its test names it, with the
// figure reached (and a little room); each table says why.
struct Known {
  const char *what;
  Limits limits;
};
// The limits of `what`: its row of `known`, else `general`.
template <size_t N>
Limits LimitsFor(const Known (&known)[N], const std::string &what, Limits general) {
  for (const Known &k : known)
    if (what == k.what) return k.limits;
  return general;
}
