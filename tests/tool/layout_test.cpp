// Control positions: reference places, other view sizes, no overlaps.
#include "tool/layout.h"

#include <gtest/gtest.h>

#include <iterator>
#include <vector>

static void ExpectRect(const QRect &r, int x, int y, int w, int h) {
  EXPECT_TRUE(r.x == x && r.y == y && r.wid == w && r.hgt == h) << r.x << "," << r.y << " " << r.wid << "x" << r.hgt;
}

TEST(Layout, DefaultViewPlacesEveryControl) {
  PanelLayout l = LayoutCompute(700, 500);
  ExpectRect(l.command[5], 13 + 5 * 119, 540, 109, 25);
  ExpectRect(l.coeff[14], 785, 30 + 13 * 17, 60, 16);
  ExpectRect(l.wheel, 725, 30 + 29 * 17 + 52, 150, 16);
  ExpectRect(l.op[3], 13, 572 + 63, 704, 18);
  ExpectRect(LayoutCompute(640, 400).op[1], 13, 400 + 72 + 21, 644, 18);

  std::vector<QRect> all(std::begin(l.command), std::end(l.command));
  all.insert(all.end(), {l.focusLabel, l.zoom, l.ghostLabel, l.coeffLabel, l.value, l.enterNumerically,
                         l.wheelLabel, l.wheel});
  all.insert(all.end(), std::begin(l.focus), std::end(l.focus));
  all.insert(all.end(), std::begin(l.ghost), std::end(l.ghost));
  all.insert(all.end(), std::begin(l.coeff), std::end(l.coeff));
  all.insert(all.end(), std::begin(l.op), std::end(l.op));
  for (size_t i = 0; i < all.size(); i++) {
    for (size_t j = i + 1; j < all.size(); j++) {
      const QRect &a = all[i], &b = all[j];
      EXPECT_FALSE(a.x < b.x + b.wid && b.x < a.x + a.wid && a.y < b.y + b.hgt && b.y < a.y + a.hgt)
          << "controls " << i << " and " << j << " overlap";
    }
    EXPECT_TRUE(all[i].x + all[i].wid <= 910 && all[i].y + all[i].hgt <= 714) << "control " << i << " outside";
  }
}
