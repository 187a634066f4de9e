// String entry edge cases (the dialog tests play the common keys) and the
// focus order with wrap.
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
QEvent Key(int code) { return Ev(QEVENT_KEYPRESS, code); }
QEvent Chr(int ch) { return Ev(QEVENT_CHAR, ch); }

TEST(QStringEntry, EditingStopsAtTheEndsAndTheLimit) {
  struct Row {
    std::string initial;
    std::vector<QEvent> script;
    std::string text;
    int caret;
  };
  const Row rows[] = {
      {"ac", {Key(QK_LEFT), Chr('b')}, "abc", 2},
      {"abc", {Key(QK_HOME), Key(QK_BACKSPACE)}, "abc", 0},
      {"abc", {Key(QK_DELETE)}, "abc", 3},
      {"a", {Key(QK_LEFT), Key(QK_LEFT)}, "a", 0},
      {"a", {Key(QK_HOME), Key(QK_RIGHT), Key(QK_RIGHT)}, "a", 1},
      {"", {Chr(8), Chr(9), Chr(13), Chr(127)}, "", 0},  // control characters are ignored
      {"", {Chr(0xE9)}, "\xE9", 1},                       // Latin-1 is accepted
      {"abc", {Chr('d'), Chr('e'), Key(QK_BACKSPACE), Chr('x')}, "abcx", 4},  // at most 4
  };
  for (const Row &r : rows) {
    QStringEntry s(r.initial, 4);
    for (const QEvent &e : r.script) EXPECT_EQ(s.Feed(e), QEntryResult::Open) << r.initial;
    EXPECT_EQ(s.Text(), r.text) << r.initial;
    EXPECT_EQ(s.Caret(), r.caret) << r.initial;
  }
  QStringEntry cut("abcdef", 3);
  EXPECT_EQ(cut.Text() + std::to_string(cut.Caret()), "abc3");
  QStringEntry none("abc", -5);
  none.Feed(Chr('a'));
  EXPECT_EQ(none.Text(), "");
  QStringEntry ok("x", 10);
  EXPECT_EQ(ok.Feed(Key(QK_ENTER)), QEntryResult::Ok);
  EXPECT_EQ(ok.Feed(Key(QK_ESC)), QEntryResult::Cancel);
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
