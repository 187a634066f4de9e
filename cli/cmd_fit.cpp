// tyrograph-cli fit DATA.csv --model pac96|mf52|mf61 [--start TYRE] [--wheel N]
//                  -o OUT [--report FILE.json] [--force]
//
// Fits a tyre model to measured data (tyre/kmeasured.h gives the format)
// and writes it as a TIR file (OUT ending in .tir) or a car.ini.
#include <cstdio>
#include <string>

#include "cli/cli.h"
#include "cli/fitcli.h"

namespace {

const char *const kUsage =
    "DATA.csv --model pac96|mf52|mf61 [--start TYRE] [--wheel N] -o OUT [--report FILE.json] [--force]";

int RunFit(const std::vector<std::string> &args) {
  const char *cmd = "fit";
  FitJob job;
  if (!FitCliParse(cmd, args, true, &job)) {
    fprintf(stderr, "usage: tyrograph-cli fit %s\n", kUsage);
    return 2;
  }
  return FitCliRun(cmd, job);
}

CliCommand reg{"fit", kUsage, "fit a tyre model to measured data (CSV)", 60, RunFit};

}  // namespace
