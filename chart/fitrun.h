// Fitting a tyre and writing it, as one call: the measured data (fit: a
// tidy CSV file as it stands, a rig run conditioned, then the plausibility
// checks; tyre/kdataload.h) or a tyre to sample (convert), the fitter, the
// tyre file (a TIR file or a four-wheel car.ini) and the JSON report. It
// prints nothing; every problem comes back as a value, in the order it
// arose. tyrograph-cli fit and convert and the Python module run it; the
// PDF report (fitreport/) is drawn from its outcome.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "diag/qproblem.h"
#include "tyre/kdataload.h"
#include "tyre/kfit.h"

struct FitJob {
  bool convert = false;  // sample the tyre `input` and fit that; else fit the data file `input`
  std::string input;     // DATA.csv (fit) or a tyre source (convert; as chart/carload.h reads it)
  // fit: how a rig run is read and conditioned; `raw` reads `input` as a
  // rig run even when it looks tidy (tyre/kdataload.h)
  KRunOptions run;
  KConditionOptions condition;
  bool raw = false;
  // fit: the data already read (a mapping of columns in Python); `input`
  // then only names it. Null reads `input`.
  std::shared_ptr<const KDataLoad> data;
  std::string start;     // fit: the start tyre; empty for the built-in start
  int model = -1;        // KPacejka::PAC96, MF52 or MF61
  int wheel = 0;         // the wheel of `start` (fit) or `input` (convert)
  std::string out;       // a TIR file when the name ends in ".tir" (any case), else a car.ini
  bool outOptional = false;  // no `out`: the tyre is kept in memory only
  std::string report;    // the JSON report; empty for none
  std::string reportPdf; // the PDF report, drawn by the caller from the outcome; checked here
  bool force = false;    // existing `out`, `report` and `reportPdf` files are replaced
  // The fit's loss (KFitLoss; -1: huber for a fit, none for convert, whose
  // samples have no outliers) and channel weights (KFitOptions).
  int loss = -1;
  double weight[KCH_COUNT] = {1, 1, 1};
  // Progress of the stages (KFitOptions::progress); may be null.
  void (*progress)(void *user, const KFitProgress &p) = nullptr;
  void *progressUser = nullptr;
};

// The smallest R² a fitted channel may end with: below it the fit counts as
// failed (wrong units, signs or columns far more often than a bad fit), and
// the tyre is written only with `force`.
constexpr double FIT_MIN_R2 = 0.5;

struct FitOutcome {
  bool ok = false;
  bool poorFit = false;  // a fitted channel ended below FIT_MIN_R2 (FitPoorChannels)
  bool started = false;  // the job passed its checks and the work began
  KFitResult result;
  std::unique_ptr<KPacejka> tyre;  // the tyre fitted (and written when ok); null before the fit
  std::shared_ptr<const KDataLoad> data;  // fit: the data as read and conditioned; null when not read
  std::vector<QProblem> problems;  // errors and warnings, in order
};

// True when `name` ends in ".tir" (any case).
bool FitOutIsTir(const std::string &name);
// What makes a job impossible before any work: no input, no model, no
// output (unless optional), a Pacejka89/96 tyre into a TIR file. False with
// the problem.
bool FitJobCheck(const FitJob &job, QProblem *problem);
// An existing `out`, `report` or `reportPdf` is kept unless `force`. False with the
// problem ("OUT exists; add --force to overwrite it").
bool FitOutputsFree(const FitJob &job, QProblem *problem);
// Checks the job, then reads (a rig run conditioned; implausible data is
// refused with the checks' messages), fits, writes the tyre and the JSON
// report. The
// reporters' errors and warnings during the work come back in `problems`;
// the log stays closed.
FitOutcome FitRun(const FitJob &job);
// The fitted channels (weight above 0) whose R² is below FIT_MIN_R2.
std::vector<int> FitPoorChannels(const FitJob &job, const KFitResult &result);
// The options of the fit the job asks for (model, loss, weights, progress).
KFitOptions FitJobOptions(const FitJob &job);
// The figures as JSON (what `report` receives).
std::string FitReportJson(const FitJob &job, const KFitResult &result);
