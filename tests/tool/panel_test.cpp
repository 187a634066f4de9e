// The control panel in a headless window: labels, slider mappings, dispatch
// and painting.
#include "tool/panel.h"

#include <GL/gl.h>

#include <string>
#include <vector>

#include "tool/dispatch.h"
#include "tool/frame.h"
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

std::string Dashes(int n) {
  std::string s;
  for (int i = 0; i < n; i++) s += "--- ";
  return s;
}

const std::string kListB = "b0 b1 b2 b3 b4 b5 b6 b7 b8 b9 b10 b11 b12 " + Dashes(15);

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

int exits = 0;

using PanelTest = ToolWindowTest;

}  // namespace

TEST_F(PanelTest, StartUpStateAndResetRestoresIt) {
  const char *commands[] = {"Open tire", "Revert", "Save*", "Export ASCII", "Export for Car.Ini", "Analyse"};
  for (int i = 0; i < LAYOUT_COMMANDS; i++) EXPECT_STREQ(panel.command[i]->GetText(), commands[i]);
  EXPECT_TRUE(panel.ghost[0]->IsChecked());
  EXPECT_FALSE(PanelGhostCamber());
  EXPECT_STREQ(panel.wheel->GetCaption(), "0/FL");
  EXPECT_EQ(Labels(), kListB);
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

TEST_F(PanelTest, FocusChoosesTheCoefficientList) {
  const std::string lists[] = {kListB, kListB, "a0 a1 a2 a3 a4 a5 a6 a7 a8 a9 a10 a111 a112 a12 a13 " + Dashes(13),
                               "c0 c1 c2 c3 c4 c5 c6 c7 c8 c9 c10 c11 c12 c13 c14 c15 c16 c17 " + Dashes(10)};
  for (int focus : {2, 3, 1, 0}) {
    PanelCoefficientRadio(5);
    PanelFocus(focus);
    EXPECT_EQ(Labels(), lists[focus]) << "focus " << focus;
    EXPECT_EQ(session.selected, 0);
    EXPECT_TRUE(panel.coeff[0]->IsChecked());
  }
  // A Magic Formula tyre shows its scaling factors.
  SessionLoadTir(TirFile("MagicFormula61_Parameters.tir").c_str());
  PanelFocus(2);
  EXPECT_EQ(Labels(), "lfz0 lcx lmux lex lKx lHx lVx lGax lcy lmuy ley lKy lHy lVy lGay ltr lres lgaz lmx lvmx lmy "
                      "lxal lyka lvyka ls lsgkp lsgal lgyr ");
}

TEST_F(PanelTest, ValueSliderMapsTheTableRange) {
  PanelCoefficientRadio(1);  // b1: -25 .. 25
  struct Case { int position; float value; const char *caption; } cases[] = {
      {0, -25.0f, "-25.0000"}, {1000, 25.0f, "25.0000"}, {10, -24.5f, "-24.5000"}};
  for (const Case &c : cases) {
    PanelValueMoved(c.position);
    for (Graph *g : session.graphs) EXPECT_FLOAT_EQ(g->GetCurrentTyre()->b1, c.value) << c.position;
    EXPECT_STREQ(panel.value->GetCaption(), c.caption);
  }
  // A value beyond the table's range stands beyond the slider's end.
  for (float v : {50.0f, -30.0f}) {
    PanelSetCoefficientValue(v);
    PanelSelectCoefficient();
    EXPECT_EQ(panel.value->GetPosition(), v > 0 ? 1500 : -100);
  }
}

TEST_F(PanelTest, WheelTwoIsRearLeftAndTakesTheNextEdit) {
  PanelValueMoved(100);  // b0 of wheel 0: 0.2
  PanelSelectWheel(2);
  EXPECT_STREQ(panel.wheel->GetCaption(), "2/RL");
  EXPECT_STREQ(panel.value->GetCaption(), "0.2000");  // kept until the next selection
  PanelValueMoved(900);
  for (int i = 0; i < CURVE_COUNT * CAR_WHEELS; i++) {
    int g = i / CAR_WHEELS, w = i % CAR_WHEELS;
    EXPECT_EQ(session.graphs[g]->GetCurrentTyre(), Tyre(g, 2));
    EXPECT_FLOAT_EQ(Tyre(g, w)->b0, w == 2 ? 1.8f : w == 0 ? 0.2f : 1.65f) << i;
  }
  PanelSelectWheel(3);
  EXPECT_STREQ(panel.wheel->GetCaption(), "3/RR");
}

TEST_F(PanelTest, DispatchReachesTheOperations) {
  QEvent ev = Change(panel.focus[2], 1);
  EXPECT_TRUE(ToolDispatch(&ev));  // focus ends the dispatch
  EXPECT_EQ(session.focus, 2);
  EXPECT_STREQ(panel.coeff[11]->GetText(), "a111");
  EXPECT_EQ(session.graphs[CURVE_FY]->GetFlags(), unsigned(GRAPH_EMPHASISED));
  ev = Change(panel.coeff[3], 1);
  EXPECT_FALSE(ToolDispatch(&ev));
  EXPECT_STREQ(session.edit.name, "a3");
  ev = Change(panel.value, 1000);  // a3: 0 .. 3000
  ToolDispatch(&ev);
  EXPECT_FLOAT_EQ(Tyre(CURVE_MZ, 0)->a3, 3000.0f);
  panel.zoom->SetChecked(false);
  ev = Change(panel.zoom, 0);
  EXPECT_TRUE(ToolDispatch(&ev));
  EXPECT_EQ(session.graphs[CURVE_FX]->GetRange().xMax, 10.0f);
  ev = Change(panel.op[OP_CAMBER], 750);
  EXPECT_FALSE(ToolDispatch(&ev));
  EXPECT_STREQ(panel.op[OP_CAMBER]->GetCaption(), "Inclination 5.00 (camber)");
  ev = Change(panel.wheel, 3);
  ToolDispatch(&ev);
  EXPECT_EQ(session.wheel, 3);
  // Events of windows that are no control of the panel change nothing.
  for (QWindow *w : {static_cast<QWindow *>(mw), static_cast<QWindow *>(nullptr)}) {
    ev = Change(w, 1);
    EXPECT_FALSE(ToolDispatch(&ev));
  }
  EXPECT_TRUE(session.focus == 2 && session.wheel == 3);
}

TEST_F(PanelTest, EscapeAndShiftQEndTheProgram) {
  a->SetExitProc([] { exits++; });
  exits = 0;
  struct Case { int n, xn, exits; } cases[] = {{'Q', 'Q', 0}, {'Q', 'Q' | QK_MOD_SHIFT, 1}, {QK_ESC, QK_ESC, 2}};
  for (const Case &c : cases) {
    a->SetState(QApp::STATE_EXIT_RETURNS);
    QEvent key;
    key.type = QEVENT_KEYPRESS;
    key.n = c.n;
    key.xn = c.xn;
    ToolDispatch(&key);
    EXPECT_EQ(exits, c.exits) << c.xn;
  }
  a->SetExitProc(nullptr);
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
