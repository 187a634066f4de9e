// The central log writer qlogf and what hangs off it.
//
//   [1] writer state: log path, previous message, repeat counter
//   [2] labels
//   [3] the log file: opening, rotation to QLOG_OLD.txt
//   [4] QLOG_LAST.txt
//   [5] qlogf itself
//   [6] application name and the message box
//
// Reporting never fails towards the caller: a log file that can't be opened
// only costs the file line; standard error and the box still get the text.
#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "diag/qdebug.h"
#include "diag/qdiag_internal.h"

namespace {

// ---- [1] writer state ------------------------------------------------------

enum { MSG_MAX = 10240, LOG_MAX_BYTES = 10000000 };

bool g_initialised;
bool g_fileOff;  // qSetLogFileOff: lines go everywhere but into a file
char g_logPath[4096];
char g_prevText[MSG_MAX];
unsigned g_prevFlags;
char g_prevSource[MSG_MAX - 1];
int g_repeats;
FILE *g_lastFile;
bool g_lastWritten;
char g_appName[256] = "";
QMessageBoxFunc g_box;

void MakeAbsolute(const char *name, char *out, size_t outSize) {
  if (name[0] == '/') {
    snprintf(out, outSize, "%s", name);
    return;
  }
  char cwd[2048];
  if (!getcwd(cwd, sizeof cwd)) cwd[0] = 0;
  snprintf(out, outSize, "%s/%s", cwd, name);
}

// ---- [2] labels ----------------------------------------------------------------

const char *Label(unsigned flags) {
  if (flags & QLOG_ERR) return "ERR";
  if (flags & QLOG_WARN) return "WARN";
  if (flags & QLOG_CRIT) return "CRIT";
  if (flags & QLOG_NOTE) return "NOTE";
  if (flags & QLOG_INFO) return "INFO";
  if (flags & QLOG_FATAL) return "FATAL";
  if (flags & QLOG_INFO2) return "INFO";
  return "?";
}

const char *AppName() { return g_appName[0] ? g_appName : "-"; }

void LocalTime(char *out, size_t size) {
  time_t now = time(nullptr);
  struct tm tmv;
  localtime_r(&now, &tmv);
  strftime(out, size, "%a %d/%m/%Y %H:%M:%S", &tmv);
}

// ---- [3] the log file ----------------------------------------------------------

// QLOG_OLD.txt lies beside the log.
void OldPath(char *out, size_t size) {
  snprintf(out, size, "%s", g_logPath);
  char *slash = strrchr(out, '/');
  char *name = slash ? slash + 1 : out;
  snprintf(name, size - size_t(name - out), "QLOG_OLD.txt");
}

void Rotate() {
  char old[4096];
  OldPath(old, sizeof old);
  remove(old);
  rename(g_logPath, old);
  remove(g_logPath);
  if (FILE *fp = fopen(g_logPath, "ab")) fclose(fp);
}

// Opens the log for one line, rotating it first when it has grown too big.
FILE *OpenLog() {
  for (int tries = 0; tries < 2; tries++) {
    FILE *fp = fopen(g_logPath, "a");
    if (!fp) return nullptr;
    fseek(fp, 0, SEEK_END);
    if (ftell(fp) <= LOG_MAX_BYTES) return fp;
    fclose(fp);
    Rotate();
  }
  return fopen(g_logPath, "a");
}

// ---- [4] QLOG_LAST.txt ---------------------------------------------------------

// A line without a source gets no line end in this file and runs into the
// next one; readers of the file are used to it.
void WriteLast(const char *when, const char *label, const char *text, const char *source) {
  if (!g_lastFile) return;
  fputs(when, g_lastFile);
  fputs(" (", g_lastFile);
  fputs(label, g_lastFile);
  fputs("): ", g_lastFile);
  fputs(text, g_lastFile);
  if (source) {
    fputs(" [", g_lastFile);
    fputs(source, g_lastFile);
    fputs("]\n", g_lastFile);
  }
  fflush(g_lastFile);
  g_lastWritten = true;
}

// ---- [6] box ---------------------------------------------------------------------

void ShowBox(const char *text, unsigned flags) {
  const char *title = (flags & QLOG_FATAL) ? "Fatal error - the program will exit" : "Error";
  if (g_box) g_box(text, title);
  else fprintf(stderr, "%s: %s\n", title, text);
}

void Initialise(unsigned flags) {
  if (g_fileOff) return;
  g_initialised = true;
  MakeAbsolute("QLOG.txt", g_logPath, sizeof g_logPath);
  unsigned f = (flags & ~0x46Fu) | QLOG_INFO;
  qlogf(f, nullptr, "--- application start ---\n");
  qlogf(f, nullptr, "QLog file is: %s", g_logPath);
}

}  // namespace

