// The shared parts of tyrograph-cli fit and convert.
//
//   [1] options          [2] reporters      [3] progress
//   [4] the tyre file    [5] the figures    [6] the JSON report
#include "cli/fitcli.h"

#include <unistd.h>

#include <cctype>
#include <cstdio>
#include <cstring>
#include <strings.h>

#include "base/qfile.h"
#include "cli/tyreopts.h"
#include "diag/qdebug.h"
#include "chart/carsave.h"
#include "tyre/kpacejka_tirwrite.h"

namespace {

bool EndsWithTir(const std::string &name) {
  if (name.size() < 4) return false;
  std::string ext = name.substr(name.size() - 4);
  for (char &c : ext) c = char(tolower(static_cast<unsigned char>(c)));
  return ext == ".tir";
}

bool Refuse(const char *cmd, const char *fmt, const char *a, const char *b = "") {
  fprintf(stderr, "tyrograph-cli %s: ", cmd);
  fprintf(stderr, fmt, a, b);
  fprintf(stderr, "\n");
  return false;
}

}  // namespace

// ---- [1] options -----------------------------------------------------------------------

bool FitCliParse(const char *cmd, const std::vector<std::string> &args, bool withStart, FitCliOptions *o) {
  // 1. the arguments
  for (size_t i = 0; i < args.size(); i++) {
    const std::string &a = args[i];
    const bool valued = a == "--model" || a == "--wheel" || a == "-o" || a == "--report" ||
                        (withStart && (a == "--start" || a == "--report-pdf"));
    if (valued && i + 1 >= args.size()) return Refuse(cmd, "%s needs a value", a.c_str());
    if (a == "--model") {
      if (!KFitModelByName(args[++i].c_str(), &o->model))
        return Refuse(cmd, "--model: '%s' is not pac96, mf52 or mf61", args[i].c_str());
    } else if (a == "--wheel") {
      if (!CliParseInt(cmd, "--wheel", args[++i], &o->wheel)) return false;
    } else if (a == "-o") {
      o->out = args[++i];
    } else if (a == "--report") {
      o->report = args[++i];
    } else if (withStart && a == "--report-pdf") {
      o->reportPdf = args[++i];
      if (o->reportPdf.size() < 4 || strcasecmp(o->reportPdf.c_str() + o->reportPdf.size() - 4, ".pdf") != 0)
        return Refuse(cmd, "--report-pdf: '%s' does not end in .pdf", o->reportPdf.c_str());
    } else if (withStart && a == "--start") {
      o->start = args[++i];
    } else if (a == "--force") {
      o->force = true;
    } else if (a.size() > 1 && a[0] == '-') {
      return Refuse(cmd, "unknown option '%s'", a.c_str());
    } else if (o->input.empty()) {
      o->input = a;
    } else {
      return Refuse(cmd, "more than one input ('%s' and '%s')", o->input.c_str(), a.c_str());
    }
  }
  // 2. what must be there, and what can be done, before any work
  if (o->input.empty()) return Refuse(cmd, "no %s given", withStart ? "data file" : "source tyre");
  if (o->model < 0) return Refuse(cmd, "--model pac96|mf52|mf61 is required%s", "");
  if (o->out.empty()) return Refuse(cmd, "-o OUT is required%s", "");
  if (EndsWithTir(o->out) && o->model == KPacejka::PAC96)
    return Refuse(cmd, "%s: a TIR file holds a Magic Formula tyre; use mf52 or mf61, or a car.ini", o->out.c_str());
  return true;
}

bool FitCliOutputsFree(const char *cmd, const FitCliOptions &o) {
  for (const std::string *f : {&o.out, &o.report, &o.reportPdf})
    if (!f->empty() && !o.force && QFileExists(f->c_str(), false))
      return Refuse(cmd, "%s exists; add --force to overwrite it", f->c_str());
  return true;
}

// ---- [2] reporters -----------------------------------------------------------------------

namespace {

const char *g_cmd = "";
QReportHook g_prevErr, g_prevWarn, g_prevDbg;
unsigned g_prevMask;

int ToStderr(const char *, const char *message) {
  fprintf(stderr, "tyrograph-cli %s: %s", g_cmd, message);
  return 0;
}
int Drop(const char *, const char *) { return 0; }

}  // namespace

FitCliQuiet::FitCliQuiet(const char *cmd) {
  g_cmd = cmd;
  g_prevErr = qSetErrorHook(ToStderr);
  g_prevWarn = qSetWarnHook(ToStderr);
  g_prevDbg = qSetDebugHook(Drop);  // the loaders' trace lines
  g_prevMask = qGetLogMask();
  qSetLogMask(0);
}

FitCliQuiet::~FitCliQuiet() {
  qSetErrorHook(g_prevErr);
  qSetWarnHook(g_prevWarn);
  qSetDebugHook(g_prevDbg);
  qSetLogMask(g_prevMask);
}

