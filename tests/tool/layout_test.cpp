// Control positions at the default view size.
#include "tool/layout.h"

#include <gtest/gtest.h>

#include <iterator>
#include <vector>

static void ExpectRect(const QRect &r, int x, int y, int w, int h) {
  EXPECT_EQ(r.x, x);
  EXPECT_EQ(r.y, y);
  EXPECT_EQ(r.wid, w);
  EXPECT_EQ(r.hgt, h);
}

TEST(Layout, DefaultViewPlacesEveryControl) {
  PanelLayout l = LayoutCompute(700, 500);
  ExpectRect(l.command[0], 13, 540, 109, 25);
  ExpectRect(l.command[5], 13 + 5 * 119, 540, 109, 25);
  ExpectRect(l.focusLabel, 725, 30, 150, 16);
  ExpectRect(l.focus[3], 725, 30 + 4 * 17, 150, 16);
  ExpectRect(l.zoom, 725, 30 + 6 * 17, 150, 16);
  ExpectRect(l.ghostLabel, 725, 30 + 8 * 17, 150, 16);
  ExpectRect(l.ghost[1], 725, 30 + 10 * 17, 150, 16);
  ExpectRect(l.coeffLabel, 725, 30 + 12 * 17, 150, 16);
  ExpectRect(l.coeff[0], 725, 30 + 13 * 17, 60, 16);
  ExpectRect(l.coeff[13], 725, 30 + 26 * 17, 60, 16);
  ExpectRect(l.coeff[14], 785, 30 + 13 * 17, 60, 16);
  ExpectRect(l.value, 725, 30 + 28 * 17, 150, 16);
  ExpectRect(l.enterNumerically, 725, 30 + 29 * 17, 150, 30);
  ExpectRect(l.wheelLabel, 725, 30 + 29 * 17 + 35, 150, 16);
  ExpectRect(l.wheel, 725, 30 + 29 * 17 + 52, 150, 16);
  ExpectRect(l.op[0], 13, 572, 704, 18);
  ExpectRect(l.op[3], 13, 572 + 63, 704, 18);
}

TEST(Layout, FollowsTheViewSize) {
  PanelLayout l = LayoutCompute(640, 400);
  EXPECT_EQ(l.command[0].y, 440);
  EXPECT_EQ(l.focusLabel.x, 665);
  EXPECT_EQ(l.op[1].y, 400 + 72 + 21);
  EXPECT_EQ(l.op[1].wid, 644);
}

TEST(Layout, NoTwoControlsOverlap) {
  PanelLayout l = LayoutCompute(700, 500);
  std::vector<QRect> all(std::begin(l.command), std::end(l.command));
  all.push_back(l.focusLabel);
  all.insert(all.end(), std::begin(l.focus), std::end(l.focus));
  all.push_back(l.zoom);
  all.push_back(l.ghostLabel);
  all.insert(all.end(), std::begin(l.ghost), std::end(l.ghost));
  all.push_back(l.coeffLabel);
  all.insert(all.end(), std::begin(l.coeff), std::end(l.coeff));
  all.push_back(l.value);
  all.push_back(l.enterNumerically);
  all.push_back(l.wheelLabel);
  all.push_back(l.wheel);
  all.insert(all.end(), std::begin(l.op), std::end(l.op));
  for (size_t i = 0; i < all.size(); i++)
    for (size_t j = i + 1; j < all.size(); j++) {
      const QRect &a = all[i], &b = all[j];
      bool overlap = a.x < b.x + b.wid && b.x < a.x + a.wid && a.y < b.y + b.hgt && b.y < a.y + a.hgt;
      EXPECT_FALSE(overlap) << "controls " << i << " and " << j;
    }
  // Everything fits the default window of 910 x 714.
  for (const QRect &r : all) {
    EXPECT_LE(r.x + r.wid, 910);
    EXPECT_LE(r.y + r.hgt, 714);
  }
}