// ---- [5] qlogf ---------------------------------------------------------------------

static void LogText(unsigned flags, const char *source, const char *formatted);

void qlogf(unsigned flags, const char *source, const char *fmt, ...) {
  if (!g_initialised || !g_logPath[0]) Initialise(flags);
  char text[MSG_MAX];
  va_list ap;
  va_start(ap, fmt);
  vsnprintf(text, sizeof text, fmt, ap);
  va_end(ap);
  LogText(flags, source, text);
}

void qlogText(unsigned flags, const char *source, const char *text) {
  if (!g_initialised || !g_logPath[0]) Initialise(flags);
  char buf[MSG_MAX];
  snprintf(buf, sizeof buf, "%s", text);
  LogText(flags, source, buf);
}

static void LogText(unsigned flags, const char *source, const char *formatted) {
  char text[MSG_MAX];
  snprintf(text, sizeof text, "%s", formatted);
  const char *label = Label(flags);

  // Repeat suppression: identical lines only bump a counter.
  if (strcmp(text, g_prevText) == 0) {
    g_repeats++;
    char line[MSG_MAX + 16];
    snprintf(line, sizeof line, "%s: %s\n", label, text);
    qdbgChannelSend(line);
    return;
  }
  if (g_repeats > 0) qlogFlush();
  snprintf(g_prevText, sizeof g_prevText, "%s", text);
  g_prevFlags = flags;
  snprintf(g_prevSource, sizeof g_prevSource, "%s", source ? source : "");

  size_t n = strlen(text);
  if (n && text[n - 1] == '\n') text[n - 1] = 0;

  if (!(flags & QLOG_NO_STDERR)) fprintf(stderr, "%s\n", text);
  if (!(flags & QLOG_NO_CHANNEL)) {
    char line[MSG_MAX + 64];
    snprintf(line, sizeof line, "[%s] %s: %s\n", source ? source : "", label, text);
    qdbgChannelSend(line);
  }

  char when[64];
  LocalTime(when, sizeof when);
  if (g_fileOff) {
    // no file asked for
  } else if (FILE *fp = OpenLog()) {
    if (source) fprintf(fp, "%s (%-5s): [%s] %s [%s]\n", when, label, AppName(), text, source);
    else fprintf(fp, "%s (%-5s): [%s] %s\n", when, label, AppName(), text);
    fclose(fp);
  } else {
    char msg[512];
    snprintf(msg, sizeof msg, "[%s/%d] Can't open log file (QLOG)", AppName(), int(getpid()));
    fprintf(stderr, "** %s\n", msg);
  }

  if (flags & 0x847) WriteLast(when, label, text, source);
  if (flags & QLOG_MSGBOX) ShowBox(text, flags);
}

void qlogFlush() {
  if (g_repeats <= 0) return;
  int count = g_repeats;
  g_repeats = 0;
  char prev[MSG_MAX];
  char source[MSG_MAX];
  snprintf(prev, sizeof prev, "%s", g_prevText);
  snprintf(source, sizeof source, "%s", g_prevSource);
  qlogf(g_prevFlags, source[0] ? source : nullptr, "[%dx repeat] %s", count, prev);
}

void qlogReset() {
  g_initialised = false;
  g_fileOff = false;
  g_logPath[0] = 0;
  g_prevText[0] = 0;
  g_repeats = 0;
}

const char *QLogFileName() { return g_logPath; }

void qSetLogFileOff() {
  g_fileOff = true;
  g_initialised = true;
  g_logPath[0] = 0;
}

void qSetLogFileName(const char *name) {
  g_fileOff = false;
  if (!name || !*name) {
    g_logPath[0] = 0;
    return;
  }
  MakeAbsolute(name, g_logPath, sizeof g_logPath);
  g_initialised = true;
}

bool qlog_last_open(const char *path) {
  if (g_lastFile) return true;
  g_lastFile = fopen(path, "w");
  g_lastWritten = false;
  return g_lastFile != nullptr;
}

void qlog_last_close() {
  if (g_lastFile) fclose(g_lastFile);
  g_lastFile = nullptr;
}

bool qlog_last_written() { return g_lastWritten; }

void qSetAppName(const char *name) { snprintf(g_appName, sizeof g_appName, "%s", name ? name : ""); }
const char *qGetAppName() { return AppName(); }

QMessageBoxFunc qSetMessageBoxHandler(QMessageBoxFunc box) {
  QMessageBoxFunc old = g_box;
  g_box = box;
  return old;
}
