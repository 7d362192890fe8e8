#include "database/stations.h"

#include "database/line_names.h"
#include "tests/support/survey_fixture.h"

using namespace Module_database;

TEST(Line_to_number, Takes_the_letter_as_sign) {
  const std::pair<const char*, double> cases[] = {{"200E", 200.0},  {"200W", -200.0}, {"15S", -15.0},
                                                  {"15N", 15.0},    {"-200S", 200.0}, {"37", 37.0},
                                                  {" 20w ", -20.0}, {"", 0.0},        {"W", 0.0}};
  for (const auto& [line, number] : cases) {
    EXPECT_EQ(line_to_number(line), number) << line;
  }
}

TEST(Line_fault, Gives_a_typed_line_its_letter_by_direction_and_sign) {
  const struct {
    const char* typed;
    LineDirection direction;
    const char* name;
    double number;
  } cases[] = {{"0", LineDirection::local_east, "0E", 0.0},
               {"0", LineDirection::local_north, "0N", 0.0},
               {"-200", LineDirection::local_east, "200W", -200.0},
               {"-200", LineDirection::local_north, "200S", -200.0},
               {" 15n ", LineDirection::local_east, "15N", 15.0},
               {"0W", LineDirection::local_east, "0W", 0.0}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.typed);
    LineName name;
    EXPECT_EQ(line_fault(c.typed, c.direction, name), "");
    EXPECT_EQ(name.text, c.name);
    EXPECT_EQ(name.number, c.number);
  }
}

TEST_F(SurveyTest, A_map_place_of_its_own_is_given_and_off_the_grid) {
  EXPECT_FALSE(has_own_map_place({200.0, 100.0, 0.0, 0.0, 0.0})) << "none is given";
  EXPECT_FALSE(has_own_map_place({200.0, 100.0, 199.0, 100.9, 0.0})) << "the same place";
  EXPECT_TRUE(has_own_map_place({200.0, 100.0, 199.0, 101.1, 0.0}));
  EXPECT_TRUE(has_own_map_place({200.0, 100.0, 0.0, 100.0, 0.0}));
  EXPECT_TRUE(has_own_map_place({200.0, 100.0, 200.0, 0.0, 0.0}));
}

TEST_F(SurveyTest, A_station_is_added_once_with_coordinates_from_its_line) {
  new_survey();
  EXPECT_EQ(find_station(StationSearch::look_up, "200W", 50.0).StationID, -1);
  EXPECT_EQ(rows_in("StationsTable"), 0);

  struct Case {
    const char* line;
    double station;
    double local_x;
    double local_y;
  };
  const Case cases[] = {{"200E", 50.0, 200.0, 50.0},
                        {"200W", 1250.4, -200.0, 1250.4},
                        {"100N", -12.5, -12.5, 100.0},
                        {"100S", 33.3, 33.3, -100.0}};
  for (const Case& c : cases) {
    const StationRows added = find_station(StationSearch::create, c.line, c.station);
    EXPECT_EQ(added.LocalX, c.local_x) << c.line;
    EXPECT_EQ(added.LocalY, c.local_y) << c.line;
    EXPECT_EQ(added.MapX, c.local_x) << c.line;  // the survey grid is not turned or moved
    const StationRows again = find_station(StationSearch::create, c.line, c.station);
    EXPECT_EQ(again.StationID, added.StationID) << c.line;
    EXPECT_EQ(again.LocationID, added.LocationID) << c.line;
  }
  EXPECT_EQ(rows_in("StationsTable"), 4);
  EXPECT_EQ(rows_in("LocationLookupTable"), 4);
  reopen();
  EXPECT_GT(find_station(StationSearch::look_up, "200W", 1250.4).StationID, 0);
}

// The grid's y axis points 30 degrees east of north, and its point (1000, 200) is at a corner post.
TEST_F(SurveyTest, Stations_of_a_turned_grid_stand_where_its_axes_lead) {
  new_survey();
  session().survey_header = {.grid_azimuth = 30.0,
                             .local_x_origin = 1000.0,
                             .local_y_origin = 200.0,
                             .map_x_origin = 500000.0,
                             .map_y_origin = 6000000.0};
  const StationRows north = find_station(StationSearch::create, "1000E", 300.0);  // 100 m along the grid's y
  EXPECT_NEAR(north.MapX, 500050.0, 1e-3);
  EXPECT_NEAR(north.MapY, 6000086.603, 1e-3);
  const StationRows east = find_station(StationSearch::create, "200N", 1100.0);  // 100 m along the grid's x
  EXPECT_NEAR(east.MapX, 500086.603, 1e-3);
  EXPECT_NEAR(east.MapY, 5999950.0, 1e-3);
  EXPECT_FALSE(has_own_map_place({1000.0, 300.0, north.MapX + 1.0, north.MapY + 0.9}));
  EXPECT_TRUE(has_own_map_place({1000.0, 300.0, north.MapX + 1.5, north.MapY - 1.0}));
}

TEST_F(SurveyTest, Lines_that_cross_share_the_location_and_its_place) {
  new_survey();
  const GivenPlace place{512345.5, 6123456.5, 321.0};
  const GivenPlace other_place{1.0, 2.0, 3.0};
  const StationRows on_200e = find_station(StationSearch::create, "200E", 100.0, &place);
  const StationRows on_100n = find_station(StationSearch::create, "100N", 200.0, &other_place);
  EXPECT_NE(on_100n.StationID, on_200e.StationID);
  EXPECT_EQ(on_100n.LocationID, on_200e.LocationID);
  EXPECT_EQ(on_100n.MapX, 512345.5);
  EXPECT_EQ(on_100n.Elevation, 321.0);

  const std::pair<double, bool> distances[] = {{0.4, true}, {-0.9, true}, {1.0, false}, {-1.0, false}};
  for (const auto& [distance, same] : distances) {
    EXPECT_EQ(find_location(200.0, 100.0 + distance).LocationID == on_200e.LocationID, same) << distance;
  }
}

TEST_F(SurveyTest, Stations_of_a_line_stand_together_though_two_lines_have_one_number) {
  new_survey();
  for (const double station : {300.0, 100.0, 200.0}) {
    for (const char* line : {"1000E", "200W", "200E"}) {
      (void)find_station(StationSearch::create, line, station);
    }
  }
  dao::Recordset& stations = open_survey().stations;
  stations.requery();
  std::string order;
  for (; !stations.eof(); stations.move_next()) {
    order += stations.get_text("SurveyLine") + " " +
             std::to_string(static_cast<int>(stations.get_double("Station"))) + "; ";
  }
  EXPECT_EQ(order,
            "200E 100; 200E 200; 200E 300; 200W 100; 200W 200; 200W 300; 1000E 100; 1000E 200; 1000E 300; ");
}

TEST_F(SurveyTest, The_largest_value_of_an_empty_table_is_0) {
  new_survey();
  EXPECT_EQ(get_max_value("ID", "[Projection Defintion Table]"), 0.0);
  (void)find_station(StationSearch::create, "200E", 1250.4);
  EXPECT_EQ(get_max_value("Station", "StationsTable"), 1250.4);
}
