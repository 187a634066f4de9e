"""Loading, members by name and the errors a script sees."""
import os
import warnings

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
        assert tyre.members() == names
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
