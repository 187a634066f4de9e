// The view keys of the window.
#include "tool/viewkeys.h"

#include <cstdio>

#include "diag/qdebug.h"
#include "platform/cairo/qcairo.h"
#include "chart/carload.h"
#include "chart/graph.h"
#include "chart/plot.h"
#include "tool/measureddata.h"
#include "tool/session.h"
#include "tool/toolenv.h"
#include "tool/windowframe.h"
#include "ui/qapp.h"
#include "ui/qdlgfile.h"
#include "ui/qevent.h"
#include "ui/qplatform.h"

void ViewCycle() { session.view = (session.view + 1) % PLOT_KIND_COUNT; }

void ViewDropReference() {
  for (Graph *&g : session.reference) {
    delete g;
    g = nullptr;
  }
  session.referenceLabel.clear();
}

bool ViewLoadReference(const char *path) {
  ViewDropReference();
  QColor grey[CURVE_COUNT];
  PlotReferenceColors(grey);
  for (int i = 0; i < CURVE_COUNT; i++) {
    session.reference[i] = new Graph(CurveKind(i), i ? session.reference[i - 1] : nullptr);
    session.reference[i]->SetColor(grey[i]);
    std::string error;
    if (!CarLoadTyreSource(path, 0, session.reference[i]->GetTyre(0), &error)) {
      QERR("reference tyre %s: %s", path, error.c_str());
      ViewDropReference();
      return false;
    }
  }
  std::string p = path;
  size_t slash = p.find_last_of('/');
  session.referenceLabel = "reference: " + (slash == std::string::npos ? p : p.substr(slash + 1));
  return true;
}

std::string ViewNextPngName() {
  std::string dir = QApp::GetScreenshotDir();
  if (!dir.empty() && dir.back() != '/') dir += '/';
  for (int i = 1; i <= 99999; i++) {
    char name[32];
    snprintf(name, sizeof name, "view%05d.png", i);
    FILE *f = fopen((dir + name).c_str(), "rb");
    if (!f) return dir + name;
    fclose(f);
  }
  return "";
}

bool ViewSavePng(const std::string &path, int width, int height) {
  FrameState st = FrameStateFromSession();
  std::string error;
  bool ok = QCairoWriteFile(path, width, height, width, height, [&](QRenderer *r) {
    PlotPaint(r, PlotKind(session.view), st, QRect(0, 0, width, height),
              DataPointsAt(session.point.load, session.point.camber));
  }, &error);
  if (!ok) {
    QERR("%s", error.c_str());
    return false;
  }
  QNOTE("view saved as %s", path.c_str());
  session.savedView = path;
  session.savedViewUntilMs = qpTimeMs() + SESSION_SAVED_VIEW_MS;
  return true;
}

void ViewExpireSavedNote(uint64_t nowMs) {
  if (nowMs >= session.savedViewUntilMs) session.savedView.clear();
}

bool ViewKeyDispatch(const QEvent *ev, const ToolEnv &env) {
  if (ev->type != QEVENT_KEYPRESS) return false;
  switch (ev->xn) {
    case VIEWKEY_CYCLE: ViewCycle(); return true;
    case VIEWKEY_REFERENCE: {
      if (session.reference[CURVE_FX]) {
        ViewDropReference();
        return true;
      }
      char buf[QDLGFILE_PATH_MAX] = "";
      if (QDlgFile(env.settingsTree, "open_reference", nullptr, buf, "Reference tyre", "*.tir", nullptr, nullptr))
        ViewLoadReference(buf);
      return true;
    }
    case VIEWKEY_SAVE: {
      std::string path = ViewNextPngName();
      if (!path.empty()) ViewSavePng(path, env.viewWidth, env.viewHeight);
      return true;
    }
    default: return false;
  }
}
