// The TIR reader's line rules, its table limit and messages, and
// LoadFromTirFile: model selection, ranges, coefficient mapping and the
// bundled real files (each must load and give finite curves).
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <string>

#include "tests/base/capture.h"
#include "tests/tyre/tyre_fixtures.h"
#include "tyre/ptirfile.h"

using TirTest = TyreFileTest;

TEST_F(TirTest, LineRules) {
  const std::string path = Write("rules.tir",
                                 "$ comment = 1\n! also = 2\n' quoted = 3\ntop = 4\n"
                                 "[MODEL]  \nFITTYP = 52 $MF5.2\n[SCALING_COEFFICIENTS]\nLFZO = 1.1\n"
                                 "[LONGITUDINAL_COEFFICIENTS]\r\nPcx1 = 1.6e0\r\nPDX1=1.2\n"
                                 "PDX2   =    -0.1    $ trailing\nPDX3 =\t0.5\n  PEX1 = 0.3\nPCX1 = 9.9\n"
                                 "no equals sign here\n{radial width}\n"
                                 "PEX2 = 0.7");  // last line without a line end
  PTirFile tir(path.c_str());
  EXPECT_EQ(tir.GetInt("model.fittyp", 0), 52);
  EXPECT_STREQ(tir.GetValue(tir.FindIndex("model.fittyp")), "52");
  EXPECT_EQ(tir.GetInt("top", 0), 4);  // before any section: no prefix
  EXPECT_EQ(tir.GetFloat("comment", -1.0f), -1.0f);
  EXPECT_FLOAT_EQ(tir.GetFloat("scaling_coefficients.lfz0", 0), 1.1f);
  EXPECT_FLOAT_EQ(tir.GetFloat("LONGITUDINAL_COEFFICIENTS.PCX1", 0), 1.6f);  // any case, first wins
  EXPECT_FLOAT_EQ(tir.GetFloat("longitudinal_coefficients.pdx1", 0), 1.2f);
  EXPECT_FLOAT_EQ(tir.GetFloat("longitudinal_coefficients.pdx2", 0), -0.1f);
  EXPECT_STREQ(tir.GetValue(tir.FindIndex("longitudinal_coefficients.pdx3")), "\t0.5");
  EXPECT_FLOAT_EQ(tir.GetFloat("longitudinal_coefficients.pdx3", 0), 0.5f);
  EXPECT_EQ(tir.FindIndex("longitudinal_coefficients.pex1"), -1);  // leading blanks kept
  EXPECT_FLOAT_EQ(tir.GetFloat("longitudinal_coefficients.  pex1", 0), 0.3f);
  EXPECT_FLOAT_EQ(tir.GetFloat("longitudinal_coefficients.pex2", 0), 0.7f);
  EXPECT_EQ(tir.GetCount(), 10);
}

TEST_F(TirTest, TooManyPropertiesKeepsTheFirstThousand) {
  std::string text = "[A]\n";
  for (int i = 0; i < 1003; i++) {
    const std::string n = std::to_string(i);
    text.append("K").append(n).append(" = ").append(n).append("\n");
  }
  ReportCapture cap;
  PTirFile tir(Write("big.tir", text).c_str());
  EXPECT_EQ(tir.GetCount(), 1000);
  EXPECT_EQ(tir.GetInt("a.k999", -1), 999);
  EXPECT_EQ(tir.GetInt("a.k1000", -1), -1);
  std::string one = "PTirFile:Load(); too many properties - skipping\n";
  EXPECT_EQ(cap.errors, one + one + one);
}

TEST_F(TirTest, FittypSelectsTheModel) {
  struct Row { const char *line; int model; const char *errors; };
  const Row rows[] = {
      {"FITTYP = 61", 3, ""}, {"FITTYP = 52 $ comment", 1, ""},
      {"FITTYP = 62", 1, "model.fittyp = 62; only 52 (MF5.2) or 61 (MF6.1) supported! Attempting MF5.2\n"},
      {"", 1, "model.fittyp = 0; only 52 (MF5.2) or 61 (MF6.1) supported! Attempting MF5.2\n"},
  };
  for (const Row &r : rows) {
    const std::string path = Write("m.tir", std::string("[MODEL]\n") + r.line + "\n");
    ReportCapture cap;
    KPacejka t;
    EXPECT_TRUE(t.LoadFromTirFile(path.c_str()));
    EXPECT_EQ(t.model, r.model) << r.line;
    EXPECT_EQ(cap.errors, r.errors);
    EXPECT_EQ(cap.debug, "KPacejka:LoadFromTIRFile(" + path + ")\n");
  }
}

