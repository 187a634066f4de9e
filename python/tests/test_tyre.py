"""Loading, members by name and the errors a script sees."""
import os
import pathlib
import warnings

import numpy as np
import pytest

import tyrograph
from conftest import SOURCE, run_cli

TOURING = os.path.join(SOURCE, "data", "cars", "touring")
MF61_TIR = os.path.join(SOURCE, "data", "tyres", "MagicFormula61_Parameters.tir")


def test_members_and_values_are_the_cli_dump():
    for source in (TOURING, MF61_TIR):
        tyre = tyrograph.load(source)
        dump = run_cli("eval", source, "--dump").stdout.decode().splitlines()
        names = [line.split("=", 1)[0] for line in dump]
        # The dump leaves out the inflation-pressure members of a tyre that
        # has no pressure data; the tyre still has them, at 0.
        assert [n for n in tyre.members() if n in names] == names
        assert all(tyre[n] == 0 for n in tyre.members() if n not in names)
        for line in dump:
            name, value = line.split("=", 1)
            got = tyre[name]
            if isinstance(got, int):
                assert got == int(value), name
            else:
                assert "%.9g" % got == value, name


def test_setting_checks_like_the_cli_set():
    tyre = tyrograph.load(MF61_TIR)
    tyre["pdy1"] = 1.25
    assert tyre["pdy1"] == pytest.approx(1.25)
    tyre["pdy1"] = 0.1  # stored in single precision
    assert tyre["pdy1"] == float.fromhex("0x1.99999ap-4")
    with pytest.raises(KeyError, match="unknown tyre member 'pdy9'"):
        tyre["pdy9"] = 1.0
    with pytest.raises(KeyError):
        tyre["pdy9"]
    for bad in (float("nan"), float("inf"), 1e300):
        with pytest.raises(ValueError, match="is not a number"):
            tyre["pdy1"] = bad
    with pytest.raises(TypeError):
        tyre["pdy1"] = "1.1"
    assert tyre["pdy1"] == float.fromhex("0x1.99999ap-4")  # refused values change nothing


def test_load_errors_carry_the_librarys_message(tmp_path):
    with pytest.raises(tyrograph.Error, match=r"^nope\.tir: no such file$"):
        tyrograph.load("nope.tir")
    with pytest.raises(tyrograph.Error, match="wheel 7 is not 0..3"):
        tyrograph.load(TOURING, 7)
    with pytest.raises(tyrograph.Error, match="folder holds no car.ini"):
        tyrograph.load(str(tmp_path))
    # the CLI words the same problems the same way
    assert b"nope.tir: no such file" in run_cli("eval", "nope.tir", check=False).stderr
    assert issubclass(tyrograph.Error, RuntimeError)


def test_files_that_are_no_tyre_raise(tmp_path):
    measured = os.path.join(SOURCE, "data", "measured", "touring.csv")
    with pytest.raises(tyrograph.Error, match=r"touring\.csv: measured data \(CSV\), not a tyre"):
        tyrograph.load(measured)
    (tmp_path / "run.tdx").write_text("**HEADER\n**END\n")
    with pytest.raises(tyrograph.Error, match="TYDEX measurement file, not a tyre"):
        tyrograph.load(str(tmp_path / "run.tdx"))
    (tmp_path / "other.ini").write_text("name=value\n")
    with pytest.raises(tyrograph.Error, match=r"holds no tyre \(no wheel0\.pacejka section"):
        tyrograph.load(str(tmp_path / "other.ini"))
    with pytest.raises(tyrograph.Error, match="measured data"):
        tyrograph.convert(measured, "mf61", str(tmp_path / "out.tir"))
    assert not (tmp_path / "out.tir").exists()


def test_recovered_load_problems_warn_or_raise_when_strict():
    generic = os.path.join(SOURCE, "data", "tyres", "Generic_Pac02Tire.tir")
    with pytest.warns(tyrograph.TyreWarning, match="fittyp"):
        tyre = tyrograph.load(generic)
    assert tyre.model == 1
    with pytest.raises(tyrograph.Error, match="only 52 \\(MF5.2\\) or 61 \\(MF6.1\\) supported"):
        tyrograph.load(generic, strict=True)


def test_garbage_files_never_crash(tmp_path):
    for name, text in (("bad.tir", b"[MODEL]\nFITTYP = \x00\xff\n[[[\n= =\n"), ("car.ini", b"wheel0\n{\n pacejka\n {\n a0=\n")):
        path = tmp_path / name
        path.write_bytes(text)
        try:
            tyre = tyrograph.load(str(path))
        except tyrograph.Error:
            continue
        tyre.eval([1000.0, 4000.0], 0.1, 0.1, 0.0)
        tyre.curves()


def test_nothing_reaches_standard_output(capfd, tmp_path):
    # Standard output is the caller's; the library's traces stay off it.
    for path in (os.path.join(SOURCE, "data", "tyres", "MagicFormula52_Parameters.tir"), TOURING):
        with warnings.catch_warnings():
            warnings.simplefilter("ignore")
            tyre = tyrograph.load(path)
        tyre.eval([1000.0, 4000.0], 0.1, 0.1, 0.0)
        tyre.curves()
        tyre.export_ascii(10, 0.5)
    out, _ = capfd.readouterr()
    assert out == ""


def test_bare_names_and_path_objects_load_as_the_cli_reads_them(tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    monkeypatch.setenv("TYROGRAPH_HOME", SOURCE)
    by_name = tyrograph.load("touring")
    assert by_name.source == os.path.join(SOURCE, "data", "cars", "touring")
    assert tyrograph.load("sample.tir").source == os.path.join(SOURCE, "data", "tyres", "sample.tir")
    by_path = tyrograph.load(pathlib.Path(SOURCE) / "data" / "cars" / "touring", 1)
    assert by_path["b2"] == tyrograph.load(TOURING, 1)["b2"]
    with pytest.raises(tyrograph.Error, match="^nosuch: no such file$"):
        tyrograph.load("nosuch")
    # the same answers as the CLI, which resolves in its own base folder
    out = run_cli("eval", "touring", stdin=b"4000 0.1 0.05 0\n").stdout.split()
    assert [np.float32(v) for v in out] == list(by_name.eval(4000.0, 0.1, 0.05, 0.0, exact=True))
    # a file or folder of that name in the working folder comes first, as in the CLI
    (tmp_path / "touring").mkdir()
    with pytest.raises(tyrograph.Error, match="folder holds no car.ini"):
        tyrograph.load("touring")


def test_fit_and_convert_take_path_objects(tmp_path):
    out, report = tmp_path / "c.ini", tmp_path / "r.json"
    res = tyrograph.convert(pathlib.Path(MF61_TIR), "pac96", out, report=report)
    assert out.is_file() and report.is_file() and res["tyre"].model == 0
    data = tmp_path / "d.csv"
    data.write_text("fz,alpha,fy\n" + "".join("%d,%g,%g\n" % (fz, a / 100, fz * a / 20)
                                              for fz in (3000, 5000) for a in range(-10, 11)))
    res = tyrograph.fit(data, "pac96", tmp_path / "f.ini", start=pathlib.Path(TOURING))
    assert (tmp_path / "f.ini").is_file()
