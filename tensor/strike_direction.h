// strike_direction.h: what speaks for a strike and what for the other one, at a right angle to it.
//
// Neither a phase tensor nor an impedance knows which of the two it is. Nothing is chosen here: it is said
// what lies nearer to the normal of the line and what the induction arrows stand across. Conventions as in
// line_strike.h.
#pragma once
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "projections/station_places.h"
#include "tensor/line_strike.h"

namespace Module_tensor {

/// "N27W" of -27, in whole degrees; equal modulo 180.
std::string bearing_text(double strike);
/// Degrees, one decimal, as -90 < angle <= 90.
std::string angle_text(double strike);

/// The azimuth of the straight line through the places, 0 <= azimuth < 180; none if they lie on no line. It
/// counts from the north of the map, within some degrees of true north: enough to tell 90 degrees apart.
std::optional<double> line_azimuth(const Module_projections::StationPlaces& places);
/// That of a line of the open survey; none where its places aren't known. Throws dao::Error.
std::optional<double> line_azimuth(const std::string& line);

/// The one of strike and strike + 90 that is nearer to the normal of the line, as -90 < angle <= 90.
double nearer_to_normal(double strike, double line_azimuth);

/// How many real arrows stand across either, within 45 degrees; arrows too short to have a direction don't
/// count.
struct ArrowVotes {
  std::size_t strike = 0;
  std::size_t alternative = 0;
};
/// @param arrows  what they say by themselves, by the method of tippers
ArrowVotes arrow_votes(std::span<const numerics::impedance::SaidStrike> arrows, double strike);

/// What can be said on the choice between a strike and its alternative, in sentences.
/// @param azimuth  of the line
std::vector<std::string> direction_sentences(double strike, std::optional<double> azimuth,
                                             const ArrowVotes& votes);

}  // namespace Module_tensor
