// Loading a tyre from a configuration tree: the key rules per model, the
// lxal/lyka warnings, the camber check and import_file.
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

TEST_F(LoadTest, KeyRulesPerModel) {
  KPacejka t;  // Pacejka89/96: a missing key gives 0, not the leftovers
  t.a2 = t.b2 = 999.0f;
  EXPECT_TRUE(t.LoadFromInfo(Car("    model=0\n    a0=1.5\n    c17=-1.1\n").get(), "wheel0.pacejka"));
  EXPECT_TRUE(t.a0 == 1.5f && t.c17 == -1.1f && t.a2 + t.b2 == 0.0f && t.lxal + t.lyka == 2.0f);

  KPacejka m;  // Magic Formula: a missing key keeps the current value
  m.pdx1 = 1.2f;
  m.fz0 = 4500.0f;
  m.a2 = 5.0f;  // Pacejka89/96 coefficients are not read
  m.LoadFromInfo(Car("    model=1\n    pcx1=1.7\n    r0=0.33\n    lres=0.8\n    lt=0.7\n").get(), "wheel0.pacejka");
  EXPECT_TRUE(m.model == 1 && m.pcx1 == 1.7f && m.r0 == 0.33f && m.lres == 0.8f && m.lt == 0.7f);
  EXPECT_TRUE(m.pdx1 == 1.2f && m.fz0 == 4500.0f && m.a2 == 5.0f);

  KPacejka u;  // unknown model: only the common keys
  u.LoadFromInfo(Car("    model=7\n    a0=1.5\n    pcx1=2\n    fz_max=9000\n").get(), "wheel0.pacejka");
  EXPECT_TRUE(u.model == 7 && u.a0 + u.pcx1 == 0.0f && u.fzMax == 9000.0f);
}

TEST_F(LoadTest, LxalLykaWarnings) {
  struct Row { const char *keys; float lxal, lyka; const char *warnings; };
  const Row rows[] = {
      {"    lxal=0\n", 1.0f, 1.0f, "wheel0.pacejka.lxal may not be 0; using 1.0\n"},
      {"    lxal=0.5\n", 0.5f, 1.0f, "wheel0.pacejka.lxal should be >=1.0; accepted purely for testing\n"},
      {"    lyka=0\n    lxal=2\n", 2.0f, 1.0f, "wheel0.pacejka.lyka may not be 0; using 1.0\n"},
  };
  for (const Row &r : rows) {
    ReportCapture cap;
    KPacejka t;
    t.LoadFromInfo(Car(std::string("    model=0\n") + r.keys).get(), "wheel0.pacejka");
    EXPECT_TRUE(t.lxal == r.lxal && t.lyka == r.lyka) << r.keys;
    EXPECT_EQ(cap.warnings, r.warnings);
  }
}

TEST_F(LoadTest, CamberCheckWarnsWhenFyRisesNeverAboutMz) {
  ReportCapture cap;
  KPacejka t;  // touring set with the camber shift's sign flipped: Fy grows with camber
  t.Load(Car("    model=0\n    a0=1.55\n    a1=-55\n    a2=1450\n    a3=1900\n    a4=7.2\n"
             "    a6=-0.24\n    a7=1.0\n    a111=8.5\n    a112=0.29\n").get(), "wheel0.pacejka");
  EXPECT_EQ(cap.warnings,
            "Pacejka warning; with 2 degrees of inclination angle,\n"
            "lateral force (Fy) goes UP (unexpected) from 0.000 to 17.580N.\n"
            "This may indicate a sign error in a5/a8/a111/a112.\n");
  EXPECT_FLOAT_EQ(t.camber, 2.0f);
  EXPECT_FLOAT_EQ(t.Fz, 1.0f);
  cap.warnings.clear();  // Mz falls with camber (c15 < 0 at 1 kN): no warning
  t.Load(Car("    model=0\n    c0=2.2\n    c1=-4.3\n    c2=-4.4\n    c3=-1.9\n    c4=-9.6\n    c15=-10\n").get(),
         "wheel0.pacejka");
  EXPECT_LT(t.Mz, 0.0f);
  EXPECT_EQ(cap.warnings, "");
}

static const char *kSmallTir =
    "[MODEL]\nFITTYP = 61 $mf61\n[DIMENSIONS]\nUNLOADED_RADIUS = 0.35\n[VERTICAL]\nFNOMIN = 4200\n"
    "[LONGITUDINAL_COEFFICIENTS]\nPCX1 = 1.6\nPDX1 = 1.25\n";

TEST_F(LoadTest, ImportFileJoinsTheConfigurationFolder) {
  Write("cars/x/tyre.tir", kSmallTir);
  ReportCapture cap;
  KPacejka t;
  t.Load(Car("    import_file=tyre.tir\n    pcx1=1.7\n", "cars/x/car.ini").get(), "wheel0.pacejka");
  EXPECT_NE(cap.debug.find("KPacejka:LoadFromTIRFile(" + dir + "/cars/x/tyre.tir)"), std::string::npos)
      << cap.debug;
  EXPECT_TRUE(t.model == KPacejka::MF61 && t.r0 == 0.35f && t.fz0 == 4200.0f);
  EXPECT_TRUE(t.pdx1 == 1.25f && t.pcx1 == 1.7f);  // imported; the configuration's key wins
  EXPECT_EQ(cap.warnings, "");
  t.Load(Car("    import_file=nothere.tir\n    model=1\n    pdx1=1.1\n", "cars/y/car.ini").get(),
         "wheel0.pacejka");  // a missing import still loads the keys
  EXPECT_NE(cap.warnings.find(dir + "/cars/y/nothere.tir"), std::string::npos) << cap.warnings;
  EXPECT_TRUE(t.model == 1 && t.pdx1 == 1.1f);
  Write("cars/x/bare.ini", "wheel0\n{\n  pacejka\n  {\n    import_file=tyre.tir\n  }\n}\n");
  const auto old = std::filesystem::current_path();  // a configuration named without a folder
  std::filesystem::current_path(dir + "/cars/x");
  cap.debug.clear();
  t.Load(std::make_unique<QInfo>("bare.ini").get(), "wheel0.pacejka");
  std::filesystem::current_path(old);
  EXPECT_EQ(cap.debug, "KPacejka:LoadFromTIRFile(./tyre.tir)\n");
  EXPECT_EQ(t.model, KPacejka::MF61);
}
