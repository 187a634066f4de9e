// Collecting reports as values: while a QReportCollector lives, the errors
// and warnings reported on its thread land in its list instead of standard
// error and the log; debug lines are dropped. A library call that returns
// its problems runs its work inside one.
//
// Collectors nest (the innermost of a thread collects) and may live on
// several threads at once; reports of a thread without one go to standard
// error while any collector lives. Installing the hooks takes a lock; a
// report takes none.
#pragma once

#include <vector>

#include "diag/qproblem.h"

class QReportCollector {
 public:
  QReportCollector();
  ~QReportCollector();
  QReportCollector(const QReportCollector &) = delete;
  QReportCollector &operator=(const QReportCollector &) = delete;

  std::vector<QProblem> problems;  // in the order reported
 private:
  QReportCollector *outer;
};
