// Pictures without a window: a 1200 x 900 PNG of the three graphs with the
// Fy graph's load ghosts (sampling, Cairo drawing and PNG encoding and
// writing), and of the friction ellipse.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <memory>
#include <string>

#include "platform/cairo/qcairo.h"
#include "chart/carload.h"
#include "chart/graph.h"
#include "chart/oppoint.h"
#include "chart/plot.h"

namespace {

struct Graphs {
  std::unique_ptr<Graph> g[CURVE_COUNT];
  FrameState state;
  Graphs() {
    std::string car = std::string(TYRO_SOURCE_DIR) + "/data/cars/touring";
    for (int k = 0; k < CURVE_COUNT; k++) {
      g[k] = std::make_unique<Graph>(CurveKind(k), k ? g[k - 1].get() : nullptr);
      std::string error;
      CarLoadTyreSource(car.c_str(), 0, g[k]->GetTyre(0), &error);
      OpApplyAll(g[k]->GetTyre(0), OperatingPoint());
      g[k]->SetZoom(true);
      state.graphs[k] = g[k].get();
    }
    state.focus = 2;
    GraphApplyEmphasis(state.graphs, state.focus);
  }
};

void Png(benchmark::State &bs, PlotKind kind) {
  Graphs gr;
  std::string path = "/tmp/tyro_bench_plot_" + std::to_string(getpid()) + ".png", error;
  for (auto _ : bs) {
    bool ok = QCairoWriteFile(path, 1200, 900, PLOT_WIDTH, PLOT_HEIGHT, [&](QRenderer *r) {
      PlotPaint(r, kind, gr.state, QRect(0, 0, PLOT_WIDTH, PLOT_HEIGHT), nullptr);
    }, &error);
    if (!ok) bs.SkipWithError(error.c_str());
  }
  unlink(path.c_str());
}

void BM_PlotCurvesPng1200x900(benchmark::State &bs) { Png(bs, PLOT_CURVES); }
void BM_PlotEllipsePng1200x900(benchmark::State &bs) { Png(bs, PLOT_ELLIPSE); }

}  // namespace

BENCHMARK(BM_PlotCurvesPng1200x900)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PlotEllipsePng1200x900)->Unit(benchmark::kMillisecond);
