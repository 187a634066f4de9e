// The car.ini writer of fitted tyres: what it writes reads back, through the
// loaders of eval and the window, to the same members on every wheel.
#include "chart/carsave.h"

#include <gtest/gtest.h>

#include <string>

#include "golden.h"
#include "chart/carload.h"
#include "tyre/kpacejka.h"

TEST(CarSave, EveryWheelReadsBackToTheSameMembers) {
  ScratchDir dir;
  // a Pacejka89/96 tyre from a car and a Magic Formula 6.1 tyre from a TIR
  // file, each with values that need all nine digits and odd ranges
  const std::string sources[] = {TYRO_TEST_DATA "/tool/touring", TYRO_SOURCE_DIR "/data/tyres/sample.tir"};
  for (const std::string &src : sources) {
    KPacejka tyre;
    std::string error;
    ASSERT_TRUE(CarLoadTyreSource(src.c_str(), 0, &tyre, &error)) << error;
    tyre.a0 = 1.0f / 3.0f;
    tyre.pdy1 = -2.0f / 7.0f;
    tyre.fzMax = 12345.678f;
    const std::string path = dir.root + "/car.ini";
    ASSERT_TRUE(CarWriteTyre(path.c_str(), tyre, &error)) << error;
    for (int w = 0; w < CAR_WHEELS; w++) {
      KPacejka back;
      ASSERT_TRUE(CarLoadTyreSource(dir.root.c_str(), w, &back, &error)) << error;
      for (int i = 0; i < kpacejkaMemberCount; i++) {
        const KPacejkaMember &m = kpacejkaMembers[i];
        if (!KPacejkaModelReads(m, tyre.model) || m.kind != KPacejkaMember::FLOAT) continue;
        if (m.group == KPacejkaMember::COMBINED_FY && !m.tirKey) continue;  // fyShiftScale: no car.ini key reads it
        EXPECT_EQ(KPacejkaGetMember(back, m), KPacejkaGetMember(tyre, m)) << src << " wheel " << w << " " << m.name;
      }
      EXPECT_EQ(back.model, tyre.model);
    }
  }
  std::string error;
  KPacejka tyre;
  EXPECT_FALSE(CarWriteTyre((dir.root + "/no/such/folder/car.ini").c_str(), tyre, &error));
  EXPECT_EQ(error, dir.root + "/no/such/folder/car.ini: can't be written");
}
