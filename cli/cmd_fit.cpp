// tyrograph-cli fit DATA.csv --model pac96|mf52|mf61 [--start TYRE] [--wheel N]
//                  [--loss huber|cauchy|none] [--weights fx=W,fy=W,mz=W]
//                  -o OUT [--report FILE.json] [--report-pdf FILE.pdf] [--force]
//                  [--axes iso|sae|auto] [--columns KEY=NAME,...] [--units KEY=UNIT,...] [--thin N]
//
// Fits a tyre model to measured data: a tidy CSV file (tyre/kmeasured.h
// gives the format) as it stands, or a rig run read and conditioned
// (tyre/kdataload.h). Writes it as a TIR file (OUT ending in .tir) or a
// car.ini. A fitted channel with R² below 0.5 ends with exit status 3, the
// tyre written only with --force.
#include <cstdio>
#include <string>

#include "cli/cli.h"
#include "cli/fitcli.h"
#include "cli/runcli.h"

namespace {

const char *const kUsage =
    "DATA.csv --model pac96|mf52|mf61 [--start TYRE] [--wheel N] [--loss huber|cauchy|none] "
    "[--weights fx=W,fy=W,mz=W] -o OUT [--report FILE.json] [--report-pdf FILE.pdf] [--force]";

int RunFit(const std::vector<std::string> &args) {
  const char *cmd = "fit";
  FitJob job;
  RunCliOptions runOptions;  // a rig run's --axes, --columns, --units, --thin
  std::vector<std::string> fitArgs;
  if (!RunCliParse(cmd, args, &runOptions, &fitArgs) || !FitCliParse(cmd, fitArgs, true, &job)) {
    fprintf(stderr, "usage: tyrograph-cli fit %s\n", kUsage);
    return 2;
  }
  job.run = runOptions.run;
  job.condition = runOptions.condition;
  job.raw = runOptions.given;
  return FitCliRun(cmd, job);
}

CliCommand reg{"fit", kUsage, "fit a tyre model to measured data (CSV)", 60, RunFit};

}  // namespace
