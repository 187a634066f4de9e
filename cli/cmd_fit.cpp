// tyrograph-cli fit DATA.csv --model pac96|mf52|mf61 [--start TYRE] [--wheel N]
//                  [--loss huber|cauchy|none] [--weights fx=W,fy=W,mz=W]
//                  -o OUT [--report FILE.json] [--force]
//
// Fits a tyre model to measured data (tyre/kmeasured.h gives the format)
// and writes it as a TIR file (OUT ending in .tir) or a car.ini. A fitted
// channel with R² below 0.5 ends with exit status 3, the tyre written only
// with --force.
#include <cstdio>
#include <string>

#include "cli/cli.h"
#include "cli/fitcli.h"
#include "chart/carload.h"

namespace {

const char *const kUsage =
    "DATA.csv --model pac96|mf52|mf61 [--start TYRE] [--wheel N] [--loss huber|cauchy|none] "
    "[--weights fx=W,fy=W,mz=W] -o OUT [--report FILE.json] [--force]";

int RunFit(const std::vector<std::string> &args) {
  const char *cmd = "fit";
  FitCliOptions o;
  if (!FitCliParse(cmd, args, true, &o)) {
    fprintf(stderr, "usage: tyrograph-cli fit %s\n", kUsage);
    return 2;
  }
  if (!FitCliOutputsFree(cmd, o)) return 1;
  FitCliQuiet quiet(cmd);
  // 1. the data (the reader names file, line and column of a problem)
  KMeasuredData data;
  if (!KMeasuredRead(o.input.c_str(), &data)) return 1;
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
  const int status = fitted ? FitCliFinish(cmd, o, *tyre, r) : 1;
  delete tyre;
  delete start;
  return status;
}

CliCommand reg{"fit", kUsage, "fit a tyre model to measured data (CSV)", 60, RunFit};

}  // namespace
