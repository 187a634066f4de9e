// F5's data: reading, set points, the points drawn at the operating point.
#include "tool/measureddata.h"

#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cmath>
#include <cstdio>
#include <memory>
#include <thread>

#include "chart/curves.h"
#include "diag/qdebug.h"

namespace {

std::unique_ptr<MeasuredData> g_data;
// The points of the set point shown last, kept while the set point stays.
int g_shownSetPoint = -1;
PlotPoints g_points;

std::string BaseName(const std::string &p) {
  size_t slash = p.find_last_of('/');
  return slash == std::string::npos ? p : p.substr(slash + 1);
}

// Reads and conditions `path` into `d` without a word to the reporters (a
// worker thread may run it); the message in `error` when it cannot be read.
bool ReadQuietly(const std::string &path, int thin, MeasuredData *d, std::string *error) {
  d->file = path;
  KRunOptions runOptions;  // automatic axes, units from the file
  runOptions.quiet = true;
  KConditionOptions conditionOptions;
  conditionOptions.thin = thin;
  conditionOptions.quiet = true;
  if (!KDataLoadFile(path.c_str(), runOptions, conditionOptions, false, &d->load)) {
    *error = !d->load.error.empty() ? d->load.error : path + ": cannot be read";
    return false;
  }
  if (d->load.tidy) {
    KConditionSetPoints(d->load.data, &d->setPoints, &d->setPoint);
  } else {
    d->setPoints = d->load.conditioned.setPoints;
    d->setPoint = d->load.conditioned.setPoint;
  }
  char buf[512];
  snprintf(buf, sizeof buf, "data %s: %zu set points, %zu points kept", BaseName(d->file).c_str(),
           d->setPoints.size(), d->load.data.points.size());
  d->note = buf;
  if (!d->load.problems.empty())
    d->note += ", " + std::to_string(d->load.problems.size()) + " check" + (d->load.problems.size() > 1 ? "s" : "") +
               " failed";
  return true;
}

// On the window's thread: the read's outcome reported, and the data taken.
bool TakeRead(std::unique_ptr<MeasuredData> d, bool ok, const std::string &error) {
  if (!ok) {
    QERR("%s", error.c_str());
    return false;
  }
  QNOTE("%s", d->note.c_str());
  for (const std::string &p : d->load.problems) QWARN("%s: %s", d->file.c_str(), p.c_str());
  g_data = std::move(d);
  return true;
}

// The read of F5 on its worker thread. The worker writes `data`, `ok` and
// `error`, then sets `done`; the window reads them only after that.
struct ReadJob {
  std::string path;
  int thin = 0;
  std::unique_ptr<MeasuredData> data;
  bool ok = false;
  std::string error;
  std::atomic<bool> done{false};
  bool cancelled = false;  // the window's own
  std::thread worker;
};
std::unique_ptr<ReadJob> g_read;

void ReadWork(ReadJob *job) {
  // Below the window's thread, as the fit's worker.
  setpriority(PRIO_PROCESS, id_t(syscall(SYS_gettid)), 10);
  job->data = std::make_unique<MeasuredData>();
  job->ok = ReadQuietly(job->path, job->thin, job->data.get(), &job->error);
  job->done = true;
}

}  // namespace

bool DataLoad(const char *path, int thin) {
  DataDrop();
  auto d = std::make_unique<MeasuredData>();
  std::string error;
  const bool ok = ReadQuietly(path, thin, d.get(), &error);
  return TakeRead(std::move(d), ok, error);
}

bool DataLoadStart(const char *path, int thin) {
  if (g_read) return false;
  DataDrop();
  g_read = std::make_unique<ReadJob>();
  g_read->path = path;
  g_read->thin = thin;
  g_read->worker = std::thread(ReadWork, g_read.get());
  return true;
}

bool DataLoading() { return g_read != nullptr; }

const std::string &DataLoadingFile() {
  static const std::string none;
  return g_read ? g_read->path : none;
}

bool DataPoll() {
  if (!g_read || !g_read->done) return false;
  g_read->worker.join();
  std::unique_ptr<ReadJob> job = std::move(g_read);
  if (!job->cancelled) TakeRead(std::move(job->data), job->ok, job->error);
  return true;
}

void DataLoadCancel() {
  if (g_read) g_read->cancelled = true;
}

bool DataLoadCancelled() { return g_read && g_read->cancelled; }

void DataLoadWait() {
  if (!g_read) return;
  g_read->worker.join();
  g_read.reset();
}

void DataDrop() {
  g_data.reset();
  g_shownSetPoint = -1;
  g_points = PlotPoints();
}

const MeasuredData *DataGet() { return g_data.get(); }

int DataNearestSetPoint(float load, float camberDeg) {
  if (!g_data || g_data->setPoints.empty()) return -1;
  // Nearest load first; among the set points at that load (within the
  // drawing tolerance) the nearest camber; among those the first.
  int best = -1;
  double bestLoad = HUGE_VAL;
  for (size_t i = 0; i < g_data->setPoints.size(); i++) {
    double d = std::fabs(g_data->setPoints[i].fz - load);
    if (d < bestLoad) bestLoad = d, best = int(i);
  }
  const double loadAt = g_data->setPoints[size_t(best)].fz;
  double bestCamber = HUGE_VAL;
  for (size_t i = 0; i < g_data->setPoints.size(); i++) {
    const KSetPoint &s = g_data->setPoints[i];
    if (std::fabs(s.fz - loadAt) > PLOT_DATA_LOAD_SHARE * loadAt) continue;
    double d = std::fabs(s.gamma * CURVE_RAD2DEG - camberDeg);
    if (d < bestCamber - 1e-9) bestCamber = d, best = int(i);
  }
  return best;
}

const PlotPoints *DataPointsAt(float load, float camberDeg, int *setPoint) {
  const int sp = DataNearestSetPoint(load, camberDeg);
  if (setPoint) *setPoint = sp;
  if (sp < 0) return nullptr;
  if (sp != g_shownSetPoint) {
    // The set point's own points, taken at its own load and camber as
    // plot --data takes a file's points at the operating point.
    KMeasuredData one;
    for (int ch = 0; ch < KCH_COUNT; ch++) one.has[ch] = g_data->load.data.has[ch];
    for (size_t i = 0; i < g_data->load.data.points.size() && i < g_data->setPoint.size(); i++)
      if (g_data->setPoint[i] == sp) one.points.push_back(g_data->load.data.points[i]);
    const KSetPoint &s = g_data->setPoints[size_t(sp)];
    g_points = PlotPoints();
    PlotPointsFromMeasured(one, float(s.fz), float(s.gamma), &g_points);
    g_shownSetPoint = sp;
  }
  return &g_points;
}

std::string DataHint(float load, float camberDeg) {
  const int sp = DataNearestSetPoint(load, camberDeg);
  if (sp < 0) return "F5 data: none";
  const KSetPoint &s = g_data->setPoints[size_t(sp)];
  char buf[160];
  int n = snprintf(buf, sizeof buf, "F5 %d/%zu: %.0f N %.3g deg", sp + 1, g_data->setPoints.size(),
                   s.fz, s.gamma * CURVE_RAD2DEG);
  if (s.pressure > 0 && n > 0 && size_t(n) < sizeof buf)
    snprintf(buf + n, sizeof buf - size_t(n), " %.0f kPa", s.pressure / 1000.0);
  return buf;
}
