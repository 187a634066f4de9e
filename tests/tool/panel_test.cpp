// The control panel in a headless window: radio labels, the sliders' mappings
// and captions, the event dispatch, and what the window paints.
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
#include "ui/qwinmgr.h"

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

// Pixels of r in the back buffer that are not white, or with `red` that are
// the Fx curve's red.
int CountPixels(const QRect &r, int winH, bool red = false) {
  glFinish();
  glReadBuffer(GL_BACK);
  std::vector<unsigned char> px(size_t(r.wid * r.hgt * 4));
  glReadPixels(r.x, winH - r.y - r.hgt, r.wid, r.hgt, GL_RGBA, GL_UNSIGNED_BYTE, px.data());
  int n = 0;
  for (size_t i = 0; i < px.size(); i += 4)
    n += red ? px[i] > 200 && px[i + 1] < 150 && px[i + 2] < 150 : px[i] != 255 || px[i + 1] != 255 || px[i + 2] != 255;
  return n;
}

int exits = 0;

using PanelTest = ToolWindowTest;

}  // namespace

TEST_F(PanelTest, StartUpState) {
  EXPECT_EQ(Labels(), kListB);
  const char *commands[] = {"Open tire", "Revert", "Save*", "Export ASCII", "Export for Car.Ini", "Analyse"};
  for (int i = 0; i < LAYOUT_COMMANDS; i++) EXPECT_STREQ(panel.command[i]->GetText(), commands[i]);
  EXPECT_TRUE(panel.focus[0]->IsChecked() && panel.ghost[0]->IsChecked() && panel.coeff[0]->IsChecked());
  EXPECT_FALSE(PanelGhostCamber());
  EXPECT_TRUE(panel.zoom->IsChecked());
  const char *captions[] = {"Load 2500N", "Slipratio 0.00", "Slipangle 0.00", "Inclination 0.00 (camber)"};
  for (int s = 0; s < OP_SLIDERS; s++) {
    EXPECT_STREQ(panel.op[s]->GetCaption(), captions[s]);
    EXPECT_EQ(panel.op[s]->GetPosition(), s == OP_LOAD ? 83 : 500);
  }
  EXPECT_STREQ(panel.wheel->GetCaption(), "0/FL");
  EXPECT_EQ(panel.value->GetPosition(), int(Tyre(CURVE_FX, 0)->b0 / 2.0f * 1000.0f));  // b0 on a 0..2 slider
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
  // A Magic Formula tyre shows its scaling factors whatever the focus.
  SessionLoadTir(TirFile("MagicFormula61_Parameters.tir").c_str());
  for (int focus = 0; focus < 4; focus++) {
    PanelFocus(focus);
    EXPECT_EQ(Labels(), "lfz0 lcx lmux lex lKx lHx lVx lGax lcy lmuy ley lKy lHy lVy lGay ltr lres lgaz lmx lvmx lmy "
                        "lxal lyka lvyka ls lsgkp lsgal lgyr ") << focus;
  }
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
  // A new wheel relabels but leaves the value slider until the next selection.
  EXPECT_STREQ(panel.value->GetCaption(), "0.2000");
  PanelValueMoved(900);
  for (int i = 0; i < CURVE_COUNT * CAR_WHEELS; i++) {
    int g = i / CAR_WHEELS, w = i % CAR_WHEELS;
    EXPECT_EQ(session.graphs[g]->GetCurrentTyre(), Tyre(g, 2));
    EXPECT_FLOAT_EQ(Tyre(g, w)->b0, w == 2 ? 1.8f : w == 0 ? 0.2f : 1.65f) << i;
  }
  PanelSelectWheel(3);
  EXPECT_STREQ(panel.wheel->GetCaption(), "3/RR");
}

TEST_F(PanelTest, OperatingPointReachesEveryTyreAndResetRestoresTheStartUp) {
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
  EXPECT_TRUE(session.focus == 0 && session.selected == 0 && session.zoom);
  EXPECT_TRUE(panel.zoom->IsChecked() && panel.focus[0]->IsChecked() && panel.coeff[0]->IsChecked());
  EXPECT_TRUE(panel.value->IsVisible());
  EXPECT_EQ(panel.op[OP_CAMBER]->GetPosition(), 500);
  EXPECT_EQ(panel.op[OP_LOAD]->GetPosition(), 83);
  EXPECT_STREQ(panel.op[OP_LOAD]->GetCaption(), "Load 2500N");
  EXPECT_FLOAT_EQ(Tyre(CURVE_MZ, 3)->Fz, 2.5f);
  EXPECT_EQ(session.graphs[CURVE_FY]->GetRange().xMax, 20.0f);
}

