// String entry editing and its ending keys; focus order with wrap.
#include <gtest/gtest.h>

#include <string>

#include "ui/qstringdlg.h"
#include "ui/qwinmgr.h"

namespace {

QEvent Key(int code) {
  QEvent e;
  e.type = QEVENT_KEYPRESS;
  e.n = code;
  return e;
}
QEvent Chr(int ch) {
  QEvent e;
  e.type = QEVENT_CHAR;
  e.n = ch;
  return e;
}

// Script: a string of steps, each either a typed character or a key in <>.
QEntryResult Play(QStringEntry &s, const std::vector<QEvent> &evs) {
  QEntryResult r = QEntryResult::Open;
  for (const QEvent &e : evs) {
    r = s.Feed(e);
    if (r != QEntryResult::Open) break;
  }
  return r;
}

TEST(QStringEntry, EditingKeysTable) {
  struct Row {
    const char *name;
    std::string initial;
    std::vector<QEvent> script;
    std::string text;
    int caret;
  };
  const Row rows[] = {
      {"type appends", "ab", {Chr('c')}, "abc", 3},
      {"insert at caret", "ac", {Key(QK_LEFT), Chr('b')}, "abc", 2},
      {"home then type", "bc", {Key(QK_HOME), Chr('a')}, "abc", 1},
      {"backspace", "abc", {Key(QK_BACKSPACE)}, "ab", 2},
      {"backspace at start", "abc", {Key(QK_HOME), Key(QK_BACKSPACE)}, "abc", 0},
      {"delete under caret", "abc", {Key(QK_HOME), Key(QK_DELETE)}, "bc", 0},
      {"delete at end", "abc", {Key(QK_DELETE)}, "abc", 3},
      {"left stops at 0", "a", {Key(QK_LEFT), Key(QK_LEFT)}, "a", 0},
      {"right stops at end", "a", {Key(QK_HOME), Key(QK_RIGHT), Key(QK_RIGHT)}, "a", 1},
      {"end", "abc", {Key(QK_HOME), Key(QK_END)}, "abc", 3},
      {"control chars ignored", "", {Chr(8), Chr(9), Chr(13), Chr(127)}, "", 0},
      {"latin-1 accepted", "", {Chr(0xE9)}, "\xE9", 1},
  };
  for (const Row &r : rows) {
    QStringEntry s(r.initial, 10);
    EXPECT_EQ(Play(s, r.script), QEntryResult::Open) << r.name;
    EXPECT_EQ(s.Text(), r.text) << r.name;
    EXPECT_EQ(s.Caret(), r.caret) << r.name;
  }
}

TEST(QStringEntry, LimitHolds) {
  QStringEntry s("abc", 4);
  s.Feed(Chr('d'));
  s.Feed(Chr('e'));
  EXPECT_EQ(s.Text(), "abcd");
  s.Feed(Key(QK_BACKSPACE));
  s.Feed(Chr('x'));
  EXPECT_EQ(s.Text(), "abcx");
  QStringEntry cut("abcdef", 3);
  EXPECT_EQ(cut.Text(), "abc");
  EXPECT_EQ(cut.Caret(), 3);
  QStringEntry none("abc", -5);
  none.Feed(Chr('a'));
  EXPECT_EQ(none.Text(), "");
}

TEST(QStringEntry, EnterAndEscapeEnd) {
  QStringEntry ok("x", 10);
  EXPECT_EQ(Play(ok, {Chr('1'), Key(QK_ENTER), Chr('2')}), QEntryResult::Ok);
  EXPECT_EQ(ok.Text(), "x1");
  QStringEntry esc("x", 10);
  EXPECT_EQ(Play(esc, {Chr('1'), Key(QK_ESC)}), QEntryResult::Cancel);
}

TEST(QFocusNext, TabOrderWrapsAndSkips) {
  const std::vector<bool> ctl = {true, false, true, true, false};
  struct Row {
    int current, step, expect;
  };
  const Row rows[] = {
      {-1, 1, 0}, {0, 1, 2}, {2, 1, 3}, {3, 1, 0},   // forward, wrapping past the disabled tail
      {-1, -1, 3}, {0, -1, 3}, {3, -1, 2}, {2, -1, 0},  // back
      {1, 1, 2}, {4, -1, 3}, {99, 1, 0},               // from a control that cannot focus / out of range
  };
  for (const Row &r : rows) EXPECT_EQ(QFocusNext(ctl, r.current, r.step), r.expect) << r.current << "," << r.step;
  EXPECT_EQ(QFocusNext({}, -1, 1), -1);
  EXPECT_EQ(QFocusNext({false, false}, 0, 1), -1);
  EXPECT_EQ(QFocusNext({true}, 0, 1), 0);  // a lone control keeps the focus
}

}  // namespace
