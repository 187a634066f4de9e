// Plot: one picture of a tyre state, by kind. The window shows it in its
// graph area (over OpenGL), tyrograph-cli plot and the window's save key
// write it to PNG, SVG or PDF (over Cairo); both draw it through PlotPaint.
//
//   curves     the window's three graphs (tool/frame.h)
//   ellipse, mu-load, stiffness    the charts of tool/views.h
#pragma once

#include <vector>

#include "tool/chart.h"
#include "tool/frame.h"

class QRenderer;

enum PlotKind { PLOT_CURVES = 0, PLOT_ELLIPSE, PLOT_MU_LOAD, PLOT_STIFFNESS, PLOT_KIND_COUNT };

// The size of a plot at scale 1: the window's graph area.
constexpr int PLOT_WIDTH = 700, PLOT_HEIGHT = 500;

// "curves", "ellipse", "mu-load", "stiffness".
const char *PlotKindName(PlotKind kind);
// False when `name` is none of them.
bool PlotKindFind(const char *name, PlotKind *kind);
// The kinds' names joined by ", " (for messages and help).
const char *PlotKindList();

// Colours of the overlaid tyres' Fx, Fy and Mz graphs, i = 0, 1, ... (the
// list repeats), and of the window's reference tyre.
void PlotOverlayColors(int i, QColor out[CURVE_COUNT]);
void PlotReferenceColors(QColor out[CURVE_COUNT]);

// Measured points drawn behind the curves: one set of (x, y) per graph in
// the graphs' units (slip ratio or degrees; Fx/Fz, Fy/Fz or N·m).
struct PlotPoints {
  std::vector<float> x[CURVE_COUNT], y[CURVE_COUNT];
  bool Empty() const { return x[0].empty() && x[1].empty() && x[2].empty(); }
};

// The chart of a view kind for the state's tyres (main, then overlays).
Chart PlotChart(PlotKind kind, const FrameState &state);
// Draws the plot of `kind` into `view` (no background: the caller starts
// the picture). `points` may be null.
void PlotPaint(QRenderer *r, PlotKind kind, const FrameState &state, const QRect &view, const PlotPoints *points);
