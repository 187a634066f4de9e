"""Tyre.eval against tyrograph-cli eval, and its array behaviour."""
import os
import threading
import warnings

import numpy as np
import pytest

import tyrograph
from conftest import SOURCE, run_cli


def grid():
    """Loads, slips and cambers over and past the ranges (float64, as a user passes them)."""
    rng = np.random.default_rng(7)
    n = 300
    fz = np.concatenate([rng.uniform(-500.0, 12000.0, n - 4), [0.0, 2500.0, 4000.0, 1e6]])
    kappa = np.concatenate([rng.uniform(-1.5, 1.5, n - 4), [0.0, 0.1, -1.0, 5.0]])
    alpha = np.concatenate([rng.uniform(-1.7, 1.7, n - 4), [0.0, 0.07, -0.3, 3.0]])
    gamma = np.concatenate([rng.uniform(-0.3, 0.3, n - 4), [0.0, 0.0, 0.05, -0.5]])
    return fz, kappa, alpha, gamma


def cli_eval(source, wheel, fz, kappa, alpha, gamma):
    lines = "".join("%r %r %r %r\n" % p for p in zip(fz, kappa, alpha, gamma))
    out = run_cli("eval", source, "--wheel", wheel, stdin=lines.encode()).stdout.decode().split()
    return np.array(out, dtype=np.float32).reshape(-1, 3).T


def test_eval_equals_cli(bundled):
    """The exact path bit for bit; eight lanes at a time within 4e-6 of each quantity's largest magnitude."""
    source, wheel = bundled
    pts = grid()
    want = cli_eval(source, wheel, *pts)
    tyre = tyrograph.load(source, wheel)
    exact, fast = tyre.eval(*pts, exact=True), tyre.eval(*pts)
    for k in range(3):
        np.testing.assert_array_equal(exact[k], want[k])
        scale = float(np.max(np.abs(want[k])))
        np.testing.assert_allclose(fast[k], want[k], rtol=0, atol=4e-6 * scale + 1e-6)


def test_angles_are_radians_and_the_wheel_is_the_one_asked_for():
    """mf61's right-hand wheels mirror the camber: wheel 1 at +γ is wheel 0 at -γ, not at +γ."""
    car = SOURCE + "/data/cars/mf61"
    left, right = tyrograph.load(car, 0), tyrograph.load(car, 1)
    g = np.radians(3.0)
    a = np.radians([-6.0, -2.0, 2.0, 6.0])
    np.testing.assert_array_equal(right.eval(4000.0, 0.02, a, g, exact=True).fy,
                                  left.eval(4000.0, 0.02, a, -g, exact=True).fy)
    assert not np.array_equal(right.eval(4000.0, 0.02, a, g).fy, left.eval(4000.0, 0.02, a, g).fy)
    # 5 degrees of slip angle, given in radians, is the CLI's 0.0872664626 rad
    want = cli_eval(car, 0, [4000.0], [0.0], [np.radians(5.0)], [0.0])
    assert left.eval(4000.0, 0.0, np.radians(5.0), 0.0).fy == pytest.approx(float(want[1][0]), rel=1e-5)


@pytest.fixture(scope="module")
def touring():
    return tyrograph.load(SOURCE + "/data/cars/touring")


def test_broadcast_pairs_each_element_with_its_own_inputs(touring):
    fz = np.array([[2000.0], [4000.0], [6000.0]])          # (3, 1)
    alpha = np.array([-0.1, 0.0, 0.05, 0.2])              # (4,)
    kappa = np.array([[0.0, 0.02, -0.05, 0.1]] * 3)       # (3, 4)
    r = touring.eval(fz, kappa, alpha, 0.01)
    assert r.fx.shape == r.fy.shape == r.mz.shape == (3, 4)
    for i in range(3):
        for j in range(4):
            one = touring.eval(fz[i, 0], kappa[i, j], alpha[j], 0.01)
            assert (r.fx[i, j], r.fy[i, j], r.mz[i, j]) == (one.fx, one.fy, one.mz), (i, j)


