// The model work of one frame of the window: three graphs of 290 samples,
// and with a force focus the five load or six camber ghost curves on top.
#include <benchmark/benchmark.h>

#include <string>

#include "chart/carload.h"
#include "chart/curves.h"
#include "chart/oppoint.h"
#include "tyre/kpacejka.h"
#include "tyre/kpacejka_point.h"

namespace {

struct Frame {
  KPacejka tyre;
  CurveRange ranges[CURVE_COUNT];
  Curve curves[CURVE_COUNT];
  explicit Frame(const char *source) {
    std::string error;
    CarLoadTyreSource(source, 0, &tyre, &error);
    OpApplyAll(&tyre, OperatingPoint());
    for (int g = 0; g < CURVE_COUNT; g++) {
      ranges[g] = CurveInitialRange(CurveKind(g));
      CurveApplyZoom(CurveKind(g), true, &ranges[g]);
    }
  }
  void Main() {
    for (int g = 0; g < CURVE_COUNT; g++) CurveSample(tyre, tyre.GetStoredPoint(), CurveKind(g), ranges[g], &curves[g]);
  }
  // Ghosts of the Fy graph, as the frame draws them with focus Fy.
  void Ghosts(bool camber) {
    const kpacejka::Point<float> own = tyre.GetStoredPoint();
    Curve ghost;
    for (int i = 0; i < (camber ? 6 : 5); i++) {
      kpacejka::Point<float> at = own;
      if (camber) at.camber = kpacejka::StoredCamber(tyre, (20.0f * float(i) / 5.0f - 10.0f) / CURVE_RAD2DEG);
      else at.Fz = at.FzPeak = kpacejka::StoredLoad(tyre, own.Fz * 1000.0f * 7.0f * float(i) / 25.0f);
      CurveSample(tyre, at, CURVE_FY, ranges[CURVE_FY], &ghost);
    }
    benchmark::DoNotOptimize(ghost);
  }
};

std::string Source(int which) {
  return std::string(TYRO_SOURCE_DIR) +
         (which == 0 ? "/data/cars/touring" : "/data/tyres/MagicFormula61_Parameters.tir");
}

void BM_FrameCurves(benchmark::State &state) {
  Frame f(Source(int(state.range(0))).c_str());
  for (auto _ : state) {
    f.Main();
    benchmark::DoNotOptimize(f.curves);
  }
}

void BM_FrameCurvesLoadGhosts(benchmark::State &state) {
  Frame f(Source(int(state.range(0))).c_str());
  for (auto _ : state) {
    f.Main();
    f.Ghosts(false);
  }
}

void BM_FrameCurvesCamberGhosts(benchmark::State &state) {
  Frame f(Source(int(state.range(0))).c_str());
  for (auto _ : state) {
    f.Main();
    f.Ghosts(true);
  }
}

}  // namespace

// Argument 0: the Pacejka89/96 sample car; 1: a Magic Formula 6.1 TIR file.
BENCHMARK(BM_FrameCurves)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_FrameCurvesLoadGhosts)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_FrameCurvesCamberGhosts)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
