#!/usr/bin/env python3
"""Tyre.eval at 100,000 points per model, timed from Python (CPU time, one
core), beside the C++ batch alone on the same points in the same process
(float32 arrays, no Python in between): the difference is what the Python
call adds (float64 in, broadcasting, conversion, result arrays). Runs
alternate and the best of each counts, so a busy machine hurts both alike.

    PYTHONPATH=build/python /usr/bin/python3 bench/bench_python.py
"""
import os
import sys
import time

import numpy as np

import tyrograph
from tyrograph import _tyrograph

SOURCE = os.path.abspath(os.path.join(os.path.dirname(__file__), ".."))
N = 100_000


def tyres():
    """The benchmark's tyres: the touring Pacejka89/96 set and the 6.1 TIR file as each MF model."""
    yield "Pac96", tyrograph.load(os.path.join(SOURCE, "data", "cars", "touring"))
    for model, name in ((1, "MF52"), (3, "MF61"), (2, "Pac2006")):
        t = tyrograph.load(os.path.join(SOURCE, "data", "tyres", "MagicFormula61_Parameters.tir"))
        t["model"] = model
        t["a2"] = t["b2"] = 1200.0
        yield name, t


def timed(fn):
    t0 = time.thread_time()
    fn()
    return time.thread_time() - t0


def main():
    rng = np.random.default_rng(12345)
    # 1-7 kN, slip ratio ±0.2, slip angle ±12°, camber ±3°, as float64
    fz = rng.uniform(1000.0, 7000.0, N)
    kappa = rng.uniform(-0.2, 0.2, N)
    alpha = np.radians(rng.uniform(-12.0, 12.0, N))
    gamma = np.radians(rng.uniform(-3.0, 3.0, N))
    print("%d points, per point, %s" % (N, "8 lanes" if tyrograph.is_vector() else "one at a time"))
    f32 = [v.astype(np.float32) for v in (fz, kappa, alpha, gamma)]
    print("%-8s %12s %12s %8s %16s" % ("", "C++ batch", "Tyre.eval", "Python", "eval(exact=True)"))
    for name, tyre in tyres():
        cxx, py = float("inf"), float("inf")
        for _ in range(20):
            cxx = min(cxx, _tyrograph._batch_seconds(tyre, *f32))
            py = min(py, timed(lambda: tyre.eval(fz, kappa, alpha, gamma)))
        exact = min(timed(lambda: tyre.eval(fz, kappa, alpha, gamma, exact=True)) for _ in range(3))
        print("%-8s %9.1f ns %9.1f ns %+7.1f%% %13.1f ns" % (name, cxx / N * 1e9, py / N * 1e9,
                                                           (py / cxx - 1) * 100, exact / N * 1e9))
    return 0


if __name__ == "__main__":
    sys.exit(main())
