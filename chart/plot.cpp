// Plot kinds, overlay colours and the dispatch to the frame or a view.
#include "chart/plot.h"

#include <cmath>
#include <cstring>

#include "chart/graph.h"
#include "chart/views.h"
#include "tyre/kmeasured.h"
#include "render/qrenderer.h"

namespace {

const char *const KIND_NAMES[PLOT_KIND_COUNT] = {"curves", "ellipse", "mu-load", "stiffness"};

// Overlay tyre i: a dark and a light shade of one hue (Fx and Mz dark, Fy light).
const QColor OVERLAY_SHADES[][2] = {
    {QColor(0, 70, 200, 255), QColor(90, 150, 255, 255)},
    {QColor(190, 100, 0, 255), QColor(250, 170, 60, 255)},
    {QColor(120, 0, 160, 255), QColor(200, 110, 235, 255)},
    {QColor(0, 130, 130, 255), QColor(60, 200, 200, 255)},
};
constexpr int OVERLAY_COUNT = int(sizeof OVERLAY_SHADES / sizeof OVERLAY_SHADES[0]);

void Shades(QColor dark, QColor light, QColor out[CURVE_COUNT]) {
  out[CURVE_FX] = dark;
  out[CURVE_FY] = light;
  out[CURVE_MZ] = dark;
}

// The view of a main or overlaid tyre, at its own operating point or at
// `point` when given.
ViewTyre ViewOf(Graph *const graphs[CURVE_COUNT], const std::string &label, const OperatingPoint *point = nullptr) {
  const KPacejka &tyre = *graphs[CURVE_FX]->GetCurrentTyre();
  return ViewTyre{&tyre,
                  graphs[CURVE_FX]->GetRange(),
                  graphs[CURVE_FY]->GetRange(),
                  graphs[CURVE_FX]->GetColor(),
                  graphs[CURVE_FY]->GetColor(),
                  label,
                  point ? OpStoredPoint(tyre, *point) : tyre.GetStoredPoint()};
}

// Measured points under the three graphs, in each graph's colour, paler.
void PaintPoints(QRenderer *r, const FrameState &st, const QRect &view, const PlotPoints &pts) {
  int cx = view.x + view.wid / 2, cy = view.y + view.hgt / 2;
  r->ClipRect(QRect(cx - Graph::X_ORIGIN, cy - Graph::Y_ORIGIN, 2 * Graph::X_ORIGIN + 1, 2 * Graph::Y_ORIGIN + 1));
  for (int g = 0; g < CURVE_COUNT; g++) {
    const Graph *graph = st.graphs[g];
    if (!graph) continue;
    const CurveRange &range = graph->GetRange();
    QColor c = graph->GetColor();
    QColor faded((3 * c.GetR() + 2 * 255) / 5, (3 * c.GetG() + 2 * 255) / 5, (3 * c.GetB() + 2 * 255) / 5, 255);
    for (size_t i = 0; i < pts.x[g].size() && i < pts.y[g].size(); i++) {
      float u = (pts.x[g][i] - range.xMin) / (range.xMax - range.xMin);
      if (!(u >= 0.0f && u <= 1.0f) || !std::isfinite(pts.y[g][i])) continue;
      int px = cx - Graph::X_ORIGIN + int(std::lround(u * float(Graph::WIDTH)));
      int py = graph->SampleY(pts.y[g][i], cy);
      r->FillRect(QRect(px - 2, py - 2, 5, 5), faded);
    }
  }
  r->ClipNone();
}

}  // namespace

const char *PlotKindName(PlotKind kind) { return kind >= 0 && kind < PLOT_KIND_COUNT ? KIND_NAMES[kind] : "?"; }

bool PlotKindFind(const char *name, PlotKind *kind) {
  for (int k = 0; k < PLOT_KIND_COUNT; k++)
    if (strcmp(name, KIND_NAMES[k]) == 0) {
      *kind = PlotKind(k);
      return true;
    }
  return false;
}

std::string PlotKindList() {
  std::string list;
  for (int k = 0; k < PLOT_KIND_COUNT; k++) list += std::string(k ? ", " : "") + KIND_NAMES[k];
  return list;
}

