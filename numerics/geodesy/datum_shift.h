// datum_shift.h: from other datums to WGS 84, which maps on the web and positioning receivers count in.
//
// Only shifts of seven parameters and less are used, none that needs a grid: a result is the same on every
// machine, and off by a few metres, as the parameters are. Angles in degrees, north and east positive.
#pragma once
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "numerics/geodesy/coordinate_transforms.h"

namespace numerics::geodesy {

/// Whether places on the datum of this name, as files write it, are within a few metres of those with the
/// same numbers on WGS 84: "WGS84", "GDA 94", "ETRS89".
bool is_close_to_wgs_84(std::string_view datum_name);

/// Places on WGS 84, by the shift that is best at the one in the middle: a line that crosses the border of
/// two areas stays in one piece. Throws std::runtime_error if PROJ's tables are missing.
/// @param datum  its number, see find_datum
/// @return none if no shift without a grid is known there
std::optional<std::vector<GeographicPlace>> shifted_to_wgs_84(std::int32_t datum,
                                                              std::span<const GeographicPlace> places);

}  // namespace numerics::geodesy
