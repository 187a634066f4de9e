"""cmake --install puts the package where the system's python3 looks under the prefix."""
import os
import shutil
import subprocess
import sys
import sysconfig

from conftest import BUILD, SOURCE


def test_installed_package_imports_and_evaluates(tmp_path):
    prefix = tmp_path / "prefix"
    subprocess.run(["cmake", "--install", BUILD, "--prefix", str(prefix), "--component", "python"],
                   check=True, capture_output=True)
    # Debian's layout for a prefix other than /usr: lib/python3.X/dist-packages,
    # the folder site.getsitepackages() names for that prefix
    site = prefix / "lib" / ("python%d.%d" % sys.version_info[:2]) / "dist-packages"
    assert (site / "tyrograph" / "__init__.py").is_file()
    code = ("import tyrograph, sys; t = tyrograph.load(sys.argv[1]); "
            "print(tyrograph.__file__); print('%.9g' % t.eval(4000, 0, 0.07, 0).fy)")
    env = dict(os.environ, PYTHONPATH=str(site))
    done = subprocess.run([sys.executable, "-c", code, os.path.join(SOURCE, "data", "cars", "touring")],
                          cwd=str(tmp_path), env=env, capture_output=True, text=True, check=True)
    where, fy = done.stdout.split()
    assert where.startswith(str(site)) and fy == "4350.09229"
    assert (site / "tyrograph" / ("_tyrograph" + sysconfig.get_config_var("EXT_SUFFIX"))).is_file()


def test_readme_example_plots_or_prints_a_table(tmp_path):
    """The README's example: a PNG with matplotlib, a table of Fy per load without it."""
    example = os.path.join(SOURCE, "python", "examples", "fy_over_slip.py")
    car = os.path.join(SOURCE, "data", "cars", "touring")
    env = dict(os.environ)
    try:
        import matplotlib  # noqa: F401
        png = tmp_path / "fy.png"
        subprocess.run([sys.executable, example, car, str(png)], env=env, check=True, capture_output=True)
        assert png.read_bytes()[:8] == b"\x89PNG\r\n\x1a\n"
    except ImportError:
        pass
    # without matplotlib (a stand-in package that refuses to import)
    fake = tmp_path / "nompl" / "matplotlib"
    fake.mkdir(parents=True)
    (fake / "__init__.py").write_text("raise ImportError('no matplotlib here')\n")
    env["PYTHONPATH"] = str(tmp_path / "nompl") + os.pathsep + env.get("PYTHONPATH", "")
    out = subprocess.run([sys.executable, example, car], env=env, check=True, capture_output=True,
                         text=True).stdout.splitlines()
    assert out[0].split() == ["alpha(deg)", "2000N", "4000N", "6000N"]
    zero = [line.split() for line in out if line.split()[0] == "0.0"][0]
    import tyrograph
    want = tyrograph.load(car).eval([2000.0, 4000.0, 6000.0], 0.0, 0.0, 0.0).fy
    assert [float(v) for v in zero[1:]] == [round(float(v), 1) for v in want]


def test_import_problems_say_which_python_is_needed(tmp_path):
    package = os.path.join(BUILD, "python", "tyrograph")
    # without NumPy (a stand-in package that refuses to import)
    fake = tmp_path / "nonumpy" / "numpy"
    fake.mkdir(parents=True)
    (fake / "__init__.py").write_text("raise ImportError('no numpy here')\n")
    env = dict(os.environ, PYTHONPATH=str(tmp_path / "nonumpy") + os.pathsep + os.path.dirname(package))
    done = subprocess.run([sys.executable, "-c", "import tyrograph"], env=env, cwd=str(tmp_path), capture_output=True,
                          text=True)
    assert done.returncode != 0
    assert "ImportError: tyrograph needs NumPy, and %s (Python %d.%d) has none" % (
        sys.executable, *sys.version_info[:2]) in done.stderr
    # a module built for another Python version
    other = tmp_path / "other" / "tyrograph"
    shutil.copytree(package, other)
    for so in other.glob("_tyrograph*.so"):
        so.rename(other / so.name.replace(sys.implementation.cache_tag, "cpython-399"))
    env = dict(os.environ, PYTHONPATH=str(other.parent))
    done = subprocess.run([sys.executable, "-c", "import tyrograph"], env=env, cwd=str(tmp_path), capture_output=True,
                          text=True)
    assert done.returncode != 0
    assert "its compiled module was built for CPython 3.99, and this is %s (Python %d.%d)" % (
        sys.executable, *sys.version_info[:2]) in done.stderr, done.stderr
