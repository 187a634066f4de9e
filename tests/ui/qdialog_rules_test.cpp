// File dialog rules (save mode, filter choices, matching) and the text
// dialog's result filter.
#include <gtest/gtest.h>

#include "ui/qfiledlg.h"
#include "ui/qtextdlg.h"

namespace {

TEST(QDlgFile, SaveModeFromTitle) {
  struct Row {
    const char *title;
    bool save;
  };
  const Row rows[] = {{"Export table", true}, {"Save car", true}, {"Open car", false},
                      {"Import TIR file", false}, {"export", true}, {"SAVE", false}, {"", false}};
  for (const Row &r : rows) EXPECT_EQ(QDlgFileIsSave(r.title), r.save) << r.title;
}

TEST(QDlgFile, FilterChoices) {
  auto tir = QDlgFileFilters("*.tir");
  ASSERT_EQ(tir.size(), 2u);
  EXPECT_EQ(tir[0].label + tir[0].pattern, "TIR files (*.tir)*.tir");
  EXPECT_EQ(tir[1].label + tir[1].pattern, "All files (*.*)*.*");
  for (const char *other : {"tir", "", "*", "x*.tir"}) {
    auto all = QDlgFileFilters(other);
    ASSERT_EQ(all.size(), 1u) << other;
    EXPECT_EQ(all[0].label, "All Files (*.*)") << other;
  }
}

TEST(QDlgFile, Matching) {
  struct Row {
    const char *pattern, *name;
    bool match;
  };
  const Row rows[] = {{"*.tir", "front.tir", true}, {"*.tir", "FRONT.TIR", true}, {"*.tir", ".tir", false},
                      {"*.tir", "front.tire", false}, {"*.tir", "fronttir", false}, {"*.*", "anything", true},
                      {"*", "x", true}, {"car.ini", "car.ini", true}, {"car.ini", "car.inx", false}};
  for (const Row &r : rows) EXPECT_EQ(QDlgFileMatches(r.pattern, r.name), r.match) << r.pattern << " " << r.name;
}

TEST(QTextDialog, ResultFilter) {
  QWindow *ok = reinterpret_cast<QWindow *>(0x10);
  QWindow *cancel = reinterpret_cast<QWindow *>(0x20);
  auto ev = [](int type, int n, QWindow *w = nullptr) {  // the filter only compares the pointers
    QEvent e;
    e.type = type, e.n = n, e.win = w;
    return e;
  };
  struct Row {
    const char *name;
    QEvent e;
    bool has_cancel;
    int result;
  };
  const Row rows[] = {
      {"ok click", ev(QEVENT_CLICK, 0, ok), true, QTEXTDLG_OK},
      {"cancel click", ev(QEVENT_CLICK, 0, cancel), true, QTEXTDLG_CANCEL},
      {"other click", ev(QEVENT_CLICK, 0, nullptr), true, QTEXTDLG_RUNNING},
      {"enter", ev(QEVENT_KEYPRESS, QK_ENTER), true, QTEXTDLG_OK},
      {"keypad enter", ev(QEVENT_KEYPRESS, 300), true, QTEXTDLG_OK},
      {"escape with cancel", ev(QEVENT_KEYPRESS, QK_ESC), true, QTEXTDLG_RUNNING},
      {"escape ok-only", ev(QEVENT_KEYPRESS, QK_ESC), false, QTEXTDLG_OK},
      {"close", ev(QEVENT_CLOSE, 0), true, QTEXTDLG_CANCEL},
      {"close ok-only", ev(QEVENT_CLOSE, 0), false, QTEXTDLG_CANCEL},
      {"letter", ev(QEVENT_KEYPRESS, 'A'), true, QTEXTDLG_RUNNING},
  };
  for (const Row &r : rows)
    EXPECT_EQ(QTextDlgFilter(r.e, ok, r.has_cancel ? cancel : nullptr, QTEXTDLG_RUNNING), r.result) << r.name;
}

}  // namespace
