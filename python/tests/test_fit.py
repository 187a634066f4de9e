"""tyrograph.fit and tyrograph.convert against tyrograph-cli fit and convert."""
import json
import os

import numpy as np
import pytest

import tyrograph
from conftest import SOURCE, run_cli

MF61_TIR = os.path.join(SOURCE, "data", "tyres", "MagicFormula61_Parameters.tir")


@pytest.fixture(scope="module")
def synthetic(tmp_path_factory):
    """Pure and combined sweeps of the bundled 6.1 tyre at three loads, as a CSV file."""
    tyre = tyrograph.load(MF61_TIR)
    rng = np.random.default_rng(3)
    n = 400
    fz = rng.choice([2000.0, 4000.0, 6000.0], n)
    kappa = np.where(rng.random(n) < 0.5, rng.uniform(-0.3, 0.3, n), 0.0)
    alpha = np.where(kappa == 0.0, rng.uniform(-0.3, 0.3, n), rng.uniform(-0.1, 0.1, n))
    forces = tyre.eval(fz, kappa, alpha, 0.0, dtype=np.float64)
    path = tmp_path_factory.mktemp("fit") / "sweep.csv"
    with open(path, "w") as f:
        f.write("fz,kappa,alpha,fx,fy,mz\n")
        for row in zip(fz, kappa, alpha, *forces):
            f.write(",".join(repr(float(v)) for v in row) + "\n")
    return str(path)


def test_fit_writes_the_cli_file_and_figures(synthetic, tmp_path):
    ours, theirs = tmp_path / "py.tir", tmp_path / "cli.tir"
    res = tyrograph.fit(synthetic, "mf61", str(ours), report=str(tmp_path / "py.json"))
    run_cli("fit", synthetic, "--model", "mf61", "-o", theirs, "--report", tmp_path / "cli.json")
    assert ours.read_bytes() == theirs.read_bytes()
    report = json.loads((tmp_path / "cli.json").read_text())
    assert sorted(res["channels"]) == sorted(report["channels"]) == ["Fx", "Fy", "Mz"]
    for ch, figures in report["channels"].items():
        for key in ("points", "rms", "rms_percent", "peak", "r2", "mirrored"):
            assert res["channels"][ch][key] == figures[key], (ch, key)
    # data made by a 6.1 tyre is fitted closely, and the tyre comes back loaded
    assert min(c["r2"] for c in res["channels"].values()) > 0.98
    assert res["tyre"].model == 3 and res["tyre"].source == str(ours)


def test_convert_writes_the_cli_file(tmp_path):
    ours, theirs = tmp_path / "py.ini", tmp_path / "cli.ini"
    res = tyrograph.convert(MF61_TIR, "pac96", str(ours))
    run_cli("convert", MF61_TIR, "--model", "pac96", "-o", theirs)
    assert ours.read_bytes() == theirs.read_bytes()
    assert res["tyre"].model == 0 and res["pure_only"]


def test_fit_problems_carry_the_commands_messages(synthetic, tmp_path):
    out = str(tmp_path / "x.tir")
    cases = [
        (("/no/such.csv", "mf61", out), "^/no/such.csv: cannot open"),
        ((synthetic, "mf99", out), "^model: 'mf99' is not pac96, mf52 or mf61"),
        ((synthetic, "pac96", out), "a TIR file holds a Magic Formula tyre"),
    ]
    bad = tmp_path / "bad.csv"
    bad.write_text("fz,alpha,fy\n4000,0.1,abc\n")
    cases.append(((str(bad), "mf61", out), r"bad.csv:2: column 3 \(fy\): 'abc' is not a number"))
    for args, message in cases:
        with pytest.raises(tyrograph.Error, match=message):
            tyrograph.fit(*args)
    assert not os.path.exists(out)
    (tmp_path / "taken.ini").write_text("keep\n")
    with pytest.raises(tyrograph.Error, match="exists; add --force"):
        tyrograph.convert(MF61_TIR, "pac96", str(tmp_path / "taken.ini"))
    assert (tmp_path / "taken.ini").read_text() == "keep\n"
    with pytest.raises(tyrograph.Error, match="--start: nope.tir: no such file"):
        tyrograph.fit(synthetic, "mf61", out, start="nope.tir")


