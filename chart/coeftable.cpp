// The coefficient tables of the editing panel.
#include "chart/coeftable.h"

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

// Scaling factors in radio order (the car.ini order of the member table):
// the label as the radio shows it and the description.
struct ScaleRow {
  const char *label;
  const char *desc;
};
const ScaleRow kScale[COEFF_SCALE_COUNT] = {
    {"lfz0", "nominal (rated) load"},
    {"lcx", "Fx shape factor"},
    {"lmux", "Fx peak friction coefficient"},
    {"lex", "Fx curvature factor"},
    {"lKx", "Fx slip stiffness"},
    {"lHx", "Fx horizontal shift"},
    {"lVx", "Fx vertical shift"},
    {"lGax", "camber for Fx"},
    {"lcy", "Fy shape factor"},
    {"lmuy", "Fy peak friction coefficient"},
    {"ley", "Fy curvature factor"},
    {"lKy", "Fy cornering stiffness"},
    {"lHy", "Fy horizontal shift"},
    {"lVy", "Fy vertical shift"},
    {"lGay", "camber for Fy"},
    {"ltr", "peak of pneumatic trail"},
    {"lres", "offset of residual torque"},
    {"lgaz", "camber for Mz"},
    {"lmx", "overturning couple"},
    {"lvmx", "Mx vertical shift"},
    {"lmy", "rolling resistance torque"},
    {"lxal", "alpha influence on Fx (combined)"},
    {"lyka", "alpha influence on Fy (combined)"},
    {"lvyka", "kappa induced Fy (combined)"},
    {"ls", "moment arm of Fx (combined)"},
    {"lsgkp", "relaxation length of Fx"},
    {"lsgal", "relaxation length of Fy"},
    {"lgyr", "gyroscopic torque"},
};
static_assert(COEFF_SCALE_COUNT <= KPACEJKA_INI_SCALING_COUNT, "the panel shows the first car.ini places");
static_assert(COEFF_PAC96_COUNT == KPacejka::PAC96_COUNT && COEFF_SCALE_COUNT == KPacejka::SCALING_COUNT,
              "fields are the member table's run a0 ... c17, lfz0 ... lres");

// The member table entry of a field: a0 ... c17 and then the scaling
// factors, which the table keeps right behind c17 in storage order.
const KPacejkaMember *FieldMember(int field) {
  if (field < 0 || field >= COEFF_PAC96_COUNT + COEFF_SCALE_COUNT) return nullptr;
  return KPacejkaPac96Member(0) + field;
}

// The field of scaling radio `index`.
int ScaleField(int index) {
  return int(KPacejkaIniScalingMember(index) - KPacejkaPac96Member(0));
}

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
  return FieldMember(first + index)->name;
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
    info.field = ScaleField(valid ? index : 0);
    return info;
  }
  int count, first;
  char prefix;
  const Row *rows = ListRows(list, &count, &first, &prefix);
  // Names are built from the list's letter and the index; a111/a112 are the
  // two halves of the missing a11 and carry their own names.
  if (index >= 0 && index < count) {
    snprintf(info.name, sizeof info.name, "%s", FieldMember(first + index)->name);
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
  const KPacejkaMember *m = FieldMember(field);
  return m ? m->name : nullptr;
}

float *CoeffFieldPtr(KPacejka *tyre, int field) {
  const KPacejkaMember *m = FieldMember(field);
  return m ? KPacejkaFloat(*tyre, *m) : nullptr;
}

float CoeffFieldGet(const KPacejka &tyre, int field, float def) {
  const float *p = CoeffFieldPtr(const_cast<KPacejka *>(&tyre), field);
  return p ? *p : def;
}
