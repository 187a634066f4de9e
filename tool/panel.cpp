// The control panel and its operations.
#include "tool/panel.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "chart/graph.h"
#include "tool/session.h"
#include "tool/tyrehistory.h"
#include "ui/qbutton.h"
#include "ui/qcheck.h"
#include "ui/qlabel.h"
#include "ui/qprop.h"
#include "ui/qradio.h"
#include "ui/qstringdialog.h"

Panel panel;

namespace {

constexpr const char *FOCUS_LABELS[4] = {"No focus", "Focus Fx", "Focus Fy", "Focus Mz"};
constexpr const char *GHOST_LABELS[2] = {"Load (Fz)", "Camber"};

int tabOrder = 0;

template <class T>
T *Made(T *w) {
  w->SetTabOrder(tabOrder++);
  w->Create();
  return w;
}

QLabel *MakeLabel(QWindow *parent, const QRect &r, const char *text) {
  QLabel *l = new QLabel(parent, r.x, r.y, r.wid, r.hgt, text);
  l->Create();
  return l;
}

QButton *MakeButton(QWindow *parent, const QRect &r, const char *text) {
  return Made(new QButton(parent, r.x, r.y, r.wid, r.hgt, text));
}

QRadio *MakeRadio(QWindow *parent, const QRect &r, const char *text, int group) {
  return Made(new QRadio(parent, r.x, r.y, r.wid, r.hgt, text, group));
}

QProp *MakeSlider(QWindow *parent, const QRect &r, int min, int max, int small, int big, int position) {
  QProp *p = Made(new QProp(parent, r.x, r.y, r.wid, r.hgt));
  p->SetRange(min, max);
  p->SetStepSizes(small, big);
  p->SetPosition(position);
  return p;
}

void ShowValue(float v) {
  char buf[64];
  snprintf(buf, sizeof buf, "%.4f", double(v));
  panel.value->SetCaption(buf);
}

void ShowOpCaption(OpSlider s) {
  const OperatingPoint &p = session.point;
  float v = s == OP_LOAD ? p.load : s == OP_SLIP_RATIO ? p.slipRatio : s == OP_SLIP_ANGLE ? p.slipAngle : p.camber;
  char buf[64];
  OpCaption(s, v, buf, sizeof buf);
  panel.op[s]->SetCaption(buf);
}

// Shows the selection that session.edit holds.
void ShowSelection() {
  if (session.edit.field == COEFF_FIELD_NONE) {
    panel.value->Hide();
    panel.enterNumerically->Hide();
    return;
  }
  panel.value->Show();
  panel.enterNumerically->Show();
  float v = SessionCoefficientValue();
  // Truncated toward zero; a value outside the table's range stands outside
  // 0..1000 and the slider draws it at the nearer end.
  panel.value->SetPosition(static_cast<int>((v - session.edit.minimum) / session.edit.range * 1000.0f));
  ShowValue(v);
}

template <class T>
int IndexOf(T *const *list, int n, const QWindow *w) {
  for (int i = 0; i < n; i++)
    if (w && list[i] == w) return i;
  return -1;
}

template <class T>
void Destroy(T *&w) {
  delete w;
  w = nullptr;
}

}  // namespace

// ---- Building -------------------------------------------------------------------------

void PanelBuild(QWindow *parent, int viewWidth, int viewHeight) {
  const PanelLayout l = LayoutCompute(viewWidth, viewHeight);
  tabOrder = 0;
  for (int i = 0; i < LAYOUT_COMMANDS; i++) panel.command[i] = MakeButton(parent, l.command[i], PANEL_COMMAND_LABELS[i]);

  panel.focusLabel = MakeLabel(parent, l.focusLabel, "Force focus");
  for (int i = 0; i < 4; i++) panel.focus[i] = MakeRadio(parent, l.focus[i], FOCUS_LABELS[i], PANEL_GROUP_FOCUS);
  panel.focus[0]->SetChecked();
  panel.zoom = Made(new QCheck(parent, l.zoom.x, l.zoom.y, l.zoom.wid, l.zoom.hgt, "Zoom in horizontally", true));
  panel.ghostLabel = MakeLabel(parent, l.ghostLabel, "Varying parameter (ghost curves)");
  for (int i = 0; i < 2; i++) panel.ghost[i] = MakeRadio(parent, l.ghost[i], GHOST_LABELS[i], PANEL_GROUP_GHOST);
  panel.ghost[0]->SetChecked();
  panel.coeffLabel = MakeLabel(parent, l.coeffLabel, "Pacejka coefficients/scale factors");
  for (int i = 0; i < LAYOUT_COEFF_RADIOS; i++) panel.coeff[i] = MakeRadio(parent, l.coeff[i], "", PANEL_GROUP_COEFF);
  panel.coeff[0]->SetChecked();
  panel.value = MakeSlider(parent, l.value, 0, 1000, 5, 10, 0);
  panel.enterNumerically = MakeButton(parent, l.enterNumerically, "Enter numerically");
  panel.wheelLabel = MakeLabel(parent, l.wheelLabel, "Wheel index");
  panel.wheel = MakeSlider(parent, l.wheel, 0, 3, 1, 4, 0);

  for (int s = 0; s < OP_SLIDERS; s++) {
    panel.op[s] = MakeSlider(parent, l.op[s], 0, 1000, 3, 10, OpStartPosition(OpSlider(s)));
    ShowOpCaption(OpSlider(s));
  }
}