TEST_F(PanelTest, DispatchReachesTheOperations) {
  QEvent ev = Change(panel.focus[2], 1);
  EXPECT_TRUE(ToolDispatch(&ev));  // focus ends the dispatch
  EXPECT_EQ(session.focus, 2);
  EXPECT_STREQ(panel.coeff[11]->GetText(), "a111");
  EXPECT_EQ(session.graphs[CURVE_FY]->GetFlags(), unsigned(GRAPH_EMPHASISED));
  EXPECT_EQ(session.graphs[CURVE_FX]->GetFlags(), unsigned(GRAPH_DIMMED));

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
  EXPECT_EQ(session.focus, 2);
  EXPECT_EQ(session.wheel, 3);
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

TEST_F(PanelTest, PastTheListHidesAndPaintsNoValueSlider) {
  PanelLayout l = LayoutCompute(VIEW_W, VIEW_H);
  auto nonWhite = [&](const QRect &r) {
    cv->Select();
    FramePaintGraphs(cv, VIEW_W, VIEW_H);
    QGetWindowManager()->Paint(cv);
    return CountPixels(r, WIN_H);
  };
  EXPECT_GT(nonWhite(l.value), 50);
  EXPECT_GT(nonWhite(l.enterNumerically), 50);
  PanelCoefficientRadio(13);  // after b12
  EXPECT_EQ(session.edit.field, COEFF_FIELD_NONE);
  EXPECT_FALSE(panel.value->IsVisible() || panel.enterNumerically->IsVisible());
  EXPECT_EQ(nonWhite(l.value), 0);
  EXPECT_EQ(nonWhite(l.enterNumerically), 0);
  const float b0 = Tyre(CURVE_FX, 0)->b0, b12 = Tyre(CURVE_FX, 0)->b12;
  PanelValueMoved(700);  // no coefficient: nothing moves
  EXPECT_FALSE(PanelEnterNumerically());
  EXPECT_EQ(Tyre(CURVE_FX, 0)->b0, b0);
  EXPECT_EQ(Tyre(CURVE_FX, 0)->b12, b12);
  PanelCoefficientRadio(2);  // b2, 0 .. 3000
  EXPECT_TRUE(panel.value->IsVisible() && panel.enterNumerically->IsVisible());
  EXPECT_EQ(panel.value->GetPosition(), int(Tyre(CURVE_FX, 0)->b2 / 3000.0f * 1000.0f));
}

// A curve beyond the vertical range stops at the plot's edge: the rows just
// above and below the plot stay white.
TEST_F(PanelTest, CurvesStayInsideThePlot) {
  PanelFocus(2);
  PanelCoefficientRadio(2);        // a2: peak lateral friction x 1000
  SessionSetCoefficient(6000.0f);  // Fy/Fz far above the 2.0 of the scale
  cv->Select();
  FramePaintGraphs(cv, VIEW_W, VIEW_H);
  int x = GRAPH_LEFT_MARGIN + VIEW_W / 2 - Graph::X_ORIGIN, cy = GRAPH_TOP_MARGIN + VIEW_H / 2;
  auto row = [&](int y) { return CountPixels(QRect(x, y, 2 * Graph::X_ORIGIN, 1), WIN_H, true); };
  EXPECT_GT(row(cy - Graph::Y_ORIGIN + 1), 0);  // the curve reaches the plot's top row
  EXPECT_EQ(row(cy - Graph::Y_ORIGIN - 3), 0);
  EXPECT_EQ(row(cy + Graph::Y_ORIGIN + 3), 0);
}

// An error box raised while the start-up loads the car paints frames before
// the graphs exist or anything is selected: the frame draws what there is.
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

// Platform events through the window manager to the controls, their control
// events through the program's event procedure to the panel.
TEST_F(PanelTest, ClicksAndKeysReachThePanelThroughTheEventLoop) {
  a->SetEventProc(ToolDispatch);
  auto pump = [&] {
    for (int i = 0; i < 500; i++)
      if (a->Run1() == 2) break;
  };
  PanelLayout l = LayoutCompute(VIEW_W, VIEW_H);
  qpsClick(l.focus[3].x + 8, l.focus[3].y + 8);  // "Focus Mz"
  pump();
  EXPECT_EQ(session.focus, 3);
  EXPECT_TRUE(panel.focus[3]->IsChecked());

  qpsClick(l.coeff[17].x + 8, l.coeff[17].y + 8);  // c17, the second column's fourth radio
  pump();
  EXPECT_STREQ(session.edit.name, "c17");

  // A click beside the knob moves the camber slider by its big step; with
  // the focus, the arrow keys move it by the small one.
  const QRect &cam = l.op[OP_CAMBER];
  qpsClick(cam.x + cam.wid - 3, cam.y + cam.hgt / 2);
  pump();
  EXPECT_EQ(panel.op[OP_CAMBER]->GetPosition(), 510);
  panel.op[OP_CAMBER]->Focus();
  qpsKeyTap(QK_RIGHT);
  pump();
  EXPECT_EQ(panel.op[OP_CAMBER]->GetPosition(), 513);
  EXPECT_STREQ(panel.op[OP_CAMBER]->GetCaption(), "Inclination 0.26 (camber)");
  a->SetEventProc(nullptr);
}
