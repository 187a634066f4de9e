// The string-entry dialog: typed characters, editing keys, the limit, how it ends.
#include <gtest/gtest.h>

#include <string>

#include "tests/ui/dialog_fixture.h"
#include "ui/qbutton.h"
#include "ui/qentryfield.h"
#include "ui/qstringdialog.h"

namespace {

using StringDialog = DialogTest;

QStringDialog *D() { return DialogTest::ModalAs<QStringDialog>(); }

TEST_F(StringDialog, ScriptedKeys) {
  struct Case {
    const char *preset;
    int limit;
    const char *keys;
    bool ok;
    const char *text;
  };
  const Case cases[] = {
      {"0.85", 20, "2\n", true, "2"},  // typing replaces the selected preset
      {"0.85", 20, "\x05" "7\n", true, "0.857"},  // End keeps it
      {"abc", 20, "\x01\x7f\x05\x02X\x06\b\n", true, "bX"},
      {"abcdef", 4, "\n", true, "abcd"},  // a longer preset is cut
      {"keep", 20, "zzz\x1b", false, "keep"},
  };
  for (const Case &c : cases) {
    std::string text = c.preset;
    Keys(c.keys);
    EXPECT_EQ(QStringDialogRun("Value", "Enter", &text, c.limit), c.ok) << c.keys;
    EXPECT_EQ(text, c.text) << c.keys;
  }
}

TEST_F(StringDialog, ButtonsFocusAndClose) {
  std::string text = "keep";
  OnIdle([] {
    Keys("zzz");
    ClickOn(D()->GetCancel());
  });
  EXPECT_FALSE(QStringDialogRun("Value", "Enter", &text, 20));
  CloseRequest();
  EXPECT_FALSE(QStringDialogRun("Value", "Enter", &text, 20));
  EXPECT_EQ(text, "keep");
  text = "0.8";
  OnIdle([] {
    EXPECT_EQ(QGetWindowManager()->GetFocus(), D()->GetEntry());
    Keys("7\t8");  // Tab moves to OK; characters then no longer reach the entry
  });
  OnIdle([] {
    EXPECT_EQ(QGetWindowManager()->GetFocus(), D()->GetOK());
    ClickOn(D()->GetEntry());  // takes the focus back
    Keys("9");
    ClickOn(D()->GetOK());
  });
  EXPECT_TRUE(QStringDialogRun("Value", "Enter", &text, 20));
  EXPECT_EQ(text, "79");
}

TEST(StringDialogNoWindow, RefusesWithoutAWindow) {
  QApp a(0, nullptr, "strtest");
  std::string text = "x";
  EXPECT_FALSE(QStringDialogRun("Value", "Enter", &text, 20));
}

}  // namespace
