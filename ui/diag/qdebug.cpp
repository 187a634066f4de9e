// Placeholder reporters: write to standard error only. Replaced by the full
// log writer.
#include "ui/diag/qdebug.h"

#include <cstdio>
#include <cstdlib>

static void vout(const char *fmt, va_list ap) { vfprintf(stderr, fmt, ap); }
#define QOUT(last)            \
  va_list ap;                 \
  va_start(ap, last);         \
  vout(fmt, ap);              \
  va_end(ap)

void qerr(const char *, const char *, int, const char *fmt, ...) { QOUT(fmt); }
void qwarn(const char *, const char *, int, const char *fmt, ...) { QOUT(fmt); }
void qdbg(const char *, const char *, int, const char *fmt, ...) { QOUT(fmt); }
void qnote(const char *, const char *, int, const char *fmt, ...) { QOUT(fmt); }
void qdbgplain(const char *fmt, ...) { QOUT(fmt); }
void qfatal(const char *fmt, ...) { QOUT(fmt); abort(); }
void qexitmsg(const char *fmt, ...) { QOUT(fmt); exit(0); }
void QCrash(const char *) { abort(); }
void QExit(int code) { exit(code); }
void qasserterr(const char *, int) {}
void QOLOF(const char *, int, int) {}
void qlogf(unsigned, const char *, const char *fmt, ...) { QOUT(fmt); }
void qlogFlush() {}
QReportHook qSetErrorHook(QReportHook) { return nullptr; }
QReportHook qSetWarnHook(QReportHook) { return nullptr; }
QReportHook qSetDebugHook(QReportHook) { return nullptr; }
QReportHook qSetPlainDebugHook(QReportHook) { return nullptr; }
void qSetLogMask(unsigned) {}
unsigned qGetLogMask() { return 0x0E; }
const char *QLogFileName() { return ""; }
bool qlog_last_open(const char *) { return false; }
void qlog_last_close() {}
bool qlog_last_written() { return false; }
unsigned qGetDevFlags() { return 0; }
void qSetDevFlags(unsigned) {}
