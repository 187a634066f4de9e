// tyrograph._tyrograph: the tyre library for Python. Every function here
// calls the library tyrograph-cli calls (chart/carload.h, chart/graphtyres.h,
// chart/export.h, chart/fitrun.h, tyre/kpacejka_batch.h); nothing of the
// models is redone, and the library's problems come back as values
// (python/reports.h).
//
//   [1] Tyre: a loaded tyre, its edits and its members
//   [2] eval: the batch over broadcast NumPy arrays
//   [3] curves and exports: the window's graphs of the tyre in memory
//   [4] fit and convert: the library's driver
//   [5] the module
#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <ctime>

#include "base/qfile.h"
#include "chart/carload.h"
#include "chart/curves.h"
#include "chart/export.h"
#include "chart/fitrun.h"
#include "chart/graphtyres.h"
#include "python/measured.h"
#include "python/reports.h"
#include "tyre/kpacejka.h"
#include "tyre/kpacejka_batch.h"
#include "tyre/kpacejka_tirwrite.h"

namespace py = pybind11;
using namespace pybind11::literals;

namespace {

// ==== [1] Tyre ====================================================================

struct PyTyre {
  std::string source;
  int wheel = 0;
  TyreEdits sets;  // edits in order, replayed on `base` by curves and exports
  std::unique_ptr<KPacejka> base = std::make_unique<KPacejka>();  // as loaded
  std::unique_ptr<KPacejka> tyre = std::make_unique<KPacejka>();  // with the edits
};

// A failed load raises; errors the loader recovered from (an unknown
// FITTYP read as 5.2, say) raise only when `strict`, else they warn as the
// CLI prints them and goes on.
PyTyre Load(const std::string &path, int wheel, bool strict) {
  PyTyre t;
  t.source = path;
  t.wheel = wheel;
  std::string error;
  PyReports reports;
  std::vector<QProblem> failed;
  if (!CarLoadTyreSource(path.c_str(), wheel, t.base.get(), &error)) {
    failed.push_back(QProblemFromText(error));
    QProblemPlace(&failed.back(), path);
    strict = true;
  }
  // the load's problem first, then what the loader reported on the way
  failed.insert(failed.end(), reports.collector.problems.begin(), reports.collector.problems.end());
  reports.collector.problems.clear();
  PyDeliver(failed, strict);
  GraphTyreCopy(*t.base, t.tyre.get());
  return t;
}

// The tyre of a fit or convert, as it was written to `out`.
PyTyre FromFitted(const std::string &out, std::unique_ptr<KPacejka> fitted) {
  PyTyre t;
  t.source = out;
  t.base = std::move(fitted);
  GraphTyreCopy(*t.base, t.tyre.get());
  return t;
}

const KPacejkaMember &FindMember(const std::string &name) {
  const KPacejkaMember *m = KPacejkaFindMember(name.c_str());
  if (!m) {
    PyErr_SetString(PyExc_KeyError, ("unknown tyre member '" + name + "'").c_str());
    throw py::error_already_set();
  }
  return *m;
}

py::object GetMember(const PyTyre &t, const std::string &name) {
  const KPacejkaMember &m = FindMember(name);
  const double v = KPacejkaGetMember(*t.tyre, m);
  if (m.kind == KPacejkaMember::FLOAT) return py::float_(v);
  return py::int_(static_cast<long long>(v));
}

// The checks of --set: a member of the table and a finite number, stored
// as the single-precision value the option parses to.
void SetMember(PyTyre &t, const std::string &name, double value) {
  const KPacejkaMember &m = FindMember(name);
  if (!std::isfinite(value) || !std::isfinite(float(value))) {
    PyErr_SetString(PyExc_ValueError, (name + ": '" + py::str(py::float_(value)).cast<std::string>() +
                                       "' is not a number").c_str());
    throw py::error_already_set();
  }
  const float v = float(value);
  KPacejkaSetMember(*t.tyre, m, v);
  t.sets.emplace_back(name, v);
}

std::vector<std::string> MemberNames() {
  std::vector<std::string> names;
  for (int i = 0; i < kpacejkaMemberCount; i++) names.push_back(kpacejkaMembers[i].name);
  return names;
}

// ==== [2] eval ====================================================================

// The module's own types (made at import), by name.
py::object ModuleType(const char *name) { return py::module_::import("tyrograph._tyrograph").attr(name); }

// One broadcast input as the batch reads it: a float64 or float32 buffer
// in C order, one value for every point (a scalar), or else a float32 copy
// NumPy makes. float64 rounds to float32 once, as the CLI's numbers do.
struct Input {
  const double *f64 = nullptr;
  const float *f32 = nullptr;
  bool constant = false;
  float value = 0.0f;
  py::array keep;  // the array the pointers point into

