import brenlox
import numpy as np
import pytest


def test_layered_response():
    frequency = np.logspace(4, -4, 41)
    half_space = brenlox.layered_response([100.0], [], frequency)
    np.testing.assert_allclose(half_space.resistivity, 100.0, rtol=1e-12)
    np.testing.assert_allclose(half_space.phase, 45.0, rtol=1e-12)

    response = brenlox.layered_response([100.0, 1.0, 1000.0], [1000.0, 200.0], frequency)
    # At 10 kHz the top layer is twenty skin depths thick. At 0.1 mHz the conductor is thin: 1 / Z = 1 / Z3 + its
    # conductance, 200 S and the 10 S above it, with Z in ohm.
    assert response.resistivity[0] == pytest.approx(100.0, rel=1e-3)
    bottom = np.sqrt(2j * np.pi * 1e-4 * 4e-7 * np.pi * 1000.0)
    thin = bottom / (1.0 + 210.0 * bottom)
    assert response.impedance[-1] * 4e-4 * np.pi == pytest.approx(thin, rel=0.02)
    assert response.phase.min() < 45.0 < response.phase.max()
    # A layered earth is what Rho+ fits to any precision.
    some = slice(None, None, 3)
    fit = brenlox.rhoplus(frequency[some], response.resistivity[some], response.phase[some],
                          0.01 * response.resistivity[some], np.full(14, 0.3))
    assert fit.chi_squared < 0.01


def test_layered_response_refuses_what_is_no_ground():
    with pytest.raises(ValueError, match=r"thickness: expected shape \(1,\), received \(2,\)"):
        brenlox.layered_response([1.0, 2.0], [1.0, 2.0], [1.0])
    with pytest.raises(ValueError, match="one layer at least"):
        brenlox.layered_response([], [], [1.0])
    for layers, thickness, frequency, name in [
            ([1.0, -2.0], [1.0], [1.0], "resistivity.*-2.0 at index 1"), ([1.0, 2.0], [0.0], [1.0], "thickness"),
            ([1.0], [], [1.0, np.inf], "frequency"), ([np.nan], [], [1.0], "resistivity")]:
        with pytest.raises(ValueError, match=name):
            brenlox.layered_response(layers, thickness, frequency)
    assert len(brenlox.layered_response([1.0], [], []).phase) == 0


def test_niblett_bostick_of_a_half_space_is_the_half_space():
    frequency = np.array([100.0, 1.0, 0.01])
    curve = brenlox.niblett_bostick(frequency, np.full(3, 50.0), np.full(3, 45.0), np.full(3, 5.0))
    np.testing.assert_allclose(curve.resistivity, 50.0)
    np.testing.assert_allclose(curve.depth, np.sqrt(50.0 / (4e-7 * np.pi * 2 * np.pi * frequency)))
    np.testing.assert_allclose(curve.depth_error / curve.depth, 0.05)
    odd = brenlox.niblett_bostick([1.0, 1.0, 0.0, -1.0], [-1.0, np.nan, 1.0, 1.0], [45.0, 45.0, 45.0, 95.0])
    assert np.isnan(odd.resistivity).all()

    z = np.zeros((3, 2, 2), complex)
    z[:, 0, 1] = brenlox.layered_response([50.0], [], frequency).impedance
    z[:, 1, 0] = -z[:, 0, 1]
    tensor = brenlox.Tensor(frequency, z)
    for of in ("determinant", "xy", "yx", "mean", "sum_of_squares"):
        np.testing.assert_allclose(tensor.niblett_bostick(of).resistivity, 50.0)
    with pytest.raises(ValueError, match="of: expected one of"):
        tensor.niblett_bostick("xx")
