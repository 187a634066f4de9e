"""Fy over slip angle at three loads: a plot with matplotlib, else a table.

    PYTHONPATH=build/python /usr/bin/python3 python/examples/fy_over_slip.py [TYRE] [OUT.png]
"""
import sys

import numpy as np

import tyrograph

tyre = tyrograph.load(sys.argv[1] if len(sys.argv) > 1 else "data/cars/touring")
loads = np.array([2000.0, 4000.0, 6000.0])                  # N
alpha = np.radians(np.linspace(-15.0, 15.0, 61))            # rad
fy = tyre.eval(loads[:, None], 0.0, alpha[None, :], 0.0).fy  # (3, 61): one row per load

try:
    import matplotlib
    matplotlib.use("Agg")
    import matplotlib.pyplot as plt
except ImportError:
    plt = None

if plt:
    for load, row in zip(loads, fy):
        plt.plot(np.degrees(alpha), row, label="Fz = %.0f N" % load)
    plt.xlabel("slip angle (deg)")
    plt.ylabel("Fy (N)")
    plt.title(tyre.model_name)
    plt.legend()
    out = sys.argv[2] if len(sys.argv) > 2 else "fy.png"
    plt.savefig(out)
    print("wrote", out)
else:
    print("alpha(deg) " + " ".join("%10.0fN" % load for load in loads))
    for i in range(0, len(alpha), 6):
        print("%10.1f " % np.degrees(alpha[i]) + " ".join("%11.1f" % row[i] for row in fy))
