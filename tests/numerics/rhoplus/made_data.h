// made_data.h: one-dimensional data with known answers for tests and benchmark of the Rho+ routine.
#pragma once
#include <cmath>
#include <complex>
#include <cstdint>
#include <numbers>
#include <span>
#include <vector>

#include "numerics/constants.h"
#include "numerics/impedance/apparent_resistivity.h"
#include "numerics/impedance/layered_earth.h"
#include "numerics/rhoplus/inversion.h"
#include "numerics/rhoplus/rhoplus.h"
#include "samples/random_numbers.h"

namespace made {

using numerics::rhoplus::RhoplusDatum;
using numerics::rhoplus::Sheet;

/// `count` frequencies, evenly spaced in ln f from `low` to `high`, Hz.
inline std::vector<double> frequencies(int count, double low, double high) {
  std::vector<double> result;
  result.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    result.push_back(low * std::pow(high / low, count > 1 ? static_cast<double>(i) / (count - 1) : 0.0));
  }
  return result;
}

/// A used datum with a relative error of the resistivity and the error of the phase that belongs to it.
inline RhoplusDatum datum(double frequency, double resistivity, double phase, double error) {
  return {frequency, resistivity, error * resistivity, phase, 0.5 * error * 180.0 / std::numbers::pi,
          true,      true};
}

/// The data as a table for the routine.
inline std::vector<numerics::rhoplus::RhoplusRow> table(std::span<const RhoplusDatum> data) {
  std::vector<numerics::rhoplus::RhoplusRow> rows;
  rows.reserve(data.size());
  for (const RhoplusDatum& d : data) {
    rows.push_back({static_cast<float>(d.frequency), static_cast<float>(d.resistivity),
                    static_cast<float>(d.resistivity_error), static_cast<float>(d.phase),
                    static_cast<float>(d.phase_error), d.use_resistivity ? 1.0F : 0.0F,
                    d.use_phase ? 1.0F : 0.0F});
  }
  return rows;
}

/// What layers measure, without noise.
inline std::vector<RhoplusDatum> layered(std::span<const numerics::impedance::Layer> layers,
                                         std::span<const double> frequencies, double error) {
  std::vector<RhoplusDatum> data;
  for (const double f : frequencies) {
    const std::complex<double> z = numerics::impedance::surface_impedance(layers, f);
    data.push_back(datum(f, numerics::impedance::apparent_resistivity(z, f),
                         numerics::impedance::phase_degrees(z), error));
  }
  return data;
}

/// What sheets between insulating gaps measure: the impedance of sheets and gaps in parallel and in series,
/// from the bottom up. A conductor depth of infinity is an insulating basement.
inline std::vector<RhoplusDatum> sheets(std::span<const Sheet> sheets, double conductor_depth,
                                        std::span<const double> frequencies, double error) {
  using numerics::mu0;
  std::vector<RhoplusDatum> data;
  for (const double f : frequencies) {
    const double omega = 2.0 * std::numbers::pi * f;
    const std::complex<double> per_metre(0.0, omega * mu0);
    std::complex<double> conductance = 0.0;  // of everything below, S
    double depth = conductor_depth;
    for (std::size_t i = sheets.size(); i-- > 0;) {
      if (std::isfinite(depth)) {
        const std::complex<double> below = conductance == 0.0 ? 0.0 : 1.0 / conductance;
        conductance = 1.0 / (below + per_metre * (depth - sheets[i].depth));
      }
      conductance += sheets[i].conductance;
      depth = sheets[i].depth;
    }
    const std::complex<double> below = conductance == 0.0 ? 0.0 : 1.0 / conductance;
    const std::complex<double> z = below + per_metre * depth;
    data.push_back(datum(f, std::norm(z) / (omega * mu0), std::arg(z) * 180.0 / std::numbers::pi, error));
  }
  return data;
}

/// Adds normal errors of the size that the data claim. Errors stay relative to the noisy resistivity.
inline void add_noise(std::vector<RhoplusDatum>& data, std::uint32_t seed) {
  Module_samples::RandomNumbers random({seed});
  for (RhoplusDatum& d : data) {
    const double relative = d.resistivity_error / d.resistivity;
    d.resistivity *= std::exp(relative * random.normal());
    d.resistivity_error = relative * d.resistivity;
    d.phase += d.phase_error * random.normal();
  }
}

/// chi-squared of `model` against `data`, used values only.
inline double misfit2(std::span<const RhoplusDatum> data, std::span<const RhoplusDatum> model) {
  double sum = 0.0;
  for (std::size_t i = 0; i < data.size(); ++i) {
    const RhoplusDatum& d = data[i];
    if (d.use_resistivity) {
      sum +=
          std::pow(std::log(model[i].resistivity / d.resistivity) * d.resistivity / d.resistivity_error, 2);
    }
    if (d.use_phase) {
      sum += std::pow((model[i].phase - d.phase) / d.phase_error, 2);
    }
  }
  return sum;
}

/// Conductors below resistors and the other way round, by number of layers: 1, 2, 3 or 5.
inline std::vector<numerics::impedance::Layer> ground(int layers) {
  switch (layers) {
    case 1:
      return {{100.0, 0.0}};
    case 2:
      return {{100.0, 500.0}, {5.0, 0.0}};
    case 3:
      return {{30.0, 200.0}, {1000.0, 3000.0}, {10.0, 0.0}};
    default:
      return {{100.0, 150.0}, {5.0, 100.0}, {500.0, 2000.0}, {20.0, 3000.0}, {2000.0, 0.0}};
  }
}

}  // namespace made
