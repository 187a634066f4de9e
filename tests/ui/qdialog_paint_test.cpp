// What the dialogs draw, read back from the offscreen GL buffer (solid-glyph test font).
#include <gtest/gtest.h>

#include <GL/gl.h>

#include "tests/ui/dialog_fixture.h"
#include "ui/qcanvas.h"
#include "ui/qcontrol.h"
#include "ui/qdlgfile.h"
#include "ui/qentryfield.h"
#include "ui/qfiledialog.h"
#include "ui/qfilelist.h"
#include "ui/qfont.h"
#include "ui/qstringdialog.h"

namespace {

constexpr int CW = 8, LH = 14;  // the test font's advance and line height

class DialogPaint : public DialogTest {
 protected:
  bool UsesGL() const override { return true; }
  void SetUp() override {
    DialogTest::SetUp();
    font = new QFont("fixed");
    font->CreateFixed(CW, LH);
    cv = new QCanvas();
    cv->SetTargetSize(MW, MH);
    cv->SetFont(font);
    a->SetBC(cv);
  }
  void TearDown() override {
    a->SetBC(nullptr);
    delete cv;
    delete font;
    DialogTest::TearDown();
  }
  static bool Is(int x, int y, QColor want) {
    QCanvas *c = app->GetBC();
    c->Select();
    c->SetColor(QCANVAS_PX_BLACK);
    c->Clear();
    QGetWindowManager()->Paint(c);
    unsigned char p[4] = {};
    glReadBuffer(GL_BACK);
    glReadPixels(x, MH - 1 - y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, p);
    return std::abs(p[0] - want.GetR()) <= 3 && std::abs(p[1] - want.GetG()) <= 3 && std::abs(p[2] - want.GetB()) <= 3;
  }
  QFont *font = nullptr;
  QCanvas *cv = nullptr;
};

TEST_F(DialogPaint, EntryShowsTextAndCaret) {
  std::string text = "ab";
  Keys("\x05");
  OnIdle([] {
    QRect e = ModalAs<QStringDialog>()->GetEntry()->GetAbsRect();
    int mid = e.y + e.hgt / 2, caret = e.x + 4 + 2 * CW;  // after "ab"
    EXPECT_TRUE(Is(e.x + 4 + 2, mid, qlook::INK_ON_LIGHT));  // inside the glyph of 'a'
    EXPECT_TRUE(Is(caret - 1, mid, qlook::FIELD));           // the gap after 'b'
    EXPECT_TRUE(Is(caret, mid, qlook::INK_ON_LIGHT));        // the caret
    EXPECT_TRUE(Is(e.x + e.wid - 10, mid, qlook::FIELD));    // empty rest of the field
    Keys("\n");
  });
  EXPECT_TRUE(QStringDialogRun("Value", "Enter", &text, 20));
}

TEST_F(DialogPaint, FileListMarksTheSelectedRow) {
  std::filesystem::path dir = FreshDir("tyro_paintdir");
  std::filesystem::create_directories(dir / "sub");
  std::ofstream(dir / "a.tir") << "x\n";
  OnIdle([] {
    QFileList *l = ModalAs<QFileDialog>()->GetList();
    l->Select(2);  // "..", "sub", "a.tir"
    QRect r = l->GetAbsRect();
    EXPECT_TRUE(Is(r.x + r.wid - 20, r.y + 2 + 2 * (LH + 2) + 3, qlook::ACCENT_PALE));
    EXPECT_TRUE(Is(r.x + 6, r.y + 2 + (LH + 2) + 3, qlook::ACCENT));  // a folder's name
    Keys("\x1b");
  });
  char path[QDLGFILE_PATH_MAX] = "";
  EXPECT_FALSE(QDlgFile(nullptr, "paint", dir.c_str(), path, "Open", "*.tir", nullptr, nullptr));
  std::filesystem::remove_all(dir);
}

}  // namespace
