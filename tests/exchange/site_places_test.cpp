#include "exchange/site_places.h"

#include <tuple>

#include "database/sites.h"
#include "database/stations.h"
#include "projections/survey_projection.h"
#include "tests/projections/definitions.h"
#include "tests/reduction/made_readings.h"
#include "tests/support/survey_fixture.h"

namespace Module_exchange {
namespace {

using Module_database::GivenPlace;
using Module_database::Site;

class SitePlacesTest : public SurveyTest {
 protected:
  SitePlacesTest() {
    new_survey();
    Module_projections::current_coord_system() = {};
  }
  ~SitePlacesTest() override { Module_projections::current_coord_system() = {}; }

  static void store_station(double station, std::optional<GivenPlace> place = {}) {
    std::ignore = Module_database::find_station(Module_database::StationSearch::create, "1E", station,
                                                place ? &*place : nullptr);
    auto key = made::key(256.0F, station);
    key.line = "1E";
    made::store(key, 1, made::reading({{1, 100, 45}}));
  }
  static void store_site(double station, std::optional<double> latitude, std::optional<double> longitude,
                         std::optional<double> elevation, const std::string& datum = "") {
    Site site;
    site.line = "1E";
    site.station = station;
    site.latitude = latitude;
    site.longitude = longitude;
    site.elevation = elevation;
    site.datum = datum;
    std::ignore = Module_database::keep_site(site);
  }
  static void use(const Module_projections::CoordSystem& system) {
    Module_projections::current_coord_system() = system;
  }
};

// Flinders Peak, GDA94 Technical Manual.
constexpr GivenPlace flinders_peak{273741.2966, 5796489.7769, 346.0};

TEST_F(SitePlacesTest, Are_those_of_the_sites_and_else_of_the_map) {
  store_station(10.0, flinders_peak);
  store_station(20.0, GivenPlace{300000.0, 5800000.0, 0.0});
  store_station(30.0);
  store_station(40.0);
  store_station(50.0);
  store_site(20.0, -37.5, 216.25, {}, "AGD66");
  store_site(30.0, 0.0, 0.0, 120.0);  // zeros of a head without a place
  store_site(40.0, -20.0, -190.0, 77.0);
  store_site(60.0, -21.0, 140.0, 1.0);  // whose readings were taken out
  use(zone_definition("55", 55));
  const auto places = places_of_line("1E");
  ASSERT_EQ(places.size(), 3U);
  const GeographicSite& peak = places.at(10.0);
  EXPECT_NEAR(peak.latitude, -(37.0 + 57.0 / 60.0 + 3.7203 / 3600.0), 2e-8);
  EXPECT_NEAR(peak.longitude, 144.0 + 25.0 / 60.0 + 29.5244 / 3600.0, 2e-8);
  EXPECT_EQ(peak.elevation, 346.0);
  EXPECT_TRUE(peak.from_projection);
  EXPECT_EQ(peak.datum, "WGS84");
  EXPECT_FALSE(is_on_other_datum(peak));
  EXPECT_EQ(places.at(20.0).latitude, -37.5);
  EXPECT_EQ(places.at(20.0).longitude, -143.75);
  EXPECT_FALSE(places.at(20.0).elevation);
  EXPECT_FALSE(places.at(20.0).from_projection);
  EXPECT_TRUE(is_on_other_datum(places.at(20.0)));
  const std::string datum =
      "on the datum \"AGD66\" and may lie hundreds of metres off on a map that counts in WGS 84";
  EXPECT_EQ(datum_remark("AGD66", {"1E 20"}), "The place of station 1E 20 is " + datum);
  EXPECT_EQ(datum_remark("AGD66", {"1E 20", "1E 30"}),
            "The places of 2 stations (1E 20 and 1E 30) are " + datum);
  EXPECT_EQ(places.at(40.0).longitude, 170.0);
  EXPECT_EQ(places.at(40.0).elevation, 77.0);
  EXPECT_FALSE(is_on_other_datum(places.at(40.0)));
}

TEST_F(SitePlacesTest, Of_the_map_are_shifted_from_an_old_datum) {
  store_station(10.0, flinders_peak);
  auto system = zone_definition("AMG 55", 55);
  use(system);
  const GeographicSite gda = places_of_line("1E").at(10.0);
  system.datum = 4202;
  use(system);
  const GeographicSite agd = places_of_line("1E").at(10.0);
  EXPECT_EQ(agd.datum, "WGS84");
  // The same numbers on the Australian Map Grid are a place about 112 m east and 183 m north, as the
  // coordinates of a point differ between both grids all over Victoria.
  EXPECT_NEAR((agd.longitude - gda.longitude) * 87700.0, 112.0, 10.0);
  EXPECT_NEAR((agd.latitude - gda.latitude) * 111000.0, 183.0, 10.0);
}

TEST_F(SitePlacesTest, Say_why_there_are_none) {
  store_station(10.0);
  EXPECT_TRUE(places_of_line("1E").empty());
  EXPECT_EQ(why_no_places(), "the survey has no projection, and its files gave no latitude and longitude");
  use(zone_definition("55", 55));
  EXPECT_TRUE(places_of_line("1E").empty()) << "local coordinates are no places on the map";
  EXPECT_NE(why_no_places().find("local coordinates only"), std::string::npos);

  store_station(20.0, flinders_peak);
  EXPECT_EQ(places_of_line("1E").size(), 1U);
  struct Case {
    const char* words;
    Module_projections::CoordSystem system;
  };
  auto any_zone = zone_definition("any zone", 0);
  auto broken = zone_definition("broken", 55);
  broken.zone_width = -1.0;
  auto geographic = zone_definition("plain", 0);
  geographic.projection = numerics::geodesy::projection_geographic;
  for (const Case& each :
       {Case{"no projection for the map coordinates", {}}, Case{"in which zone and hemisphere", any_zone},
        Case{"can't be used", broken}, Case{"outside of the projection \"plain\"", geographic}}) {
    use(each.system);
    EXPECT_TRUE(places_of_line("1E").empty()) << each.words;
    EXPECT_NE(why_no_places().find(each.words), std::string::npos) << why_no_places();
  }
}

}  // namespace
}  // namespace Module_exchange
