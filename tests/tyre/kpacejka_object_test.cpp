// KPacejka as an object: the setters' clamps and conversions, CreateSystem.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "tests/base/capture.h"
#include "tests/tyre/tyre_fixtures.h"
#include "tyre/psystem.h"

TEST(KPacejkaObject, SettersConvertAndClamp) {
  ReportCapture cap;
  KPacejka t;
  t.SetNormalLoad(2000000.0f);
  EXPECT_FLOAT_EQ(t.Fz, 999.999f);
  EXPECT_EQ(t.FzPeak, t.Fz);
  t.SetNormalLoad(-5.0f);
  t.SetPeakLoad(3000.0f);
  EXPECT_EQ(t.Fz, 0.0f);
  EXPECT_FLOAT_EQ(t.FzPeak, 3.0f);
  t.SetSlipRatio(0.1f);
  EXPECT_FLOAT_EQ(t.slipPercentage, 10.0f);
  t.slipAngleMax = 0.2f;
  t.SetSlipAngle(1.0f);
  EXPECT_FLOAT_EQ(t.sideSlip, 0.2f * 57.29578f);
  t.slipRatioMin = -0.5f;
  t.SetSlipRatio(-2.0f);
  EXPECT_FLOAT_EQ(t.slipPercentage, -50.0f);
  t.camberMax = 0.01f;
  t.SetCamber(0.5f);  // the camber range is not applied
  EXPECT_FLOAT_EQ(t.camber, 0.5f * 57.29578f);
  t.flags = KPacejka::NEGATE_CAMBER;
  t.SetCamber(0.0349066f);
  EXPECT_NEAR(t.camber, -2.0f, 1e-5f);
  EXPECT_NEAR(t.GetCamber(), 0.0349066f, 1e-7f);
  t.SetCamber(NAN);  // reported, stored anyway
  EXPECT_TRUE(std::isnan(t.camber));
  EXPECT_EQ(cap.errors, "Trying to set not a NaN to camber\n");
}

TEST(CreateSystem, RegistersBoundParametersAndSignals) {
  PSystem root(nullptr, "car");
  KPacejka t;
  t.CreateSystem(&root);
  PSystem *s = t.GetSystem();
  ASSERT_NE(s, nullptr);
  EXPECT_STREQ(s->GetName(), "pacejka");
  EXPECT_EQ(root.GetChild(0), s);
  std::string names;
  for (int i = 0; i < s->GetParameterCount(); i++) names += std::string(s->GetParameter(i).name) + " ";
  for (int i = 0; i < s->GetSignalCount(); i++)
    names += std::string(s->GetSignal(i).name) + "[" + s->GetSignal(i).unit + "] ";
  EXPECT_EQ(names, "a0 a1 a2 a3 b0 b1 b2 b3 c0 c1 c2 c3 lxal lyka sa_min sa_max sr_min sr_max camber_min "
                   "camber_max side_slip[deg] slip_percentage[%] camber[%] ");
  // Writes go straight into the tyre; signals read its current state.
  EXPECT_TRUE(s->SetParameter("sa_max", 0.3f));
  EXPECT_EQ(t.slipAngleMax, 0.3f);
  EXPECT_FALSE(s->SetParameter("fz_max", 1.0f));  // the load range is not registered
  t.SetSlipRatio(0.05f);
  EXPECT_FLOAT_EQ(*s->FindSignal("slip_percentage")->value, 5.0f);
}

TEST(CreateSystem, NullParentSecondCallAndDestruction) {
  ReportCapture cap;
  PSystem root(nullptr, "car");
  {
    KPacejka t;
    t.CreateSystem(nullptr);
    EXPECT_EQ(t.GetSystem(), nullptr);
    t.CreateSystem(&root);
    PSystem *first = t.GetSystem();
    t.CreateSystem(&root);
    EXPECT_EQ(t.GetSystem(), first);
    EXPECT_EQ(cap.warnings, "CreateSystem() called twice\n");
    EXPECT_EQ(root.GetChildCount(), 1);
  }
  EXPECT_EQ(root.GetChildCount(), 0);  // the tyre leaves its parent
}
