// The lists of editable coefficients: which coefficient each radio of the
// control panel names, its description, unit and value-slider range (all
// kept in the member table, tyre/kpacejka.h).
//
// Pacejka89/96 tyres show one of three lists by force focus (b for no focus
// and Fx, a for Fy, c for Mz); Magic Formula tyres (model 1 and 3) show the
// 28 scaling factors whatever the focus. Model 2 shares the Pacejka89/96
// coefficients and so shows their lists too.
//
// A coefficient is addressed by its field: its position in the tyre's run of
// floats that starts at a0 (0..45 the Pacejka89/96 coefficients a0 ... c17,
// 46..73 the scaling factors in storage order), or -1 for none.
#pragma once

class KPacejka;

enum CoeffList { COEFF_LIST_B, COEFF_LIST_A, COEFF_LIST_C, COEFF_LIST_SCALE };

constexpr int COEFF_RADIOS = 28;      // radios on the panel
constexpr int COEFF_PAC96_COUNT = 46;  // a0 ... c17
constexpr int COEFF_SCALE_COUNT = 28;
constexpr int COEFF_FIELD_NONE = -1;

struct CoeffInfo {
  char name[16];        // "b3", "a111", "lKx"
  const char *desc;     // "" when the table has none
  const char *unit;     // "" for non-dimensional values
  float minimum;        // value at slider position 0
  float range;          // value span of slider positions 0..1000
  int field;            // COEFF_FIELD_NONE when the entry edits nothing
};

// The list shown for a tyre model number and a focus (0 none, 1 Fx, 2 Fy, 3 Mz).
CoeffList CoeffListFor(int model, int focus);
// Entries of a list (13, 15, 18 or 28).
int CoeffListLength(CoeffList list);
// The radio label of entry `index`: its name, or "---" past the list's end.
const char *CoeffLabel(CoeffList list, int index);
// Everything the panel shows and edits for entry `index` of `list`.
CoeffInfo CoeffLookup(CoeffList list, int index);

// Name of a field as the car.ini keys spell it ("a111", "lkx"); null for a
// field outside 0..73.
const char *CoeffFieldKey(int field);
// The tyre's storage of a field; null for COEFF_FIELD_NONE or out of range.
float *CoeffFieldPtr(KPacejka *tyre, int field);
float CoeffFieldGet(const KPacejka &tyre, int field, float def = 0.0f);
