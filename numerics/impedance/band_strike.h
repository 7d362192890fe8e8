// band_strike.h: the strike that many tensors have in common.
//
// A strike has a period of 90 degrees: averages are taken on four times the angle (Mardia & Jupp 2000,
// Directional Statistics). Arrows stand across one strike only, which has a period of 180 degrees: theirs are
// averaged on twice the angle, so that arrows at right angles to each other cancel. Conventions as in
// tensor.h.
#pragma once
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "numerics/impedance/phase_tensor.h"
#include "numerics/impedance/tipper.h"

namespace numerics::impedance {

enum class StrikeMethod : std::uint8_t {
  phase_tensor_azimuth,  // alpha - beta
  phase_tensor_alpha,
  swift_sum,  // least sum of (|Zxx'|^2 + |Zyy'|^2) / |Z|^2
  tipper      // across the real arrows
};

/// What the methods by phase tensor weight with. Of the others, Swift's weights are those of its sum
/// (`swift_form`), and arrows count alike.
enum class StrikeWeights : std::uint8_t { none, ellipticity_squared };

/// The limits hold for Swift's strike, too, where a datum has its phase tensor. Arrows have `least_arrow`.
struct StrikeChoices {
  StrikeMethod method = StrikeMethod::phase_tensor_azimuth;
  StrikeWeights weights = StrikeWeights::ellipticity_squared;
  double skew_limit = 3.0;         // degrees; phase tensors beyond it have no say
  double least_ellipticity = 0.1;  // the same below it

  bool operator==(const StrikeChoices&) const = default;
};

/// A tensor or tipper of one station. What isn't there is null.
struct StrikeDatum {
  std::size_t station = 0;
  const Tensor* tensor = nullptr;
  const PhaseTensor* phase_tensor = nullptr;
  const Tipper* tipper = nullptr;
};

struct BandStrike {
  Estimate strike;  // degrees, -45 < strike <= 45, of arrows -90 < strike <= 90; its error from a bootstrap
                    // of the stations
  double alternative = not_known;    // strike + 90, as -90 < angle <= 90
  double concentration = not_known;  // |s|, 0 to 1
  double deviation = not_known;  // degrees, sqrt(-2 ln |s|) / 4, of arrows / 2; not known of a single point
  std::size_t used = 0;
  std::size_t left_out = 0;  // by the limits, or without what the method needs
};

/// What a datum says by itself, for a rose: degrees modulo 90 in -45 < angle <= 45, of an arrow modulo 180 in
/// -90 < angle <= 90, with its weight. No value where the limits leave it out.
struct SingleStrike {
  double strike = not_known;
  double weight = 0.0;
};
SingleStrike single_strike(const StrikeDatum& datum, const StrikeChoices& choices);

/// The same with the station of the datum.
struct SaidStrike {
  std::size_t station = 0;
  SingleStrike said;
};

/// The common strike. The points of one station aren't independent: the error comes from drawing stations,
/// with a fixed seed, so that the same data always have the same error; a single station has none.
BandStrike band_strike(std::span<const StrikeDatum> data, const StrikeChoices& choices);
/// The same of what was said by a method: bands that share data needn't ask these again.
BandStrike band_strike(std::span<const SaidStrike> said, StrikeMethod method);

}  // namespace numerics::impedance
