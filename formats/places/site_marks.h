// site_marks.h: stations of lines on the earth, as maps show them.
#pragma once
#include <optional>
#include <string>
#include <vector>

namespace formats::places {

/// Coordinates are finite and on WGS 84.
struct SiteMark {
  std::string name;
  double station = 0.0;
  double latitude = 0.0;            // degrees, north positive
  double longitude = 0.0;           // degrees, east positive, -180 to 180
  std::optional<double> elevation;  // m
  std::string plot;                 // address of pictures of its curves, as a link has it; empty: none
};

struct LineMarks {
  std::string line;
  std::vector<SiteMark> sites;  // in the order along the line
};

/// GeoJSON (RFC 7946): a Feature for each station, and a LineString for each line of two and more, or a
/// MultiLineString for one that crosses 180 degrees of longitude. Texts that aren't UTF-8 are taken as
/// Windows-1252, here and in KML.
std::string geojson_text(const std::vector<LineMarks>& lines);

/// KML 2.2: a folder for each line, with its stations and its path on the ground.
/// @param title  of the document
std::string kml_text(const std::string& title, const std::vector<LineMarks>& lines);

}  // namespace formats::places
