// station_places.h: where a file of many stations puts each of them.
#pragma once
#include <optional>
#include <string>
#include <string_view>

#include "database/line_names.h"
#include "import/readers/field_reader.h"
#include "import/reading_record.h"

namespace Module_data_file {

struct StationPlace {
  SitePlace site;
  std::optional<MapPosition> map;  // map coordinates of the survey
};

/// A line as a file names it, in its normal form where it has one ("200e" is "200E"), else as it stands. None
/// if the survey can't have it: longer than its column.
std::optional<std::string> line_of_file(std::string_view text, Module_database::LineDirection direction);

/// Takes the place of the record's station. An import looks the station up or creates it; a new one is put at
/// its map coordinates, or without these, if the choices convert coordinates, where latitude and longitude
/// are on the survey's map, else where the survey grid has it. The report says what can't be converted, and
/// which station was known before and keeps another place.
void find_station_at(const StationPlace& place, FileTask& task);

}  // namespace Module_data_file