void PanelDestroy() {
  for (QButton *&b : panel.command) Destroy(b);
  Destroy(panel.enterNumerically);
  Destroy(panel.focusLabel);
  for (QRadio *&r : panel.focus) Destroy(r);
  Destroy(panel.zoom);
  Destroy(panel.ghostLabel);
  for (QRadio *&r : panel.ghost) Destroy(r);
  Destroy(panel.coeffLabel);
  for (QRadio *&r : panel.coeff) Destroy(r);
  Destroy(panel.value);
  Destroy(panel.wheelLabel);
  Destroy(panel.wheel);
  for (QProp *&p : panel.op) Destroy(p);
}

// ---- Operations -----------------------------------------------------------------------

void PanelRefreshLabels() {
  CoeffList list = SessionList();
  for (int i = 0; i < LAYOUT_COEFF_RADIOS; i++) panel.coeff[i]->SetText(CoeffLabel(list, i));
}

void PanelSelectCoefficient() {
  session.entryNote.clear();
  SessionLookupCoefficient();
  ShowSelection();
}

void PanelSetCoefficientValue(float v) {
  if (session.edit.field != COEFF_FIELD_NONE)
    HistoryBeforeEdit(session.wheel, session.edit.field, *session.graphs[CURVE_FX]->GetCurrentTyre());
  SessionSetCoefficient(v);
  ShowValue(v);
}

void PanelValueMoved(int position) {
  if (session.edit.field == COEFF_FIELD_NONE) return;
  session.entryNote.clear();
  PanelSetCoefficientValue(float(position) / (1000.0f / session.edit.range) + session.edit.minimum);
}

float PanelParseValue(const char *text) {
  // strtod also takes "nan", "inf" and numbers past the float range; none of
  // them is a decimal value a coefficient can hold, so they read as 0 like
  // any other text that is no number.
  float v = static_cast<float>(strtod(text, nullptr));
  return std::isfinite(v) ? v : 0.0f;
}

std::string PanelEntryNote(const char *text, float value) {
  char *end = nullptr;
  double d = strtod(text, &end);
  while (end && (*end == ' ' || *end == '\t')) end++;
  if (end != text && end && !*end && std::isfinite(d) && std::isfinite(float(d))) return "";
  char buf[160];
  snprintf(buf, sizeof buf, "typed \"%.40s\" is no number: taken as %g", text, double(value));
  return buf;
}

bool PanelEnterNumerically() {
  if (session.edit.field == COEFF_FIELD_NONE) return false;
  char start[64];
  snprintf(start, sizeof start, "%f", double(SessionCoefficientValue()));
  std::string text = start;
  if (!QStringDialogRun("Enter numerical", "Enter the value", &text, 80)) return false;
  float v = PanelParseValue(text.c_str());
  HistoryBreak();  // a typed value is a step of its own
  PanelSetCoefficientValue(v);
  HistoryBreak();
  PanelSelectCoefficient();
  session.entryNote = PanelEntryNote(text.c_str(), v);
  return true;
}

void PanelSelectWheel(int wheel) {
  if (wheel < 0) wheel = 0;
  if (wheel > 3) wheel = 3;
  session.wheel = wheel;
  session.entryNote.clear();
  char buf[16];
  snprintf(buf, sizeof buf, "%d/%s", wheel, WHEEL_NAMES[wheel]);
  panel.wheel->SetPosition(wheel);
  panel.wheel->SetCaption(buf);
  SessionSelectWheelTyres(wheel);
  PanelRefreshLabels();
}

void PanelFocus(int focus) {
  session.focus = focus;
  session.selected = 0;
  PanelRefreshLabels();
  SessionApplyEmphasis();
  PanelSelectCoefficient();
  panel.coeff[0]->SetChecked();
}

void PanelCoefficientRadio(int index) {
  session.selected = index;
  HistoryBreak();  // edits of the new selection are a step of their own
  PanelSelectCoefficient();
}

void PanelZoom(bool on) {
  session.zoom = on;
  SessionApplyZoom();
}

void PanelOpMoved(OpSlider slider, int position) {
  panel.op[slider]->SetPosition(position);
  OpSet(&session.point, slider, OpValue(slider, position));
  SessionApply(slider);
  ShowOpCaption(slider);
}

void PanelResetControls() {
  SessionReset();
  for (int s = 0; s < OP_SLIDERS; s++) {
    panel.op[s]->SetPosition(OpStartPosition(OpSlider(s)));
    ShowOpCaption(OpSlider(s));
  }
  panel.zoom->SetChecked(true);
  panel.focus[0]->SetChecked();
  panel.coeff[0]->SetChecked();
  ShowSelection();
}

bool PanelGhostCamber() { return panel.ghost[1] && panel.ghost[1]->IsChecked(); }

int PanelCommandIndex(const QWindow *w) { return IndexOf(panel.command, LAYOUT_COMMANDS, w); }
int PanelFocusIndex(const QWindow *w) { return IndexOf(panel.focus, 4, w); }
int PanelCoeffIndex(const QWindow *w) { return IndexOf(panel.coeff, LAYOUT_COEFF_RADIOS, w); }
int PanelOpIndex(const QWindow *w) { return IndexOf(panel.op, OP_SLIDERS, w); }
