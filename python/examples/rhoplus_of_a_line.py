#!/usr/bin/env python3
"""How well layered ground explains each station of a line: a table and a picture.

    rhoplus_of_a_line.py SURVEY LINE TABLE.csv PICTURE.png
"""

import csv
import sys

import brenlox
import matplotlib
import numpy as np

matplotlib.use("Agg")
from matplotlib import pyplot  # noqa: E402  (the kind of display comes first)


def main():
    path, line, table, picture = sys.argv[1:]
    with brenlox.open(path, read_only=True) as survey:
        tensors = survey.tensors(line)
    strike = brenlox.strike(tensors)
    rows = []
    residuals = []
    for station, tensor in tensors.items():
        earth = tensor.quantities()
        resistivity, phase = earth["resistivity_determinant"], earth["phase_determinant"]
        fit = brenlox.rhoplus(tensor.frequency, resistivity, phase,
                              np.fmax(earth["resistivity_determinant_error"], 0.05 * resistivity),
                              np.fmax(earth["phase_determinant_error"], 1.5))
        dimensions = tensor.dimensionality()
        rows.append([station, fit.used_values, f"{fit.chi:.2f}", f"{fit.chi_of_95_percent:.2f}",
                     "yes" if fit.is_consistent else "no", *(int(np.sum(dimensions == each)) for each in (1, 2, 3))])
        residuals.append((station, 1.0 / tensor.frequency, fit.phase_residual))
    with open(table, "w", newline="", encoding="utf-8") as file:
        writer = csv.writer(file)
        writer.writerow(["station", "values", "chi", "chi of 95 %", "layered", "1-D", "2-D", "3-D points"])
        writer.writerows(rows)

    figure, (above, below) = pyplot.subplots(2, 1, sharex=True, figsize=(9, 7), layout="constrained")
    stations = [row[0] for row in rows]
    above.plot(stations, [float(row[2]) for row in rows], "o-", label="Rho+")
    above.plot(stations, [float(row[3]) for row in rows], "k--", label="exceeded by noise once in twenty times")
    above.set(ylabel="chi of the determinant", ylim=(0, None),
              title=f"Line {line}: strike {strike.strike:.1f} ± {strike.error:.1f} degrees")
    above.legend()
    cells = below.scatter(
        np.concatenate([np.full(len(period), station) for station, period, _ in residuals]),
        np.concatenate([period for _, period, _ in residuals]),
        c=np.concatenate([residual for _, _, residual in residuals]), cmap="RdBu", vmin=-3, vmax=3, marker="s")
    below.set(yscale="log", xlabel="Station", ylabel="Period (s)")
    below.invert_yaxis()
    figure.colorbar(cells, ax=below, label="phase, model - data (errors)")
    figure.savefig(picture, dpi=120)


main()
