// Drawing of the graphs.
#include "tool/graph.h"

#include <GL/gl.h>

#include <cstdio>

#include "tool/textplace.h"
#include "ui/qcanvas.h"

static QColor ColorOf(CurveKind kind) {
  switch (kind) {
    case CURVE_FX: return QColor(0, 0, 0, 255);
    case CURVE_FY: return QColor(255, 0, 0, 255);
    default: return QColor(0, 128, 0, 255);
  }
}

Graph::Graph(CurveKind k, Graph *prev) : kind(k), previous(prev), color(ColorOf(k)), current(&tyres[0]) {
  range = CurveInitialRange(kind);
  xScale = float(WIDTH) / (range.xMax - range.xMin);
  yScale = float(HEIGHT) / (range.yMax - range.yMin);
}

void Graph::LoadCar(const char *car) {
  KPacejka *list[CAR_WHEELS];
  for (int w = 0; w < CAR_WHEELS; w++) list[w] = &tyres[w];
  CarLoadTyres(car, list);
}

int Graph::SampleX(int i, int cx) const { return cx - X_ORIGIN + i * WIDTH / CURVE_SAMPLES; }

// Pixels above the centre line for a value. Values far outside the range
// would overflow an int; the plot is only a few hundred pixels high, so
// anything beyond a few plot heights is cut, and NaN sits on the axis.
static float Rise(float value, float yScale) {
  float dy = value * yScale;
  if (!(dy < 4.0f * Graph::HEIGHT)) dy = dy != dy ? 0.0f : 4.0f * Graph::HEIGHT;
  if (dy < -4.0f * Graph::HEIGHT) dy = -4.0f * Graph::HEIGHT;
  return dy;
}

int Graph::SampleY(float value, int cy) const { return cy - int(Rise(value, yScale)); }

void Graph::PaintCurve(QCanvas *cv, int cx, int cy, bool ghost) const {
  float a = (!ghost && (flags & GRAPH_DIMMED)) ? 0.1f : alpha;
  glLineWidth(1.5f);
  glEnable(GL_LINE_SMOOTH);
  glHint(GL_LINE_SMOOTH_HINT, GL_NICEST);
  glEnable(GL_BLEND);
  glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
  glColor4f(float(color.GetR()) / 255.0f, float(color.GetG()) / 255.0f, float(color.GetB()) / 255.0f, a);
  // Vertically at sub-pixel precision (OpenGL's y grows upwards), so the
  // smoothed line does not show the pixel steps.
  float glCentre = float(cv->MapY(cy)) + 0.5f;
  // A curve beyond the vertical range (a heavy load, a wild coefficient)
  // stops at the plot's edge instead of running over the texts and controls.
  cv->Clip(QRect(cx - X_ORIGIN, cy - Y_ORIGIN, 2 * X_ORIGIN + 1, 2 * Y_ORIGIN + 1));
  glBegin(GL_LINE_STRIP);
  for (int i = 0; i < CURVE_SAMPLES; i++)
    glVertex2f(float(cv->MapX(SampleX(i, cx))) + 0.5f, glCentre + Rise(curve.samples[i], yScale));
  glEnd();
  cv->NoClip();
  glLineWidth(1.0f);
  glDisable(GL_LINE_SMOOTH);
  glDisable(GL_BLEND);
}

void Graph::PaintTexts(QCanvas *cv, int cx, int cy, int areaTop, int areaBottom, bool xMinAbove) const {
  // Without the UI font (already reported at start-up) the curves still draw.
  if (!cv->GetFont()) return;
  char buf[128];
  int shift = 16 * int(kind);
  int left = cx - X_ORIGIN, right = cx + X_ORIGIN;
  const char *xq = CurveXQuantity(kind), *yu = CurveYUnit(kind);
  cv->SetColor(color);

  // Range labels: x at the ends of the horizontal axis, y at the ends of the
  // vertical one, each graph's set 16 pixels below the previous graph's, in
  // the corners the curves leave empty (tool/textplace.h).
  const float ends[4] = {range.xMin, range.xMax, range.yMax, range.yMin};
  for (int i = 0; i < 4; i++) {
    snprintf(buf, sizeof buf, "%.1f %s", double(ends[i]), i < 2 ? xq : yu);
    TextSpot at = TextPlaceRangeLabel(RangeLabel(i), int(kind), cv->GetTextWidth(buf), cx, cy, xMinAbove);
    cv->Text(buf, at.x, at.y);
  }

  // Title above the plot, peak text below it, one line per graph.
  cv->Text(CurveTitle(kind), right - 250, areaTop + 10 + shift);
  snprintf(buf, sizeof buf, CurvePeakFormat(kind), double(curve.peakX), double(curve.peakValue));
  TextSpot peak = TextPlacePeak(int(kind), left, areaBottom);
  cv->Text(buf, peak.x, peak.y);
}

void GraphPaintGrid(QCanvas *cv, int cx, int cy) {
  const int hw = Graph::X_ORIGIN, hh = Graph::Y_ORIGIN;
  glDisable(GL_DEPTH_TEST);
  // Grid at every tenth of the half sizes, light grey.
  cv->SetColor(230, 230, 230, 255);
  for (int t = -10; t <= 10; t++) {
    int x = cx + hw * t / 10, y = cy + hh * t / 10;
    cv->Line(x, cy - hh, x, cy + hh);
    cv->Line(cx - hw, y, cx + hw, y);
  }
  // Axes through the centre and their ticks, mid grey.
  cv->SetColor(128, 128, 128, 255);
  cv->Line(cx - hw, cy, cx + hw, cy);
  cv->Line(cx, cy - hh, cx, cy + hh);
  for (int t = 0; t <= 10; t++) {
    for (int side = -1; side <= 1; side += 2) {
      int x = cx + side * hw * t / 10, y = cy + side * hh * t / 10;
      cv->Line(x, cy - 3, x, cy + 2);  // 5 pixels across the horizontal axis
      cv->Line(cx - 2, y, cx + 2, y);  // 4 pixels across the vertical axis
    }
  }
}
