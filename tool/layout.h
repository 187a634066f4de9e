// Where every control of the panel stands, derived from the graph margins
// (left 15, top 32) and the graph area's size (view.width x view.height).
// Kept apart from the controls so that the positions can be checked without
// a window, and so that the end-to-end tests can click them.
#pragma once

#include "render/qrect.h"

constexpr int LAYOUT_COMMANDS = 6;
constexpr int LAYOUT_COEFF_RADIOS = 28;

struct PanelLayout {
  QRect command[LAYOUT_COMMANDS];  // "Open tire" ... "Analyse"
  QRect focusLabel;
  QRect focus[4];  // "No focus", "Focus Fx", "Focus Fy", "Focus Mz"
  QRect zoom;
  QRect ghostLabel;
  QRect ghost[2];  // "Load (Fz)", "Camber"
  QRect coeffLabel;
  QRect coeff[LAYOUT_COEFF_RADIOS];  // two columns of 14
  QRect value;                      // the value slider
  QRect enterNumerically;
  QRect wheelLabel;
  QRect wheel;
  QRect op[4];  // load, slip ratio, slip angle, camber
};

PanelLayout LayoutCompute(int viewWidth, int viewHeight);
