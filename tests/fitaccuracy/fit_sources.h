// The bundled tyres the accuracy tests sweep, and the helpers they share:
// loading a source, the loads between fitted ones, measurement noise.
#pragma once

#include <algorithm>
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

// gtest prints a parameter through this.
inline void PrintTo(const FitSource &s, std::ostream *os) { *os << FitSourceName(s); }

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
