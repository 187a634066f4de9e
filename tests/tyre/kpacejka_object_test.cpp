// KPacejka as an object: construction and reset, the setters' clamps and
// unit conversions, the accessors, the member-name table and CreateSystem.
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <string>

#include "tests/base/capture.h"
#include "tests/tyre/tyre_fixtures.h"
#include "tyre/psystem.h"

TEST(KPacejkaObject, ConstructorDefaults) {
  KPacejka t;
  EXPECT_EQ(t.flags, 0u);
  EXPECT_EQ(t.model, 0);
  for (int i = 0; i < KPacejka::PAC96_COUNT; i++) EXPECT_EQ(t.Pac96(i), 0.0f) << i;
  EXPECT_EQ(t.lfz0, 1.0f);
  EXPECT_EQ(t.lres, 1.0f);
  EXPECT_EQ(t.zeta0, 1.0f);
  EXPECT_EQ(t.zeta8, 1.0f);
  EXPECT_EQ(t.pcx1, 0.0f);
  EXPECT_EQ(t.ssz4, 0.0f);
  EXPECT_FLOAT_EQ(t.r0, 0.3f);
  EXPECT_EQ(t.fz0, 1500.0f);
  EXPECT_EQ(t.longv, 30.0f);
  EXPECT_EQ(t.mbelt, 0.0f);
  EXPECT_EQ(t.fyShiftScale, 1.0f);
  EXPECT_EQ(t.lmp + t.lkyc + t.lt, 3.0f);
  EXPECT_EQ(t.slipAngleMin, -99.0f);
  EXPECT_EQ(t.camberMax, 99.0f);
  EXPECT_EQ(t.fzMin, 0.0f);
  EXPECT_EQ(t.fzMax, 999999.0f);
  EXPECT_EQ(t.Fx + t.Fy + t.Mz + t.camber + t.sideSlip + t.slipPercentage + t.Fz, 0.0f);
  EXPECT_EQ(t.GetSystem(), nullptr);
}

TEST(KPacejkaObject, ResetLeavesRangesTyreDataAndFlags) {
  KPacejka t;
  t.flags = 1;
  t.r0 = 0.5f;
  t.fzMax = 8000.0f;
  t.model = 3;
  t.a3 = t.pdy1 = 2.0f;
  t.lmuy = t.zeta3 = t.lkyc = 0.5f;
  t.ResetCoefficients();
  EXPECT_EQ(t.flags, 1u);
  EXPECT_EQ(t.r0, 0.5f);
  EXPECT_EQ(t.fzMax, 8000.0f);
  EXPECT_EQ(t.model, 0);
  EXPECT_EQ(t.a3 + t.pdy1, 0.0f);
  EXPECT_EQ(t.lmuy + t.zeta3 + t.lkyc, 3.0f);
}

TEST(KPacejkaObject, SettersConvertAndClamp) {
  KPacejka t;
  t.SetNormalLoad(2000000.0f);
  EXPECT_FLOAT_EQ(t.Fz, 999.999f);
  EXPECT_EQ(t.FzPeak, t.Fz);
  t.SetNormalLoad(-5.0f);
  EXPECT_EQ(t.Fz, 0.0f);
  t.SetPeakLoad(3000.0f);
  EXPECT_EQ(t.Fz, 0.0f);
  EXPECT_FLOAT_EQ(t.FzPeak, 3.0f);
  t.SetSlipRatio(0.1f);
  EXPECT_FLOAT_EQ(t.slipPercentage, 10.0f);
  t.SetSlipAngle(1.0f);
  EXPECT_FLOAT_EQ(t.sideSlip, 57.29578f);
  t.slipAngleMax = 0.2f;
  t.SetSlipAngle(1.0f);
  EXPECT_FLOAT_EQ(t.sideSlip, 0.2f * 57.29578f);
  t.slipRatioMin = -0.5f;
  t.SetSlipRatio(-2.0f);
  EXPECT_FLOAT_EQ(t.slipPercentage, -50.0f);
}

