// The stages of a fit, in order, and which members each one varies.
#include <cstring>

#include "tyre/kfit.h"

namespace {

using G = KPacejkaMember;

// Pure slip first, each force before the moment that takes it; the
// combined-slip weightings last, on top of the pure curves they scale.
const KFitStage kFitStages[] = {
    {"pure Fx", G::PURE_FX, KCH_FX, false},
    {"pure Fy", G::PURE_FY, KCH_FY, false},
    {"pure Mz", G::PURE_MZ, KCH_MZ, false},
    {"combined Fx", G::COMBINED_FX, KCH_FX, true},
    {"combined Fy", G::COMBINED_FY, KCH_FY, true},
    {"combined Mz", G::COMBINED_MZ, KCH_MZ, true},
};

// Until the member table carries groups and bounds: the same fields, by name.
struct Interim {
  const char *name;
  G::Family family;
  G::Group group;
  float lo, hi;
};
const Interim kInterim[] = {
    // Pacejka89/96 (kN, degrees, percent)
    {"b0", G::PAC96_FAMILY, G::PURE_FX, 1.0f, 2.5f}, {"b1", G::PAC96_FAMILY, G::PURE_FX, -200, 200},
    {"b2", G::PAC96_FAMILY, G::PURE_FX, 200, 4000}, {"b3", G::PAC96_FAMILY, G::PURE_FX, -500, 500},
    {"b4", G::PAC96_FAMILY, G::PURE_FX, 0, 5000}, {"b5", G::PAC96_FAMILY, G::PURE_FX, -1, 1},
    {"b6", G::PAC96_FAMILY, G::PURE_FX, -1, 1}, {"b7", G::PAC96_FAMILY, G::PURE_FX, -5, 5},
    {"b8", G::PAC96_FAMILY, G::PURE_FX, -20, 1}, {"b9", G::PAC96_FAMILY, G::PURE_FX, -1, 1},
    {"b10", G::PAC96_FAMILY, G::PURE_FX, -5, 5}, {"b11", G::PAC96_FAMILY, G::PURE_FX, -500, 500},
    {"b12", G::PAC96_FAMILY, G::PURE_FX, -500, 500},
    {"a0", G::PAC96_FAMILY, G::PURE_FY, 0.8f, 2.5f}, {"a1", G::PAC96_FAMILY, G::PURE_FY, -200, 200},
    {"a2", G::PAC96_FAMILY, G::PURE_FY, 200, 4000}, {"a3", G::PAC96_FAMILY, G::PURE_FY, 1, 100000},
    {"a4", G::PAC96_FAMILY, G::PURE_FY, 0.5f, 500}, {"a5", G::PAC96_FAMILY, G::PURE_FY, -0.5f, 0.5f},
    {"a6", G::PAC96_FAMILY, G::PURE_FY, -2, 2}, {"a7", G::PAC96_FAMILY, G::PURE_FY, -10, 1},
    {"a8", G::PAC96_FAMILY, G::PURE_FY, -1, 1}, {"a9", G::PAC96_FAMILY, G::PURE_FY, -1, 1},
    {"a10", G::PAC96_FAMILY, G::PURE_FY, -5, 5}, {"a111", G::PAC96_FAMILY, G::PURE_FY, -100, 100},
    {"a112", G::PAC96_FAMILY, G::PURE_FY, -100, 100}, {"a12", G::PAC96_FAMILY, G::PURE_FY, -500, 500},
    {"a13", G::PAC96_FAMILY, G::PURE_FY, -500, 500},
    {"c0", G::PAC96_FAMILY, G::PURE_MZ, 0.8f, 3.5f}, {"c1", G::PAC96_FAMILY, G::PURE_MZ, -50, 50},
    {"c2", G::PAC96_FAMILY, G::PURE_MZ, -100, 100}, {"c3", G::PAC96_FAMILY, G::PURE_MZ, -100, 100},
    {"c4", G::PAC96_FAMILY, G::PURE_MZ, -200, 200}, {"c5", G::PAC96_FAMILY, G::PURE_MZ, -1, 1},
    {"c6", G::PAC96_FAMILY, G::PURE_MZ, -1, 1}, {"c7", G::PAC96_FAMILY, G::PURE_MZ, -1, 1},
    {"c8", G::PAC96_FAMILY, G::PURE_MZ, -5, 5}, {"c9", G::PAC96_FAMILY, G::PURE_MZ, -20, 1},
    {"c10", G::PAC96_FAMILY, G::PURE_MZ, -1, 1}, {"c11", G::PAC96_FAMILY, G::PURE_MZ, -1, 1},
    {"c12", G::PAC96_FAMILY, G::PURE_MZ, -1, 1}, {"c13", G::PAC96_FAMILY, G::PURE_MZ, -5, 5},
    {"c14", G::PAC96_FAMILY, G::PURE_MZ, -10, 10}, {"c15", G::PAC96_FAMILY, G::PURE_MZ, -10, 10},
    {"c16", G::PAC96_FAMILY, G::PURE_MZ, -50, 50}, {"c17", G::PAC96_FAMILY, G::PURE_MZ, -50, 50},
    // Magic Formula
    {"pcx1", G::MAGIC_FAMILY, G::PURE_FX, 1, 2.5f}, {"pdx1", G::MAGIC_FAMILY, G::PURE_FX, 0.1f, 4},
    {"pdx2", G::MAGIC_FAMILY, G::PURE_FX, -2, 2}, {"pdx3", G::MAGIC_FAMILY, G::PURE_FX, -50, 50},
    {"pex1", G::MAGIC_FAMILY, G::PURE_FX, -10, 1}, {"pex2", G::MAGIC_FAMILY, G::PURE_FX, -5, 5},
    {"pex3", G::MAGIC_FAMILY, G::PURE_FX, -5, 5}, {"pex4", G::MAGIC_FAMILY, G::PURE_FX, -1, 1},
    {"pkx1", G::MAGIC_FAMILY, G::PURE_FX, 1, 200}, {"pkx2", G::MAGIC_FAMILY, G::PURE_FX, -100, 100},
    {"pkx3", G::MAGIC_FAMILY, G::PURE_FX, -5, 5}, {"phx1", G::MAGIC_FAMILY, G::PURE_FX, -0.1f, 0.1f},
    {"phx2", G::MAGIC_FAMILY, G::PURE_FX, -0.1f, 0.1f}, {"pvx1", G::MAGIC_FAMILY, G::PURE_FX, -0.5f, 0.5f},
    {"pvx2", G::MAGIC_FAMILY, G::PURE_FX, -0.5f, 0.5f},
    {"pcy1", G::MAGIC_FAMILY, G::PURE_FY, 1, 2.5f}, {"pdy1", G::MAGIC_FAMILY, G::PURE_FY, 0.1f, 4},
    {"pdy2", G::MAGIC_FAMILY, G::PURE_FY, -2, 2}, {"pdy3", G::MAGIC_FAMILY, G::PURE_FY, -50, 50},
    {"pey1", G::MAGIC_FAMILY, G::PURE_FY, -10, 1}, {"pey2", G::MAGIC_FAMILY, G::PURE_FY, -5, 5},
    {"pey3", G::MAGIC_FAMILY, G::PURE_FY, -5, 5}, {"pey4", G::MAGIC_FAMILY, G::PURE_FY, -200, 200},
    {"pky1", G::MAGIC_FAMILY, G::PURE_FY, -200, 200}, {"pky2", G::MAGIC_FAMILY, G::PURE_FY, 0.1f, 20},
    {"pky3", G::MAGIC_FAMILY, G::PURE_FY, -5, 5}, {"phy1", G::MAGIC_FAMILY, G::PURE_FY, -0.1f, 0.1f},
    {"phy2", G::MAGIC_FAMILY, G::PURE_FY, -0.1f, 0.1f}, {"phy3", G::MAGIC_FAMILY, G::PURE_FY, -1, 1},
    {"pvy1", G::MAGIC_FAMILY, G::PURE_FY, -0.5f, 0.5f}, {"pvy2", G::MAGIC_FAMILY, G::PURE_FY, -0.5f, 0.5f},
    {"pvy3", G::MAGIC_FAMILY, G::PURE_FY, -5, 5}, {"pvy4", G::MAGIC_FAMILY, G::PURE_FY, -5, 5},
    {"qbz1", G::MAGIC_FAMILY, G::PURE_MZ, -50, 50}, {"qbz2", G::MAGIC_FAMILY, G::PURE_MZ, -20, 20},
    {"qbz3", G::MAGIC_FAMILY, G::PURE_MZ, -20, 20}, {"qbz4", G::MAGIC_FAMILY, G::PURE_MZ, -5, 5},
    {"qbz5", G::MAGIC_FAMILY, G::PURE_MZ, -5, 5}, {"qbz9", G::MAGIC_FAMILY, G::PURE_MZ, -100, 100},
    {"qbz10", G::MAGIC_FAMILY, G::PURE_MZ, -5, 5}, {"qcz1", G::MAGIC_FAMILY, G::PURE_MZ, 0.5f, 3},
    {"qdz1", G::MAGIC_FAMILY, G::PURE_MZ, -1, 1}, {"qdz2", G::MAGIC_FAMILY, G::PURE_MZ, -1, 1},
    {"qdz3", G::MAGIC_FAMILY, G::PURE_MZ, -10, 10}, {"qdz4", G::MAGIC_FAMILY, G::PURE_MZ, -50, 50},
    {"qdz6", G::MAGIC_FAMILY, G::PURE_MZ, -0.5f, 0.5f}, {"qdz7", G::MAGIC_FAMILY, G::PURE_MZ, -0.5f, 0.5f},
    {"qdz8", G::MAGIC_FAMILY, G::PURE_MZ, -5, 5}, {"qdz9", G::MAGIC_FAMILY, G::PURE_MZ, -5, 5},
    {"qez1", G::MAGIC_FAMILY, G::PURE_MZ, -20, 1}, {"qez2", G::MAGIC_FAMILY, G::PURE_MZ, -20, 20},
    {"qez3", G::MAGIC_FAMILY, G::PURE_MZ, -20, 20}, {"qez4", G::MAGIC_FAMILY, G::PURE_MZ, -20, 20},
    {"qez5", G::MAGIC_FAMILY, G::PURE_MZ, -1000, 1000}, {"qhz1", G::MAGIC_FAMILY, G::PURE_MZ, -0.1f, 0.1f},
    {"qhz2", G::MAGIC_FAMILY, G::PURE_MZ, -0.1f, 0.1f}, {"qhz3", G::MAGIC_FAMILY, G::PURE_MZ, -1, 1},
    {"qhz4", G::MAGIC_FAMILY, G::PURE_MZ, -1, 1},
    {"rbx1", G::MAGIC_FAMILY, G::COMBINED_FX, 0, 100}, {"rbx2", G::MAGIC_FAMILY, G::COMBINED_FX, -100, 100},
    {"rcx1", G::MAGIC_FAMILY, G::COMBINED_FX, 0.3f, 2}, {"rex1", G::MAGIC_FAMILY, G::COMBINED_FX, -10, 1},
    {"rex2", G::MAGIC_FAMILY, G::COMBINED_FX, -5, 5}, {"rhx1", G::MAGIC_FAMILY, G::COMBINED_FX, -0.2f, 0.2f},
    {"rby1", G::MAGIC_FAMILY, G::COMBINED_FY, 0, 100}, {"rby2", G::MAGIC_FAMILY, G::COMBINED_FY, -100, 100},
    {"rby3", G::MAGIC_FAMILY, G::COMBINED_FY, -0.5f, 0.5f}, {"rcy1", G::MAGIC_FAMILY, G::COMBINED_FY, 0.3f, 2},
    {"rey1", G::MAGIC_FAMILY, G::COMBINED_FY, -10, 1}, {"rey2", G::MAGIC_FAMILY, G::COMBINED_FY, -5, 5},
    {"rhy1", G::MAGIC_FAMILY, G::COMBINED_FY, -0.2f, 0.2f}, {"rhy2", G::MAGIC_FAMILY, G::COMBINED_FY, -0.2f, 0.2f},
    {"rvy1", G::MAGIC_FAMILY, G::COMBINED_FY, -1, 1}, {"rvy2", G::MAGIC_FAMILY, G::COMBINED_FY, -1, 1},
    {"rvy3", G::MAGIC_FAMILY, G::COMBINED_FY, -10, 10}, {"rvy4", G::MAGIC_FAMILY, G::COMBINED_FY, -200, 200},
    {"rvy5", G::MAGIC_FAMILY, G::COMBINED_FY, -5, 5}, {"rvy6", G::MAGIC_FAMILY, G::COMBINED_FY, -200, 200},
    {"ssz1", G::MAGIC_FAMILY, G::COMBINED_MZ, -1, 1}, {"ssz2", G::MAGIC_FAMILY, G::COMBINED_MZ, -1, 1},
    {"ssz3", G::MAGIC_FAMILY, G::COMBINED_MZ, -10, 10}, {"ssz4", G::MAGIC_FAMILY, G::COMBINED_MZ, -10, 10},
};

// The family, group and bounds of a member: the table's, or the interim ones.
bool FitFields(const KPacejkaMember &m, G::Family *family, G::Group *group, float *lo, float *hi) {
  if (m.fitMin < m.fitMax) {
    *family = m.family, *group = m.group, *lo = m.fitMin, *hi = m.fitMax;
    return true;
  }
  for (const Interim &i : kInterim) {
    if (strcmp(i.name, m.name)) continue;
    *family = i.family, *group = i.group, *lo = i.lo, *hi = i.hi;
    return true;
  }
  return false;
}

bool FamilyFits(G::Family family, int model) {
  switch (family) {
    case G::ANY: return true;
    case G::PAC96_FAMILY: return model == KPacejka::PAC96;
    case G::MAGIC_FAMILY: return model == KPacejka::MF52 || model == KPacejka::MF61;
    default: return false;
  }
}

}  // namespace

int KFitStagesFor(int model, const KFitStage *stages[], int maxStages) {
  int n = 0;
  for (const KFitStage &s : kFitStages) {
    // Pacejka89/96 has no combined slip: its forces ignore the other slip.
    if (s.combined && model == KPacejka::PAC96) continue;
    if (n < maxStages) stages[n] = &s;
    n++;
  }
  return n;
}

bool KFitVaries(int model, const KFitStage &s, const KPacejkaMember &m, float *lo, float *hi) {
  G::Family family;
  G::Group group;
  if (m.kind != KPacejkaMember::FLOAT || !FitFields(m, &family, &group, lo, hi)) return false;
  return group == s.group && FamilyFits(family, model) && *lo < *hi;
}