  explicit Input(const py::array &a) : keep(a) {
    bool allZeroStrides = true;
    for (py::ssize_t d = 0; d < a.ndim(); d++) allZeroStrides = allZeroStrides && (a.strides(d) == 0 || a.shape(d) == 1);
    const bool contiguous = (a.flags() & py::array::c_style) != 0;
    const bool isDouble = a.dtype().is(py::dtype::of<double>());
    const bool isFloat = a.dtype().is(py::dtype::of<float>());
    if (a.size() > 0 && allZeroStrides && (isDouble || isFloat)) {
      constant = true;
      value = isDouble ? float(*static_cast<const double *>(a.data())) : *static_cast<const float *>(a.data());
    } else if (contiguous && isDouble) {
      f64 = static_cast<const double *>(a.data());
    } else if (contiguous && isFloat) {
      f32 = static_cast<const float *>(a.data());
    } else {
      keep = py::array_t<float, py::array::c_style | py::array::forcecast>::ensure(a);
      if (!keep) throw py::error_already_set();
      f32 = static_cast<const float *>(keep.data());
    }
  }

  // Points [at, at + m) as float32: straight from the buffer, or converted
  // into `scratch`.
  const float *Points(size_t at, size_t m, float *scratch) const {
    if (f32) return f32 + at;
    if (constant) std::fill(scratch, scratch + m, value);
    else std::transform(f64 + at, f64 + at + m, scratch, [](double v) { return float(v); });
    return scratch;
  }
};

// Points per step: the inputs, converted, and the results stay in cache.
// float64 arrays go to the batch as they are (it rounds them as it reads).
constexpr size_t EVAL_CHUNK = 2048;

// The inflation pressure a call asks for (Pa; None: 0, the nominal one);
// ValueError when the tyre cannot run at it.
float PressureOf(const KTyreParams &tyre, const py::object &pressure) {
  if (pressure.is_none()) return 0.0f;
  const float p = pressure.cast<float>();
  if (const char *problem = KPacejkaPressureProblem(tyre, p)) {
    PyErr_SetString(PyExc_ValueError, (std::string("pressure: ") + problem).c_str());
    throw py::error_already_set();
  }
  return p;
}

py::object Eval(const PyTyre &t, const py::object &fz, const py::object &kappa, const py::object &alpha,
                const py::object &gamma, bool exact, const py::object &dtype, const py::object &pressure) {
  const float pascals = PressureOf(*t.tyre, pressure);
  py::module_ np = py::module_::import("numpy");
  const py::dtype outType = py::dtype::from_args(dtype);
  if (outType.kind() != 'f' || (outType.itemsize() != 4 && outType.itemsize() != 8)) {
    PyErr_SetString(PyExc_ValueError, "dtype: results come as float32 or float64");
    throw py::error_already_set();
  }
  const bool out64 = outType.itemsize() == 8;
  // 1. each input as a float array, then all to one shape (NumPy's rules;
  //    shapes that do not broadcast raise its ValueError)
  py::list arrays;
  for (const py::object *in : {&fz, &kappa, &alpha, &gamma}) {
    py::array a = np.attr("asarray")(*in);
    const char kind = a.dtype().kind();
    if (kind != 'f' && kind != 'i' && kind != 'u' && kind != 'b') {
      PyErr_SetString(PyExc_TypeError, "eval: inputs must be real numbers (float64 is the native input)");
      throw py::error_already_set();
    }
    if (kind != 'f' || a.dtype().itemsize() > 8) a = np.attr("asarray")(a, "float64");
    arrays.append(a);
  }
  py::tuple b = np.attr("broadcast_arrays")(*arrays);
  const Input in[4] = {Input(b[0]), Input(b[1]), Input(b[2]), Input(b[3])};
  const py::array first = b[0];
  const std::vector<py::ssize_t> shape(first.shape(), first.shape() + first.ndim());
  const size_t n = size_t(first.size());
  py::array out[3];
  for (py::array &o : out) o = out64 ? py::array(py::array_t<double>(shape)) : py::array(py::array_t<float>(shape));
  // 2. the batch a chunk at a time, without the GIL
  {
    PyReports reports;
    {
      py::gil_scoped_release free;
      const KBatchMode mode = exact ? KBATCH_EXACT : KBATCH_FAST;
      const bool allDouble = in[0].f64 && in[1].f64 && in[2].f64 && in[3].f64;
      std::vector<float> scratch(7 * EVAL_CHUNK);
      const std::vector<double> at64(pascals > 0 ? EVAL_CHUNK : 0, double(pascals));
      const std::vector<float> at32(pascals > 0 ? EVAL_CHUNK : 0, pascals);
      for (size_t at = 0; at < n; at += EVAL_CHUNK) {
        const size_t m = n - at < EVAL_CHUNK ? n - at : EVAL_CHUNK;
        float *r[3];
        for (int q = 0; q < 3; q++)
          r[q] = out64 ? &scratch[size_t(4 + q) * EVAL_CHUNK] : static_cast<float *>(out[q].mutable_data()) + at;
        if (allDouble) {
          // the batch rounds each input as it reads it
          KPacejkaEvaluateBatchDoubleAtPressure(*t.tyre, m, in[0].f64 + at, in[1].f64 + at, in[2].f64 + at,
                                                in[3].f64 + at, at64.empty() ? nullptr : at64.data(), r[0], r[1],
                                                r[2], mode);
        } else {
          const float *p[4];
          for (int k = 0; k < 4; k++) p[k] = in[k].Points(at, m, &scratch[size_t(k) * EVAL_CHUNK]);
          KPacejkaEvaluateBatchAtPressure(*t.tyre, m, p[0], p[1], p[2], p[3], at32.empty() ? nullptr : at32.data(),
                                          r[0], r[1], r[2], mode);
        }
        if (out64)
          for (int q = 0; q < 3; q++) {
            double *o = static_cast<double *>(out[q].mutable_data()) + at;
            for (size_t i = 0; i < m; i++) o[i] = double(r[q][i]);
          }
      }
    }
    // A non-finite input is a defined result (the NaN guard's 0): warn.
    reports.Deliver(false);
  }
  return ModuleType("Forces")(out[0], out[1], out[2]);
}

// ==== [3] curves and exports ========================================================

// The tyre of the window's graphs for `t` at an operating point, in memory.
std::unique_ptr<KPacejka> Graphs(const PyTyre &t, float load, float slipRatio, float slipAngle, float camber) {
  auto g = std::make_unique<KPacejka>();
  OperatingPoint point;
  point.load = load;
  point.slipRatio = slipRatio;
  point.slipAngle = slipAngle;
  point.camber = camber;
  PyReports reports;
  GraphTyreFrom(*t.base, point, t.sets, g.get());
  reports.Deliver(false);
  return g;
}

py::dict Curves(const PyTyre &t, float load, float slipRatio, float slipAngle, float camber, bool zoom,
                const py::object &pressure) {
  std::unique_ptr<KPacejka> g = Graphs(t, load, slipRatio, slipAngle, camber);
  g->SetPressure(PressureOf(*g, pressure));
  CurveRange ranges[CURVE_COUNT];
  Curve curves[CURVE_COUNT];
  {
    PyReports reports;
    GraphTyresSample(*g, zoom, ranges, curves);
    reports.Deliver(false);
  }
  static const char *const names[CURVE_COUNT] = {"Fx", "Fy", "Mz"};
  py::dict out;
  const py::object namedCurve = ModuleType("Curve");
  for (int g = 0; g < CURVE_COUNT; g++) {
    py::array_t<float> x(CURVE_SAMPLES), y(CURVE_SAMPLES);
    for (int i = 0; i < CURVE_SAMPLES; i++) {
      x.mutable_data()[i] = CurveSampleX(ranges[g], i);
      y.mutable_data()[i] = curves[g].samples[i];
    }
    out[names[g]] = namedCurve(x, y, double(curves[g].peakX), double(curves[g].peakValue));
  }
  return out;
}

// The export's text (bytes as latin-1, so every byte maps to one character),
// or None after writing it to `path` as the CLI's -o does.
py::object Emit(const std::string &text, const py::object &path) {
  if (path.is_none()) return py::reinterpret_steal<py::object>(PyUnicode_DecodeLatin1(text.data(), py::ssize_t(text.size()), nullptr));
  const std::string file = py::str(path);
  if (!ExportWriteFile(file.c_str(), text)) PyRaiseError(file + ": can't open output file for writing");
  return py::none();
}

py::object ExportAscii(const PyTyre &t, int steps, float maximum, const py::object &path, float load, float slipRatio,
                       float slipAngle, float camber) {
  if (!(steps >= 0 && maximum > 0.0f)) {
    PyErr_SetString(PyExc_ValueError, "export_ascii: needs steps >= 0 and maximum > 0");
    throw py::error_already_set();
  }
  std::unique_ptr<KPacejka> g = Graphs(t, load, slipRatio, slipAngle, camber);
  std::string text;
  {
    PyReports reports;
    text = ExportAsciiText(g.get(), g.get(), steps, maximum);
    reports.Deliver(false);
  }
  return Emit(text, path);
}

py::object ExportCarIni(const PyTyre &t, const py::object &path, float load, float slipRatio, float slipAngle,
                        float camber, bool zoom) {
  std::unique_ptr<KPacejka> g = Graphs(t, load, slipRatio, slipAngle, camber);
  std::string text;
  {
    PyReports reports;
    // The statistics are the peaks of the curves the window last drew.
    CurveRange ranges[CURVE_COUNT];
    Curve curves[CURVE_COUNT];
    GraphTyresSample(*g, zoom, ranges, curves);
    text = ExportCarIniText(*g, curves[CURVE_FX].peakX, curves[CURVE_FY].peakX);
    reports.Deliver(false);
  }
  return Emit(text, path);
}

// The tyre as tyrograph-cli export-tir writes it: text, or the file `path`
// (kept when it exists, unless `force`).
py::object WriteTir(const PyTyre &t, const py::object &path, bool force) {
  std::string file;
  if (!path.is_none()) file = py::str(path);
  if (!file.empty() && !force && QFileExists(file.c_str(), false))
    PyRaiseError(file + " exists; pass force=True to overwrite it");
  std::unique_ptr<KPacejka> g = Graphs(t, 2500.0f, 0.0f, 0.0f, 0.0f);
  PyReports reports;
  std::string text;
  if (file.empty()) KPacejkaTirText(*g, &text);
  else KPacejkaWriteTirFile(file.c_str(), *g);
  reports.Deliver();
  if (file.empty()) return py::reinterpret_steal<py::object>(PyUnicode_DecodeLatin1(text.data(), py::ssize_t(text.size()), nullptr));
  return py::none();
}

// ==== [4] fit and convert ============================================================

// The driver's job from the keyword arguments; a model name the fitter does
// not know raises.
FitJob Job(bool convert, const std::string &input, const std::string &model, const py::object &out, int wheel,
           const py::object &report, bool force) {
  FitJob job;
  job.convert = convert;
  job.input = input;
  if (!KFitModelByName(model.c_str(), &job.model)) {
    QProblem p;
    p.message = "model: '" + model + "' is not pac96, mf52 or mf61";
    PyRaiseError(p);
  }
  if (!out.is_none()) job.out = py::str(out);
  job.wheel = wheel;
  if (!report.is_none()) job.report = py::str(report);
  job.force = force;
  return job;
}

// Runs the driver without the GIL; the figures as a dict, with the tyre
// written.
py::dict Fit(const FitJob &job) {
  FitOutcome o;
  {
    py::gil_scoped_release free;
    o = FitRun(job);
  }
  PyDeliver(o.problems, true);
  const KFitResult &r = o.result;
  py::dict channels;
  for (int ch = 0; ch < KCH_COUNT; ch++) {
    const KFitChannelStats &c = r.channel[ch];
    if (!c.points) continue;
    channels[KChannelName(ch)] = py::dict("points"_a = c.points, "rms"_a = c.rms, "rms_percent"_a = c.rmsPercent,
                                          "peak"_a = c.peak, "r2"_a = c.r2, "mirrored"_a = r.mirrored[ch]);
  }
  py::object pressure = py::none();
  if (!r.pressures.empty()) {
    py::list setPoints;
    for (const KFitPressureSetPoint &p : r.pressures) setPoints.append(py::make_tuple(p.pressure, p.points));
    py::dict d("set_points"_a = setPoints, "stages"_a = r.pressureStages, "note"_a = KFitPressureNote(r, job.model));
    d["nompres"] = r.pressureStages > 0 ? py::object(py::float_(r.nominalPressure)) : py::object(py::none());
    d["nompres_from"] = r.pressureStages == 0 ? py::object(py::none())
                                              : py::object(py::str(r.nominalFromStart ? "start" : "most points"));
    d["pure_stages_at"] = r.pressureStages > 0 ? py::object(py::float_(r.stagePressure)) : py::object(py::none());
    pressure = d;
  }
  // a fitted channel below FIT_MIN_R2 refuses the fit, as the command's
  // status 3 does: the tyre is written (and returned) only with force=True
  std::string poor;
  for (int ch : o.ok ? FitPoorChannels(job, r) : std::vector<int>()) {
    char buf[200];
    snprintf(buf, sizeof buf, "%s fits poorly: R2 = %.4g, below %g (check the data's units, signs and columns)",
             KChannelName(ch), r.channel[ch].r2, FIT_MIN_R2);
    poor += (poor.empty() ? "" : "\n") + std::string(buf);
  }
  // what --axes auto decided for a run (it may have turned Mz round)
  py::object axes = py::none();
  if (o.data)
    for (const std::string &n : o.data->run.notes)
      if (n.compare(0, 10, "axes auto:") == 0) axes = py::str(n);
  const bool written = !job.out.empty() && (poor.empty() || job.force);
  py::dict figures("tyre"_a = py::cast(FromFitted(written ? job.out : std::string(), std::move(o.tyre))),
                   "model"_a = KFitModelKey(job.model),
                   "output"_a = written ? py::object(py::str(job.out)) : py::object(py::none()), "channels"_a = channels,
                   "pure_only"_a = r.pureOnly, "iterations"_a = r.iterations, "seconds"_a = r.seconds,
                   "pressure"_a = pressure, "axes"_a = axes);
  if (poor.empty()) return figures;
  if (!job.force)
    PyRaiseErrorWith(poor + "\nthe fit is refused" + (job.out.empty() ? "" : " and " + job.out + " not written") +
                         "; force=True keeps it all the same (the figures are on this exception's `figures`)",
                     py::dict("figures"_a = figures));
  PyWarn(poor + (job.out.empty() ? "" : "\n" + job.out + " written all the same (force=True)"));
  return figures;
}

// CPU time of the batch alone on float32 arrays (results into a buffer of
// its own): what bench/bench_python.py sets Tyre.eval's time beside.
double BatchSeconds(const PyTyre &t, const py::array_t<float, py::array::c_style | py::array::forcecast> &fz,
                    const py::array_t<float, py::array::c_style | py::array::forcecast> &kappa,
                    const py::array_t<float, py::array::c_style | py::array::forcecast> &alpha,
                    const py::array_t<float, py::array::c_style | py::array::forcecast> &gamma) {
  const size_t n = size_t(fz.size());
  if (kappa.size() != fz.size() || alpha.size() != fz.size() || gamma.size() != fz.size()) {
    PyErr_SetString(PyExc_ValueError, "_batch_seconds: four arrays of one size");
    throw py::error_already_set();
  }
  std::vector<float> out(3 * n);
  timespec t0, t1;
  PyReports reports;
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t0);
  KPacejkaEvaluateBatch(*t.tyre, n, fz.data(), kappa.data(), alpha.data(), gamma.data(), out.data(),
                        out.data() + n, out.data() + 2 * n, KBATCH_FAST);
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t1);
  reports.Deliver(false);
  return double(t1.tv_sec - t0.tv_sec) + 1e-9 * double(t1.tv_nsec - t0.tv_nsec);
}

}  // namespace

