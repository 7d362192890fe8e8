#include "import/readers/converted_place.h"

#include <cmath>
#include <exception>

#include "core/number_text.h"
#include "formats/edi/edi_reference_place.h"
#include "import/file_formats.h"
#include "projections/survey_projection.h"

namespace Module_data_file {

using formats::FileReport;
using formats::remark_ignored;
using formats::remark_unreadable;

namespace {

using numerics::geodesy::GeographicPlace;

std::optional<GeographicPlace> place_of_file(const std::string& file, const ReadingRecord& record) {
  if (!record.site_file) {
    FileReport told_by_reader;  // what can't be read is reported with the rest of the file
    return formats::edi::read_edi_reference_place(file, told_by_reader);
  }
  const formats::transfer_function::Site& site = record.site_file->site;
  return site.latitude && site.longitude ? std::optional(GeographicPlace{*site.latitude, *site.longitude})
                                         : std::nullopt;
}

}  // namespace

std::optional<MapPosition> converted_place(const std::string& file, const ReadingRecord& record,
                                           FileReport& report) {
  const bool has_channels = is_edi(record.file_format);
  const std::string what_stays = has_channels ? "; the place is taken from the HX channel as it stands"
                                              : "; the station has no place on the map";
  const std::optional<GeographicPlace> place = place_of_file(file, record);
  if (!place) {
    remark_unreadable(
        report, 0,
        (has_channels ? "the head" : "the file") + (" gives no latitude and longitude" + what_stays));
    return std::nullopt;
  }
  try {
    const numerics::geodesy::MapPlace map =
        numerics::geodesy::ll2en(Module_projections::current_coord_system().transform_parameters, *place);
    return MapPosition{map.easting, map.northing};
  } catch (const std::exception& failure) {
    remark_unreadable(report, 0,
                      "latitude " + plain_text(place->latitude) + ", longitude " +
                          plain_text(place->longitude) + " can't be converted: " + failure.what() +
                          what_stays);
    return std::nullopt;
  }
}

void remark_on_converted_place(const ReadingRecord& record, FileReport& report) {
  if (!record.converted_place || report.readings == 0) {
    return;
  }
  constexpr double same_place = 0.01;  // m
  const MapPosition& converted = *record.converted_place;
  if (report.sections > 1) {
    remark_ignored(report, 0,
                   "all " + plain_text(report.sections) + " sections are put at the file's reference place");
  }
  if (std::hypot(record.MapX - converted.x, record.MapY - converted.y) > same_place) {
    remark_ignored(report, 0,
                   "the station or its location was known before and keeps its map place " +
                       format_number(record.MapX, "0.00") + ", " + format_number(record.MapY, "0.00") +
                       "; the file's is " + format_number(converted.x, "0.00") + ", " +
                       format_number(converted.y, "0.00"));
  }
}

}  // namespace Module_data_file
