// Places of several lines on one map.
#include "projections/survey_places.h"

#include <tuple>

#include "database/sites.h"
#include "projections/site_projection.h"
#include "projections/survey_projection.h"
#include "tests/projections/definitions.h"
#include "tests/reduction/made_readings.h"
#include "tests/support/survey_fixture.h"

namespace Module_projections {
namespace {

class SurveyPlacesTest : public SurveyTest {
 protected:
  SurveyPlacesTest() {
    new_survey();
    current_coord_system() = {};
  }
  ~SurveyPlacesTest() override { current_coord_system() = {}; }

  static void store_station(const std::string& line, double station,
                            std::optional<Module_database::GivenPlace> place = {}) {
    Module_database::find_station(Module_database::StationSearch::create, line, station,
                                  place ? &*place : nullptr);
    auto key = made::key(256.0F, station);
    key.line = line;
    made::store(key, 1, made::reading({{1, 100, 45}}));
  }
  static void store_site(const std::string& line, double station, double latitude, double longitude) {
    Module_database::Site site;
    site.line = line;
    site.station = station;
    site.latitude = latitude;
    site.longitude = longitude;
    std::ignore = Module_database::keep_site(site);
  }
  const std::vector<std::string> lines{"1E", "2E"};
};

TEST_F(SurveyPlacesTest, Lines_in_two_zones_are_on_one_map) {
  // 0.1 degrees of longitude are 8 652 m on latitude 39; zones change at 12 degrees east.
  store_station("1E", 10.0);
  store_site("1E", 10.0, 39.0, 11.95);
  store_station("2E", 10.0);
  store_site("2E", 10.0, 39.0, 12.05);
  const SurveyPlaces places = survey_places(lines);
  ASSERT_EQ(places.stations.size(), 2U);
  EXPECT_EQ(places.source, PlaceSource::sites);
  EXPECT_EQ(places.system, "UTM on WGS 84");
  EXPECT_EQ(places.stations[0].line, "1E");
  EXPECT_NEAR(places.stations[1].place->easting - places.stations[0].place->easting, 8652.0, 20.0);
  EXPECT_NEAR(places.stations[1].place->northing, places.stations[0].place->northing, 400.0);
}

TEST_F(SurveyPlacesTest, True_north_is_where_the_meridian_goes) {
  // Convergence of a transverse Mercator map: atan(tan(longitude from the central meridian) sin(latitude)),
  // here 2 degrees east of 15 on latitudes 60 and -30.
  store_station("1E", 10.0);
  store_site("1E", 10.0, 60.0, 17.0);
  EXPECT_NEAR(survey_places(lines).stations[0].true_north, -1.7322, 1e-3);
  store_station("2E", 10.0);
  store_site("2E", 10.0, -30.0, 17.0);
  EXPECT_NEAR(survey_places(std::vector<std::string>{"2E"}).stations[0].true_north, 1.0003, 1e-3);
}

TEST_F(SurveyPlacesTest, Are_of_one_source) {
  store_station("1E", 10.0);
  store_station("1E", 20.0);
  store_station("2E", 10.0);
  SurveyPlaces places = survey_places(lines);
  EXPECT_EQ(places.source, PlaceSource::local);
  ASSERT_EQ(places.stations.size(), 3U);
  for (const SurveyPlace& station : places.stations) {
    EXPECT_TRUE(station.place);
  }
  store_station("2E", 20.0, Module_database::GivenPlace{4e5, 7e6, 0.0});
  places = survey_places(lines);
  EXPECT_EQ(places.source, PlaceSource::map);
  EXPECT_FALSE(places.stations[0].place) << "a local place among map places";
  ASSERT_TRUE(places.stations[3].place);
  EXPECT_EQ(places.stations[3].place->easting, 4e5);

  store_site("1E", 20.0, -27.1, 140.0);
  places = survey_places(lines);
  EXPECT_EQ(places.source, PlaceSource::sites);
  EXPECT_TRUE(places.stations[1].place);
  EXPECT_FALSE(places.stations[3].place) << "map places of a projection that isn't known";
  current_coord_system() = zone_definition("54", 54);
  ASSERT_EQ(decode_coordinate_system(current_coord_system()), 0);
  places = survey_places(lines);
  EXPECT_EQ(places.system, "54");
  ASSERT_TRUE(places.stations[3].place);
  EXPECT_EQ(places.stations[3].place->easting, 4e5);
  EXPECT_FALSE(places.stations[0].place);
}

TEST_F(SurveyPlacesTest, Map_places_are_of_the_system_that_the_sites_show) {
  EXPECT_EQ(system_of_map_places("1E").why_not, "The survey has no projection");
  // Made by another program: longitude 141 is the middle of zone 54, 27 degrees south are 0.9996 times the
  // meridian's 2 987 630 m from 10 000 km.
  store_station("1E", 10.0, Module_database::GivenPlace{500000.0, 7013565.0, 0.0});
  store_site("1E", 10.0, -27.0, 141.0);
  const MapSystem usual = system_of_map_places("1E");
  ASSERT_TRUE(usual.parameters);
  EXPECT_NEAR(projected(*usual.parameters, numerics::geodesy::GeographicPlace{-27.0, 141.0})->northing,
              7013565.0, 100.0);

  // Places of the survey's own grid have no latitudes, whatever projection the survey is given.
  store_station("2E", 10.0);
  store_site("2E", 10.0, -27.0, 141.0);
  EXPECT_FALSE(system_of_map_places("2E").parameters);
  current_coord_system() = zone_definition("54", 54);
  ASSERT_EQ(decode_coordinate_system(current_coord_system()), 0);
  EXPECT_TRUE(system_of_map_places("1E").parameters);
  EXPECT_EQ(system_of_map_places("2E").why_not,
            "The map coordinates of the stations aren't of the projection 54: an import with it gives them");
}

TEST_F(SurveyPlacesTest, Of_no_line_are_none) {
  EXPECT_TRUE(survey_places({}).stations.empty());
  EXPECT_TRUE(survey_places(std::vector<std::string>{"there is none"}).stations.empty());
}

}  // namespace
}  // namespace Module_projections