// ---- [3] progress ------------------------------------------------------------------------

namespace {
bool g_progressDrawn = false;
}

void FitCliProgress(void *, const KFitProgress &p) {
  if (!isatty(fileno(stderr))) return;
  fprintf(stderr, "\rstage %d/%d %-12s iteration %3d  cost %-14.6g", p.stageIndex + 1, p.stageCount, p.stage,
          p.iteration, p.cost);
  fflush(stderr);
  g_progressDrawn = true;
}

void FitCliProgressDone() {
  if (g_progressDrawn) fprintf(stderr, "\n");
  g_progressDrawn = false;
}

// ---- [4] the tyre file ---------------------------------------------------------------------

bool FitCliWriteTyre(const char *cmd, const FitCliOptions &o, const KPacejka &tyre) {
  if (EndsWithTir(o.out)) {
    // the writer reports what went wrong itself
    if (!KPacejkaWriteTirFile(o.out.c_str(), tyre)) return Refuse(cmd, "%s: not written", o.out.c_str());
    return true;
  }
  std::string error;
  if (!CarWriteTyre(o.out.c_str(), tyre, &error)) return Refuse(cmd, "%s", error.c_str());
  return true;
}

// ---- [5] the figures ---------------------------------------------------------------------

void FitCliPrint(const FitCliOptions &o, const KFitResult &r) {
  printf("%-7s %7s  %-18s %-14s %s\n", "channel", "points", "RMS", "RMS/peak %", "R2");
  for (int ch = 0; ch < KCH_COUNT; ch++) {
    const KFitChannelStats &s = r.channel[ch];
    if (!s.points) continue;
    printf("%-7s %7d  %-13.9g %-4s %-14.9g %.9g\n", KChannelName(ch), s.points, s.rms, ch == KCH_MZ ? "N·m" : "N",
           s.rmsPercent, s.r2);
  }
  printf("iterations %d, %.3f s\n", r.iterations, r.seconds);
  if (r.pureOnly)
    printf("%s has no combined slip: Fx is compared where the slip angle is 0, Fy and Mz where the slip ratio is 0\n",
           KFitModelKey(o.model));
  for (int ch = 0; ch < KCH_COUNT; ch++)
    if (r.mirrored[ch])
      printf("%s is mirrored against the usual Pacejka89/96 sign (%s); fitted mirrored, written as it was\n",
             KChannelName(ch), ch == KCH_FY ? "it falls as the slip angle rises" : "it rises with the slip angle");
}

// ---- [6] the JSON report -------------------------------------------------------------------

namespace {

std::string JsonString(const std::string &s) {
  std::string out = "\"";
  for (unsigned char c : s) {
    if (c == '"' || c == '\\') out += '\\', out += char(c);
    else if (c < 0x20) {
      char buf[8];
      snprintf(buf, sizeof buf, "\\u%04x", c);
      out += buf;
    } else out += char(c);
  }
  return out + "\"";
}

std::string Number(double v) {
  char buf[32];
  snprintf(buf, sizeof buf, "%.17g", v);
  return buf;
}

}  // namespace

bool FitCliWriteReport(const char *cmd, const FitCliOptions &o, const KFitResult &r) {
  if (o.report.empty()) return true;
  std::string j = "{\n";
  j += "  \"input\": " + JsonString(o.input) + ",\n";
  j += "  \"model\": " + JsonString(KFitModelKey(o.model)) + ",\n";
  j += "  \"output\": " + JsonString(o.out) + ",\n";
  j += "  \"channels\": {";
  const char *sep = "\n";
  for (int ch = 0; ch < KCH_COUNT; ch++) {
    const KFitChannelStats &s = r.channel[ch];
    if (!s.points) continue;
    j += sep;
    j += "    " + JsonString(KChannelName(ch)) + ": {\"points\": " + std::to_string(s.points) +
         ", \"rms\": " + Number(s.rms) + ", \"rms_percent\": " + Number(s.rmsPercent) +
         ", \"peak\": " + Number(s.peak) + ", \"r2\": " + Number(s.r2) +
         ", \"mirrored\": " + (r.mirrored[ch] ? "true" : "false") + "}";
    sep = ",\n";
  }
  j += "\n  },\n";
  j += std::string("  \"pure_only\": ") + (r.pureOnly ? "true" : "false") + ",\n";
  j += "  \"iterations\": " + std::to_string(r.iterations) + ",\n";
  j += "  \"seconds\": " + Number(r.seconds) + "\n}\n";
  FILE *f = fopen(o.report.c_str(), "wb");
  bool ok = f && fwrite(j.data(), 1, j.size(), f) == j.size();
  if (f && fclose(f) != 0) ok = false;
  if (!ok) return Refuse(cmd, "%s: can't be written", o.report.c_str());
  return true;
}
