// Loading a data file for a fit (tyre/kdataload.h).
#include "tyre/kdataload.h"

#include "diag/qdebug.h"
#include "tyre/kplausible.h"

bool KDataLoadRun(KRunData run, const KRunOptions &runOptions, const KConditionOptions &conditionOptions,
                  KDataLoad *out) {
  out->tidy = false;
  out->run = std::move(run);
  KRunMapAxes(&out->run, runOptions.axes);
  if (!KConditionRun(out->run, conditionOptions, &out->conditioned)) {
    out->error = out->conditioned.data.error;
    return false;
  }
  out->data = out->conditioned.data;
  KPlausibleCheck(out->data, &out->problems);
  return true;
}

bool KDataLoadText(const std::string &text, const char *fileName, const KRunOptions &runOptions,
                   const KConditionOptions &conditionOptions, bool raw, KDataLoad *out) {
  *out = KDataLoad();
  if (!raw && KRunIsTidyCsv(text.data(), text.size())) {
    out->tidy = true;
    if (!KMeasuredParse(text.data(), text.size(), fileName, &out->data, runOptions.quiet)) {
      out->error = out->data.error;
      return false;
    }
    KPlausibleCheck(out->data, &out->problems);
    return true;
  }
  KRunData run;
  if (!KRunParse(text.data(), text.size(), fileName, runOptions, &run)) {
    out->error = run.error;
    return false;
  }
  return KDataLoadRun(std::move(run), runOptions, conditionOptions, out);
}

bool KDataLoadFile(const char *fileName, const KRunOptions &runOptions, const KConditionOptions &conditionOptions,
                   bool raw, KDataLoad *out) {
  *out = KDataLoad();
  std::string text;
  if (!KRunReadFile(fileName, &text, &out->error)) {
    if (!runOptions.quiet) QERR("%s", out->error.c_str());
    return false;
  }
  return KDataLoadText(text, fileName, runOptions, conditionOptions, raw, out);
}
