// The text dialog and message boxes; without a main window the platform's box asks.
#include <gtest/gtest.h>

#include "tests/ui/dialog_fixture.h"
#include "diag/qdebug.h"
#include "ui/qbutton.h"
#include "ui/qlabel.h"
#include "ui/qmsgbox.h"
#include "ui/qtextdialog.h"

namespace {

using TextDialog = DialogTest;

QTextDialog *D() { return DialogTest::ModalAs<QTextDialog>(); }

TEST_F(TextDialog, KeysClicksAndCloseGiveTheResult) {
  const struct {
    const char *keys;
    int flags, result;
  } cases[] = {{"A\n", 0, 1}, {"\x1b", 0, 2}, {"\x1b", QTEXTDLG_OKONLY, 1}};  // Escape is the Cancel button's
  for (const auto &c : cases) {
    Keys(c.keys);
    EXPECT_EQ(QTextDialogRun("Sure?", "Go on", c.flags), c.result) << c.keys;
  }
  qpsKeyTap(300);  // the keypad's Enter
  EXPECT_EQ(QTextDialogRun("Sure?", "Go on", 0), 1);
  OnIdle([] {
    EXPECT_EQ(std::string(D()->GetTitle()) + D()->GetOK()->GetText() + D()->GetCancel()->GetText(), "Sure?OKCancel");
    ClickOn(D()->GetOK());
  });
  EXPECT_EQ(QTextDialogRun("Sure?", "Go on", 0), 1);
  OnIdle([] {  // a click beside the buttons does nothing; a press on OK released outside neither
    QRect r = D()->GetAbsRect(), ok = D()->GetOK()->GetAbsRect();
    qpsClick(r.x + r.wid / 2, r.y + 30);
    qpsButtonPress(ok.x + 5, ok.y + 5);
    qpsMouseMove(r.x + r.wid / 2, r.y + 30);
    qpsButtonRelease(r.x + r.wid / 2, r.y + 30);
  });
  OnIdle([] {
    EXPECT_EQ(D()->GetResult(), 0);
    ClickOn(D()->GetCancel());
  });
  EXPECT_EQ(QTextDialogRun("Sure?", "Go on", 0), 2);
  int windows = QGetWindowManager()->GetWindowCount();
  CloseRequest();
  EXPECT_EQ(QTextDialogRun("Sure?", "Go on", 0), 2);
  EXPECT_EQ(QGetWindowManager()->GetWindowCount(), windows);  // the dialog's windows are gone
  EXPECT_EQ(QGetWindowManager()->GetActiveGroup(), nullptr);
  EXPECT_EQ(Modal(), nullptr);
}

using MessageBox = DialogTest;

TEST_F(MessageBox, FlagsChooseTheButtonsAndTheResult) {
  int platformBoxes = qpsMessageBoxCount();
  OnIdle([] {
    EXPECT_EQ(D()->GetCancel(), nullptr);
    Keys("\x1b");
  });
  EXPECT_EQ(QMessageBox("Note", "Saved.", QMB_OK), 0);
  OnIdle([] {
    EXPECT_STREQ(D()->GetOK()->GetText(), "Yes");
    EXPECT_STREQ(D()->GetCancel()->GetText(), "No");
    ClickOn(D()->GetCancel());
  });
  EXPECT_EQ(QMessageBox("Revert", "Revert to the saved car?", QMB_YESNO), 1);
  Keys("\n");
  EXPECT_EQ(QMessageBox("Revert", "Revert to the saved car?", QMB_YESNO), 0);
  CloseRequest();
  EXPECT_EQ(QMessageBox("Overwrite", "Replace it?", 0), 1);
  OnIdle([] {  // a log line's box shows in the window too
    ASSERT_NE(D(), nullptr);
    EXPECT_EQ(std::string(D()->GetTitle()) + "|" + D()->GetLabel()->GetText(), "Error|disk C is full");
    Keys("\n");
  });
  qlogf(QLOG_ERR | QLOG_MSGBOX | QLOG_NO_STDERR, "src", "disk %s is full", "C");
  EXPECT_EQ(qpsMessageBoxCount(), platformBoxes);
}

TEST(MessageBoxPlatform, AnswersMapToZeroOrOne) {
  QApp a(0, nullptr, "boxtest");
  int before = qpsMessageBoxCount();
  const int answers[][3] = {{QPMB_IDOK, 0, 0}, {QPMB_IDCANCEL, 0, 1}, {QPMB_IDYES, QMB_YESNO, 0}};
  for (const auto &r : answers) {
    qpsSetMessageBoxAnswer(r[0]);
    EXPECT_EQ(QMessageBox("T", "x", r[1]), r[2]) << r[0];
  }
  qpsSetMessageBoxAnswer(QPMB_IDNO);
  EXPECT_EQ(QMessageBoxAt("T", "y", QMB_YESNO, QRect(1, 2, 3, 4)), 1);
  EXPECT_STREQ(qpsLastMessageBoxText(), "y");
  qpsSetMessageBoxAnswer(QPMB_IDCANCEL);
  EXPECT_EQ(QTextDialogRun("T", "z", 0), 2);
  qpsSetMessageBoxAnswer(QPMB_IDOK);
  qlogf(QLOG_WARN | QLOG_NO_STDERR, "src", "quiet");
  EXPECT_EQ(qpsMessageBoxCount(), before + 5);
  qlogf(QLOG_ERR | QLOG_MSGBOX | QLOG_NO_STDERR, "src", "disk %s is full", "C");
  EXPECT_EQ(qpsMessageBoxCount(), before + 6);
  EXPECT_EQ(std::string(qpsLastMessageBoxTitle()) + "|" + qpsLastMessageBoxText(), "Error|disk C is full");
}

}  // namespace
