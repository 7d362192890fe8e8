// What maps are given is read again here by a JSON and an XML parser.
#include "formats/places/site_marks.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <pugixml.hpp>

#include "core/text_fields.h"

using namespace formats::places;

namespace {

SiteMark mark(double station, double latitude, double longitude) {
  SiteMark site;
  site.name = "S";
  site.station = station;
  site.latitude = latitude;
  site.longitude = longitude;
  return site;
}

LineMarks made_line() {
  SiteMark first = mark(100.0, -19.44020555555, 136.4444);
  first.name = "A & \"B\" <caf\xE9>\x01";  // Windows-1252, and a control character
  first.elevation = 218.0004;
  first.plot = "plots/200%20E%20%231&2.pdf";
  return {"200E", {first, mark(150.5, -19.5, 136.5)}};
}

nlohmann::json read_geojson(const std::vector<LineMarks>& lines) {
  return nlohmann::json::parse(geojson_text(lines));
}

/// The document element.
pugi::xml_node read_kml(const std::vector<LineMarks>& lines, pugi::xml_document& file) {
  const std::string text = kml_text("Sur & vey", lines);
  EXPECT_TRUE(is_valid_utf8(text));
  EXPECT_TRUE(file.load_string(text.c_str()));
  return file.child("kml").child("Document");
}

}  // namespace

TEST(Geojson, Has_a_feature_for_each_station_and_a_line) {
  const std::string text = geojson_text({made_line()});
  EXPECT_TRUE(is_valid_utf8(text));
  EXPECT_NE(text.find("[136.4444,-19.4402056,218]"), std::string::npos) << text;
  const auto json = nlohmann::json::parse(text);
  EXPECT_EQ(json.size(), 2U) << "a type, the features, no crs";
  EXPECT_EQ(json.at("type"), "FeatureCollection");
  const auto& features = json.at("features");
  ASSERT_EQ(features.size(), 3U);
  for (const auto& feature : features) {
    EXPECT_EQ(feature.at("type"), "Feature");
  }
  const auto expected = nlohmann::json{{"name", "A & \"B\" <caf\u00E9>\x01"},
                                       {"line", "200E"},
                                       {"station", 100.0},
                                       {"elevation_m", 218.0},
                                       {"plot", "plots/200%20E%20%231&2.pdf"}};
  EXPECT_EQ(features[0].at("properties"), expected);
  EXPECT_EQ(features[0].at("geometry").at("type"), "Point");
  EXPECT_EQ(features[1].at("geometry").at("coordinates"), nlohmann::json::parse("[136.5,-19.5]"));
  EXPECT_TRUE(features[1].at("properties").at("elevation_m").is_null());
  EXPECT_TRUE(features[1].at("properties").at("plot").is_null());
  EXPECT_EQ(features[2].at("geometry"),
            nlohmann::json::parse(
                "{\"type\":\"LineString\",\"coordinates\":[[136.4444,-19.4402056],[136.5,-19.5]]}"));
}

TEST(Geojson, Has_seven_decimals_at_most_in_its_text) {
  LineMarks line{"1", {mark(1.0, -37.0, 141.0043419), mark(2.0, -37.1, 141.00434194)}};
  line.sites[0].elevation = 0.1 + 0.2;
  const std::string text = geojson_text({line});
  EXPECT_NE(text.find("[141.0043419,-37,0.3]"), std::string::npos) << text;
  EXPECT_NE(text.find("[[141.0043419,-37],[141.0043419,-37.1]]"), std::string::npos) << text;
  EXPECT_EQ(text.find("00000"), std::string::npos) << text;
  EXPECT_EQ(text.find("99999"), std::string::npos) << text;
}

TEST(Geojson, Draws_no_line_through_one_station_or_none) {
  EXPECT_EQ(read_geojson({}).at("features").size(), 0U);
  EXPECT_EQ(read_geojson({{"1", {}}, {"2", {mark(1, 2, 3)}}}).at("features").size(), 1U);
}

