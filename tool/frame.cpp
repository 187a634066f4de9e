// Frame drawing: graphs, ghosts and the selected coefficient's texts.
#include "tool/frame.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "tool/frametexts.h"
#include "tool/graph.h"
#include "tool/layout.h"
#include "tool/plot.h"
#include "tool/session.h"
#include "tool/settings.h"
#include "tool/tyreguard.h"
#include "base/qelide.h"
#include "ui/qrenderer.h"

float FrameLoadGhostAlpha(int i) {
  // Deliberately uneven: the two highest loads are not the faintest.
  if (i <= 2) return float(20 + 80 * i / 5) / 255.0f;
  return (i == 3 ? 100.0f : 80.0f) / 255.0f;
}

float FrameCamberGhostAlpha(int i) {
  return (50.0f - float(std::abs(i - 3)) / 6.0f * 60.0f) / 255.0f;
}

namespace {

// Ghost curves of the focused graph at five loads or six cambers. The tyre
// goes back to its own state through the guard.
void PaintGhosts(QRenderer *r, const FrameState &st, int cx, int cy) {
  Graph *g = st.graphs[st.focus - 1];
  if (!g) return;
  KPacejka *tyre = g->GetCurrentTyre();
  TyreStateGuard keep(tyre);
  if (!st.ghostCamber) {
    float load = tyre->Fz * 1000.0f;
    for (int i = 0; i < 5; i++) {
      tyre->SetNormalLoad(load * 7.0f * float(i) / 25.0f);
      g->SetAlpha(FrameLoadGhostAlpha(i));
      g->Sample();
      g->PaintCurve(r, cx, cy, true);
    }
  } else {
    for (int i = 0; i < 6; i++) {
      tyre->SetCamber((20.0f * float(i) / 5.0f - 10.0f) / CURVE_RAD2DEG);
      g->SetAlpha(FrameCamberGhostAlpha(i));
      g->Sample();
      g->PaintCurve(r, cx, cy, true);
    }
  }
}

// One line per tyre in the plot's lower left corner: a short stroke in the Fy
// graph's colour, then the label; moved left when the longest label would
// pass `right`, but never out of the plot (from `x` on).
void PaintLegend(QRenderer *r, const FrameState &st, int x, int y, int right) {
  if (!r->HasFont()) return;
  int widest = r->MeasureText(st.label.c_str());
  for (const FrameOverlay &o : st.overlays)
    if (r->MeasureText(o.label.c_str()) > widest) widest = r->MeasureText(o.label.c_str());
  if (x + 30 + widest > right) x = std::max(x, right - 30 - widest);
  auto line = [&](Graph *const *graphs, const std::string &label, int row) {
    Graph *g = graphs[CURVE_FY] ? graphs[CURVE_FY] : graphs[CURVE_FX];
    if (!g) return;
    int ty = y + 16 * row;
    QPointF stroke[2] = {{0.0f, 0.0f}, {24.0f, 0.0f}};
    r->Polyline(stroke, 2, QStroke{g->GetColor(), 1.0f, 2.0f, true}, x, ty + 7);
    r->DrawText(label.c_str(), x + 30, ty, g->GetColor());
  };
  line(st.graphs, st.label, 0);
  for (size_t i = 0; i < st.overlays.size(); i++) line(st.overlays[i].graphs, st.overlays[i].label, int(i) + 1);
}

// Samples and draws each graph's main curve at full strength; the tyres are
// left as they were.
void PaintMainCurves(QRenderer *r, Graph *const *graphs, int cx, int cy) {
  for (int i = 0; i < CURVE_COUNT; i++) {
    Graph *g = graphs[i];
    if (!g) continue;
    TyreStateGuard keep(g->GetCurrentTyre());
    g->SetAlpha(1.0f);
    g->Sample();
    g->PaintCurve(r, cx, cy, false);
  }
}

void PaintCoefficientTexts(QRenderer *r, int left, int top, int bandTop) {
  // Nothing is selected yet while the start-up still loads the car.
  if (!r->HasFont() || !session.edit.desc || !session.edit.unit) return;
  char buf[160];
  const QColor black(0, 0, 0, 255);
  snprintf(buf, sizeof buf, "%s: %s", session.edit.name, session.edit.desc);
  r->DrawText(buf, left, top, black);
  const char *unit = *session.edit.unit ? session.edit.unit : "(non-dimensional)";
  int textsRight = left + r->MeasureText(buf);
  snprintf(buf, sizeof buf, "Value: %.3f %s", double(SessionCoefficientValue()), unit);
  r->DrawText(buf, left, top + 16, black);
  FramePaintEntryNote(r, left + r->MeasureText(buf), top + 16);
  textsRight = std::max(textsRight, left + r->MeasureText(buf));
  if (!session.graphs[CURVE_FX] || session.graphs[CURVE_FX]->GetCurrentTyre()->model != 1) return;
  // Magic Formula 5.2: all scaling factors, beside these texts under the
  // operating-point sliders.
  FramePaintScaleList(r, *session.graphs[CURVE_FX]->GetCurrentTyre(), textsRight, bandTop);
}

}  // namespace