def test_an_error_keeps_its_file_and_line(tmp_path):
    bad = tmp_path / "bad.csv"
    bad.write_text("fz,alpha,fy\n4000,0.1,1000\n# a comment\n4000,0.2,abc\n")
    with pytest.raises(tyrograph.Error) as caught:
        tyrograph.fit(str(bad), "mf61", str(tmp_path / "x.tir"))
    assert str(caught.value) == "%s:4: column 3 (fy): 'abc' is not a number" % bad
    assert (caught.value.file, caught.value.line) == (str(bad), 4)
    # a problem about a whole file names it without a line; one about no file names none
    with pytest.raises(tyrograph.Error) as caught:
        tyrograph.convert(str(tmp_path / "none.tir"), "mf61", str(tmp_path / "y.tir"))
    assert (caught.value.file, caught.value.line) == (str(tmp_path / "none.tir"), None)
    with pytest.raises(tyrograph.Error) as caught:
        tyrograph.convert(MF61_TIR, "pac96", str(tmp_path / "y.tir"))
    assert caught.value.line is None


def test_a_poor_fit_is_refused_unless_forced(tmp_path):
    """R2 below 0.5 in a fitted channel: the command's exit status 3, here
    tyrograph.Error naming the channel and its R2, the figures on it, nothing
    written; force=True gives the figures and the file, with a warning."""
    rng = np.random.default_rng(7)
    n = 200
    alpha = rng.uniform(-0.2, 0.2, n)
    fy = rng.uniform(-3000.0, 3000.0, n)  # no relation to the slip angle at all
    noise = tmp_path / "noise.csv"
    noise.write_text("fz,alpha,fy\n" + "".join("4000,%r,%r\n" % (a, f) for a, f in zip(alpha, fy)))
    out = tmp_path / "noise.tir"
    done = run_cli("fit", noise, "--model", "mf61", "-o", tmp_path / "cli.tir", "--report", tmp_path / "cli.json",
                   check=False)
    assert done.returncode == 3
    cli_r2 = json.loads((tmp_path / "cli.json").read_text())["channels"]["Fy"]["r2"]
    assert cli_r2 < 0.5
    with pytest.raises(tyrograph.Error, match=r"^Fy fits poorly: R2 = [-0-9.e]+, below 0.5 \(check the data's units") as caught:
        tyrograph.fit(str(noise), "mf61", str(out))
    assert "force=True" in str(caught.value) and str(out) + " not written" in str(caught.value)
    assert caught.value.figures["channels"]["Fy"]["r2"] == cli_r2
    assert caught.value.figures["output"] is None and caught.value.file is None
    assert not out.exists()
    # kept in memory only: refused the same way
    with pytest.raises(tyrograph.Error, match="Fy fits poorly"):
        tyrograph.fit({"fz": np.full(n, 4000.0), "alpha": alpha, "fy": fy}, "mf61")
    with pytest.warns(tyrograph.TyreWarning, match="Fy fits poorly.*\n.*written all the same"):
        res = tyrograph.fit(str(noise), "mf61", str(out), force=True)
    assert res["channels"]["Fy"]["r2"] == cli_r2 and res["output"] == str(out) and out.exists()


def test_fit_says_what_it_did_with_the_pressures(synthetic, tmp_path):
    run = os.path.join(SOURCE, "data", "measured", "rig_run_mf61.txt")
    clean = tmp_path / "clean.csv"
    run_cli("data", run, "--thin", "25", "-o", clean)
    d = tyrograph.read_data(str(clean))
    assert d["tidy"] and sorted(set(d["pressure"])) == [204000.0, 239990.0]
    res = tyrograph.fit(str(clean), "mf61")
    p = res["pressure"]
    assert p["set_points"] == [(239990.0, 937), (204000.0, 582)]
    assert p["stages"] == 3 and p["nompres"] == 239990.0 and p["nompres_from"] == "most points"
    assert p["pure_stages_at"] == 239990.0
    assert "NOMPRES = 239990 Pa" in p["note"]
    assert res["tyre"]["nompres"] == 239990.0
    assert tyrograph.fit(synthetic, "mf61")["pressure"] is None
