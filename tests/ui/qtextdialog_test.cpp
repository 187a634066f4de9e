// The text dialog and the message boxes, driven by scripted keys and clicks
// on the headless backend; without a main window the platform's box asks.
#include <gtest/gtest.h>

#include "base/qinfo.h"
#include "tests/ui/dialog_fixture.h"
#include "ui/diag/qdebug.h"
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
  OnIdle([] { ClickOn(D()->GetOK()); });
  EXPECT_EQ(QTextDialogRun("Sure?", "Go on", 0), 1);
  // A click beside the buttons does nothing; a press on OK released outside neither.
  OnIdle([] {
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

TEST_F(TextDialog, PlaceAndLabels) {
  OnIdle([] {
    ASSERT_NE(D(), nullptr);
    QRect r = D()->GetAbsRect();
    EXPECT_EQ(std::vector<int>({r.x, r.y, r.wid, r.hgt, D()->GetOK()->GetX(), D()->GetCancel()->GetX()}),
              std::vector<int>({100, 150, 300, 160, 12, 190}));
    EXPECT_EQ(std::string(D()->GetTitle()) + "|" + D()->GetLabel()->GetText() + "|" + D()->GetOK()->GetText() +
                  "|" + D()->GetCancel()->GetText(),
              "Sure?|Go on|OK|Cancel");
    Keys("\n");
  });
  QTextDialogRun("Sure?", "Go on", 0);
  QRect at(40, 50, 400, 200);
  OnIdle([] {
    EXPECT_EQ(D()->GetAbsRect().x, 40);
    EXPECT_EQ(D()->GetOK()->GetX(), 400 / 2 - 50);  // OK alone sits in the middle
    EXPECT_EQ(D()->GetCancel(), nullptr);
    EXPECT_STREQ(D()->GetOK()->GetText(), "Fine");
    Keys("\n");
  });
  QTextDialogRun("Note", "Done", QTEXTDLG_OKONLY, &at, "Fine");
  // The language file names the buttons.
  QInfo lang("lang_test.ini", QINFO_NO_READ);
  lang.SetString("misc.ok", "Jawohl");
  lang.SetString("misc.cancel", "Abbrechen");
  a->SetInfo(&lang);
  OnIdle([] {
    EXPECT_STREQ(D()->GetOK()->GetText(), "Jawohl");
    EXPECT_STREQ(D()->GetCancel()->GetText(), "Abbrechen");
    Keys("\n");
  });
  QTextDialogRun("Frage", "Weiter?", 0);
  a->CloseInfo();
  lang.SetFlags(lang.GetFlags() & ~QINFO_MODIFIED);
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
  Keys("\x1b");
  EXPECT_EQ(QMessageBox("Overwrite", "Replace it?", 0), 1);
  CloseRequest();
  EXPECT_EQ(QMessageBox("Overwrite", "Replace it?", 0), 1);
  // A log line's box shows in the window too.
  OnIdle([] {
    ASSERT_NE(D(), nullptr);
    EXPECT_STREQ(D()->GetTitle(), "Error");
    EXPECT_STREQ(D()->GetLabel()->GetText(), "disk C is full");
    Keys("\n");
  });
  qlogf(QLOG_ERR | QLOG_MSGBOX | QLOG_NO_STDERR, "src", "disk %s is full", "C");
  EXPECT_EQ(qpsMessageBoxCount(), platformBoxes);
}

TEST_F(MessageBox, SizedToTheTextOrPlacedAtTheRectangle) {
  int w = 0, h = 0;
  QMessageBoxSize(std::string(80, 'x').c_str(), &w, &h);
  EXPECT_GT(w, 300);  // wider than the plain box for a long line
  OnIdle([] {
    QRect r = Modal()->GetAbsRect();
    EXPECT_EQ(r.x, (MW - r.wid) / 2);  // centred in the main window
    EXPECT_EQ(r.y, (MH - r.hgt) / 2);
    EXPECT_GT(r.hgt, 160);
    Keys("\n");
  });
  QMessageBox("Report", "one\ntwo\nthree\nfour\nfive", QMB_OK);
  OnIdle([] {
    QRect r = Modal()->GetAbsRect();
    EXPECT_EQ(std::vector<int>({r.x, r.y, r.wid, r.hgt}), std::vector<int>({100, 100, 500, 150}));
    Keys("\n");
  });
  QMessageBoxAt("Error", "Can't load the car", QMB_OK, QRect(100, 100, 500, 150));
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
  // A log line's box, and its line in the log file with the program's name.
  std::string log = (FreshDir("tyro_qlog") / "log.txt").string();
  qSetLogFileName(log.c_str());
  qlogf(QLOG_WARN | QLOG_NO_STDERR, "src", "quiet");
  EXPECT_EQ(qpsMessageBoxCount(), before + 5);
  qlogf(QLOG_ERR | QLOG_MSGBOX | QLOG_NO_STDERR, "src", "disk %s is full", "C");
  EXPECT_EQ(qpsMessageBoxCount(), before + 6);
  EXPECT_STREQ(qpsLastMessageBoxTitle(), "Error");
  EXPECT_STREQ(qpsLastMessageBoxText(), "disk C is full");
  EXPECT_NE(ReadAll(log).find("(ERR  ): [boxtest] disk C is full [src]"), std::string::npos) << ReadAll(log);
  qSetLogFileName("");
  std::filesystem::remove_all(std::filesystem::path(log).parent_path());
}

}  // namespace
