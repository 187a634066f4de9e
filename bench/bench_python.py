#!/usr/bin/env python3
"""Tyre.eval at 100,000 points per model, timed from Python (CPU time, one
core), to set beside bench_pacejka's BM_Batch* figures: the difference is
what the Python call adds (float64 in, broadcasting, float32 conversion,
result arrays).

    PYTHONPATH=build/python /usr/bin/python3 bench/bench_python.py
"""
import os
import sys
import time

import numpy as np

import tyrograph

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


def best_of(fn, repeat=15):
    best = float("inf")
    for _ in range(repeat):
        t0 = time.process_time()
        fn()
        best = min(best, time.process_time() - t0)
    return best


def main():
    rng = np.random.default_rng(12345)
    # 1-7 kN, slip ratio ±0.2, slip angle ±12°, camber ±3°, as float64
    fz = rng.uniform(1000.0, 7000.0, N)
    kappa = rng.uniform(-0.2, 0.2, N)
    alpha = np.radians(rng.uniform(-12.0, 12.0, N))
    gamma = np.radians(rng.uniform(-3.0, 3.0, N))
    print("Tyre.eval, %d points, %s" % (N, "8 lanes" if tyrograph.is_vector() else "one at a time"))
    for name, tyre in tyres():
        fast = best_of(lambda: tyre.eval(fz, kappa, alpha, gamma))
        exact = best_of(lambda: tyre.eval(fz, kappa, alpha, gamma, exact=True), 5)
        print("  %-8s %7.1f ns/point (exact=True: %6.1f ns/point)" % (name, fast / N * 1e9, exact / N * 1e9))
    return 0


if __name__ == "__main__":
    sys.exit(main())
