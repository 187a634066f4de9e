// A rig run as recorded: a time series of named channels, read from a
// delimited text file (tyre/krun_text.cpp) or a TYDEX file
// (tyre/krun_tydex.cpp), converted to SI units (tyre/krun_units.cpp) and
// mapped onto our axes (tyre/krun_axes.cpp). Conditioning it into fitting
// points is tyre/kcondition.h.
//
// Our units and signs are those of `tyrograph-cli eval` and of the tidy
// CSV format (tyre/kmeasured.h): load positive, slip angle and camber in
// radians, slip ratio as a ratio, forces in N, moments in N·m; pressure in
// Pa, speed in m/s, time in s.
//
// No exceptions: readers return false and leave the message (naming file,
// line and column) in KRunData::error, reported through QERR.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

// The quantities a run can carry, in table order.
enum KRunChannel : int {
  KRUN_TIME,
  KRUN_FZ,
  KRUN_KAPPA,
  KRUN_ALPHA,
  KRUN_GAMMA,
  KRUN_FX,
  KRUN_FY,
  KRUN_MZ,
  KRUN_MX,
  KRUN_PRESSURE,
  KRUN_SPEED,
  KRUN_CHANNELS
};

// What kind of unit a quantity takes.
enum KRunUnitKind : int { KUNIT_TIME, KUNIT_FORCE, KUNIT_SLIP, KUNIT_ANGLE, KUNIT_MOMENT, KUNIT_PRESSURE, KUNIT_SPEED };

// The key of a channel as --columns and --units name it: "time", "fz", ...
const char *KRunChannelKey(int channel);
// The unit kind of a channel and the name of its SI unit ("N", "rad", ...).
KRunUnitKind KRunChannelUnitKind(int channel);
const char *KRunSiUnit(int channel);
// The channel a column name stands for (any case; the keys, the tidy CSV
// names and the usual rig and TYDEX names); -1 when none.
int KRunChannelByName(const std::string &name);
// The channel a key names exactly (any case); -1 when none.
int KRunChannelByKey(const std::string &key);

// The factor and offset that turn a value in `unit` (any case, "N·m",
// "N*m", "Nm" alike; empty means the SI unit) into the SI unit of `kind`:
// si = value * factor + offset. False when the unit is unknown for the kind.
bool KRunUnitToSi(KRunUnitKind kind, const std::string &unit, double *factor, double *offset);
// The units known for a kind, for messages: "deg, rad".
std::string KRunUnitList(KRunUnitKind kind);

// The axis system of the file's signs.
enum KRunAxes : int { KAXES_AUTO, KAXES_ISO, KAXES_SAE };

// Reading options: the command line's --columns, --units and --axes.
struct KRunOptions {
  std::string columns[KRUN_CHANNELS];  // a column name per channel ("" = by its usual names)
  std::string units[KRUN_CHANNELS];    // a unit per channel ("" = from the file)
  int axes = KAXES_AUTO;
  bool quiet = false;  // nothing to the reporters: a problem only in the run's error (a worker thread)
};

// Parses "fz=FZ,alpha=SA" (columns) or "alpha=deg,fz=kN" (units) into
// `options`. False with `error` set on an unknown key or an empty value.
bool KRunParseColumns(const std::string &text, KRunOptions *options, std::string *error);
bool KRunParseUnits(const std::string &text, KRunOptions *options, std::string *error);
// "iso", "sae" or "auto".
bool KRunParseAxes(const std::string &text, int *axes);

// One channel of a run: values in SI units, signs as in the file until
// KRunMapAxes has run.
struct KRunColumn {
  bool present = false;
  std::string name;        // the file's column name
  std::string unit;        // the unit it was read in ("" when none was given)
  std::vector<double> v;   // one value per row
};

struct KRunData {
  std::string fileName;
  std::string format;                   // "text" or "TYDEX"
  KRunColumn channel[KRUN_CHANNELS];
  std::vector<std::string> ignored;     // columns no channel uses
  std::vector<std::string> notes;       // what the reader and the axis mapping decided
  size_t rows = 0;
  bool timeFromRows = false;            // no time column: the row numbers stand in
  bool mzTurned = false;                // --axes auto turned Mz round against Fy (KRunMapAxes)
  std::string error;
};

// Reads a run from text: TYDEX when its first non-blank line starts with
// "**", else delimited text. `fileName` names it in messages.
bool KRunParse(const char *text, size_t size, const char *fileName, const KRunOptions &options, KRunData *run);
bool KRunParseText(const char *text, size_t size, const char *fileName, const KRunOptions &options, KRunData *run);
bool KRunParseTydex(const char *text, size_t size, const char *fileName, const KRunOptions &options,
                    KRunData *run);
// A run from columns already in memory (Python's mapping of column name to
// array): `names` matched as a file's names row is (units in brackets
// allowed), `values[i]` holding `rows` numbers. `source` names it in
// messages. False on an ambiguous or missing name, an unknown unit or a
// number that is not finite.
bool KRunFromColumns(const std::vector<std::string> &names, const std::vector<const double *> &values, size_t rows,
                     const char *source, const KRunOptions &options, KRunData *run);
// Reads a file into `text`; false with `error` set.
bool KRunReadFile(const char *fileName, std::string *text, std::string *error);
// Whether the text is for the tidy CSV reader of tyre/kmeasured.h rather
// than a rig run: not TYDEX; a names row without semicolons, bracketed
// units or any name only rigs use (SA, FZW, ET, ...; `pressure` is the
// tidy format's own); no units row. Bad
// tidy files stay with the tidy reader and its messages.
bool KRunIsTidyCsv(const char *text, size_t size);

// Maps the run onto our axes (KRunOptions::axes): "iso" keeps the signs;
// "sae" turns load, slip angle, lateral force and aligning moment round
// (a half turn about the x axis); "auto" takes "sae" when most loads are
// negative, "iso" otherwise, and then checks Fy against Mz: a half turn
// keeps both slopes over small slip angles, and with a positive trail they
// are of opposite signs, so when both are clearly of one sign (each at
// least ten standard errors from zero) Mz was logged turned round and is
// turned back (run->mzTurned); when either is too flat or noisy to tell,
// Mz is kept and the note says so. Adds what it decided, with the slopes of
// Fy and Mz over small slip angles, to run->notes.
void KRunMapAxes(KRunData *run, int axes);
// The test `auto` turns Mz round by: the slopes of Fy and Mz over small
// slip angles, each with its t value (slope over its standard error), both
// clear of noise and of one sign.
bool KRunAxesSlopesTurned(double fySlope, double fyT, double mzSlope, double mzT);
// The signs each axis system flips, for the README table and messages.
bool KRunAxesFlips(int axes, int channel);
