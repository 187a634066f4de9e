// Loading a car's four tyres and single tyres from command-line sources.
#include "tool/carload.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "golden.h"
#include "tyre/kpacejka.h"

namespace {

// Runs the body in a scratch folder holding data/cars/<name> links to the
// test cars, as the tool's base folder would.
struct CarFolder {
  std::string root, old;
  CarFolder() {
    char tmpl[] = "/tmp/tyro_carsXXXXXX";
    root = mkdtemp(tmpl);
    std::string cmd = "mkdir -p '" + root + "/data/cars' && ln -s '" TYRO_TEST_DATA "/tool/touring' '" + root +
                      "/data/cars/touring' && ln -s '" TYRO_TEST_DATA "/tool/nowheel2' '" + root +
                      "/data/cars/nowheel2'";
    EXPECT_EQ(system(cmd.c_str()), 0);
    char buf[4096];
    old = getcwd(buf, sizeof buf) ? buf : ".";
    EXPECT_EQ(chdir(root.c_str()), 0);
  }
  ~CarFolder() {
    EXPECT_EQ(chdir(old.c_str()), 0);
    (void)!system(("rm -rf '" + root + "'").c_str());
  }
};

}  // namespace

TEST(CarLoad, PathsOfCarAndWheels) {
  EXPECT_EQ(CarIniPath("touring"), "data/cars/touring/car.ini");
  EXPECT_EQ(CarWheelSection(0), "wheel0.pacejka");
  EXPECT_EQ(CarWheelSection(3), "wheel3.pacejka");
}

TEST(CarLoad, FourWheelsFromTheCarFolder) {
  CarFolder f;
  KPacejka t[4];
  KPacejka *list[4] = {&t[0], &t[1], &t[2], &t[3]};
  CarLoadTyres("touring", list);
  EXPECT_FLOAT_EQ(t[0].b2, 1800.0f);
  EXPECT_FLOAT_EQ(t[1].b2, 2000.0f);
  EXPECT_FLOAT_EQ(t[3].a2, 1450.0f);
  EXPECT_FLOAT_EQ(t[2].c17, -1.1f);
}

TEST(CarLoad, MissingSectionLeavesResetValues) {
  CarFolder f;
  KPacejka t[4];
  KPacejka *list[4] = {&t[0], &t[1], &t[2], &t[3]};
  t[2].b2 = 99.0f;  // whatever was there before is reset
  CarLoadTyres("nowheel2", list);
  EXPECT_FLOAT_EQ(t[0].b2, 1800.0f);
  EXPECT_FLOAT_EQ(t[3].b2, 1800.0f);
  EXPECT_EQ(t[2].model, 0);
  EXPECT_EQ(t[2].b2, 0.0f);
  EXPECT_EQ(t[2].a0, 0.0f);
}

TEST(CarLoad, MissingCarIsSilentAndResets) {
  CarFolder f;
  KPacejka t[4];
  KPacejka *list[4] = {&t[0], &t[1], &t[2], &t[3]};
  t[0].a2 = 5.0f;
  CarLoadTyres("no-such-car", list);
  EXPECT_EQ(t[0].a2, 0.0f);
  CarLoadTyres("", list);
  EXPECT_EQ(t[1].model, 0);
}

TEST(CarLoad, SourcesFileFolderAndErrors) {
  KPacejka tyre;
  std::string error;
  ASSERT_TRUE(CarLoadTyreSource(TYRO_TEST_DATA "/tool/touring", 1, &tyre, &error)) << error;
  EXPECT_FLOAT_EQ(tyre.b2, 2000.0f);
  ASSERT_TRUE(CarLoadTyreSource(TouringCar().c_str(), 0, &tyre, &error)) << error;
  EXPECT_FLOAT_EQ(tyre.b2, 1800.0f);

  EXPECT_FALSE(CarLoadTyreSource("/no/such/car.ini", 0, &tyre, &error));
  EXPECT_EQ(error, "/no/such/car.ini: no such file");
  EXPECT_FALSE(CarLoadTyreSource(TYRO_TEST_DATA "/tool", 0, &tyre, &error));
  EXPECT_EQ(error, std::string(TYRO_TEST_DATA "/tool") + ": folder holds no car.ini");
  EXPECT_FALSE(CarLoadTyreSource(TouringCar().c_str(), 4, &tyre, &error));
  EXPECT_EQ(error, "wheel 4 is not 0..3");
}

TEST(CarLoad, TirSourcesInAnyCase) {
  std::string tir = std::string(TYRO_SOURCE_DIR) + "/data/tyres/MagicFormula61_Parameters.tir";
  KPacejka tyre;
  std::string error;
  ASSERT_TRUE(CarLoadTyreSource(tir.c_str(), 0, &tyre, &error)) << error;
  EXPECT_EQ(tyre.model, 3);
  // The same file under an upper-case extension is still read as TIR.
  char tmpl[] = "/tmp/tyro_tirXXXXXX";
  ASSERT_NE(mkdtemp(tmpl), nullptr);
  std::string upper = std::string(tmpl) + "/TYRE.TIR";
  ASSERT_EQ(system(("cp '" + tir + "' '" + upper + "'").c_str()), 0);
  KPacejka again;
  ASSERT_TRUE(CarLoadTyreSource(upper.c_str(), 0, &again, &error)) << error;
  EXPECT_EQ(again.model, 3);
  EXPECT_EQ(again.pdy1, tyre.pdy1);
  (void)!system(("rm -rf '" + std::string(tmpl) + "'").c_str());
}
