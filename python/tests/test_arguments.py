"""Arrays of any kind give the numbers of plain ones; what is no number is refused; threads don't disturb."""

import sys
import threading

import brenlox
import numpy as np
import pytest
from brenlox import section


@pytest.fixture
def tensor():
    noise = np.random.default_rng(3)
    z = noise.standard_normal((50, 2, 2)) + 1j * noise.standard_normal((50, 2, 2))
    return brenlox.Tensor.from_errors(np.logspace(3, -2, 50), z, 0.1)


def spaced(array):
    wide = np.zeros(tuple(2 * length for length in array.shape), array.dtype)
    view = wide[tuple(slice(None, None, 2) for _ in array.shape)]
    view[...] = array
    assert not view.flags.c_contiguous
    return view


@pytest.mark.parametrize("kind", [
    spaced, np.asfortranarray, lambda array: array.astype(array.dtype.newbyteorder(">")), np.ndarray.tolist,
    lambda array: np.ma.masked_array(array), lambda array: array.astype(object)],
    ids=["spaced", "fortran", "big endian", "list", "masked array", "objects"])
def test_other_arrays_give_the_same_numbers(kind, tensor, half_space):
    other = brenlox.Tensor(kind(tensor.frequency), kind(tensor.z), kind(tensor.covariance))
    for name, numbers in tensor.phase_tensor().to_dict().items():
        np.testing.assert_array_equal(getattr(other.phase_tensor(), name), numbers)
    fit = brenlox.rhoplus(*half_space)
    assert brenlox.rhoplus(*map(kind, half_space)).chi_squared == fit.chi_squared


def test_singles_integers_and_series(half_space):
    fit = brenlox.rhoplus(*half_space)
    singles = brenlox.rhoplus(*(column.astype(np.float32) for column in half_space))
    assert singles.chi_squared == pytest.approx(fit.chi_squared, rel=1e-3)
    whole = brenlox.layered_response([100, 10], [50], range(1, 5))
    np.testing.assert_array_equal(whole.phase, brenlox.layered_response([100.0, 10.0], [50.0], [1.0, 2, 3, 4]).phase)
    pandas = pytest.importorskip("pandas")
    table = pandas.DataFrame(dict(zip(["f", "rho", "phi", "d_rho", "d_phi"], half_space)))
    assert brenlox.rhoplus(*(table[name] for name in table)).chi_squared == fit.chi_squared


def test_masked_values_and_none_are_left_out(half_space):
    frequency, resistivity, phase, resistivity_error, phase_error = half_space
    masked = np.ma.masked_array(resistivity, np.arange(31) < 2)
    assert brenlox.rhoplus(frequency, masked, phase, resistivity_error, phase_error).used_values == 60
    missing = [None] + list(phase[1:])
    assert brenlox.rhoplus(frequency, resistivity, missing, resistivity_error, phase_error).used_values == 61


def test_what_is_no_number_is_refused(half_space):
    frequency, resistivity, phase, resistivity_error, phase_error = half_space
    with pytest.raises(TypeError, match="resistivity: expected real numbers, received complex128"):
        brenlox.rhoplus(frequency, resistivity + 1j, phase, resistivity_error, phase_error)
    with pytest.raises(TypeError, match="frequency: expected real numbers, received <U1"):
        brenlox.rhoplus(["a"] * 31, resistivity, phase, resistivity_error, phase_error)
    with pytest.raises(TypeError, match="phase: expected real numbers"):
        brenlox.rhoplus(frequency, resistivity, [object()] * 31, resistivity_error, phase_error)
    with pytest.raises(TypeError, match="codes: expected integers, received float64"):
        section.Section(0.0, [1.0], [1.0], [[1.0]], [[1.5]])
    with pytest.raises(ValueError, match="codes: expected integers of 32 bits"):
        section.Section(0.0, [1.0], [1.0], [[1.0]], [[2**40]])


