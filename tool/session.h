// The editing session: the one set of application-wide state that the panel
// shows and the graphs read every frame (current car, wheel, focus, selected
// coefficient, operating point, zoom), and the operations on it that reach
// the tyres. The controls themselves live in tool/panel.h.
#pragma once

#include <cstdint>
#include <string>

#include "chart/carload.h"
#include "chart/coeftable.h"
#include "chart/curves.h"
#include "chart/oppoint.h"

class Graph;

struct Session {
  std::string car;      // folder under data/cars/ (last.car)
  std::string lastTir;  // last imported TIR file; empty until an import
  int wheel = 0;
  int focus = 0;     // 0 none, 1 Fx, 2 Fy, 3 Mz
  int selected = 0;  // index into the shown coefficient list
  CoeffInfo edit{};  // texts, slider mapping and field of the selection
  bool zoom = true;
  bool ghostCamber = false;  // the "Camber" ghost radio is checked (read from it each frame)
  OperatingPoint point;
  // Shown beside the model name when the car left wheels without a tyre
  // (chart/carload.h); empty otherwise.
  std::string carNote;
  // Shown after the value line when the last typed value was no plain
  // number (tool/panel.h); empty otherwise.
  std::string entryNote;
  Graph *graphs[CURVE_COUNT] = {};
  int view = 0;                          // what the graph area shows: a PlotKind (chart/plot.h)
  Graph *reference[CURVE_COUNT] = {};    // a reference tyre drawn in grey; null when none
  std::string referenceLabel;            // its file name
  // The view file F4 wrote last, named by the hint lines until
  // savedViewUntilMs (qpTimeMs); empty once that has passed (tool/viewkeys.h).
  std::string savedView;
  uint64_t savedViewUntilMs = 0;
};

// How long the hint lines name the view file F4 wrote, milliseconds.
constexpr uint64_t SESSION_SAVED_VIEW_MS = 4000;

extern Session session;

// The tyre-model list the radios show: by the Fx graph's current tyre's model.
CoeffList SessionList();
// Applies one operating-point quantity to the four tyres the graphs share.
void SessionApply(OpSlider slider);
// Points every graph at the wheel's tyre.
void SessionSelectWheelTyres(int wheel);
// Horizontal ranges of all graphs from session.zoom.
void SessionApplyZoom();
// Emphasis: focus 0 emphasises Fx and dims none; focus n emphasises graph
// n-1 and dims the other two.
void SessionApplyEmphasis();
// Looks up the selected coefficient into session.edit and writes the trace
// line "coeffPtr %d". True when the selection edits a coefficient.
bool SessionLookupCoefficient();
// The selected coefficient's value in the Fx graph's current tyre.
float SessionCoefficientValue();
// Writes v into the selected coefficient of the current wheel's tyre;
// nothing when the selection edits nothing.
void SessionSetCoefficient(float v);
// The start-up state of the session: operating point (load 2500 N, slips and
// camber 0) applied to every tyre, zoom on, no focus, first coefficient.
void SessionReset();
// Loads the session's car into every graph.
void SessionLoadCar();
// Loads a TIR file into every tyre of every graph.
void SessionLoadTir(const char *path);
