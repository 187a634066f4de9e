// The shared parts of tyrograph-cli fit and convert.
//
//   [1] options    [2] progress    [3] the run    [4] the figures
#include "cli/fitcli.h"

#include <unistd.h>

#include <cstdio>
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

}  // namespace

// ---- [1] options -----------------------------------------------------------------------

bool FitCliParse(const char *cmd, const std::vector<std::string> &args, bool withStart, FitJob *o) {
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
  const bool ok = o.ok && FitCliWriteReportPdf(cmd, job, o);
  if (ok) FitCliPrint(job, o.result);
  return ok ? 0 : 1;
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
  if (r.pureOnly)
    printf("%s has no combined slip: Fx is compared where the slip angle is 0, Fy and Mz where the slip ratio is 0\n",
           KFitModelKey(o.model));
  for (int ch = 0; ch < KCH_COUNT; ch++)
    if (r.mirrored[ch])
      printf("%s is mirrored against the usual Pacejka89/96 sign (%s); fitted mirrored, written as it was\n",
             KChannelName(ch), ch == KCH_FY ? "it falls as the slip angle rises" : "it rises with the slip angle");
}
