// Slider positions to operating-point values and captions.
#include "chart/oppoint.h"

#include <gtest/gtest.h>

TEST(OperatingPoint, SliderMappingsAndCaptions) {
  struct Case { OpSlider s; int p; float value; const char *caption; } cases[] = {
      {OP_LOAD, 83, 2490, "Load 2490N"},           {OP_LOAD, 1000, 30000, "Load 30000N"},
      {OP_LOAD, 0, 0, "Load 0N"},                  {OP_SLIP_RATIO, 0, -1, "Slipratio -1.00"},
      {OP_SLIP_RATIO, 500, 0, "Slipratio 0.00"},   {OP_SLIP_RATIO, 1000, 1, "Slipratio 1.00"},
      {OP_SLIP_ANGLE, 1000, 100, "Slipangle 100.00"}, {OP_SLIP_ANGLE, 501, 0.2f, "Slipangle 0.20"},
      {OP_CAMBER, 0, -10, "Inclination -10.00 (camber)"}, {OP_CAMBER, 625, 2.5f, "Inclination 2.50 (camber)"},
  };
  for (const Case &c : cases) {
    float v = OpValue(c.s, c.p);
    EXPECT_NEAR(v, c.value, 1e-4) << c.caption;
    char buf[64];
    OpCaption(c.s, v, buf, sizeof buf);
    EXPECT_STREQ(buf, c.caption);
  }
}
