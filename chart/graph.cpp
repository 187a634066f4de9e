// Drawing of the graphs.
#include "chart/graph.h"

#include <cstdio>

#include "chart/textplace.h"
#include "render/qrenderer.h"

static QColor ColorOf(CurveKind kind) {
  switch (kind) {
    case CURVE_FX: return QColor(0, 0, 0, 255);
    case CURVE_FY: return QColor(255, 0, 0, 255);
    default: return QColor(0, 128, 0, 255);
  }
}

Graph::Graph(CurveKind k, Graph *prev)
    : kind(k), previous(prev), color(ColorOf(k)),
      tyres(prev ? prev->tyres : std::shared_ptr<KPacejka[]>(new KPacejka[CAR_WHEELS])), current(&tyres[0]) {
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

void Graph::PaintCurve(QRenderer *r, int cx, int cy, bool ghost) const {
  float a = (!ghost && (flags & GRAPH_DIMMED)) ? 0.1f : alpha;
  // Vertically at sub-pixel precision, so the smoothed line does not show
  // the pixel steps.
  QPointF points[CURVE_SAMPLES];
  for (int i = 0; i < CURVE_SAMPLES; i++) points[i] = {float(SampleX(i, cx) - cx), -Rise(curve.samples[i], yScale)};
  // A curve beyond the vertical range (a heavy load, a wild coefficient)
  // stops at the plot's edge instead of running over the texts and controls.
  r->ClipRect(QRect(cx - X_ORIGIN, cy - Y_ORIGIN, 2 * X_ORIGIN + 1, 2 * Y_ORIGIN + 1));
  r->Polyline(points, CURVE_SAMPLES, QStroke{color, a, 1.5f, true}, cx, cy);
  r->ClipNone();
}

void Graph::PaintTexts(QRenderer *r, int cx, int cy, int areaTop, int areaBottom, bool xMinAbove) const {
  // Without the UI font (already reported at start-up) the curves still draw.
  if (!r->HasFont()) return;
  char buf[128];
  int shift = 16 * int(kind);
  int left = cx - X_ORIGIN, right = cx + X_ORIGIN;
  const char *xq = CurveXQuantity(kind), *yu = CurveYUnit(kind);

  // Range labels: x at the ends of the horizontal axis, y at the ends of the
  // vertical one, each graph's set 16 pixels below the previous graph's, in
  // the corners the curves leave empty (chart/textplace.h).
  const float ends[4] = {range.xMin, range.xMax, range.yMax, range.yMin};
  for (int i = 0; i < 4; i++) {
    snprintf(buf, sizeof buf, "%.1f %s", double(ends[i]), i < 2 ? xq : yu);
    TextSpot at = TextPlaceRangeLabel(RangeLabel(i), int(kind), r->MeasureText(buf), cx, cy, xMinAbove);
    r->DrawText(buf, at.x, at.y, color);
  }

  // Title above the plot, peak text below it, one line per graph.
  r->DrawText(CurveTitle(kind), right - 250, areaTop + 10 + shift, color);
  snprintf(buf, sizeof buf, CurvePeakFormat(kind), double(curve.peakX), double(curve.peakValue));
  TextSpot peak = TextPlacePeak(int(kind), left, areaBottom);
  r->DrawText(buf, peak.x, peak.y, color);
}

void GraphPaintGrid(QRenderer *r, int cx, int cy) {
  const int hw = Graph::X_ORIGIN, hh = Graph::Y_ORIGIN;
  QSegment grid[2 * 21], axes[2 + 4 * 11];
  int n = 0;
  // Grid at every tenth of the half sizes, light grey.
  for (int t = -10; t <= 10; t++) {
    int x = cx + hw * t / 10, y = cy + hh * t / 10;
    grid[n++] = {x, cy - hh, x, cy + hh};
    grid[n++] = {cx - hw, y, cx + hw, y};
  }
  r->Segments(grid, n, QColor(230, 230, 230, 255));
  // Axes through the centre and their ticks, mid grey.
  n = 0;
  axes[n++] = {cx - hw, cy, cx + hw, cy};
  axes[n++] = {cx, cy - hh, cx, cy + hh};
  for (int t = 0; t <= 10; t++) {
    for (int side = -1; side <= 1; side += 2) {
      int x = cx + side * hw * t / 10, y = cy + side * hh * t / 10;
      axes[n++] = {x, cy - 3, x, cy + 2};  // 5 pixels across the horizontal axis
      axes[n++] = {cx - 2, y, cx + 2, y};  // 4 pixels across the vertical axis
    }
  }
  r->Segments(axes, n, QColor(128, 128, 128, 255));
}

void GraphApplyEmphasis(Graph *const graphs[CURVE_COUNT], int focus) {
  int emphasised = focus == 0 ? 0 : focus - 1;
  for (int i = 0; i < CURVE_COUNT; i++) {
    unsigned f = graphs[i]->GetFlags() & ~unsigned(GRAPH_DIMMED | GRAPH_EMPHASISED);
    if (i == emphasised)
      f |= GRAPH_EMPHASISED;
    else if (focus != 0)
      f |= GRAPH_DIMMED;
    graphs[i]->SetFlags(f);
  }
}
