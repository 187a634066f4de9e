// The fitter's two heavy uses, each on one core: converting a TIR file to
// Pacejka89/96 (sampling plus three stages) and fitting 5,000 measured points
// to Magic Formula 6.1 from the built-in start (six stages). The time of one
// run is what a user waits for at the command line.
#include <benchmark/benchmark.h>

#include <random>

#include "diag/qdebug.h"
#include "tyre/kfit.h"
#include "tyre/ksample.h"

namespace {

int Quiet(const char *, const char *) { return 0; }

void LoadTir(KPacejka *t, const char *name) {
  QReportHook e = qSetErrorHook(Quiet), d = qSetDebugHook(Quiet);
  t->LoadFromTirFile((std::string(TYRO_SOURCE_DIR "/data/tyres/") + name).c_str());
  qSetErrorHook(e);
  qSetDebugHook(d);
}

void BM_ConvertTirToPac96(benchmark::State &state) {
  KPacejka *source = new KPacejka, *out = new KPacejka;
  LoadTir(source, "MagicFormula61_Parameters.tir");
  KFitOptions o;
  o.model = KPacejka::PAC96;
  KFitResult r;
  for (auto _ : state) benchmark::DoNotOptimize(KFitConvert(*source, o, out, &r));
  state.counters["iterations"] = r.iterations;
  state.counters["Fy_rms_pct"] = r.channel[KCH_FY].rmsPercent;
  delete source;
  delete out;
}
BENCHMARK(BM_ConvertTirToPac96)->Unit(benchmark::kSecond)->Iterations(2);

void BM_Fit5000PointsToMF61(benchmark::State &state) {
  KPacejka *source = new KPacejka, *out = new KPacejka;
  LoadTir(source, "sample.tir");
  // 8 loads × 3 cambers of pure and combined sweeps, cut to 5,000, 1 % noise
  KMeasuredData data;
  KSampleTyre(*source, KSamplePlanFor(*source, 8), &data);
  data.points.resize(5000);
  std::mt19937 rng(5000);
  std::normal_distribution<double> noise(0.0, 0.01);
  for (KMeasuredPoint &p : data.points)
    for (double &f : p.force) f *= 1.0 + noise(rng);
  KFitOptions o;
  o.model = KPacejka::MF61;
  KFitResult r;
  for (auto _ : state) benchmark::DoNotOptimize(KFitTyre(data, o, out, &r));
  state.counters["points"] = double(data.points.size());
  state.counters["iterations"] = r.iterations;
  state.counters["Mz_rms_pct"] = r.channel[KCH_MZ].rmsPercent;
  delete source;
  delete out;
}
BENCHMARK(BM_Fit5000PointsToMF61)->Unit(benchmark::kSecond)->Iterations(2);

}  // namespace
