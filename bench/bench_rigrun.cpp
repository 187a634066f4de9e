// A 40,000-row rig run (tyre/krigrun.h, the bundled Magic Formula 6.1 tyre
// at 66.7 samples a second), on one core: reading and conditioning its
// text form, reading its TYDEX form, and fitting the conditioned run to
// Magic Formula 6.1 from the built-in start, as `tyrograph-cli fit RUN
// --model mf61` does.
#include <benchmark/benchmark.h>

#include "diag/qdebug.h"
#include "tyre/kdataload.h"
#include "tyre/kfit.h"
#include "tyre/kpacejka.h"
#include "tyre/krigrun.h"

namespace {

int Quiet(const char *, const char *) { return 0; }

struct Texts {
  std::string text, tydex;
  size_t rows = 0;
};

const Texts &Run40k() {
  static Texts t = [] {
    Texts out;
    QReportHook e = qSetErrorHook(Quiet), d = qSetDebugHook(Quiet);
    KPacejka tyre;
    tyre.LoadFromTirFile(TYRO_SOURCE_DIR "/data/tyres/MagicFormula61_Parameters.tir");
    qSetErrorHook(e);
    qSetDebugHook(d);
    KRigRunPlan plan = KRigRunPlanFor(tyre);
    plan.rate = 66.7;
    KRunData run;
    KRigRun(tyre, plan, &run);
    out.text = KRigRunText(run, {"generated"});
    out.tydex = KRigRunTydex(run, {"generated"});
    out.rows = run.rows;
    return out;
  }();
  return t;
}

void BM_ReadAndCondition40kText(benchmark::State &state) {
  const Texts &t = Run40k();
  KDataLoad load;
  for (auto _ : state)
    benchmark::DoNotOptimize(KDataLoadText(t.text, "run.txt", KRunOptions(), KConditionOptions(), false, &load));
  state.counters["rows"] = double(t.rows);
  state.counters["points"] = double(load.data.points.size());
}
BENCHMARK(BM_ReadAndCondition40kText)->Unit(benchmark::kMillisecond);

void BM_ReadAndCondition40kTydex(benchmark::State &state) {
  const Texts &t = Run40k();
  KDataLoad load;
  for (auto _ : state)
    benchmark::DoNotOptimize(KDataLoadText(t.tydex, "run.tdx", KRunOptions(), KConditionOptions(), false, &load));
  state.counters["rows"] = double(t.rows);
}
BENCHMARK(BM_ReadAndCondition40kTydex)->Unit(benchmark::kMillisecond);

void BM_Fit40kRunToMF61(benchmark::State &state) {
  const Texts &t = Run40k();
  KDataLoad load;
  KDataLoadText(t.text, "run.txt", KRunOptions(), KConditionOptions(), false, &load);
  KPacejka *out = new KPacejka;
  KFitOptions o;
  o.model = KPacejka::MF61;
  o.threads = 1;  // one core: the Jacobian's columns on this thread alone
  KFitResult r;
  for (auto _ : state) benchmark::DoNotOptimize(KFitTyre(load.data, o, out, &r));
  state.counters["points"] = double(load.data.points.size());
  state.counters["iterations"] = r.iterations;
  state.counters["Fy_rms_pct"] = r.channel[KCH_FY].rmsPercent;
  delete out;
}
BENCHMARK(BM_Fit40kRunToMF61)->Unit(benchmark::kSecond)->Iterations(1);

}  // namespace