def test_scalars_give_0d_float32_and_float64_on_request(touring):
    r = touring.eval(4000, 0, 0.07, 0)
    assert r.fy.shape == () and r.fy.dtype == np.float32
    d = touring.eval(4000, 0, 0.07, 0, dtype=np.float64)
    assert d.fy.dtype == np.float64 and float(d.fy) == float(r.fy)
    with pytest.raises(ValueError, match="float32 or float64"):
        touring.eval(4000, 0, 0.07, 0, dtype=np.int32)


def test_inputs_round_from_float64_like_the_cli(touring):
    """Integers, lists and float32 arrays all mean the same numbers; float64 rounds once to float32."""
    a64 = np.array([0.0123456789012345, 0.1, 0.2])
    want = touring.eval(4000.0, 0.05, a64, 0.0)
    for alpha in (a64.astype(np.float32), list(a64)):
        got = touring.eval(4000, 0.05, alpha, 0)
        np.testing.assert_array_equal(got.fy, want.fy)
    ints = touring.eval(np.array([4000, 5000], dtype=np.int64), 0, 0, 0)
    np.testing.assert_array_equal(ints.fx, touring.eval([4000.0, 5000.0], 0.0, 0.0, 0.0).fx)
    # a scalar of any float type stands for every point
    for camber in (np.float16(0.02), np.float32(0.02)):
        np.testing.assert_array_equal(touring.eval(4000.0, 0.05, a64, camber).mz,
                                      touring.eval(4000.0, 0.05, a64, np.full(3, float(camber))).mz)


def test_empty_and_mismatched_shapes(touring):
    r = touring.eval(np.zeros(0), 0.0, 0.0, 0.0)
    assert r.fx.shape == (0,) and r.fx.dtype == np.float32
    assert touring.eval(np.zeros((0, 3)), 0.0, np.zeros(3), 0.0).mz.shape == (0, 3)
    with pytest.raises(ValueError):
        touring.eval(np.zeros(3), np.zeros(4), 0.0, 0.0)
    with pytest.raises(TypeError):
        touring.eval("4000", 0.0, 0.0, 0.0)
    with pytest.raises(TypeError):
        touring.eval(np.array([1 + 2j]), 0.0, 0.0, 0.0)


def test_nan_inputs_give_the_guards_zero_and_a_warning(touring):
    with warnings.catch_warnings(record=True) as caught:
        warnings.simplefilter("always")
        r = touring.eval([4000.0, np.nan, 4000.0], [0.1, 0.1, 0.1], 0.05, [0.0, 0.0, np.nan])
    assert r.fx[1] == 0.0 and r.fy[1] == 0.0 and r.mz[1] == 0.0
    assert np.isfinite(r.fx).all() and r.fx[0] != 0.0
    texts = [str(w.message) for w in caught if issubclass(w.category, tyrograph.TyreWarning)]
    assert "Trying to set not a NaN to camber" in texts
    # a warning turned into an error by the user's filter raises, nothing crashes
    with warnings.catch_warnings():
        warnings.simplefilter("error", tyrograph.TyreWarning)
        with pytest.raises(tyrograph.TyreWarning, match="camber"):
            touring.eval(4000.0, 0.0, 0.0, np.nan)


def test_threads_evaluate_side_by_side(touring):
    """The GIL is released around the batch; reports stay with their own thread."""
    fz, kappa, alpha, gamma = grid()
    want = touring.eval(fz, kappa, alpha, gamma)
    results = [None] * 4

    def work(i):
        results[i] = touring.eval(fz, kappa, alpha, gamma)

    threads = [threading.Thread(target=work, args=(i,)) for i in range(4)]
    for t in threads:
        t.start()
    for t in threads:
        t.join()
    for r in results:
        np.testing.assert_array_equal(r.fy, want.fy)


