// The text viewer: scrolling by wheel and keys, closing, unreadable files.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "tests/ui/dialog_fixture.h"
#include "ui/qbutton.h"
#include "ui/qtextview.h"

namespace fs = std::filesystem;

namespace {

class TextView : public DialogTest {
 protected:
  void SetUp() override {
    DialogTest::SetUp();
    file = (fs::temp_directory_path() / ("tyro_textview_" + std::to_string(getpid()) + ".txt")).string();
    std::ofstream out(file);
    for (int i = 1; i <= 100; i++) out << "line " << i << "\r\n";
  }
  void TearDown() override {
    fs::remove(file);
    DialogTest::TearDown();
  }
  std::string file;
};

TEST_F(TextView, ShowsTheLinesAndScrolls) {
  static int page = 0;
  OnIdle([] {
    QTextView *v = ModalAs<QTextView>();
    ASSERT_NE(v, nullptr);
    QTextPane *p = v->GetPane();
    ASSERT_EQ(p->GetLines().size(), 100u);
    EXPECT_EQ(p->GetLines()[0], "line 1");  // line ends without the carriage return
    EXPECT_EQ(p->GetTop(), 0);
    EXPECT_EQ(QGetWindowManager()->GetFocus(), p);
    page = p->GetVisibleLines();
    EXPECT_GT(page, 5);
    ClickOn(p, QMB_WHEELDOWN);
    ClickOn(p, QMB_WHEELDOWN);
  });
  OnIdle([] {
    QTextPane *p = ModalAs<QTextView>()->GetPane();
    EXPECT_EQ(p->GetTop(), 6);
    ClickOn(p, QMB_WHEELUP);
    qpsKeyTap(QK_DOWN);
  });
  OnIdle([] {
    QTextPane *p = ModalAs<QTextView>()->GetPane();
    EXPECT_EQ(p->GetTop(), 4);
    qpsKeyTap(QK_PAGEDOWN);
  });
  OnIdle([] {
    QTextPane *p = ModalAs<QTextView>()->GetPane();
    EXPECT_EQ(p->GetTop(), 4 + page);
    qpsKeyTap(QK_END);
  });
  OnIdle([] {
    QTextPane *p = ModalAs<QTextView>()->GetPane();
    // The last page stays full: scrolling stops at the end.
    EXPECT_EQ(p->GetTop(), 100 - page);
    qpsKeyTap(QK_PAGEDOWN);
    qpsKeyTap(QK_HOME);
    qpsKeyTap(QK_UP);
  });
  OnIdle([] {
    EXPECT_EQ(ModalAs<QTextView>()->GetPane()->GetTop(), 0);
    qpsKeyTap(QK_ESC);
  });
  QTextViewRun(file.c_str(), "Report", "Tyre report");
}

TEST_F(TextView, EnterOkAndCloseEndIt) {
  qpsKeyTap(QK_ENTER);
  QTextViewRun(file.c_str(), "Report", "Tyre report");
  OnIdle([] { ClickOn(ModalAs<QTextView>()->GetOK()); });
  QTextViewRun(file.c_str(), "Report", "Tyre report");
  a->SetState(QApp::STATE_EXIT_RETURNS);
  qpsClose();
  QTextViewRun(file.c_str(), "Report", "Tyre report");
  EXPECT_EQ(Modal(), nullptr);
}

TEST_F(TextView, UnreadableFileNamesIt) {
  OnIdle([] {
    QTextPane *p = ModalAs<QTextView>()->GetPane();
    ASSERT_EQ(p->GetLines().size(), 1u);
    EXPECT_EQ(p->GetLines()[0], "Can't read '/no/such/report.txt'");
    qpsKeyTap(QK_ENTER);
  });
  QTextViewRun("/no/such/report.txt", "Report", "Tyre report");
}

}  // namespace
