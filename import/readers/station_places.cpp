#include "import/readers/station_places.h"

#include <cmath>
#include <exception>

#include "core/number_text.h"
#include "import/readers/reader_steps.h"
#include "projections/survey_projection.h"

namespace Module_data_file {

namespace {

std::optional<MapPosition> converted(const SitePlace& site, const ReadingRecord& record,
                                     formats::FileReport& report) {
  if (!site.latitude || !site.longitude) {
    return std::nullopt;
  }
  try {
    const numerics::geodesy::MapPlace map = numerics::geodesy::ll2en(
        Module_projections::current_coord_system().transform_parameters, {*site.latitude, *site.longitude});
    return MapPosition{map.easting, map.northing};
  } catch (const std::exception& failure) {
    formats::remark_unreadable(report, 0,
                               "station " + plain_text(record.Station) + ": latitude " +
                                   plain_text(*site.latitude) + ", longitude " + plain_text(*site.longitude) +
                                   " can't be converted: " + failure.what());
    return std::nullopt;
  }
}

void remark_on_other_place(const MapPosition& given, const ReadingRecord& record,
                           formats::FileReport& report) {
  constexpr double same_place = 0.01;  // m
  if (std::hypot(record.MapX - given.x, record.MapY - given.y) > same_place) {
    formats::remark_ignored(report, 0,
                            "station " + plain_text(record.Station) +
                                " or its location was known before and keeps its map place " +
                                format_number(record.MapX, "0.00") + ", " +
                                format_number(record.MapY, "0.00") + "; the file's is " +
                                format_number(given.x, "0.00") + ", " + format_number(given.y, "0.00"),
                            "stations that were known before and keep their map place");
  }
}

}  // namespace

std::optional<std::string> line_of_file(std::string_view text, Module_database::LineDirection direction) {
  constexpr std::size_t longest_line = 32;  // bytes of the column
  Module_database::LineName name;
  if (Module_database::line_fault(text, direction, name).empty()) {
    return name.text.size() <= longest_line ? std::optional(name.text) : std::nullopt;
  }
  return text.size() <= longest_line ? std::optional(std::string(text)) : std::nullopt;
}

void find_station_at(const StationPlace& place, FileTask& task) {
  ReadingRecord& record = task.record;
  std::optional<MapPosition> map = place.map;
  if (!map && task.is_import() && record.choices.convert_coordinates) {
    map = converted(place.site, record, task.report);
  }
  record.station_place = place.site;
  record.MapX = map ? map->x : 0.0;
  record.MapY = map ? map->y : 0.0;
  record.Elevation = place.site.elevation.value_or(0.0);
  if (!task.is_import()) {
    return;
  }
  find_station_of_record(record, map ? MapPlace::of_file : MapPlace::of_survey_grid);
  if (map) {
    remark_on_other_place(*map, record, task.report);
  }
}

}  // namespace Module_data_file