FrameState FrameStateFromSession() {
  FrameState st;
  for (int i = 0; i < CURVE_COUNT; i++) st.graphs[i] = session.graphs[i];
  st.focus = session.focus;
  st.ghostCamber = session.ghostCamber;
  if (session.reference[CURVE_FX] && session.graphs[CURVE_FX]) {
    // The reference tyre follows the operating point and the zoom.
    FrameOverlay ref;
    for (int i = 0; i < CURVE_COUNT; i++) {
      ref.graphs[i] = session.reference[i];
      OpApplyAll(session.reference[i]->GetCurrentTyre(), session.point);
      session.reference[i]->SetZoom(session.zoom);
    }
    ref.label = session.referenceLabel;
    st.label = session.lastTir.empty() ? session.car + ", wheel " + std::to_string(session.wheel) : session.lastTir;
    st.overlays.push_back(ref);
  }
  return st;
}

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
  for (const FrameOverlay &o : st.overlays) PaintMainCurves(r, o.graphs, cx, cy);
  // The lower left quarter holds no range label, and the curves of a tyre
  // with a friction below about 1.6 keep clear of its bottom rows.
  if (!st.overlays.empty()) {
    int rows = 1 + int(st.overlays.size());
    PaintLegend(r, st, cx - Graph::X_ORIGIN + 6, cy + Graph::Y_ORIGIN - 4 - 16 * rows, cx - 8);
  }
  if (st.focus >= 1 && st.focus <= 3) PaintGhosts(r, st, cx, cy);
}

void FramePaintGraphs(QRenderer *r, int viewWidth, int viewHeight) {
  r->BeginPicture(QColor(255, 255, 255, 255));
  QRect view(GRAPH_LEFT_MARGIN, GRAPH_TOP_MARGIN, viewWidth, viewHeight);
  PlotPaint(r, PlotKind(session.view), FrameStateFromSession(), view, nullptr);
  int cx = GRAPH_LEFT_MARGIN + viewWidth / 2;
  int areaTop = GRAPH_TOP_MARGIN, areaBottom = GRAPH_TOP_MARGIN + viewHeight;
  if (r->HasFont() && session.graphs[CURVE_FX]) FramePaintCarNote(r, view.x + 15, areaTop + 10);
  if (session.view == PLOT_CURVES) FramePaintOpLine(r, cx - Graph::X_ORIGIN, GRAPH_LEFT_MARGIN + viewWidth, areaBottom);
  const PanelLayout layout = LayoutCompute(viewWidth, viewHeight);
  const QRect lastSlider = layout.op[OP_SLIDERS - 1];
  PaintCoefficientTexts(r, 13, viewHeight + 72 + 4 * 21 + 4, lastSlider.y + lastSlider.hgt + 1);
  // The keys of the views, in the free corner under the wheel slider (the
  // band along the bottom edge holds a Magic Formula 5.2 tyre's scale list).
  // For a few seconds after F4 its line names the file written, and the
  // line under it the folder.
  if (r->HasFont()) {
    std::string hint[4];
    hint[0] = std::string("F2 view: ") + PlotKindName(PlotKind(session.view));
    hint[1] = std::string("F3 reference tyre: ") + (session.reference[CURVE_FX] ? "on" : "off");
    hint[2] = "F4 save view as PNG";
    if (!session.savedView.empty()) {
      const std::string name = QPathTail(session.savedView);
      hint[2] = "F4 saved " + name;
      hint[3] = "in " + session.savedView.substr(0, session.savedView.size() - name.size());
    }
    const int top = layout.wheel.y + layout.wheel.hgt + 12;
    const int room = layout.wheel.wid + 30;
    auto width = [r](const std::string &t) { return r->MeasureText(t.c_str()); };
    for (int i = 0; i < 4; i++)
      if (!hint[i].empty())
        r->DrawText(QElideMiddle(hint[i], room, width).c_str(), layout.wheel.x, top + 15 * i, QColor(128, 128, 128, 255));
  }
}
