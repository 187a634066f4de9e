// Control positions of the panel.
#include "tool/layout.h"

PanelLayout LayoutCompute(int vw, int vh) {
  PanelLayout l;
  // One row of command buttons under the graph area.
  for (int i = 0; i < LAYOUT_COMMANDS; i++) l.command[i] = QRect(13 + i * (109 + 10), vh + 40, 109, 25);

  // The side column: rows of 150 x 16, each 17 pixels below the last.
  const int x = vw + 25, rowW = 150, rowH = 16;
  auto row = [&](int r) { return QRect(x, 30 + 17 * r, rowW, rowH); };
  l.focusLabel = row(0);
  for (int i = 0; i < 4; i++) l.focus[i] = row(1 + i);
  // row 5 stays empty
  l.zoom = row(6);
  l.ghostLabel = row(8);
  for (int i = 0; i < 2; i++) l.ghost[i] = row(9 + i);
  // row 11 stays empty
  l.coeffLabel = row(12);
  // Two columns 60 pixels apart; a radio is only as wide as its column, so
  // the left column does not cover the right one.
  for (int i = 0; i < LAYOUT_COEFF_RADIOS; i++) {
    QRect r = row(13 + i % 14);
    l.coeff[i] = QRect(x + (i / 14) * 60, r.y, 60, rowH);
  }
  l.value = row(28);
  l.enterNumerically = QRect(x, row(29).y, 150, 30);
  l.wheelLabel = QRect(x, l.enterNumerically.y + 35, rowW, rowH);
  l.wheel = QRect(x, l.wheelLabel.y + 17, rowW, rowH);

  // Operating-point sliders under the buttons, as wide as the graph area.
  for (int i = 0; i < 4; i++) l.op[i] = QRect(13, vh + 72 + 21 * i, vw + 4, 18);
  return l;
}
