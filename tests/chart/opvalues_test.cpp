// Values at the operating point: worked out by the stateless core, which
// answers exactly as the tyre itself and leaves it alone.
#include "chart/opvalues.h"

#include <gtest/gtest.h>

#include <string>

#include "golden.h"
#include "chart/curves.h"
#include "tyre/kpacejka.h"

namespace {

void ExpectSameAsTheTyre(KPacejka *tyre, const OperatingPoint &p, const std::string &what) {
  Curve before{}, after{};
  CurveSample(*tyre, tyre->GetStoredPoint(), CURVE_FY, CurveInitialRange(CURVE_FY), &before);
  OpValues v = OpValuesAt(*tyre, p);
  CurveSample(*tyre, tyre->GetStoredPoint(), CURVE_FY, CurveInitialRange(CURVE_FY), &after);
  for (int i = 0; i < CURVE_SAMPLES; i++) ASSERT_EQ(before.samples[i], after.samples[i]) << what;
  OpApplyAll(tyre, p);
  tyre->Calculate();
  EXPECT_TRUE(v.Fx == tyre->Fx && v.Fy == tyre->Fy && v.Mz == tyre->Mz)
      << what << ": " << v.Fx << " " << v.Fy << " " << v.Mz << " against " << tyre->Fx << " " << tyre->Fy << " "
      << tyre->Mz;
}

TEST(OpValues, TheCopyAnswersAsTheTyreAndLeavesItAlone) {
  OperatingPoint points[3];
  points[1] = {4000.0f, 0.05f, 3.0f, -2.0f};
  points[2] = {30000.0f, -1.0f, -100.0f, 10.0f};
  for (const char *source : {"touring", "MagicFormula61_Parameters.tir", "335_65R22_5_G275MSA_60psi.tir"}) {
    for (int w = 0; w < 4; w += 3) {
      KPacejka tyre;
      std::string error, path = source[0] == 't' ? TouringCar() : TirFile(source);
      ASSERT_TRUE(CarLoadTyreSource(path.c_str(), w, &tyre, &error)) << error;
      for (const OperatingPoint &p : points) ExpectSameAsTheTyre(&tyre, p, std::string(source) + " wheel " + std::to_string(w));
    }
  }
}

// The clamp notes are read off whole frames (frametexts_test.cpp).
TEST(OpValues, Text) {
  OpValues v{};
  v.Fx = 1234.56f, v.Fy = -78.9f, v.Mz = 5.678f;
  char line[128];
  OpValuesText(v, "RR", line, sizeof line);
  EXPECT_STREQ(line, "RR at the sliders: Fx 1234.6 N, Fy -78.9 N, Mz 5.68 N\xB7m");
}

}  // namespace
