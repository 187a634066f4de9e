// The ASCII and car.ini-style exports, byte for byte.
#include "tool/export.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "golden.h"
#include "tool/carload.h"
#include "tool/curves.h"
#include "tool/oppoint.h"
#include "tyre/kpacejka.h"

namespace {

struct Tyres {
  KPacejka fx, fy;
  explicit Tyres(const std::string &source, int wheel = 0) {
    std::string error;
    EXPECT_TRUE(CarLoadTyreSource(source.c_str(), wheel, &fx, &error)) << error;
    EXPECT_TRUE(CarLoadTyreSource(source.c_str(), wheel, &fy, &error)) << error;
    OpApplyAll(&fx, OperatingPoint());
    OpApplyAll(&fy, OperatingPoint());
  }
};

const char *kHeadSR = "// ASCII export of Korvane's Tyrograph\n// Values from SR=0.00 to %s, %d steps, Fx normalized\n\n";

}  // namespace

TEST(ExportAscii, DefaultStepsOnTouringCarMatchGolden) {
  Tyres t(TouringCar());
  ExpectGolden("touring_ascii_134_2.txt", ExportAsciiText(&t.fx, &t.fy, 134, 2.0f));
}

TEST(ExportAscii, WheelOneDiffersFromWheelZero) {
  Tyres w0(TouringCar(), 0), w1(TouringCar(), 1);
  EXPECT_NE(ExportAsciiText(&w0.fx, &w0.fy, 20, 1.0f), ExportAsciiText(&w1.fx, &w1.fy, 20, 1.0f));
}

TEST(ExportAscii, ZeroStepsWritesHeadersOnly) {
  Tyres t(TouringCar());
  EXPECT_EQ(ExportAsciiText(&t.fx, &t.fy, 0, 2.0f),
            "// ASCII export of Korvane's Tyrograph\n"
            "// Values from SR=0.00 to 2.00, 0 steps, Fx normalized\n\n"
            "\n\n"
            "// Values from SA=0.00 to 2.00 radians, 0 steps, Fy normalized\n\n");
  // A negative count is the same as none.
  EXPECT_EQ(ExportAsciiText(&t.fx, &t.fy, -3, 2.0f).find("-3"), std::string::npos);
}

TEST(ExportAscii, SevenValuesALineLastEndsWithBlank) {
  Tyres t(TouringCar());
  std::string text = ExportAsciiText(&t.fx, &t.fy, 8, 0.5f);
  size_t start = text.find("normalized\n\n") + 12;
  size_t end = text.find("\n\n//", start);
  std::string fx = text.substr(start, end - start);
  // "v v v v v v v\nv " : seven values, a line feed, then one value and a blank.
  int blanks = 0, feeds = 0;
  for (char c : fx) blanks += c == ' ', feeds += c == '\n';
  EXPECT_EQ(feeds, 1) << fx;
  EXPECT_EQ(blanks, 7) << fx;
  EXPECT_EQ(fx.back(), ' ');
  // The peak of the sweep is written as exactly 1.
  EXPECT_NE(fx.find("1.00000"), std::string::npos) << fx;
}

TEST(ExportAscii, NoPositiveForceDividesByOne) {
  KPacejka fx, fy;  // reset coefficients: every force 0
  OpApplyAll(&fx, OperatingPoint());
  OpApplyAll(&fy, OperatingPoint());
  char head[200];
  snprintf(head, sizeof head, kHeadSR, "1.00", 3);
  EXPECT_EQ(ExportAsciiText(&fx, &fy, 3, 1.0f),
            std::string(head) + "0.00000 0.00000 0.00000 \n\n"
            "// Values from SA=0.00 to 1.00 radians, 3 steps, Fy normalized\n\n"
            "0.00000 0.00000 0.00000 ");
}

