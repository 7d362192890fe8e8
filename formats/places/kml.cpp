#include <string_view>

#include <pugixml.hpp>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "formats/places/line_pieces.h"
#include "formats/places/site_marks.h"
#include "formats/xml_output.h"

namespace formats::places {

namespace {

constexpr const char* station_style = "station";
constexpr const char* line_style = "line";

std::string as_html(std::string_view text) {
  std::string html;
  for (const char c : text) {
    switch (c) {
      case '&':
        html += "&amp;";
        break;
      case '<':
        html += "&lt;";
        break;
      case '>':
        html += "&gt;";
        break;
      case '"':
        html += "&quot;";
        break;
      default:
        html += c;
    }
  }
  return html;
}

/// HTML, which viewers show where a station is clicked.
std::string description_of(const std::string& line, const SiteMark& site) {
  std::string html = "Line " + as_html(line) + ", station " + plain_text(site.station);
  if (site.elevation) {
    html += ", " + format_number(*site.elevation, "0.0") + " m";
  }
  if (!site.plot.empty()) {
    html += "<br/><a href=\"" + as_html(text_from_field_file(site.plot)) + "\">Plots of the curves</a>";
  }
  return html;
}

void add_styles(pugi::xml_node document) {
  pugi::xml_node station = document.append_child("Style");
  station.append_attribute("id") = station_style;
  add_text_element(station.append_child("IconStyle"), "scale", "0.6");
  add_text_element(station.append_child("LabelStyle"), "scale", "0.7");
  pugi::xml_node line = document.append_child("Style");
  line.append_attribute("id") = line_style;
  pugi::xml_node stroke = line.append_child("LineStyle");
  add_text_element(stroke, "color", "ff0000c0");  // opacity, blue, green, red
  add_text_element(stroke, "width", "2");
}

void add_datum(pugi::xml_node data, const char* name, std::string_view value) {
  pugi::xml_node datum = data.append_child("Data");
  datum.append_attribute("name") = name;
  add_text_element(datum, "value", value);
}

std::string elevation_text(const SiteMark& site) {
  return site.elevation ? format_number(*site.elevation, "0.000") : std::string();
}

pugi::xml_node add_placemark(pugi::xml_node folder, std::string_view name) {
  pugi::xml_node placemark = folder.append_child("Placemark");
  add_text_element(placemark, "name", name);
  return placemark;
}

void add_site(pugi::xml_node folder, const std::string& line, const SiteMark& site) {
  pugi::xml_node placemark = add_placemark(folder, site.name);
  add_text_element(placemark, "description", description_of(line, site));
  add_text_element(placemark, "styleUrl", std::string("#") + station_style);
  pugi::xml_node data = placemark.append_child("ExtendedData");
  add_datum(data, "line", line);
  add_datum(data, "station", plain_text(site.station));
  std::string coordinates = degrees_text(site.longitude) + "," + degrees_text(site.latitude);
  if (site.elevation) {
    add_datum(data, "elevation_m", elevation_text(site));
    coordinates += "," + elevation_text(site);
  }
  pugi::xml_node point = placemark.append_child("Point");
  // The ground of a viewer isn't ours to the metre: stations would float above it, or be below.
  add_text_element(point, "altitudeMode", "clampToGround");
  add_text_element(point, "coordinates", coordinates);
}

void add_path(pugi::xml_node placemark, const std::vector<PathPoint>& piece) {
  pugi::xml_node path = placemark.append_child("LineString");
  add_text_element(path, "tessellate", "1");  // over the ground, not through it
  add_text_element(path, "altitudeMode", "clampToGround");
  std::string coordinates;
  for (const PathPoint& point : piece) {
    coordinates +=
        (coordinates.empty() ? "" : " ") + degrees_text(point.longitude) + "," + degrees_text(point.latitude);
  }
  add_text_element(path, "coordinates", coordinates);
}

void add_line(pugi::xml_node document, const LineMarks& line) {
  pugi::xml_node folder = document.append_child("Folder");
  add_text_element(folder, "name", line.line);
  if (const auto pieces = line_pieces(line.sites); !pieces.empty()) {
    pugi::xml_node placemark = add_placemark(folder, line.line);
    add_text_element(placemark, "styleUrl", std::string("#") + line_style);
    pugi::xml_node parent = pieces.size() == 1 ? placemark : placemark.append_child("MultiGeometry");
    for (const std::vector<PathPoint>& piece : pieces) {
      add_path(parent, piece);
    }
  }
  for (const SiteMark& site : line.sites) {
    add_site(folder, line.line, site);
  }
}

}  // namespace

std::string kml_text(const std::string& title, const std::vector<LineMarks>& lines) {
  pugi::xml_document file = new_xml_document();
  pugi::xml_node root = file.append_child("kml");
  root.append_attribute("xmlns") = "http://www.opengis.net/kml/2.2";
  pugi::xml_node document = root.append_child("Document");
  add_text_element(document, "name", title);
  add_styles(document);
  for (const LineMarks& line : lines) {
    add_line(document, line);
  }
  return text_of_document(file);
}

}  // namespace formats::places
