#!/usr/bin/env python3
"""What a call from Python costs, and which arrays are copied on the way.

    PYTHONPATH=build/release/python python/benchmarks/overhead.py [SURVEY]

Each call is timed beside a bound, a call of numpy that does the least that any binding has to: a pass over an array
of the same size. Work and bound take turns; the ratio of the best times can be compared between machines.
"""

import sys
import time
import tracemalloc

import brenlox
import numpy as np
from brenlox import section

LIMIT_US = 20.0


def best(call, seconds=0.2):
    """Least time of a call, s."""
    repeats, least = 1, np.inf
    end = time.perf_counter() + seconds
    while time.perf_counter() < end:
        begin = time.perf_counter()
        for _ in range(repeats):
            call()
        took = (time.perf_counter() - begin) / repeats
        least = min(least, took)
        repeats = max(1, int(0.005 / took))
    return least


def tensors(count):
    noise = np.random.default_rng(count)
    z = noise.standard_normal((count, 2, 2)) + 1j * noise.standard_normal((count, 2, 2))
    return brenlox.Tensor.from_errors(np.logspace(4, -4, count), z, 0.1)


def small_calls(survey):
    frequency, one = np.logspace(2, 0, 3), tensors(1)
    tipper = brenlox.Tipper(one.frequency, one.z[:, 0])
    calls = {
        "layered_response, 3 frequencies": lambda: brenlox.layered_response([100.0, 10.0], [50.0], frequency),
        "niblett_bostick, 3 points": lambda: brenlox.niblett_bostick(frequency, frequency, frequency),
        "Tensor.rotate, 1 frequency": lambda: one.rotate(30.0),
        "Tensor.phase_tensor, 1 frequency": one.phase_tensor,
        "Tensor.dimensionality, 1 frequency": one.dimensionality,
        "Tipper.arrows, 1 frequency": tipper.arrows,
    }
    if survey:
        line = survey.lines[0]
        kind = survey.kinds(line)[0]
        station = survey.stations(line)[0]
        number = station.number
        curve = survey.curve(line, number, "ExHy", reference_type=kind[0], dipole=kind[1])
        calls["attribute of a curve"] = lambda: curve.resistivity
        calls["mean of a curve's view"] = lambda: curve.resistivity.sum()
    bound = best(lambda: np.add(frequency, 1.0))
    print(f"{'call':40} {'us':>8} {'ratio to np.add':>16}")
    slow = []
    for name, call in calls.items():
        took = best(call)
        print(f"{name:40} {1e6 * took:8.2f} {took / bound:16.1f}")
        if 1e6 * took > LIMIT_US:
            slow.append(name)
    print(f"Above {LIMIT_US:g} us: {', '.join(slow) or 'none'}\n")


def rates():
    many = tensors(100_000)
    bound = best(lambda: np.square(many.z))
    print(f"{'100000 tensors':40} {'M/s':>8} {'ratio to np.square':>18}")
    for name, call in {"rotate": lambda: many.rotate(30.0), "phase_tensor": many.phase_tensor,
                       "dimensionality": many.dimensionality}.items():
        took = best(call, 1.0)
        print(f"{name:40} {0.1 / took:8.2f} {took / bound:18.1f}")
    print()


def allocated(call):
    """Result, and the most that numpy had allocated during the call, bytes."""
    tracemalloc.start()
    result = call()
    most = tracemalloc.get_traced_memory()[1]
    tracemalloc.stop()
    return result, most


def copies():
    """numpy reports its memory to tracemalloc; results are memory of the bindings, which it doesn't see."""
    many = tensors(100_000)
    size = many.z.nbytes + many.covariance.nbytes + many.frequency.nbytes
    same = brenlox.Tensor(many.frequency, many.z, many.covariance)
    print(f"A Tensor of {size / 1e6:.1f} MB shares the caller's arrays: "
          f"{all(np.shares_memory(getattr(same, name), getattr(many, name)) for name in ('frequency', 'z'))}, "
          f"{np.shares_memory(same.covariance, many.covariance)}")
    inputs = {
        "Tensor of arrays": lambda: brenlox.Tensor(many.frequency, many.z, many.covariance),
        "phase_tensor": many.phase_tensor,
        "dimensionality": many.dimensionality,
        "rotate": lambda: many.rotate(30.0),
        "Tensor of big-endian arrays (copied)": lambda: brenlox.Tensor(
            many.frequency, many.z.astype(">c16"), many.covariance),
    }
    print(f"{'call':40} {'copied MB':>10} {'of inputs':>10}")
    for name, call in inputs.items():
        result, most = allocated(call)
        print(f"{name:40} {most / 1e6:10.3f} {most / size:10.1%}")
    arrays = many.phase_tensor().to_dict()
    owners = {id(array.base) for name, array in arrays.items() if name != "frequency"}
    print(f"Results: {len(arrays) - 1} arrays own {len(owners)} buffers\n")


def long_work():
    widths = np.concatenate([300.0 * 1.6 ** np.arange(8, 0, -1), np.full(60, 300.0), 300.0 * 1.6 ** np.arange(1, 9)])
    heights = 40.0 * 1.18 ** np.arange(40)
    resistivity = np.full((len(heights), len(widths)), 100.0)
    resistivity[8:20, 30:45] = 10.0
    ground = section.Section(-0.5 * widths.sum(), widths, heights, resistivity)
    sites, frequencies = np.linspace(-8000.0, 8000.0, 24), np.logspace(3, -1, 16)
    response = best(lambda: section.response(ground, sites, frequencies), 1.0)
    both = best(lambda: section.response(ground, sites, frequencies, sensitivities=True), 3.0)
    print(f"Section of {len(heights)} x {len(widths)} cells, 24 sites, 16 frequencies: response {response:.3f} s, "
          f"with the Jacobian of {resistivity.size} parameters {both:.3f} s, ratio {both / response:.1f}")


def main():
    survey = brenlox.open(sys.argv[1], read_only=True) if len(sys.argv) > 1 else None
    small_calls(survey)
    rates()
    copies()
    long_work()


main()
