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
import atexit
import os
import shutil
import tempfile

from . import _tyrograph
from ._tyrograph import (CURVE_SAMPLES, Curve, Error, Forces, Tyre, TyreWarning, convert, is_vector, load,
                         read_data)

__all__ = ["CURVE_SAMPLES", "Curve", "Error", "Forces", "Tyre", "TyreWarning", "convert", "fit",
           "is_vector", "load", "read_data"]

_scratch = None


def _scratch_dir():
    """A folder for what fit writes when no `out` is given, removed at exit."""
    global _scratch
    if _scratch is None:
        _scratch = tempfile.mkdtemp(prefix="tyrograph-")
        atexit.register(shutil.rmtree, _scratch, True)
    return _scratch


def fit(data, model, out=None, start=None, wheel=0, report=None, force=False, axes="auto", columns=None,
        units=None, thin=0):
    """Fits model "pac96", "mf52" or "mf61" to measured data, as tyrograph-cli fit does.

    data: a path to a tidy CSV file (fz, kappa, alpha, gamma, fx, fy, mz in
    eval's units), to a rig run (delimited text or TYDEX) or a mapping of
    column name to array (a pandas DataFrame works); runs and mappings are
    read and conditioned as read_data() does (axes, columns, units, thin),
    and refused when the plausibility checks find a problem.
    out: where to write the tyre (a TIR file when the name ends in .tir, else
    a car.ini); None keeps it in a scratch folder only. An existing `out`
    or `report` stays unless force=True.
    Returns a dict: "tyre" (the fitted tyre, loaded), "model", "output",
    "channels" ({"Fx": {"points", "rms", "rms_percent", "peak", "r2",
    "mirrored"}, ...}), "pure_only", "iterations", "seconds". A problem
    raises tyrograph.Error with the library's message.
    """
    if out is None:
        out = os.path.join(tempfile.mkdtemp(dir=_scratch_dir()), "fitted.tir" if model != "pac96" else "fitted.ini")
    plain = axes == "auto" and columns is None and units is None and thin == 0
    if isinstance(data, (str, os.PathLike)) and plain and _tyrograph._is_tidy(os.fspath(data)):
        return _tyrograph.fit(os.fspath(data), model, out, start, wheel, report, force)
    text = _tyrograph._tidy_data(data, axes, columns, units, thin)
    with tempfile.TemporaryDirectory(prefix="tyrograph-") as folder:
        points = os.path.join(folder, "points.csv")
        with open(points, "w") as f:
            f.write(text)
        return _tyrograph.fit(points, model, out, start, wheel, report, force)
