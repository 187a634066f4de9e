// The commands of the button row.
#include "tool/commands.h"

#include <cstdio>
#include <cstdlib>
#include <string>

#include "chart/analyse.h"
#include "chart/export.h"
#include "chart/graph.h"
#include "tool/fitkeys.h"
#include "tool/panel.h"
#include "tool/session.h"
#include "tool/toolenv.h"
#include "tool/tyrehistory.h"
#include "diag/qdebug.h"
#include "ui/qdlgfile.h"
#include "ui/qmsgbox.h"
#include "ui/qstringdialog.h"
#include "ui/qtextview.h"

namespace {

constexpr const char *ASCII_TITLE = "Export ASCII (Fx/Fy)";
constexpr int ENTRY_LIMIT = 80;

// Asks for a file through the framework's file dialog; false on cancel.
bool AskFile(const ToolEnv &env, const char *key, const char *title, const char *filter, std::string *path) {
  char buf[QDLGFILE_PATH_MAX] = "";
  if (!QDlgFile(env.settingsTree, key, nullptr, buf, title, filter, nullptr, nullptr)) return false;
  *path = buf;
  return true;
}

// Writes `text` and shows the file; tells the user when it cannot be written.
bool WriteAndShow(const std::string &path, const std::string &text, const char *viewTitle) {
  if (!ExportWriteFile(path.c_str(), text)) {
    QMessageBox("Error", "Can't open output file", QMB_OK);
    return false;
  }
  QTextViewRun(path.c_str(), "Report", viewTitle);
  return true;
}

// The number of steps: asked again while negative. False on cancel.
bool AskSteps(int *steps) {
  for (;;) {
    char start[32];
    snprintf(start, sizeof start, "%d", EXPORT_ASCII_DEFAULT_STEPS);
    std::string text = start;
    if (!QStringDialogRun(ASCII_TITLE, "Enter the number of steps", &text, ENTRY_LIMIT)) return false;
    *steps = atoi(text.c_str());
    if (*steps >= 0) return true;
  }
}

// The sweep's maximum: asked again while not above 0. False on cancel.
bool AskMaximum(float *maximum) {
  for (;;) {
    char start[32];
    snprintf(start, sizeof start, "%.2f", double(EXPORT_ASCII_DEFAULT_MAX));
    std::string text = start;
    if (!QStringDialogRun(ASCII_TITLE, "Enter the maximum horizontal value", &text, ENTRY_LIMIT)) return false;
    *maximum = PanelParseValue(text.c_str());
    if (*maximum > 0.0f) return true;
  }
}

}  // namespace

bool CommandOpenTire(const ToolEnv &env) {
  std::string path;
  if (!AskFile(env, "open_tir", "Import TIR file", "*.tir", &path)) return false;
  session.lastTir = path;
  if (env.updateTitle) env.updateTitle();
  SessionLoadTir(path.c_str());
  HistoryClear(-1);  // every wheel has a new tyre
  FitForget();
  PanelResetControls();
  PanelRefreshLabels();
  return true;
}

bool CommandRevert() {
  if (QMessageBox("Revert", "Are you sure you want to revert to the last saved Pacejka set?", QMB_YESNO) != 0)
    return false;
  QDBG_IN("Revert", "Reverting\n");
  SessionLoadCar();
  HistoryClear(-1);  // every wheel is reloaded
  FitForget();
  // Loading leaves each tyre at the load and camber of its camber check;
  // the tyres take the panel's operating point again, and the radios the
  // car's coefficient list. The value slider keeps its place until the next
  // selection.
  for (int s = 0; s < OP_SLIDERS; s++) SessionApply(OpSlider(s));
  PanelRefreshLabels();
  return true;
}

void CommandSave() { QMessageBox("Warning", "Not yet implemented", QMB_OK); }

bool CommandExportAscii(const ToolEnv &env) {
  int steps = 0;
  float maximum = 0.0f;
  std::string path;
  if (!AskSteps(&steps) || !AskMaximum(&maximum) || !AskFile(env, "expasc", ASCII_TITLE, "*.txt", &path)) return false;
  std::string text = ExportAsciiText(session.graphs[CURVE_FX]->GetCurrentTyre(),
                                     session.graphs[CURVE_FY]->GetCurrentTyre(), steps, maximum);
  return WriteAndShow(path, text, "Tyrograph ASCII output");
}

bool CommandExportCarIni(const ToolEnv &env) {
  std::string path;
  if (!AskFile(env, "exppac", "Export Car.Ini style", "*.ini", &path)) return false;
  // The statistics are the peaks of the last drawn frame.
  std::string text = ExportCarIniText(*session.graphs[CURVE_FX]->GetCurrentTyre(),
                                      session.graphs[CURVE_FX]->GetCurve().peakX,
                                      session.graphs[CURVE_FY]->GetCurve().peakX);
  return WriteAndShow(path, text, "Tyrograph Car.Ini-style output");
}

bool CommandAnalyse(bool show) {
  if (!AnalyseWriteReport(ANALYSE_REPORT_FILE)) {
    QMessageBox("Error", "Can't open report file", QMB_OK);
    return false;
  }
  if (show) QTextViewRun(ANALYSE_REPORT_FILE, "Report", "Tyrograph analysis");
  return true;
}

void CommandRun(int index, const ToolEnv &env) {
  switch (index) {
    case CMD_OPEN_TIRE: CommandOpenTire(env); break;
    case CMD_REVERT: CommandRevert(); break;
    case CMD_SAVE: CommandSave(); break;
    case CMD_EXPORT_ASCII: CommandExportAscii(env); break;
    case CMD_EXPORT_CARINI: CommandExportCarIni(env); break;
    case CMD_ANALYSE: CommandAnalyse(true); break;
    default: break;
  }
}
