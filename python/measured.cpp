// tyrograph.read_data, and the data of tyrograph.fit: a rig run (delimited text or TYDEX), a tidy CSV file
// or a mapping of column name to array (a pandas DataFrame is one), read,
// mapped onto our axes and conditioned by the library (tyre/kdataload.h)
// exactly as `tyrograph-cli data` and `fit` do; the points come back as
// NumPy arrays with the summary `data` prints, or go to the fit driver
// (chart/fitrun.h) in memory.
#include "python/measured.h"

#include <pybind11/numpy.h>
#include <pybind11/stl.h>

#include <string>
#include <vector>

#include "python/reports.h"
#include "tyre/kdataload.h"

namespace py = pybind11;
using namespace pybind11::literals;

namespace {

// keyword arguments -> the options `data` parses from its command line
KRunOptions RunOptions(const std::string &axes, const py::object &columns, const py::object &units) {
  KRunOptions o;
  if (!KRunParseAxes(axes, &o.axes)) PyRaiseError("axes: '" + axes + "' is not iso, sae or auto");
  auto pairs = [](const py::object &m, const char *what, bool (*parse)(const std::string &, KRunOptions *, std::string *),
                  KRunOptions *o) {
    if (m.is_none()) return;
    std::string text;
    for (auto item : py::cast<py::dict>(m)) {
      if (!text.empty()) text += ",";
      text += py::str(item.first).cast<std::string>() + "=" + py::str(item.second).cast<std::string>();
    }
    std::string error;
    if (!text.empty() && !parse(text, o, &error)) PyRaiseError(std::string(what) + ": " + error.substr(error.find(": ") + 2));
  };
  pairs(columns, "columns", KRunParseColumns, &o);
  pairs(units, "units", KRunParseUnits, &o);
  return o;
}

bool IsPath(const py::object &data) {
  return py::isinstance<py::str>(data) || py::hasattr(data, "__fspath__");
}

// Reads `data` (a path or a mapping) into `load`; raises with the library's
// message on a reading problem.
void Load(const py::object &data, const std::string &axes, const py::object &columns, const py::object &units, int thin,
          KDataLoad *load) {
  const KRunOptions ro = RunOptions(axes, columns, units);
  KConditionOptions co;
  if (thin < 0) PyRaiseError("thin: a number of points per sweep, 0 for all");
  co.thin = thin;
  const bool given = axes != "auto" || !columns.is_none() || !units.is_none() || thin > 0;
  PyReports reports;
  bool ok;
  if (IsPath(data)) {
    const std::string path = py::str(py::module_::import("os").attr("fspath")(data)).cast<std::string>();
    ok = KDataLoadFile(path.c_str(), ro, co, given, load);
  } else {
    // a mapping of column name to array: each column as float64
    std::vector<std::string> names;
    std::vector<py::array_t<double, py::array::c_style | py::array::forcecast>> arrays;
    size_t rows = 0;
    for (py::handle key : data.attr("keys")()) {
      names.push_back(py::str(key).cast<std::string>());
      arrays.push_back(py::array_t<double, py::array::c_style | py::array::forcecast>::ensure(
          py::module_::import("numpy").attr("asarray")(data.attr("__getitem__")(key), "dtype"_a = "float64")));
      if (!arrays.back() || arrays.back().ndim() != 1) PyRaiseError("column '" + names.back() + "': not a 1-D array of numbers");
      if (arrays.size() == 1) rows = size_t(arrays.back().size());
      if (size_t(arrays.back().size()) != rows)
        PyRaiseError("column '" + names.back() + "' has " + std::to_string(arrays.back().size()) + " values, column '" +
                     names.front() + "' " + std::to_string(rows));
    }
    std::vector<const double *> values;
    for (auto &a : arrays) values.push_back(a.data());
    KRunData run;
    ok = KRunFromColumns(names, values, rows, "<data>", ro, &run);
    if (ok) ok = KDataLoadRun(std::move(run), ro, co, load);
    else load->error = run.error;
  }
  if (!ok) PyRaiseError(load->error);  // the reader's own report of it is dropped with `reports`
  reports.Deliver(false);
}

py::array_t<double> Array(const std::vector<double> &v) {
  py::array_t<double> a(py::ssize_t(v.size()));
  std::copy(v.begin(), v.end(), a.mutable_data());
  return a;
}

py::dict ReadData(const py::object &data, const std::string &axes, const py::object &columns, const py::object &units,
                  int thin) {
  KDataLoad load;
  Load(data, axes, columns, units, thin, &load);
  const std::vector<KMeasuredPoint> &p = load.data.points;
  const size_t n = p.size();
  std::vector<double> col[7];
  for (auto &c : col) c.resize(n);
  for (size_t i = 0; i < n; i++) {
    col[0][i] = p[i].fz, col[1][i] = p[i].kappa, col[2][i] = p[i].alpha, col[3][i] = p[i].gamma;
    for (int ch = 0; ch < KCH_COUNT; ch++) col[4 + ch][i] = p[i].force[ch];
  }
  py::dict out;
  for (int c = 0; c < 4; c++) out[KMeasuredColumnName(c)] = Array(col[c]);
  for (int ch = 0; ch < KCH_COUNT; ch++)
    if (load.data.has[ch]) out[KMeasuredColumnName(4 + ch)] = Array(col[4 + ch]);
  py::list setPoints;
  if (load.tidy) {
    if (KMeasuredHasPressure(load.data)) {
      std::vector<double> pressure(n);
      for (size_t i = 0; i < n; i++) pressure[i] = p[i].pressure;
      out["pressure"] = Array(pressure);
    }
    out["summary"] = std::string(py::str(data)) + ": tidy CSV, " + std::to_string(n) + " points, read as they stand\n";
  } else {
    const KConditioned &c = load.conditioned;
    out["pressure"] = Array(c.pressure);
    out["speed"] = Array(c.speed);
    out["set_point"] = py::array_t<int>(py::ssize_t(n), c.setPoint.data());
    out["sweep"] = py::array_t<int>(py::ssize_t(n), c.sweep.data());
    for (const KSetPoint &s : c.setPoints)
      setPoints.append(py::dict("fz"_a = s.fz, "gamma"_a = s.gamma, "pressure"_a = s.pressure, "speed"_a = s.speed,
                                "points"_a = s.points));
    out["summary"] = KConditionSummary(load.run, c);
  }
  out["set_points"] = setPoints;
  out["tidy"] = load.tidy;
  out["problems"] = load.problems;
  return out;
}

}  // namespace

