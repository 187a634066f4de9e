// What the run readers share: the columns a file declares, matched to our
// channels with the --columns and --units overrides, the messages, and the
// numbers of a row. Used by krun_text.cpp and krun_tydex.cpp only.
#pragma once

#include <string>
#include <vector>

#include "tyre/krun.h"

// A column as the file declares it.
struct KRunDeclared {
  std::string name;
  std::string unit;  // "" when the file gives none
  int line = 0, col = 0;  // where the name stands (for messages)
  double factor = 1, offset = 0;  // the file's own scaling (TYDEX), applied before the unit
};

class KRunReader {
 public:
  KRunReader(const char *fileName, const KRunOptions &options, KRunData *run);

  // "FILE:LINE:COL: message" (LINE, COL left out when 0) into run->error,
  // reported unless the options are quiet; the run is emptied. Always false.
  bool Fail(int line, int col, const char *fmt, ...)
#if defined(__GNUC__)
      __attribute__((format(printf, 4, 5)))
#endif
      ;
  // Matches the declared columns to channels: the overrides first, then the
  // usual names. Fails on an ambiguous or missing name, an unknown unit.
  bool Assign(const std::vector<KRunDeclared> &columns, int line);
  // The channel of field `f`, -1 when ignored.
  int ChannelOf(size_t f) const { return f < fieldChannel_.size() ? fieldChannel_[f] : -1; }
  // Stores the field's text as a number of its channel; fails (naming
  // line, column and channel) when it is not a finite number.
  bool Value(size_t f, const char *text, size_t n, int line, int col);
  // The same for a number already read (`row` counts from 1 for messages).
  bool Number(size_t f, double v, size_t row);
  // After the last row: time from the row numbers when absent, the notes.
  bool Finish(int line);

  const char *fileName;
  const KRunOptions &options;
  KRunData *run;

 private:
  std::vector<int> fieldChannel_;
  std::vector<KRunDeclared> declared_;
  double factor_[KRUN_CHANNELS] = {}, offset_[KRUN_CHANNELS] = {};
  bool decimalComma_ = false;

 public:
  void SetDecimalComma(bool on) { decimalComma_ = on; }
  // A channel the file gives elsewhere (a TYDEX constant): not missing.
  void Supplied(int channel) { supplied_[channel] = true; }

 private:
  bool supplied_[KRUN_CHANNELS] = {};
};

// A column name with its unit split off: "SA[deg]", "SA (deg)" -> "SA", "deg".
void KRunSplitUnit(const std::string &field, std::string *name, std::string *unit);
// Blanks and tabs off both ends.
std::string KRunTrim(const std::string &s);
