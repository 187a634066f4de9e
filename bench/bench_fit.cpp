// The fitter's two heavy uses: converting a TIR file to Pacejka89/96
// (sampling plus three stages) and fitting 5,000 and 50,000 measured points
// to Magic Formula 6.1 from the built-in start (six stages), on one core and
// with the Jacobian's columns on every core. The time of one run is what a
// user waits for at the command line.
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

// Measured data for the MF6.1 fits: 8 loads × 3 cambers of pure and
// combined sweeps of sample.tir (more loads when more points are asked
// for), cut to `points`, 1 % noise.
KMeasuredData FitData(size_t points) {
  KPacejka *source = new KPacejka;
  LoadTir(source, "sample.tir");
  KMeasuredData data;
  int loads = 8;
  do {
    KSampleTyre(*source, KSamplePlanFor(*source, loads), &data);
    loads *= 2;
  } while (data.points.size() < points);
  data.points.resize(points);
  std::mt19937 rng(5000);
  std::normal_distribution<double> noise(0.0, 0.01);
  for (KMeasuredPoint &p : data.points)
    for (double &f : p.force) f *= 1.0 + noise(rng);
  delete source;
  return data;
}

// Arguments: the number of points, the threads of the Jacobian (1: one
// core; 0: one per core). Process CPU time, so every thread's time counts.
void BM_FitPointsToMF61(benchmark::State &state) {
  const KMeasuredData data = FitData(size_t(state.range(0)));
  KPacejka *out = new KPacejka;
  KFitOptions o;
  o.model = KPacejka::MF61;
  o.threads = int(state.range(1));
  KFitResult r;
  for (auto _ : state) benchmark::DoNotOptimize(KFitTyre(data, o, out, &r));
  state.counters["points"] = double(data.points.size());
  state.counters["iterations"] = r.iterations;
  state.counters["Fx_rms_pct"] = r.channel[KCH_FX].rmsPercent;
  state.counters["Fy_rms_pct"] = r.channel[KCH_FY].rmsPercent;
  state.counters["Mz_rms_pct"] = r.channel[KCH_MZ].rmsPercent;
  delete out;
}
BENCHMARK(BM_FitPointsToMF61)
    ->Args({5000, 1})
    ->Args({5000, 0})
    ->Args({50000, 1})
    ->ArgNames({"points", "threads"})
    ->Unit(benchmark::kSecond)
    ->Iterations(2)
    ->MeasureProcessCPUTime();

}  // namespace
