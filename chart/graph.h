// One of the three superimposed graphs of the window: Fx/Fz (index 0),
// Fy/Fz (1) or Mz (2). The three graphs of a tyre share one tyre per wheel:
// the first graph makes the four, each later one (given the one before it)
// takes them over. A graph points at the current wheel's tyre, re-samples it
// every frame (chart/curves.h, which leaves it unchanged) and draws the
// curve with its range labels, title and peak text.
//
// Drawing: the three graphs share one plot of 580 x 380 pixels centred in the
// graph area. A sample's horizontal pixel is its index times width / 290, so
// the zoom check box, which narrows the range, spreads the narrower range
// over the whole plot; vertically a value maps through the y scale (pixels
// per unit) around the plot's centre line.
#pragma once

#include <memory>

#include "chart/carload.h"
#include "chart/curves.h"
#include "tyre/kpacejka.h"
#include "render/qcolor.h"

class QRenderer;

enum : unsigned {
  GRAPH_DIMMED = 1,      // another graph has the focus: main curve at alpha 0.1
  GRAPH_EMPHASISED = 2,  // the focused graph
};

class Graph {
 public:
  static constexpr int WIDTH = 580, HEIGHT = 380;
  static constexpr int X_ORIGIN = 290, Y_ORIGIN = 190;

  Graph(CurveKind kind, Graph *previous);
  Graph(const Graph &) = delete;
  Graph &operator=(const Graph &) = delete;

  CurveKind GetKind() const { return kind; }
  Graph *GetPrevious() const { return previous; }
  const CurveRange &GetRange() const { return range; }
  void SetZoom(bool zoom) { CurveApplyZoom(kind, zoom, &range); }

  // ---- Tyres (shared with the other graphs of the same tyre) -----------------
  KPacejka *GetTyre(int wheel) { return &tyres[wheel]; }
  KPacejka *GetCurrentTyre() const { return current; }
  void SelectWheel(int wheel) { current = &tyres[wheel]; }
  // Loads the car's four wheels into the tyres.
  void LoadCar(const char *car);

  // ---- State read by the frame ----------------------------------------------
  unsigned GetFlags() const { return flags; }
  void SetFlags(unsigned f) { flags = f; }
  void SetAlpha(float a) { alpha = a; }
  float GetAlpha() const { return alpha; }
  const Curve &GetCurve() const { return curve; }
  QColor GetColor() const { return color; }
  // Another colour for the curve and its texts (overlaid tyres).
  void SetColor(QColor c) { color = c; }
  float GetXScale() const { return xScale; }
  float GetYScale() const { return yScale; }
  const char *GetXAxisName() const { return xAxisName; }
  const char *GetYAxisName() const { return yAxisName; }

  // ---- Frame --------------------------------------------------------------
  // Re-samples the current tyre at its own operating point, or at `at` (a
  // stored point: a ghost's load or camber, a reference tyre's sliders).
  // The tyre is not changed.
  void Sample() { Sample(current->GetStoredPoint()); }
  void Sample(const kpacejka::Point<float> &at) { CurveSample(*current, at, kind, range, &curve); }
  // Canvas position of sample i around the plot centre (cx, cy).
  int SampleX(int i, int cx) const;
  int SampleY(float value, int cy) const;
  // The curve as a line strip; `ghost` curves ignore the dimmed flag.
  void PaintCurve(QRenderer *r, int cx, int cy, bool ghost) const;
  // Range labels (stacked by index), title and peak text of the main curve;
  // `xMinAbove` puts the x-minimum label above the horizontal axis.
  void PaintTexts(QRenderer *r, int cx, int cy, int areaTop, int areaBottom, bool xMinAbove = false) const;

 private:
  CurveKind kind;
  Graph *previous;
  CurveRange range;
  float xScale, yScale;  // pixels per unit, fixed at creation
  unsigned flags = 0;
  QColor color;
  float alpha = 1.0f;
  const char *xAxisName = "X-axis";
  const char *yAxisName = "Y-axis";
  Curve curve{};
  std::shared_ptr<KPacejka[]> tyres;  // CAR_WHEELS of them
  KPacejka *current;
};

// The grid shared by the three graphs: 21 x 21 lines at tenths of the plot's
// half sizes, the two axes and the tick marks, around the plot centre.
void GraphPaintGrid(QRenderer *r, int cx, int cy);
// Emphasis of the three graphs by focus: focus 0 emphasises Fx and dims
// none; focus n emphasises graph n-1 and dims the other two.
void GraphApplyEmphasis(Graph *const graphs[CURVE_COUNT], int focus);
