// Collects what the reporters say while it lives; the previous hooks are
// restored afterwards.
#pragma once

#include <string>
#include <vector>

#include "diag/qdebug.h"

class ReportCapture {
 public:
  ReportCapture() : oldErr(qSetErrorHook(&OnErr)), oldWarn(qSetWarnHook(&OnWarn)), oldDbg(qSetDebugHook(&OnDbg)) {
    Current() = this;
  }
  ~ReportCapture() {
    qSetErrorHook(oldErr);
    qSetWarnHook(oldWarn);
    qSetDebugHook(oldDbg);
    Current() = nullptr;
  }
  std::vector<std::string> errors, warnings, debug;
  static bool Has(const std::vector<std::string> &list, const std::string &text) {
    for (const std::string &m : list)
      if (m.find(text) != std::string::npos) return true;
    return false;
  }

 private:
  static ReportCapture *&Current() {
    static ReportCapture *cur = nullptr;
    return cur;
  }
  static int Store(std::vector<std::string> ReportCapture::*list, const char *m) {
    if (Current()) (Current()->*list).push_back(m ? m : "");
    return 0;
  }
  static int OnErr(const char *, const char *m) { return Store(&ReportCapture::errors, m); }
  static int OnWarn(const char *, const char *m) { return Store(&ReportCapture::warnings, m); }
  static int OnDbg(const char *, const char *m) { return Store(&ReportCapture::debug, m); }
  QReportHook oldErr, oldWarn, oldDbg;
};
