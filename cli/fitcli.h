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
};

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
// The figures on standard output.
void FitCliPrint(const FitCliOptions &o, const KFitResult &r);
// The same figures as JSON into o.report (when given). False after printing
// the problem.
bool FitCliWriteReport(const char *cmd, const FitCliOptions &o, const KFitResult &r);
