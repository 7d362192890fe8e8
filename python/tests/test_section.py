import os
import signal
import threading

import brenlox
import numpy as np
import pytest
from brenlox import section


@pytest.fixture
def ground():
    """100 ohm-m with a conducting block, wide and deep enough for 1 Hz and above."""
    outwards = 200.0 * 1.8 ** np.arange(1, 9)
    widths = np.concatenate([outwards[::-1], np.full(20, 200.0), outwards])
    heights = np.concatenate([np.full(8, 50.0), 50.0 * 1.35 ** np.arange(1, 20)])
    resistivity = np.full((len(heights), len(widths)), 100.0)
    resistivity[4:12, 14:20] = 10.0
    return section.Section(-0.5 * widths.sum(), widths, heights, resistivity)


def test_uniform_ground_is_its_own_response(ground):
    uniform = section.Section(ground.left_edge, ground.column_widths, ground.row_heights,
                              np.full(ground.resistivity.shape[:2], 100.0))
    response = section.response(uniform, [-400.0, 0.0, 600.0], [1000.0, 10.0])
    for mode in response:
        np.testing.assert_allclose(mode.log10_resistivity, 2.0, atol=1e-4)
        np.testing.assert_allclose(mode.phase, 45.0, atol=0.02)


def test_jacobian_is_the_slope_of_the_response(ground):
    sites, frequencies = [-300.0, 500.0], [100.0, 3.0]
    parameters = np.full(ground.resistivity.shape, -1)
    parameters[4:12, 14:20] = 0
    response, jacobian = section.response(
        ground, sites, frequencies, sensitivities=True, parameters=parameters)
    step = 0.01

    def shifted(decades):
        resistivity = ground.resistivity.copy()
        resistivity[4:12, 14:20] *= 10.0**decades
        return section.response(
            section.Section(ground.left_edge, ground.column_widths, ground.row_heights, resistivity, ground.codes),
            sites, frequencies)

    for below, slopes, above in zip(shifted(-step), jacobian, shifted(step)):
        assert slopes.phase.shape == (2, 2, 1)
        for least, slope, most in zip(below, slopes, above):
            np.testing.assert_allclose((most - least) / (2 * step), slope[:, :, 0],
                                       atol=0.002 * np.abs(slope).max())
    for mode in response:
        assert mode.phase.shape == (2, 2)


def test_tipper_is_odd_about_a_conductor_in_the_middle(ground):
    resistivity = np.full(ground.resistivity.shape[:2], 100.0)
    resistivity[4:12, 15:21] = 10.0  # of 36 columns
    middle = section.Section(ground.left_edge, ground.column_widths, ground.row_heights, resistivity)
    tipper = section.tipper(middle, [-1400.0, 0.0, 1400.0], [30.0, 3.0])
    assert tipper.shape == (3, 2) and np.abs(tipper[0]).min() > 0.05
    np.testing.assert_allclose(tipper[0], -tipper[2], rtol=1e-6)
    np.testing.assert_allclose(tipper[1], 0.0, atol=1e-9)
    assert section.tipper(middle, [0.0], np.logspace(3, 0, 200), progress=lambda share: False) is None


def test_mesh_warnings_speak_of_what_is_too_coarse_or_small(ground):
    assert section.mesh_warnings(ground, [0.0], [3.0]) == []
    assert len(section.mesh_warnings(ground, [0.0], [1e6, 1e-3])) >= 2


def test_progress_sees_the_share_and_may_stop_the_work(ground):
    shares = []
    sites, frequencies = np.linspace(-1500, 1500, 11), np.logspace(3, 0, 120)
    assert section.response(ground, sites, frequencies, progress=shares.append) is not None
    shares.append(0.0)
    assert section.response(ground, sites, frequencies, sensitivities=True, progress=shares.append) is not None
    first = shares.index(0.0, 1)
    for each in (shares[:first], shares[first:]):
        assert all(0.0 <= share <= 1.0 for share in each) and each == sorted(each)
    assert max(shares[first:]) > 0.5
    assert section.response(ground, sites, frequencies, progress=lambda share: False) is None

    def fail(share):
        raise RuntimeError("of the caller's own")

    with pytest.raises(RuntimeError, match="of the caller's own"):
        section.response(ground, sites, frequencies, progress=fail)


def test_ctrl_c_ends_the_work(ground):
    timer = threading.Timer(0.2, os.kill, (os.getpid(), signal.SIGINT))
    timer.start()
    try:
        with pytest.raises(KeyboardInterrupt):
            for _ in range(100):
                section.response(ground, np.linspace(-1500, 1500, 11), np.logspace(3, 0, 300))
    finally:
        timer.cancel()


def test_refuses_what_has_no_response(ground):
    with pytest.raises(ValueError, match=r"resistivity: expected shape"):
        section.Section(0.0, ground.column_widths, ground.row_heights, ground.resistivity[1:])
    with pytest.raises(ValueError, match=r"sites: expected shape \(n,\)"):
        section.response(ground, 0.0, [1.0])
    with pytest.raises(ValueError):
        section.response(ground, [1e9], [1.0])
    with pytest.raises(ValueError):
        section.response(ground, [0.0], [-1.0])
    with pytest.raises(ValueError, match="parameters: expected shape"):
        section.response(ground, [0.0], [1.0], sensitivities=True, parameters=[0])


def test_arrays_own_their_memory(ground):
    response = brenlox.section.response(ground, [0.0], [10.0])
    phase = response.te.phase
    del response
    assert phase.flags.c_contiguous and np.isfinite(phase).all()
