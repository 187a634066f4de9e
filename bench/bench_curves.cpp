// The model work of one frame of the window: three graphs of 290 samples,
// and with a force focus the five load or six camber ghost curves on top.
#include <benchmark/benchmark.h>

#include <string>

#include "chart/carload.h"
#include "chart/curves.h"
#include "chart/oppoint.h"
#include "tyre/kpacejka.h"

namespace {

struct Frame {
  KPacejka tyres[CURVE_COUNT];
  CurveRange ranges[CURVE_COUNT];
  Curve curves[CURVE_COUNT];
  explicit Frame(const char *source) {
    for (int g = 0; g < CURVE_COUNT; g++) {
      std::string error;
      CarLoadTyreSource(source, 0, &tyres[g], &error);
      OpApplyAll(&tyres[g], OperatingPoint());
      ranges[g] = CurveInitialRange(CurveKind(g));
      CurveApplyZoom(CurveKind(g), true, &ranges[g]);
    }
  }
  void Main() {
    for (int g = 0; g < CURVE_COUNT; g++) CurveSample(&tyres[g], CurveKind(g), ranges[g], &curves[g]);
  }
  // Ghosts of the Fy graph, as the frame draws them with focus Fy.
  void Ghosts(bool camber) {
    KPacejka *t = &tyres[CURVE_FY];
    Curve ghost;
    if (!camber) {
      float load = t->Fz * 1000.0f;
      for (int i = 0; i < 5; i++) {
        t->SetNormalLoad(load * 7.0f * float(i) / 25.0f);
        CurveSample(t, CURVE_FY, ranges[CURVE_FY], &ghost);
      }
      t->SetNormalLoad(load);
    } else {
      float saved = t->GetCamber();
      for (int i = 0; i < 6; i++) {
        t->SetCamber((20.0f * float(i) / 5.0f - 10.0f) / CURVE_RAD2DEG);
        CurveSample(t, CURVE_FY, ranges[CURVE_FY], &ghost);
      }
      t->SetCamber(saved);
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
