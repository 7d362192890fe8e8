// site_names.h: the name of a station's site behind the station, "1250 (ET001)".
//
// The names are in the session with the stations; nothing here asks the survey. Station indices count from 1.
#pragma once
#include <cstdint>
#include <string>

namespace Module_display_data {

/// Of the site of a station; empty if it has none, or if there is no such station.
const std::string& site_name(std::int32_t station_index);

/// Whether a station of the survey has a named site.
bool any_site_names();

/// A name as it fits into headings and beside the dots of a plan; the end of a long one is an ellipsis.
std::string shortened_name(const std::string& name);

/// "1250 (ET001)"; a text whose station has no name stays as it is.
std::string with_site_name(std::string text, std::int32_t station_index);
/// The same for headings, with the name shortened.
std::string with_short_site_name(std::string text, std::int32_t station_index);

}  // namespace Module_display_data
