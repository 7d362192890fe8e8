import os
import signal
import threading
import time

import brenlox
import numpy as np
import pytest


def test_fits_noise_of_a_half_space_as_well_as_errors_allow(half_space):
    fit = brenlox.rhoplus(*half_space)
    assert fit.used_values == 62
    assert fit.is_consistent
    assert fit.certificate_gap <= 1e-3 * fit.chi_squared
    residuals = np.concatenate([fit.resistivity_residual, fit.phase_residual])
    assert np.sum(residuals**2) == pytest.approx(fit.chi_squared, rel=1e-9)
    assert np.all(np.diff(fit.sheets[:, 0]) > 0) and np.all(fit.sheets[:, 1] > 0)


def test_order_of_rows_makes_no_difference_and_nan_leaves_values_out(half_space):
    fit = brenlox.rhoplus(*half_space)
    turned = brenlox.rhoplus(*(column[::-1] for column in half_space))
    assert turned.chi_squared == pytest.approx(fit.chi_squared, rel=1e-9)
    np.testing.assert_allclose(turned.phase[::-1], fit.phase, rtol=1e-6)

    frequency, resistivity, phase, resistivity_error, phase_error = half_space
    resistivity = resistivity.copy()
    resistivity[3] = np.nan
    phase_error = phase_error.copy()
    phase_error[[5, 6]] = np.nan
    fewer = brenlox.rhoplus(frequency, resistivity, phase, resistivity_error, phase_error)
    assert fewer.used_values == 59
    assert np.isnan(fewer.resistivity_residual[3]) and np.isfinite(fewer.resistivity[3])
    assert fewer.chi_squared <= fit.chi_squared


def test_outliers_are_what_no_layers_explain(half_space):
    frequency, resistivity, phase, resistivity_error, phase_error = half_space
    assert not np.any(brenlox.rhoplus(*half_space).outliers(4.0))
    phase = phase.copy()
    phase[12] += 15.0
    of_resistivity, of_phase = brenlox.rhoplus(frequency, resistivity, phase, resistivity_error, phase_error).outliers(6.0)
    assert np.flatnonzero(of_phase).tolist() == [12] and not of_resistivity.any()


def test_refuses_what_is_no_curve(half_space):
    frequency, resistivity, phase, resistivity_error, phase_error = half_space
    with pytest.raises(ValueError, match=r"phase: expected shape \(31,\), received \(30,\)"):
        brenlox.rhoplus(frequency, resistivity, phase[:-1], resistivity_error, phase_error)
    with pytest.raises(ValueError, match=r"frequency: expected shape \(n,\), received \(1, 31\)"):
        brenlox.rhoplus(frequency[np.newaxis], resistivity, phase, resistivity_error, phase_error)
    with pytest.raises(ValueError, match="nothing to invert"):
        brenlox.rhoplus([], [], [], [], [])
    with pytest.raises(ValueError, match="surface"):
        brenlox.rhoplus(*half_space, surface="wet")


def test_threads_at_once_get_what_one_gets(half_space):
    alone = brenlox.rhoplus(*half_space)
    fits = [None] * 4

    def work(place):
        fits[place] = brenlox.rhoplus(*half_space)

    threads = [threading.Thread(target=work, args=(place,)) for place in range(len(fits))]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    for fit in fits:
        assert fit.chi_squared == alone.chi_squared
        np.testing.assert_array_equal(fit.sheets, alone.sheets)


def test_ctrl_c_ends_a_search():
    noise = np.random.default_rng(1)
    count = 400  # errors far too small: the search goes on to its limit of work
    frequency = np.logspace(4, -4, count)
    resistivity = 100.0 * np.exp(noise.standard_normal(count))
    phase = 45.0 + 20.0 * noise.standard_normal(count)
    error = np.full(count, 1e-6)
    timer = threading.Timer(0.2, os.kill, (os.getpid(), signal.SIGINT))
    timer.start()
    begin = time.monotonic()
    try:
        with pytest.raises(KeyboardInterrupt):
            for _ in range(100):  # each ends at its limit of work
                brenlox.rhoplus(frequency, resistivity, phase, error, error)
    finally:
        timer.cancel()
    assert time.monotonic() - begin < 10.0
