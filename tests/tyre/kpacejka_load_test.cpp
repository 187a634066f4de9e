// Loading a tyre from a configuration tree: the key rules per model, the
// lxal/lyka warnings, import_file with its path joining, negate_camber and
// the camber plausibility check.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "base/qinfo.h"
#include "tests/base/capture.h"
#include "tests/tyre/tyre_fixtures.h"

class LoadTest : public TyreFileTest {
 protected:
  // Writes car.ini with one pacejka section for wheel 0 and reads it.
  std::unique_ptr<QInfo> Car(const std::string &keys, const std::string &name = "car.ini") {
    const std::string path = Write(name, "wheel0\n{\n  pacejka\n  {\n" + keys + "  }\n}\n");
    return std::make_unique<QInfo>(path.c_str());
  }
};

TEST_F(LoadTest, Pac96KeysDefaultToZero) {
  auto info = Car("    model=0\n    a0=1.5\n    c17=-1.1\n");
  KPacejka t;
  t.a2 = t.b2 = 999.0f;  // leftovers: a missing key gives 0, not these
  EXPECT_TRUE(t.LoadFromInfo(info.get(), "wheel0.pacejka"));
  EXPECT_EQ(t.a0, 1.5f);
  EXPECT_FLOAT_EQ(t.c17, -1.1f);
  EXPECT_EQ(t.a2, 0.0f);
  EXPECT_EQ(t.b2, 0.0f);
  EXPECT_EQ(t.lxal, 1.0f);
  EXPECT_EQ(t.lyka, 1.0f);
}

TEST_F(LoadTest, MagicFormulaKeysDefaultToCurrentValues) {
  auto info = Car("    model=1\n    pcx1=1.7\n    r0=0.33\n    lres=0.8\n    lt=0.7\n    qbz4=0.2\n");
  KPacejka t;
  t.pdx1 = 1.2f;
  t.fz0 = 4500.0f;
  t.lmuy = 0.9f;
  t.a2 = 5.0f;  // Pacejka89/96 coefficients are not read for model 1
  t.LoadFromInfo(info.get(), "wheel0.pacejka");
  EXPECT_EQ(t.model, 1);
  EXPECT_FLOAT_EQ(t.pcx1, 1.7f);
  EXPECT_FLOAT_EQ(t.r0, 0.33f);
  EXPECT_FLOAT_EQ(t.lres, 0.8f);
  EXPECT_FLOAT_EQ(t.lt, 0.7f);
  EXPECT_FLOAT_EQ(t.qbz4, 0.2f);
  EXPECT_EQ(t.pdx1, 1.2f);
  EXPECT_EQ(t.fz0, 4500.0f);
  EXPECT_EQ(t.lmuy, 0.9f);
  EXPECT_EQ(t.a2, 5.0f);
}

TEST_F(LoadTest, UnknownModelReadsOnlyTheCommonKeys) {
  auto info = Car("    model=7\n    a0=1.5\n    pcx1=2\n    fz_max=9000\n    slipangle_min=-0.3\n");
  KPacejka t;
  t.LoadFromInfo(info.get(), "wheel0.pacejka");
  EXPECT_EQ(t.model, 7);
  EXPECT_STREQ(t.GetModelName(), "<PacejkaModel?\?>");
  EXPECT_EQ(t.a0, 0.0f);
  EXPECT_EQ(t.pcx1, 0.0f);
  EXPECT_EQ(t.fzMax, 9000.0f);
  EXPECT_FLOAT_EQ(t.slipAngleMin, -0.3f);
}

TEST_F(LoadTest, LxalLykaWarnings) {
  struct Row { const char *keys; float lxal, lyka; const char *warnings; };
  const Row rows[] = {
      {"", 1.0f, 1.0f, ""},
      {"    lxal=0\n", 1.0f, 1.0f, "wheel0.pacejka.lxal may not be 0; using 1.0\n"},
      {"    lxal=0.5\n", 0.5f, 1.0f,
       "wheel0.pacejka.lxal should be >=1.0; accepted purely for testing\n"},
      {"    lyka=0\n    lxal=2\n", 2.0f, 1.0f, "wheel0.pacejka.lyka may not be 0; using 1.0\n"},
  };
  for (const Row &r : rows) {
    ReportCapture cap;
    auto info = Car(std::string("    model=0\n") + r.keys);
    KPacejka t;
    t.LoadFromInfo(info.get(), "wheel0.pacejka");
    EXPECT_EQ(t.lxal, r.lxal) << r.keys;
    EXPECT_EQ(t.lyka, r.lyka) << r.keys;
    EXPECT_EQ(cap.warnings, r.warnings);
  }
}

TEST_F(LoadTest, NegateCamberFlag) {
  KPacejka t;
  auto on = Car("    negate_camber=1\n");
  t.Load(on.get(), "wheel0.pacejka");
  EXPECT_EQ(t.flags & KPacejka::NEGATE_CAMBER, 1u);
  EXPECT_FLOAT_EQ(t.camber, -2.0f);  // left at the check's second point
  auto off = Car("    model=0\n", "other.ini");
  t.Load(off.get(), "wheel0.pacejka");
  EXPECT_EQ(t.flags, 0u);
}

