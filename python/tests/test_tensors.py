import brenlox
import numpy as np
import pytest


@pytest.fixture
def tensor():
    """Two-dimensional ground of strike 30 degrees, in axes to the north."""
    frequency = np.array([100.0, 10.0, 1.0])
    z = np.zeros((3, 2, 2), complex)
    z[:, 0, 1] = [20 + 20j, 8 + 10j, 2 + 4j]
    z[:, 1, 0] = [-10 - 10j, -9 - 6j, -4 - 2j]
    return brenlox.Tensor.from_errors(frequency, z, np.full(z.shape, 0.05), axes=30.0).rotate(-30.0)


def test_rotation_comes_back_with_errors(tensor):
    assert tensor.axes == 0.0
    there = tensor.rotate(47.0)
    assert there.axes == 47.0
    np.testing.assert_allclose(there.rotate(-47.0).z, tensor.z, atol=1e-12)
    np.testing.assert_allclose(tensor.rotate(180.0).z, tensor.z, atol=1e-12)
    along = tensor.rotate(30.0)
    np.testing.assert_allclose(along.z[:, 0, 0], 0.0, atol=1e-12)
    assert along.covariance.shape == (3, 2, 2, 3)


def test_phase_tensor_knows_strike_and_principal_phases(tensor):
    phases = tensor.phase_tensor()
    np.testing.assert_allclose(phases.skew, 0.0, atol=1e-9)
    np.testing.assert_allclose(phases.phase_max[1:], np.degrees(np.arctan([10 / 8, 2.0])), atol=1e-9)
    np.testing.assert_allclose(phases.phase_min[1:], np.degrees(np.arctan([6 / 9, 0.5])), atol=1e-9)
    assert np.all(phases.beta_error > 0)
    strike = (phases.azimuth[1:] - 30.0) % 90.0
    np.testing.assert_allclose(np.minimum(strike, 90.0 - strike), 0.0, atol=1e-9)
    assert set(phases.to_dict()) >= {"frequency", "beta", "beta_error"}


def test_quantities_of_elements(tensor):
    along = tensor.rotate(30.0).quantities()
    np.testing.assert_allclose(along["resistivity_xy"], 0.2 * np.array([800, 164, 20]) / tensor.frequency)
    np.testing.assert_allclose(along["phase_yx"][0], -135.0)
    np.testing.assert_allclose(along["bahr_skew"], 0.0, atol=1e-6)


def test_tipper_turns_as_a_vector():
    tipper = brenlox.Tipper([1.0], [[0.3 + 0.1j, 0.0]])
    turned = tipper.rotate(90.0)
    np.testing.assert_allclose(turned.t, [[0.0, -0.3 - 0.1j]], atol=1e-15)
    assert turned.axes == 90.0 and np.isnan(turned.covariance).all()


def test_arrows_point_to_conductors_or_away():
    tipper = brenlox.Tipper.from_errors([1.0, 2.0], [[0.3 + 0.1j, 0.0], [0.01, 0.02]], 0.01)
    parkinson, wiese = tipper.arrows(), tipper.arrows("wiese", imaginary_reversed=True)
    np.testing.assert_allclose(parkinson.real_length[0], 0.3)
    np.testing.assert_allclose((parkinson.real_azimuth[0] - wiese.real_azimuth[0]) % 360.0, 180.0)
    np.testing.assert_allclose([parkinson.real_azimuth[0], parkinson.imaginary_azimuth[0]], [180.0, 0.0])
    np.testing.assert_allclose(wiese.imaginary_azimuth[0], 180.0)
    np.testing.assert_allclose(parkinson.magnitude[0], np.sqrt(0.1))
    np.testing.assert_allclose(parkinson.real_length_error[0], 0.01)
    assert parkinson.strike[0] == 90.0 and np.isnan(parkinson.strike[1])  # the second is too short
    with pytest.raises(ValueError, match="convention"):
        tipper.arrows("both")


def test_dimensionality(tensor):
    np.testing.assert_array_equal(tensor.dimensionality(), [1, 2, 2])
    np.testing.assert_array_equal(tensor.dimensionality(least_ellipticity=0.4), [1, 1, 2])
    z = tensor.z.copy()
    z[1] = [[2 + 3j, 8 + 10j], [-9 - 6j, 5 - 4j]]  # a skew of 12 degrees
    z[2] = np.nan
    strange = brenlox.Tensor(tensor.frequency, z)
    np.testing.assert_array_equal(strange.dimensionality(), [1, 3, 0])
    np.testing.assert_array_equal(strange.dimensionality(skew_limit=90.0), [1, 2, 0])


def test_refuses_other_shapes():
    with pytest.raises(ValueError, match=r"z: expected shape \(n, 2, 2\), received \(3, 4\)"):
        brenlox.Tensor([1.0, 2.0, 3.0], np.zeros((3, 4)))
    with pytest.raises(ValueError, match=r"frequency: expected shape \(3,\)"):
        brenlox.Tensor([1.0], np.zeros((3, 2, 2)))
    with pytest.raises(ValueError, match="covariance"):
        brenlox.Tensor([1.0], np.zeros((1, 2, 2)), np.zeros((1, 2, 2)))
    assert len(brenlox.Tensor([], np.zeros((0, 2, 2))).phase_tensor().beta) == 0


def test_elements_are_drawn_with_yx_beside_xy(tensor):
    matplotlib = pytest.importorskip("matplotlib")
    matplotlib.use("Agg")
    import matplotlib.pyplot as pyplot

    along = tensor.rotate(30.0)
    axes = along.plot()
    known = along.quantities()
    drawn = [pane.containers[place].lines[0].get_ydata() for pane in axes for place in (0, 1)]
    for curve, name in zip(drawn, ("resistivity_xy", "resistivity_yx", "phase_xy")):
        np.testing.assert_allclose(curve, known[name])
    np.testing.assert_allclose(drawn[3], known["phase_yx"] + 180.0)
    assert np.all((drawn[3] > 0.0) & (drawn[3] < 90.0))
    assert along.plot(axes, elements=["determinant"]) == tuple(axes)
    assert [text.get_text() for text in axes[0].get_legend().get_texts()] == ["xy", "yx", "determinant"]
    with pytest.raises(ValueError, match="elements: expected some of xx, "):
        along.plot(elements=["zz"])
    pyplot.close("all")