void PlotOverlayColors(int i, QColor out[CURVE_COUNT]) {
  const QColor *s = OVERLAY_SHADES[((i % OVERLAY_COUNT) + OVERLAY_COUNT) % OVERLAY_COUNT];
  Shades(s[0], s[1], out);
}

void PlotReferenceColors(QColor out[CURVE_COUNT]) { Shades(QColor(110, 110, 110, 255), QColor(165, 165, 165, 255), out); }

int PlotPointsFromMeasured(const KMeasuredData &data, float load, float camber, PlotPoints *out) {
  int taken = 0;
  const double rad2deg = double(CURVE_RAD2DEG);
  for (const KMeasuredPoint &p : data.points) {
    if (std::fabs(p.fz - double(load)) > double(PLOT_DATA_LOAD_SHARE * load) ||
        std::fabs(p.gamma - double(camber)) * rad2deg > double(PLOT_DATA_ANGLE_DEG) || p.fz <= 0.0)
      continue;
    bool kappaSweep = std::fabs(p.alpha) * rad2deg <= double(PLOT_DATA_ANGLE_DEG);
    bool alphaSweep = std::fabs(p.kappa) <= double(PLOT_DATA_SLIP_RATIO);
    bool took = false;
    auto put = [&](int g, double x, double y) {
      out->x[g].push_back(float(x));
      out->y[g].push_back(float(y));
      took = true;
    };
    if (kappaSweep && data.has[KCH_FX]) put(CURVE_FX, p.kappa, p.force[KCH_FX] / p.fz);
    if (alphaSweep && data.has[KCH_FY]) put(CURVE_FY, p.alpha * rad2deg, p.force[KCH_FY] / p.fz);
    if (alphaSweep && data.has[KCH_MZ]) put(CURVE_MZ, p.alpha * rad2deg, p.force[KCH_MZ]);
    if (data.has[KCH_FX] && data.has[KCH_FY]) {
      out->fx.push_back(float(p.force[KCH_FX]));
      out->fy.push_back(float(p.force[KCH_FY]));
      took = true;
    }
    taken += took;
  }
  return taken;
}

Chart PlotChart(PlotKind kind, const FrameState &st, const PlotPoints *points) {
  std::vector<ViewTyre> tyres;
  if (st.graphs[CURVE_FX] && st.graphs[CURVE_FY]) tyres.push_back(ViewOf(st.graphs, st.overlays.empty() ? "" : st.label));
  for (const FrameOverlay &o : st.overlays)
    if (o.graphs[CURVE_FX] && o.graphs[CURVE_FY]) tyres.push_back(ViewOf(o.graphs, o.label, o.hasPoint ? &o.point : nullptr));
  switch (kind) {
    case PLOT_ELLIPSE: {
      Chart c = ViewEllipse(tyres);
      if (points && !points->fx.empty()) {
        // Behind the sweeps, in grey.
        ChartSeries m;
        m.points = true;
        m.color = QColor(150, 150, 150, 255);
        m.label = "measured";
        for (size_t i = 0; i < points->fx.size(); i++) {
          m.x.push_back(points->fx[i] / 1000.0f);
          m.y.push_back(points->fy[i] / 1000.0f);
        }
        c.series.insert(c.series.begin(), std::move(m));
      }
      return c;
    }
    case PLOT_MU_LOAD: return ViewMuLoad(tyres);
    case PLOT_STIFFNESS: return ViewStiffness(tyres);
    default: return Chart{};
  }
}

void PlotPaint(QRenderer *r, PlotKind kind, const FrameState &st, const QRect &view, const PlotPoints *points) {
  if (kind == PLOT_CURVES) {
    // Measured points over the grid, under the curves.
    if (!points || points->Empty()) {
      FramePaint(r, st, view);
      return;
    }
    FrameState with = st;
    with.underlay = [&](QRenderer *under) { PaintPoints(under, st, view, *points); };
    FramePaint(r, with, view);
    return;
  }
  ChartPaint(r, PlotChart(kind, st, points), view);
}
