"""Calls of every kind that the bindings have: results that outlive their owners, refusals, stopped work."""

import gc
import sys

import brenlox
import numpy as np
from brenlox import section


def expect(error, call, *arguments, **options):
    try:
        call(*arguments, **options)
    except error:
        return
    raise AssertionError(f"{call} takes {arguments}")


def numerics():
    frequency = np.logspace(2, 0, 6)
    earth = brenlox.layered_response([100.0, 10.0], [300.0], frequency)
    columns = (frequency, earth.resistivity, earth.phase, 0.05 * earth.resistivity, np.full(6, 2.0))
    fit = brenlox.rhoplus(*columns)
    sheets, remarks = fit.sheets, fit.remarks
    del fit
    gc.collect()
    assert np.isfinite(sheets).all() and isinstance(remarks, list)
    expect(ValueError, brenlox.rhoplus, *columns[:-1], np.ones(3))
    expect(ValueError, brenlox.rhoplus, [], [], [], [], [])
    expect(ValueError, brenlox.layered_response, [1.0, -1.0], [1.0], [1.0])
    brenlox.niblett_bostick(*columns)

    z = np.zeros((6, 2, 2), complex)
    z[:, 0, 1], z[:, 1, 0] = earth.impedance, -0.5 * earth.impedance
    tensor = brenlox.Tensor.from_errors(frequency, z, 0.1)
    beta = tensor.rotate(20.0).phase_tensor().beta
    tensor.quantities(), tensor.dimensionality(), tensor.niblett_bostick()
    tipper = brenlox.Tipper.from_errors(frequency, np.full((6, 2), 0.2 + 0.1j), 0.01)
    arrows = tipper.rotate(10.0).arrows()
    brenlox.strike([tensor, tensor]), brenlox.strike_by_decade(tipper, method="tipper")
    del tensor, tipper
    gc.collect()
    assert len(beta) == len(arrows.strike) == 6


def sections():
    widths = np.concatenate([[3000.0, 1000.0], np.full(6, 300.0), [1000.0, 3000.0]])
    heights = 60.0 * 1.6 ** np.arange(10)
    resistivity = np.full((10, 10), 100.0)
    resistivity[2:5, 4:6] = 10.0
    ground = section.Section(-0.5 * widths.sum(), widths, heights, resistivity)
    sites, frequencies = [-300.0, 0.0], [30.0, 3.0]
    response, jacobian = section.response(ground, sites, frequencies, sensitivities=True, threads=2)
    phase, slopes = response.te.phase, jacobian.tm.phase
    del response, jacobian
    gc.collect()
    assert np.isfinite(phase).all() and np.isfinite(slopes).all()
    section.tipper(ground, sites, frequencies)
    section.mesh_warnings(ground, sites, frequencies)

    def fail(share):
        raise RuntimeError("of the caller's own")

    many = np.logspace(2, 0, 12)
    expect(RuntimeError, section.response, ground, sites, many, progress=fail)
    assert section.response(ground, sites, many, progress=lambda share: False) is None
    expect(ValueError, section.response, ground, [1e9], [1.0])
    expect(ValueError, section.Section, 0.0, widths, heights, resistivity[1:])


def surveys(path):
    kept = []
    for read_only in (True, False, False):
        survey = brenlox.open(path, read_only)
        expect(brenlox.Error, brenlox.open, path)
        line = survey.lines[0]
        survey.stations()
        kind = survey.kinds(line)[0]
        choice = {"reference_type": kind[0], "dipole": kind[1]}
        tensors = survey.tensors(line, **choice)
        station = next(iter(tensors))
        kept.append(tensors[station].z)
        kept.append(survey.tipper(line, station, **choice).t)
        curve = survey.curve(line, station, "ExHy", **choice)
        kept.append(curve.resistivity)
        kept.extend(repeat.phase for repeat in survey.repeats(line, station, "ExHy", **choice))
        expect(ValueError, survey.curve, line, station, "ExEy")
        expect(ValueError, survey.curve, "no line", station, "ExHy")
        del curve
        if not read_only:
            survey.recalculate()
        survey.close()
        expect(brenlox.Error, survey.kinds, line)
        del survey
        gc.collect()
    assert all(np.isfinite(array).any() for array in kept)


numerics()
sections()
surveys(sys.argv[1])
print("all calls made")
