// tyrograph-cli plot: the window's graphs, or one of the views beside them,
// as a PNG, SVG or PDF file, drawn by the same code as the window.
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "cli/cli.h"
#include "cli/tyreopts.h"
#include "platform/cairo/qcairo.h"
#include "chart/graph.h"
#include "chart/plot.h"
#include "tyre/kmeasured.h"

namespace {


struct PlotOptions {
  std::string out;
  std::string data;  // measured points, CSV
  PlotKind kind = PLOT_CURVES;
  int wid = PLOT_WIDTH, hgt = PLOT_HEIGHT;
  int focus = 0;
  bool ghostCamber = false;
};

// One tyre's three graphs, as the window keeps them.
struct TyreGraphs {
  std::unique_ptr<Graph> g[CURVE_COUNT];
  std::string label;
};

bool Bad(const char *what, const std::string &value, const char *expected) {
  fprintf(stderr, "tyrograph-cli plot: %s: '%s' is not %s\n", what, value.c_str(), expected);
  return false;
}

bool ParseSize(const std::string &text, int *wid, int *hgt) {
  int w = 0, h = 0;
  char extra;
  if (sscanf(text.c_str(), "%dx%d%c", &w, &h, &extra) != 2 || w < 16 || h < 16 || w > 10000 || h > 10000)
    return Bad("--size", text, "WxH with sizes 16..10000");
  *wid = w, *hgt = h;
  return true;
}

bool ParseOwn(const std::vector<std::string> &rest, PlotOptions *o) {
  for (size_t i = 0; i < rest.size(); i++) {
    const std::string &opt = rest[i];
    const std::string val = i + 1 < rest.size() ? rest[i + 1] : "";
    if (opt == "-o") {
      o->out = val;
    } else if (opt == "--kind") {
      if (!PlotKindFind(val.c_str(), &o->kind)) {
        fprintf(stderr, "tyrograph-cli plot: --kind: '%s' is none of %s\n", val.c_str(), PlotKindList().c_str());
        return false;
      }
    } else if (opt == "--size") {
      if (!ParseSize(val, &o->wid, &o->hgt)) return false;
    } else if (opt == "--focus") {
      static const char *const names[] = {"none", "fx", "fy", "mz"};
      o->focus = -1;
      for (int f = 0; f < 4; f++)
        if (val == names[f]) o->focus = f;
      if (o->focus < 0) return Bad("--focus", val, "none, fx, fy or mz");
    } else if (opt == "--data") {
      o->data = val;
    } else if (opt == "--ghosts") {
      if (val != "load" && val != "camber") return Bad("--ghosts", val, "load or camber");
      o->ghostCamber = val == "camber";
    } else {
      fprintf(stderr, "tyrograph-cli plot: unknown option '%s'\n", opt.c_str());
      return false;
    }
    i++;
  }
  QCairoFormat format;
  if (o->out.empty()) {
    fprintf(stderr, "tyrograph-cli plot: no output file: give -o OUT.png, OUT.svg or OUT.pdf\n");
    return false;
  }
  if (!QCairoFormatOf(o->out, &format)) {
    fprintf(stderr, "tyrograph-cli plot: %s: unsupported extension (.png, .svg or .pdf)\n", o->out.c_str());
    return false;
  }
  return true;
}

// Positions of the TYRE arguments: the words that are neither options nor
// their values.
std::vector<size_t> SourcePositions(const std::vector<std::string> &args) {
  static const char *const valued[] = {"--wheel", "--load", "--slip-ratio", "--slip-angle", "--camber", "--pressure", "--zoom",
                                       "--set", "-o", "--kind", "--size", "--focus", "--ghosts", "--data"};
  std::vector<size_t> out;
  for (size_t i = 0; i < args.size(); i++) {
    bool isValued = false;
    for (const char *v : valued) isValued = isValued || args[i] == v;
    if (isValued)
      i++;
    else if (args[i].size() < 2 || args[i][0] != '-')
      out.push_back(i);
  }
  return out;
}

// The legend names a file by its name, a car by its folder's name and wheel.
std::string Label(const std::string &source, int wheel) {
  std::string path = source;
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  std::string lower;
  for (char c : path) lower += char(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
  auto endsWith = [&](const char *tail) {
    size_t n = strlen(tail);
    return lower.size() >= n && lower.compare(lower.size() - n, n, tail) == 0;
  };
  bool tir = endsWith(".tir");
  if (endsWith("/car.ini")) path.resize(path.size() - 8);
  size_t slash = path.rfind('/');
  std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
  return tir ? name : name + ", wheel " + std::to_string(wheel);
}

bool LoadGraphs(const CliTyreState &st, const std::string &source, int index, TyreGraphs *tg) {
  QColor overlay[CURVE_COUNT];
  PlotOverlayColors(index - 1, overlay);
  for (int k = 0; k < CURVE_COUNT; k++) {
    tg->g[k] = std::make_unique<Graph>(CurveKind(k), k ? tg->g[k - 1].get() : nullptr);
    // The graphs share the tyre: loaded (with the point and the edits) into
    // the first; the later loads only say what loading reports, once per
    // graph as the window's do.
    KPacejka reports;
    if (!CliLoadTyreInto("plot", st, source, k ? &reports : tg->g[k]->GetTyre(0))) return false;
    tg->g[k]->SetZoom(st.zoom);
    if (index > 0) tg->g[k]->SetColor(overlay[k]);
  }
  tg->label = Label(source, st.wheel);
  return true;
}

int RunPlot(const std::vector<std::string> &args) {
  if (CliWantsHelp("plot", args,
                   "[TYRE...] -o OUT.png|.svg|.pdf [--kind curves|ellipse|mu-load|stiffness]\n"
                   "  [--size WxH (700x500)] [--focus none|fx|fy|mz] [--ghosts load|camber] [--data FILE.csv]"))
    return 0;
  // The shared parser takes one TYRE: it gets the arguments without the others.
  std::vector<size_t> at = SourcePositions(args);
  std::vector<std::string> sources, kept, rest;
  for (size_t i = 0, n = 0; i < args.size(); i++) {
    bool isSource = n < at.size() && at[n] == i;
    if (isSource) sources.push_back(args[i]);
    if (!isSource || n == 0) kept.push_back(args[i]);
    n += isSource;
  }
  auto st = std::make_unique<CliTyreState>();
  PlotOptions o;
  if (!CliParseTyreArgs("plot", kept, {"-o", "--kind", "--size", "--focus", "--ghosts", "--data"}, st.get(), &rest) ||
      !ParseOwn(rest, &o))
    return 2;

  std::vector<TyreGraphs> tyres(sources.size());
  for (size_t i = 0; i < sources.size(); i++)
    if (!LoadGraphs(*st, sources[i], int(i), &tyres[i])) return 2;
  FrameState state;
  for (int k = 0; k < CURVE_COUNT; k++) state.graphs[k] = tyres[0].g[k].get();
  state.focus = o.focus;
  state.ghostCamber = o.ghostCamber;
  state.label = tyres[0].label;
  GraphApplyEmphasis(state.graphs, o.focus);
  for (size_t i = 1; i < tyres.size(); i++) {
    FrameOverlay ov;
    for (int k = 0; k < CURVE_COUNT; k++) ov.graphs[k] = tyres[i].g[k].get();
    ov.label = tyres[i].label;
    state.overlays.push_back(ov);
  }

  // Measured points: the reader names file, line and column of a problem.
  PlotPoints points;
  if (!o.data.empty()) {
    KMeasuredData data;
    if (!KMeasuredRead(o.data.c_str(), &data)) return 2;
    if (PlotPointsFromMeasured(data, st->point.load, st->point.camber / CURVE_RAD2DEG, &points) == 0)
      fprintf(stderr, "tyrograph-cli plot: %s: no measured point near load %g N and camber %g deg\n", o.data.c_str(),
              double(st->point.load), double(st->point.camber));
  }

  std::string error;
  bool ok = QCairoWriteFile(
      o.out, o.wid, o.hgt, PLOT_WIDTH, PLOT_HEIGHT,
      [&](QRenderer *r) { PlotPaint(r, o.kind, state, QRect(0, 0, PLOT_WIDTH, PLOT_HEIGHT), &points); }, &error);
  QCairoReleaseCaches();
  if (!ok) {
    fprintf(stderr, "tyrograph-cli plot: %s\n", error.c_str());
    return 2;
  }
  return 0;
}

CliCommand reg{"plot", "TYRE [TYRE...] -o OUT.png|.svg|.pdf [--kind KIND] [--size WxH] [POINT]",
               "the window's graphs or a view (ellipse, mu-load, stiffness) as a picture", 45, RunPlot};

}  // namespace
