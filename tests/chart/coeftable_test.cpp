// The coefficient tables behind the panel's 28 radios.
#include "chart/coeftable.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
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

// Every row the panel can show (each model, each focus, each of the 28
// radios and one past them), against the rows the panel has always shown:
// a wrong description, unit or slider range in the member table shows here.
// TYRO_UPDATE_PANEL_ROWS=1 stores the rows anew (after a deliberate change).
TEST(CoeffTable, PanelRowsStayAsTheyWere) {
  std::string text;
  char line[512];
  for (int model = 0; model < 4; model++)
    for (int focus = 0; focus < 4; focus++) {
      const CoeffList list = CoeffListFor(model, focus);
      for (int i = 0; i <= COEFF_RADIOS; i++) {
        const CoeffInfo c = CoeffLookup(list, i);
        snprintf(line, sizeof line, "model %d focus %d radio %2d %-4s: %s \"%s\" [%s] min %.9g range %.9g field %d\n",
                 model, focus, i, CoeffLabel(list, i), c.name, c.desc, c.unit, double(c.minimum), double(c.range),
                 c.field);
        text += line;
      }
    }
  const std::string path = std::string(TYRO_TEST_DATA) + "/tool/panel_rows.txt";
  if (getenv("TYRO_UPDATE_PANEL_ROWS")) {
    FILE *f = fopen(path.c_str(), "wb");
    ASSERT_NE(f, nullptr);
    fwrite(text.data(), 1, text.size(), f);
    fclose(f);
  }
  // Row by row, so that a failure shows the rows that changed.
  std::ifstream in(path, std::ios::binary);
  std::istringstream now(text);
  std::string want, got;
  int row = 0, differ = 0;
  while (std::getline(in, want)) {
    row++;
    if (!std::getline(now, got)) got = "(no row)";
    if (got != want && differ++ < 10) ADD_FAILURE() << path << " row " << row << "\n  was: " << want << "\n  now: " << got;
  }
  EXPECT_EQ(differ, 0);
  EXPECT_GT(row, 0) << path;
  EXPECT_FALSE(std::getline(now, got)) << "more rows than " << path << " holds: " << got;
}
