// The control panel: the six command buttons, the side column (focus,
// zoom, ghost parameter, the 28 coefficient radios, the value slider,
// "Enter numerically", the wheel slider) and the four operating-point
// sliders, built once at start-up at the positions of tool/layout.h, and the
// operations that keep them and the session (tool/session.h) in step.
#pragma once

#include <string>

#include "tool/layout.h"
#include "chart/oppoint.h"

class QButton;
class QCheck;
class QLabel;
class QProp;
class QRadio;
class QWindow;

// Radio groups of the side column.
constexpr int PANEL_GROUP_FOCUS = 1000;
constexpr int PANEL_GROUP_GHOST = 1001;
constexpr int PANEL_GROUP_COEFF = 1002;

// Labels of the command buttons, in the row's order (tool/commands.h runs them).
constexpr const char *PANEL_COMMAND_LABELS[LAYOUT_COMMANDS] = {
    "Open tire", "Revert", "Save*", "Export ASCII", "Export for Car.Ini", "Analyse"};

struct Panel {
  QButton *command[LAYOUT_COMMANDS] = {};
  QLabel *focusLabel = nullptr;
  QRadio *focus[4] = {};
  QCheck *zoom = nullptr;
  QLabel *ghostLabel = nullptr;
  QRadio *ghost[2] = {};  // "Load (Fz)", "Camber"
  QLabel *coeffLabel = nullptr;
  QRadio *coeff[LAYOUT_COEFF_RADIOS] = {};
  QProp *value = nullptr;
  QButton *enterNumerically = nullptr;
  QLabel *wheelLabel = nullptr;
  QProp *wheel = nullptr;
  QProp *op[OP_SLIDERS] = {};  // load, slip ratio, slip angle, camber
};

extern Panel panel;

// Creates every control as a child of `parent` for a graph area of
// viewWidth x viewHeight. The radios are labelled later (PanelRefreshLabels).
void PanelBuild(QWindow *parent, int viewWidth, int viewHeight);
// Destroys the controls: the command buttons first, then "Enter numerically",
// then the rest.
void PanelDestroy();

// Relabels the 28 coefficient radios from the list of the current model and
// focus; entries past the list's end read "---".
void PanelRefreshLabels();
// Looks the selected coefficient up and shows it: the value slider and
// "Enter numerically" are hidden when it edits nothing; otherwise the slider
// stands at (value - minimum) / range x 1000 (truncated) with the value as
// its caption.
void PanelSelectCoefficient();
// Writes v into the selected coefficient of the current wheel of all three
// graphs and shows it as the value slider's caption.
void PanelSetCoefficientValue(float v);
// The value slider moved to `position`.
void PanelValueMoved(int position);
// A typed value ("Enter numerically", the export's maximum): a decimal
// number; anything that does not start like one, and anything that is not a
// finite float, reads as 0.
float PanelParseValue(const char *text);
// The note shown after the value line when `text` is not a plain decimal
// number (blanks around it allowed) and PanelParseValue took `value` from it:
// 'typed "1,5" is no number: taken as 1'. Empty for a plain number.
std::string PanelEntryNote(const char *text, float value);
// "Enter numerically": asks for the value and sets it. False when the dialog
// was cancelled or the selection edits nothing.
bool PanelEnterNumerically();
// The wheel slider: wheel index, caption "%d/FL" ..., the graphs' tyres, labels.
void PanelSelectWheel(int wheel);
// A focus radio: focus n (0 none, 1 Fx, 2 Fy, 3 Mz), first coefficient.
void PanelFocus(int focus);
// A coefficient radio.
void PanelCoefficientRadio(int index);
// The zoom check box.
void PanelZoom(bool on);
// An operating-point slider moved to `position`: caption and all tyres.
void PanelOpMoved(OpSlider slider, int position);
// Start-up state of the controls and the session (also after a TIR import).
void PanelResetControls();
// True when the "Camber" ghost radio is checked.
bool PanelGhostCamber();

// Which control a window is; -1 when it is none of that kind.
int PanelCommandIndex(const QWindow *w);
int PanelFocusIndex(const QWindow *w);
int PanelCoeffIndex(const QWindow *w);
int PanelOpIndex(const QWindow *w);
