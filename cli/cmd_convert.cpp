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
#include "cli/tyreopts.h"

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
  // a SOURCE that is no tyre is the argument's fault, as a bad TYRE of eval
  job.input = CliResolveTyre(job.input);
  if (!CliTyreLoads(cmd, job.input, job.wheel, "")) return 2;
  return FitCliRun(cmd, job);
}

const char kDetails[] =
    "SOURCE: a .tir file (any case), a car.ini-style file or a car folder holding car.ini;\n"
    "  a bare name is looked up as data/cars/NAME, then data/tyres/NAME in the base folder.\n"
    "The source is sampled over its own load, slip and camber ranges and the target model\n"
    "is fitted to the samples; a source of the target's family starts from its own\n"
    "coefficients.\n"
    "\n"
    "Options:\n"
    "  --model pac96|mf52|mf61   the target model (Pacejka89/96, Magic Formula 5.2 or 6.1)\n"
    "  --wheel N                 the wheel of a car (default 0)\n"
    "  --loss huber|cauchy|none  robust loss: outliers pull less (default: none)\n"
    "  --weights fx=W,fy=W,mz=W  each channel's weight (0 leaves it unfitted)\n"
    "  -o OUT                    the converted tyre: a TIR file when OUT ends in .tir (mf52,\n"
    "                            mf61), else a car.ini\n"
    "  --report FILE.json        the fit's figures as JSON\n"
    "  --force                   overwrite OUT and the report when they exist; write the tyre\n"
    "                            even when a channel fits poorly (R2 below 0.5, exit status 3)\n";

CliCommand reg{"convert", kUsage, "convert a tyre to another model by fitting samples of it", 61, RunConvert,
               kDetails};

}  // namespace