void MeasuredRegister(py::module_ &m) {
  m.def("read_data", &ReadData, "data"_a, "axes"_a = "auto", "columns"_a = py::none(), "units"_a = py::none(),
        "thin"_a = 0,
        R"(Reads measured data as tyrograph-cli data does, and conditions it as fit does.

data: a path to a rig run (delimited text with names and units rows, or
TYDEX) or to a tidy CSV file, or a mapping of column name to array (a
pandas DataFrame works); names as in files ("SA", "FZ", "SA[deg]", ...).
axes: "auto", "iso" or "sae". columns: {"fz": "Load2", ...}. units:
{"alpha": "deg", "fz": "kN", ...}. thin: points per sweep to keep at most.
Returns a dict of NumPy arrays "fz", "kappa", "alpha", "gamma" and the
measured ones of "fx", "fy", "mz" (our units and signs), for a run also
"pressure", "speed", "set_point", "sweep"; "set_points" (a list of dicts),
"summary" (the text data prints), "problems" (the plausibility checks'
messages, which make fit refuse) and "tidy". A reading problem raises
tyrograph.Error naming file, line and column.)");
}

void MeasuredFitData(const py::object &data, const std::string &axes, const py::object &columns,
                     const py::object &units, int thin, FitJob *job) {
  if (IsPath(data)) {
    // the driver reads the file, as tyrograph-cli fit does
    job->input = py::str(py::module_::import("os").attr("fspath")(data)).cast<std::string>();
    job->run = RunOptions(axes, columns, units);
    if (thin < 0) PyRaiseError("thin: a number of points per sweep, 0 for all");
    job->condition.thin = thin;
    job->raw = axes != "auto" || !columns.is_none() || !units.is_none() || thin > 0;
    return;
  }
  // a mapping: its columns read and conditioned here, handed over in memory
  auto load = std::make_shared<KDataLoad>();
  Load(data, axes, columns, units, thin, load.get());
  job->input = "<data>";
  job->data = std::move(load);
}
