import numpy as np
import pytest
from programs import batch, make_samples


@pytest.fixture
def half_space():
    """Frequency, resistivity, phase and their errors of 100 ohm-m with noise."""
    noise = np.random.default_rng(7)
    frequency = np.logspace(3, -2, 31)
    resistivity = 100.0 * np.exp(0.03 * noise.standard_normal(31))
    phase = 45.0 + 0.9 * noise.standard_normal(31)
    return frequency, resistivity, phase, 0.03 * resistivity, np.full(31, 0.9)


@pytest.fixture(scope="session")
def made_survey(tmp_path_factory):
    """The sample survey; its field files are beside it in `files`."""
    folder = tmp_path_factory.mktemp("survey")
    make_samples(folder / "files")
    path = folder / "sample.mdb"
    batch("new", path)
    batch("import", path, folder / "files", "--reference", 0, "--line-columns", "2,4", "--event-columns", "14,1",
          "--rate-columns", "17,4", "--sectid-as-station")
    batch("recalculate", path)
    return path
