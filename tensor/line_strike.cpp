#include "tensor/line_strike.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <set>
#include <utility>

#include "core/median.h"
#include "numerics/impedance/angles.h"

namespace Module_tensor {

using numerics::impedance::BandStrike;
using numerics::impedance::PhaseTensor;
using numerics::impedance::SaidStrike;
using numerics::impedance::StrikeChoices;
using numerics::impedance::StrikeDatum;
using numerics::impedance::StrikeMethod;

namespace {

constexpr double single_precision = 1e-6;  // relative: how far a stored frequency is from what was meant

/// Calls `visit` with the frequency of each datum and the datum.
template <class Visit>
void each_datum(const StrikeStation& station, std::size_t index, StrikeMethod method, Visit visit) {
  if (method == StrikeMethod::tipper) {
    for (const TipperPoint& point : station.tensors.tipper) {
      visit(point.frequency, StrikeDatum{index, nullptr, nullptr, &point.tipper});
    }
    return;
  }
  for (std::size_t i = 0; i < station.tensors.points.size(); ++i) {
    const TensorPoint& point = station.tensors.points[i];
    const PhaseTensor* const tensor = station.phase_tensors[i] ? &*station.phase_tensors[i] : nullptr;
    visit(point.frequency, StrikeDatum{index, &point.tensor, tensor, nullptr});
  }
}

template <class Visit>
void each_frequency(const std::vector<StrikeStation>& stations, Visit visit) {
  for (const StrikeStation& station : stations) {
    for (const TensorPoint& point : station.tensors.points) {
      visit(point.frequency);
    }
    for (const TipperPoint& point : station.tensors.tipper) {
      visit(point.frequency);
    }
  }
}

int decade_of(double frequency) {
  return static_cast<int>(std::floor(std::log10(frequency * (1.0 + single_precision))));
}

std::size_t bin_of(double angle, double width, std::size_t bins) {
  const double turned = angle - 180.0 * std::floor(angle / 180.0);
  return std::min(static_cast<std::size_t>(turned / width), bins - 1);
}

}  // namespace

bool FrequencyBand::contains(double frequency) const {
  const double highest = upper * (with_upper ? 1.0 + single_precision : 1.0 - single_precision);
  return frequency >= lower * (1.0 - single_precision) &&
         (with_upper ? frequency <= highest : frequency < highest);
}

std::vector<StrikeStation> strike_stations(const std::vector<StationTensor>& stations) {
  std::vector<StrikeStation> result;
  result.reserve(stations.size());
  for (const StationTensor& station : stations) {
    StrikeStation& added = result.emplace_back();
    added.tensors = turned_to(station, 0.0);
    added.phase_tensors.reserve(added.tensors.points.size());
    for (const TensorPoint& point : added.tensors.points) {
      added.phase_tensors.push_back(numerics::impedance::phase_tensor(point.tensor));
    }
  }
  return result;
}

std::vector<StrikeStation> strike_stations(const std::vector<StationTensor>& stations,
                                           const Frequencies& frequencies) {
  std::vector<StationTensor> enabled = stations;
  for (StationTensor& station : enabled) {
    leave_out_disabled(frequencies, station);
  }
  return strike_stations(enabled);
}

std::optional<FrequencyBand> whole_band(const std::vector<StrikeStation>& stations) {
  FrequencyBand band{std::numeric_limits<double>::infinity(), 0.0};
  each_frequency(stations, [&band](double frequency) {
    band.lower = std::min(band.lower, frequency);
    band.upper = std::max(band.upper, frequency);
  });
  return band.upper > 0.0 ? std::optional(band) : std::nullopt;
}

std::vector<FrequencyBand> decades_of(const std::vector<StrikeStation>& stations, const FrequencyBand& band) {
  std::set<int> decades;
  each_frequency(stations, [&](double frequency) {
    if (band.contains(frequency)) {
      decades.insert(decade_of(frequency));
    }
  });
  std::vector<FrequencyBand> result;
  for (const int decade : decades) {
    const double upper = std::pow(10.0, decade + 1);
    const bool cut = band.upper < upper * (1.0 - single_precision);
    result.push_back({std::max(std::pow(10.0, decade), band.lower), cut ? band.upper : upper, cut});
  }
  return result;
}

std::vector<PointStrike> point_strikes(const std::vector<StrikeStation>& stations,
                                       const StrikeChoices& choices) {
  std::vector<PointStrike> points;
  const auto add = [&](double frequency, const StrikeDatum& datum) {
    points.push_back({frequency, {datum.station, numerics::impedance::single_strike(datum, choices)}});
  };
  for (std::size_t index = 0; index < stations.size(); ++index) {
    each_datum(stations[index], index, choices.method, add);
  }
  return points;
}

std::vector<SaidStrike> said_within(const std::vector<PointStrike>& points, const FrequencyBand& band) {
  std::vector<SaidStrike> said;
  said.reserve(points.size());
  for (const PointStrike& point : points) {
    if (band.contains(point.frequency)) {
      said.push_back(point.strike);
    }
  }
  return said;
}

BandStrike line_strike(const std::vector<StrikeStation>& stations, const FrequencyBand& band,
                       const StrikeChoices& choices) {
  return numerics::impedance::band_strike(said_within(point_strikes(stations, choices), band),
                                          choices.method);
}

StationStrike station_strike(const StrikeStation& station, const FrequencyBand& band,
                             const StrikeChoices& choices) {
  std::vector<StrikeDatum> data;
  each_datum(station, 0, choices.method, [&](double frequency, const StrikeDatum& datum) {
    if (band.contains(frequency)) {
      data.push_back(datum);
    }
  });
  StationStrike result;
  result.strike = numerics::impedance::band_strike(data, choices);
  std::vector<double> skews;
  for (std::size_t i = 0; i < station.tensors.points.size(); ++i) {
    const TensorPoint& point = station.tensors.points[i];
    if (!band.contains(point.frequency)) {
      continue;
    }
    result.masked_diagonals += point.masked_diagonals;
    if (const auto& tensor = station.phase_tensors[i]; tensor && tensor->beta.has_value()) {
      skews.push_back(std::abs(tensor->beta.value));
    }
  }
  result.median_skew = median(std::move(skews));
  return result;
}

double Rose::highest() const {
  double highest = 0.0;
  for (const auto* const counts : {&strikes, &alternatives}) {
    highest = counts->empty() ? highest : std::max(highest, std::ranges::max(*counts));
  }
  return highest;
}

Rose strike_rose(std::span<const SaidStrike> said, StrikeMethod method, double bin_width, double common) {
  const bool of_tippers = method == StrikeMethod::tipper;
  const auto bins = static_cast<std::size_t>(std::lround(180.0 / bin_width));
  Rose rose{bin_width, std::vector<double>(bins), std::vector<double>(of_tippers ? 0 : bins), 0};
  const double centre = std::isnan(common) ? 0.0 : common;
  for (const auto& [station, single] : said) {
    if (std::isnan(single.strike)) {
      continue;
    }
    ++rose.points;
    if (of_tippers) {
      rose.strikes[bin_of(single.strike, bin_width, bins)] += single.weight;
      continue;
    }
    const double strike = centre + numerics::impedance::within_period(single.strike - centre, 90.0);
    rose.strikes[bin_of(strike, bin_width, bins)] += single.weight;
    rose.alternatives[bin_of(strike + 90.0, bin_width, bins)] += single.weight;
  }
  return rose;
}

}  // namespace Module_tensor