TEST(KPacejkaObject, CamberNegationRoundTrips) {
  KPacejka t;
  t.flags = KPacejka::NEGATE_CAMBER;
  t.SetCamber(0.0349066f);
  EXPECT_NEAR(t.camber, -2.0f, 1e-5f);
  EXPECT_NEAR(t.GetCamber(), 0.0349066f, 1e-7f);
}

TEST(KPacejkaObject, CamberRangeActsOnTheReplacedValue) {
  KPacejka t;
  t.camberMax = 0.01f;
  t.SetCamber(0.5f);  // stored unclamped
  EXPECT_FLOAT_EQ(t.camber, 0.5f * 57.29578f);
}

TEST(KPacejkaObject, NonFiniteCamberReportedAndStored) {
  ReportCapture cap;
  KPacejka t;
  t.SetCamber(NAN);
  EXPECT_TRUE(std::isnan(t.camber));
  EXPECT_EQ(cap.errors, "Trying to set not a NaN to camber\n");
  t.SetCamber(INFINITY);
  EXPECT_TRUE(std::isinf(t.camber));
  EXPECT_EQ(cap.errors, "Trying to set not a NaN to camber\nTrying to set not a NaN to camber\n");
}

TEST(KPacejkaObject, ModelNamesAndFriction) {
  struct Row { int model; const char *name; float lat, lon; };
  const Row rows[] = {
      {0, "Pacejka89/96", 1.45f, 1.8f},        {1, "Magic Formula 5.2", 1.1f, 1.2f},
      {2, "Pacejka2006", 1.45f, 1.8f},         {3, "Magic Formula 6.1", 1.1f, 1.2f},
      {7, "<PacejkaModel?\?>", 1.45f, 1.8f},    {-1, "<PacejkaModel?\?>", 1.45f, 1.8f},
  };
  for (const Row &r : rows) {
    KPacejka t;
    t.a2 = 1450.0f;
    t.b2 = 1800.0f;
    t.pdy1 = 1.1f;
    t.pdx1 = 1.2f;
    t.model = r.model;
    EXPECT_STREQ(t.GetModelName(), r.name);
    EXPECT_FLOAT_EQ(t.GetLateralFriction(), r.lat) << r.model;
    EXPECT_FLOAT_EQ(t.GetLongitudinalFriction(), r.lon) << r.model;
  }
}

// ---- The member-name table --------------------------------------------------------

TEST(MemberTable, FollowsDeclarationOrderWithoutGaps) {
  ASSERT_STREQ(kpacejkaMembers[0].name, "flags");
  for (int i = 1; i < kpacejkaMemberCount; i++)
    EXPECT_GT(kpacejkaMembers[i].offset, kpacejkaMembers[i - 1].offset) << kpacejkaMembers[i].name;
  // The Pacejka89/96 run is addressed by position: entry 1 + i is Pac96(i).
  KPacejka t;
  for (int i = 0; i < KPacejka::PAC96_COUNT; i++) {
    t.Pac96(i) = float(i + 1);
    EXPECT_EQ(*KPacejkaFloat(t, kpacejkaMembers[1 + i]), float(i + 1)) << kpacejkaMembers[1 + i].name;
  }
  EXPECT_STREQ(kpacejkaMembers[KPacejka::PAC96_COUNT].name, "c17");
  // 1 flags + 46 + 28 scaling + 25 + 35 + 30 MF + 9 zeta + 8 tyre data + model + 8 ranges
  EXPECT_EQ(kpacejkaMemberCount, 1 + 46 + 28 + 25 + 35 + 30 + 9 + 8 + 1 + 8);
}

