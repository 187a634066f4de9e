// The commands and "Enter numerically" through their dialogs, driven by
// scripted keys in a headless window: typed values, the ASCII export against
// its golden file, the report, revert, and the TIR import.
#include "tool/commands.h"

#include <unistd.h>

#include <cstdio>
#include <string>

#include "tool/export.h"
#include "toolwindow.h"
#include "ui/qprop.h"
#include "ui/qradio.h"

namespace {

class CommandsTest : public ToolWindowTest {
 protected:
  void SetUp() override {
    ToolWindowTest::SetUp();
    char tmpl[] = "/tmp/tyro_cmdXXXXXX";
    ASSERT_NE(mkdtemp(tmpl), nullptr);
    dir = tmpl;
  }
  void TearDown() override {
    (void)!system(("rm -rf '" + dir + "'").c_str());
    ToolWindowTest::TearDown();
  }
  std::string dir;
};

}  // namespace

TEST_F(CommandsTest, EnterNumericallySetsTheTypedValue) {
  PanelCoefficientRadio(2);  // b2, 0 .. 3000
  ScriptEntry("1500");
  ASSERT_TRUE(PanelEnterNumerically());
  EXPECT_FALSE(stuck);
  for (Graph *g : session.graphs) EXPECT_FLOAT_EQ(g->GetCurrentTyre()->b2, 1500.0f);
  EXPECT_EQ(panel.value->GetPosition(), 500);  // selected again: the slider follows
  EXPECT_STREQ(panel.value->GetCaption(), "1500.0000");
}

TEST_F(CommandsTest, EnterNumericallyReadsTextThatIsNoNumberAsZero) {
  EXPECT_FLOAT_EQ(PanelParseValue("abc"), 0.0f);
  EXPECT_FLOAT_EQ(PanelParseValue("-2.5e1"), -25.0f);
  EXPECT_FLOAT_EQ(PanelParseValue(" 7x"), 7.0f);
  for (const char *notDecimal : {"nan", "-inf", "infinity", "1e39"}) EXPECT_EQ(PanelParseValue(notDecimal), 0.0f) << notDecimal;
  PanelCoefficientRadio(2);
  ScriptEntry("abc");
  ASSERT_TRUE(PanelEnterNumerically());
  for (Graph *g : session.graphs) EXPECT_EQ(g->GetCurrentTyre()->b2, 0.0f);
  EXPECT_EQ(panel.value->GetPosition(), 0);
  EXPECT_STREQ(panel.value->GetCaption(), "0.0000");
}

TEST_F(CommandsTest, EnterNumericallyCancelledChangesNothing) {
  PanelCoefficientRadio(2);
  float b2 = Tyre(CURVE_FX, 0)->b2;
  ScriptClearEntry();
  qpsType("99");
  qpsKeyTap(QK_ESC);
  EXPECT_FALSE(PanelEnterNumerically());
  EXPECT_FALSE(stuck);
  EXPECT_EQ(Tyre(CURVE_FX, 0)->b2, b2);
}

TEST_F(CommandsTest, ExportAsciiThroughItsDialogsWritesTheGoldenTable) {
  std::string path = dir + "/ascii.txt";
  // A negative step count asks again; the second answer keeps "134".
  ScriptEntry("-3");
  qpsKeyTap(QK_ENTER);
  // A maximum not above 0 asks again; the second answer keeps "2.00".
  ScriptEntry("0");
  qpsKeyTap(QK_ENTER);
  qpsType(path.c_str());
  qpsKeyTap(QK_ENTER);
  qpsKeyTap(QK_ENTER);  // closes the viewer
  ASSERT_TRUE(CommandExportAscii());
  EXPECT_FALSE(stuck);
  EXPECT_LE(qpsPendingCount(), 1);  // at most the last Enter's release
  ExpectGolden("touring_ascii_134_2.txt", ReadFileBytes(path));
}

TEST_F(CommandsTest, ExportAsciiCancelledAtTheFileWritesNothing) {
  qpsKeyTap(QK_ENTER);
  qpsKeyTap(QK_ENTER);
  qpsKeyTap(QK_ESC);
  EXPECT_FALSE(CommandExportAscii());
  EXPECT_FALSE(stuck);
}

TEST_F(CommandsTest, ExportCarIniUsesThePeaksOfTheLastFrame) {
  for (Graph *g : session.graphs) g->Sample();
  std::string path = dir + "/carini.txt";
  qpsType(path.c_str());
  qpsKeyTap(QK_ENTER);
  qpsKeyTap(QK_ENTER);
  ASSERT_TRUE(CommandExportCarIni());
  ExpectGolden("touring_carini.txt", ReadFileBytes(path));
}