TEST(ExportCarIni, Pacejka96BlockMatchesGolden) {
  Tyres t(TouringCar());
  // Peaks as the zoomed graphs find them at the start-up operating point.
  CurveRange rx = CurveInitialRange(CURVE_FX), ry = CurveInitialRange(CURVE_FY);
  CurveApplyZoom(CURVE_FX, true, &rx);
  CurveApplyZoom(CURVE_FY, true, &ry);
  Curve cx, cy;
  CurveSample(&t.fx, CURVE_FX, rx, &cx);
  CurveSample(&t.fy, CURVE_FY, ry, &cy);
  ExpectGolden("touring_carini.txt", ExportCarIniText(t.fx, cx.peakX, cy.peakX));
}

TEST(ExportCarIni, StatisticsAreThePeaksAsGiven) {
  KPacejka tyre;
  std::string text = ExportCarIniText(tyre, 0.125f, 57.29578f);
  EXPECT_NE(text.find("  optimal_slipratio=0.12500\n  optimal_slipangle=1.00000\n}\n"), std::string::npos);
  // b11 and b12 are left out of this block.
  EXPECT_NE(text.find("  b10=0.00000\n  ; Aligning moment coefficients\n"), std::string::npos);
  EXPECT_EQ(text.find("b11"), std::string::npos);
}

TEST(ExportCarIni, MagicFormulaModelsWriteTheScaleFactorBlock) {
  for (int model : {1, 3}) {
    KPacejka tyre;
    tyre.model = model;
    tyre.lmuy = 0.95f;
    std::string text = ExportCarIniText(tyre, 0.1f, 5.0f);
    std::string head =
        "pacejka\n{\n  ; Tire scaling factors for Magic Formula 5.2 tire model\n  model=1\n"
        "  ; Statistical data (SR, SA in radians)\n  lfz0=1.00000\n";
    EXPECT_EQ(text.substr(0, head.size()), head);
    EXPECT_NE(text.find("  lmuy=0.95000\n"), std::string::npos);
    EXPECT_NE(text.find("  lsgal=1.00000\n  lgyr=1.00000\n}\n"), std::string::npos);
    EXPECT_EQ(text.find("optimal"), std::string::npos);
  }
  // Model 2 uses the Pacejka89/96 block.
  KPacejka p2006;
  p2006.model = 2;
  EXPECT_NE(ExportCarIniText(p2006, 0, 0).find("  model=0\n"), std::string::npos);
}

TEST(ExportCarIni, ScaleBlockOrderGolden) {
  KPacejka tyre;
  tyre.model = 1;
  // Distinct values show the order of the 28 lines.
  const char *order[] = {"lfz0", "lcx", "lmux", "lex", "lkx", "lhx", "lvx", "lgax", "lcy", "lmuy",
                         "ley", "lky", "lhy", "lvy", "lgay", "ltr", "lres", "lgaz", "lmx", "lvmx",
                         "lmy", "lxal", "lyka", "lvyka", "ls", "lsgkp", "lsgal", "lgyr"};
  std::string text = ExportCarIniText(tyre, 0, 0);
  size_t pos = 0;
  for (const char *k : order) {
    size_t at = text.find(std::string("  ") + k + "=", pos);
    ASSERT_NE(at, std::string::npos) << k;
    pos = at + 1;
  }
  ExpectGolden("scale_block_defaults.txt", text);
}

TEST(ExportWrite, UnwritablePathFails) {
  EXPECT_FALSE(ExportWriteFile("/nonexistent-folder/out.txt", "x"));
  char tmpl[] = "/tmp/tyro_exportXXXXXX";
  int fd = mkstemp(tmpl);
  ASSERT_GE(fd, 0);
  close(fd);
  ASSERT_TRUE(ExportWriteFile(tmpl, "a\nb\n"));
  EXPECT_EQ(ReadFileBytes(tmpl), "a\nb\n");
  unlink(tmpl);
}

TEST(ExportCarIni, MagicFormulaTirMatchesGolden) {
  Tyres t(std::string(TYRO_SOURCE_DIR) + "/data/tyres/MagicFormula52_Parameters.tir");
  ASSERT_EQ(t.fx.model, 1);
  ExpectGolden("mf52_carini.txt", ExportCarIniText(t.fx, 0.15f, 19.86f));
}
