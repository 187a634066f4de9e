// Session operations that reach the tyres.
#include "tool/session.h"

#include "chart/graph.h"
#include "diag/qdebug.h"

Session session;

CoeffList SessionList() {
  const KPacejka *tyre = session.graphs[CURVE_FX]->GetCurrentTyre();
  return CoeffListFor(tyre->model, session.focus);
}

// The three graphs share the four tyres (chart/graph.h): the Fx graph's are all of them.
void SessionApply(OpSlider slider) {
  for (int w = 0; w < CAR_WHEELS; w++) OpApply(session.graphs[CURVE_FX]->GetTyre(w), slider, session.point);
}

void SessionSelectWheelTyres(int wheel) {
  for (Graph *g : session.graphs) g->SelectWheel(wheel);
}

void SessionApplyZoom() {
  for (Graph *g : session.graphs) g->SetZoom(session.zoom);
}

void SessionApplyEmphasis() { GraphApplyEmphasis(session.graphs, session.focus); }

bool SessionLookupCoefficient() {
  session.edit = CoeffLookup(SessionList(), session.selected);
  QDBG_IN("SetEditCoeff", "coeffPtr %d\n", session.edit.field);
  return session.edit.field != COEFF_FIELD_NONE;
}

float SessionCoefficientValue() {
  return CoeffFieldGet(*session.graphs[CURVE_FX]->GetCurrentTyre(), session.edit.field);
}

void SessionSetCoefficient(float v) {
  float *p = CoeffFieldPtr(session.graphs[CURVE_FX]->GetCurrentTyre(), session.edit.field);
  if (p) *p = v;
}

void SessionReset() {
  session.point = OperatingPoint();
  for (int s = 0; s < OP_SLIDERS; s++) SessionApply(OpSlider(s));
  session.zoom = true;
  SessionApplyZoom();
  session.focus = 0;
  SessionApplyEmphasis();
  session.selected = 0;
  session.entryNote.clear();
  SessionLookupCoefficient();
}

// Loading goes through each graph, into the tyres they share: what it
// reports comes once per graph, as it always has, and loading the same
// source again gives the same tyres.
void SessionLoadCar() {
  for (Graph *g : session.graphs) g->LoadCar(session.car.c_str());
  bool found = false;
  unsigned without = CarWheelsWithoutTyre(session.car.c_str(), &found);
  session.carNote = CarNoteText(session.car.c_str(), found, without);
}

void SessionLoadTir(const char *path) {
  session.carNote.clear();
  for (Graph *g : session.graphs)
    for (int w = 0; w < CAR_WHEELS; w++) g->GetTyre(w)->LoadFromTirFile(path);
}