TEST_F(TirTest, MissingFileWarnsAndGivesDefaults) {
  ReportCapture cap;
  KPacejka t;
  t.pdx1 = 1.3f;
  t.r0 = 0.5f;
  t.fz0 = 3000.0f;
  EXPECT_TRUE(t.LoadFromTirFile((dir + "/none.tir").c_str()));
  EXPECT_EQ(cap.warnings, "PTirFile:Load(" + dir + "/none.tir); can't open file\n");
  EXPECT_TRUE(t.model == 1 && t.r0 == 0.3f && t.fz0 == 1500.0f && t.pdx1 == 1.3f);
}

TEST_F(TirTest, SectionsKeysAndRanges) {
  const std::string path = Write(
      "full.tir",
      "[MODEL]\nFITTYP = 61\n[DIMENSIONS]\nUNLOADED_RADIUS = 0.31\n[VERTICAL]\nFNOMIN = 4000\n"
      "[OTHER]\nUNLOADED_RADIUS = 9\n[LONG_SLIP_RANGE]\nKPUMIN = -1.5\nKPUMAX = 1.5\n"
      "[SLIP_ANGLE_RANGE]\nALPMIN = -0.4\n[VERTICAL_FORCE_RANGE]\nFZMAX = 10000\n"
      "[LATERAL_COEFFICIENTS]\nRVY6 = 10\nPTY2 = 3\n[ALIGNING_COEFFICIENTS]\nQBZ4 = 0.5\nQBZ10 = 0.2\n"
      "SSZ4 = -0.3\n[SCALING_COEFFICIENTS]\nLKZC = 0.8\nLRES = 1.2\nLMUY = 0.9\n"
      "[TURNSLIP_COEFFICIENTS]\nPDXP1 = 0.4\n");
  KPacejka t;
  t.longv = 10.0f;
  t.mbelt = 5.0f;
  t.qbz4 = 0.25f;
  t.LoadFromTirFile(path.c_str());
  EXPECT_TRUE(t.r0 == 0.31f && t.fz0 == 4000.0f && t.longv + t.mbelt == 30.0f);  // 30 and 0 whatever the file says
  EXPECT_TRUE(t.slipRatioMin == -1.5f && t.slipRatioMax == 1.5f && t.fzMax == 10000.0f && t.slipAngleMin == -0.4f);
  EXPECT_EQ(t.slipAngleMax, 99.0f);  // absent: current value
  EXPECT_TRUE(t.rvy6 + t.pty2 == 13.0f && t.qbz10 == 0.2f && t.ssz4 == -0.3f);
  EXPECT_EQ(t.qbz4, 0.25f);  // never imported
  EXPECT_TRUE(t.lt == 0.8f && t.lres == 1.2f && t.lmuy == 0.9f && t.lkyc == 1.0f);  // lt from LKZC
}

TEST(TirFiles, EveryBundledFileLoadsAndGivesFiniteCurves) {
  int files = 0;
  for (const auto &e : std::filesystem::directory_iterator(TYRO_SOURCE_DIR "/data/tyres")) {
    if (e.path().extension() != ".tir") continue;
    files++;
    ReportCapture cap;  // fittyp errors expected for some files
    KPacejka::RearmNaNReports();
    KPacejka t;
    t.LoadFromTirFile(e.path().c_str());
    EXPECT_TRUE(t.model == 1 || t.model == 3);
    EXPECT_GT(t.fz0, 1000.0f);
    EXPECT_GT(t.pdx1, 0.5f);
    for (float Fz : {0.5f * t.fz0, t.fz0, 1.5f * t.fz0})
      for (float kappa = -0.3f; kappa <= 0.3f; kappa += 0.05f)
        for (float alpha = -0.2f; alpha <= 0.2f; alpha += 0.05f) {
          Evaluate(t, Fz, kappa, alpha, 0.02);
          ASSERT_TRUE(std::isfinite(t.Fx) && std::isfinite(t.Fy) && std::isfinite(t.Mz)) << e.path();
        }
    EXPECT_EQ(cap.errors.find("NaN"), std::string::npos) << cap.errors;
  }
  EXPECT_EQ(files, 7);
}