@pytest.mark.filterwarnings("ignore:invalid value")
@pytest.mark.parametrize("odd", [np.nan, np.inf, -np.inf, 0.0, -1.0, 1e300, 5e-324])
def test_odd_numbers_crash_nothing(odd, tensor, half_space):
    for column in range(5):
        columns = [values.copy() for values in half_space]
        columns[column][[0, 7, 30]] = odd
        try:
            fit = brenlox.rhoplus(*columns)
        except ValueError as error:  # as where no row is left
            assert str(error)
        else:
            assert 0 < fit.used_values <= 62 and fit.chi_squared >= 0.0
            assert fit.used_values == 62 or np.isnan(odd) or fit.remarks
    z = tensor.z.copy()
    z[::2] = odd
    strange = brenlox.Tensor(np.where(np.arange(50) % 3, odd, 1.0), z, tensor.covariance * odd)
    assert len(strange.rotate(odd).phase_tensor().beta) == 50
    assert strange.dimensionality().min() >= 0
    assert len(strange.quantities()["bahr_skew"]) == 50
    tipper = brenlox.Tipper(strange.frequency, z[:, 0], tensor.covariance[:, 0] * odd)
    assert len(tipper.rotate(odd).arrows("wiese").strike) == 50


def test_empty_arrays():
    nothing = brenlox.Tensor([], np.zeros((0, 2, 2)))
    assert nothing.dimensionality().shape == (0,) and len(nothing) == 0
    assert nothing.rotate(30.0).z.shape == (0, 2, 2)
    assert all(len(numbers) == 0 for numbers in nothing.quantities().values())
    assert brenlox.Tipper([], np.zeros((0, 2))).arrows().strike.shape == (0,)
    with pytest.raises(ValueError):
        section.response(section.Section(0.0, [], [], np.zeros((0, 0))), [0.0], [1.0])


def test_threads_under_load_get_what_one_gets(tensor, half_space):
    rotated = tensor.rotate(13.0).phase_tensor()
    strike = brenlox.strike(tensor, skew_limit=90.0)
    fit = brenlox.rhoplus(*half_space)
    widths, heights = np.full(12, 200.0), 50.0 * 1.4 ** np.arange(14)
    rng = np.random.default_rng(5)
    ground = section.Section(-1200.0, widths, heights, 10 ** rng.uniform(1, 2, (14, 6)).repeat(2, axis=1))
    response = section.response(ground, [-200.0, 0.0], [100.0, 10.0], threads=1)
    faults, rounds = [], []

    def work():
        try:
            for _ in range(5):
                np.testing.assert_array_equal(tensor.rotate(13.0).phase_tensor().beta, rotated.beta)
                assert brenlox.strike(tensor, skew_limit=90.0) == strike or np.isnan(strike.error)
                assert brenlox.rhoplus(*half_space).chi_squared == fit.chi_squared
                again = section.response(ground, [-200.0, 0.0], [100.0, 10.0], threads=2)
                np.testing.assert_array_equal(again.te.phase, response.te.phase)
                np.testing.assert_array_equal(again.tm.log10_resistivity, response.tm.log10_resistivity)
                rounds.append(1)
        except BaseException as fault:
            faults.append(fault)

    interval = sys.getswitchinterval()
    sys.setswitchinterval(1e-5)
    try:
        threads = [threading.Thread(target=work) for _ in range(8)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
    finally:
        sys.setswitchinterval(interval)
    assert not faults, faults[0]
    assert len(rounds) == 40


def test_long_work_leaves_the_interpreter_to_others(half_space):
    ticks = []
    done = threading.Event()

    def tick():
        while not done.wait(0.001):
            ticks.append(1)

    columns = [np.tile(column, 16) for column in half_space]
    columns[0] = np.logspace(3, -3, len(columns[0]))
    watcher = threading.Thread(target=tick)
    watcher.start()
    try:
        before = len(ticks)
        brenlox.rhoplus(*columns)
        during = len(ticks) - before
    finally:
        done.set()
        watcher.join()
    assert during > 5
