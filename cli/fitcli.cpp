// The shared parts of tyrograph-cli fit and convert.
//
//   [1] options    [2] progress    [3] the run    [4] the figures
#include "cli/fitcli.h"

#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <strings.h>

#include "cli/fitreportcli.h"
#include "cli/tyreopts.h"

namespace {

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

bool FitCliParse(const char *cmd, const std::vector<std::string> &args, bool withStart, FitJob *o) {
  // 1. the arguments
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
      KFitLoss loss;
      if (!KFitLossByName(args[++i].c_str(), &loss))
        return Refuse(cmd, "--loss: '%s' is not huber, cauchy or none", args[i].c_str());
      o->loss = loss;
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
  o->convert = !withStart;
  QProblem problem;
  if (!FitJobCheck(*o, &problem)) return Refuse(cmd, "%s", problem.Text().c_str());
  return true;
}

// ---- [2] progress ------------------------------------------------------------------------

void FitCliProgress(void *user, const KFitProgress &p) {
  if (!isatty(fileno(stderr))) return;
  fprintf(stderr, "\rstage %d/%d %-12s iteration %3d  cost %-14.6g", p.stageIndex + 1, p.stageCount, p.stage,
          p.iteration, p.cost);
  fflush(stderr);
  if (user) *static_cast<bool *>(user) = true;
}

// ---- [3] the run ---------------------------------------------------------------------------

int FitCliRun(const char *cmd, FitJob job) {
  bool progressDrawn = false;
  job.progress = FitCliProgress;
  job.progressUser = &progressDrawn;
  FitOutcome o = FitRun(job);
  if (progressDrawn) fprintf(stderr, "\n");
  for (const QProblem &p : o.problems) fprintf(stderr, "tyrograph-cli %s: %s\n", cmd, p.Text().c_str());
  // the PDF report right after, from the driver's data, tyre and figures
  // a fitted channel that explains less than half the data's variance
  for (int ch : o.ok ? FitPoorChannels(job, o.result) : std::vector<int>())
    fprintf(stderr,
            "tyrograph-cli %s: %s fits poorly: R2 = %.4g, below %g (check the data's units, signs and columns)\n",
            cmd, KChannelName(ch), o.result.channel[ch].r2, FIT_MIN_R2);
  if (o.ok && o.poorFit)
    fprintf(stderr, "tyrograph-cli %s: %s %s\n", cmd, job.out.c_str(),
            job.force ? "written all the same (--force)" : "not written; --force writes it all the same");
  const bool ok = o.ok && FitCliWriteReportPdf(cmd, job, o);
  // --axes auto turning Mz round changes what was fitted: said before the figures
  if (ok && o.data && o.data->run.mzTurned)
    for (const std::string &n : o.data->run.notes)
      if (n.compare(0, 10, "axes auto:") == 0) printf("%s\n", n.c_str());
  if (ok) FitCliPrint(job, o.result);
  return !ok ? 1 : o.poorFit ? FIT_CLI_POOR_FIT : 0;
}

// ---- [4] the figures ---------------------------------------------------------------------

void FitCliPrint(const FitJob &o, const KFitResult &r) {
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
  const std::string pressure = KFitPressureNote(r, o.model);
  if (!pressure.empty()) printf("%s\n", pressure.c_str());
}
