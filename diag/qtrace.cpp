// The call trace file: an optional file that receives warnings, errors and
// debug lines (selected by a mask) and the entering and leaving of traced
// methods, with their nesting depth.
#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "diag/qdebug.h"

namespace {
FILE *g_trace;
unsigned g_mask;
int g_level;
int g_depth;
int g_owner;  // the process that opened the file counts the depth

void Prefix(char *out, size_t size) {
  out[0] = 0;
  time_t now = time(nullptr);
  struct tm tmv;
  localtime_r(&now, &tmv);
  size_t n = 0;
  if (g_mask & QTRACE_DATE) n += strftime(out + n, size - n, "%d-%m-%y ", &tmv);
  if (g_mask & QTRACE_TIME) n += strftime(out + n, size - n, "%H:%M:%S ", &tmv);
}

void Put(const char *text) {
  size_t n = strlen(text);
  while (n && text[n - 1] == '\n') n--;
  char prefix[64];
  Prefix(prefix, sizeof prefix);
  fprintf(g_trace, "%s%.*s\n", prefix, int(n), text);
  fflush(g_trace);
}
}  // namespace

bool qtraceOpen(const char *name, unsigned mask) {
  qtraceClose();
  if (!name || !*name) return true;
  g_trace = fopen(name, "wb");
  g_mask = mask;
  g_depth = 0;
  g_owner = int(getpid());
  return g_trace != nullptr;
}

void qtraceClose() {
  if (g_trace) fclose(g_trace);
  g_trace = nullptr;
}

void qtraceSetLevel(int level) { g_level = level; }
int qtraceDepth() { return g_depth; }

void qtraceLine(unsigned bit, const char *text) {
  if (g_trace && (g_mask & bit)) Put(text);
}

static void EnterLeave(char sign, const char *cls, const char *method, const void *obj) {
  if (!g_trace) return;
  char prefix[64];
  Prefix(prefix, sizeof prefix);
  if (obj) fprintf(g_trace, "%s%c%s::%s (this=0x%p)\n", prefix, sign, cls, method, obj);
  else fprintf(g_trace, "%s%c%s::%s\n", prefix, sign, cls, method);
  fflush(g_trace);
}

void qtraceEnter(const char *cls, const char *method, const void *obj) {
  EnterLeave('>', cls, method, obj);
  if (g_trace && int(getpid()) == g_owner) g_depth++;
}

void qtraceLeave(const char *cls, const char *method, const void *obj) {
  EnterLeave('<', cls, method, obj);
  if (g_trace && int(getpid()) == g_owner && g_depth > 0) g_depth--;
}

void qtraceLeveled(int level, const char *fmt, ...) {
  if (!g_trace || level > g_level) return;
  char text[4096];
  va_list ap;
  va_start(ap, fmt);
  vsnprintf(text, sizeof text, fmt, ap);
  va_end(ap);
  Put(text);
}
