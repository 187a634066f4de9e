// Problems of the library in Python's terms: errors raise tyrograph.Error,
// warnings become tyrograph.TyreWarning, each with the library's own text
// ("file:line: message" where the problem has a place). The exception
// carries the place too, as its `file` and `line` attributes (None when the
// problem has none).
//
// A PyReports scope collects the reports of its own thread while the
// library works (diag/qcollect.h; the GIL may be released inside it).
#pragma once

#include <pybind11/pybind11.h>

#include <string>
#include <vector>

#include "diag/qcollect.h"

// Issues the warnings among `problems`, then raises tyrograph.Error with the
// errors (one a line) when there are any and `errorsRaise` is set;
// otherwise the errors become warnings too. With the GIL held.
void PyDeliver(const std::vector<QProblem> &problems, bool errorsRaise = true);

class PyReports {
 public:
  // The collected problems, then `extra` after them, delivered as PyDeliver does.
  void Deliver(bool errorsRaise = true, const std::vector<QProblem> &extra = {});

  QReportCollector collector;
};

// Raises tyrograph.Error for `problem` (never returns).
[[noreturn]] void PyRaiseError(const QProblem &problem);
[[noreturn]] void PyRaiseError(const std::string &message);
// Raises tyrograph.Error with `message` (no place) carrying `attributes` as
// attributes of the exception (a refused fit's figures).
[[noreturn]] void PyRaiseErrorWith(const std::string &message, const pybind11::dict &attributes);
// Issues `message` as a tyrograph.TyreWarning.
void PyWarn(const std::string &message);

// Makes tyrograph.Error and tyrograph.TyreWarning in module `m`.
void PyReportsRegister(pybind11::module_ &m);
