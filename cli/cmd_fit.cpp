// tyrograph-cli fit DATA.csv --model pac96|mf52|mf61 [--start TYRE] [--wheel N]
//                  [--loss huber|cauchy|none] [--weights fx=W,fy=W,mz=W]
//                  -o OUT [--report FILE.json] [--report-pdf FILE.pdf] [--force]
//
// Fits a tyre model to measured data (tyre/kmeasured.h gives the format)
// and writes it as a TIR file (OUT ending in .tir) or a car.ini. A fitted
// channel with R² below 0.5 ends with exit status 3, the tyre written only
// with --force.
#include <cstdio>
#include <string>

#include "cli/cli.h"
#include "cli/fitcli.h"
#include "cli/fitreportcli.h"
#include "chart/carload.h"
#include "cli/runcli.h"

namespace {

const char *const kUsage =
    "DATA.csv --model pac96|mf52|mf61 [--start TYRE] [--wheel N] [--loss huber|cauchy|none] "
    "[--weights fx=W,fy=W,mz=W] -o OUT [--report FILE.json] [--report-pdf FILE.pdf] [--force]";

int RunFit(const std::vector<std::string> &args) {
  const char *cmd = "fit";
  FitCliOptions o;
  RunCliOptions runOptions;  // a rig run's --axes, --columns, --units, --thin
  std::vector<std::string> fitArgs;
  if (!RunCliParse(cmd, args, &runOptions, &fitArgs) || !FitCliParse(cmd, fitArgs, true, &o)) {
    fprintf(stderr, "usage: tyrograph-cli fit %s\n", kUsage);
    return 2;
  }
  if (!FitCliOutputsFree(cmd, o)) return 1;
  FitCliQuiet quiet(cmd);
  // 1. the data (the reader names file, line and column of a problem): a
  // tidy CSV file as it stands, a rig run conditioned; then the checks
  KDataLoad load;
  if (!RunCliLoad(cmd, o.input, runOptions, true, &load)) return 1;
  const KMeasuredData &data = load.data;
  // 2. the start: the given tyre or the built-in one
  KPacejka *start = nullptr;
  if (!o.start.empty()) {
    start = new KPacejka;
    std::string error;
    if (!CarLoadTyreSource(o.start.c_str(), o.wheel, start, &error)) {
      fprintf(stderr, "tyrograph-cli %s: --start: %s\n", cmd, error.c_str());
      delete start;
      return 1;
    }
  }
  // 3. fit, write, tell
  KFitOptions fo = FitCliFitOptions(o);
  fo.start = start;
  KPacejka *tyre = new KPacejka;
  KFitResult r;
  const bool fitted = KFitTyre(data, fo, tyre, &r);
  FitCliProgressDone();
  int status = fitted ? FitCliFinish(cmd, o, *tyre, r) : 1;
  if (status != 1 && !FitCliWriteReportPdf(cmd, o, load, *tyre, r)) status = 1;
  delete tyre;
  delete start;
  return status;
}

CliCommand reg{"fit", kUsage, "fit a tyre model to measured data (CSV)", 60, RunFit};

}  // namespace
