// The drawn frame (graphs, ghosts, texts; no controls) read back and compared
// pixel for pixel, through a digest of its pixels, with the frames stored in
// tests/data/tool/frames.txt, at a few states. The frames were first stored
// before the frame drew through QRenderer, which left every pixel as it was,
// and before the hint line of F5 (drawn without data): its line's box is
// painted over in the background colour before the digest, so the stored
// digests still prove every other pixel unchanged, and the line itself is
// checked apart.
// After a deliberate change of the frame's look, store them again:
//
//   TYRO_UPDATE_FRAMES=1 build/tests/test_tool --gtest_filter='FramePixels*'
#include <GL/gl.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <string>

#include "render/qrecorder.h"
#include "tool/fitkeys.h"
#include "tool/layout.h"
#include "tool/measureddata.h"
#include "tool/windowframe.h"
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

  // FNV-1a over the RGB bytes of every pixel.
  static std::string Digest(const QImage &img) {
    uint64_t h = 1469598103934665603ull;
    for (int y = 0; y < WIN_H; y++)
      for (int x = 0; x < WIN_W; x++)
        for (int c = 0; c < 3; c++) h = (h ^ img.PixelAt(x, y)[c]) * 1099511628211ull;
    char buf[17];
    snprintf(buf, sizeof buf, "%016llx", static_cast<unsigned long long>(h));
    return buf;
  }

  // The box of F5's hint line, drawn since the digests were stored, and
  // checks that the frame draws it there and that it is the only line
  // added; an empty box when `drawn` is false (a Magic Formula 5.2 tyre's
  // scale list has the room).
  QRect F5HintBox(const char *name, bool drawn) {
    QRect box;
    int found = 0;
    for (const FrameHint &h : FrameHintLines(*cv, VIEW_W, VIEW_H))
      if (h.text.rfind("F5", 0) == 0 || h.text.rfind("F6", 0) == 0 || h.text.rfind("F7", 0) == 0) box = h.box, found++;
    EXPECT_EQ(found, drawn ? 1 : 0) << name << ": without data the fitting keys add one hint line, F5's";
    QRecorder rec;
    FramePaintGraphs(&rec, VIEW_W, VIEW_H);
    const QRecord *text = rec.FindText(FITHINT_NO_DATA);
    EXPECT_EQ(text != nullptr, drawn) << name;
    if (text) {
      EXPECT_TRUE(text->x == box.x && text->y == box.y) << name << ": " << text->x << "," << text->y;
    }
    return box;
  }
  // Pixels of `box` not in the background colour.
  static int Inked(const QImage &img, const QRect &box) {
    int n = 0;
    for (int y = box.y; y < box.y + box.hgt; y++)
      for (int x = box.x; x < box.x + box.wid; x++) {
        const uint8_t *p = img.PixelAt(x, y);
        n += p[0] != 255 || p[1] != 255 || p[2] != 255;
      }
    return n;
  }
  static void PaintOver(QImage *img, const QRect &box) {
    for (int y = box.y; y < box.y + box.hgt; y++)
      for (int x = box.x; x < box.x + box.wid; x++) {
        uint8_t *p = img->PixelAt(x, y);
        p[0] = p[1] = p[2] = 255;
      }
  }

  // Compares the frame's digest, with F5's hint line painted over, with the
  // stored one (tool/frames.txt holds a "name digest" line per state), or
  // stores it when asked to. A frame that differs is written as <name>.tga
  // beside the test, for a look.
  void ExpectFrame(const char *name, bool f5Line = true) {
    QImage got = Frame();
    const QRect box = F5HintBox(name, f5Line);
    if (f5Line) {
      EXPECT_GT(Inked(got, box), 20) << name << ": F5's hint line is not drawn";
    }
    PaintOver(&got, box);
    const std::string digest = Digest(got);
    if (const char *update = getenv("TYRO_UPDATE_FRAMES"); update && *update) {
      updated += std::string(name) + " " + digest + "\n";
      return;
    }
    EXPECT_EQ(stored[name], digest) << name << ": the frame changed; see " << name << ".tga";
    if (stored[name] != digest) QTgaWrite((std::string(name) + ".tga").c_str(), got, QTGA_RGB, true);
  }

  void SetUpDigests() {
    std::ifstream in(DigestFile());
    for (std::string n, d; in >> n >> d;) stored[n] = d;
  }
  void SaveDigests() {
    if (updated.empty()) return;
    std::ofstream(DigestFile()) << updated;
  }
  static std::string DigestFile() { return std::string(TYRO_TEST_DATA) + "/tool/frames.txt"; }

  std::map<std::string, std::string> stored;
  std::string updated;
  QFont *font = nullptr;
};

}  // namespace

TEST_F(FramePixels, MatchStoredFrames) {
  SetUpDigests();
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
  ExpectFrame("mf52_startup", false);
  SaveDigests();
}

// A Magic Formula 5.2 tyre's scale list fills the band under the sliders:
// with data loaded the fitting keys' lines take the rows above it (F5's
// first) and none runs into the list.
TEST_F(FramePixels, FittingKeysKeepClearOfTheScaleList) {
  SessionLoadTir(TirFile("MagicFormula52_Parameters.tir").c_str());
  PanelRefreshLabels();
  PanelResetControls();
  ASSERT_TRUE(DataLoad((std::string(TYRO_SOURCE_DIR) + "/data/measured/touring.csv").c_str()));
  const PanelLayout layout = LayoutCompute(VIEW_W, VIEW_H);
  const QRect last = layout.op[OP_SLIDERS - 1];
  const std::vector<FrameHint> lines = FrameHintLines(*cv, VIEW_W, VIEW_H);
  ASSERT_GE(lines.size(), 2u);
  EXPECT_EQ(lines[0].text.rfind("F5 ", 0), 0u) << lines[0].text;
  EXPECT_EQ(lines[1].text.rfind("F6 ", 0), 0u) << lines[1].text;
  for (const FrameHint &h : lines) EXPECT_LE(h.box.y + h.box.hgt, last.y + last.hgt + 1) << h.text;
  DataDrop();
}
