// Distances along lines: of made places by hand, and of stations and sites in a survey.
#include "projections/line_distances.h"

#include <cmath>
#include <filesystem>
#include <optional>
#include <set>

#include "database/sites.h"
#include "formats/edi/edi_reference_place.h"
#include "projections/survey_projection.h"
#include "tests/projections/definitions.h"
#include "tests/reduction/made_readings.h"
#include "tests/support/survey_fixture.h"

namespace Module_projections {
namespace {

using Numbers = std::vector<double>;

/// Stations at these distances along a line of azimuth 30 degrees.
StationPlaces at_azimuth_30(const Numbers& stations, const Numbers& along) {
  StationPlaces places;
  for (std::size_t i = 0; i < stations.size(); ++i) {
    places.stations.push_back({stations[i], numerics::geodesy::MapPlace{
                                                4e5 + 0.5 * along[i], 7e6 + std::sqrt(0.75) * along[i], 0}});
  }
  return places;
}

TEST(Line_distances, Grow_with_the_stations_and_are_compared_with_their_numbers) {
  struct Case {
    const char* name;
    Numbers stations;
    Numbers along;
    Numbers distances;
    const char* warning;
  };
  const Case cases[] = {
      {"numbers are distances", {100, 200, 350}, {0, 100, 250}, {0, 100, 250}, ""},
      {"and run the other way", {100, 200, 350}, {250, 150, 0}, {0, 100, 250}, ""},
      {"within a tenth of the spacing", {0, 100, 200, 300}, {0, 91, 191, 300}, {0, 91, 191, 300}, ""},
      {"numbers are counted in fives",
       {5, 10, 15},
       {0, 900, 2100},
       {0, 900, 2100},
       "The stations of line 7 are 5 m apart by their numbers, its sites 1.1 km"},
      {"one station is elsewhere",
       {0, 100, 200, 300},
       {0, 160, 200, 300},
       {0, 160, 200, 300},
       "The stations of line 7 are up to 30 m from where their numbers put them"},
      {"the first station lies within",
       {1, 2, 3},
       {500, 0, 30000},
       {0, -500, 29500},
       "The stations of line 7 are 1 m apart by their numbers, its sites 15 km"},
      {"two stations at one place",
       {10, 20, 30},
       {0, 0, 20},
       {0, 0, 20},
       "The stations of line 7 are up to 5 m from where their numbers put them"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const LineDistances line = line_distances("7", at_azimuth_30(c.stations, c.along));
    EXPECT_EQ(line.refusal, "");
    ASSERT_EQ(line.distances.size(), c.distances.size());
    for (std::size_t i = 0; i < c.distances.size(); ++i) {
      EXPECT_NEAR(line.at(c.stations[i]).value(), c.distances[i], 1e-6);
    }
    EXPECT_EQ(line.warning, c.warning);
    EXPECT_FALSE(line.at(-7.0));
  }
}

TEST(Line_distances, An_area_has_none) {
  StationPlaces area{{{1, numerics::geodesy::MapPlace{0, 0, 0}},
                      {2, numerics::geodesy::MapPlace{90000, 0, 0}},
                      {3, numerics::geodesy::MapPlace{90000, 80000, 0}}},
                     true};
  const std::string sites =
      "The sites of line 7 lie on no straight line (RMS 28 km of 120 km)";  // sqrt(2367 km2 / 3)
  LineDistances line = line_distances("7", area);
  EXPECT_FALSE(line.known());
  EXPECT_EQ(line.refusal, sites + ", so distances along it mean nothing");
  EXPECT_EQ(line.warning, sites + ", and its station numbers are no distances");
  area.of_sites = false;  // who knows what these are
  EXPECT_EQ(line_distances("7", area).warning, "");
  // Chainages along a road that turns.
  area = {{{0, area.stations[0].place}, {90000, area.stations[1].place}, {170000, area.stations[2].place}},
          true};
  line = line_distances("7", area);
  EXPECT_EQ(line.refusal, sites + ", so distances along it mean nothing");
  EXPECT_EQ(line.warning, "");
  area.stations[1].place = area.stations[2].place = area.stations[0].place;
  EXPECT_EQ(line_distances("7", area).refusal,
            "The sites of line 7 are all at one place, so there are no distances along it");
}

class LineDistancesTest : public SurveyTest {
 protected:
  LineDistancesTest() {
    new_survey();
    current_coord_system() = {};
  }
  ~LineDistancesTest() override { current_coord_system() = {}; }

  /// A station of line 200E with a reading; the map place is that of the survey grid unless one is given.
  static void store_station(double station, std::optional<Module_database::GivenPlace> place = {}) {
    Module_database::find_station(Module_database::StationSearch::create, "200E", station,
                                  place ? &*place : nullptr);
    made::store(made::key(256.0F, station), 1, made::reading({{1, 100, 45}}));
  }
  static void store_site(double station, double latitude, double longitude) {
    Module_database::Site site;
    site.line = "200E";
    site.station = station;
    site.latitude = latitude;
    site.longitude = longitude;
    std::ignore = Module_database::keep_site(site);
  }
};

TEST_F(LineDistancesTest, Sites_on_either_side_of_a_zone_border_are_on_one_map) {
  // On latitude -25 a degree of longitude is 100 950 m long; zones change at 144 degrees.
  for (int i = 0; i < 5; ++i) {
    store_station(100.0 + 5 * i);
    store_site(100.0 + 5 * i, -25.0, 143.96 + 0.02 * i);
  }
  Module_database::find_station(Module_database::StationSearch::create, "200E", 900.0);  // nobody reads it
  CoordSystem web;
  web.name = "web";
  web.projection = numerics::geodesy::projection_epsg_3857;
  for (const CoordSystem& system : {CoordSystem{}, zone_definition("by longitude", 0), web}) {
    SCOPED_TRACE(system.name);
    current_coord_system() = system;
    const LineDistances line = line_distances("200e");
    EXPECT_EQ(line.refusal, "");
    EXPECT_EQ(line.warning, "The stations of line 200e are 5 m apart by their numbers, its sites 2.0 km");
    ASSERT_EQ(line.stations, (Numbers{100, 105, 110, 115, 120}));
    EXPECT_NEAR(line.distances.back(), 4 * 2019.0, 10.0);
    EXPECT_NEAR(line.distances[2], 2 * 2019.0, 5.0);
  }
}

TEST_F(LineDistancesTest, Without_places_there_are_none) {
  for (int i = 1; i <= 3; ++i) {
    store_station(100.0 * i);
  }
  EXPECT_EQ(line_distances("200E").refusal,
            "The sites of line 200E have no places, so there are no distances along it");
  EXPECT_EQ(line_distances("200E").warning, "");
  EXPECT_EQ(line_distances("7").refusal, "Line 7 has too few stations for distances along it");
  store_site(100.0, -25.0, 143.0);
  store_site(200.0, 0.0, 0.0);  // a head that gives no place
  EXPECT_EQ(line_distances("200E").refusal,
            "Of line 200E these stations have no place, so there are no distances along it: 200, 300");
}

TEST_F(LineDistancesTest, Map_places_of_files_stand_in_for_sites) {
  for (int i = 1; i <= 3; ++i) {
    store_station(100.0 * i, Module_database::GivenPlace{4e5 + 80.0 * i, 7e6 + 60.0 * i, 0.0});
  }
  EXPECT_EQ(line_distances("200E").distances, (Numbers{0, 100, 200}));
  store_site(100.0, -27.1, 140.0);
  EXPECT_EQ(line_distances("200E").distances, (Numbers{0, 100, 200})) << "no projection goes with both";
  current_coord_system() = zone_definition("54", 54);
  ASSERT_EQ(decode_coordinate_system(current_coord_system()), 0);
  const auto map = numerics::geodesy::ll2en(current_coord_system().transform_parameters, {-27.1, 140.0});
  store_station(400.0, Module_database::GivenPlace{map.easting + 300.0, map.northing, 0.0});
  for (const double station : {200.0, 300.0}) {
    dao::Recordset& stations = Module_database::open_survey().stations;
    stations.find_first("Station = " + std::to_string(station));
    stations.edit();
    stations.set_double("MapX", map.easting + station - 100.0);
    stations.set_double("MapY", map.northing);
    stations.update();
  }
  const Numbers mixed = line_distances("200E").distances;
  ASSERT_EQ(mixed.size(), 4U);
  EXPECT_NEAR(mixed[1], 100.0, 0.01);
  EXPECT_NEAR(mixed[3], 300.0, 0.01);
}

TEST_F(LineDistancesTest, Of_real_sites) {
  namespace fs = std::filesystem;
  const auto store_folder = [](const std::string& name) {
    std::set<fs::path> files;
    for (const fs::directory_entry& entry :
         fs::directory_iterator(fs::path(BRENLOX_FIELD_DATA) / "edi" / name)) {
      files.insert(entry.path());
    }
    double station = 0.0;
    for (const fs::path& file : files) {
      formats::FileReport report;
      const auto place = formats::edi::read_edi_reference_place(file.string(), report);
      ASSERT_TRUE(place) << file;
      station += 5.0;
      store_station(station);
      store_site(station, place->latitude, place->longitude);
    }
  };
  if (!fs::exists(BRENLOX_FIELD_DATA)) {
    GTEST_SKIP() << "no field data";
  }
  store_folder("impedance_only");
  LineDistances line = line_distances("200E");
  EXPECT_EQ(line.warning, "The stations of line 200E are 5 m apart by their numbers, its sites 1.0 km");
  // On the ellipsoid's tangent, in the order of the names, which turns back to the other end after the
  // seventh.
  const Numbers expected{0, -597, -1495, -2445, -2988, -4717, -6748, 803, 1519, 2559};
  ASSERT_EQ(line.distances.size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_NEAR(line.distances[i], expected[i], 4.0);
  }
  Module_database::open_survey().database.execute("DELETE FROM SitesTable");
  Module_database::open_survey().database.execute("DELETE FROM ReadingsDataTable");
  store_folder("tensor_line");
  line = line_distances("200E");
  EXPECT_EQ(line.refusal,
            "The sites of line 200E lie on no straight line (RMS 23 km of 92 km), so distances "
            "along it mean nothing");
  EXPECT_FALSE(line.warning.empty());
}

TEST_F(LineDistancesTest, Places_of_sensors_are_no_places_of_stations) {
  for (int i = 1; i <= 4; ++i) {
    store_station(100.0 * i, Module_database::GivenPlace{i % 2 == 0 ? 50.0 : 25.0, 0.0, 0.0});
  }
  EXPECT_FALSE(line_distances("200E").known());
}

}  // namespace
}  // namespace Module_projections
