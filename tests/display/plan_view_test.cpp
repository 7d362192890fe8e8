#include "display/plan_view.h"

#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "core/session_state.h"

using namespace Module_display_data;

namespace {

class Plan : public ::testing::Test {
 protected:
  Plan() { reset_session_state(); }
  static void place_stations(const std::vector<PlanPoint>& places) {
    for (const PlanPoint& place : places) {
      session().station_table.push_back({place.x, place.y, place.x + 500000.0, place.y + 4000000.0, 0.0});
    }
    session().station_count = static_cast<std::int32_t>(places.size());
    fit_plan_window();
  }
};

}  // namespace

TEST_F(Plan, Window_is_a_square_around_the_stations) {
  struct Case {
    const char* name;
    std::vector<PlanPoint> stations;
    double x_min, x_max, y_min, y_max;
  };
  const Case cases[] = {
      {"none", {}, -1.0, 1.0, -1.0, 1.0},
      {"one station", {{10.0, 20.0}}, 9.0, 11.0, 19.0, 21.0},
      {"a line to the east", {{0.0, 5.0}, {100.0, 5.0}}, 0.0, 100.0, -45.0, 55.0},
      {"a line to the north", {{200.0, 100.0}, {200.0, 500.0}}, 0.0, 400.0, 100.0, 500.0},
      {"wider than high", {{0.0, 0.0}, {300.0, 100.0}}, 0.0, 300.0, -100.0, 200.0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    session().station_table.clear();
    place_stations(c.stations);
    const PlanWindow& window = session().plan_window;
    EXPECT_EQ(window.plan_zoom, 0.0F);
    EXPECT_DOUBLE_EQ(window.plan_x_min, c.x_min);
    EXPECT_DOUBLE_EQ(window.plan_x_max, c.x_max);
    EXPECT_DOUBLE_EQ(window.plan_y_min, c.y_min);
    EXPECT_DOUBLE_EQ(window.plan_y_max, c.y_max);
    EXPECT_DOUBLE_EQ(window.plan_x_centre, 0.5 * (c.x_min + c.x_max));
    EXPECT_DOUBLE_EQ(window.plan_y_extent, c.y_max - c.y_min);
  }
}

TEST_F(Plan, One_scale_serves_both_axes_at_every_zoom) {
  place_stations({{0.0, 0.0}, {100.0, 100.0}});
  EXPECT_EQ(resize_plan_window(400.0, 200.0, 3), 0);  // fitted again: the scale bar goes back
  const PlanWindow& window = session().plan_window;
  EXPECT_DOUBLE_EQ(window.plan_base, 110.0);
  EXPECT_DOUBLE_EQ(window.plan_y_extent, 110.0);
  EXPECT_DOUBLE_EQ(window.plan_x_extent, 220.0);
  EXPECT_DOUBLE_EQ(window.plan_x_min, -60.0);
  EXPECT_DOUBLE_EQ(window.plan_y_max, 105.0);
  EXPECT_NEAR(window.plan_x_scale, window.plan_y_scale, 1e-12);

  EXPECT_EQ(resize_plan_window(400.0, 200.0, 2), 2);
  EXPECT_NEAR(window.plan_y_extent, 110.0 / (1.585 * 1.585), 1e-5);  // the zoom is a single
  EXPECT_EQ(resize_plan_window(400.0, 200.0, -1), -1);
  EXPECT_NEAR(window.plan_y_extent, 110.0 * 1.585, 1e-5);
  EXPECT_NEAR(window.plan_x_scale, window.plan_y_scale, 1e-12);
  EXPECT_EQ(resize_plan_window(0.0, 200.0, 1), 1);
  EXPECT_TRUE(std::isfinite(window.plan_x_scale));
}

TEST_F(Plan, A_tall_picture_is_fitted_by_the_width) {
  place_stations({{0.0, 0.0}, {100.0, 100.0}});
  (void)resize_plan_window(200.0, 400.0, 0);
  EXPECT_DOUBLE_EQ(session().plan_window.plan_base,
                   110.0);  // of the width, as the height of the window: so it is
}

TEST_F(Plan, Bars_move_the_window_by_tenths) {
  place_stations({{0.0, 0.0}, {100.0, 100.0}});
  (void)resize_plan_window(200.0, 200.0, 0);
  pan_plan_x(1);
  pan_plan_y(-2);
  EXPECT_DOUBLE_EQ(session().plan_window.plan_x_centre, 50.0 - 11.0);
  EXPECT_DOUBLE_EQ(session().plan_window.plan_y_centre, 50.0 + 22.0);
  (void)resize_plan_window(200.0, 200.0, 0);
  EXPECT_DOUBLE_EQ(session().plan_window.plan_x_min, 39.0 - 55.0);
  EXPECT_DOUBLE_EQ(session().plan_window.plan_y_max, 72.0 + 55.0);
}

TEST_F(Plan, What_is_dragged_stays_under_the_pointer) {
  place_stations({{0.0, 0.0}, {100.0, 100.0}});
  drag_plan({0.0, 0.0}, {10.0, 10.0});  // nothing is drawn yet
  (void)resize_plan_window(220.0, 220.0, 0);
  const PlanPoint held = to_survey({60.0, 150.0}, 220.0);
  drag_plan({60.0, 150.0}, {90.0, 40.0});
  (void)resize_plan_window(220.0, 220.0, 0);
  const PlanPoint there = to_survey({90.0, 40.0}, 220.0);
  EXPECT_NEAR(there.x, held.x, 1e-9);
  EXPECT_NEAR(there.y, held.y, 1e-9);
}

TEST_F(Plan, What_is_zoomed_at_stays_under_the_pointer) {
  place_stations({{0.0, 0.0}, {100.0, 100.0}});
  keep_place_through_zoom({10.0, 10.0}, 220.0, 0, 5);  // nothing is drawn yet
  (void)resize_plan_window(220.0, 220.0, 0);
  const PlanPoint pointer{30.0, 180.0};
  const PlanPoint there = to_survey(pointer, 220.0);
  keep_place_through_zoom(pointer, 220.0, 0, 7);
  (void)resize_plan_window(220.0, 220.0, 7);
  EXPECT_LT(session().plan_window.plan_y_extent, 5.0);
  EXPECT_NEAR(to_survey(pointer, 220.0).x, there.x, 1e-6);  // the zoom is a single
  EXPECT_NEAR(to_survey(pointer, 220.0).y, there.y, 1e-6);
}

TEST_F(Plan, Picture_and_survey_places_answer_each_other) {
  place_stations({{0.0, 0.0}, {100.0, 100.0}});
  (void)resize_plan_window(220.0, 220.0, 0);  // two units a metre
  const PlanPoint corner = to_picture({-5.0, -5.0}, 220.0);
  EXPECT_NEAR(corner.x, 0.0, 1e-9);
  EXPECT_NEAR(corner.y, 220.0, 1e-9);
  const PlanPoint back = to_survey(to_picture({12.0, 34.0}, 220.0), 220.0);
  EXPECT_NEAR(back.x, 12.0, 1e-9);
  EXPECT_NEAR(back.y, 34.0, 1e-9);
  EXPECT_TRUE(in_plan_window({0.0, 0.0}));
  EXPECT_FALSE(in_plan_window({session().plan_window.plan_x_min, 0.0}));  // strictly
}

TEST_F(Plan, The_nearest_station_is_picked) {
  place_stations({{0.0, 0.0}, {100.0, 0.0}, {100.0, 0.0}, {50.0, 100.0}});
  EXPECT_EQ(pick_station({1.0, 1.0}, 200.0), -1);  // nothing is drawn yet
  (void)resize_plan_window(200.0, 200.0, 0);
  EXPECT_EQ(pick_station(to_picture({2.0, -3.0}, 200.0), 200.0), 1);
  EXPECT_EQ(pick_station(to_picture({99.0, 3.0}, 200.0), 200.0), 2);  // the first of two in one place
  EXPECT_EQ(pick_station(to_picture({50.0, 0.0}, 200.0), 200.0), 1);  // as near to 2
  EXPECT_EQ(pick_station(to_picture({50.0, 10099.0}, 200.0), 200.0), 4);
  EXPECT_EQ(pick_station(to_picture({50.0, 10100.5}, 200.0), 200.0), -1);
}

TEST_F(Plan, Coordinates_are_fitted_again) {
  place_stations({{0.0, 0.0}, {100.0, 100.0}});
  (void)resize_plan_window(200.0, 200.0, 0);
  EXPECT_FALSE(choose_coordinates(0));
  EXPECT_TRUE(choose_coordinates(1));
  EXPECT_EQ(session().x_column, 3);
  EXPECT_EQ(session().y_column, 4);
  EXPECT_EQ(session().plan_window.plan_zoom, 0.0F);
  EXPECT_DOUBLE_EQ(session().plan_window.plan_x_centre, 500050.0);
  EXPECT_DOUBLE_EQ(station_place(2).y, 4000100.0);
  session().updating_controls = true;
  EXPECT_FALSE(choose_coordinates(0));
}

TEST_F(Plan, The_scale_bar_is_a_round_length_of_at_most_a_quarter) {
  struct Case {
    double width;  // m, of a picture as wide as high, without its margins
    double bar;    // m
  };
  const Case cases[] = {{1000.0, 200.0}, {1800.0, 200.0}, {1900.0, 500.0}, {3700.0, 1000.0}, {1.0, 0.2}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.width);
    place_stations({{0.0, 0.0}, {c.width, c.width}});
    (void)resize_plan_window(300.0, 300.0, 0);
    EXPECT_DOUBLE_EQ(scale_bar_length(300.0), c.bar);
    session().station_table.clear();
  }
}

TEST_F(Plan, The_station_under_the_pointer_is_within_its_reach) {
  place_stations({{0.0, 0.0}, {100.0, 100.0}});
  EXPECT_EQ(station_under({100.0, 100.0}, 220.0, 8.0), -1);  // nothing is drawn yet
  (void)resize_plan_window(220.0, 220.0, 0);                 // two units a metre
  const PlanPoint dot = to_picture({100.0, 100.0}, 220.0);
  EXPECT_EQ(station_under({dot.x + 7.0, dot.y}, 220.0, 8.0), 2);
  EXPECT_EQ(station_under({dot.x + 9.0, dot.y}, 220.0, 8.0), -1);
}
