"""Tyrograph's tyre models for Python.

    import tyrograph
    tyre = tyrograph.load("data/cars/touring")        # a .tir, a car.ini or a car folder
    tyre = tyrograph.load("touring")                  # a bare name, looked up as the CLI does
    fx, fy, mz = tyre.eval(4000.0, 0.05, [0.0, 0.05, 0.1], 0.0)   # N, ratio, rad, rad
    fx, fy, mz = tyre.eval(4000.0, 0.05, [0, 3, 6], 0, degrees=True)
    graphs = tyre.curves(load=4000)                   # as tyrograph-cli curves
    tyre["pdy1"] = 1.1                                # members by name, as --set
    tyrograph.fit("data.csv", "mf61", "fitted.tir")   # as tyrograph-cli fit
    run = tyrograph.read_data("rig_run.txt")          # a rig run conditioned, as tyrograph-cli data
    res = tyrograph.fit(run_frame, "mf61")            # a path or a mapping of column name to array

Paths may be str or os.PathLike. Problems the library reports raise
tyrograph.Error with its own message; its warnings come as
tyrograph.TyreWarning.
"""
import glob
import os
import re
import sys
import warnings


def _import_problem(error, folder=os.path.dirname(os.path.abspath(__file__))):
    """What to tell when the compiled part does not import: which Python it
    was built for, and which this is."""
    here = "%s (Python %d.%d)" % (sys.executable or "this Python", *sys.version_info[:2])
    built = glob.glob(os.path.join(folder, "_tyrograph*.so"))
    tags = sorted({m.group(0) for m in (re.search(r"cpython-\d+", os.path.basename(p)) for p in built) if m})
    ours = sys.implementation.cache_tag  # e.g. "cpython-311"
    if tags and ours not in tags:
        versions = ", ".join("CPython %s.%s" % (t[8], t[9:]) for t in tags)
        return ("tyrograph: its compiled module was built for %s, and this is %s. Run it with a python3 of that "
                "version that has NumPy (Debian's /usr/bin/python3 is the one the build uses), or build the module "
                "for this one (cmake -DPython3_EXECUTABLE=%s)." % (versions, here, sys.executable))
    return "tyrograph: its compiled module does not load into %s: %s" % (here, error)


try:
    import numpy as _np
except ImportError as _e:
    raise ImportError("tyrograph needs NumPy, and %s (Python %d.%d) has none: install it (python3 -m pip install "
                      "numpy), or use Debian's /usr/bin/python3 with python3-numpy. (%s)"
                      % (sys.executable or "this Python", *sys.version_info[:2], _e)) from _e

try:
    from . import _tyrograph
except ImportError as _e:
    raise ImportError(_import_problem(_e)) from _e

from ._tyrograph import CURVE_SAMPLES, Curve, Error, Forces, Tyre, TyreWarning, is_vector, read_data  # noqa: E402

_c = _tyrograph

__all__ = ["CURVE_SAMPLES", "Curve", "Error", "Forces", "Tyre", "TyreWarning", "convert", "fit",
           "is_vector", "load", "read_data"]


def _base_folder():
    """The folder whose data/ holds the bundled cars and tyres: $TYROGRAPH_HOME,
    else the nearest folder above this package that holds data/, else the
    current folder (the CLI looks above its executable the same way)."""
    home = os.environ.get("TYROGRAPH_HOME", "")
    if home:
        return home
    at = os.path.dirname(os.path.abspath(__file__))
    while True:
        if os.path.isdir(os.path.join(at, "data")):
            return at
        up = os.path.dirname(at)
        if up == at:
            return os.getcwd()
        at = up


def _source(path):
    """A TYRE argument as the CLI takes it: a path as given when it names a
    file or folder (or holds a '/'); else a bare name looked up in the base
    folder as data/cars/NAME, then data/tyres/NAME."""
    path = os.fspath(path)
    if isinstance(path, bytes):
        path = os.fsdecode(path)
    if not path or os.path.exists(path) or "/" in path:
        return path
    base = _base_folder()
    for folder in ("cars", "tyres"):
        there = os.path.join(base, "data", folder, path)
        if os.path.exists(there):
            return there
    return path


def _optional_path(path):
    return None if path is None else os.fsdecode(os.fspath(path))


def load(path, wheel=0, strict=False):
    return _c.load(_source(path), wheel, strict)


def fit(data, model, out=None, start=None, wheel=0, report=None, force=False, **options):
    if isinstance(data, (str, bytes, os.PathLike)):
        data = os.fsdecode(os.fspath(data))
    return _tyrograph.fit(data, model, _optional_path(out), None if start is None else _source(start), wheel,
                          _optional_path(report), force, **options)


def convert(source, model, out, wheel=0, report=None, force=False, **options):
    return _c.convert(_source(source), model, os.fsdecode(os.fspath(out)), wheel, _optional_path(report), force,
                      **options)


load.__doc__ = _c.load.__doc__.split("\n", 1)[-1] + (
    "\n\n`path` is a str or os.PathLike; a bare name that is no file or folder is looked up\n"
    "as data/cars/NAME, then data/tyres/NAME, in the base folder ($TYROGRAPH_HOME, else the\n"
    "nearest folder above the package that holds data/).")
fit.__doc__ = _c.fit.__doc__.split("\n", 1)[-1] + "\n\nPaths are str or os.PathLike; `start` as load() takes it."
convert.__doc__ = _c.convert.__doc__.split("\n", 1)[-1] + "\n\nPaths are str or os.PathLike; `source` as load() takes it."

_eval = Tyre.eval


def _checked_eval(self, fz, kappa, alpha, gamma=0.0, *args, degrees=False, **kwargs):
    if degrees:
        alpha, gamma = _np.radians(alpha), _np.radians(gamma)
    loads = _np.asarray(fz)
    if loads.dtype.kind in "fiu":
        low = loads[loads <= 0]
        if low.size:
            warnings.warn(TyreWarning("eval: %d load(s) not above 0 N (the first: %g N); the model gives no force "
                                      "there" % (low.size, float(low.flat[0]))), stacklevel=2)
    return _eval(self, fz, kappa, alpha, gamma, *args, **kwargs)


_checked_eval.__name__ = "eval"
_checked_eval.__doc__ = _eval.__doc__ + (
    "\n\ndegrees=True takes alpha and gamma in degrees. A load at or below 0 N gives a\n"
    "TyreWarning, as a non-finite input does.")
Tyre.eval = _checked_eval
