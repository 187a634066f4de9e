// The shared parts of tyrograph-cli fit and convert.
//
//   [1] options          [2] reporters      [3] progress
//   [4] the tyre file    [5] the figures    [6] the JSON report
#include "cli/fitcli.h"

#include <unistd.h>

#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
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

// "fx=1,fy=1,mz=0.5": any of the three channels, each a finite number >= 0;
// the ones not named keep their weight.
bool ParseWeights(const char *cmd, const std::string &text, double weight[KCH_COUNT]) {
  size_t at = 0;
  while (at <= text.size()) {
    size_t end = text.find(',', at);
    if (end == std::string::npos) end = text.size();
    const std::string item = text.substr(at, end - at);
    const size_t eq = item.find('=');
    int ch = -1;
    for (int c = 0; c < KCH_COUNT && eq != std::string::npos; c++)
      if (!strcasecmp(item.substr(0, eq).c_str(), KChannelName(c))) ch = c;
    if (ch < 0) return Refuse(cmd, "--weights: '%s' is not fx=W, fy=W or mz=W", item.c_str());
    char *stop = nullptr;
    const std::string value = item.substr(eq + 1);
    const double w = strtod(value.c_str(), &stop);
    if (value.empty() || *stop || !std::isfinite(w) || w < 0)
      return Refuse(cmd, "--weights: '%s' is not a weight (a number of 0 or more)", item.c_str());
    weight[ch] = w;
    at = end + 1;
  }
  return true;
}

}  // namespace

// ---- [1] options -----------------------------------------------------------------------

bool FitCliParse(const char *cmd, const std::vector<std::string> &args, bool withStart, FitCliOptions *o) {
  // 1. the arguments; convert's samples are exact, so it has no outliers for
  //    a robust loss to discount, only the model's own misfit
  if (!withStart) o->loss = KFIT_LOSS_NONE;
  for (size_t i = 0; i < args.size(); i++) {
    const std::string &a = args[i];
    const bool valued = a == "--model" || a == "--wheel" || a == "-o" || a == "--report" || a == "--loss" ||
                        a == "--weights" || (withStart && (a == "--start" || a == "--report-pdf"));
    if (valued && i + 1 >= args.size()) return Refuse(cmd, "%s needs a value", a.c_str());
    if (a == "--model") {
      if (!KFitModelByName(args[++i].c_str(), &o->model))
        return Refuse(cmd, "--model: '%s' is not pac96, mf52 or mf61", args[i].c_str());
    } else if (a == "--wheel") {
      if (!CliParseInt(cmd, "--wheel", args[++i], &o->wheel)) return false;
    } else if (a == "--loss") {
      if (!KFitLossByName(args[++i].c_str(), &o->loss))
        return Refuse(cmd, "--loss: '%s' is not huber, cauchy or none", args[i].c_str());
    } else if (a == "--weights") {
      if (!ParseWeights(cmd, args[++i], o->weight)) return false;
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
  if (!KFitHasCombined(o.model))
    printf("%s has no combined slip: Fx is compared where the slip angle is 0, Fy and Mz where the slip ratio is 0\n",
           KFitModelKey(o.model));
  else if (r.combinedNotIdentified)
    printf("%s: generic combined-slip coefficients kept; Fx is compared where the slip angle is 0, Fy and Mz where "
           "the slip ratio is 0\n",
           KFIT_COMBINED_NOT_IDENTIFIED);
  for (const KFitResult::Held &h : r.held) printf("held, not fitted: %s (%s)\n", h.name.c_str(), h.why);
  for (const KFitResult::AtBound &b : r.atBound)
    printf("at the %s bound of its range: %s = %.9g\n", b.upper ? "upper" : "lower", b.name.c_str(), b.value);
  for (int ch = 0; ch < KCH_COUNT; ch++)
    if (r.mirrored[ch])
      printf("%s is mirrored against the usual Pacejka89/96 sign (%s); fitted mirrored, written as it was\n",
             KChannelName(ch), ch == KCH_FY ? "it falls as the slip angle rises" : "it rises with the slip angle");
}

// ---- [5b] the whole end of a fit --------------------------------------------------------

KFitOptions FitCliFitOptions(const FitCliOptions &o) {
  KFitOptions fo;
  fo.model = o.model;
  fo.loss = o.loss;
  for (int ch = 0; ch < KCH_COUNT; ch++) fo.weight[ch] = o.weight[ch];
  fo.progress = FitCliProgress;
  return fo;
}

int FitCliFinish(const char *cmd, const FitCliOptions &o, const KPacejka &tyre, const KFitResult &r) {
  // 1. a fitted channel that explains less than half the data's variance
  //    means wrong units, signs or columns far more often than a bad fit
  bool poor = false;
  for (int ch = 0; ch < KCH_COUNT; ch++) {
    const KFitChannelStats &s = r.channel[ch];
    if (!s.points || !(o.weight[ch] > 0) || s.r2 >= FIT_CLI_MIN_R2) continue;
    fprintf(stderr,
            "tyrograph-cli %s: %s fits poorly: R2 = %.4g, below %g (check the data's units, signs and columns)\n",
            cmd, KChannelName(ch), s.r2, FIT_CLI_MIN_R2);
    poor = true;
  }
  if (poor)
    fprintf(stderr, "tyrograph-cli %s: %s %s\n", cmd, o.out.c_str(),
            o.force ? "written all the same (--force)" : "not written; --force writes it all the same");
  // 2. the files, then the figures
  if ((!poor || o.force) && !FitCliWriteTyre(cmd, o, tyre)) return 1;
  if (!FitCliWriteReport(cmd, o, r)) return 1;
  FitCliPrint(o, r);
  return poor ? FIT_CLI_POOR_FIT : 0;
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
  j += "  \"combined_slip\": " +
       JsonString(!KFitHasCombined(o.model) ? "none in the model"
                  : r.combinedNotIdentified ? KFIT_COMBINED_NOT_IDENTIFIED
                                            : "fitted") +
       ",\n";
  j += "  \"loss\": " + JsonString(KFitLossKey(o.loss)) + ",\n";
  j += "  \"weights\": {\"Fx\": " + Number(o.weight[KCH_FX]) + ", \"Fy\": " + Number(o.weight[KCH_FY]) +
       ", \"Mz\": " + Number(o.weight[KCH_MZ]) + "},\n";
  j += "  \"held\": [";
  for (size_t i = 0; i < r.held.size(); i++)
    j += std::string(i ? ", " : "") + "{\"name\": " + JsonString(r.held[i].name) + ", \"why\": " +
         JsonString(r.held[i].why) + "}";
  j += "],\n  \"at_bound\": [";
  for (size_t i = 0; i < r.atBound.size(); i++)
    j += std::string(i ? ", " : "") + "{\"name\": " + JsonString(r.atBound[i].name) +
         ", \"value\": " + Number(r.atBound[i].value) + ", \"bound\": " +
         JsonString(r.atBound[i].upper ? "upper" : "lower") + "}";
  j += "],\n";
  j += "  \"iterations\": " + std::to_string(r.iterations) + ",\n";
  j += "  \"seconds\": " + Number(r.seconds) + "\n}\n";
  FILE *f = fopen(o.report.c_str(), "wb");
  bool ok = f && fwrite(j.data(), 1, j.size(), f) == j.size();
  if (f && fclose(f) != 0) ok = false;
  if (!ok) return Refuse(cmd, "%s: can't be written", o.report.c_str());
  return true;
}
