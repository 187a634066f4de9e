// The member table's roles: the shape pairs the fitter tries, the signs
// mirroring turns, and the rows the coefficient panel shows.
#include <gtest/gtest.h>

#include <strings.h>

#include <set>
#include <string>

#include "tyre/kpacejka.h"

namespace {

using K = KPacejkaMember;

// Each pure-slip curve of each kind (Pacejka89/96, Magic Formula) has one
// fitted shape factor C and one fitted curvature E, in its own group.
TEST(KPacejkaRoles, EachPureCurveHasOneShapePair) {
  for (bool pac96 : {true, false})
    for (K::Group g : {K::PURE_FX, K::PURE_FY, K::PURE_MZ}) {
      int c = 0, e = 0;
      for (int i = 0; i < kpacejkaMemberCount; i++) {
        const K &m = kpacejkaMembers[i];
        if ((m.family == K::PAC96_FAMILY) != pac96 || m.group != g || m.shape == K::NO_SHAPE) continue;
        EXPECT_TRUE(KPacejkaIsFitted(m)) << m.name;
        (m.shape == K::SHAPE_C ? c : e)++;
      }
      EXPECT_TRUE(c == 1 && e == 1) << (pac96 ? "pac96 " : "magic ") << KPacejkaGroupName(g) << ": " << c << " C, " << e << " E";
    }
  for (int i = 0; i < kpacejkaMemberCount; i++) {
    const K &m = kpacejkaMembers[i];
    if (m.shape == K::NO_SHAPE) continue;
    EXPECT_TRUE(m.group == K::PURE_FX || m.group == K::PURE_FY || m.group == K::PURE_MZ) << m.name;
  }
}

// Only Fy and Mz members turn over, each with the channel of its group (the
// Magic Formula trail terms, which carry Fy into Mz, with both).
TEST(KPacejkaRoles, MirrorSignsFollowTheChannels) {
  std::set<std::string> both;
  for (int i = 0; i < kpacejkaMemberCount; i++) {
    const K &m = kpacejkaMembers[i];
    if (!m.mirror) continue;
    EXPECT_EQ(m.kind, K::FLOAT) << m.name;
    const bool fyGroup = m.group == K::PURE_FY || m.group == K::COMBINED_FY;
    const bool mzGroup = m.group == K::PURE_MZ || m.group == K::COMBINED_MZ;
    EXPECT_TRUE(fyGroup || mzGroup) << m.name;
    EXPECT_TRUE(fyGroup ? m.mirror == K::MIRROR_FY : (m.mirror & K::MIRROR_MZ) != 0) << m.name;
    if (m.mirror == (K::MIRROR_FY | K::MIRROR_MZ)) both.insert(m.name);
  }
  EXPECT_EQ(both, (std::set<std::string>{"qdz1", "qdz2", "ssz2"}));
}

// The panel shows the Pacejka89/96 coefficients and the first 28 scaling
// places, each with a description, a unit and a slider range that goes up;
// nothing else has panel texts.
TEST(KPacejkaRoles, PanelRowsAreCompleteAndOnlyWhereShown) {
  std::set<const K *> shown;
  for (int i = 0; i < KPacejka::PAC96_COUNT; i++) shown.insert(KPacejkaPac96Member(i));
  for (int i = 0; i < KPacejka::SCALING_COUNT; i++) shown.insert(KPacejkaIniScalingMember(i));
  for (int i = 0; i < kpacejkaMemberCount; i++) {
    const K &m = kpacejkaMembers[i];
    if (!shown.count(&m)) {
      EXPECT_TRUE(!m.desc && !m.unit && !m.label && m.sliderMin == 0 && m.sliderMax == 0) << m.name;
      continue;
    }
    ASSERT_TRUE(m.desc && m.unit) << m.name;
    EXPECT_LT(m.sliderMin, m.sliderMax) << m.name;
    if (m.group == K::SCALING) {
      ASSERT_NE(m.label, nullptr) << m.name;
      EXPECT_EQ(strcasecmp(m.label, m.name), 0) << m.label << " labels " << m.name;
      EXPECT_TRUE(*m.desc && !*m.unit && m.sliderMin == 0 && m.sliderMax == 2) << m.name;
    }
  }
}

}  // namespace
