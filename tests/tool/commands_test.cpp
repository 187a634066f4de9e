// The commands and "Enter numerically" through their dialogs, driven by
// scripted keys in a headless window.
#include "tool/commands.h"

#include <fstream>
#include <string>

#include "chart/analyse.h"
#include "chart/export.h"
#include "toolwindow.h"
#include "ui/qprop.h"
#include "ui/qradio.h"

struct CommandsTest : ToolWindowTest {
  ScratchDir dir;
};

TEST_F(CommandsTest, EnterNumericallySetsTheTypedValueAndNoNumberAsZero) {
  PanelCoefficientRadio(2);  // b2, 0 .. 3000
  ScriptEntry("1500");
  ASSERT_TRUE(PanelEnterNumerically());
  for (Graph *g : session.graphs) EXPECT_FLOAT_EQ(g->GetCurrentTyre()->b2, 1500.0f);
  EXPECT_EQ(panel.value->GetPosition(), 500);  // selected again: the slider follows
  ScriptEntry("99", QK_ESC);  // cancelled: nothing changes
  EXPECT_FALSE(PanelEnterNumerically());
  EXPECT_EQ(Tyre(CURVE_FX, 0)->b2, 1500.0f);
  // Text that is no finite number reads as 0.
  EXPECT_FLOAT_EQ(PanelParseValue("-2.5e1"), -25.0f);
  EXPECT_FLOAT_EQ(PanelParseValue(" 7x"), 7.0f);
  for (const char *text : {"abc", "nan", "-inf", "infinity", "1e39"}) EXPECT_EQ(PanelParseValue(text), 0.0f) << text;
  ScriptEntry("abc");
  ASSERT_TRUE(PanelEnterNumerically());
  for (Graph *g : session.graphs) EXPECT_EQ(g->GetCurrentTyre()->b2, 0.0f);
  EXPECT_STREQ(panel.value->GetCaption(), "0.0000");
  EXPECT_FALSE(stuck);
}

TEST_F(CommandsTest, ExportAsciiThroughItsDialogsWritesTheGoldenTable) {
  std::string path = dir.root + "/ascii.txt";
  // A negative step count asks again; the second answer keeps "134".
  ScriptEntry("-3");
  qpsKeyTap(QK_ENTER);
  // A maximum not above 0 asks again; the second answer keeps "2.00".
  ScriptEntry("0");
  qpsKeyTap(QK_ENTER);
  ScriptEntry(path.c_str());
  qpsKeyTap(QK_ENTER);  // closes the viewer
  ASSERT_TRUE(CommandExportAscii(ToolEnv{}));
  EXPECT_FALSE(stuck);
  EXPECT_LE(qpsPendingCount(), 1);  // at most the last Enter's release
  ExpectGolden("touring_ascii_134_2.txt", ReadFileBytes(path));
  for (int key : {QK_ENTER, QK_ENTER, QK_ESC}) qpsKeyTap(key);  // cancelled at the file
  EXPECT_FALSE(CommandExportAscii(ToolEnv{}));
  EXPECT_FALSE(stuck);
}

// The report replaces a longer older one in the working folder, the same 40
// bytes each time, with or without the viewer.
TEST_F(CommandsTest, AnalyseWritesTheReportInTheWorkingFolder) {
  WorkingDir in(dir.root);
  std::ofstream("reppac.txt") << "an older and much longer report that must be truncated away\n";
  qpsKeyTap(QK_ENTER);  // closes the viewer
  EXPECT_TRUE(CommandAnalyse(true));
  ExpectGolden("reppac.txt", ReadFileBytes("reppac.txt"));
  EXPECT_TRUE(CommandAnalyse(false));  // no viewer: no key needed
  ExpectGolden("reppac.txt", ReadFileBytes("reppac.txt"));
  EXPECT_FALSE(stuck);
  EXPECT_FALSE(AnalyseWriteReport("/nonexistent-folder/reppac.txt"));
  EXPECT_FALSE(ExportWriteFile("/nonexistent-folder/out.txt", "x"));
}

TEST_F(CommandsTest, RevertAsksAndReloadsTheCar) {
  dir.LinkCar("touring");
  float b2 = Tyre(CURVE_FX, 0)->b2;
  PanelCoefficientRadio(2);
  PanelValueMoved(0);
  PanelOpMoved(OP_CAMBER, 750);
  SessionLoadTir(TirFile("MagicFormula61_Parameters.tir").c_str());
  PanelRefreshLabels();
  WorkingDir in(dir.root);
  session.car = "touring";
  qpsKeyTap(QK_ESC);  // No
  EXPECT_FALSE(CommandRevert());
  EXPECT_EQ(Tyre(CURVE_FX, 0)->model, 3);
  qpsKeyTap(QK_ENTER);  // Yes
  EXPECT_TRUE(CommandRevert());
  EXPECT_FALSE(stuck);
  // Every tyre reloaded, at the panel's operating point.
  for (int i = 0; i < CURVE_COUNT * CAR_WHEELS; i++) {
    KPacejka *t = Tyre(i / CAR_WHEELS, i % CAR_WHEELS);
    EXPECT_TRUE(t->model == 0 && t->b2 == (i % CAR_WHEELS == 1 ? 2000.0f : b2) && t->Fz == 2.5f) << i;
    EXPECT_NEAR(t->GetCamber(), 5.0f / CURVE_RAD2DEG, 1e-6);
  }
  EXPECT_STREQ(panel.coeff[0]->GetText(), "b0");
  // The value slider keeps showing the edit until the next selection.
  EXPECT_STREQ(panel.value->GetCaption(), "0.0000");
}

TEST_F(CommandsTest, OpenTireImportsIntoEveryTyreAndResetsTheControls) {
  PanelFocus(2);
  PanelOpMoved(OP_LOAD, 200);
  std::string tir = TirFile("MagicFormula52_Parameters.tir");
  ScriptEntry(tir.c_str());
  ASSERT_TRUE(CommandOpenTire(ToolEnv{}));
  EXPECT_EQ(session.lastTir, tir);
  for (int i = 0; i < CURVE_COUNT * CAR_WHEELS; i++) EXPECT_EQ(Tyre(i / CAR_WHEELS, i % CAR_WHEELS)->model, 1) << i;
  EXPECT_TRUE(session.focus == 0 && session.point.load == 2500.0f && panel.op[OP_LOAD]->GetPosition() == 83);
  EXPECT_STREQ(session.edit.name, "lfz0");
  // Indexes outside the row of commands do nothing.
  CommandRun(-1, ToolEnv{});
  CommandRun(CMD_COUNT, ToolEnv{});
  EXPECT_EQ(qpsMessageBoxCount(), 0);
  EXPECT_FALSE(stuck);
}
