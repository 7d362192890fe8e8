// places.h: the rows of LocationLookupTable, which stations share.
#pragma once
#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace Module_survey_edits {

/// What stands at a location: the station by which its row may be named.
struct LocationUse {
  std::int32_t LocationID = 0;
  std::string line;
  double station = 0.0;
};

/// For each of these locations that a station still uses, one that does. A station uses the location of its
/// place and those that its readings name. Throws dao::Error.
std::vector<LocationUse> uses_of(const std::set<std::int32_t>& locations);

/// Whether the row of a location has the name of a station that the survey has. Throws dao::Error.
bool has_name_of_a_station(std::int32_t LocationID);

/// Gives the row of a location the name of a station that uses it. Throws dao::Error.
void name_location(const LocationUse& use);

}  // namespace Module_survey_edits
