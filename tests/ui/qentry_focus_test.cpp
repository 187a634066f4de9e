// String entry edge cases (the dialog tests play the common keys); focus order.
#include <gtest/gtest.h>

#include <string>

#include "ui/qstringdlg.h"
#include "ui/qwinmgr.h"

namespace {

QEvent Ev(int type, int n) {
  QEvent e;
  e.type = type;
  e.n = n;
  return e;
}

TEST(QStringEntry, EditingStopsAtTheEndsAndTheLimit) {
  const QEvent left = Ev(QEVENT_KEYPRESS, QK_LEFT), home = Ev(QEVENT_KEYPRESS, QK_HOME);
  const QEvent bs = Ev(QEVENT_KEYPRESS, QK_BACKSPACE), right = Ev(QEVENT_KEYPRESS, QK_RIGHT);
  const struct {
    std::string initial;
    std::vector<QEvent> script;
    std::string text;
    int caret;
  } rows[] = {
      {"abc", {home, bs}, "abc", 0},
      {"abc", {Ev(QEVENT_KEYPRESS, QK_DELETE)}, "abc", 3},
      {"a", {left, left}, "a", 0},
      {"a", {home, right, right}, "a", 1},
      {"", {Ev(QEVENT_CHAR, 8), Ev(QEVENT_CHAR, 13), Ev(QEVENT_CHAR, 127)}, "", 0},  // control characters
      {"", {Ev(QEVENT_CHAR, 0xE9)}, "\xE9", 1},                                     // Latin-1 is accepted
      {"abc", {Ev(QEVENT_CHAR, 'd'), Ev(QEVENT_CHAR, 'e'), bs, Ev(QEVENT_CHAR, 'x')}, "abcx", 4},  // at most 4
  };
  for (const auto &r : rows) {
    QStringEntry s(r.initial, 4);
    for (const QEvent &e : r.script) EXPECT_EQ(s.Feed(e), QEntryResult::Open) << r.initial;
    EXPECT_EQ(s.Text() + std::to_string(s.Caret()), r.text + std::to_string(r.caret)) << r.initial;
  }
  QStringEntry none("abc", -5);
  none.Feed(Ev(QEVENT_CHAR, 'a'));
  EXPECT_EQ(none.Text(), "");
}

TEST(QFocusNext, TabOrderWrapsAndSkips) {
  const std::vector<bool> ctl = {true, false, true, true, false};
  const int rows[][3] = {
      {-1, 1, 0}, {0, 1, 2}, {3, 1, 0},    // forward, wrapping past the disabled tail
      {-1, -1, 3}, {0, -1, 3}, {2, -1, 0},  // back
      {1, 1, 2}, {4, -1, 3}, {99, 1, 0},    // from a control that cannot focus / out of range
  };
  for (const auto &r : rows) EXPECT_EQ(QFocusNext(ctl, r[0], r[1]), r[2]) << r[0] << "," << r[1];
  EXPECT_EQ(QFocusNext({}, -1, 1), -1);
  EXPECT_EQ(QFocusNext({false, false}, 0, 1), -1);
  EXPECT_EQ(QFocusNext({true}, 0, 1), 0);  // a lone control keeps the focus
}

}  // namespace
