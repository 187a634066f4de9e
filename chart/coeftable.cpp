// The coefficient lists of the editing panel, over the member table (its
// labels, descriptions, units and slider ranges).
#include "chart/coeftable.h"

#include <cstdio>

#include "tyre/kpacejka.h"

namespace {

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

// The list's first field and length, and the letter of its names.
void ListRun(CoeffList list, int *count, int *firstField, char *prefix) {
  switch (list) {
    case COEFF_LIST_A: *count = 15; *firstField = kFieldA0; *prefix = 'a'; return;
    case COEFF_LIST_C: *count = 18; *firstField = kFieldC0; *prefix = 'c'; return;
    default: *count = 13; *firstField = kFieldB0; *prefix = 'b'; return;
  }
}

// What the panel shows of a member: the member table's texts and range.
void FromMember(const KPacejkaMember &m, int field, CoeffInfo *info) {
  snprintf(info->name, sizeof info->name, "%s", m.label ? m.label : m.name);
  info->desc = m.desc;
  info->unit = m.unit;
  info->minimum = m.sliderMin;
  info->range = m.sliderMax - m.sliderMin;
  info->field = field;
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
  ListRun(list, &count, &first, &prefix);
  return count;
}

const char *CoeffLabel(CoeffList list, int index) {
  if (index < 0 || index >= CoeffListLength(list)) return "---";
  if (list == COEFF_LIST_SCALE) return KPacejkaIniScalingMember(index)->label;
  int count, first;
  char prefix;
  ListRun(list, &count, &first, &prefix);
  return FieldMember(first + index)->name;
}

CoeffInfo CoeffLookup(CoeffList list, int index) {
  CoeffInfo info{};
  if (list == COEFF_LIST_SCALE) {
    // Out of range never happens from the panel; when it does, the first
    // factor is edited and the description shows the slip.
    bool valid = index >= 0 && index < COEFF_SCALE_COUNT;
    const int field = ScaleField(valid ? index : 0);
    FromMember(*FieldMember(field), field, &info);
    if (!valid) info.desc = "BUG!!";
    return info;
  }
  int count, first;
  char prefix;
  ListRun(list, &count, &first, &prefix);
  // Names are built from the list's letter and the index; a111/a112 are the
  // two halves of the missing a11 and carry their own names.
  if (index >= 0 && index < count) {
    FromMember(*FieldMember(first + index), first + index, &info);
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
