// The coefficient tables behind the panel's 28 radios.
#include "chart/coeftable.h"

#include <gtest/gtest.h>

#include <cstring>
#include <strings.h>

TEST(CoeffTable, ListFollowsModelThenFocus) {
  struct Case { int model, focus; CoeffList list; } cases[] = {
      {0, 0, COEFF_LIST_B}, {0, 1, COEFF_LIST_B}, {0, 2, COEFF_LIST_A}, {0, 3, COEFF_LIST_C},
      // Model 2 shares the Pacejka89/96 coefficients; 1 and 3 always the scaling factors.
      {2, 2, COEFF_LIST_A}, {1, 0, COEFF_LIST_SCALE}, {1, 3, COEFF_LIST_SCALE}, {3, 2, COEFF_LIST_SCALE},
      {7, 3, COEFF_LIST_C},
  };
  for (const Case &c : cases) EXPECT_EQ(CoeffListFor(c.model, c.focus), c.list) << c.model << "/" << c.focus;
}

TEST(CoeffTable, LookupGivesTextsRangesAndFields) {
  struct Case {
    CoeffList list; int index; const char *name, *desc, *unit; float min, range; int field;
  } cases[] = {
      {COEFF_LIST_B, 1, "b1", "Load influence on longitudinal friction coeff (*1000)", "k/N", -25, 50, 16},
      {COEFF_LIST_A, 11, "a111", "Camber influence on vertical shift, load dependent", "N/deg/kN", -15, 30, 11},
      {COEFF_LIST_C, 17, "c17", "Vertical shift at load=0", "Nm", -2.5f, 5, 45},
      // Scaling factors: slider 0..2 each, field in storage order (ltr is stored 27th).
      {COEFF_LIST_SCALE, 15, "ltr", "peak of pneumatic trail", "", 0, 2, 46 + 26},
      {COEFF_LIST_SCALE, 28, "lfz0", "BUG!!", "", 0, 2, 46},
  };
  for (const Case &c : cases) {
    CoeffInfo info = CoeffLookup(c.list, c.index);
    EXPECT_TRUE(!strcmp(info.name, c.name) && !strcmp(info.desc, c.desc) && !strcmp(info.unit, c.unit)) << c.name;
    EXPECT_TRUE(info.minimum == c.min && info.range == c.range && info.field == c.field) << c.name;
  }
  // Past the end of a list: no field.
  for (auto [list, index] : {std::pair{COEFF_LIST_B, 13}, {COEFF_LIST_A, 15}, {COEFF_LIST_C, 18}})
    EXPECT_EQ(CoeffLookup(list, index).field, COEFF_FIELD_NONE) << index;
}

// Each scaling radio edits the factor its label names (labels differ from
// member names only in case: "lKx" edits lkx).
TEST(CoeffTable, ScalingRadiosEditTheFactorTheyName) {
  for (int i = 0; i < COEFF_SCALE_COUNT; i++) {
    CoeffInfo info = CoeffLookup(COEFF_LIST_SCALE, i);
    const char *key = CoeffFieldKey(info.field);
    ASSERT_NE(key, nullptr) << i;
    EXPECT_EQ(strcasecmp(info.name, key), 0) << i << ": radio " << info.name << " edits " << key;
  }
}
