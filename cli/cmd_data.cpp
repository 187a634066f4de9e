// tyrograph-cli data FILE [--axes iso|sae|auto] [--columns KEY=NAME,...]
//                   [--units KEY=UNIT,...] [--thin N] [-o CLEAN.csv] [--force]
//
// Reads a rig run (delimited text or TYDEX) or a tidy CSV file, conditions
// it as `fit` would (tyre/kcondition.h) and prints what it found: channels
// and units, set points with their point counts, sweeps, and the points
// dropped and why. With -o writes the points in the tidy CSV format.
#include <cstdio>

#include "cli/cli.h"
#include "cli/runcli.h"
#include "cli/tyreopts.h"

namespace {

const char *const kUsage =
    "FILE [--axes iso|sae|auto] [--columns KEY=NAME,...] [--units KEY=UNIT,...] [--thin N] [-o CLEAN.csv] [--force]";

int RunData(const std::vector<std::string> &args) {
  const char *cmd = "data";
  RunCliOptions o;
  std::vector<std::string> rest;
  std::string input, out;
  bool force = false;
  if (!RunCliParse(cmd, args, &o, &rest)) {
    fprintf(stderr, "usage: tyrograph-cli data %s\n", kUsage);
    return 2;
  }
  for (size_t i = 0; i < rest.size(); i++) {
    if (CliTakeOutputOption(rest, &i, &out, &force)) continue;
    if (rest[i] == "-o") {
      fprintf(stderr, "tyrograph-cli data: -o needs a value\nusage: tyrograph-cli data %s\n", kUsage);
      return 2;
    }
    if (rest[i].size() > 1 && rest[i][0] == '-') {
      fprintf(stderr, "tyrograph-cli data: unknown option '%s'\nusage: tyrograph-cli data %s\n", rest[i].c_str(), kUsage);
      return 2;
    }
    if (!input.empty()) {
      fprintf(stderr, "tyrograph-cli data: more than one input ('%s' and '%s')\n", input.c_str(), rest[i].c_str());
      return 2;
    }
    input = rest[i];
  }
  if (input.empty()) {
    fprintf(stderr, "tyrograph-cli data: no data file given\nusage: tyrograph-cli data %s\n", kUsage);
    return 2;
  }
  if (CliRefusesOverwrite(cmd, out, force)) return 1;
  KDataLoad load;
  if (!RunCliLoad(cmd, input, o, false, &load)) return 1;
  if (load.tidy) {
    printf("%s: tidy CSV (fz, kappa, alpha, gamma, fx, fy, mz in our units and signs%s), %zu points, read as they "
           "stand\n",
           input.c_str(), KMeasuredHasPressure(load.data) ? ", pressure in Pa" : "", load.data.points.size());
  } else {
    fputs(KConditionSummary(load.run, load.conditioned).c_str(), stdout);
  }
  if (!RunCliPlausible(cmd, load)) return 1;
  if (out.empty()) return 0;
  return CliEmit(cmd, out, KMeasuredFormat(load.data));
}

const char kDetails[] =
    "FILE: a rig run, as delimited text (a row of column names, maybe a row of units, then\n"
    "one row per sample) or TYDEX (**HEADER ... **MEASURDATA ... **END); or a tidy CSV file\n"
    "(fz, kappa, alpha, gamma, fx, fy, mz in eval's units; pressure in Pa when the run had one),\n"
    "read as it stands.\n"
    "Prints the channels and units found, the set points with their point counts, the sweeps\n"
    "and the points dropped and why; then the plausibility checks.\n"
    "\n"
    "Options:\n"
    "  --axes iso|sae|auto       the run's axes (default auto: sae when most loads are negative;\n"
    "                            Mz turned round when it clearly slopes as Fy does)\n"
    "  --columns KEY=NAME,...    which column is which (keys fz fx fy mz mx alpha kappa gamma\n"
    "                            time pressure speed)\n"
    "  --units KEY=UNIT,...      units the file lacks or gets wrong (rad, deg, %, N, kN, ...)\n"
    "  --thin N                  keep about N evenly spaced points per sweep\n"
    "  -o CLEAN.csv              write the conditioned points in the tidy CSV format (with a\n"
    "                            pressure column, Pa, when the run has pressures)\n"
    "  --force                   overwrite CLEAN.csv when it exists\n";

CliCommand reg{"data", kUsage, "read a rig run (text or TYDEX), condition it and say what it holds", 58, RunData,
               kDetails};

}  // namespace
