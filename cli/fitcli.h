// What `fit` and `convert` share: their options, the output checks, writing
// the fitted tyre (TIR file or car.ini), the printed figures, the JSON report
// and the progress line.
#pragma once

#include <string>
#include <vector>

#include "tyre/kfit.h"

struct FitCliOptions {
  std::string input;   // DATA.csv (fit) or SOURCE (convert)
  std::string start;   // --start TYRE (fit only)
  int model = -1;      // --model
  int wheel = 0;       // --wheel
  std::string out;     // -o
  std::string report;  // --report
  std::string reportPdf;  // --report-pdf (fit only)
  bool force = false;  // --force
  KFitLoss loss = KFIT_LOSS_HUBER;           // --loss (convert: none unless given)
  double weight[KCH_COUNT] = {1, 1, 1};      // --weights fx=W,fy=W,mz=W
};

// The smallest R² a fitted channel may end with before the fit counts as
// failed (exit status FIT_CLI_POOR_FIT; the tyre is written only with --force).
constexpr double FIT_CLI_MIN_R2 = 0.5;
constexpr int FIT_CLI_POOR_FIT = 3;

// Parses the arguments; `withStart` allows --start. False after printing
// the problem ("tyrograph-cli CMD: ...") to stderr.
bool FitCliParse(const char *cmd, const std::vector<std::string> &args, bool withStart, FitCliOptions *o);

// An existing OUT or report file is refused unless --force was given. False
// after printing the problem.
bool FitCliOutputsFree(const char *cmd, const FitCliOptions &o);

// Routes the reporters to stderr as "tyrograph-cli CMD: ..." and keeps the
// log file closed while the command runs; restores them when it goes.
class FitCliQuiet {
 public:
  explicit FitCliQuiet(const char *cmd);
  ~FitCliQuiet();
  FitCliQuiet(const FitCliQuiet &) = delete;
  FitCliQuiet &operator=(const FitCliQuiet &) = delete;
};

// Progress on standard error when it is a terminal (KFitOptions::progress).
void FitCliProgress(void *user, const KFitProgress &p);
// Ends the progress line, if one was drawn.
void FitCliProgressDone();

// Writes the tyre to o.out: a TIR file when the name ends in ".tir" (any
// case), a car.ini otherwise. False after printing the problem.
bool FitCliWriteTyre(const char *cmd, const FitCliOptions &o, const KPacejka &tyre);
// The fit options the command line sets (model, loss, weights).
KFitOptions FitCliFitOptions(const FitCliOptions &o);
// After a successful fit: checks every fitted channel's R², writes the tyre
// (unless the check failed and --force was not given) and the report, prints
// the figures. Returns the exit status: 0, 1 (a file not written) or
// FIT_CLI_POOR_FIT.
int FitCliFinish(const char *cmd, const FitCliOptions &o, const KPacejka &tyre, const KFitResult &r);
// The figures on standard output.
void FitCliPrint(const FitCliOptions &o, const KFitResult &r);
// The same figures as JSON into o.report (when given). False after printing
// the problem.
bool FitCliWriteReport(const char *cmd, const FitCliOptions &o, const KFitResult &r);
