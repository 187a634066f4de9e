// The ASCII and car.ini-style exports, byte for byte.
#include "chart/export.h"

#include <gtest/gtest.h>

#include <string>

#include "golden.h"
#include "chart/curves.h"
#include "chart/oppoint.h"
#include "tyre/kpacejka.h"

namespace {

struct Tyres {
  KPacejka fx, fy;
  explicit Tyres(const std::string &source, int wheel = 0) {
    std::string error;
    for (KPacejka *t : {&fx, &fy}) {
      EXPECT_TRUE(CarLoadTyreSource(source.c_str(), wheel, t, &error)) << error;
      OpApplyAll(t, OperatingPoint());
    }
  }
};

}  // namespace

TEST(ExportAscii, TouringCarMatchesGoldenAndDependsOnTheWheel) {
  Tyres t(TouringCar()), w1(TouringCar(), 1);
  ExpectGolden("touring_ascii_134_2.txt", ExportAsciiText(&t.fx, &t.fy, 134, 2.0f));
  EXPECT_NE(ExportAsciiText(&t.fx, &t.fy, 20, 1.0f), ExportAsciiText(&w1.fx, &w1.fy, 20, 1.0f));
  // No steps, or a negative count: the headers only.
  const std::string headers =
      "// ASCII export of Korvane's Tyrograph\n// Values from SR=0.00 to 2.00, 0 steps, Fx normalized\n\n\n\n"
      "// Values from SA=0.00 to 2.00 radians, 0 steps, Fy normalized\n\n";
  EXPECT_EQ(ExportAsciiText(&t.fx, &t.fy, 0, 2.0f), headers);
  EXPECT_EQ(ExportAsciiText(&t.fx, &t.fy, -3, 2.0f), headers);
  // No positive force: divided by 1.
  KPacejka zero;  // reset coefficients: every force 0
  OpApplyAll(&zero, OperatingPoint());
  EXPECT_EQ(ExportAsciiText(&zero, &zero, 3, 1.0f),
            "// ASCII export of Korvane's Tyrograph\n// Values from SR=0.00 to 1.00, 3 steps, Fx normalized\n\n"
            "0.00000 0.00000 0.00000 \n\n"
            "// Values from SA=0.00 to 1.00 radians, 3 steps, Fy normalized\n\n0.00000 0.00000 0.00000 ");
}

TEST(ExportCarIni, Pacejka96BlockMatchesGolden) {
  Tyres t(TouringCar());
  // Peaks as the zoomed graphs find them at the start-up operating point.
  CurveRange rx = CurveInitialRange(CURVE_FX), ry = CurveInitialRange(CURVE_FY);
  CurveApplyZoom(CURVE_FX, true, &rx);
  CurveApplyZoom(CURVE_FY, true, &ry);
  Curve cx, cy;
  CurveSample(t.fx, t.fx.GetStoredPoint(), CURVE_FX, rx, &cx);
  CurveSample(t.fy, t.fy.GetStoredPoint(), CURVE_FY, ry, &cy);
  ExpectGolden("touring_carini.txt", ExportCarIniText(t.fx, cx.peakX, cy.peakX));
  // The statistics are the peaks as given, the slip angle in radians.
  std::string text = ExportCarIniText(KPacejka(), 0.125f, 57.29578f);
  EXPECT_NE(text.find("  optimal_slipratio=0.12500\n  optimal_slipangle=1.00000\n}\n"), std::string::npos);
  KPacejka p2006;  // model 2 uses this block too
  p2006.model = 2;
  EXPECT_NE(ExportCarIniText(p2006, 0, 0).find("  model=0\n"), std::string::npos);
}

TEST(ExportCarIni, MagicFormulaModelsWriteTheScaleFactorBlock) {
  Tyres t(TirFile("MagicFormula52_Parameters.tir"));
  ASSERT_EQ(t.fx.model, 1);
  ExpectGolden("mf52_carini.txt", ExportCarIniText(t.fx, 0.15f, 19.86f));
  for (int model : {1, 3}) {
    KPacejka tyre;
    tyre.model = model;
    ExpectGolden("scale_block_defaults.txt", ExportCarIniText(tyre, 0.1f, 5.0f));
  }
}
