// Helpers of the window tests: those of the chart tests (golden files, the
// test car, scratch folders), and the session's graphs on the test car.
#pragma once

#include <utility>

#include "tests/chart/golden.h"
#include "tool/session.h"

// The session's three chained graphs, every wheel loaded from the test car.
inline void CreateTouringGraphs() {
  CreateTouringGraphs(session.graphs);
  session.wheel = 0;
}

inline void DeleteGraphs() { DeleteGraphs(session.graphs); }
