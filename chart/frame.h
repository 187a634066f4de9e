// The frame: the three graphs with their grid, texts and the ghost curves of
// the focused graph, drawn through a QRenderer from an explicit state, so
// the window (over OpenGL) and tyrograph-cli plot (over Cairo) draw the same
// picture. The window draws its own texts (the selected coefficient, notes)
// around it.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "chart/curves.h"
#include "chart/oppoint.h"
#include "render/qrect.h"

class Graph;
class QRenderer;

// Alphas of the ghost curves, as drawn: load ghost i of 0..4, camber ghost i
// of 0..5 (-10 ... 10 degrees).
float FrameLoadGhostAlpha(int i);
float FrameCamberGhostAlpha(int i);

// Further tyres drawn over the main ones: their graphs' curves only, in the
// graphs' own colours, and a legend line each.
struct FrameOverlay {
  Graph *graphs[CURVE_COUNT] = {};
  std::string label;
  // The operating point the overlay is drawn at (the window's sliders);
  // without one, the one its tyres hold.
  bool hasPoint = false;
  OperatingPoint point;
};

// Everything a frame reads. The operating point sits in the graphs' current
// tyres (or an overlay's own), the zoom in their ranges, the emphasis in
// their flags; drawing changes no tyre (it evaluates through the stateless
// core, tyre/ktyre.h).
struct FrameState {
  Graph *graphs[CURVE_COUNT] = {};  // a null graph is left out
  int focus = 0;                    // 1..3: that graph gets ghost curves
  bool ghostCamber = false;         // ghosts over camber, else over load
  std::string label;                // legend line of the main tyre (with overlays)
  std::vector<FrameOverlay> overlays;
  // Drawn over the grid and under the curves (measured points); may be empty.
  std::function<void(QRenderer *)> underlay;
};

// Model name, grid, curves, texts, overlays and ghosts into the graph area
// `view` (the plot centred in it); nothing outside it is cleared.
void FramePaint(QRenderer *r, const FrameState &state, const QRect &view);