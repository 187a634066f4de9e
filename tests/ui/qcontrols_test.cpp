// Push logic state table, slider mapping and drag, radio group selection,
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
  struct Row {
    S from;
    I in;
    S to;
    bool clicked;
  };
  const Row rows[] = {
      {S::Idle, I::Enter, S::Hover, false},          {S::Idle, I::Leave, S::Idle, false},
      {S::Idle, I::Press, S::Idle, false},           {S::Idle, I::Release, S::Idle, false},
      {S::Hover, I::Enter, S::Hover, false},         {S::Hover, I::Leave, S::Idle, false},
      {S::Hover, I::Press, S::Pressed, false},       {S::Hover, I::Release, S::Hover, false},
      {S::Pressed, I::Enter, S::Pressed, false},     {S::Pressed, I::Leave, S::PressedOut, false},
      {S::Pressed, I::Press, S::Pressed, false},     {S::Pressed, I::Release, S::Hover, true},
      {S::PressedOut, I::Enter, S::Pressed, false},  {S::PressedOut, I::Leave, S::PressedOut, false},
      {S::PressedOut, I::Press, S::PressedOut, false}, {S::PressedOut, I::Release, S::Idle, false},
  };
  for (const Row &r : rows) {
    QButtonStep st = QButtonNext(r.from, r.in);
    EXPECT_EQ(st.next, r.to) << int(r.from) << "/" << int(r.in);
    EXPECT_EQ(st.clicked, r.clicked) << int(r.from) << "/" << int(r.in);
  }
}

TEST(QPushLogic, EdgesAndOtherButtons) {
  QPushLogic b(QRect(10, 10, 80, 24));
  EXPECT_FALSE(b.Feed(Ev(QEVENT_BUTTONPRESS, 90, 20)));  // the right and bottom edges are outside
  EXPECT_FALSE(b.Feed(Ev(QEVENT_BUTTONPRESS, 89, 33, QMB_RIGHT)));
  EXPECT_EQ(b.State(), S::Idle);
  b.Feed(Ev(QEVENT_BUTTONPRESS, 89, 33));
  EXPECT_EQ(b.State(), S::Pressed);
  b.Feed(Ev(QEVENT_LEAVE, 0, 0));
  EXPECT_FALSE(b.Feed(Ev(QEVENT_BUTTONRELEASE, 500, 500)));
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
