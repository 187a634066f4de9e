// Measured data for Python: tyrograph.read_data and the conditioning behind
// tyrograph.fit's path or mapping argument (python/measured.cpp).
#pragma once

#include <pybind11/pybind11.h>

// Adds read_data and _tidy_data to the module.
void MeasuredRegister(pybind11::module_ &m);
