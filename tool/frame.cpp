// Frame drawing: graphs, ghosts and the selected coefficient's texts.
#include "tool/frame.h"

#include <cmath>
#include <cstdio>

#include "tool/graph.h"
#include "tool/plot.h"
#include "tool/session.h"
#include "tool/settings.h"
#include "tool/tyreguard.h"
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

// One line per tyre beside the peak texts: a short stroke in the Fy graph's
// colour, then the label; moved left when the longest label would pass `right`.
void PaintLegend(QRenderer *r, const FrameState &st, int x, int y, int right) {
  if (!r->HasFont()) return;
  int widest = r->MeasureText(st.label.c_str());
  for (const FrameOverlay &o : st.overlays)
    if (r->MeasureText(o.label.c_str()) > widest) widest = r->MeasureText(o.label.c_str());
  if (x + 30 + widest > right) x = right - 30 - widest;
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

void PaintCoefficientTexts(QRenderer *r, int left, int top, int cx, int cy) {
  // Nothing is selected yet while the start-up still loads the car.
  if (!r->HasFont() || !session.edit.desc || !session.edit.unit) return;
  char buf[160];
  const QColor black(0, 0, 0, 255);
  snprintf(buf, sizeof buf, "%s: %s", session.edit.name, session.edit.desc);
  r->DrawText(buf, left, top, black);
  const char *unit = *session.edit.unit ? session.edit.unit : "(non-dimensional)";
  snprintf(buf, sizeof buf, "Value: %.3f %s", double(SessionCoefficientValue()), unit);
  r->DrawText(buf, left, top + 16, black);
  if (!session.graphs[CURVE_FX] || session.graphs[CURVE_FX]->GetCurrentTyre()->model != 1) return;
  const KPacejka *tyre = session.graphs[CURVE_FX]->GetCurrentTyre();
  // Magic Formula 5.2: all scaling factors, two columns in the plot's upper
  // left quarter, which the curves of a tyre leave empty, ending above the
  // horizontal axis and its range labels.
  const QColor grey(60, 60, 60, 255);
  for (int i = 0; i < COEFF_SCALE_COUNT; i++) {
    CoeffInfo info = CoeffLookup(COEFF_LIST_SCALE, i);
    snprintf(buf, sizeof buf, "%s=%.5f", info.name, double(CoeffFieldGet(*tyre, info.field)));
    r->DrawText(buf, cx - Graph::X_ORIGIN + 6 + (i / 14) * 110, cy - Graph::Y_ORIGIN + 6 + (i % 14) * 13, grey);
  }
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
  for (Graph *g : st.graphs) {
    if (!g) continue;
    TyreStateGuard keep(g->GetCurrentTyre());
    g->SetAlpha(1.0f);
    g->Sample();
    g->PaintCurve(r, cx, cy, false);
    g->PaintTexts(r, cx, cy, areaTop, areaBottom);
  }
  for (const FrameOverlay &o : st.overlays)
    for (Graph *g : o.graphs) {
      if (!g) continue;
      TyreStateGuard keep(g->GetCurrentTyre());
      g->SetAlpha(1.0f);
      g->Sample();
      g->PaintCurve(r, cx, cy, false);
    }
  if (!st.overlays.empty()) PaintLegend(r, st, cx + 20, areaBottom - 52, view.x + view.wid - 4);
  if (st.focus >= 1 && st.focus <= 3) PaintGhosts(r, st, cx, cy);
}

void FramePaintGraphs(QRenderer *r, int viewWidth, int viewHeight) {
  r->BeginPicture(QColor(255, 255, 255, 255));
  QRect view(GRAPH_LEFT_MARGIN, GRAPH_TOP_MARGIN, viewWidth, viewHeight);
  PlotPaint(r, PlotKind(session.view), FrameStateFromSession(), view, nullptr);
  int cx = GRAPH_LEFT_MARGIN + viewWidth / 2, cy = GRAPH_TOP_MARGIN + viewHeight / 2;
  PaintCoefficientTexts(r, 13, viewHeight + 72 + 4 * 21 + 4, cx, cy);
  // The keys of the views, along the window's bottom edge.
  if (r->HasFont()) {
    char hint[160];
    snprintf(hint, sizeof hint, "F2 view: %s    F3 reference tyre: %s    F4 save view as PNG",
             PlotKindName(PlotKind(session.view)), session.reference[CURVE_FX] ? "on" : "off");
    r->DrawText(hint, 13, viewHeight + 196, QColor(128, 128, 128, 255));
  }
}
