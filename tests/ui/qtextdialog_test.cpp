// The text dialog and the message boxes, driven by scripted keys and clicks
// on the headless backend.
#include <gtest/gtest.h>

#include <string>

#include "base/qinfo.h"
#include "tests/ui/dialog_fixture.h"
#include "ui/diag/qdebug.h"
#include "ui/qbutton.h"
#include "ui/qlabel.h"
#include "ui/qmsgbox.h"
#include "ui/qtextdialog.h"

namespace {

using TextDialog = DialogTest;

TEST_F(TextDialog, KeysAndCloseRequestGiveTheResult) {
  qpsKeyTap(QK_ENTER);
  EXPECT_EQ(QTextDialogRun("Sure?", "Go on", 0), 1);
  // Escape is the Cancel button's key.
  qpsKeyTap(QK_ESC);
  EXPECT_EQ(QTextDialogRun("Sure?", "Go on", 0), 2);
  // Without a Cancel button Escape gives OK.
  qpsKeyTap(QK_ESC);
  EXPECT_EQ(QTextDialogRun("Note", "Done", QTEXTDLG_OKONLY), 1);
  // A close request cancels (and, the main window's, asks the program to end).
  a->SetState(QApp::STATE_EXIT_RETURNS);
  qpsClose();
  EXPECT_EQ(QTextDialogRun("Sure?", "Go on", 0), 2);
}

TEST_F(TextDialog, ButtonClicks) {
  OnIdle([] { ClickOn(ModalAs<QTextDialog>()->GetCancel()); });
  EXPECT_EQ(QTextDialogRun("Sure?", "Go on", 0), 2);
  OnIdle([] { ClickOn(ModalAs<QTextDialog>()->GetOK()); });
  EXPECT_EQ(QTextDialogRun("Sure?", "Go on", 0), 1);
  // A click beside the buttons does nothing; a press on OK released outside neither.
  OnIdle([] {
    QTextDialog *d = ModalAs<QTextDialog>();
    QRect r = d->GetAbsRect();
    qpsClick(r.x + r.wid / 2, r.y + 30);
    QRect ok = d->GetOK()->GetAbsRect();
    qpsButtonPress(ok.x + 5, ok.y + 5);
    qpsMouseMove(r.x + r.wid / 2, r.y + 30);
    qpsButtonRelease(r.x + r.wid / 2, r.y + 30);
  });
  OnIdle([] {
    EXPECT_EQ(Modal()->GetResult(), 0);
    qpsKeyTap(QK_ESC);
  });
  EXPECT_EQ(QTextDialogRun("Sure?", "Go on", 0), 2);
}

TEST_F(TextDialog, LayoutPlaceAndLabels) {
  OnIdle([] {
    QTextDialog *d = ModalAs<QTextDialog>();
    ASSERT_NE(d, nullptr);
    QRect r = d->GetAbsRect();
    EXPECT_EQ(r.x, 100);
    EXPECT_EQ(r.y, 150);
    EXPECT_EQ(r.wid, 300);
    EXPECT_EQ(r.hgt, 160);
    EXPECT_EQ(d->GetOK()->GetX(), 12);
    EXPECT_EQ(d->GetOK()->GetY(), 120);
    EXPECT_EQ(d->GetCancel()->GetX(), 190);
    EXPECT_EQ(d->GetLabel()->GetX(), 10);
    EXPECT_EQ(d->GetLabel()->GetY(), 48);
    EXPECT_STREQ(d->GetLabel()->GetText(), "Go on");
    EXPECT_STREQ(d->GetOK()->GetText(), "OK");
    EXPECT_STREQ(d->GetCancel()->GetText(), "Cancel");
    EXPECT_STREQ(d->GetTitle(), "Sure?");
    EXPECT_EQ(d->GetOK()->GetShortcut(), 13);
    EXPECT_EQ(d->GetCancel()->GetShortcut(), 27);
    qpsKeyTap(QK_ENTER);
  });
  QTextDialogRun("Sure?", "Go on", 0);

  QRect at(40, 50, 400, 200);
  OnIdle([] {
    QTextDialog *d = ModalAs<QTextDialog>();
    EXPECT_EQ(d->GetAbsRect().x, 40);
    EXPECT_EQ(d->GetAbsRect().wid, 400);
    EXPECT_EQ(d->GetOK()->GetX(), 400 / 2 - 50);  // OK alone sits in the middle
    EXPECT_EQ(d->GetCancel(), nullptr);
    EXPECT_STREQ(d->GetOK()->GetText(), "Fine");
    qpsKeyTap(QK_ENTER);
  });
  QTextDialogRun("Note", "Done", QTEXTDLG_OKONLY, &at, "Fine");

  // One label given: the other button keeps its English text.
  OnIdle([] {
    QTextDialog *d = ModalAs<QTextDialog>();
    EXPECT_STREQ(d->GetOK()->GetText(), "OK");
    EXPECT_STREQ(d->GetCancel()->GetText(), "Drop");
    qpsKeyTap(QK_ESC);
  });
  EXPECT_EQ(QTextDialogRun("Sure?", "Go on", 0, nullptr, nullptr, "Drop"), 2);
}

TEST_F(TextDialog, LanguageEntriesNameTheButtons) {
  QInfo *lang = new QInfo("lang_test.ini", QINFO_NO_READ);
  lang->SetString("misc.ok", "Jawohl");
  lang->SetString("misc.cancel", "Abbrechen");
  a->SetInfo(lang);
  OnIdle([] {
    QTextDialog *d = ModalAs<QTextDialog>();
    EXPECT_STREQ(d->GetOK()->GetText(), "Jawohl");
    EXPECT_STREQ(d->GetCancel()->GetText(), "Abbrechen");
    qpsKeyTap(QK_ENTER);
  });
  QTextDialogRun("Frage", "Weiter?", 0);
  a->CloseInfo();
  lang->SetFlags(lang->GetFlags() & ~QINFO_MODIFIED);
  delete lang;
}

TEST_F(TextDialog, WindowsGoAwayAfterTheRun) {
  QWindowManager *wm = QGetWindowManager();
  int before = wm->GetWindowCount();
  qpsKeyTap(QK_ENTER);
  QTextDialogRun("Sure?", "Go on", 0);
  EXPECT_EQ(wm->GetWindowCount(), before);
  EXPECT_EQ(wm->GetActiveGroup(), nullptr);
  EXPECT_EQ(Modal(), nullptr);
}

// ---- Message boxes ------------------------------------------------------------------------

using MessageBox = DialogTest;

TEST_F(MessageBox, FlagsChooseTheButtons) {
  int platformBoxes = qpsMessageBoxCount();
  OnIdle([] {
    QTextDialog *d = ModalAs<QTextDialog>();
    EXPECT_EQ(d->GetCancel(), nullptr);
    qpsKeyTap(QK_ESC);
  });
  EXPECT_EQ(QMessageBox("Note", "Saved.", QMB_OK), 0);

  OnIdle([] {
    QTextDialog *d = ModalAs<QTextDialog>();
    EXPECT_STREQ(d->GetOK()->GetText(), "Yes");
    EXPECT_STREQ(d->GetCancel()->GetText(), "No");
    ClickOn(d->GetCancel());
  });
  EXPECT_EQ(QMessageBox("Revert", "Revert to the saved car?", QMB_YESNO), 1);
  qpsKeyTap(QK_ENTER);
  EXPECT_EQ(QMessageBox("Revert", "Revert to the saved car?", QMB_YESNO), 0);

  OnIdle([] {
    QTextDialog *d = ModalAs<QTextDialog>();
    EXPECT_STREQ(d->GetOK()->GetText(), "OK");
    EXPECT_STREQ(d->GetCancel()->GetText(), "Cancel");
    qpsKeyTap(QK_ESC);
  });
  EXPECT_EQ(QMessageBox("Overwrite", "Replace it?", 0), 1);
  a->SetState(QApp::STATE_EXIT_RETURNS);
  qpsClose();
  EXPECT_EQ(QMessageBox("Overwrite", "Replace it?", 0), 1);
  EXPECT_EQ(qpsMessageBoxCount(), platformBoxes);
}

TEST_F(MessageBox, SizedToTheTextOrPlacedAtTheRectangle) {
  int w1 = 0, h1 = 0, w3 = 0, h3 = 0;
  QMessageBoxSize("short", &w1, &h1);
  EXPECT_EQ(w1, 300);
  EXPECT_EQ(h1, 160);
  QMessageBoxSize("one\ntwo\nthree\nfour\nfive", &w3, &h3);
  EXPECT_GT(h3, h1);
  std::string wide(80, 'x');
  QMessageBoxSize(wide.c_str(), &w3, &h3);
  EXPECT_GT(w3, 300);

  OnIdle([] {
    QTextDialog *d = ModalAs<QTextDialog>();
    QRect r = d->GetAbsRect();
    // Centred in the main window.
    EXPECT_EQ(r.x, (MW - r.wid) / 2);
    EXPECT_EQ(r.y, (MH - r.hgt) / 2);
    EXPECT_GT(r.hgt, 160);
    qpsKeyTap(QK_ENTER);
  });
  QMessageBox("Report", "one\ntwo\nthree\nfour\nfive", QMB_OK);

  OnIdle([] {
    QRect r = Modal()->GetAbsRect();
    EXPECT_EQ(r.x, 100);
    EXPECT_EQ(r.y, 100);
    EXPECT_EQ(r.wid, 500);
    EXPECT_EQ(r.hgt, 150);
    qpsKeyTap(QK_ENTER);
  });
  QMessageBoxAt("Error", "Can't load the car", QMB_OK, QRect(100, 100, 500, 150));
}

TEST_F(MessageBox, LogBoxesShowInTheWindow) {
  int platformBoxes = qpsMessageBoxCount();
  OnIdle([] {
    QTextDialog *d = ModalAs<QTextDialog>();
    ASSERT_NE(d, nullptr);
    EXPECT_STREQ(d->GetTitle(), "Error");
    EXPECT_STREQ(d->GetLabel()->GetText(), "disk C is full");
    EXPECT_EQ(d->GetCancel(), nullptr);
    qpsKeyTap(QK_ENTER);
  });
  qlogf(QLOG_ERR | QLOG_MSGBOX | QLOG_NO_STDERR, "src", "disk %s is full", "C");
  EXPECT_EQ(qpsMessageBoxCount(), platformBoxes);
}

// Without a main window the platform's box asks; its answer maps to 0 or 1.
TEST(MessageBoxPlatform, AnswersMapToZeroOrOne) {
  QApp *a = new QApp(0, nullptr, "boxtest");
  int before = qpsMessageBoxCount();
  qpsSetMessageBoxAnswer(QPMB_IDOK);
  EXPECT_EQ(QMessageBox("T", "x", 0), 0);
  qpsSetMessageBoxAnswer(QPMB_IDCANCEL);
  EXPECT_EQ(QMessageBox("T", "x", 0), 1);
  qpsSetMessageBoxAnswer(QPMB_IDYES);
  EXPECT_EQ(QMessageBox("T", "x", QMB_YESNO), 0);
  qpsSetMessageBoxAnswer(QPMB_IDNO);
  EXPECT_EQ(QMessageBoxAt("T", "y", QMB_YESNO, QRect(1, 2, 3, 4)), 1);
  EXPECT_STREQ(qpsLastMessageBoxText(), "y");
  qpsSetMessageBoxAnswer(QPMB_IDCANCEL);
  EXPECT_EQ(QTextDialogRun("T", "z", 0), 2);
  EXPECT_EQ(qpsMessageBoxCount(), before + 5);
  qpsSetMessageBoxAnswer(QPMB_IDOK);
  delete a;
}

}  // namespace
