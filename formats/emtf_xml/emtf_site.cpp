#include "formats/emtf_xml/emtf_site.h"

#include <cstddef>
#include <string>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "formats/emtf_xml/emtf_ids.h"
#include "formats/emtf_xml/emtf_nodes.h"
#include "formats/transfer_function/sound_numbers.h"
#include "numerics/geodesy/geographic_angle.h"

namespace formats::emtf_xml {

using numerics::geodesy::GeographicAngle;
using numerics::geodesy::read_geographic_angle;
using transfer_function::Site;

namespace {

/// The date of collection, of a year at least its first day.
std::string date_of(const pugi::xml_node& site, const pugi::xml_node& root) {
  constexpr std::size_t year_length = 4;
  for (const pugi::xml_node& node : {site, child_of(root, "FieldNotes")}) {
    if (std::string start = text_of(child_of(node, "Start")); !start.empty()) {
      return start;
    }
  }
  const std::string year = text_of(child_of(site, "YearCollected"));
  return year.size() == year_length && is_numeric(year) ? year + "-01-01" : std::string();
}

/// An Id has letters and digits only. A Name that becomes it by that is the name as it was; else the Name of
/// an archive is that of a place or of people.
bool is_name_of_id(const std::string& name, const std::string& id) {
  transfer_function::SiteDocument named;
  named.function.site.name = name;
  return !trimmed(name).empty() && equal_ignoring_case(emtf_site_id(named), id);
}

void read_place(Site& site, const std::string& latitude_text, const std::string& longitude_text,
                FileReport& report) {
  const auto latitude = read_geographic_angle(latitude_text, GeographicAngle::latitude);
  const auto longitude = read_geographic_angle(longitude_text, GeographicAngle::longitude);
  const bool is_place = latitude && longitude && take_place(site, *latitude, *longitude);
  if (!is_place && !(latitude_text.empty() && longitude_text.empty())) {
    remark_unreadable(report, 0,
                      "the place " + in_quotes(latitude_text) + ", " + in_quotes(longitude_text) +
                          " is no latitude and longitude");
  }
}

}  // namespace

Site read_site(const pugi::xml_node& root, FileReport& report) {
  Site result;
  const pugi::xml_node site = child_of(root, "Site");
  result.id = text_of(child_of(site, "Id"));
  result.name = text_of(child_of(site, "Name"));
  if (is_name_of_id(result.name, result.id)) {
    result.id = result.name;
  }
  result.date = date_of(site, root);
  if (result.id.empty()) {
    result.id = text_of(child_of(root, "ProductId"));
  }
  const pugi::xml_node location = child_of(site, "Location");
  result.datum = text_from_field_file(attribute_of(location, "datum"));
  read_place(result, text_of(child_of(location, "Latitude")), text_of(child_of(location, "Longitude")),
             report);
  result.elevation = number_of(text_of(child_of(location, "Elevation")));
  result.declination = number_of(text_of(child_of(location, "Declination")));
  result.x_azimuth = number_of(attribute_of(child_of(site, "Orientation"), "angle_to_geographic_north"));
  return result;
}

}  // namespace formats::emtf_xml
