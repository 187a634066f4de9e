// What the library reports during a call from Python, turned into Python's
// terms: errors into tyrograph.Error, warnings into tyrograph.TyreWarning,
// each carrying the library's own message text.
//
// A PyReports scope collects the reports of its own thread (the GIL may be
// released inside it); reports of other threads, outside any scope, go to
// standard error. Debug notes are dropped.
#pragma once

#include <pybind11/pybind11.h>

#include <string>
#include <vector>

class PyReports {
 public:
  PyReports();
  ~PyReports();
  PyReports(const PyReports &) = delete;
  PyReports &operator=(const PyReports &) = delete;

  // With the GIL held: issues the warnings, then raises tyrograph.Error with
  // the errors (one a line) when there are any and `errorsRaise` is set;
  // otherwise the errors become warnings too.
  void Deliver(bool errorsRaise = true);

  std::vector<std::string> errors, warnings;
};

// Raises tyrograph.Error with `message` (never returns).
[[noreturn]] void PyRaiseError(const std::string &message);

// Makes tyrograph.Error and tyrograph.TyreWarning in module `m`.
void PyReportsRegister(pybind11::module_ &m);