@pytest.mark.parametrize("dtype", [np.float32, np.float64])
def test_long_arrays_equal_their_slices(touring, dtype):
    """Thousands of points (the call works in steps) of every input kind: float64, float32, strided, scalar."""
    n = 5000
    fz = np.linspace(500.0, 9000.0, n)
    kappa = np.linspace(-0.3, 0.3, n).astype(np.float32)
    alpha = np.linspace(-0.4, 0.4, 2 * n)[::2]
    whole = touring.eval(fz, kappa, alpha, 0.01, dtype=dtype)
    assert whole.fx.dtype == dtype
    for at in range(0, n, 700):
        part = touring.eval(fz[at:at + 700], kappa[at:at + 700], alpha[at:at + 700].copy(), 0.01, dtype=dtype)
        for q in range(3):
            np.testing.assert_array_equal(whole[q][at:at + 700], part[q])


def test_pressure_is_the_clis_and_the_nominal_one_changes_nothing():
    """pressure= gives eval --pressure's numbers; NOMPRES (and None) the plain ones; curves take it too."""
    path = os.path.join(SOURCE, "data", "tyres", "MagicFormula61_Parameters.tir")
    t = tyrograph.load(path)
    fz, kappa, alpha = np.array([3000.0, 6000.0]), np.array([0.05, 0.0]), np.array([0.0, 0.08])
    plain = t.eval(fz, kappa, alpha, exact=True)
    nominal = t.eval(fz, kappa, alpha, exact=True, pressure=260000.0)
    low = t.eval(fz, kappa, alpha, exact=True, pressure=221000.0)
    for q in range(3):
        assert np.array_equal(plain[q], nominal[q])
    assert abs(low.fx[0] - plain.fx[0]) > 50 and abs(low.fy[1] - plain.fy[1]) > 50
    cli = run_cli("eval", path, "--pressure", "221000", stdin=b"3000 0.05 0 0\n6000 0 0.08 0\n").stdout.split()
    assert [np.float32(float(v)) for v in cli] == [low[q][i] for i in range(2) for q in range(3)]
    assert not np.array_equal(t.curves(pressure=221000.0)["Fy"].y, t.curves()["Fy"].y)
    with pytest.raises(ValueError, match="no nominal inflation pressure"):
        tyrograph.load(os.path.join(SOURCE, "data", "tyres", "MagicFormula52_Parameters.tir")).eval(
            4000, 0, 0, pressure=2e5)


def test_degrees_keyword_takes_angles_in_degrees(touring):
    deg = touring.eval([2000.0, 4000.0], 0.05, [-6.0, 8.0], [1.0, -2.0], degrees=True)
    rad = touring.eval([2000.0, 4000.0], 0.05, np.radians([-6.0, 8.0]), np.radians([1.0, -2.0]))
    for a, b in zip(deg, rad):
        assert np.array_equal(a, b)
    # scalars, float64 results and the other keywords pass through
    one = touring.eval(4000, 0.0, 3, 0, degrees=True, dtype=np.float64, exact=True)
    assert one.fy.dtype == np.float64 and one.fy == touring.eval(4000, 0.0, np.radians(3.0), 0, dtype=np.float64,
                                                                   exact=True).fy
    # without it the same numbers are radians
    assert touring.eval(4000.0, 0.0, 8.0, 0.0).fy != deg.fy[1]


def test_loads_at_or_below_zero_warn_as_nan_does(touring):
    with pytest.warns(tyrograph.TyreWarning, match=r"2 load\(s\) not above 0 N \(the first: -5 N\)"):
        r = touring.eval([4000.0, -5.0, 0.0], 0.1, 0.1, 0.0)
    assert r.fx[0] > 0 and r.fx[1] == 0 and r.fx[2] == 0
    with pytest.warns(tyrograph.TyreWarning, match="1 load"):
        touring.eval(np.zeros((2, 2)) + [[1.0, 0.0], [1.0, 1.0]], 0.1, 0.1, 0.0)
    with warnings.catch_warnings():
        warnings.simplefilter("error")
        touring.eval([4000.0, 0.5], 0.1, 0.1, 0.0)  # small loads are loads
