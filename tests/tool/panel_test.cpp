// The control panel in a headless window: labels, slider mappings, dispatch
// and painting.
#include "tool/panel.h"

#include <GL/gl.h>

#include <string>
#include <vector>

#include "tool/dispatch.h"
#include "tool/windowframe.h"
#include "tool/settings.h"
#include "toolwindow.h"
#include "ui/qbutton.h"
#include "ui/qcheck.h"
#include "ui/qfont.h"
#include "ui/qprop.h"
#include "ui/qradio.h"

namespace {

std::string Labels() {
  std::string s;
  for (QRadio *r : panel.coeff) s += std::string(r->GetText()) + " ";
  return s;
}

QEvent Change(QWindow *w, int n) {
  QEvent ev;
  ev.type = QEVENT_CHANGE;
  ev.n = n;
  ev.win = w;
  return ev;
}

// Pixels of r in the back buffer in the Fx curve's red.
int RedPixels(const QRect &r, int winH) {
  glFinish();
  glReadBuffer(GL_BACK);
  std::vector<unsigned char> px(size_t(r.wid * r.hgt * 4));
  glReadPixels(r.x, winH - r.y - r.hgt, r.wid, r.hgt, GL_RGBA, GL_UNSIGNED_BYTE, px.data());
  int n = 0;
  for (size_t i = 0; i < px.size(); i += 4)
    n += px[i] > 200 && px[i + 1] < 150 && px[i + 2] < 150;
  return n;
}

using PanelTest = ToolWindowTest;

}  // namespace

TEST_F(PanelTest, StartUpStateAndResetRestoresIt) {
  const char *commands[] = {"Open tire", "Revert", "Save*", "Export ASCII", "Export for Car.Ini", "Analyse"};
  for (int i = 0; i < LAYOUT_COMMANDS; i++) EXPECT_STREQ(panel.command[i]->GetText(), commands[i]);
  EXPECT_TRUE(panel.ghost[0]->IsChecked());
  EXPECT_FALSE(PanelGhostCamber());
  EXPECT_STREQ(panel.wheel->GetCaption(), "0/FL");
  EXPECT_EQ(Labels(), "b0 b1 b2 b3 b4 b5 b6 b7 b8 b9 b10 b11 b12 "
                      "--- --- --- --- --- --- --- --- --- --- --- --- --- --- --- ");
  for (int round = 0; round < 2; round++) {
    EXPECT_TRUE(session.focus == 0 && session.selected == 0 && session.zoom);
    EXPECT_TRUE(panel.zoom->IsChecked() && panel.focus[0]->IsChecked() && panel.coeff[0]->IsChecked());
    const char *captions[] = {"Load 2500N", "Slipratio 0.00", "Slipangle 0.00", "Inclination 0.00 (camber)"};
    for (int s = 0; s < OP_SLIDERS; s++) {
      EXPECT_STREQ(panel.op[s]->GetCaption(), captions[s]);
      EXPECT_EQ(panel.op[s]->GetPosition(), s == OP_LOAD ? 83 : 500);
    }
    EXPECT_EQ(panel.value->GetPosition(), int(Tyre(CURVE_FX, 0)->b0 / 2.0f * 1000.0f));  // b0 on a 0..2 slider
    EXPECT_FLOAT_EQ(Tyre(CURVE_MZ, 3)->Fz, 2.5f);
    EXPECT_EQ(session.graphs[CURVE_FY]->GetRange().xMax, 20.0f);
    // The operating point reaches every tyre; reset undoes it and the rest.
    PanelOpMoved(OP_CAMBER, 0);
    PanelOpMoved(OP_LOAD, 1000);
    for (int i = 0; i < CURVE_COUNT * CAR_WHEELS; i++) {
      EXPECT_NEAR(Tyre(i / CAR_WHEELS, i % CAR_WHEELS)->GetCamber(), -10.0f / CURVE_RAD2DEG, 1e-6) << i;
      EXPECT_FLOAT_EQ(Tyre(i / CAR_WHEELS, i % CAR_WHEELS)->Fz, 30.0f) << i;
    }
    PanelFocus(3);
    PanelCoefficientRadio(20);
    panel.zoom->SetChecked(false);
    PanelZoom(false);
    PanelResetControls();
  }
}

