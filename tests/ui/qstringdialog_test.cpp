// The string-entry dialog: typed characters, editing keys, the limit, and
// how it ends.
#include <gtest/gtest.h>

#include <string>

#include "tests/ui/dialog_fixture.h"
#include "ui/qbutton.h"
#include "ui/qentryfield.h"
#include "ui/qstringdialog.h"

namespace {

using StringDialog = DialogTest;

TEST_F(StringDialog, TypedTextAndEnter) {
  std::string text = "0.8";
  OnIdle([] {
    QStringDialog *d = ModalAs<QStringDialog>();
    ASSERT_NE(d, nullptr);
    // The entry has the keyboard focus and shows the preset text.
    EXPECT_EQ(QGetWindowManager()->GetFocus(), d->GetEntry());
    EXPECT_EQ(d->GetEntry()->GetText(), "0.8");
    for (int i = 0; i < 3; i++) qpsKeyTap(QK_BACKSPACE);
    qpsType("1.5");
    qpsKeyTap(QK_ENTER);
  });
  EXPECT_TRUE(QStringDialogRun("Value", "Enter a value", &text, 20));
  EXPECT_EQ(text, "1.5");
}

TEST_F(StringDialog, TypingReplacesTheSelectedPreset) {
  std::string text = "0.85";
  qpsType("2");
  qpsKeyTap(QK_ENTER);
  EXPECT_TRUE(QStringDialogRun("Value", "Enter", &text, 20));
  EXPECT_EQ(text, "2");
  // Backspace removes all of it; End keeps it and drops the selection.
  text = "0.85";
  qpsKeyTap(QK_BACKSPACE);
  qpsType("7");
  qpsKeyTap(QK_ENTER);
  EXPECT_TRUE(QStringDialogRun("Value", "Enter", &text, 20));
  EXPECT_EQ(text, "7");
  text = "0.85";
  qpsKeyTap(QK_END);
  qpsType("7");
  qpsKeyTap(QK_ENTER);
  EXPECT_TRUE(QStringDialogRun("Value", "Enter", &text, 20));
  EXPECT_EQ(text, "0.857");
}

TEST_F(StringDialog, EditingKeysMoveTheCaret) {
  std::string text = "abc";
  // Home, Delete -> "bc"; End, Left, type X -> "bXc"; Right, Backspace -> "bX".
  for (int k : {QK_HOME, QK_DELETE, QK_END, QK_LEFT}) qpsKeyTap(k);
  qpsType("X");
  qpsKeyTap(QK_RIGHT);
  qpsKeyTap(QK_BACKSPACE);
  qpsKeyTap(QK_ENTER);
  EXPECT_TRUE(QStringDialogRun("Name", "Name", &text, 20));
  EXPECT_EQ(text, "bX");
}

TEST_F(StringDialog, LimitHolds) {
  std::string text;
  qpsType("123456");
  qpsKeyTap(QK_ENTER);
  EXPECT_TRUE(QStringDialogRun("Value", "At most four", &text, 4));
  EXPECT_EQ(text, "1234");
  // A preset longer than the limit is cut.
  text = "abcdef";
  qpsKeyTap(QK_ENTER);
  EXPECT_TRUE(QStringDialogRun("Value", "At most four", &text, 4));
  EXPECT_EQ(text, "abcd");
}

TEST_F(StringDialog, CancelKeepsTheText) {
  std::string text = "keep";
  qpsType("zzz");
  qpsKeyTap(QK_ESC);
  EXPECT_FALSE(QStringDialogRun("Value", "Enter", &text, 20));
  EXPECT_EQ(text, "keep");
  OnIdle([] {
    qpsType("zzz");
    ClickOn(ModalAs<QStringDialog>()->GetCancel());
  });
  EXPECT_FALSE(QStringDialogRun("Value", "Enter", &text, 20));
  EXPECT_EQ(text, "keep");
  a->SetState(QApp::STATE_EXIT_RETURNS);
  qpsClose();
  EXPECT_FALSE(QStringDialogRun("Value", "Enter", &text, 20));
  EXPECT_EQ(text, "keep");
}

TEST_F(StringDialog, OkButtonAndTabOrder) {
  std::string text;
  OnIdle([] {
    qpsType("7");
    // Tab moves to OK; characters then no longer reach the entry.
    qpsKeyTap(QK_TAB);
    qpsType("8");
  });
  OnIdle([] {
    QStringDialog *d = ModalAs<QStringDialog>();
    EXPECT_EQ(QGetWindowManager()->GetFocus(), d->GetOK());
    EXPECT_EQ(d->GetEntry()->GetText(), "7");
    // A click in the entry takes the focus back.
    ClickOn(d->GetEntry());
    qpsType("9");
  });
  OnIdle([] {
    QStringDialog *d = ModalAs<QStringDialog>();
    EXPECT_EQ(QGetWindowManager()->GetFocus(), d->GetEntry());
    ClickOn(d->GetOK());
  });
  EXPECT_TRUE(QStringDialogRun("Value", "Enter", &text, 20));
  EXPECT_EQ(text, "79");
}

TEST(StringDialogNoWindow, RefusesWithoutAWindow) {
  QApp *a = new QApp(0, nullptr, "strtest");
  std::string text = "x";
  EXPECT_FALSE(QStringDialogRun("Value", "Enter", &text, 20));
  EXPECT_EQ(text, "x");
  delete a;
}

}  // namespace
