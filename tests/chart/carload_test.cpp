// Loading a car's four tyres and single tyres from command-line sources.
#include "chart/carload.h"

#include <gtest/gtest.h>

#include <string>

#include "golden.h"
#include "tyre/kpacejka.h"

TEST(CarLoad, FourWheelsFromTheCarFolderAndResetsWhereNoneIsGiven) {
  ScratchDir dir;
  dir.LinkCar("touring");
  dir.LinkCar("nowheel2");
  WorkingDir in(dir.root);
  KPacejka t[4];
  KPacejka *list[4] = {&t[0], &t[1], &t[2], &t[3]};
  CarLoadTyres("touring", list);
  EXPECT_TRUE(t[0].b2 == 1800.0f && t[1].b2 == 2000.0f && t[2].c17 == -1.1f && t[3].a2 == 1450.0f);
  // A missing section resets that wheel; a missing car resets all, silently.
  CarLoadTyres("nowheel2", list);
  EXPECT_TRUE(t[3].b2 == 1800.0f && t[2].b2 == 0.0f && t[2].a0 == 0.0f);
  CarLoadTyres("no-such-car", list);
  EXPECT_EQ(t[0].a2, 0.0f);
  t[1].model = 3;
  CarLoadTyres("", list);
  EXPECT_EQ(t[1].model, 0);
}

TEST(CarLoad, SourcesFileFolderTirAndErrors) {
  KPacejka tyre;
  std::string error;
  ASSERT_TRUE(CarLoadTyreSource(TYRO_TEST_DATA "/tool/touring", 1, &tyre, &error)) << error;
  EXPECT_FLOAT_EQ(tyre.b2, 2000.0f);
  ASSERT_TRUE(CarLoadTyreSource(TouringCar().c_str(), 0, &tyre, &error)) << error;
  EXPECT_FLOAT_EQ(tyre.b2, 1800.0f);
  // A TIR file is read as such under an upper-case extension too.
  ScratchDir dir;
  std::string upper = dir.root + "/TYRE.TIR";
  ASSERT_EQ(system(("cp '" + TirFile("MagicFormula61_Parameters.tir") + "' '" + upper + "'").c_str()), 0);
  ASSERT_TRUE(CarLoadTyreSource(upper.c_str(), 0, &tyre, &error)) << error;
  EXPECT_EQ(tyre.model, 3);

  EXPECT_FALSE(CarLoadTyreSource("/no/such/car.ini", 0, &tyre, &error));
  EXPECT_EQ(error, "/no/such/car.ini: no such file");
  EXPECT_FALSE(CarLoadTyreSource(TYRO_TEST_DATA "/tool", 0, &tyre, &error));
  EXPECT_EQ(error, std::string(TYRO_TEST_DATA "/tool") + ": folder holds no car.ini");
  EXPECT_FALSE(CarLoadTyreSource(TouringCar().c_str(), 4, &tyre, &error));
  EXPECT_EQ(error, "wheel 4 is not 0..3");
}

// A file that is no tyre is refused with one message naming it, before the
// info reader could warn about each of its lines, and the tyre stays as it was.
TEST(CarLoad, FilesThatAreNoTyreAreRefused) {
  ScratchDir dir;
  auto write = [&](const char *name, const char *text) {
    std::string path = dir.root + "/" + name;
    FILE *f = fopen(path.c_str(), "wb");
    fputs(text, f);
    fclose(f);
    return path;
  };
  const struct {
    std::string path;
    int wheel;
    const char *says;
  } cases[] = {
      {std::string(TYRO_SOURCE_DIR) + "/data/measured/touring.csv", 0, ": measured data (CSV), not a tyre"},
      {write("points.txt", "# a comment\n\nfz, fy\n4000, 3000\n"), 0, ": measured data (CSV), not a tyre"},
      {write("run.tdx", "anything"), 0, ": a TYDEX measurement file, not a tyre"},
      {write("run.dat", "**HEADER\nRELEASE 1.3\n**END\n"), 0, ": a TYDEX measurement file, not a tyre"},
      {write("notes.ini", "; nothing\nname=value\nlist { a=1 }\n"), 1, ": holds no tyre (no wheel1.pacejka section"},
      {write("empty.ini", ""), 0, ": holds no tyre (no wheel0.pacejka section"},
      {TYRO_TEST_DATA "/tool/nowheel2/car.ini", 2, ": holds no tyre for wheel 2 (no wheel2.pacejka section)"},
  };
  for (const auto &c : cases) {
    KPacejka tyre;
    tyre.a0 = 1.25f;
    std::string error;
    testing::internal::CaptureStderr();
    EXPECT_FALSE(CarLoadTyreSource(c.path.c_str(), c.wheel, &tyre, &error)) << c.path;
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_EQ(error.rfind(c.path + c.says, 0), 0u) << error;
    EXPECT_EQ(said, "") << c.path;
    EXPECT_EQ(tyre.a0, 1.25f) << c.path;
  }
  // The other wheels of that car load as before.
  KPacejka tyre;
  std::string error;
  EXPECT_TRUE(CarLoadTyreSource(TYRO_TEST_DATA "/tool/nowheel2/car.ini", 3, &tyre, &error)) << error;
  EXPECT_TRUE(CarNotATyre(TouringCar().c_str(), 0).empty());
}

// A TYRE argument names a file or folder as given; a bare name is looked up
// in the base folder's data/cars/, then data/tyres/.
TEST(CarLoad, BareNamesResolveInTheBaseFolder) {
  const std::string base = TYRO_SOURCE_DIR;
  ScratchDir dir;
  WorkingDir in(dir.root);
  EXPECT_EQ(CarResolveSource("touring", base), base + "/data/cars/touring");
  EXPECT_EQ(CarResolveSource("sample.tir", base), base + "/data/tyres/sample.tir");
  EXPECT_EQ(CarResolveSource("no-such-car", base), "no-such-car");
  EXPECT_EQ(CarResolveSource("sub/touring", base), "sub/touring");  // a path stays a path
  EXPECT_EQ(CarResolveSource("", base), "");
  ASSERT_EQ(system("mkdir touring"), 0);  // something of that name here wins
  EXPECT_EQ(CarResolveSource("touring", base), "touring");
}
