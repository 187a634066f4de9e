// Loading a data file for a fit, whatever its kind: a tidy CSV file
// (tyre/kmeasured.h) is read as it stands; a rig run (delimited text or
// TYDEX, tyre/krun.h) is read, mapped onto our axes and conditioned
// (tyre/kcondition.h). Then the plausibility checks (tyre/kplausible.h).
// `tyrograph-cli fit` and `data` and the Python module load through here.
#pragma once

#include <string>
#include <vector>

#include "tyre/kcondition.h"
#include "tyre/kmeasured.h"
#include "tyre/krun.h"

struct KDataLoad {
  bool tidy = false;        // read by the tidy CSV reader
  KRunData run;             // the run as read (rig runs only)
  KConditioned conditioned; // its conditioning (rig runs only)
  KMeasuredData data;       // the points to fit
  std::vector<std::string> problems;  // the plausibility checks' messages
  std::string error;        // a reading problem (file, line, column)
};

// Reads `fileName`. `raw` reads it as a rig run even when it looks tidy
// (any of --axes, --columns, --units given). False on a reading problem
// (out->error, reported unless runOptions.quiet; conditioning reports its
// own unless conditionOptions.quiet); the plausibility problems do not make
// it false.
bool KDataLoadFile(const char *fileName, const KRunOptions &runOptions, const KConditionOptions &conditionOptions,
                   bool raw, KDataLoad *out);
// The same for text already in memory (`fileName` names it in messages).
bool KDataLoadText(const std::string &text, const char *fileName, const KRunOptions &runOptions,
                   const KConditionOptions &conditionOptions, bool raw, KDataLoad *out);
// A rig run already in channels (Python's mapping of column name to
// array): mapped onto our axes and conditioned.
bool KDataLoadRun(KRunData run, const KRunOptions &runOptions, const KConditionOptions &conditionOptions,
                  KDataLoad *out);
