// Slider position mapping, including tracks without width or range.
#include <gtest/gtest.h>

#include "ui/qslider.h"

namespace {

TEST(QSliderMap, EndsMiddleClampsAndDegenerateTracks) {
  QSliderMap m{QRect(100, 0, 201, 10), -10.0f, 10.0f};
  const int xs[][2] = {{-10, 100}, {10, 300}, {0, 200}, {5, 250}, {-99, 100}, {99, 300}};
  for (const auto &r : xs) EXPECT_EQ(m.ValueToX(float(r[0])), r[1]) << r[0];
  const int vs[][2] = {{100, -10}, {300, 10}, {250, 5}, {0, -10}, {1000, 10}};
  for (const auto &r : vs) EXPECT_FLOAT_EQ(m.XToValue(r[0]), float(r[1])) << r[0];
  for (int x = 100; x <= 300; x++) EXPECT_EQ(m.ValueToX(m.XToValue(x)), x);
  QSliderMap empty{QRect(5, 0, 0, 10), 0.0f, 1.0f}, flat{QRect(5, 0, 100, 10), 2.0f, 2.0f};
  EXPECT_EQ(empty.ValueToX(0.5f), 5);
  EXPECT_FLOAT_EQ(empty.XToValue(50), 0.0f);
  EXPECT_EQ(flat.ValueToX(2.0f), 5);
  EXPECT_FLOAT_EQ(flat.XToValue(50), 2.0f);
}

}  // namespace