TEST_F(LoadTest, LoadStartsFromResetCoefficients) {
  auto info = Car("    model=1\n    pcx1=1.7\n");
  KPacejka t;
  t.pdx1 = 1.2f;  // a previous tyre's value: Load resets it first
  t.Load(info.get(), "wheel0.pacejka");
  EXPECT_EQ(t.pdx1, 0.0f);
  EXPECT_FLOAT_EQ(t.pcx1, 1.7f);
}

TEST_F(LoadTest, CamberCheckWarnsWhenFyRises) {
  // Touring set with the camber shift's sign flipped: Fy grows with camber.
  std::string keys = "    model=0\n    a0=1.55\n    a1=-55\n    a2=1450\n    a3=1900\n    a4=7.2\n"
                     "    a6=-0.24\n    a7=1.0\n    a111=8.5\n    a112=0.29\n";
  ReportCapture cap;
  auto info = Car(keys);
  KPacejka t;
  t.Load(info.get(), "wheel0.pacejka");
  EXPECT_EQ(cap.warnings,
            "Pacejka warning; with 2 degrees of inclination angle,\n"
            "lateral force (Fy) goes UP (unexpected) from 0.000 to 17.580N.\n"
            "This may indicate a sign error in a5/a8/a111/a112.\n");
  EXPECT_FLOAT_EQ(t.camber, 2.0f);
  EXPECT_FLOAT_EQ(t.Fz, 1.0f);
}

TEST_F(LoadTest, CamberCheckNeverWarnsAboutMz) {
  // Mz falls with camber (c15 < 0 at 1 kN): the moment test stays silent.
  ReportCapture cap;
  auto info = Car("    model=0\n    c0=2.2\n    c1=-4.3\n    c2=-4.4\n    c3=-1.9\n    c4=-9.6\n"
                  "    c15=-10\n");
  KPacejka t;
  t.Load(info.get(), "wheel0.pacejka");
  EXPECT_LT(t.Mz, 0.0f);
  EXPECT_EQ(cap.warnings, "");
}

// ---- import_file ------------------------------------------------------------------

static const char *kSmallTir =
    "[MODEL]\nFITTYP = 61 $mf61\n"
    "[DIMENSIONS]\nUNLOADED_RADIUS = 0.35\n"
    "[VERTICAL]\nFNOMIN = 4200\n"
    "[LONGITUDINAL_COEFFICIENTS]\nPCX1 = 1.6\nPDX1 = 1.25\n"
    "[LATERAL_COEFFICIENTS]\nPCY1 = 1.3\nPDY1 = 1.05\n";

TEST_F(LoadTest, ImportFileJoinsTheConfigurationFolder) {
  Write("cars/x/tyre.tir", kSmallTir);
  auto info = Car("    import_file=tyre.tir\n    pcx1=1.7\n", "cars/x/car.ini");
  ReportCapture cap;
  KPacejka t;
  t.Load(info.get(), "wheel0.pacejka");
  EXPECT_NE(cap.debug.find("KPacejka:LoadFromTIRFile(" + dir + "/cars/x/tyre.tir)"), std::string::npos)
      << cap.debug;
  EXPECT_EQ(t.model, KPacejka::MF61);
  EXPECT_FLOAT_EQ(t.r0, 0.35f);
  EXPECT_EQ(t.fz0, 4200.0f);
  EXPECT_FLOAT_EQ(t.pdx1, 1.25f);  // imported, no key in the configuration
  EXPECT_FLOAT_EQ(t.pcx1, 1.7f);   // the configuration's key wins
  EXPECT_EQ(cap.warnings, "");
}

TEST_F(LoadTest, ImportFileMissingStillLoads) {
  auto info = Car("    import_file=nothere.tir\n    model=1\n    pdx1=1.1\n", "cars/y/car.ini");
  ReportCapture cap;
  KPacejka t;
  t.Load(info.get(), "wheel0.pacejka");
  EXPECT_NE(cap.warnings.find("PTirFile:Load(" + dir + "/cars/y/nothere.tir); can't open file"),
            std::string::npos)
      << cap.warnings;
  EXPECT_NE(cap.errors.find("model.fittyp = 0; only 52 (MF5.2) or 61 (MF6.1) supported! "
                            "Attempting MF5.2"),
            std::string::npos);
  EXPECT_EQ(t.model, 1);
  EXPECT_FLOAT_EQ(t.pdx1, 1.1f);
}

TEST_F(LoadTest, ImportFileBesideABareConfigurationName) {
  Write("t.tir", kSmallTir);
  Write("car.ini", "wheel0\n{\n  pacejka\n  {\n    import_file=t.tir\n  }\n}\n");
  const auto old = std::filesystem::current_path();
  std::filesystem::current_path(dir);
  {
    QInfo info("car.ini");
    ReportCapture cap;
    KPacejka t;
    t.Load(&info, "wheel0.pacejka");
    EXPECT_NE(cap.debug.find("KPacejka:LoadFromTIRFile(./t.tir)"), std::string::npos) << cap.debug;
    EXPECT_EQ(t.model, KPacejka::MF61);
  }
  std::filesystem::current_path(old);
}
