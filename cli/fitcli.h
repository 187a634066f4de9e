// What `fit` and `convert` share: their options, the progress line, and the
// run of the library's driver (chart/fitrun.h) with its problems and figures
// printed.
#pragma once

#include <string>
#include <vector>

#include "chart/fitrun.h"

// Parses the arguments into `job`; `withStart` allows --start. False after
// printing the problem ("tyrograph-cli CMD: ...") to stderr.
bool FitCliParse(const char *cmd, const std::vector<std::string> &args, bool withStart, FitJob *job);

// The exit status of a fit whose fitted channel ends below FIT_MIN_R2.
constexpr int FIT_CLI_POOR_FIT = 3;

// Progress on standard error when it is a terminal (KFitOptions::progress);
// `user`, when given, is a bool set once a line was drawn.
void FitCliProgress(void *user, const KFitProgress &p);

// Runs the job, then writes its PDF report (job.reportPdf, when given): the
// problems on standard error ("tyrograph-cli CMD: ..."), the figures on
// standard output when it succeeded. The exit code.
int FitCliRun(const char *cmd, FitJob job);
// The figures on standard output.
void FitCliPrint(const FitJob &job, const KFitResult &r);
