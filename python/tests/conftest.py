"""Shared fixtures: where tyrograph-cli and the bundled tyres are, and how to run the CLI.

ctest sets TYROGRAPH_CLI, TYROGRAPH_SOURCE and TYROGRAPH_BUILD; by hand,
run from the source tree with PYTHONPATH=build/python.
"""
import glob
import os
import subprocess

import pytest

SOURCE = os.environ.get("TYROGRAPH_SOURCE", os.path.abspath(os.path.join(os.path.dirname(__file__), "..", "..")))
BUILD = os.environ.get("TYROGRAPH_BUILD", os.path.join(SOURCE, "build"))
CLI = os.environ.get("TYROGRAPH_CLI", os.path.join(BUILD, "cli", "tyrograph-cli"))


def bundled_tyres():
    """(source, wheel) of every bundled tyre: each car's four wheels and each TIR file."""
    cars = sorted(glob.glob(os.path.join(SOURCE, "data", "cars", "*")))
    tirs = sorted(glob.glob(os.path.join(SOURCE, "data", "tyres", "*.tir")))
    return [(c, w) for c in cars for w in range(4)] + [(t, 0) for t in tirs]


def tyre_id(param):
    source, wheel = param
    return "%s:%d" % (os.path.basename(source), wheel)


def run_cli(*args, stdin=None, check=True):
    """tyrograph-cli's standard output as bytes (its exit code checked)."""
    done = subprocess.run([CLI, *map(str, args)], input=stdin, capture_output=True)
    if check and done.returncode != 0:
        raise AssertionError("tyrograph-cli %s: %s" % (" ".join(map(str, args)), done.stderr.decode()))
    return done


@pytest.fixture(params=bundled_tyres(), ids=tyre_id)
def bundled(request):
    return request.param


def pytest_configure(config):
    # Loading the bundled tyres warns (unusual FITTYP, camber plausibility);
    # the tests that look for warnings catch them themselves.
    config.addinivalue_line("filterwarnings", "ignore::tyrograph.TyreWarning")
