// The text dialog and the message boxes, driven by scripted keys and clicks
// on the headless backend; without a main window the platform's box asks.
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

TEST_F(TextDialog, KeysClicksAndCloseGiveTheResult) {
  Keys("\n");
  EXPECT_EQ(QTextDialogRun("Sure?", "Go on", 0), 1);
  Keys("\x1b");
  EXPECT_EQ(QTextDialogRun("Sure?", "Go on", 0), 2);
  Keys("\x1b");  // without a Cancel button Escape gives OK
  EXPECT_EQ(QTextDialogRun("Note", "Done", QTEXTDLG_OKONLY), 1);
  OnIdle([] { ClickOn(ModalAs<QTextDialog>()->GetOK()); });
  EXPECT_EQ(QTextDialogRun("Sure?", "Go on", 0), 1);
  // A click beside the buttons does nothing; a press on OK released outside neither.
  OnIdle([] {
    QTextDialog *d = ModalAs<QTextDialog>();
    QRect r = d->GetAbsRect(), ok = d->GetOK()->GetAbsRect();
    qpsClick(r.x + r.wid / 2, r.y + 30);
    qpsButtonPress(ok.x + 5, ok.y + 5);
    qpsMouseMove(r.x + r.wid / 2, r.y + 30);
    qpsButtonRelease(r.x + r.wid / 2, r.y + 30);
  });
  OnIdle([] {
    EXPECT_EQ(Modal()->GetResult(), 0);
    ClickOn(ModalAs<QTextDialog>()->GetCancel());
  });
  EXPECT_EQ(QTextDialogRun("Sure?", "Go on", 0), 2);
  CloseRequest();
  EXPECT_EQ(QTextDialogRun("Sure?", "Go on", 0), 2);
  // The dialog's windows are gone afterwards.
  EXPECT_EQ(QGetWindowManager()->GetActiveGroup(), nullptr);
  EXPECT_EQ(Modal(), nullptr);
}

TEST_F(TextDialog, LayoutAndLabels) {
  int windows = QGetWindowManager()->GetWindowCount();
  OnIdle([] {
    QTextDialog *d = ModalAs<QTextDialog>();
    ASSERT_NE(d, nullptr);
    QRect r = d->GetAbsRect();
    EXPECT_EQ(std::vector<int>({r.x, r.y, r.wid, r.hgt}), std::vector<int>({100, 150, 300, 160}));
    EXPECT_EQ(std::vector<int>({d->GetOK()->GetX(), d->GetOK()->GetY(), d->GetCancel()->GetX()}),
              std::vector<int>({12, 120, 190}));
    EXPECT_STREQ(d->GetLabel()->GetText(), "Go on");
    EXPECT_STREQ(d->GetOK()->GetText(), "OK");
    EXPECT_STREQ(d->GetCancel()->GetText(), "Cancel");
    EXPECT_STREQ(d->GetTitle(), "Sure?");
    Keys("\n");
  });
  QTextDialogRun("Sure?", "Go on", 0);
  EXPECT_EQ(QGetWindowManager()->GetWindowCount(), windows);

  QRect at(40, 50, 400, 200);
  OnIdle([] {
    QTextDialog *d = ModalAs<QTextDialog>();
    EXPECT_EQ(d->GetAbsRect().x, 40);
    EXPECT_EQ(d->GetOK()->GetX(), 400 / 2 - 50);  // OK alone sits in the middle
    EXPECT_EQ(d->GetCancel(), nullptr);
    EXPECT_STREQ(d->GetOK()->GetText(), "Fine");
    Keys("\n");
  });
  QTextDialogRun("Note", "Done", QTEXTDLG_OKONLY, &at, "Fine");

  // One label given: the other button keeps its English text.
  OnIdle([] {
    EXPECT_STREQ(ModalAs<QTextDialog>()->GetOK()->GetText(), "OK");
    EXPECT_STREQ(ModalAs<QTextDialog>()->GetCancel()->GetText(), "Drop");
    Keys("\n");
  });
  QTextDialogRun("Sure?", "Go on", 0, nullptr, nullptr, "Drop");

  QInfo *lang = new QInfo("lang_test.ini", QINFO_NO_READ);
  lang->SetString("misc.ok", "Jawohl");
  lang->SetString("misc.cancel", "Abbrechen");
  a->SetInfo(lang);
  OnIdle([] {
    EXPECT_STREQ(ModalAs<QTextDialog>()->GetOK()->GetText(), "Jawohl");
    EXPECT_STREQ(ModalAs<QTextDialog>()->GetCancel()->GetText(), "Abbrechen");
    Keys("\n");
  });
  QTextDialogRun("Frage", "Weiter?", 0);
  a->CloseInfo();
  lang->SetFlags(lang->GetFlags() & ~QINFO_MODIFIED);
  delete lang;
}

using MessageBox = DialogTest;

TEST_F(MessageBox, FlagsChooseTheButtonsAndTheResult) {
  int platformBoxes = qpsMessageBoxCount();
  OnIdle([] {
    EXPECT_EQ(ModalAs<QTextDialog>()->GetCancel(), nullptr);
    Keys("\x1b");
  });
  EXPECT_EQ(QMessageBox("Note", "Saved.", QMB_OK), 0);
  OnIdle([] {
    QTextDialog *d = ModalAs<QTextDialog>();
    EXPECT_STREQ(d->GetOK()->GetText(), "Yes");
    EXPECT_STREQ(d->GetCancel()->GetText(), "No");
    ClickOn(d->GetCancel());
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
    QTextDialog *d = ModalAs<QTextDialog>();
    ASSERT_NE(d, nullptr);
    EXPECT_STREQ(d->GetTitle(), "Error");
    EXPECT_STREQ(d->GetLabel()->GetText(), "disk C is full");
    Keys("\n");
  });
  qlogf(QLOG_ERR | QLOG_MSGBOX | QLOG_NO_STDERR, "src", "disk %s is full", "C");
  EXPECT_EQ(qpsMessageBoxCount(), platformBoxes);
}

TEST_F(MessageBox, SizedToTheTextOrPlacedAtTheRectangle) {
  int w1 = 0, h1 = 0, w3 = 0, h3 = 0;
  QMessageBoxSize("short", &w1, &h1);
  EXPECT_EQ(w1, 300);
  EXPECT_EQ(h1, 160);
  QMessageBoxSize(std::string(80, 'x').c_str(), &w3, &h3);
  EXPECT_GT(w3, 300);
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
  EXPECT_EQ(qpsMessageBoxCount(), before + 5);

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