TEST_F(PanelTest, DispatchReachesTheOperations) {
  PanelCoefficientRadio(5);
  QEvent ev = Change(panel.focus[2], 1);
  EXPECT_TRUE(ToolDispatch(&ev, ToolEnv{}));  // focus ends the dispatch
  EXPECT_TRUE(session.focus == 2 && session.selected == 0 && panel.coeff[0]->IsChecked());
  EXPECT_STREQ(panel.coeff[11]->GetText(), "a111");
  EXPECT_EQ(session.graphs[CURVE_FY]->GetFlags(), unsigned(GRAPH_EMPHASISED));
  ev = Change(panel.coeff[3], 1);
  EXPECT_FALSE(ToolDispatch(&ev, ToolEnv{}));
  EXPECT_STREQ(session.edit.name, "a3");
  ev = Change(panel.value, 1000);  // a3: 0 .. 3000
  ToolDispatch(&ev, ToolEnv{});
  EXPECT_FLOAT_EQ(Tyre(CURVE_MZ, 0)->a3, 3000.0f);
  panel.zoom->SetChecked(false);
  ev = Change(panel.zoom, 0);
  EXPECT_TRUE(ToolDispatch(&ev, ToolEnv{}));
  EXPECT_EQ(session.graphs[CURVE_FX]->GetRange().xMax, 10.0f);
  ev = Change(panel.op[OP_CAMBER], 750);
  EXPECT_FALSE(ToolDispatch(&ev, ToolEnv{}));
  EXPECT_STREQ(panel.op[OP_CAMBER]->GetCaption(), "Inclination 5.00 (camber)");
  ev = Change(panel.wheel, 3);
  ToolDispatch(&ev, ToolEnv{});
  EXPECT_EQ(session.wheel, 3);
  EXPECT_STREQ(panel.wheel->GetCaption(), "3/RR");
  // Events of windows that are no control of the panel change nothing.
  for (QWindow *w : {static_cast<QWindow *>(mw), static_cast<QWindow *>(nullptr)}) {
    ev = Change(w, 1);
    EXPECT_FALSE(ToolDispatch(&ev, ToolEnv{}));
  }
  EXPECT_TRUE(session.focus == 2 && session.wheel == 3);
}

TEST_F(PanelTest, PastTheListHidesTheValueSlider) {
  PanelCoefficientRadio(13);  // after b12
  EXPECT_EQ(session.edit.field, COEFF_FIELD_NONE);
  EXPECT_FALSE(panel.value->IsVisible() || panel.enterNumerically->IsVisible());
  const float b0 = Tyre(CURVE_FX, 0)->b0, b12 = Tyre(CURVE_FX, 0)->b12;
  PanelValueMoved(700);  // no coefficient: nothing moves
  EXPECT_FALSE(PanelEnterNumerically());
  EXPECT_TRUE(Tyre(CURVE_FX, 0)->b0 == b0 && Tyre(CURVE_FX, 0)->b12 == b12);
  PanelCoefficientRadio(2);  // b2, 0 .. 3000
  EXPECT_TRUE(panel.value->IsVisible() && panel.enterNumerically->IsVisible());
  EXPECT_EQ(panel.value->GetPosition(), int(Tyre(CURVE_FX, 0)->b2 / 3000.0f * 1000.0f));
}

// A curve beyond the vertical range stops at the plot's edge.
TEST_F(PanelTest, CurvesStayInsideThePlot) {
  PanelFocus(2);
  PanelCoefficientRadio(2);        // a2: peak lateral friction x 1000
  SessionSetCoefficient(6000.0f);  // Fy/Fz far above the 2.0 of the scale
  cv->Select();
  FramePaintGraphs(cv, VIEW_W, VIEW_H);
  int x = GRAPH_LEFT_MARGIN + VIEW_W / 2 - Graph::X_ORIGIN, cy = GRAPH_TOP_MARGIN + VIEW_H / 2;
  auto row = [&](int y) { return RedPixels(QRect(x, y, 2 * Graph::X_ORIGIN, 1), WIN_H); };
  EXPECT_GT(row(cy - Graph::Y_ORIGIN + 1), 0);  // the curve reaches the plot's top row
  EXPECT_EQ(row(cy - Graph::Y_ORIGIN - 3), 0);
  EXPECT_EQ(row(cy + Graph::Y_ORIGIN + 3), 0);
}

// An error box during the start-up paints frames before the graphs exist.
TEST_F(PanelTest, FrameDuringTheStartUpDrawsWhatExists) {
  QFont font((std::string(TYRO_SOURCE_DIR) + "/data/fonts/eurostile11").c_str());
  ASSERT_TRUE(font.Create());
  cv->SetFont(&font);
  Session saved = session;
  session.edit = CoeffInfo{};
  session.focus = 2;  // ghost curves asked for too
  for (Graph *&g : session.graphs) g = nullptr;
  cv->Select();
  FramePaintGraphs(cv, VIEW_W, VIEW_H);
  session.graphs[CURVE_FX] = saved.graphs[CURVE_FX];  // the first graph is loading its car
  FramePaintGraphs(cv, VIEW_W, VIEW_H);
  session = saved;
  cv->SetFont(nullptr);
}

TEST(Frame, GhostAlphasAsDrawn) {
  const int load[] = {20, 36, 52, 100, 80};
  for (int i = 0; i < 5; i++) EXPECT_FLOAT_EQ(FrameLoadGhostAlpha(i) * 255.0f, float(load[i])) << i;
  const int camber[] = {20, 30, 40, 50, 40, 30};
  for (int i = 0; i < 6; i++) EXPECT_NEAR(FrameCamberGhostAlpha(i) * 255.0f, float(camber[i]), 1e-4) << i;
}
