// Collects what the reporters say during a test: each kind on its own, and
// all in order in `joined` ("E: msg | W: msg | D: msg", line ends dropped).
#pragma once

#include <string>

#include "diag/qdebug.h"

struct ReportCapture {
  std::string errors, warnings, debug, joined;
  ReportCapture() {
    self() = this;
    prevErr = qSetErrorHook([](const char *, const char *m) { return Add(&ReportCapture::errors, "E: ", m); });
    prevWarn = qSetWarnHook([](const char *, const char *m) { return Add(&ReportCapture::warnings, "W: ", m); });
    prevDbg = qSetDebugHook([](const char *, const char *m) { return Add(&ReportCapture::debug, "D: ", m); });
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
  static int Add(std::string ReportCapture::*kind, const char *tag, const char *m) {
    ReportCapture *c = self();
    c->*kind += m;
    std::string s = m;
    while (!s.empty() && s.back() == '\n') s.pop_back();
    c->joined += (c->joined.empty() ? "" : " | ") + std::string(tag) + s;
    return 0;
  }
  QReportHook prevErr, prevWarn, prevDbg;
};
