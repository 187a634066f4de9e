// The fitting keys of the window.
#include "tool/fitkeys.h"

#include <strings.h>

#include <cstdio>

#include "base/qfile.h"
#include "chart/carsave.h"
#include "chart/graph.h"
#include "diag/qdebug.h"
#include "tool/fitworker.h"
#include "tool/measureddata.h"
#include "tool/panel.h"
#include "tool/session.h"
#include "tool/toolenv.h"
#include "tool/tyrehistory.h"
#include "tyre/kpacejka_tirwrite.h"
#include "ui/qdlgfile.h"
#include "ui/qevent.h"
#include "ui/qmsgbox.h"

namespace {

FitFigures g_figures;
std::string g_message;
int g_fitWheel = 0;

KPacejka *CurrentTyre() { return session.graphs[CURVE_FX]->GetCurrentTyre(); }

// The fitter's model for a tyre: its own; -1 when it has none to fit.
int FitModelOf(const KTyreParams &t) {
  if (t.model == KTyreParams::PAC96 || t.model == KTyreParams::MF52 || t.model == KTyreParams::MF61) return t.model;
  return -1;
}

// The channel the focus fits alone; -1 for "No focus".
int FocusChannel() { return session.focus >= 1 && session.focus <= 3 ? session.focus - 1 : -1; }

// Whether a group belongs to the fit of `channel` (-1: every group a stage fits).
bool GroupOfChannel(KPacejkaMember::Group g, int channel) {
  switch (channel) {
    case KCH_FX: return g == KPacejkaMember::PURE_FX || g == KPacejkaMember::COMBINED_FX;
    case KCH_FY: return g == KPacejkaMember::PURE_FY || g == KPacejkaMember::COMBINED_FY;
    case KCH_MZ: return g == KPacejkaMember::PURE_MZ || g == KPacejkaMember::COMBINED_MZ;
    default: return true;
  }
}

// The fitted tyre into the wheel's: all of it for a fit of every stage (as
// `fit` writes it), only the focused channel's groups otherwise. The wheel
// keeps its own flags.
void TakeFit(const FitWorkerOutcome &o, KPacejka *tyre) {
  if (o.channel < 0) {
    const uint32_t flags = tyre->flags;
    static_cast<KTyreParams &>(*tyre) = o.tyre;
    tyre->flags = flags;
    return;
  }
  KTyreParams fitted = o.tyre;
  for (int i = 0; i < kpacejkaMemberCount; i++) {
    const KPacejkaMember &m = kpacejkaMembers[i];
    if (m.kind != KPacejkaMember::FLOAT || !GroupOfChannel(m.group, o.channel) || m.group == KPacejkaMember::OTHER)
      continue;
    *KPacejkaFloat(*tyre, m) = *KPacejkaFloat(fitted, m);
  }
}

bool AskFile(const ToolEnv &env, const char *key, const char *title, const char *filter, std::string *path) {
  char buf[QDLGFILE_PATH_MAX] = "";
  if (!QDlgFile(env.settingsTree, key, nullptr, buf, title, filter, nullptr, nullptr)) return false;
  *path = buf;
  return true;
}

bool EndsWithTir(const std::string &p) { return p.size() >= 4 && strcasecmp(p.c_str() + p.size() - 4, ".tir") == 0; }

}  // namespace

bool FitStart() {
  const MeasuredData *d = DataGet();
  if (FitWorkerRunning()) return false;
  if (!d && DataLoading()) {
    QWARN("F6: the data is still being read");  // the hint line says so
    return false;
  }
  if (!d) {
    QERR("F6 fits the tyre to measured data: load a data file with F5 first");
    return false;
  }
  const KPacejka &tyre = *CurrentTyre();
  const int model = FitModelOf(tyre);
  if (model < 0) {
    QERR("a %s tyre cannot be fitted (Pacejka89/96, Magic Formula 5.2 or 6.1)", tyre.GetModelName());
    return false;
  }
  g_message.clear();
  g_fitWheel = session.wheel;
  return FitWorkerStart(d->load.data, tyre, model, FocusChannel());
}

bool FitPoll() {
  FitWorkerOutcome o;
  if (!FitWorkerTake(&o)) return false;
  if (!o.ok) {
    g_message = o.cancelled ? "fit cancelled" : "fit failed: " + o.error;
    if (!o.cancelled) QERR("%s", g_message.c_str());
    return true;
  }
  KPacejka *tyre = session.graphs[CURVE_FX]->GetTyre(g_fitWheel);
  HistoryBeforeFit(g_fitWheel, *tyre);
  TakeFit(o, tyre);
  g_figures = FitFigures();
  g_figures.shown = true;
  g_figures.wheel = g_fitWheel;
  for (int ch = 0; ch < KCH_COUNT; ch++) {
    g_figures.fitted[ch] = o.result.channel[ch].points > 0 && (o.channel < 0 || o.channel == ch);
    g_figures.channel[ch] = o.result.channel[ch];
  }
  QNOTE("fit of wheel %d: %s %s %s", g_fitWheel, FitFiguresText(KCH_FX).c_str(), FitFiguresText(KCH_FY).c_str(),
        FitFiguresText(KCH_MZ).c_str());
  PanelSelectCoefficient();  // the value line and slider show the fitted value
  return true;
}

const FitFigures &FitLastFigures() { return g_figures; }

