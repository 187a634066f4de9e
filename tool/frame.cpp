// Frame drawing: graphs, ghosts and the selected coefficient's texts.
#include "tool/frame.h"

#include <GL/gl.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "tool/frametexts.h"
#include "tool/graph.h"
#include "tool/layout.h"
#include "tool/session.h"
#include "tool/settings.h"
#include "ui/qcanvas.h"

float FrameLoadGhostAlpha(int i) {
  // Deliberately uneven: the two highest loads are not the faintest.
  if (i <= 2) return float(20 + 80 * i / 5) / 255.0f;
  return (i == 3 ? 100.0f : 80.0f) / 255.0f;
}

float FrameCamberGhostAlpha(int i) {
  return (50.0f - float(std::abs(i - 3)) / 6.0f * 60.0f) / 255.0f;
}

namespace {

// Ghost curves of the focused graph at five loads or six cambers; the
// tyre's own load or camber is put back afterwards.
void PaintGhosts(QCanvas *cv, int cx, int cy, bool camber) {
  Graph *g = session.graphs[session.focus - 1];
  if (!g) return;
  KPacejka *tyre = g->GetCurrentTyre();
  if (!camber) {
    float load = tyre->Fz * 1000.0f;
    for (int i = 0; i < 5; i++) {
      tyre->SetNormalLoad(load * 7.0f * float(i) / 25.0f);
      g->SetAlpha(FrameLoadGhostAlpha(i));
      g->Sample();
      g->PaintCurve(cv, cx, cy, true);
    }
    tyre->SetNormalLoad(load);
  } else {
    float saved = tyre->GetCamber();
    for (int i = 0; i < 6; i++) {
      tyre->SetCamber((20.0f * float(i) / 5.0f - 10.0f) / CURVE_RAD2DEG);
      g->SetAlpha(FrameCamberGhostAlpha(i));
      g->Sample();
      g->PaintCurve(cv, cx, cy, true);
    }
    tyre->SetCamber(saved);
  }
}

void PaintCoefficientTexts(QCanvas *cv, int left, int top, int bandTop) {
  // Nothing is selected yet while the start-up still loads the car.
  if (!cv->GetFont() || !session.edit.desc || !session.edit.unit) return;
  char buf[160];
  cv->SetColor(0, 0, 0, 255);
  snprintf(buf, sizeof buf, "%s: %s", session.edit.name, session.edit.desc);
  cv->Text(buf, left, top);
  const char *unit = *session.edit.unit ? session.edit.unit : "(non-dimensional)";
  int textsRight = left + cv->GetTextWidth(buf);
  snprintf(buf, sizeof buf, "Value: %.3f %s", double(SessionCoefficientValue()), unit);
  cv->Text(buf, left, top + 16);
  FramePaintEntryNote(cv, left + cv->GetTextWidth(buf), top + 16);
  textsRight = std::max(textsRight, left + cv->GetTextWidth(buf));
  if (!session.graphs[CURVE_FX] || session.graphs[CURVE_FX]->GetCurrentTyre()->model != 1) return;
  // Magic Formula 5.2: all scaling factors, beside these texts under the
  // operating-point sliders.
  FramePaintScaleList(cv, *session.graphs[CURVE_FX]->GetCurrentTyre(), textsRight, bandTop);
}

}  // namespace

void FramePaintGraphs(QCanvas *cv, int viewWidth, int viewHeight) {
  char buf[128];
  int cx = GRAPH_LEFT_MARGIN + viewWidth / 2, cy = GRAPH_TOP_MARGIN + viewHeight / 2;
  int areaTop = GRAPH_TOP_MARGIN, areaBottom = GRAPH_TOP_MARGIN + viewHeight;

  cv->Select();
  glClearColor(1.0f, 1.0f, 1.0f, 1.0f);
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);

  cv->SetColor(100, 100, 255, 255);
  if (cv->GetFont() && session.graphs[CURVE_FX]) {
    snprintf(buf, sizeof buf, "Model: %s", session.graphs[CURVE_FX]->GetCurrentTyre()->GetModelName());
    cv->Text(buf, 30, areaTop + 10);
    FramePaintCarNote(cv, 30, areaTop + 10);
  }

  GraphPaintGrid(cv, cx, cy);
  // A frame can come before the graphs exist: an error box raised during
  // the start-up runs the loop, and so the paint callback.
  for (Graph *g : session.graphs) {
    if (!g) continue;
    g->SetAlpha(1.0f);
    g->Sample();
    g->PaintCurve(cv, cx, cy, false);
  }
  // The texts once all curves are known, so that the labels can keep off them.
  const bool xMinAbove = FrameXMinLabelsAbove(cv, cx, cy);
  for (Graph *g : session.graphs)
    if (g) g->PaintTexts(cv, cx, cy, areaTop, areaBottom, xMinAbove);
  if (session.focus >= 1 && session.focus <= 3) PaintGhosts(cv, cx, cy, session.ghostCamber);
  FramePaintOpLine(cv, cx - Graph::X_ORIGIN, GRAPH_LEFT_MARGIN + viewWidth, areaBottom);
  const QRect lastSlider = LayoutCompute(viewWidth, viewHeight).op[OP_SLIDERS - 1];
  PaintCoefficientTexts(cv, 13, viewHeight + 72 + 4 * 21 + 4, lastSlider.y + lastSlider.hgt + 1);
}
