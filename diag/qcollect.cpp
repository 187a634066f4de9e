// QReportCollector: the report hooks of diag/qdebug.h, routed per thread.
#include "diag/qcollect.h"

#include <cstdio>
#include <mutex>
#include <string>

#include "diag/qdebug.h"

namespace {

thread_local QReportCollector *current = nullptr;

// The hooks stay installed while any collector lives, on any thread.
struct Installed {
  std::mutex lock;
  int collectors = 0;
  QReportHook err = nullptr, warn = nullptr, dbg = nullptr;
};
Installed &Hooks() {
  static Installed installed;
  return installed;
}

int Collect(const char *message, bool warning) {
  QProblem p = QProblemFromText(message ? message : "", warning);
  if (current) current->problems.push_back(p);
  else fprintf(stderr, "%s\n", p.Text().c_str());
  return 0;
}

int OnError(const char *, const char *message) { return Collect(message, false); }
int OnWarning(const char *, const char *message) { return Collect(message, true); }
int OnDebug(const char *, const char *) { return 0; }

}  // namespace

QReportCollector::QReportCollector() : outer(current) {
  Installed &h = Hooks();
  std::lock_guard<std::mutex> guard(h.lock);
  if (h.collectors++ == 0) {
    h.err = qSetErrorHook(OnError);
    h.warn = qSetWarnHook(OnWarning);
    h.dbg = qSetDebugHook(OnDebug);
  }
  current = this;
}

QReportCollector::~QReportCollector() {
  current = outer;
  Installed &h = Hooks();
  std::lock_guard<std::mutex> guard(h.lock);
  if (--h.collectors == 0) {
    qSetErrorHook(h.err);
    qSetWarnHook(h.warn);
    qSetDebugHook(h.dbg);
  }
}