void FitForget() {
  FitWorkerCancel();
  g_figures = FitFigures();
  g_message.clear();
}
const std::string &FitLastMessage() { return g_message; }

std::string FitFiguresText(int ch) {
  if (!g_figures.shown || g_figures.wheel != session.wheel || !g_figures.fitted[ch]) return "";
  char buf[96];
  snprintf(buf, sizeof buf, "%s fit: RMS %.2f %%, R2 %.5f", KChannelName(ch), g_figures.channel[ch].rmsPercent,
           g_figures.channel[ch].r2);
  return buf;
}

bool FitWriteTyre(const std::string &path, bool ask) {
  const KPacejka &tyre = *CurrentTyre();
  if (EndsWithTir(path) && tyre.model == KTyreParams::PAC96) {
    QERR("%s: a TIR file holds a Magic Formula tyre; write a Pacejka89/96 tyre as a car.ini", path.c_str());
    return false;
  }
  if (ask && QFileExists(path.c_str(), false)) {
    std::string q = path + " exists. Replace it?";
    if (QMessageBox("Write tyre", q.c_str(), QMB_YESNO) != 0) return false;
  }
  if (EndsWithTir(path)) return KPacejkaWriteTirFile(path.c_str(), tyre);  // reports its problems
  std::string error;
  if (!CarWriteTyre(path.c_str(), tyre, &error)) {
    QERR("%s", error.c_str());
    return false;
  }
  QNOTE("tyre of wheel %d written to %s", session.wheel, path.c_str());
  return true;
}

bool FitUndo() {
  if (FitWorkerRunning() || !HistoryUndo(session.wheel, CurrentTyre())) return false;
  g_figures.shown = false;  // they were the fitted tyre's
  PanelRefreshLabels();
  PanelSelectCoefficient();
  return true;
}

bool FitRedo() {
  if (FitWorkerRunning() || !HistoryRedo(session.wheel, CurrentTyre())) return false;
  g_figures.shown = false;  // they were the fitted tyre's
  PanelRefreshLabels();
  PanelSelectCoefficient();
  return true;
}

void FitHintLines(std::string lines[4]) {
  for (int i = 0; i < 4; i++) lines[i].clear();
  // While F5 reads, and without data, only F5's line (so that a new user
  // finds the key); the others mean nothing before data is loaded.
  if (DataLoading()) {
    std::string name = DataLoadingFile();
    name = name.substr(name.find_last_of('/') + 1);
    lines[0] = "F5 reading " + name + (DataLoadCancelled() ? " (Esc)" : "");
    return;
  }
  if (!DataGet()) {
    lines[0] = FITHINT_NO_DATA;
    return;
  }
  lines[0] = DataHint(session.point.load, session.point.camber);
  char buf[96];
  if (FitWorkerRunning()) {
    FitWorkerProgress p = FitWorkerGetProgress();
    // Stage i of n and the solver's iteration; the RMS % of the stage's
    // channel on the next line.
    if (p.stage.empty()) {
      lines[1] = "F6 fit: starting";
      lines[2] = "Esc cancels";
    } else {
      snprintf(buf, sizeof buf, "F6 %d/%d %s #%d", p.stageIndex + 1, p.stageCount, p.stage.c_str(), p.iteration);
      lines[1] = buf;
      snprintf(buf, sizeof buf, "RMS %.2f %%, Esc cancels", p.rmsPercent);
      lines[2] = buf;
    }
  } else {
    static const char *const focus[] = {"all", "Fx", "Fy", "Mz"};
    snprintf(buf, sizeof buf, "F6 fit: %s", focus[session.focus & 3]);
    lines[1] = g_message.empty() ? buf : std::string(buf) + " (" + g_message.substr(4) + ")";
    lines[2] = "F7 write tyre";
  }
  snprintf(buf, sizeof buf, "Ctrl+Z/Y undo %d, redo %d", HistoryUndoCount(session.wheel),
           HistoryRedoCount(session.wheel));
  lines[3] = buf;
}

bool FitKeyDispatch(const QEvent *ev, const ToolEnv &env) {
  if (ev->type != QEVENT_KEYPRESS) return false;
  if (ev->n == QK_ESC && FitWorkerRunning()) {
    FitWorkerCancel();
    return true;
  }
  if (ev->n == QK_ESC && DataLoading()) {
    DataLoadCancel();  // the read ends unseen
    return true;
  }
  const int key = ev->xn & ~QK_MOD_SHIFT;
  if (key == (0x5A | QK_MOD_CTRL) || key == (0x7A | QK_MOD_CTRL)) {
    FitUndo();
    return true;
  }
  if (key == (0x59 | QK_MOD_CTRL) || key == (0x79 | QK_MOD_CTRL)) {
    FitRedo();
    return true;
  }
  switch (ev->xn) {
    case FITKEY_DATA: {
      if (FitWorkerRunning() || DataLoading()) return true;
      if (DataGet()) {
        DataDrop();
        return true;
      }
      std::string path;
      if (AskFile(env, "open_data", "Measured data", "*.*", &path)) DataLoadStart(path.c_str());  // DataPoll takes it
      return true;
    }
    case FITKEY_FIT: FitStart(); return true;
    case FITKEY_WRITE: {
      std::string path;
      if (AskFile(env, "write_tyre", "Save tyre as .tir or car.ini", "*.*", &path)) FitWriteTyre(path, false);  // the dialog asked before an existing file
      return true;
    }
    default: return false;
  }
}
