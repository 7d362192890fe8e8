#include "projections/graticule.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include <gtest/gtest.h>

using namespace Module_projections;
using namespace numerics::geodesy;

namespace {

TransformParameters utm(int zone, int hemisphere) {
  CoordinateSystemValues values;
  values.projection = projection_utm;
  values.datum = 4326;
  values.hemisphere = hemisphere;
  values.zone_number = zone;
  values.zone_width = 6.0;
  return crdprm(values);
}

std::vector<std::string> labels(const std::vector<GraticuleLine>& lines, bool meridians) {
  std::vector<std::string> texts;
  for (const GraticuleLine& line : lines) {
    if (line.meridian == meridians) {
      texts.push_back(line.label);
    }
  }
  return texts;
}

/// Degrees, minutes and seconds of a label, as seconds.
long seconds_of(const std::string& label) {
  long degrees = 0;
  long minutes = 0;
  long seconds = 0;
  std::sscanf(label.c_str(), "%ld\u00b0%ld'%ld", &degrees, &minutes, &seconds);
  return 3600 * degrees + 60 * minutes + seconds;
}

}  // namespace

TEST(Graticule, Lines_are_at_round_values_and_where_the_projection_puts_them) {
  // Zone 55 south, 40 km around the central meridian of 147 E at about 36 S.
  const TransformParameters system = utm(55, hemisphere_south);
  const MapPlace middle = ll2en(system, {-36.0, 147.0});
  const std::vector<GraticuleLine> lines = graticule(
      system, {middle.easting - 20e3, middle.easting + 20e3, middle.northing - 20e3, middle.northing + 20e3});
  EXPECT_EQ(labels(lines, true), (std::vector<std::string>{"146\u00b050'E", "146\u00b055'E", "147\u00b0E",
                                                           "147\u00b005'E", "147\u00b010'E"}));
  EXPECT_EQ(labels(lines, false), (std::vector<std::string>{"36\u00b010'S", "36\u00b005'S", "36\u00b0S",
                                                            "35\u00b055'S", "35\u00b050'S"}));
  const auto central = std::ranges::find(lines, "147\u00b0E", &GraticuleLine::label);
  for (const MapPlace& place : central->places) {
    EXPECT_NEAR(place.easting, 500000.0, 1e-3);  // the central meridian of a zone is straight
  }
  const auto beside = std::ranges::find(lines, "147\u00b010'E", &GraticuleLine::label);
  EXPECT_LT(beside->places.front().easting, beside->places.back().easting);  // towards the equator they part
}

TEST(Graticule, Steps_are_parts_of_a_minute_or_of_a_degree_at_every_scale) {
  const TransformParameters system = utm(32, hemisphere_north);
  const MapPlace middle = ll2en(system, {45.0, 9.0});
  for (const long step : {1, 2, 5, 10, 15, 30, 60, 120, 300, 600, 900, 1800, 3600}) {
    const double half = 2.25 * static_cast<double>(step) * 30.87;  // m of a second of latitude
    const std::vector<std::string> parallels =
        labels(graticule(system, {middle.easting - 10.0, middle.easting + 10.0, middle.northing - half,
                                  middle.northing + half}),
               false);
    ASSERT_GE(parallels.size(), 4U) << step;
    EXPECT_EQ(seconds_of(parallels[1]) - seconds_of(parallels[0]), step);
    EXPECT_EQ(seconds_of(parallels[0]) % step, 0);
  }
}

TEST(Graticule, Small_parts_have_seconds_and_places_off_the_map_no_lines) {
  const TransformParameters system = utm(32, hemisphere_north);
  const std::vector<GraticuleLine> close = graticule(system, {500010.0, 500090.0, 5300010.0, 5300090.0});
  ASSERT_FALSE(close.empty());
  EXPECT_TRUE(std::ranges::any_of(
      close, [](const GraticuleLine& line) { return line.label.find('"') != std::string::npos; }));
  EXPECT_TRUE(graticule(system, {1e12, 2e12, 1e12, 2e12}).empty());
  const TransformParameters last_zone = utm(60, hemisphere_north);
  const MapPlace at_date_line = ll2en(last_zone, {10.0, 180.0});
  EXPECT_TRUE(graticule(last_zone, {at_date_line.easting - 20e3, at_date_line.easting + 20e3,
                                    at_date_line.northing - 20e3, at_date_line.northing + 20e3})
                  .empty())
      << "no meridians all round the earth";
  EXPECT_EQ(graticule_label(0.0, false), "0\u00b0");
  EXPECT_EQ(graticule_label(-71.2625, true), "71\u00b015'45\"W");
}