TEST(MemberTable, LookupAndTypedAccess) {
  KPacejka t;
  const char *names[] = {"a111", "lres", "pty2", "qbz10", "zeta8", "fyShiftScale", "lt", "fz_max"};
  for (const char *n : names) {
    const KPacejkaMember *m = KPacejkaFindMember(n);
    ASSERT_NE(m, nullptr) << n;
    KPacejkaSetMember(t, *m, 0.25);
    EXPECT_EQ(KPacejkaGetMember(t, *m), 0.25) << n;
  }
  EXPECT_EQ(t.fzMax, 0.25f);
  EXPECT_EQ(t.a111, 0.25f);
  KPacejkaSetMember(t, *KPacejkaFindMember("model"), 3.0);
  EXPECT_EQ(t.model, 3);
  KPacejkaSetMember(t, *KPacejkaFindMember("flags"), 1.0);
  EXPECT_EQ(t.flags, 1u);
  EXPECT_EQ(KPacejkaFloat(t, *KPacejkaFindMember("model")), nullptr);
  EXPECT_EQ(KPacejkaFindMember("a11"), nullptr);
  EXPECT_EQ(KPacejkaFindMember("qbz7"), nullptr);
  EXPECT_EQ(KPacejkaFindMember("LRES"), nullptr);
  EXPECT_EQ(KPacejkaMemberIndex(nullptr), -1);
}

// ---- CreateSystem ---------------------------------------------------------------------

TEST(CreateSystem, RegistersBoundParametersAndSignals) {
  PSystem root(nullptr, "car");
  KPacejka t;
  t.CreateSystem(&root);
  PSystem *s = t.GetSystem();
  ASSERT_NE(s, nullptr);
  EXPECT_STREQ(s->GetName(), "pacejka");
  EXPECT_EQ(root.GetChild(0), s);
  const char *params[] = {"a0", "a1", "a2", "a3", "b0", "b1", "b2", "b3", "c0", "c1",
                          "c2", "c3", "lxal", "lyka", "sa_min", "sa_max", "sr_min",
                          "sr_max", "camber_min", "camber_max"};
  ASSERT_EQ(s->GetParameterCount(), 20);
  for (int i = 0; i < 20; i++) {
    EXPECT_STREQ(s->GetParameter(i).name, params[i]);
    EXPECT_STREQ(s->GetParameter(i).unit, "-");
  }
  ASSERT_EQ(s->GetSignalCount(), 3);
  EXPECT_STREQ(s->GetSignal(0).name, "side_slip");
  EXPECT_STREQ(s->GetSignal(0).unit, "deg");
  EXPECT_STREQ(s->GetSignal(1).name, "slip_percentage");
  EXPECT_STREQ(s->GetSignal(1).unit, "%");
  EXPECT_STREQ(s->GetSignal(2).name, "camber");
  EXPECT_STREQ(s->GetSignal(2).unit, "%");
  // Writes go straight into the tyre; signals read its current state.
  EXPECT_TRUE(s->SetParameter("b2", 1234.0f));
  EXPECT_EQ(t.b2, 1234.0f);
  EXPECT_TRUE(s->SetParameter("sa_max", 0.3f));
  EXPECT_EQ(t.slipAngleMax, 0.3f);
  EXPECT_FALSE(s->SetParameter("fz_max", 1.0f));  // the load range is not registered
  t.SetSlipRatio(0.05f);
  EXPECT_FLOAT_EQ(*s->FindSignal("slip_percentage")->value, 5.0f);
}

TEST(CreateSystem, NullParentAndSecondCall) {
  ReportCapture cap;
  KPacejka t;
  t.CreateSystem(nullptr);
  EXPECT_EQ(t.GetSystem(), nullptr);
  EXPECT_EQ(cap.warnings, "");
  PSystem root(nullptr, "car");
  t.CreateSystem(&root);
  PSystem *first = t.GetSystem();
  t.CreateSystem(&root);
  EXPECT_EQ(t.GetSystem(), first);
  EXPECT_EQ(cap.warnings, "CreateSystem() called twice\n");
  EXPECT_EQ(root.GetChildCount(), 1);
}

TEST(CreateSystem, TyreLeavesItsParentWhenDestroyed) {
  PSystem root(nullptr, "car");
  {
    KPacejka t;
    t.CreateSystem(&root);
    EXPECT_EQ(root.GetChildCount(), 1);
  }
  EXPECT_EQ(root.GetChildCount(), 0);
}
