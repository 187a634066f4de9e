// The text viewer: scrolling by wheel and keys, closing, unreadable files.
#include <gtest/gtest.h>

#include "tests/ui/dialog_fixture.h"
#include "ui/qbutton.h"
#include "ui/qtextview.h"

namespace {

using TextView = DialogTest;

TEST_F(TextView, ScrollsAndCloses) {
  std::filesystem::path dir = FreshDir("tyro_textview");
  std::string file = (dir / "report.txt").string();
  std::ofstream out(file);
  for (int i = 1; i <= 100; i++) out << "line " << i << "\r\n";
  out.close();
  static int page = 0;
  auto top = [] { return ModalAs<QTextView>()->GetPane()->GetTop(); };
  OnIdle([] {
    QTextPane *p = ModalAs<QTextView>()->GetPane();
    ASSERT_EQ(p->GetLines().size(), 100u);
    EXPECT_EQ(p->GetLines()[0], "line 1");  // without the carriage return
    EXPECT_EQ(QGetWindowManager()->GetFocus(), p);
    page = p->GetVisibleLines();
    ClickOn(p, QMB_WHEELDOWN);
    ClickOn(p, QMB_WHEELDOWN);
    ClickOn(p, QMB_WHEELUP);
    qpsKeyTap(QK_DOWN);
  });
  OnIdle([=] {
    EXPECT_EQ(top(), 4);
    qpsKeyTap(QK_PAGEDOWN);
    qpsKeyTap(QK_PAGEDOWN);
  });
  OnIdle([=] {
    EXPECT_EQ(top(), 4 + 2 * page);
    Keys("\x05");
  });
  OnIdle([=] {
    EXPECT_EQ(top(), 100 - page);  // the last page stays full
    qpsKeyTap(QK_PAGEDOWN);
    Keys("\x01");
    qpsKeyTap(QK_UP);
  });
  OnIdle([=] {
    EXPECT_EQ(top(), 0);
    Keys("\x1b");
  });
  QTextViewRun(file.c_str(), "Report", "Tyre report");
  OnIdle([] { ClickOn(ModalAs<QTextView>()->GetOK()); });
  QTextViewRun(file.c_str(), "Report", "Tyre report");
  std::filesystem::remove_all(dir);
}

TEST_F(TextView, UnreadableFileNamesIt) {
  OnIdle([] {
    QTextPane *p = ModalAs<QTextView>()->GetPane();
    EXPECT_EQ(p->GetLines(), std::vector<std::string>{"Can't read '/no/such/report.txt'"});
    Keys("\n");
  });
  QTextViewRun("/no/such/report.txt", "Report", "Tyre report");
}

}  // namespace
