#include "numerics/impedance/band_strike.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdint>
#include <map>
#include <random>

#include "numerics/constants.h"
#include "numerics/impedance/angles.h"
#include "numerics/impedance/impedance_strike.h"

namespace numerics::impedance {

namespace {

constexpr double full_circle = 360.0;         // degrees
constexpr double right_angle_harmonic = 4.0;  // periods of a strike modulo 90 in a circle

/// Degrees after which a strike is the same. An arrow tells a strike from the one at a right angle to it.
double period_of(StrikeMethod method) { return method == StrikeMethod::tipper ? 180.0 : 90.0; }

/// Directions on the circle of so many times the angle that a period goes once round, added up with their
/// weights.
struct CircularSum {
  double period = 90.0;  // degrees
  std::complex<double> vector{};
  double weight = 0.0;

  [[nodiscard]] double harmonic() const { return full_circle / period; }

  void add(double strike, double strike_weight) {
    vector += std::polar(strike_weight, harmonic() * strike * radians_per_degree);
    weight += strike_weight;
  }
  void add(const CircularSum& other) {
    vector += other.vector;
    weight += other.weight;
  }
  /// Of the mean vector, 0 to 1.
  [[nodiscard]] double concentration() const {
    return weight > 0.0 ? std::min(std::abs(vector) / weight, 1.0) : 0.0;
  }
  [[nodiscard]] bool has_direction() const {
    constexpr double rounding = 1e-12;  // directions that cancel leave this share of their weights
    return concentration() > rounding;
  }
  [[nodiscard]] double strike() const {
    return within_period(std::arg(vector) / harmonic() * degrees_per_radian, period);
  }
  /// Circular standard deviation (Mardia & Jupp 2000), degrees.
  [[nodiscard]] double deviation() const {
    return std::sqrt(-2.0 * std::log(concentration())) / harmonic() * degrees_per_radian;
  }
};

/// Negated, so that a skew or an ellipticity that isn't known is beyond its limit.
bool is_left_out(const PhaseTensor& tensor, const StrikeChoices& choices) {
  return !(std::abs(tensor.beta.value) <= choices.skew_limit) ||
         !(tensor.ellipticity.value >= choices.least_ellipticity);
}

SingleStrike of_phase_tensor(const PhaseTensor& tensor, const StrikeChoices& choices) {
  const Estimate& angle = choices.method == StrikeMethod::phase_tensor_alpha ? tensor.alpha : tensor.azimuth;
  const double ellipticity = tensor.ellipticity.value;
  return {angle.value, choices.weights == StrikeWeights::none ? 1.0 : ellipticity * ellipticity};
}

SingleStrike of_tensor(const Tensor& tensor) {
  const std::complex<double> form = swift_form(tensor);
  return {std::arg(form) / right_angle_harmonic * degrees_per_radian, std::abs(form)};
}

SingleStrike unlimited_strike(const StrikeDatum& datum, const StrikeChoices& choices) {
  switch (choices.method) {
    case StrikeMethod::phase_tensor_azimuth:
    case StrikeMethod::phase_tensor_alpha:
      return datum.phase_tensor != nullptr ? of_phase_tensor(*datum.phase_tensor, choices) : SingleStrike{};
    case StrikeMethod::swift_sum:
      return datum.tensor != nullptr ? of_tensor(*datum.tensor) : SingleStrike{};
    case StrikeMethod::tipper:
      return datum.tipper != nullptr ? SingleStrike{tipper_strike(*datum.tipper).value, 1.0} : SingleStrike{};
  }
  return {};
}

/// So many random numbers, the same ones each time. They are drawn once: a line has dozens of bands.
std::span<const std::uint32_t> random_numbers(std::size_t count) {
  constexpr std::uint32_t seed = 20201;  // any: the same data have the same error
  thread_local std::mt19937 random(seed);
  thread_local std::vector<std::uint32_t> numbers;
  while (numbers.size() < count) {
    numbers.push_back(static_cast<std::uint32_t>(random()));
  }
  return std::span(numbers).first(count);
}

/// Circular deviation of the strikes of as many stations drawn at random, again and again (Efron 1979). NaN
/// of a single station, which can't be told from its own copies.
double bootstrap_error(const std::vector<CircularSum>& stations) {
  constexpr int draws = 400;  // the error of the error is then 1 / sqrt(800), 4 percent
  if (stations.size() < 2) {
    return not_known;
  }
  const std::span<const std::uint32_t> numbers =
      random_numbers(static_cast<std::size_t>(draws) * stations.size());
  const double period = stations.front().period;
  CircularSum strikes{period};
  for (int draw = 0; draw < draws; ++draw) {
    CircularSum drawn{period};
    for (const std::uint32_t number :
         numbers.subspan(static_cast<std::size_t>(draw) * stations.size(), stations.size())) {
      // The upper half of the product: whole numbers only, the same everywhere.
      const std::uint64_t product = std::uint64_t{number} * stations.size();
      drawn.add(stations[static_cast<std::size_t>(product >> 32U)]);
    }
    if (drawn.has_direction()) {
      strikes.add(drawn.strike(), 1.0);
    }
  }
  return strikes.has_direction() ? strikes.deviation() : not_known;
}

}  // namespace

SingleStrike single_strike(const StrikeDatum& datum, const StrikeChoices& choices) {
  if (choices.method != StrikeMethod::tipper && datum.phase_tensor != nullptr &&
      is_left_out(*datum.phase_tensor, choices)) {
    return {};
  }
  const SingleStrike said = unlimited_strike(datum, choices);
  if (std::isnan(said.strike) || !(said.weight > 0.0)) {
    return {};
  }
  return {within_period(said.strike, period_of(choices.method)), said.weight};
}

BandStrike band_strike(std::span<const StrikeDatum> data, const StrikeChoices& choices) {
  std::vector<SaidStrike> said;
  said.reserve(data.size());
  for (const StrikeDatum& datum : data) {
    said.push_back({datum.station, single_strike(datum, choices)});
  }
  return band_strike(said, choices.method);
}

BandStrike band_strike(std::span<const SaidStrike> data, StrikeMethod method) {
  BandStrike band;
  const CircularSum nothing{period_of(method)};
  // Ascending: the order of the data doesn't matter to the draws.
  std::map<std::size_t, CircularSum> of_station;
  for (const auto& [station, said] : data) {
    if (std::isnan(said.strike)) {
      ++band.left_out;
      continue;
    }
    ++band.used;
    of_station.try_emplace(station, nothing).first->second.add(said.strike, said.weight);
  }
  CircularSum whole = nothing;
  std::vector<CircularSum> stations;
  for (const auto& [station, sum] : of_station) {
    whole.add(sum);
    stations.push_back(sum);
  }
  if (band.used == 0) {
    return band;
  }
  band.concentration = whole.concentration();
  if (whole.has_direction()) {
    band.strike = {whole.strike(), bootstrap_error(stations)};
    band.alternative = within_period(band.strike.value + 90.0, 180.0);
    band.deviation = band.used > 1 ? whole.deviation() : not_known;  // one point scatters about nothing
  }
  return band;
}

}  // namespace numerics::impedance