TEST(Geojson, Cuts_lines_at_the_date_line) {
  struct Case {
    const char* name;
    std::vector<double> longitudes;  // of stations on latitudes 0, 1, 2, ...
    const char* geometry;
  };
  const Case cases[] = {
      {"eastwards",
       {179.0, -179.0},
       R"({"type":"MultiLineString","coordinates":[[[179.0,0.0],[180.0,0.5]],[[-180.0,0.5],[-179.0,1.0]]]})"},
      {"and back",
       {-179.0, 177.0, -179.0},
       R"({"type":"MultiLineString","coordinates":[[[-179.0,0.0],[-180.0,0.25]],[[180.0,0.25],[177.0,1.0],[180.0,1.75]],[[-180.0,1.75],[-179.0,2.0]]]})"},
      {"from the border",
       {180.0, -179.0, -178.0},
       R"({"type":"LineString","coordinates":[[-180.0,0.0],[-179.0,1.0],[-178.0,2.0]]})"},
      {"to the border",
       {178.0, 179.0, -180.0},
       R"({"type":"LineString","coordinates":[[178.0,0.0],[179.0,1.0],[180.0,2.0]]})"},
      {"along the border",
       {180.0, -180.0},
       R"({"type":"LineString","coordinates":[[180.0,0.0],[180.0,1.0]]})"},
      {"through Greenwich", {-1.0, 1.0}, R"({"type":"LineString","coordinates":[[-1.0,0.0],[1.0,1.0]]})"},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.name);
    LineMarks line{"1", {}};
    for (const double longitude : each.longitudes) {
      line.sites.push_back(mark(0.0, static_cast<double>(line.sites.size()), longitude));
    }
    EXPECT_EQ(read_geojson({line}).at("features").back().at("geometry"),
              nlohmann::json::parse(each.geometry));
  }
}

TEST(Kml, Has_a_folder_for_each_line) {
  pugi::xml_document file;
  const pugi::xml_node document = read_kml({made_line(), {"300E", {mark(1, 2, 3)}}}, file);
  EXPECT_STREQ(file.child("kml").attribute("xmlns").value(), "http://www.opengis.net/kml/2.2");
  EXPECT_STREQ(document.child_value("name"), "Sur & vey");
  const pugi::xml_node folder = document.child("Folder");
  EXPECT_STREQ(folder.child_value("name"), "200E");
  const pugi::xml_node path = folder.child("Placemark");
  EXPECT_STREQ(path.child("LineString").child_value("coordinates"),
               "136.4444000,-19.4402056 136.5000000,-19.5000000");
  EXPECT_STREQ(path.child("LineString").child_value("tessellate"), "1");
  const pugi::xml_node first = path.next_sibling();
  EXPECT_STREQ(first.child_value("name"), "A & \"B\" <caf\u00E9> ");
  EXPECT_STREQ(first.child("Point").child_value("coordinates"), "136.4444000,-19.4402056,218.000");
  EXPECT_STREQ(first.child("Point").child_value("altitudeMode"), "clampToGround");
  const pugi::xml_node second = first.next_sibling();
  EXPECT_STREQ(second.child("Point").child_value("coordinates"), "136.5000000,-19.5000000");
  EXPECT_STREQ(second.child("ExtendedData").find_child_by_attribute("name", "station").child_value("value"),
               "150.5");
  EXPECT_FALSE(second.next_sibling());
  EXPECT_FALSE(folder.next_sibling("Folder").child("Placemark").child("LineString"));
  for (const pugi::xpath_node& each : document.select_nodes(".//styleUrl")) {
    const std::string style = std::string(each.node().child_value()).substr(1);
    EXPECT_TRUE(document.find_child_by_attribute("Style", "id", style.c_str())) << style;
  }
}

TEST(Kml, Descriptions_are_html_with_a_link_that_is_an_address) {
  // The text of the element is HTML by itself, so that it has to parse as such, too.
  LineMarks line = made_line();
  line.line = "<1&2>";
  line.sites[1].plot = "https://example.org/plots?line=1&station=2#top";
  pugi::xml_document file;
  const auto sites = read_kml({line}, file).child("Folder").children("Placemark");
  std::vector<std::string> links;
  for (const pugi::xml_node& site : sites) {
    pugi::xml_document html;
    const std::string text = std::string("<p>") + site.child_value("description") + "</p>";
    EXPECT_TRUE(html.load_string(text.c_str())) << text;
    if (const pugi::xml_node link = html.child("p").child("a")) {
      links.emplace_back(link.attribute("href").value());
      EXPECT_EQ(std::string(html.child("p").child_value()).find("Line <1&2>, station 1"), 0U);
    }
  }
  EXPECT_EQ(links, (std::vector<std::string>{"plots/200%20E%20%231&2.pdf",
                                             "https://example.org/plots?line=1&station=2#top"}));
}

TEST(Kml, Cuts_lines_at_the_date_line) {
  pugi::xml_document file;
  const pugi::xml_node document = read_kml({{"1", {mark(1, 0, 179), mark(2, 1, -179)}}}, file);
  const auto paths =
      document.child("Folder").child("Placemark").child("MultiGeometry").children("LineString");
  EXPECT_EQ(std::distance(paths.begin(), paths.end()), 2);
}
