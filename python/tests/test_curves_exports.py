"""Tyre.curves and the exports against tyrograph-cli, for every bundled tyre."""
import os

import numpy as np
import pytest

import tyrograph
from conftest import SOURCE, run_cli

POINT = dict(load=4200.0, slip_ratio=0.03, slip_angle=2.5, camber=-1.5)
POINT_ARGS = ["--load", "4200", "--slip-ratio", "0.03", "--slip-angle", "2.5", "--camber", "-1.5"]


def cli_curves(source, wheel, *extra):
    """{graph: (x, y, peak_x, peak_y)} from the CLI's csv."""
    rows = run_cli("curves", source, "--wheel", wheel, "--format", "csv", *extra).stdout.decode().splitlines()[1:]
    out = {}
    for row in rows:
        graph, i, x, y = row.split(",")
        xs, ys, peak = out.setdefault(graph, ([], [], None))
        if i == "peak":
            out[graph] = (xs, ys, (np.float32(x), np.float32(y)))
        else:
            xs.append(np.float32(x))
            ys.append(np.float32(y))
    return out


@pytest.mark.parametrize("zoom", [True, False])
def test_curves_equal_cli(bundled, zoom):
    source, wheel = bundled
    want = cli_curves(source, wheel, *POINT_ARGS, "--zoom", "on" if zoom else "off")
    got = tyrograph.load(source, wheel).curves(zoom=zoom, **POINT)
    assert sorted(got) == ["Fx", "Fy", "Mz"]
    for graph, (x, y, peak) in want.items():
        c = got[graph]
        assert c.x.dtype == np.float32 and len(c.x) == tyrograph.CURVE_SAMPLES
        np.testing.assert_array_equal(c.x, np.array(x, dtype=np.float32))
        np.testing.assert_array_equal(c.y, np.array(y, dtype=np.float32))
        assert (np.float32(c.peak_x), np.float32(c.peak_y)) == peak


def test_exports_are_the_cli_bytes(bundled, tmp_path):
    source, wheel = bundled
    tyre = tyrograph.load(source, wheel)
    ascii_cli = run_cli("export-ascii", source, "--wheel", wheel, "--steps", 20, "--max", 0.7, *POINT_ARGS).stdout
    assert tyre.export_ascii(20, 0.7, **POINT).encode("latin-1") == ascii_cli
    carini_cli = run_cli("export-carini", source, "--wheel", wheel, *POINT_ARGS).stdout
    assert tyre.export_carini(**POINT).encode("latin-1") == carini_cli
    # to a file, as -o writes it
    out = tmp_path / "carini.txt"
    assert tyre.export_carini(path=str(out), **POINT) is None
    assert out.read_bytes() == carini_cli


def test_write_tir_is_the_cli_bytes_or_the_cli_refusal(bundled, tmp_path):
    source, wheel = bundled
    tyre = tyrograph.load(source, wheel)
    done = run_cli("export-tir", source, "--wheel", wheel, check=False)
    if done.returncode != 0:
        with pytest.raises(tyrograph.Error, match="has no TIR form"):
            tyre.write_tir()
        return
    assert tyre.write_tir().encode("latin-1") == done.stdout
    out = tmp_path / "out.tir"
    tyre.write_tir(str(out))
    assert out.read_bytes() == done.stdout
    with pytest.raises(tyrograph.Error, match="exists; pass force=True"):
        tyre.write_tir(str(out))
    tyre.write_tir(str(out), force=True)


def test_edits_replay_in_curves_and_exports():
    car = os.path.join(SOURCE, "data", "cars", "touring")
    tyre = tyrograph.load(car)
    tyre["a0"] = 1.3
    tyre["b1"] = -100.0
    sets = ["--set", "a0=1.3", "--set", "b1=-100"]
    want = cli_curves(car, 0, *sets)
    got = tyre.curves()
    for graph in ("Fx", "Fy", "Mz"):
        np.testing.assert_array_equal(got[graph].y, np.array(want[graph][1], dtype=np.float32))
    assert tyre.export_carini().encode("latin-1") == run_cli("export-carini", car, *sets).stdout
    # the edit is visible: the unedited tyre draws another Fy curve
    assert not np.array_equal(tyrograph.load(car).curves()["Fy"].y, got["Fy"].y)


def test_export_arguments_are_checked(tmp_path):
    tyre = tyrograph.load(os.path.join(SOURCE, "data", "cars", "touring"))
    for steps, maximum in ((-1, 1.0), (10, 0.0), (10, -2.0)):
        with pytest.raises(ValueError, match="steps >= 0 and maximum > 0"):
            tyre.export_ascii(steps, maximum)
    assert tyre.export_ascii(0, 1.0).startswith("// ASCII export")
    missing = str(tmp_path / "no" / "such" / "folder" / "x.txt")
    with pytest.raises(tyrograph.Error, match="can't open output file for writing"):
        tyre.export_ascii(5, 1.0, path=missing)


def test_curves_and_exports_need_no_file_on_disk(tmp_path):
    """The tyre in memory, with its edits, is what curves and exports draw on."""
    gone = tmp_path / "gone.tir"
    gone.write_bytes(open(os.path.join(SOURCE, "data", "tyres", "MagicFormula61_Parameters.tir"), "rb").read())
    tyre = tyrograph.load(str(gone))
    tyre["pdy1"] = 1.3
    gone.unlink()
    kept = tyrograph.load(os.path.join(SOURCE, "data", "tyres", "MagicFormula61_Parameters.tir"))
    kept["pdy1"] = 1.3
    a, b = tyre.curves(**POINT), kept.curves(**POINT)
    for graph in ("Fx", "Fy", "Mz"):
        np.testing.assert_array_equal(a[graph].y, b[graph].y)
    assert tyre.export_carini(**POINT) == kept.export_carini(**POINT)
    assert tyre.write_tir() == kept.write_tir()
