// Plot: one picture of a tyre state, by kind. The window shows it in its
// graph area (over OpenGL), tyrograph-cli plot and the window's save key
// write it to PNG, SVG or PDF (over Cairo); both draw it through PlotPaint.
//
//   curves     the window's three graphs (chart/frame.h)
//   ellipse, mu-load, stiffness    the charts of chart/views.h
#pragma once

#include <string>
#include <vector>

#include "chart/chart.h"
#include "chart/frame.h"

class QRenderer;
struct KMeasuredData;

enum PlotKind { PLOT_CURVES = 0, PLOT_ELLIPSE, PLOT_MU_LOAD, PLOT_STIFFNESS, PLOT_KIND_COUNT };

// The size of a plot at scale 1: the window's graph area.
constexpr int PLOT_WIDTH = 700, PLOT_HEIGHT = 500;

// "curves", "ellipse", "mu-load", "stiffness".
const char *PlotKindName(PlotKind kind);
// False when `name` is none of them.
bool PlotKindFind(const char *name, PlotKind *kind);
// The kinds' names joined by ", " (for messages and help).
std::string PlotKindList();

// Colours of the overlaid tyres' Fx, Fy and Mz graphs, i = 0, 1, ... (the
// list repeats), and of the window's reference tyre.
void PlotOverlayColors(int i, QColor out[CURVE_COUNT]);
void PlotReferenceColors(QColor out[CURVE_COUNT]);

// Measured points drawn behind the curves: one set of (x, y) per graph in
// the graphs' units (slip ratio or degrees; Fx/Fz, Fy/Fz or N·m), and the
// (Fx, Fy) pairs of the ellipse in N.
struct PlotPoints {
  std::vector<float> x[CURVE_COUNT], y[CURVE_COUNT];
  std::vector<float> fx, fy;
  bool Empty() const { return x[0].empty() && x[1].empty() && x[2].empty() && fx.empty(); }
};

// How near the operating point a measured point must lie to be drawn.
constexpr float PLOT_DATA_LOAD_SHARE = 0.1f;    // load within 10 %
constexpr float PLOT_DATA_ANGLE_DEG = 0.5f;     // camber; slip angle of a slip-ratio sweep
constexpr float PLOT_DATA_SLIP_RATIO = 0.005f;  // slip ratio of a slip-angle sweep

// The measured points at the operating load (N) and camber (rad): slip-ratio
// sweeps under the Fx graph, slip-angle sweeps under Fy and Mz, every point
// with Fx and Fy in the ellipse. Forces over the point's own load. Returns
// the number of points taken.
int PlotPointsFromMeasured(const KMeasuredData &data, float load, float camber, PlotPoints *out);

// The chart of a view kind for the state's tyres (main, then overlays), with
// measured points (may be null) where the kind shows them (the ellipse).
Chart PlotChart(PlotKind kind, const FrameState &state, const PlotPoints *points = nullptr);
// Draws the plot of `kind` into `view` (no background: the caller starts
// the picture). `points` may be null; the curves and the ellipse show them.
void PlotPaint(QRenderer *r, PlotKind kind, const FrameState &state, const QRect &view, const PlotPoints *points);