TEST_F(CommandsTest, AnalyseWritesTheReportInTheWorkingFolder) {
  char old[4096];
  ASSERT_NE(getcwd(old, sizeof old), nullptr);
  ASSERT_EQ(chdir(dir.c_str()), 0);
  qpsKeyTap(QK_ENTER);  // closes the viewer
  bool shown = CommandAnalyse(true);
  std::string first = ReadFileBytes("reppac.txt");
  bool silent = CommandAnalyse(false);  // no viewer: no key needed
  std::string second = ReadFileBytes("reppac.txt");
  EXPECT_EQ(chdir(old), 0);
  EXPECT_TRUE(shown);
  EXPECT_TRUE(silent);
  EXPECT_FALSE(stuck);
  EXPECT_EQ(first.size(), 40u);
  EXPECT_EQ(first, ReadFileBytes(TYRO_TEST_DATA "/tool/reppac.txt"));
  EXPECT_EQ(second, first);
}

TEST_F(CommandsTest, RevertAsksAndReloadsTheCar) {
  ASSERT_EQ(system(("mkdir -p '" + dir + "/data/cars' && ln -s '" TYRO_TEST_DATA "/tool/touring' '" + dir +
                    "/data/cars/touring'").c_str()),
            0);
  float b2 = Tyre(CURVE_FX, 0)->b2;
  PanelCoefficientRadio(2);
  PanelValueMoved(0);
  PanelOpMoved(OP_CAMBER, 750);
  SessionLoadTir((std::string(TYRO_SOURCE_DIR) + "/data/tyres/MagicFormula61_Parameters.tir").c_str());
  PanelRefreshLabels();
  ASSERT_STREQ(panel.coeff[0]->GetText(), "lfz0");
  char old[4096];
  ASSERT_NE(getcwd(old, sizeof old), nullptr);
  ASSERT_EQ(chdir(dir.c_str()), 0);
  session.car = "touring";
  qpsKeyTap(QK_ESC);  // No
  bool no = CommandRevert();
  int modelAfterNo = Tyre(CURVE_FX, 0)->model;
  qpsKeyTap(QK_ENTER);  // Yes
  bool yes = CommandRevert();
  EXPECT_EQ(chdir(old), 0);
  EXPECT_FALSE(no);
  EXPECT_EQ(modelAfterNo, 3);
  EXPECT_TRUE(yes);
  EXPECT_FALSE(stuck);
  for (Graph *g : session.graphs)
    for (int w = 0; w < CAR_WHEELS; w++) {
      EXPECT_EQ(g->GetTyre(w)->model, 0);
      // The reloaded tyres stand at the panel's operating point.
      EXPECT_FLOAT_EQ(g->GetTyre(w)->Fz, 2.5f);
      EXPECT_NEAR(g->GetTyre(w)->GetCamber(), 5.0f / CURVE_RAD2DEG, 1e-6);
    }
  for (Graph *g : session.graphs) EXPECT_EQ(g->GetTyre(0)->b2, b2);
  EXPECT_STREQ(panel.coeff[0]->GetText(), "b0");
  // The value slider keeps showing the edit until the next selection.
  EXPECT_STREQ(panel.value->GetCaption(), "0.0000");
}

TEST_F(CommandsTest, OpenTireImportsIntoEveryTyreAndResetsTheControls) {
  PanelFocus(2);
  PanelOpMoved(OP_LOAD, 200);
  std::string tir = std::string(TYRO_SOURCE_DIR) + "/data/tyres/MagicFormula52_Parameters.tir";
  qpsType(tir.c_str());
  qpsKeyTap(QK_ENTER);
  ASSERT_TRUE(CommandOpenTire());
  EXPECT_EQ(session.lastTir, tir);
  for (Graph *g : session.graphs)
    for (int w = 0; w < CAR_WHEELS; w++) EXPECT_EQ(g->GetTyre(w)->model, Tyre(0, 0)->model);
  EXPECT_NE(Tyre(0, 0)->model, 0);
  EXPECT_EQ(session.focus, 0);
  EXPECT_FLOAT_EQ(session.point.load, 2500.0f);
  EXPECT_EQ(panel.op[OP_LOAD]->GetPosition(), 83);
  EXPECT_STREQ(panel.coeff[0]->GetText(), "lfz0");
  EXPECT_STREQ(session.edit.name, "lfz0");
}

TEST_F(CommandsTest, CommandRunIgnoresIndexesOutsideTheRow) {
  CommandRun(-1);
  CommandRun(CMD_COUNT);
  EXPECT_EQ(qpsMessageBoxCount(), 0);
  EXPECT_FALSE(stuck);
}
