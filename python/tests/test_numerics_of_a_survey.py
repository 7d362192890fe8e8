"""What the numerics give of a line of tensors is what the program writes."""

import json
import subprocess
from pathlib import Path

import brenlox
import numpy as np
import pytest

BUILD = Path(brenlox.__file__).resolve().parents[2]
BATCH = BUILD / "batch" / "brenlox_batch"
SAMPLES = BUILD / "samples" / "brenlox_make_samples"
pytestmark = pytest.mark.skipif(not (BATCH.exists() and SAMPLES.exists()), reason="the programs aren't built")


def batch(*words):
    ran = subprocess.run([BATCH, *map(str, words)], capture_output=True, text=True)
    assert ran.returncode == 0, ran.stderr
    return ran.stdout


@pytest.fixture(scope="module")
def path(tmp_path_factory):
    folder = tmp_path_factory.mktemp("tensor_line")
    subprocess.run([SAMPLES, folder / "files", "--tensor-line"], check=True, stdout=subprocess.DEVNULL)
    batch("new", folder / "survey.mdb")
    batch("import", folder / "survey.mdb", folder / "files", "--auto")
    return folder / "survey.mdb"


def same(given, written, name):
    """Angles and numbers, NaN where null is written."""
    np.testing.assert_allclose(given, np.array(written, dtype=float), rtol=1e-6, atol=1e-9, err_msg=name)


def test_tensors_and_tippers_of_stations(path):
    stations = json.loads(batch("tensor", path, "--line", "100E", "--rotate", "30", "--json", "-"))["stations"]
    names = {"pt_beta": "beta", "pt_alpha": "alpha", "pt_azimuth": "azimuth", "pt_ellipticity": "ellipticity",
             "pt_phi_max": "phase_max", "pt_phi_min": "phase_min", "pt_xy": "xy", "pt_det": "determinant",
             "pt_phi_geometric": "geometric_phase"}
    earths = {"det_rho": "resistivity_determinant", "det_phase": "phase_determinant", "mean_rho": "resistivity_mean",
              "ssq_phase": "phase_sum_of_squares", "swift_strike": "swift_strike", "swift_skew": "swift_skew",
              "bahr_skew": "bahr_skew", "bahr_mu": "bahr_mu", "bahr_sigma": "bahr_sigma"}
    arrow_names = {"arrow_real_length": "real_length", "arrow_real_parkinson": "real_azimuth",
                   "arrow_imag_length": "imaginary_length", "arrow_imag_as_is": "imaginary_azimuth",
                   "tipper_magnitude": "magnitude"}
    with brenlox.open(path, read_only=True) as survey:
        for station in stations[::4]:
            values, errors = station["values"], station["errors"]
            tensor = survey.tensor("100E", station["number"])
            assert tensor.axes == station["axes"]
            same(tensor.frequency, station["frequency"], "frequency")
            phases, earth = tensor.phase_tensor(), tensor.quantities()
            for written, name in names.items():
                same(getattr(phases, name), values[written], written)
                same(getattr(phases, name + "_error"), errors[written], written)
            for written, name in earths.items():
                same(earth[name], values[written], written)
                same(earth[name + "_error"], errors[written], written)
            turned = tensor.rotate(30.0 - tensor.axes)
            for row, x in enumerate("xy"):
                for column, y in enumerate("xy"):
                    same(turned.z[:, row, column].real, values[f"z30_{x}{y}_re"], "z30")
                    same(turned.z[:, row, column].imag, values[f"z30_{x}{y}_im"], "z30")
            same(tensor.dimensionality(), values["dimension_beta3"], "dimension_beta3")
            same(tensor.dimensionality(skew_limit=5.0), values["dimension_beta5"], "dimension_beta5")
            for of, written in (("determinant", "det"), ("xy", "xy"), ("yx", "yx")):
                bostick = tensor.niblett_bostick(of)
                same(bostick.depth, values[f"bostick_depth_{written}"], "depth")
                same(bostick.resistivity, values[f"bostick_rho_{written}"], "resistivity")
                same(bostick.resistivity_error, errors[f"bostick_rho_{written}"], "resistivity")
            tipper = survey.tipper("100E", station["number"])
            arrows = tipper.arrows()
            for written, name in arrow_names.items():
                same(getattr(arrows, name), values[written], written)
                same(getattr(arrows, name + "_error"), errors[written], written)
            same(tipper.arrows("wiese").real_azimuth, values["arrow_real_wiese"], "wiese")


def test_strikes_of_a_line(path, tmp_path):
    batch("strike", path, "--line", "100E", "--json", tmp_path / "strike.json")
    written = json.loads((tmp_path / "strike.json").read_text("utf-8"))["band_strike"]
    methods = {"pt_azimuth": "phase_tensor", "pt_alpha": "phase_tensor_alpha", "swift_sum": "swift",
               "tipper": "tipper"}
    with brenlox.open(path, read_only=True) as survey:
        tensors = survey.tensors("100E")
        tippers = {station: survey.tipper("100E", station) for station in tensors}
    for name, method in methods.items():
        for weights in ("none", "ellipticity_squared"):
            rows = [row for row in written if row["method"] == name and row["weights"] == weights]
            if not rows:  # nothing to weight with
                continue
            stations = tippers if method == "tipper" else tensors
            found = [brenlox.strike(stations, method=method, weights=weights),
                     *brenlox.strike_by_decade(stations, method=method, weights=weights)]
            assert len(found) == len(rows)
            for row, strike in zip(rows, found):
                assert (strike.used, strike.left_out) == (row["n"], row["left_out"])
                for ours, theirs in (("strike", "strike"), ("error", "error"), ("alternative", "alternative"),
                                     ("deviation", "deviation")):
                    same(getattr(strike, ours), row[theirs], f"{name} {weights} {theirs}")
