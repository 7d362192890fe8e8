#include "tensor/strike_direction.h"

#include <algorithm>
#include <cmath>

#include "core/number_text.h"
#include "numerics/constants.h"
#include "numerics/geodesy/best_line.h"
#include "numerics/impedance/angles.h"

namespace Module_tensor {

namespace {

/// Angles to the normal that differ by less than this, degrees, decide nothing.
constexpr double clearly_nearer = 10.0;

/// -90 < angle <= 90.
double axial(double angle) { return numerics::impedance::within_period(angle, 180.0); }

/// Between two axes, 0 to 90.
double between(double one, double other) { return std::abs(axial(one - other)); }

std::string line_sentence(double strike, double azimuth) {
  const double nearer = nearer_to_normal(strike, azimuth);
  const double off = between(nearer, azimuth + 90.0);
  const std::string runs = "The line runs at " + format_number(azimuth, "0") + " degrees: ";
  if (90.0 - 2.0 * off < clearly_nearer) {
    return runs + bearing_text(strike) + " and " + bearing_text(strike + 90.0) +
           " are both about 45 degrees off its normal.";
  }
  return runs + bearing_text(nearer) +
         (off < clearly_nearer ? " is across it."
                               : " is nearer to its normal, " + format_number(off, "0") + " degrees off.");
}

std::string arrows_sentence(double strike, const ArrowVotes& votes) {
  const std::size_t all = votes.strike + votes.alternative;
  if (all == 0) {
    return "No induction arrows that could tell one from the other.";
  }
  const std::size_t most = std::max(votes.strike, votes.alternative);
  const std::string count = format_number(static_cast<std::int64_t>(most), "0") + " of " +
                            format_number(static_cast<std::int64_t>(all), "0") + " real arrows.";
  if (votes.strike == votes.alternative) {
    return "The tippers are undecided: either is favoured by " + count;
  }
  return "The tippers favour " + bearing_text(votes.strike > votes.alternative ? strike : strike + 90.0) +
         ": it is across " + count;
}

}  // namespace

std::string bearing_text(double strike) {
  const double angle = axial(std::round(strike));
  return "N" + format_number(std::abs(angle), "0") + (angle < 0.0 ? "W" : "E");
}

std::string angle_text(double strike) { return format_number(axial(strike), "0.0"); }

std::optional<double> line_azimuth(const Module_projections::StationPlaces& places) {
  std::vector<numerics::geodesy::MapPlace> known;
  for (const Module_projections::PlacedStation& station : places.stations) {
    if (station.place) {
      known.push_back(*station.place);
    }
  }
  const auto line = numerics::geodesy::best_line(known);
  if (!line || !line->is_line()) {
    return std::nullopt;
  }
  const double azimuth =
      std::atan2(line->direction_east, line->direction_north) * numerics::degrees_per_radian;
  return azimuth - 180.0 * std::floor(azimuth / 180.0);
}

std::optional<double> line_azimuth(const std::string& line) {
  return line_azimuth(Module_projections::station_places(line));
}

double nearer_to_normal(double strike, double line_azimuth) {
  const double normal = line_azimuth + 90.0;
  return axial(between(strike, normal) <= between(strike + 90.0, normal) ? strike : strike + 90.0);
}

ArrowVotes arrow_votes(std::span<const numerics::impedance::SaidStrike> arrows, double strike) {
  ArrowVotes votes;
  for (const auto& [station, across] : arrows) {
    if (!std::isnan(across.strike)) {
      ++(between(across.strike, strike) <= 45.0 ? votes.strike : votes.alternative);
    }
  }
  return votes;
}

std::vector<std::string> direction_sentences(double strike, std::optional<double> azimuth,
                                             const ArrowVotes& votes) {
  return {azimuth ? line_sentence(strike, *azimuth)
                  : "The direction of the line isn't known: its sites have no places, or lie on no line.",
          arrows_sentence(strike, votes)};
}

}  // namespace Module_tensor
