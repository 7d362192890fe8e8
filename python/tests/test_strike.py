import brenlox
import numpy as np
import pytest


def two_dimensional(strike, station, axes=0.0):
    """Tensor and tipper of ground that strikes so, in any axes, with the noise of a station."""
    noise = np.random.default_rng(station)
    frequency = np.logspace(2, -1, 16)
    z = np.zeros((16, 2, 2), complex)
    z[:, 0, 1] = 30 * np.sqrt(frequency) * np.exp(1j * np.radians(60))
    z[:, 1, 0] = -10 * np.sqrt(frequency) * np.exp(1j * np.radians(35))
    z += 0.003 * np.abs(z).max(axis=(1, 2), keepdims=True) * noise.standard_normal(z.shape)
    t = np.zeros((16, 2), complex)
    t[:, 1] = 0.3 - 0.1j
    turn = axes - strike
    return (brenlox.Tensor(frequency, z, axes=strike).rotate(turn),
            brenlox.Tipper(frequency, t, axes=strike).rotate(turn))


@pytest.mark.parametrize("method", ["phase_tensor", "phase_tensor_alpha", "swift"])
def test_finds_the_strike_whatever_axes_stations_have(method):
    stations = {place: two_dimensional(27.0, place, axes=10.0 * place)[0] for place in range(5)}
    found = brenlox.strike(stations, method=method)
    assert found.strike == pytest.approx(27.0, abs=0.5)
    assert found.alternative == pytest.approx(-63.0, abs=0.5)
    assert 0.0 < found.error < 0.5 and found.used == 80 and found.concentration > 0.99
    assert found.band == (pytest.approx(0.1), pytest.approx(100.0))
    assert np.isnan(brenlox.strike(stations[0], method=method).error)


def test_tippers_know_which_of_the_two_it_is():
    tippers = [two_dimensional(-60.0, place, axes=33.0)[1] for place in range(3)]
    found = brenlox.strike(tippers, method="tipper")
    assert found.strike == pytest.approx(-60.0, abs=0.01)
    assert found.alternative == pytest.approx(30.0, abs=0.01) and found.used == 48


def test_bands_and_decades():
    tensor = two_dimensional(20.0, 1)[0]
    assert brenlox.strike(tensor, band=(10.0, 1.0)).used == 6
    decades = brenlox.strike_by_decade(tensor, band=(0.1, 50.0))
    assert [each.used + each.left_out for each in decades] == [5, 5, 4]
    assert decades[0].band == (pytest.approx(0.1), 1.0)


def test_odd_input():
    nothing = brenlox.strike([])
    assert np.isnan(nothing.strike) and nothing.used == 0
    assert brenlox.strike_by_decade([]) == []
    tensor, tipper = two_dimensional(20.0, 1)
    assert np.isnan(brenlox.strike(tensor, band=(1e5, 1e6)).strike)
    unknown = brenlox.Tensor([1.0, 2.0], np.full((2, 2, 2), np.nan))
    assert brenlox.strike([tensor, unknown]).used == 16
    with pytest.raises(TypeError, match="expected Tensor for method 'swift', received Tipper"):
        brenlox.strike([tipper], method="swift")
    with pytest.raises(ValueError, match="method: expected one of"):
        brenlox.strike(tensor, method="guess")
    with pytest.raises(ValueError, match="weights"):
        brenlox.strike(tensor, weights="some")
    for wrong in (0.0, np.nan, -1.0, np.inf):
        with pytest.raises(ValueError, match="frequency"):
            brenlox.strike(brenlox.Tensor([wrong], np.ones((1, 2, 2))))
