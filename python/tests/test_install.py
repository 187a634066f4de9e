"""cmake --install puts the package where the system's python3 looks under the prefix."""
import os
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
