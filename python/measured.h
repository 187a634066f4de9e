// Measured data for Python: tyrograph.read_data, and the data argument of
// tyrograph.fit (a path or a mapping of column name to array) made into
// the fit driver's job (python/measured.cpp).
#pragma once

#include <pybind11/pybind11.h>

#include <string>

#include "chart/fitrun.h"

// Adds read_data to the module.
void MeasuredRegister(pybind11::module_ &m);

// Fills the data side of a fit job: a path with the options to read it, as
// tyrograph-cli fit takes them; a mapping read and conditioned here (its
// reading problems raise tyrograph.Error) and handed over in job->data.
void MeasuredFitData(const pybind11::object &data, const std::string &axes, const pybind11::object &columns,
                     const pybind11::object &units, int thin, FitJob *job);
