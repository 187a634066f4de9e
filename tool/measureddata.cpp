// F5's data: reading, set points, the points drawn at the operating point.
#include "tool/measureddata.h"

#include <cmath>
#include <cstdio>
#include <memory>

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

}  // namespace

bool DataLoad(const char *path, int thin) {
  DataDrop();
  auto d = std::make_unique<MeasuredData>();
  d->file = path;
  KRunOptions runOptions;  // automatic axes, units from the file
  KConditionOptions conditionOptions;
  conditionOptions.thin = thin;
  if (!KDataLoadFile(path, runOptions, conditionOptions, false, &d->load)) return false;  // reported
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
  QNOTE("%s", d->note.c_str());
  for (const std::string &p : d->load.problems) QWARN("%s: %s", d->file.c_str(), p.c_str());
  g_data = std::move(d);
  return true;
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
