import numpy as np
import pytest


@pytest.fixture
def half_space():
    """Frequency, resistivity, phase and their errors of 100 ohm-m with noise."""
    noise = np.random.default_rng(7)
    frequency = np.logspace(3, -2, 31)
    resistivity = 100.0 * np.exp(0.03 * noise.standard_normal(31))
    phase = 45.0 + 0.9 * noise.standard_normal(31)
    return frequency, resistivity, phase, 0.03 * resistivity, np.full(31, 0.9)
