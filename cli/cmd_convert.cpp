// tyrograph-cli convert SOURCE --model pac96|mf52|mf61 [--wheel N] -o OUT
//                      [--report FILE.json] [--force]
//
// Samples a tyre over its own validity ranges (tyre/ksample.h) and fits the
// target model to the samples; writes it as a TIR file or a car.ini.
#include <cstdio>
#include <string>

#include "cli/cli.h"
#include "cli/fitcli.h"
#include "chart/basedir.h"
#include "chart/carload.h"

namespace {

const char *const kUsage = "SOURCE --model pac96|mf52|mf61 [--wheel N] -o OUT [--report FILE.json] [--force]";

int RunConvert(const std::vector<std::string> &args) {
  const char *cmd = "convert";
  FitCliOptions o;
  if (!FitCliParse(cmd, args, false, &o)) {
    fprintf(stderr, "usage: tyrograph-cli convert %s\n", kUsage);
    return 2;
  }
  if (!FitCliOutputsFree(cmd, o)) return 1;
  FitCliQuiet quiet(cmd);
  // 1. the source, as eval reads it
  KPacejka *source = new KPacejka;
  std::string error;
  o.input = CarResolveSource(o.input, BaseFolderFind());
  if (!CarLoadTyreSource(o.input.c_str(), o.wheel, source, &error)) {
    fprintf(stderr, "tyrograph-cli %s: %s\n", cmd, error.c_str());
    delete source;
    return 2;  // the SOURCE argument is at fault, as a bad TYRE of eval
  }
  // 2. sample, fit, write, tell
  KFitOptions fo;
  fo.model = o.model;
  fo.progress = FitCliProgress;
  KPacejka *tyre = new KPacejka;
  KFitResult r;
  const bool fitted = KFitConvert(*source, fo, tyre, &r);
  FitCliProgressDone();
  const bool ok = fitted && FitCliWriteTyre(cmd, o, *tyre) && FitCliWriteReport(cmd, o, r);
  if (ok) FitCliPrint(o, r);
  delete tyre;
  delete source;
  return ok ? 0 : 1;
}

const char kDetails[] =
    "SOURCE: a .tir file (any case), a car.ini-style file or a car folder holding car.ini;\n"
    "  a bare name is looked up as data/cars/NAME, then data/tyres/NAME in the base folder.\n"
    "The source is sampled over its own load, slip and camber ranges and the target model\n"
    "is fitted to the samples.\n"
    "\n"
    "Options:\n"
    "  --model pac96|mf52|mf61   the target model (Pacejka89/96, Magic Formula 5.2 or 6.1)\n"
    "  --wheel N                 the wheel of a car (default 0)\n"
    "  -o OUT                    the converted tyre: a TIR file when OUT ends in .tir (mf52,\n"
    "                            mf61), else a car.ini\n"
    "  --report FILE.json        the fit's figures as JSON\n"
    "  --force                   overwrite OUT and the report when they exist\n";

CliCommand reg{"convert", kUsage, "convert a tyre to another model by fitting samples of it", 61, RunConvert,
               kDetails};

}  // namespace
