// Problems into Python exceptions and warnings.
#include "python/reports.h"

#include <algorithm>

namespace py = pybind11;

namespace {

// tyrograph.Error or tyrograph.TyreWarning: the module holds them.
py::object ModuleType(const char *name) { return py::module_::import("tyrograph._tyrograph").attr(name); }

// Raises tyrograph.Error with `text`, its place from `first`.
[[noreturn]] void Raise(const std::string &text, const QProblem &first) {
  const py::object type = ModuleType("Error");
  py::object e = type(text);
  e.attr("file") = first.file.empty() ? py::object(py::none()) : py::object(py::str(first.file));
  e.attr("line") = first.line > 0 ? py::object(py::int_(first.line)) : py::object(py::none());
  PyErr_SetObject(type.ptr(), e.ptr());
  throw py::error_already_set();
}

}  // namespace

void PyDeliver(const std::vector<QProblem> &problems, bool errorsRaise) {
  std::vector<std::string> asWarnings;
  std::vector<const QProblem *> errors;
  for (const QProblem &p : problems) {
    if (!p.warning && errorsRaise) {
      errors.push_back(&p);
      continue;
    }
    // the same text twice in one call says nothing new (a batch in steps)
    const std::string text = p.Text();
    if (std::find(asWarnings.begin(), asWarnings.end(), text) == asWarnings.end()) asWarnings.push_back(text);
  }
  const py::object warning = asWarnings.empty() ? py::object() : ModuleType("TyreWarning");
  for (const std::string &w : asWarnings)
    if (PyErr_WarnEx(warning.ptr(), w.c_str(), 2) < 0) throw py::error_already_set();
  if (errors.empty()) return;
  std::string text;
  for (const QProblem *e : errors) text += (text.empty() ? "" : "\n") + e->Text();
  Raise(text, *errors.front());
}

void PyReports::Deliver(bool errorsRaise, const std::vector<QProblem> &extra) {
  std::vector<QProblem> all = collector.problems;
  all.insert(all.end(), extra.begin(), extra.end());
  collector.problems.clear();
  PyDeliver(all, errorsRaise);
}

void PyRaiseError(const QProblem &problem) { Raise(problem.Text(), problem); }

void PyRaiseError(const std::string &message) { PyRaiseError(QProblemFromText(message)); }

void PyRaiseErrorWith(const std::string &message, const py::dict &attributes) {
  const py::object type = ModuleType("Error");
  py::object e = type(message);
  e.attr("file") = py::none();
  e.attr("line") = py::none();
  for (const auto &item : attributes) e.attr(item.first) = item.second;
  PyErr_SetObject(type.ptr(), e.ptr());
  throw py::error_already_set();
}

void PyWarn(const std::string &message) {
  if (PyErr_WarnEx(ModuleType("TyreWarning").ptr(), message.c_str(), 2) < 0) throw py::error_already_set();
}

void PyReportsRegister(py::module_ &m) {
  PyObject *error = PyErr_NewExceptionWithDoc("tyrograph.Error",
                                              "A problem the tyre library reported, in its own words; `file` and\n"
                                              "`line` name its place in the input when it has one (else None).",
                                              PyExc_RuntimeError, nullptr);
  PyObject *warning = PyErr_NewExceptionWithDoc("tyrograph.TyreWarning",
                                                "A warning of the tyre library, in its own words.", PyExc_UserWarning,
                                                nullptr);
  // the module holds the only references
  m.add_object("Error", py::reinterpret_steal<py::object>(error));
  m.add_object("TyreWarning", py::reinterpret_steal<py::object>(warning));
}
