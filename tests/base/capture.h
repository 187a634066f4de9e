// Collects what the reporters say during a test, through their hooks.
#pragma once

#include <string>

#include "ui/diag/qdebug.h"

struct ReportCapture {
  std::string errors, warnings, debug;
  ReportCapture() {
    self() = this;
    prevErr = qSetErrorHook([](const char *, const char *m) { self()->errors += m; return 0; });
    prevWarn = qSetWarnHook([](const char *, const char *m) { self()->warnings += m; return 0; });
    prevDbg = qSetDebugHook([](const char *, const char *m) { self()->debug += m; return 0; });
  }
  ~ReportCapture() {
    qSetErrorHook(prevErr);
    qSetWarnHook(prevWarn);
    qSetDebugHook(prevDbg);
    self() = nullptr;
  }
  static ReportCapture *&self() {
    static ReportCapture *p;
    return p;
  }
  QReportHook prevErr, prevWarn, prevDbg;
};
