// PyReports: the report hooks of diag/qdebug.h, routed per thread.
#include "python/reports.h"

#include <algorithm>
#include <cstdio>
#include <mutex>

#include "diag/qdebug.h"

namespace py = pybind11;

namespace {

thread_local PyReports *current = nullptr;
std::mutex hookMutex;
int scopes = 0;  // live scopes on all threads; the hooks stay while any is
QReportHook prevErr, prevWarn, prevDbg;
PyObject *errorType = nullptr;
PyObject *warningType = nullptr;

std::string Trimmed(const char *message) {
  std::string s = message ? message : "";
  while (!s.empty() && (s.back() == '\n' || s.back() == '\r')) s.pop_back();
  return s;
}

int OnError(const char *, const char *message) {
  if (current) current->errors.push_back(Trimmed(message));
  else fprintf(stderr, "%s\n", Trimmed(message).c_str());
  return 0;
}

int OnWarning(const char *, const char *message) {
  if (current) current->warnings.push_back(Trimmed(message));
  else fprintf(stderr, "%s\n", Trimmed(message).c_str());
  return 0;
}

int OnDebug(const char *, const char *) { return 0; }

}  // namespace

PyReports::PyReports() {
  std::lock_guard<std::mutex> lock(hookMutex);
  if (scopes++ == 0) {
    prevErr = qSetErrorHook(OnError);
    prevWarn = qSetWarnHook(OnWarning);
    prevDbg = qSetDebugHook(OnDebug);
  }
  current = this;
}

PyReports::~PyReports() {
  current = nullptr;
  std::lock_guard<std::mutex> lock(hookMutex);
  if (--scopes == 0) {
    qSetErrorHook(prevErr);
    qSetWarnHook(prevWarn);
    qSetDebugHook(prevDbg);
  }
}

void PyReports::Deliver(bool errorsRaise) {
  std::vector<std::string> asWarnings;
  for (const std::vector<std::string> *from : {&warnings, errorsRaise ? nullptr : &errors})
    for (size_t i = 0; from && i < from->size(); i++)
      // the same text twice in one call says nothing new (a batch in steps)
      if (std::find(asWarnings.begin(), asWarnings.end(), (*from)[i]) == asWarnings.end())
        asWarnings.push_back((*from)[i]);
  for (const std::string &w : asWarnings)
    if (PyErr_WarnEx(warningType, w.c_str(), 2) < 0) throw py::error_already_set();
  if (!errorsRaise || errors.empty()) return;
  std::string text;
  for (const std::string &e : errors) text += (text.empty() ? "" : "\n") + e;
  PyRaiseError(text);
}

void PyRaiseError(const std::string &message) {
  PyErr_SetString(errorType, message.c_str());
  throw py::error_already_set();
}

void PyReportsRegister(py::module_ &m) {
  errorType = PyErr_NewExceptionWithDoc("tyrograph.Error",
                                        "A problem the tyre library reported, in its own words.",
                                        PyExc_RuntimeError, nullptr);
  warningType = PyErr_NewExceptionWithDoc("tyrograph.TyreWarning",
                                          "A warning of the tyre library, in its own words.",
                                          PyExc_UserWarning, nullptr);
  m.add_object("Error", py::handle(errorType));
  m.add_object("TyreWarning", py::handle(warningType));
}
