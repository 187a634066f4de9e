// tyrograph-cli convert SOURCE --model pac96|mf52|mf61 [--wheel N]
//                      [--loss huber|cauchy|none] [--weights fx=W,fy=W,mz=W]
//                      -o OUT [--report FILE.json] [--force]
//
// Samples a tyre over its own validity ranges (tyre/ksample.h) and fits the
// target model to the samples; writes it as a TIR file or a car.ini.
#include <cstdio>
#include <string>

#include "cli/cli.h"
#include "cli/fitcli.h"

namespace {

const char *const kUsage =
    "SOURCE --model pac96|mf52|mf61 [--wheel N] [--loss huber|cauchy|none] [--weights fx=W,fy=W,mz=W] -o OUT "
    "[--report FILE.json] [--force]";

int RunConvert(const std::vector<std::string> &args) {
  const char *cmd = "convert";
  FitJob job;
  if (!FitCliParse(cmd, args, false, &job)) {
    fprintf(stderr, "usage: tyrograph-cli convert %s\n", kUsage);
    return 2;
  }
  return FitCliRun(cmd, job);
}

CliCommand reg{"convert", kUsage, "convert a tyre to another model by fitting samples of it", 61, RunConvert};

}  // namespace
