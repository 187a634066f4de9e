// The coefficient tables of the editing panel.
#include "tool/coeftable.h"

#include <cstdio>

#include "tyre/kpacejka.h"

namespace {

struct Row {
  const char *desc;
  const char *unit;
  float min, max;
};

// Pacejka89/96 longitudinal coefficients b0 ... b12. "k/N" for b1 is the unit
// text exactly as the tool has always printed it.
const Row kB[] = {
    {"Shape factor", "", 0, 2},
    {"Load influence on longitudinal friction coeff (*1000)", "k/N", -25, 25},
    {"Longitudinal friction coeff at load=0 (*1000)", "", 0, 3000},
    {"Curvature factor of stiffness", "N/%/kN^2", -1, 1},
    {"Change of stiffness with load at load = 0", "N/%/kN", 0, 500},
    {"Change of progressivity of stiffness/load", "kN^-1", -1, 1},
    {"Curvature change with load^2", "", -1, 1},
    {"Curvature change with load", "", -1, 1},
    {"Curvature at load=0", "", -1, 1},
    {"Load influence on hor. shift", "%/kN", -1, 1},
    {"Horizontal shift at load=0", "%", -1, 1},
    {"Load influence on vertical shift", "N/kN", -1, 1},
    {"Vertical shift at load=0", "N", -1, 1},
};

// Pacejka89/96 lateral coefficients a0 ... a10, a111, a112, a12, a13.
const Row kA[] = {
    {"Shape factor", "", 0, 2},
    {"Load infl. on lat. friction coeff (*1000)", "kN^-1", -50, 50},
    {"Lateral friction coeff at load=0 (*1000)", "", 0, 3000},
    {"Maximum stiffness", "N/deg", 0, 3000},
    {"Load at maximum stiffness", "kN", 0, 50},
    {"Camber influence on stiffnes", "%/deg/100", -1, 1},
    {"Curvature change with load", "", -2.5f, 2.5f},
    {"Curvature at load=0", "", -2.5f, 2.5f},
    {"Hor. shift because of camber", "deg/deg", -1, 1},
    {"Load influence on horizontal shift", "deg/kN", -1, 1},
    {"Horizontal shift at load=0", "deg", -1, 1},
    {"Camber influence on vertical shift, load dependent", "N/deg/kN", -15, 15},
    {"Camber influence on vertical shift", "N/deg/kN^2", -1, 1},
    {"Load influence on vertical shift", "N/kN", -10, 10},
    {"Vertical shift at load=0", "N", 0, 100},
};

// Pacejka89/96 aligning-moment coefficients c0 ... c17; c8 has no description.
const Row kC[] = {
    {"Shape factor", "", -2.5f, 2.5f},
    {"Load influence of peak value", "Nm/kN^2", -5, 5},
    {"Load influence of peak value", "Nm/kN", -15, 15},
    {"Curvature factor of stiffness", "m/deg/kN^2", -1.5f, 1.5f},
    {"Change of stiffness with load at load=0", "Nm/deg/kN", -10, 10},
    {"Change of progressivity of stiffness/load", "kN^-1", -1, 1},
    {"Camber influence on stiffness", "%/deg/100", -1, 1},
    {"Curvature change with load^2", "", -1, 1},
    {"", "", -7.5f, 7.5f},
    {"Curvature at load=0", "", -25, 25},
    {"Camber influence on stiffness", "", -1, 1},
    {"Camber influence on horizontal shift", "deg/deg", -0.5f, 0.5f},
    {"Load influence on horizontal shift", "deg/kN", -0.5f, 0.5f},
    {"Horizontal shift at load=0", "deg", -1, 1},
    {"Camber influence on vertical shift", "Nm/deg/kN^2", -1, 1},
    {"Camber influence on vertical shift", "Nm/deg/kN", -2.5f, 2.5f},
    {"Load influence on vertical shift", "Nm/kN", -1.5f, 1.5f},
    {"Vertical shift at load=0", "Nm", -2.5f, 2.5f},
};

// Scaling factors in radio order, with the index of each in the tyre's
// storage order (lfz0 ... lgay, lxal ... lgyr, lmx, lvmx, lmy, lgaz, ltr, lres).
struct ScaleRow {
  const char *label;
  const char *desc;
  int storage;
};
const ScaleRow kScale[COEFF_SCALE_COUNT] = {
    {"lfz0", "nominal (rated) load", 0},
    {"lcx", "Fx shape factor", 1},
    {"lmux", "Fx peak friction coefficient", 2},
    {"lex", "Fx curvature factor", 3},
    {"lKx", "Fx slip stiffness", 4},
    {"lHx", "Fx horizontal shift", 5},
    {"lVx", "Fx vertical shift", 6},
    {"lGax", "camber for Fx", 7},
    {"lcy", "Fy shape factor", 8},
    {"lmuy", "Fy peak friction coefficient", 9},
    {"ley", "Fy curvature factor", 10},
    {"lKy", "Fy cornering stiffness", 11},
    {"lHy", "Fy horizontal shift", 12},
    {"lVy", "Fy vertical shift", 13},
    {"lGay", "camber for Fy", 14},
    {"ltr", "peak of pneumatic trail", 26},
    {"lres", "offset of residual torque", 27},
    {"lgaz", "camber for Mz", 25},
    {"lmx", "overturning couple", 22},
    {"lvmx", "Mx vertical shift", 23},
    {"lmy", "rolling resistance torque", 24},
    {"lxal", "alpha influence on Fx (combined)", 15},
    {"lyka", "alpha influence on Fy (combined)", 16},
    {"lvyka", "kappa induced Fy (combined)", 17},
    {"ls", "moment arm of Fx (combined)", 18},
    {"lsgkp", "relaxation length of Fx", 19},
    {"lsgal", "relaxation length of Fy", 20},
    {"lgyr", "gyroscopic torque", 21},
};

// Keys of the whole run, in storage order.
const char *const kFieldKeys[COEFF_PAC96_COUNT + COEFF_SCALE_COUNT] = {
    "a0",   "a1",   "a2",   "a3",   "a4",   "a5",    "a6",  "a7",    "a8",    "a9",
    "a10",  "a111", "a112", "a12",  "a13",  "b0",    "b1",  "b2",    "b3",    "b4",
    "b5",   "b6",   "b7",   "b8",   "b9",   "b10",   "b11", "b12",   "c0",    "c1",
    "c2",   "c3",   "c4",   "c5",   "c6",   "c7",    "c8",  "c9",    "c10",   "c11",
    "c12",  "c13",  "c14",  "c15",  "c16",  "c17",   "lfz0", "lcx",  "lmux",  "lex",
    "lkx",  "lhx",  "lvx",  "lgax", "lcy",  "lmuy",  "ley", "lky",   "lhy",   "lvy",
    "lgay", "lxal", "lyka", "lvyka", "ls",  "lsgkp", "lsgal", "lgyr", "lmx",  "lvmx",
    "lmy",  "lgaz", "ltr",  "lres",
};

constexpr int kFieldA0 = 0, kFieldB0 = 15, kFieldC0 = 28;

const Row *ListRows(CoeffList list, int *count, int *firstField, char *prefix) {
  switch (list) {
    case COEFF_LIST_A: *count = 15; *firstField = kFieldA0; *prefix = 'a'; return kA;
    case COEFF_LIST_C: *count = 18; *firstField = kFieldC0; *prefix = 'c'; return kC;
    default: *count = 13; *firstField = kFieldB0; *prefix = 'b'; return kB;
  }
}

}  // namespace

