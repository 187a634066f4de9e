// The reporters: qerr, qwarn, qdbg, qnote, qdbgplain, qfatal, qexitmsg, the
// crash and assertion helpers, the output hooks, the log mask and dev flags.
#include "diag/qdebug.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "diag/qdiag_internal.h"

namespace {

enum { MSG_MAX = 10240 };

QReportHook g_errHook, g_warnHook, g_dbgHook, g_plainHook;
unsigned g_logMask = 0x0E;
unsigned g_devFlags;
char g_sourcePath[1024];
int g_portOffset, g_packetDrops;

void EnsureNewline(char *msg) {
  size_t n = strlen(msg);
  if (n + 1 < MSG_MAX && (n == 0 || msg[n - 1] != '\n')) {
    msg[n] = '\n';
    msg[n + 1] = 0;
  }
}

// The messages of qdbgplain, qfatal and qexitmsg reach the log as a format
// with no arguments, so a doubled '%' in them comes out single there. Other
// conversions are left as they stand rather than read from nowhere.
void SecondPass(const char *in, char *out, size_t size) {
  size_t o = 0;
  for (size_t i = 0; in[i] && o + 1 < size; i++) {
    if (in[i] == '%' && in[i + 1] == '%') i++;
    out[o++] = in[i];
  }
  out[o] = 0;
}

void LogFormatted(unsigned flags, const char *msg) {
  char again[MSG_MAX];
  SecondPass(msg, again, sizeof again);
  qlogText(flags, "%s", again);
}

}  // namespace

#define QFORMAT(buf, last)                   \
  char buf[MSG_MAX];                         \
  {                                          \
    va_list ap;                              \
    va_start(ap, last);                      \
    vsnprintf(buf, sizeof buf, last, ap);    \
    va_end(ap);                              \
  }

// ---- positioned reporters ---------------------------------------------------

void qerr(const char *file, const char *func, int line, const char *fmt, ...) {
  QFORMAT(msg, fmt);
  EnsureNewline(msg);
  char prefix[1024];
  snprintf(prefix, sizeof prefix, "ERR,%s:%d,%s", file, line, func);
  if (g_errHook) {
    g_errHook(prefix, msg);
    return;
  }
  fprintf(stderr, "%s", msg);
  if (g_logMask & 0x2) qlogf(0x101, prefix, "%s", msg);
  qtraceLine(QTRACE_ERR, msg);
}

void qwarn(const char *file, const char *func, int line, const char *fmt, ...) {
  QFORMAT(msg, fmt);
  EnsureNewline(msg);
  char prefix[1024];
  snprintf(prefix, sizeof prefix, "WARN,%s:%d,%s", file, line, func);
  if (g_warnHook) {
    g_warnHook(prefix, msg);
    return;
  }
  fprintf(stderr, "%s", msg);
  if (g_logMask & 0x4) qlogf(0x102, prefix, "%s", msg);
  qtraceLine(QTRACE_WARN, msg);
}

void qdbg(const char *file, const char *func, int line, const char *fmt, ...) {
  QFORMAT(msg, fmt);
  char prefix[1024];
  snprintf(prefix, sizeof prefix, "[DBG,%s:%d,%s]", file, line, func);
  if (g_dbgHook) {
    g_dbgHook(prefix, msg);
    return;
  }
  fprintf(stderr, "%s", msg);
  qdbgChannelSend(msg);
  qtraceLine(QTRACE_DBG, msg);
}

void qnote(const char *file, const char *func, int line, const char *fmt, ...) {
  QFORMAT(msg, fmt);
  char prefix[1024];
  snprintf(prefix, sizeof prefix, "%s:%d / %s", file, line, func);
  if (g_logMask & 0x8) qlogf(0x10, prefix, "%s", msg);
}

// ---- unpositioned reporters ---------------------------------------------------

void qdbgplain(const char *fmt, ...) {
  QFORMAT(msg, fmt);
  if (g_plainHook) {
    g_plainHook("", msg);
    return;
  }
  fprintf(stderr, "%s", msg);
  if (g_logMask & 0x1) LogFormatted(0x110, msg);
  qdbgChannelSend(msg);
}

void qfatal(const char *fmt, ...) {
  QFORMAT(msg, fmt);
  LogFormatted(0x440, msg);
  QCrash("qfatal");
}

void qexitmsg(const char *fmt, ...) {
  QFORMAT(msg, fmt);
  LogFormatted(0x440, msg);
  QExit(0);
}

// ---- crash, exit, assertions ------------------------------------------------------

void QCrash(const char *reason) {
  qnote("qdebug", "QCrash", 444, "Going to crash, reason: %s", reason);
  // Die with an access violation on purpose: the crash dump then shows where.
  volatile int *volatile nowhere = nullptr;
  *nowhere = 12345;
  abort();  // not reached
}

void QExit(int code) {
  qlogFlush();
  qdbgChannelClose();
  exit(code);
}

void qasserterr(const char *file, int line) {
  qerr("qdebug", "qasserterr", 143, "Assertion failed in '%s', line %d", file, line);
  QOLOF(file, line, 0);
}

// Prints the lines around `line` of a source file through qdbg.
void QOLOF(const char *file, int line, int indent) {
  FILE *fp = fopen(file, "rb");
  if (!fp && g_sourcePath[0]) {
    char path[2048];
    const char *base = strrchr(file, '/');
    snprintf(path, sizeof path, "%s/%s", g_sourcePath, base ? base + 1 : file);
    fp = fopen(path, "rb");
  }
  if (!fp) return;
  char text[256];
  for (int n = 1; n <= line + 1 && fgets(text, sizeof text, fp); n++) {
    if (n < line - 1) continue;
    char mark = n == line ? '*' : ' ';
    if (indent > 0) QDBG("%c%*s%s%4d: %s", mark, indent, "", "", n, text);
    else QDBG("%c%s%4d: %s", mark, "", n, text);
  }
  fclose(fp);
}

// ---- hooks, mask, flags ---------------------------------------------------------------

static QReportHook Swap(QReportHook &slot, QReportHook hook) {
  QReportHook old = slot;
  slot = hook;
  return old;
}

QReportHook qSetErrorHook(QReportHook hook) { return Swap(g_errHook, hook); }
QReportHook qSetWarnHook(QReportHook hook) { return Swap(g_warnHook, hook); }
QReportHook qSetDebugHook(QReportHook hook) { return Swap(g_dbgHook, hook); }
QReportHook qSetPlainDebugHook(QReportHook hook) { return Swap(g_plainHook, hook); }

void qSetLogMask(unsigned mask) { g_logMask = mask; }
unsigned qGetLogMask() { return g_logMask; }
unsigned qGetDevFlags() { return g_devFlags; }
void qSetDevFlags(unsigned flags) { g_devFlags = flags; }
void qSetSourcePath(const char *dir) { snprintf(g_sourcePath, sizeof g_sourcePath, "%s", dir ? dir : ""); }

void qSetPortOffset(int offset) { g_portOffset = offset; }
int qGetPortOffset() { return g_portOffset; }
void qSetFakePacketDrops(int drops) { g_packetDrops = drops; }
int qGetFakePacketDrops() { return g_packetDrops; }
