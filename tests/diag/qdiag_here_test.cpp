// The QERR family fills in the tag, the function and the line of its caller.
#include <gtest/gtest.h>

#include <string>

#include "diag/qdebug.h"

namespace {

std::string lastPrefix;
int Capture(const char *prefix, const char *) {
  lastPrefix = prefix;
  return 0;
}

struct Probe {
  static int Method() {
    QERR("x");
    return __LINE__ - 1;
  }
  int Lambda() const {
    auto f = [] { QWARN("y %d", 1); return __LINE__; };
    return f();
  }
};

int Free() {
  QERR_IN("Probe::Public", "z");
  return __LINE__ - 1;
}

}  // namespace

TEST(DiagHere, TagFunctionAndLineOfTheCaller) {
  QReportHook oldErr = qSetErrorHook(Capture), oldWarn = qSetWarnHook(Capture);
  int line = Probe::Method();
  EXPECT_EQ(lastPrefix, "ERR,qdiag:" + std::to_string(line) + ",Probe::Method");
  line = Probe().Lambda();
  EXPECT_EQ(lastPrefix, "WARN,qdiag:" + std::to_string(line) + ",Probe::Lambda");
  line = Free();
  EXPECT_EQ(lastPrefix, "ERR,qdiag:" + std::to_string(line) + ",Probe::Public");
  qSetErrorHook(oldErr);
  qSetWarnHook(oldWarn);

  EXPECT_STREQ(QDiagTag("tyre/kpacejka_load.cpp").name, "kpacejka");
  EXPECT_STREQ(QDiagTag("qpath.cpp").name, "qpath");
  EXPECT_STREQ(QDiagFunc("const char* QInfo::GetString(const char*, const char*)").name,
               "QInfo::GetString");
  EXPECT_STREQ(QDiagFunc("void {anonymous}::Helper(int)").name, "Helper");
}
