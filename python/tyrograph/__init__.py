"""Tyrograph's tyre models for Python.

    import tyrograph
    tyre = tyrograph.load("data/cars/touring")        # a .tir, a car.ini or a car folder
    fx, fy, mz = tyre.eval(4000.0, 0.05, [0.0, 0.05, 0.1], 0.0)   # N, ratio, rad, rad
    graphs = tyre.curves(load=4000)                   # as tyrograph-cli curves
    tyre["pdy1"] = 1.1                                # members by name, as --set
    tyrograph.fit("data.csv", "mf61", "fitted.tir")   # as tyrograph-cli fit
    run = tyrograph.read_data("rig_run.txt")          # a rig run conditioned, as tyrograph-cli data
    res = tyrograph.fit(run_frame, "mf61")            # a path or a mapping of column name to array

Problems the library reports raise tyrograph.Error with its own message;
its warnings come as tyrograph.TyreWarning.
"""
from ._tyrograph import (CURVE_SAMPLES, Curve, Error, Forces, Tyre, TyreWarning, convert, fit, is_vector, load,
                         read_data)

__all__ = ["CURVE_SAMPLES", "Curve", "Error", "Forces", "Tyre", "TyreWarning", "convert", "fit",
           "is_vector", "load", "read_data"]
