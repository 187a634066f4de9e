"""tyrograph.read_data and tyrograph.fit on rig runs and mappings, against tyrograph-cli data."""
import collections.abc
import os

import numpy as np
import pytest

import tyrograph
from conftest import SOURCE, run_cli

RUN = os.path.join(SOURCE, "data", "measured", "rig_run_mf61.txt")
MF61_TIR = os.path.join(SOURCE, "data", "tyres", "MagicFormula61_Parameters.tir")


class Columns(collections.abc.Mapping):
    """A mapping that is not a dict, as a DataFrame is not."""

    def __init__(self, **columns):
        self._c = columns

    def __getitem__(self, key):
        return self._c[key]

    def __iter__(self):
        return iter(self._c)

    def __len__(self):
        return len(self._c)


def test_read_data_is_what_the_cli_prints_and_writes(tmp_path):
    d = tyrograph.read_data(RUN)
    assert d["summary"] == run_cli("data", RUN).stdout.decode()
    assert len(d["set_points"]) == 24 and not d["tidy"] and d["problems"] == []
    n = len(d["fz"])
    for key in ("fz", "kappa", "alpha", "gamma", "fx", "fy", "mz", "pressure", "speed", "set_point", "sweep"):
        assert d[key].shape == (n,), key
    assert (d["fz"] > 0).all()  # SAE loads mapped onto ours
    clean = tmp_path / "clean.csv"
    run_cli("data", RUN, "-o", clean)
    table = np.loadtxt(clean, delimiter=",", skiprows=1)
    for i, key in enumerate(("fz", "kappa", "alpha", "gamma", "fx", "fy", "mz")):
        np.testing.assert_array_equal(table[:, i], d[key])


def test_a_mapping_reads_as_a_file_does():
    sa = np.array([8.0, -8.0, 4.0, -4.0])
    cols = Columns(SA=sa, FZ=np.full(4, 3000.0), FY=-100 * sa, Remark=np.zeros(4))
    assert tyrograph.read_data(cols)["problems"] == ["slip angles up to 8 rad (458.4°): looks like degrees: --units alpha=deg"]
    d = tyrograph.read_data(cols, units={"alpha": "deg"})
    assert d["problems"] == []
    np.testing.assert_allclose(np.sort(d["alpha"]), np.sort(np.radians(sa)))
    with pytest.raises(tyrograph.Error, match=r"'SA' and 'alpha' could both be alpha \(columns: SA, alpha, FZ\)"):
        tyrograph.read_data({"SA": sa, "alpha": sa, "FZ": sa})
    with pytest.raises(tyrograph.Error, match="column 'FZ' has 3 values, column 'SA' 4"):
        tyrograph.read_data({"SA": sa, "FZ": sa[:3]})


def test_reading_problems_name_file_line_and_column(tmp_path):
    bad = tmp_path / "bad.txt"
    bad.write_text("SA;FZ;FY\ndeg;N;N\n1;2;x\n")
    with pytest.raises(tyrograph.Error, match=r"bad.txt:3:5: column 'FY' \(fy\): 'x' is not a number"):
        tyrograph.read_data(str(bad))
    with pytest.raises(tyrograph.Error, match="axes: 'up' is not iso, sae or auto"):
        tyrograph.read_data(RUN, axes="up")


def test_fit_takes_a_mapping_and_keeps_the_tyre_in_memory():
    tyre = tyrograph.load(MF61_TIR)
    fz = np.repeat([3000.0, 6000.0], 60)
    alpha = np.tile(np.linspace(-0.2, 0.2, 30), 4)
    kappa = np.tile(np.repeat([0.0, 0.0], 30), 2) * 0
    fx, fy, mz = tyre.eval(fz, kappa, alpha, 0.0, dtype=np.float64)
    res = tyrograph.fit(Columns(FZ=fz, SA=alpha, SL=kappa, FX=fx, FY=fy, MZ=mz), "mf61")
    assert res["channels"]["Fy"]["rms_percent"] < 2
    assert res["output"] is None
    got = res["tyre"].eval(4500.0, 0.0, 0.05, 0.0)
    want = tyre.eval(4500.0, 0.0, 0.05, 0.0)
    assert abs(got.fy - want.fy) < 0.03 * abs(want.fy)
    # the checks refuse what looks wrong, and say how to fix it
    with pytest.raises(tyrograph.Error, match="loads look like SAE axes"):
        tyrograph.fit({"fz": -fz, "alpha": alpha, "fy": fy}, "mf61", axes="iso")


def test_fit_reads_a_run_path_with_the_options(tmp_path):
    run = tmp_path / "run.txt"
    run.write_text("SA;FZ;FY\n" + "".join("%d;4000;%d\n" % (i, -300 * i) for i in range(-10, 11)))
    with pytest.raises(tyrograph.Error, match="looks like degrees: --units alpha=deg"):
        tyrograph.fit(run, "mf61", str(tmp_path / "x.tir"))
    assert not (tmp_path / "x.tir").exists()
    res = tyrograph.fit(run, "mf61", str(tmp_path / "x.tir"), units={"alpha": "deg"})
    assert res["channels"]["Fy"]["points"] == 21 and res["output"] == str(tmp_path / "x.tir")
    assert res["axes"].startswith("axes auto: the loads are positive, so ISO")
    assert tyrograph.fit(run, "mf61", units={"alpha": "deg"}, axes="iso")["axes"] is None
    assert tyrograph.load(str(tmp_path / "x.tir"))["pdy1"] == res["tyre"]["pdy1"]
