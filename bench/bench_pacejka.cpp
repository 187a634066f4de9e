// KPacejka::Calculate per model over a sweep of realistic operating points,
// each beside its "floor": exactly the single-precision library calls one
// evaluation of that model makes (sinf, cosf, atanf, expf, sqrtf), on
// arguments that vary like the model's. The ratio model/floor shows what the
// formula code costs on top of the maths library.
//
// Calls per evaluation:
//   Pac96          expf 2, atanf 7,  sinf 4
//   MF5.2 / MF6.1  expf 1, atanf 21, sinf 4, cosf 10, sqrtf 2
//   Pacejka2006    expf 1, atanf 21, sinf 5, cosf 11, sqrtf 2
//
// The batch (BM_Batch*) evaluates 100,000 points per iteration in SI units,
// one point at a time (exact), eight and sixteen at a time; its time per
// item compares with the single-point figures above (BM_Pac96 ... BM_Pac2006:
// the ratio of their items per second is the batch's speed-up).
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "tyre/kpacejka.h"
#include "tyre/kpacejka_batch.h"

namespace {

constexpr int POINTS = 512;

// Stored operating points (kN, percent, degrees) over the range a driver
// uses: 1-7 kN, slip ratio ±20 %, slip angle ±12°, camber ±3°.
struct Point {
  float Fz, kappa, alpha, gamma;
};

const std::vector<Point> &Sweep() {
  static std::vector<Point> pts = [] {
    std::vector<Point> v;
    unsigned s = 12345;
    auto rnd = [&s] {  // small LCG: the same sweep every run
      s = s * 1664525u + 1013904223u;
      return float(s >> 8) / float(1u << 24);
    };
    for (int i = 0; i < POINTS; i++)
      v.push_back({1.0f + 6.0f * rnd(), -20.0f + 40.0f * rnd(), -12.0f + 24.0f * rnd(),
                   -3.0f + 6.0f * rnd()});
    return v;
  }();
  return pts;
}

// ---- Tyres --------------------------------------------------------------------

void SetPac96(KPacejka &t) {
  const float v[46] = {1.55f, -55, 1450, 1900, 7.2f, 0.014f, -0.24f, 1.0f, -0.03f, -0.0013f,
                       -0.15f, -8.5f, -0.29f, 17.8f, -2.4f, 1.65f, -110, 1800, 23.3f, 410,
                       0.075f, 0, 0.055f, -0.024f, 0.014f, 0.26f, 0, 0, 2.2f, -4.3f, -4.4f,
                       -1.9f, -9.6f, 0.0225f, 0, 0.044f, -0.58f, 0.18f, 0.043f, 0.048f,
                       -0.0035f, -0.18f, 0.14f, -1.029f, 0.27f, -1.1f};
  for (int i = 0; i < 46; i++) t.Pac96(i) = v[i];
  t.model = KPacejka::PAC96;
}

// A real Magic Formula 6.1 set from the bundled TIR files.
void SetMF(KPacejka &t, int model) {
  t.LoadFromTirFile(TYRO_SOURCE_DIR "/data/tyres/MagicFormula61_Parameters.tir");
  t.model = model;
  t.a2 = t.b2 = 1200.0f;  // limits of Pacejka2006 read the Pacejka89/96 friction
}

void RunModel(benchmark::State &state, KPacejka &t) {
  const std::vector<Point> &pts = Sweep();
  int i = 0;
  for (auto _ : state) {
    const Point &p = pts[size_t(i)];
    i = (i + 1) & (POINTS - 1);
    t.Fz = t.FzPeak = p.Fz;
    t.slipPercentage = p.kappa;
    t.sideSlip = p.alpha;
    t.camber = p.gamma;
    t.Calculate();
    benchmark::DoNotOptimize(t.Fx);
    benchmark::DoNotOptimize(t.Fy);
    benchmark::DoNotOptimize(t.Mz);
  }
  state.SetItemsProcessed(int64_t(state.iterations()));
}

void BM_Pac96(benchmark::State &state) {
  KPacejka t;
  SetPac96(t);
  RunModel(state, t);
}

void BM_MF52(benchmark::State &state) {
  static KPacejka t;  // loaded once: the file read is not what is measured
  static bool loaded = (SetMF(t, KPacejka::MF52), true);
  (void)loaded;
  RunModel(state, t);
}

void BM_MF61(benchmark::State &state) {
  static KPacejka t;
  static bool loaded = (SetMF(t, KPacejka::MF61), true);
  (void)loaded;
  RunModel(state, t);
}

void BM_Pac2006(benchmark::State &state) {
  static KPacejka t;
  static bool loaded = (SetMF(t, KPacejka::PAC2006), true);
  (void)loaded;
  RunModel(state, t);
}

// ---- Floors ---------------------------------------------------------------------
// Arguments: the point's inputs in the units the models feed the functions
// (radians, fractions, scaled by typical B factors), each call on a different
// mix so nothing can be folded.

struct Args {
  float k, a, g, f;  // slip ratio, slip angle (rad), camber (rad), dfz-like load term
};

Args ArgsOf(const Point &p) {
  return {p.kappa * 0.01f, p.alpha * 0.017453292f, p.gamma * 0.017453292f, (p.Fz - 4.0f) * 0.25f};
}

void BM_Pac96Floor(benchmark::State &state) {
  const std::vector<Point> &pts = Sweep();
  int i = 0;
  for (auto _ : state) {
    const Point &p = pts[size_t(i)];
    i = (i + 1) & (POINTS - 1);
    float s = expf(-0.075f * p.Fz) + expf(-0.02f * p.Fz);
    s += sinf(1.65f * atanf(0.16f * p.kappa + 0.1f * atanf(0.16f * p.kappa)));
    s += sinf(2.0f * atanf(p.Fz * 0.14f));
    s += sinf(1.55f * atanf(0.2f * p.alpha + 0.1f * atanf(0.2f * p.alpha)));
    s += sinf(2.2f * atanf(0.3f * p.alpha + 0.1f * atanf(0.3f * p.alpha)));
    benchmark::DoNotOptimize(s);
  }
}

void MFFloor(benchmark::State &state, bool pac2006) {
  const std::vector<Point> &pts = Sweep();
  int i = 0;
  for (auto _ : state) {
    const Args x = ArgsOf(pts[size_t(i)]);
    i = (i + 1) & (POINTS - 1);
    float s = expf(0.3f * x.f);
    if (pac2006) s += sinf(x.g);
    // pure slip: two sine-arctangent curves and the cornering stiffness
    s += sinf(1.6f * atanf(20.0f * x.k - 0.3f * atanf(20.0f * x.k)));
    s += sinf(2.0f * atanf(1.0f + 0.2f * x.f));
    s += sinf(1.3f * atanf(10.0f * x.a - 0.5f * atanf(10.0f * x.a)));
    // aligning stiffness curvature term
    s += atanf(12.0f * x.a);
    // longitudinal weighting and its normaliser
    s += cosf(atanf(-9.0f * x.k));
    s += cosf(1.05f * atanf(0.05f * x.f - 0.4f * atanf(0.05f * x.f)));
    s += cosf(1.05f * atanf(12.0f * x.a - 0.4f * atanf(12.0f * x.a)));
    // lateral shift
    s += cosf(atanf(20.0f * x.a)) * sinf(1.9f * atanf(10.0f * x.k));
    // lateral weighting
    s += cosf(atanf(2.5f * (x.a - 0.01f)));
    s += cosf(1.05f * atanf(7.0f * x.k - 0.1f * atanf(7.0f * x.k)));
    s += cosf(1.05f * atanf(0.07f * x.f - 0.1f * atanf(0.07f * x.f)));
    // equivalent slips and the moment
    const float r = x.k * x.k * 4.0f;
    s += sqrtf(x.a * x.a + r) + sqrtf(x.a * x.a + r + 0.001f);
    s += cosf(x.a) + cosf(atanf(15.0f * x.a));
    s += cosf(1.2f * atanf(10.0f * x.a - 1.5f * atanf(10.0f * x.a)));
    if (pac2006) s += cosf(x.a + 0.003f);
    benchmark::DoNotOptimize(s);
  }
}

void BM_MFFloor(benchmark::State &state) { MFFloor(state, false); }
void BM_Pac2006Floor(benchmark::State &state) { MFFloor(state, true); }

// ---- Chained floors -----------------------------------------------------------------
// The same calls again, but each taking its argument from the results it
// depends on in the model (stiffness -> B -> curve -> weighting -> moment), so
// the floor has the model's dependency chains and only its arithmetic is
// missing. The plain floors above let every call overlap with every other.
// Like the models, the chained floors form their sine-arctangent curves side
// by side, a stage at a time, so independent chains overlap as they do in
// the model: the floor is what the model's own call order could reach.

inline float Curve(float B, float C, float E, float x) {
  const float Bx = B * x;
  return C * atanf(Bx - E * (Bx - atanf(Bx)));
}

struct CurveArgs {
  float B, C, E, x;
};

// Curve() of every entry, first the inner atanf of all, then the outer ones.
template <int N>
void SideBySide(const CurveArgs (&c)[N], float (&arg)[N]) {
  float Bx[N], inner[N];
  for (int i = 0; i < N; i++) {
    Bx[i] = c[i].B * c[i].x;
    inner[i] = atanf(Bx[i]);
  }
  for (int i = 0; i < N; i++) arg[i] = c[i].C * atanf(Bx[i] - c[i].E * (Bx[i] - inner[i]));
}

void BM_Pac96ChainedFloor(benchmark::State &state) {
  const std::vector<Point> &pts = Sweep();
  int i = 0;
  for (auto _ : state) {
    const Point &p = pts[size_t(i)];
    i = (i + 1) & (POINTS - 1);
    // B factors of the size the test tyre's have (about 0.17, 0.2 and 0.33 at
    // 4 kN; the moment's curvature is negative), so the library calls see
    // arguments of the same magnitudes as in the model and take the same paths
    const float By = 0.12f + 0.1f * sinf(2.0f * atanf(p.Fz * 0.14f));
    const float Bx = 0.2f * expf(-0.05f * p.Fz);
    const float Bz = 0.35f * expf(-0.02f * p.Fz);
    float arg[3];
    SideBySide({{Bx, 1.65f, 0.2f, p.kappa}, {By, 1.55f, 0.1f, p.alpha}, {Bz, 2.2f, -1.0f, p.alpha}},
               arg);
    const float Fx = sinf(arg[0]);
    const float Fy = sinf(arg[1]);
    const float Mz = sinf(arg[2]);
    benchmark::DoNotOptimize(Fx + Fy + Mz);
  }
}

void ChainedMFFloor(benchmark::State &state, bool pac2006) {
  const std::vector<Point> &pts = Sweep();
  int i = 0;
  for (auto _ : state) {
    const Args x = ArgsOf(pts[size_t(i)]);
    i = (i + 1) & (POINTS - 1);
    const float g = pac2006 ? sinf(x.g) : x.g;
    const float Kx = 20.0f * expf(0.3f * x.f);
    const float Ky = 15.0f * sinf(2.0f * atanf(1.0f + 0.2f * x.f + g));
    const float Et = 1.0f + 0.3f * atanf(Ky * 0.5f * x.a);
    const float Dr = pac2006 ? cosf(x.a + 0.003f) : 1.0f;
    // the weighting steps' arctangents side by side, then their cos/sin
    const float atanBxa = atanf(-9.0f * x.k);
    const float atanSVyka = atanf(20.0f * x.a);
    const float atanSVykk = atanf(10.0f * x.k);
    const float atanByk = atanf(2.5f * (x.a - 0.01f));
    const float Bxa = 12.0f * cosf(atanBxa);
    const float SVyk = cosf(atanSVyka) * sinf(1.9f * atanSVykk);
    const float Byk = 7.0f * cosf(atanByk);
    const float r = (Kx / Ky) * (Kx / Ky) * x.k * x.k;
    const float at = sqrtf(x.a * x.a + r), ar = sqrtf(x.a * x.a + r + 0.001f);
    float arg[7];
    SideBySide({{Kx, 1.6f, 0.3f, x.k},
                {Ky * 0.7f, 1.3f, -0.5f, x.a},
                {Bxa, 1.05f, -0.4f, 0.004f},
                {Bxa, 1.05f, -0.4f, x.a + 0.004f},
                {Byk, 1.05f, 0.1f, x.k + 0.01f},
                {Byk, 1.05f, 0.1f, 0.01f},
                {10.0f, 1.2f, Et, at}},
               arg);
    const float residual = cosf(atanf(15.0f * ar));
    const float Fx0 = sinf(arg[0]);
    const float Fy0 = sinf(arg[1]);
    const float Gxa = cosf(arg[3]) / cosf(arg[2]);
    const float Fx = Gxa * Fx0;
    const float Gyk = cosf(arg[4]) / cosf(arg[5]);
    const float Fy = Gyk * Fy0 + SVyk;
    const float ca = cosf(x.a);
    const float Mz = Dr * residual * ca - cosf(arg[6]) * ca * Fy + Fx;
    benchmark::DoNotOptimize(Fx + Fy + Mz);
  }
}

void BM_MFChainedFloor(benchmark::State &state) { ChainedMFFloor(state, false); }
void BM_Pac2006ChainedFloor(benchmark::State &state) { ChainedMFFloor(state, true); }

// ---- Batch --------------------------------------------------------------------------
// 100,000 points of the sweep above, repeated, in the units the batch takes.

constexpr size_t BATCH_POINTS = 100000;

struct SIPoints {
  std::vector<float> fz, kappa, alpha, gamma, fx, fy, mz;
};

const SIPoints &BatchInputs() {
  static SIPoints in = [] {
    SIPoints v;
    const std::vector<Point> &pts = Sweep();
    for (size_t i = 0; i < BATCH_POINTS; i++) {
      const Point &p = pts[i % POINTS];
      v.fz.push_back(p.Fz * 1000.0f);
      v.kappa.push_back(p.kappa * 0.01f);
      v.alpha.push_back(p.alpha * 0.017453292f);
      v.gamma.push_back(p.gamma * 0.017453292f);
    }
    return v;
  }();
  return in;
}

void RunBatch(benchmark::State &state, const KPacejka &t, KBatchMode mode) {
  const SIPoints &in = BatchInputs();
  std::vector<float> fx(BATCH_POINTS), fy(BATCH_POINTS), mz(BATCH_POINTS);
  for (auto _ : state) {
    KPacejkaEvaluateBatch(t, BATCH_POINTS, in.fz.data(), in.kappa.data(), in.alpha.data(), in.gamma.data(),
                          fx.data(), fy.data(), mz.data(), mode);
    benchmark::DoNotOptimize(fx.data());
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(int64_t(state.iterations()) * int64_t(BATCH_POINTS));
  const int lanes = KBatchLanes(mode);
  state.SetLabel(lanes == 1 ? "one at a time" : std::to_string(lanes) + " lanes");
}

const KPacejka &BatchTyre(int model) {
  static KPacejka tyres[4];
  static bool loaded = [] {
    SetPac96(tyres[KPacejka::PAC96]);
    for (int m : {KPacejka::MF52, KPacejka::PAC2006, KPacejka::MF61}) SetMF(tyres[m], m);
    return true;
  }();
  (void)loaded;
  return tyres[model];
}

void BM_BatchPac96(benchmark::State &state) { RunBatch(state, BatchTyre(KPacejka::PAC96), KBatchMode(state.range(0))); }
void BM_BatchMF52(benchmark::State &state) { RunBatch(state, BatchTyre(KPacejka::MF52), KBatchMode(state.range(0))); }
void BM_BatchMF61(benchmark::State &state) { RunBatch(state, BatchTyre(KPacejka::MF61), KBatchMode(state.range(0))); }
void BM_BatchPac2006(benchmark::State &state) {
  RunBatch(state, BatchTyre(KPacejka::PAC2006), KBatchMode(state.range(0)));
}

}  // namespace

BENCHMARK(BM_Pac96);
BENCHMARK(BM_Pac96Floor);
BENCHMARK(BM_Pac96ChainedFloor);
BENCHMARK(BM_MF52);
BENCHMARK(BM_MF61);
BENCHMARK(BM_MFFloor);
BENCHMARK(BM_MFChainedFloor);
BENCHMARK(BM_Pac2006);
BENCHMARK(BM_Pac2006Floor);
BENCHMARK(BM_Pac2006ChainedFloor);
// Argument: 0 exact (one point at a time), 1 fast (the widest lanes this
// processor has), 2 eight lanes, 3 sixteen lanes (the label says what ran).
#define BATCH_ARGS ->Arg(KBATCH_EXACT)->Arg(KBATCH_FAST)->Arg(KBATCH_LANES8)->Arg(KBATCH_LANES16)
BENCHMARK(BM_BatchPac96) BATCH_ARGS->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_BatchMF52) BATCH_ARGS->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_BatchMF61) BATCH_ARGS->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_BatchPac2006) BATCH_ARGS->Unit(benchmark::kMicrosecond);
