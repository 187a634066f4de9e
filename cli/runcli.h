// The rig-run options `data` and `fit` share: --axes iso|sae|auto,
// --columns KEY=NAME,..., --units KEY=UNIT,..., --thin N; and loading a data
// file with them (tyre/kdataload.h), problems printed as
// "tyrograph-cli CMD: ...".
#pragma once

#include <string>
#include <vector>

#include "tyre/kdataload.h"

struct RunCliOptions {
  KRunOptions run;
  KConditionOptions condition;
  bool given = false;  // any of --axes, --columns, --units, --thin N: read as a rig run
};

// Takes the rig-run options out of `args`, leaving the rest in `rest` in
// order. False after printing the problem.
bool RunCliParse(const char *cmd, const std::vector<std::string> &args, RunCliOptions *o,
                 std::vector<std::string> *rest);
// Loads `file`, the readers' reports printed; false after printing the
// reading problem. The
// plausibility problems are printed (and make it false) when `check`.
bool RunCliLoad(const char *cmd, const std::string &file, const RunCliOptions &o, bool check, KDataLoad *out);
// Prints the plausibility problems; true when there were none.
bool RunCliPlausible(const char *cmd, const KDataLoad &load);