CoeffList CoeffListFor(int model, int focus) {
  if (model == 1 || model == 3) return COEFF_LIST_SCALE;
  if (focus == 2) return COEFF_LIST_A;
  if (focus == 3) return COEFF_LIST_C;
  return COEFF_LIST_B;
}

int CoeffListLength(CoeffList list) {
  int count, first;
  char prefix;
  if (list == COEFF_LIST_SCALE) return COEFF_SCALE_COUNT;
  ListRows(list, &count, &first, &prefix);
  return count;
}

const char *CoeffLabel(CoeffList list, int index) {
  if (index < 0 || index >= CoeffListLength(list)) return "---";
  if (list == COEFF_LIST_SCALE) return kScale[index].label;
  int count, first;
  char prefix;
  ListRows(list, &count, &first, &prefix);
  return kFieldKeys[first + index];
}

CoeffInfo CoeffLookup(CoeffList list, int index) {
  CoeffInfo info{};
  if (list == COEFF_LIST_SCALE) {
    // Out of range never happens from the panel; when it does, the first
    // factor is edited and the description shows the slip.
    bool valid = index >= 0 && index < COEFF_SCALE_COUNT;
    const ScaleRow &row = kScale[valid ? index : 0];
    snprintf(info.name, sizeof info.name, "%s", row.label);
    info.desc = valid ? row.desc : "BUG!!";
    info.unit = "";
    info.minimum = 0.0f;
    info.range = 2.0f;
    info.field = COEFF_PAC96_COUNT + row.storage;
    return info;
  }
  int count, first;
  char prefix;
  const Row *rows = ListRows(list, &count, &first, &prefix);
  // Names are built from the list's letter and the index; a111/a112 are the
  // two halves of the missing a11 and carry their own names.
  if (index >= 0 && index < count) {
    snprintf(info.name, sizeof info.name, "%s", kFieldKeys[first + index]);
    info.desc = rows[index].desc;
    info.unit = rows[index].unit;
    info.minimum = rows[index].min;
    info.range = rows[index].max - rows[index].min;
    info.field = first + index;
  } else {
    snprintf(info.name, sizeof info.name, "%c%d", prefix, index);
    info.desc = "";
    info.unit = "";
    info.minimum = 0.0f;
    info.range = 1.0f;
    info.field = COEFF_FIELD_NONE;
  }
  return info;
}

const char *CoeffFieldKey(int field) {
  if (field < 0 || field >= COEFF_PAC96_COUNT + COEFF_SCALE_COUNT) return nullptr;
  return kFieldKeys[field];
}

float *CoeffFieldPtr(KPacejka *tyre, int field) {
  if (field < 0 || field >= COEFF_PAC96_COUNT + COEFF_SCALE_COUNT) return nullptr;
  if (field < COEFF_PAC96_COUNT) return &tyre->Pac96(field);
  const KPacejkaMember *m = KPacejkaFindMember(kFieldKeys[field]);
  return m ? KPacejkaFloat(*tyre, *m) : nullptr;
}

float CoeffFieldGet(const KPacejka &tyre, int field, float def) {
  const float *p = CoeffFieldPtr(const_cast<KPacejka *>(&tyre), field);
  return p ? *p : def;
}
