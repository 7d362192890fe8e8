// geographic_angle.h: latitudes and longitudes as people and field files write them.
#pragma once
#include <optional>
#include <string_view>

namespace numerics::geodesy {

enum class GeographicAngle { latitude, longitude };

/// Reads decimal degrees ("-22.8237"), degrees:minutes or degrees:minutes:seconds ("-22:49:25.4"), with
/// colons, blanks or the signs of degree, minute and second between the parts. A sign before the first part
/// holds for the whole; instead of a sign there may be a letter in front or behind: N or S for a latitude, E
/// or W for a longitude.
/// @return degrees, north and east positive: a latitude within 90, a longitude within 360; none for any other
/// text
std::optional<double> read_geographic_angle(std::string_view text, GeographicAngle kind);

}  // namespace numerics::geodesy
