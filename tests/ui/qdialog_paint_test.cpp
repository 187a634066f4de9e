// What the dialogs' own windows draw: the entry's text and caret, the text
// viewer's lines and the file list's selected row, read back from the
// offscreen GL back buffer with a fixed-width test font (solid glyphs).
#include <gtest/gtest.h>
#include <unistd.h>

#include <GL/gl.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "tests/ui/dialog_fixture.h"
#include "ui/qcanvas.h"
#include "ui/qcontrol.h"
#include "ui/qdlgfile.h"
#include "ui/qentryfield.h"
#include "ui/qfiledialog.h"
#include "ui/qfilelist.h"
#include "ui/qfont.h"
#include "ui/qstringdialog.h"
#include "ui/qtextview.h"

namespace fs = std::filesystem;

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
  // One frame as the program's idle procedure draws it.
  static void Frame() {
    QCanvas *c = app->GetBC();
    c->Select();
    c->SetColor(QCANVAS_PX_BLACK);
    c->Clear();
    QGetWindowManager()->Paint(c);
    glFinish();
  }
  static Rgba Pixel(int x, int y) {
    unsigned char p[4] = {};
    glReadBuffer(GL_BACK);
    glReadPixels(x, MH - 1 - y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, p);
    return {p[0], p[1], p[2], p[3]};
  }
  static bool Is(Rgba p, QColor c) {
    return std::abs(p.r - c.GetR()) <= 3 && std::abs(p.g - c.GetG()) <= 3 && std::abs(p.b - c.GetB()) <= 3;
  }
  QFont *font = nullptr;
  QCanvas *cv = nullptr;
};

TEST_F(DialogPaint, EntryShowsTextAndCaret) {
  std::string text = "ab";
  OnIdle([] {
    Frame();
    // The proposed text comes selected.
    QRect e = ModalAs<QStringDialog>()->GetEntry()->GetAbsRect();
    int mid = e.y + e.hgt / 2;
    EXPECT_TRUE(Is(Pixel(e.x + 4 + 2 * CW - 1, mid), qlook::ACCENT_PALE));
    EXPECT_TRUE(Is(Pixel(e.x + e.wid - 10, mid), qlook::FIELD));
    qpsKeyTap(QK_END);
  });
  OnIdle([] {
    Frame();
    QRect e = ModalAs<QStringDialog>()->GetEntry()->GetAbsRect();
    int mid = e.y + e.hgt / 2;
    int caret = e.x + 4 + 2 * CW;
    EXPECT_TRUE(Is(Pixel(e.x + 4 + 2, mid), qlook::INK_ON_LIGHT));       // inside the glyph of 'a'
    EXPECT_TRUE(Is(Pixel(caret - 1, mid), qlook::FIELD));                // the gap after 'b'
    EXPECT_TRUE(Is(Pixel(caret, mid), qlook::INK_ON_LIGHT));             // the caret
    EXPECT_TRUE(Is(Pixel(e.x + e.wid - 10, mid), qlook::FIELD));         // empty rest of the field
    EXPECT_TRUE(Is(Pixel(e.x + 1, e.y + 1), qlook::FOCUS));              // the focus ring
    qpsKeyTap(QK_HOME);
  });
  OnIdle([] {
    Frame();
    QRect e = ModalAs<QStringDialog>()->GetEntry()->GetAbsRect();
    int mid = e.y + e.hgt / 2;
    EXPECT_TRUE(Is(Pixel(e.x + 4 + 2 * CW, mid), qlook::FIELD));  // the caret moved away
    qpsKeyTap(QK_ENTER);
  });
  EXPECT_TRUE(QStringDialogRun("Value", "Enter", &text, 20));
}

TEST_F(DialogPaint, LongEntryScrollsToKeepTheCaret) {
  std::string text(60, 'x');
  OnIdle([] {
    Frame();
    QRect e = ModalAs<QStringDialog>()->GetEntry()->GetAbsRect();
    // The caret at the end stays inside the field.
    int mid = e.y + e.hgt / 2;
    bool caretSeen = false;
    for (int x = e.x + e.wid - 12; x < e.x + e.wid - 2; x++) caretSeen |= Is(Pixel(x, mid), qlook::INK_ON_LIGHT);
    EXPECT_TRUE(caretSeen);
    qpsKeyTap(QK_ESC);
  });
  EXPECT_FALSE(QStringDialogRun("Value", "Enter", &text, 80));
}

TEST_F(DialogPaint, TextViewDrawsItsLines) {
  std::string file = (fs::temp_directory_path() / ("tyro_paint_" + std::to_string(getpid()) + ".txt")).string();
  std::ofstream(file) << "W\n\nWW\n";
  OnIdle([] {
    Frame();
    QRect p = ModalAs<QTextView>()->GetPane()->GetAbsRect();
    int x = p.x + 4 + CW + 2;  // where the second character stands
    EXPECT_TRUE(Is(Pixel(p.x + 6, p.y + 4 + LH / 2), qlook::INK_ON_LIGHT));
    EXPECT_TRUE(Is(Pixel(x, p.y + 4 + LH / 2), qlook::FIELD));               // line 1 has one character
    EXPECT_TRUE(Is(Pixel(p.x + 6, p.y + 4 + LH + LH / 2), qlook::FIELD));    // line 2 is empty
    EXPECT_TRUE(Is(Pixel(x, p.y + 4 + 2 * LH + LH / 2), qlook::INK_ON_LIGHT));  // line 3 has two
    qpsKeyTap(QK_ESC);
  });
  QTextViewRun(file.c_str(), "Report", "Report");
  fs::remove(file);
}

TEST_F(DialogPaint, FileListMarksTheSelectedRow) {
  fs::path dir = fs::temp_directory_path() / ("tyro_paintdir_" + std::to_string(getpid()));
  fs::create_directories(dir / "sub");
  std::ofstream(dir / "a.tir") << "x\n";
  OnIdle([] {
    QFileList *l = ModalAs<QFileDialog>()->GetList();
    l->Select(2);  // "..", "sub", "a.tir"
    Frame();
    QRect r = l->GetAbsRect();
    EXPECT_EQ(l->GetRowHeight(), LH + 2);
    int right = r.x + r.wid - 20;
    EXPECT_TRUE(Is(Pixel(right, r.y + 2 + 2 * (LH + 2) + 3), qlook::ACCENT_PALE));
    EXPECT_TRUE(Is(Pixel(right, r.y + 2 + 1 * (LH + 2) + 3), qlook::FIELD));
    // The folder's name is drawn in the accent colour.
    EXPECT_TRUE(Is(Pixel(r.x + 6, r.y + 2 + (LH + 2) + 3), qlook::ACCENT));
    qpsKeyTap(QK_ESC);
  });
  char path[QDLGFILE_PATH_MAX] = "";
  EXPECT_FALSE(QDlgFile(nullptr, "paint", dir.c_str(), path, "Open", "*.tir", nullptr, nullptr));
  fs::remove_all(dir);
}

}  // namespace