// ==== [5] the module =================================================================

PYBIND11_MODULE(_tyrograph, m) {
  m.doc() = "Tyrograph's tyre models: load a tyre, evaluate it over NumPy arrays, sample its curves, export it.";
  PyReportsRegister(m);
  MeasuredRegister(m);
  py::module_ collections = py::module_::import("collections");
  py::object forces = collections.attr("namedtuple")("Forces", "fx fy mz");
  forces.attr("__module__") = "tyrograph";
  py::object curve = collections.attr("namedtuple")("Curve", "x y peak_x peak_y");
  curve.attr("__module__") = "tyrograph";
  m.attr("Forces") = forces;
  m.attr("Curve") = curve;

  m.def("load", &Load, "path"_a, "wheel"_a = 0, "strict"_a = false,
        R"(Loads one tyre as tyrograph-cli reads its TYRE argument.

path: a .tir file (any case), a car.ini-style file or a car folder holding car.ini.
wheel: the car's wheel 0..3 (FL, FR, RL, RR); a TIR file gives the same tyre for each.
A tyre that cannot be loaded (no such file, no car.ini, a wheel out of
range) raises tyrograph.Error with the library's message. Problems the
loader reports and recovers from (the CLI prints them and goes on) come as
tyrograph.TyreWarning, or raise tyrograph.Error with strict=True.)");

  static const char *const fitFigures = R"(
Returns a dict: "tyre" (the fitted tyre, in memory), "model", "output" (the
file written, or None),
"channels" ({"Fx": {"points", "rms", "rms_percent", "peak", "r2",
"mirrored"}, ...} for each channel the data has), "pure_only",
"iterations", "seconds", "pressure" (None for data without pressures, else
{"set_points": [(Pa, points), ...], "stages", "nompres", "nompres_from",
"pure_stages_at", "note"}), "axes" (for a run read with axes="auto", what
it decided, as read_data()'s summary says it; else None): the figures the
command prints and its --report holds. A problem
raises tyrograph.Error with the library's message (for bad data
"FILE:LINE: column N (NAME): ..."), its `file` and `line` attributes naming
the place. A fitted channel with R2 below 0.5 refuses the fit (the
command's exit status 3): tyrograph.Error names the channel and its R2 and
carries the figures as its `figures` attribute, and nothing is written;
with force=True the figures come back, `out` is written, and the message
comes as a tyrograph.TyreWarning.)";
  m.def(
      "fit",
      [](const py::object &data, const std::string &model, const py::object &out, const py::object &start, int wheel,
         const py::object &report, bool force, const std::string &axes, const py::object &columns,
         const py::object &units, int thin) {
        FitJob job = Job(false, "", model, out, wheel, report, force);
        job.outOptional = true;
        if (!start.is_none()) job.start = py::str(start);
        MeasuredFitData(data, axes, columns, units, thin, &job);
        return Fit(job);
      },
      "data"_a, "model"_a, "out"_a = py::none(), "start"_a = py::none(), "wheel"_a = 0, "report"_a = py::none(),
      "force"_a = false, "axes"_a = "auto", "columns"_a = py::none(), "units"_a = py::none(), "thin"_a = 0,
      (std::string(R"(tyrograph-cli fit DATA --model MODEL [-o OUT] [--start TYRE] [--wheel N] [--report FILE] [--force].

Fits model "pac96", "mf52" or "mf61" to measured data: a path to a tidy CSV
file (columns fz, kappa, alpha, gamma, fx, fy, mz in eval's units) or to a
rig run (delimited text or TYDEX), or a mapping of column name to array (a
pandas DataFrame works). Runs and mappings are read and conditioned as
read_data() does (axes, columns, units, thin); data the plausibility checks
find wrong is refused with their messages. The fitted tyre is kept in
memory; with `out` it is also written there (a TIR file when the name ends
in .tir, else a car.ini). An existing `out` or `report` stays unless
force=True.)") + fitFigures).c_str());
  m.def(
      "convert",
      [](const std::string &source, const std::string &model, const py::object &out, int wheel,
         const py::object &report, bool force) {
        return Fit(Job(true, source, model, out, wheel, report, force));
      },
      "source"_a, "model"_a, "out"_a, "wheel"_a = 0, "report"_a = py::none(), "force"_a = false,
      (std::string(R"(tyrograph-cli convert SOURCE --model MODEL -o OUT [--wheel N] [--report FILE] [--force].

Samples the tyre `source` (as load() reads it) over its own ranges and fits
model "pac96", "mf52" or "mf61" to the samples; writes it to `out` as fit
does.)") + fitFigures).c_str());

  m.def("_batch_seconds", &BatchSeconds, "tyre"_a, "fz"_a, "kappa"_a, "alpha"_a, "gamma"_a,
        "CPU seconds of the C++ batch alone on float32 arrays (for bench/bench_python.py).");
  m.def("is_vector", &KPacejkaBatchIsVector,
        "True when Tyre.eval runs sixteen or eight points at a time on this processor (exact=False).");
  m.attr("CURVE_SAMPLES") = CURVE_SAMPLES;

  py::class_<PyTyre>(m, "Tyre", "One tyre: its model, its members by name, evaluation, curves and exports.")
      .def_property_readonly("model", [](const PyTyre &t) { return t.tyre->model; },
                             "Model number: 0 Pacejka89/96, 1 Magic Formula 5.2, 2 Pacejka2006, 3 Magic Formula 6.1.")
      .def_property_readonly("model_name", [](const PyTyre &t) { return std::string(t.tyre->GetModelName()); })
      .def_property_readonly("source", [](const PyTyre &t) { return t.source; })
      .def_property_readonly("wheel", [](const PyTyre &t) { return t.wheel; })
      .def("members", [](const PyTyre &) { return MemberNames(); },
           "Every member name, in the table's order (flags, a0 ... c17, lfz0 ..., model, ranges).")
      .def("__getitem__", &GetMember, "name"_a, "A member's value: float, or int for model and flags. KeyError for an unknown name.")
      .def("__setitem__", &SetMember, "name"_a, "value"_a,
           "Sets a member as tyrograph-cli --set does (stored in single precision). KeyError for an unknown\n"
           "name, ValueError for a value that is not a finite number.")
      .def("__contains__", [](const PyTyre &, const std::string &name) { return KPacejkaFindMember(name.c_str()) != nullptr; })
      .def("__repr__", [](const PyTyre &t) {
        return "<tyrograph.Tyre " + t.source + ", wheel " + std::to_string(t.wheel) + ": " + t.tyre->GetModelName() + ">";
      })
      .def("eval", &Eval, "fz"_a, "kappa"_a, "alpha"_a, "gamma"_a = 0.0, "exact"_a = false,
           "dtype"_a = py::dtype::of<float>(), "pressure"_a = py::none(),
           R"(Fx, Fy, Mz at operating points, as tyrograph-cli eval gives them.

pressure: the inflation pressure in Pa, as TIR files give it (eval's
--pressure), for every point; None (the default) runs the tyre at its
nominal pressure NOMPRES. ValueError for a tyre without pressure terms or
NOMPRES.

fz (N), kappa (slip ratio), alpha (slip angle, radians), gamma (camber,
radians): scalars or arrays, broadcast against each other by NumPy's rules
(shapes that do not broadcast raise ValueError). Inputs are taken as
float64 and rounded to the model's single precision; integers are fine.
Returns Forces(fx, fy, mz): three arrays of the broadcast shape (0-d for
scalar inputs), N, N and N·m, as float32 by default or float64 with
dtype=numpy.float64. Empty inputs give empty results.

Each point is evaluated as the setters plus Calculate do it (same clamping
into the tyre's ranges, guards, signs). exact=True gives Calculate's
results bit for bit; the default runs sixteen or eight points at a time where the
processor can (see is_vector()), whose sin/cos/atan/exp may round
differently in the last bits.

NaN or infinite inputs are evaluated too: the model's NaN guard turns a
non-finite force into 0 and its report comes as a tyrograph.TyreWarning
(once per process and quantity, as in the tool). Releases the GIL.)")
      .def("curves", &Curves, "load"_a = 2500.0f, "slip_ratio"_a = 0.0f, "slip_angle"_a = 0.0f, "camber"_a = 0.0f,
           "zoom"_a = true, "pressure"_a = py::none(), R"(The window's three graphs, as tyrograph-cli curves prints them.

pressure: the inflation pressure in Pa (curves' --pressure); None: NOMPRES.

load (N), slip_ratio, slip_angle (degrees), camber (degrees), zoom: the
window's operating point and "Zoom in horizontally" (the CLI's options).
Returns {"Fx": Curve, "Fy": Curve, "Mz": Curve}; Curve(x, y, peak_x, peak_y)
with x and y float32 arrays of 290 samples (x: slip ratio or degrees; y:
Fx/Fz, Fy/Fz, Mz in N·m) and the peak as floats. Like the CLI, each graph
takes the tyre as loaded, the operating point, then the edits made through
tyre[name] = value (as the CLI's --set).)")
      .def("export_ascii", &ExportAscii, "steps"_a = EXPORT_ASCII_DEFAULT_STEPS, "maximum"_a = EXPORT_ASCII_DEFAULT_MAX,
           "path"_a = py::none(), "load"_a = 2500.0f, "slip_ratio"_a = 0.0f, "slip_angle"_a = 0.0f, "camber"_a = 0.0f,
           R"(The "Export ASCII" file, the bytes of tyrograph-cli export-ascii.

Returns the text (one character per byte), or writes it to `path` and
returns None. ValueError unless steps >= 0 and maximum > 0.)")
      .def("export_carini", &ExportCarIni, "path"_a = py::none(), "load"_a = 2500.0f, "slip_ratio"_a = 0.0f,
           "slip_angle"_a = 0.0f, "camber"_a = 0.0f, "zoom"_a = true,
           R"(The "Export for Car.Ini" block, the bytes of tyrograph-cli export-carini.

Returns the text, or writes it to `path` and returns None.)")
      .def("write_tir", &WriteTir, "path"_a = py::none(), "force"_a = false,
           R"(The tyre as a TIR file, the bytes of tyrograph-cli export-tir.

Only Magic Formula 5.2 and 6.1 tyres have a TIR form; others raise
tyrograph.Error with the library's message. With `path`: writes the file
(an existing one only with force=True) and returns None; without: returns
the text.)");
}
