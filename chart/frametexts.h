// The frame's texts beyond the graphs' own: the car note beside the model
// name, the operating-point line under the peak texts, the note after the
// value line of a typed value that was no number, and the Magic Formula 5.2
// scale-factor list below the operating-point sliders. Positions come from
// chart/textplace.h.
#pragma once

#include <string>

#include "chart/curves.h"
#include "render/qrect.h"

class Graph;
class KPacejka;
class QRenderer;
struct OperatingPoint;

// Pixels of the graphs' main curves, as last sampled and followed along each
// segment, that fall inside `box` (plot centre cx, cy).
int FrameCurveHits(Graph *const *graphs, const QRect &box, int cx, int cy);
// Whether the x-minimum range labels go above the horizontal axis: when the
// curves just sampled run through their place below it and less through the
// one above.
bool FrameXMinLabelsAbove(QRenderer *r, Graph *const *graphs, int cx, int cy);
// A car note (missing car or wheels), under "Model: %s" at (modelX,
// modelY); nothing when `note` is empty.
void FramePaintCarNote(QRenderer *r, const std::string &note, int modelX, int modelY);
// Fx, Fy and Mz of the Fx graph's current tyre (wheel `wheel`) at `point` and
// the clamps the model applies to it, under the peak texts of `graphs`; the
// graph area ends at areaRight and areaBottom. Nothing without an Fx graph.
void FramePaintOpLine(QRenderer *r, Graph *const graphs[CURVE_COUNT], const OperatingPoint &point, int wheel,
                      int plotLeft, int areaRight, int areaBottom);
// The note of the last typed value, after the value line that ends at
// (x, y); nothing when `note` is empty (the value was a plain number).
void FramePaintEntryNote(QRenderer *r, const std::string &note, int x, int y);
// The 28 scale factors of `tyre`, four rows of columns from the right of the
// selected coefficient's texts (ending at x = textsRight) to the window's
// right edge, in the band from `top` to the window's bottom.
void FramePaintScaleList(QRenderer *r, const KPacejka &tyre, int textsRight, int top);
