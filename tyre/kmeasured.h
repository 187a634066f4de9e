// Measured tyre data: operating points with the forces observed there, read
// from a CSV file (or made by sampling a tyre, tyre/ksample.h) and fitted by
// tyre/kfit.h.
//
// File format: a header line naming the columns, then one row per point.
// Columns, in any order, each at most once:
//   fz     load, N                     (required)
//   kappa  slip ratio                  (0 when absent)
//   alpha  slip angle, rad             (0 when absent)
//   gamma  camber, rad                 (0 when absent)
//   fx fy  forces, N                   (at least one of fx, fy, mz)
//   mz     aligning moment, N·m
//   pressure  inflation pressure, Pa   (optional; unknown when absent)
// The units and signs are those of `tyrograph-cli eval`. Fields are separated
// by commas or by blanks and tabs; blank lines and lines whose first
// non-blank character is '#' are skipped. Every field must be a finite
// number. A force channel without a column is simply not fitted.
//
// No exceptions: the reader returns false, reports the problem through QERR
// and keeps the same text ("FILE:LINE: column N (name): problem") in
// KMeasuredData::error for callers that show it themselves.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

// The three fitted channels.
enum KChannel : int { KCH_FX, KCH_FY, KCH_MZ, KCH_COUNT };

// One operating point and what was measured there. Channels the data lacks
// hold 0.
struct KMeasuredPoint {
  double fz = 0, kappa = 0, alpha = 0, gamma = 0;
  double force[KCH_COUNT] = {0, 0, 0};  // Fx, Fy (N), Mz (N·m)
  // Inflation pressure (Pa) of the point's set point; 0 when unknown (a
  // CSV file without a pressure column).
  double pressure = 0;
};

struct KMeasuredData {
  std::vector<KMeasuredPoint> points;
  bool has[KCH_COUNT] = {false, false, false};  // which channels were measured
  std::string error;                            // the last reading problem
};

// The column names, in the table order fz, kappa, alpha, gamma, fx, fy, mz;
// the optional `pressure` column follows them.
enum { KMEASURED_COLUMNS = 7 };
const char *KMeasuredColumnName(int column);
// The channel name as printed: "Fx", "Fy", "Mz".
const char *KChannelName(int channel);

// Parses `size` bytes of CSV text; `fileName` only names the source in
// messages. False (data->error set, reported unless `quiet`) on any bad
// input; `data` then holds no points.
bool KMeasuredParse(const char *text, size_t size, const char *fileName, KMeasuredData *data, bool quiet = false);
// Reads and parses a file.
bool KMeasuredRead(const char *fileName, KMeasuredData *data);
// Whether any point has a pressure.
bool KMeasuredHasPressure(const KMeasuredData &data);
// The data as CSV text with every column, numbers in round-trip precision
// (what KMeasuredParse reads back unchanged); the pressure column only when
// a point has a pressure, so data without one gives the seven columns.
std::string KMeasuredFormat(const KMeasuredData &data);
