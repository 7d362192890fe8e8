// line_strike.h: the strike of a line by bands of frequencies and by stations, with roses.
//
// Conventions: frequency Hz; angles in degrees clockwise from north, whatever axes the readings have. A
// strike, -45 < strike <= 45, and its alternative at a right angle are equal solutions. Only induction arrows
// know which it is: theirs is what they stand across, -90 < strike <= 90.
#pragma once
#include <cstddef>
#include <limits>
#include <optional>
#include <span>
#include <vector>

#include "numerics/impedance/band_strike.h"
#include "numerics/impedance/phase_tensor.h"
#include "tensor/station_tensor.h"

namespace Module_tensor {

/// Frequencies from `lower` to `upper`. Stored ones are singles, so that a band's ends hold within a
/// millionth.
struct FrequencyBand {
  double lower = 0.0;
  double upper = std::numeric_limits<double>::infinity();
  bool with_upper = true;  // bands that follow each other share no frequency

  bool operator==(const FrequencyBand&) const = default;
  [[nodiscard]] bool contains(double frequency) const;
};

/// A station in axes to the north, with the phase tensors of its points; none where a tensor has none.
struct StrikeStation {
  StationTensor tensors;
  std::vector<std::optional<numerics::impedance::PhaseTensor>> phase_tensors;
};

std::vector<StrikeStation> strike_stations(const std::vector<StationTensor>& stations);
/// The same without the frequencies that are switched off in the list.
std::vector<StrikeStation> strike_stations(const std::vector<StationTensor>& stations,
                                           const Frequencies& frequencies);

/// From the lowest to the highest frequency of all tensors and tippers; none if there are neither.
std::optional<FrequencyBand> whole_band(const std::vector<StrikeStation>& stations);
/// The decades that hold data of a band, ascending, cut to it at its ends.
std::vector<FrequencyBand> decades_of(const std::vector<StrikeStation>& stations, const FrequencyBand& band);

/// What each point or arrow of a line says by itself, or that the limits leave it out.
struct PointStrike {
  double frequency = 0.0;
  numerics::impedance::SaidStrike strike;
};
std::vector<PointStrike> point_strikes(const std::vector<StrikeStation>& stations,
                                       const numerics::impedance::StrikeChoices& choices);
std::vector<numerics::impedance::SaidStrike> said_within(const std::vector<PointStrike>& points,
                                                         const FrequencyBand& band);

/// The common strike of all stations in a band.
numerics::impedance::BandStrike line_strike(const std::vector<StrikeStation>& stations,
                                            const FrequencyBand& band,
                                            const numerics::impedance::StrikeChoices& choices);

/// A station by itself. Its points aren't independent, so that it has a deviation but no error.
struct StationStrike {
  numerics::impedance::BandStrike strike;
  double median_skew = numerics::impedance::not_known;  // of |beta|, of all phase tensors of the band
  std::size_t masked_diagonals = 0;  // of the tensors in the band, elements taken in spite of a mask
};
StationStrike station_strike(const StrikeStation& station, const FrequencyBand& band,
                             const numerics::impedance::StrikeChoices& choices);

/// Points, or the sum of their weights, by direction: bin i covers [i, i + 1) times the width, of 0 to 180.
struct Rose {
  double bin_width = 10.0;
  std::vector<double> strikes;       // the solution within 45 degrees of the common strike
  std::vector<double> alternatives;  // each of these + 90; empty for tippers, which leave no choice
  std::size_t points = 0;

  /// The highest bin of either.
  [[nodiscard]] double highest() const;
};

/// @param bin_width  a divisor of 180
/// @param common     the strike that the points have in common; not known: 0
Rose strike_rose(std::span<const numerics::impedance::SaidStrike> said,
                 numerics::impedance::StrikeMethod method, double bin_width, double common);

}  // namespace Module_tensor
