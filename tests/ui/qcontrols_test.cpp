// Button state table, slider mapping and drag, radio group selection,
// check box flips.
#include <gtest/gtest.h>

#include <limits>

#include "ui/qbutton_logic.h"
#include "ui/qcheck_logic.h"
#include "ui/qradiogroup.h"
#include "ui/qslider.h"

namespace {

QEvent Ev(int type, int x, int y, int n = QMB_LEFT) {
  QEvent e;
  e.type = type;
  e.x = x;
  e.y = y;
  e.n = n;
  return e;
}
QEvent Key(int code) { return Ev(QEVENT_KEYPRESS, 0, 0, code); }

using S = QButtonState;
using I = QButtonInput;

TEST(QButtonTable, EveryRow) {
  // The next state for Enter, Leave, Press and Release; only a release while pressed clicks.
  const S next[4][4] = {
      {S::Hover, S::Idle, S::Idle, S::Idle},
      {S::Hover, S::Idle, S::Pressed, S::Hover},
      {S::Pressed, S::PressedOut, S::Pressed, S::Hover},
      {S::Pressed, S::PressedOut, S::PressedOut, S::Idle},
  };
  for (int from = 0; from < 4; from++) {
    for (int in = 0; in < 4; in++) {
      QButtonStep st = QButtonNext(S(from), I(in));
      EXPECT_EQ(st.next, next[from][in]) << from << "/" << in;
      EXPECT_EQ(st.clicked, S(from) == S::Pressed && I(in) == I::Release) << from << "/" << in;
    }
  }
}

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

TEST(QSlider, DragChangesValueUntilRelease) {
  QSlider s(QRect(0, 0, 101, 12), 0.0f, 100.0f, 50.0f);
  EXPECT_FALSE(s.Feed(Ev(QEVENT_BUTTONPRESS, 20, 40)));  // below the track
  EXPECT_FALSE(s.Feed(Ev(QEVENT_MOTIONNOTIFY, 10, 5)));  // not dragging
  EXPECT_TRUE(s.Feed(Ev(QEVENT_BUTTONPRESS, 20, 5)));
  EXPECT_FLOAT_EQ(s.Value(), 20.0f);
  EXPECT_TRUE(s.Feed(Ev(QEVENT_MOTIONNOTIFY, 500, 300)));  // outside still drags, clamped
  EXPECT_FLOAT_EQ(s.Value(), 100.0f);
  EXPECT_FALSE(s.Feed(Ev(QEVENT_MOTIONNOTIFY, 600, 5)));  // no change, no report
  EXPECT_TRUE(s.Feed(Ev(QEVENT_BUTTONRELEASE, 30, 5)));
  EXPECT_EQ(s.State(), QSliderState::Idle);
  EXPECT_FALSE(s.Feed(Ev(QEVENT_MOTIONNOTIFY, 70, 5)));
  EXPECT_FLOAT_EQ(s.Value(), 30.0f);
  s.SetValue(std::numeric_limits<float>::quiet_NaN());
  EXPECT_FLOAT_EQ(s.Value(), 0.0f);
}

TEST(QRadioGroup, ClickSelectsOneAndArrowsWrap) {
  QRadioGroup g;
  for (int i = 0; i < 3; i++) g.Add(QRect(0, i * 20, 100, 18));
  EXPECT_TRUE(g.Feed(Ev(QEVENT_BUTTONPRESS, 5, 45)));
  EXPECT_EQ(g.Selected(), 2);
  EXPECT_FALSE(g.Feed(Ev(QEVENT_BUTTONPRESS, 5, 45)));  // same choice: no change
  EXPECT_FALSE(g.Feed(Ev(QEVENT_BUTTONPRESS, 5, 19)));  // in the gap
  EXPECT_FALSE(g.Select(3));
  EXPECT_EQ(g.Selected(), 2);
  const int keys[][2] = {{QK_DOWN, 0}, {QK_RIGHT, 1}, {QK_UP, 0}, {QK_LEFT, 2}, {QK_UP, 1}};
  for (const auto &r : keys) {
    EXPECT_TRUE(g.Feed(Key(r[0])));
    EXPECT_EQ(g.Selected(), r[1]);
  }
  EXPECT_FALSE(g.Feed(Key('A')));
  QRadioGroup fresh;
  fresh.Add(QRect(0, 0, 10, 10));
  fresh.Add(QRect(0, 10, 10, 10));
  EXPECT_TRUE(fresh.Feed(Key(QK_UP)));
  EXPECT_EQ(fresh.Selected(), 1);  // Up from nothing picks the last
  EXPECT_FALSE(QRadioGroup().Feed(Key(QK_DOWN)));
}

TEST(QCheckLogic, ClickAndSpaceFlip) {
  QCheckLogic c(QRect(0, 0, 16, 16));
  struct Row {
    QEvent e;
    bool focused, flipped, checked;
  };
  const Row rows[] = {
      {Ev(QEVENT_BUTTONPRESS, 4, 4), false, false, false},
      {Ev(QEVENT_BUTTONRELEASE, 4, 4), false, true, true},
      {Key(QK_SPACE), false, false, true},  // no focus: Space is not for it
      {Key(QK_SPACE), true, true, false},
      {Ev(QEVENT_BUTTONPRESS, 4, 4), true, false, false},
      {Ev(QEVENT_BUTTONRELEASE, 40, 4), true, false, false},  // released outside
  };
  for (const Row &r : rows) {
    EXPECT_EQ(c.Feed(r.e, r.focused), r.flipped);
    EXPECT_EQ(c.Checked(), r.checked);
  }
}

}  // namespace
