// The drawn frame (graphs, ghosts, texts; no controls) read back and compared
// pixel for pixel with stored images under tests/data/tool/frames/, at a few
// states. The images were first taken before the frame drew through
// QRenderer, which left every pixel as it was. After a deliberate change of
// the frame's look, regenerate them:
//
//   TYRO_UPDATE_FRAMES=1 build/tests/test_tool --gtest_filter='FramePixels*'
#include <GL/gl.h>

#include <cstdlib>
#include <string>

#include "tool/frame.h"
#include "tool/panel.h"
#include "toolwindow.h"
#include "ui/qfont.h"
#include "ui/qimage.h"

namespace {

class FramePixels : public ToolWindowTest {
 protected:
  void SetUp() override {
    ToolWindowTest::SetUp();
    font = new QFont((std::string(TYRO_SOURCE_DIR) + "/data/fonts/eurostile11").c_str());
    ASSERT_TRUE(font->Create());
    cv->SetFont(font);
  }
  void TearDown() override {
    cv->SetFont(nullptr);
    delete font;
    session.ghostCamber = false;
    ToolWindowTest::TearDown();
  }

  QImage Frame() {
    cv->Select();
    FramePaintGraphs(cv, VIEW_W, VIEW_H);
    glFinish();
    glReadBuffer(GL_BACK);
    QImage img(WIN_W, WIN_H);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, WIN_W, WIN_H, GL_RGBA, GL_UNSIGNED_BYTE, img.GetPixels());
    img.FlipVertical();
    return img;
  }

  // Compares the frame with the stored one, or stores it when asked to.
  void ExpectFrame(const char *name) {
    QImage got = Frame();
    std::string path = std::string(TYRO_TEST_DATA) + "/tool/frames/" + name + ".tga";
    const char *update = getenv("TYRO_UPDATE_FRAMES");
    if (update && *update) {
      ASSERT_TRUE(QTgaWrite(path.c_str(), got, QTGA_RGB, true)) << path;
      return;
    }
    QImage want;
    ASSERT_TRUE(QTgaRead(path.c_str(), want)) << path;
    ASSERT_TRUE(want.GetWidth() == WIN_W && want.GetHeight() == WIN_H) << path;
    int differ = 0, firstX = -1, firstY = -1;
    for (int y = 0; y < WIN_H; y++)
      for (int x = 0; x < WIN_W; x++) {
        const uint8_t *a = got.PixelAt(x, y), *b = want.PixelAt(x, y);
        if (a[0] == b[0] && a[1] == b[1] && a[2] == b[2]) continue;
        if (differ++ == 0) firstX = x, firstY = y;
      }
    EXPECT_EQ(differ, 0) << name << ": first difference at " << firstX << "," << firstY;
  }

  QFont *font = nullptr;
};

}  // namespace

TEST_F(FramePixels, MatchStoredFrames) {
  ExpectFrame("touring_startup");
  PanelFocus(2);  // Fy in full, load ghosts
  ExpectFrame("touring_focus_fy_load");
  PanelFocus(3);
  session.ghostCamber = true;
  PanelOpMoved(OP_CAMBER, 700);
  ExpectFrame("touring_focus_mz_camber");
  SessionLoadTir(TirFile("MagicFormula52_Parameters.tir").c_str());
  PanelRefreshLabels();
  PanelResetControls();
  ExpectFrame("mf52_startup");
}
