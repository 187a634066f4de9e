// Frame drawing: graphs, texts, overlays and ghosts.
#include "chart/frame.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "chart/frametexts.h"
#include "chart/graph.h"
#include "chart/oppoint.h"
#include "base/qelide.h"
#include "render/qrenderer.h"
#include "tyre/kpacejka_point.h"

float FrameLoadGhostAlpha(int i) {
  // Deliberately uneven: the two highest loads are not the faintest.
  if (i <= 2) return float(20 + 80 * i / 5) / 255.0f;
  return (i == 3 ? 100.0f : 80.0f) / 255.0f;
}

float FrameCamberGhostAlpha(int i) {
  return (50.0f - float(std::abs(i - 3)) / 6.0f * 60.0f) / 255.0f;
}

namespace {

// Ghost curves of the focused graph at five loads or six cambers: the
// current tyre's operating point with the load or the camber replaced as its
// setters would store them.
void PaintGhosts(QRenderer *r, const FrameState &st, int cx, int cy) {
  Graph *g = st.graphs[st.focus - 1];
  if (!g) return;
  const KPacejka &tyre = *g->GetCurrentTyre();
  const kpacejka::Point<float> own = tyre.GetStoredPoint();
  if (!st.ghostCamber) {
    float load = own.Fz * 1000.0f;
    for (int i = 0; i < 5; i++) {
      kpacejka::Point<float> at = own;
      at.Fz = at.FzPeak = kpacejka::StoredLoad(tyre, load * 7.0f * float(i) / 25.0f);
      g->SetAlpha(FrameLoadGhostAlpha(i));
      g->Sample(at);
      g->PaintCurve(r, cx, cy, true);
    }
  } else {
    for (int i = 0; i < 6; i++) {
      kpacejka::Point<float> at = own;
      at.camber = kpacejka::StoredCamber(tyre, (20.0f * float(i) / 5.0f - 10.0f) / CURVE_RAD2DEG);
      g->SetAlpha(FrameCamberGhostAlpha(i));
      g->Sample(at);
      g->PaintCurve(r, cx, cy, true);
    }
  }
}

// One line per tyre: a short stroke in the Fy graph's colour, then the
// label, shortened in the middle to the room of half the plot. It stands in
// the plot's lower left corner, which holds no range label and where the
// curves of a tyre with a friction below about 1.6 keep clear of the bottom
// rows, or else in the upper right corner, likewise free of labels, when
// fewer of the curves run there.
void PaintLegend(QRenderer *r, const FrameState &st, int cx, int cy) {
  if (!r->HasFont()) return;
  const int x0 = cx - Graph::X_ORIGIN + 6, room = Graph::X_ORIGIN - 6 - 8 - 30;
  auto width = [r](const std::string &t) { return r->MeasureText(t.c_str()); };
  std::vector<std::string> labels{QElideMiddle(st.label, room, width)};
  for (const FrameOverlay &o : st.overlays) labels.push_back(QElideMiddle(o.label, room, width));
  int widest = 0;
  for (const std::string &l : labels) widest = std::max(widest, width(l));
  const int rows = int(labels.size()), wid = 30 + widest, hgt = 16 * rows;
  QRect lowerLeft(x0, cy + Graph::Y_ORIGIN - 4 - hgt, wid, hgt);
  QRect upperRight(cx + Graph::X_ORIGIN - 6 - wid, cy - Graph::Y_ORIGIN + 4, wid, hgt);
  auto hits = [&](const QRect &box) {
    int n = FrameCurveHits(st.graphs, box, cx, cy);
    for (const FrameOverlay &o : st.overlays) n += FrameCurveHits(o.graphs, box, cx, cy);
    return n;
  };
  const QRect at = hits(upperRight) < hits(lowerLeft) ? upperRight : lowerLeft;
  auto line = [&](Graph *const *graphs, const std::string &label, int row) {
    Graph *g = graphs[CURVE_FY] ? graphs[CURVE_FY] : graphs[CURVE_FX];
    if (!g) return;
    int ty = at.y + 16 * row;
    QPointF stroke[2] = {{0.0f, 0.0f}, {24.0f, 0.0f}};
    r->Polyline(stroke, 2, QStroke{g->GetColor(), 1.0f, 2.0f, true}, at.x, ty + 7);
    r->DrawText(label.c_str(), at.x + 30, ty, g->GetColor());
  };
  line(st.graphs, labels[0], 0);
  for (size_t i = 0; i < st.overlays.size(); i++) line(st.overlays[i].graphs, labels[i + 1], int(i) + 1);
}

// Samples and draws each graph's main curve at full strength, at the
// tyre's own operating point or at `at` when given.
void PaintMainCurves(QRenderer *r, Graph *const *graphs, int cx, int cy, const OperatingPoint *at = nullptr) {
  for (int i = 0; i < CURVE_COUNT; i++) {
    Graph *g = graphs[i];
    if (!g) continue;
    g->SetAlpha(1.0f);
    if (at) g->Sample(OpStoredPoint(*g->GetCurrentTyre(), *at));
    else g->Sample();
    g->PaintCurve(r, cx, cy, false);
  }
}

}  // namespace

void FramePaint(QRenderer *r, const FrameState &st, const QRect &view) {
  char buf[128];
  int cx = view.x + view.wid / 2, cy = view.y + view.hgt / 2;
  int areaTop = view.y, areaBottom = view.y + view.hgt;

  if (r->HasFont() && st.graphs[CURVE_FX]) {
    snprintf(buf, sizeof buf, "Model: %s", st.graphs[CURVE_FX]->GetCurrentTyre()->GetModelName());
    r->DrawText(buf, view.x + 15, areaTop + 10, QColor(100, 100, 255, 255));
  }

  GraphPaintGrid(r, cx, cy);
  if (st.underlay) st.underlay(r);
  // A frame can come before the graphs exist: an error box raised during
  // the start-up runs the loop, and so the paint callback.
  PaintMainCurves(r, st.graphs, cx, cy);
  // The texts once all curves are known, so that the labels can keep off them.
  const bool xMinAbove = FrameXMinLabelsAbove(r, st.graphs, cx, cy);
  for (Graph *g : st.graphs)
    if (g) g->PaintTexts(r, cx, cy, areaTop, areaBottom, xMinAbove);
  for (const FrameOverlay &o : st.overlays) PaintMainCurves(r, o.graphs, cx, cy, o.hasPoint ? &o.point : nullptr);
  if (!st.overlays.empty()) PaintLegend(r, st, cx, cy);
  if (st.focus >= 1 && st.focus <= 3) PaintGhosts(r, st, cx, cy);
}
