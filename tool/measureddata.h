// The measured data behind the curves (F5): a data file read as
// `tyrograph-cli data` reads it (a tidy CSV file as it stands, a rig run with
// automatic axes and units, conditioned), its set points, and the points of
// the set point nearest the sliders' load and camber, drawn behind the
// curves in every view as `tyrograph-cli plot --data` draws them.
#pragma once

#include <string>
#include <vector>

#include "chart/plot.h"
#include "tyre/kdataload.h"

struct MeasuredData {
  std::string file;                  // as given
  KDataLoad load;                    // the points (load.data) and, for a run, its conditioning
  std::vector<KSetPoint> setPoints;  // the run's, or those of a tidy file's points
  std::vector<int> setPoint;         // per point of load.data
  std::string note;                  // "data FILE: N set points, M points kept"
};

// Reads `path` (thinned to `thin` points a sweep when above 0). False when
// it cannot be read: the reader's message has gone to the reporters (the
// window shows it) and the data loaded before stays dropped.
bool DataLoad(const char *path, int thin = 0);
// F5: the same read on a worker thread, which only reads (quietly: no
// reporters); the data loaded before is dropped at once. DataPoll, once a
// frame, takes the result in and reports it as DataLoad does. False when a
// read still runs.
bool DataLoadStart(const char *path, int thin = 0);
// Whether a read runs (until DataPoll has taken it); the file it reads.
bool DataLoading();
const std::string &DataLoadingFile();
// Takes a finished read: the data (or its message to the reporters). True
// when a read ended, taken or cancelled.
bool DataPoll();
// The running read's result will be thrown away (Escape).
void DataLoadCancel();
bool DataLoadCancelled();
// Waits for a running read and throws its result away (exit, tests).
void DataLoadWait();
void DataDrop();
// The loaded data; null when none.
const MeasuredData *DataGet();
// The set point nearest `load` (N), then `camberDeg`; -1 without data.
int DataNearestSetPoint(float load, float camberDeg);
// The points of the set point nearest the operating point, for the frame;
// null without data. `setPoint` (may be null) receives its index.
const PlotPoints *DataPointsAt(float load, float camberDeg, int *setPoint = nullptr);
// The hint line, set point 3 of 24 at 4000 N, -3 degrees, 240 kPa:
// "F5 3/24: 4000 N -3 deg 240 kPa".
std::string DataHint(float load, float camberDeg);
