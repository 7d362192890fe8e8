// site_test.cpp: where sites stand, the slope of the ground there, and what the derivatives of the field are
// taken from.
#include "numerics/section/site.h"

#include <cmath>
#include <functional>
#include <numbers>
#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/numerics/section/made_section.h"

namespace {

using namespace numerics::section;
using Rows = std::vector<std::vector<std::string>>;

// Nodes at 0 40 50 70 100 m and, downwards, at 0 5 13 25 40 60 m. The sites asked for stand at 50 m.
const std::vector<double> widths = {40.0, 10.0, 20.0, 30.0};
const std::vector<double> heights = {5.0, 8.0, 12.0, 15.0, 20.0};
const std::vector<double> node_y = {0.0, 40.0, 50.0, 70.0, 100.0};
const std::vector<double> node_z = {0.0, 5.0, 13.0, 25.0, 40.0, 60.0};

Section section_with(Rows rows) {
  rows.resize(heights.size(), {"1111", "1111", "1111", "1111"});
  return drawn_section(widths, heights, rows);
}

double degrees(double radians) { return radians * 180.0 / std::numbers::pi; }
double angle(double along, double up) { return degrees(std::atan2(along, up)); }

TEST(Site, Stands_below_air_or_sea_and_sees_the_slope_of_the_ground) {
  const std::string rock = "1111";
  const std::string air = "....";
  const std::string sea = "~~~~";
  struct Case {
    const char* name;
    Rows rows;
    std::size_t row;
    double slope;  // degrees
    bool wall;
  };
  const Case cases[] = {
      {"level at the top", {{rock, rock, rock, rock}}, 0, 0.0, false},
      {"level", {{air, air, air, air}}, 1, 0.0, false},
      {"falls to the right",
       {{air, air, air, air}, {rock, rock, ".11.", air}},
       1,
       0.5 * (angle(20, -8) - 90.0),
       false},
      {"falls to the left",
       {{air, air, air, air}, {air, "..11", rock, rock}},
       1,
       0.5 * (90.0 - angle(10, -8)),
       false},
      {"rises to the left", {{rock, ".11.", air, air}}, 1, 0.5 * (90.0 - angle(10, 5)), false},
      {"rises to the right", {{air, air, "..11", rock}}, 1, 0.5 * (angle(20, 5) - 90.0), false},
      {"a slope through the site",
       {{rock, ".11.", air, air}, {rock, rock, ".11.", air}},
       1,
       0.5 * (angle(20, -8) - angle(10, 5)),
       false},
      {"a peak of triangles",
       {{air, air, air, air}, {air, "..11", ".11.", air}},
       1,
       0.5 * (angle(20, -8) - angle(10, -8)),
       false},
      {"wall to the left", {{air, air, air, air}, {air, air, rock, rock}}, 1, -45.0, true},
      {"wall to the right", {{air, air, air, air}, {rock, rock, air, air}}, 1, 45.0, true},
      {"a tower",
       {{air, air, air, air}, {air, "..1.", ".11.", air}, {rock, rock, rock, rock}},
       1,
       0.5 * (angle(20, -8) - 180.0),
       true},
      {"sea floor", {{sea, sea, sea, sea}, {sea, sea, sea, sea}}, 2, 0.0, false},
      {"sea floor that falls to the right",
       {{sea, sea, sea, sea}, {sea, sea, sea, sea}, {rock, rock, "~11~", sea}},
       2,
       0.5 * (angle(20, -12) - 90.0),
       false},
      {"air, then sea", {{air, air, air, air}, {sea, sea, sea, sea}, {sea, sea, sea, sea}}, 3, 0.0, false},
      {"top and bottom triangles have no say", {{".1.1", ".1..", "...1", "...."}}, 1, 0.0, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Section section = section_with(c.rows);
    const Site site = make_site(section, 2);
    EXPECT_EQ(site.row, c.row);
    EXPECT_NEAR(degrees(site.slope), c.slope, 1e-9);
    EXPECT_EQ(site.on_a_wall, c.wall);
    const Site seen_from_behind = make_site(mirrored(section), 2);
    EXPECT_EQ(seen_from_behind.row, c.row);
    EXPECT_NEAR(degrees(seen_from_behind.slope), -c.slope, 1e-9);
  }
}

TEST(Site, At_an_end_of_the_mesh_has_the_row_of_its_neighbour_and_no_slope) {
  const std::string air = "....";
  const Section section = section_with({{air, air, "1111", "1111"}, {air, "1111", "1111", "1111"}});
  EXPECT_EQ(make_site(section, 0).row, make_site(section, 1).row);
  EXPECT_EQ(make_site(section, 0).row, 1U);
  EXPECT_EQ(make_site(section, 4).row, 0U);
  for (const std::size_t column : {0U, 4U}) {
    const Site site = make_site(section, column);
    EXPECT_EQ(site.slope, 0.0);
    for (const NodeWeight& node : site.along) {
      EXPECT_EQ(node.weight, 0.0);
    }
  }
}

TEST(Site, Takes_the_conductivity_right_of_it_and_above_it_on_a_sea_floor) {
  const Rows land = {{"....", "....", "....", "...."}, {"2345", "2345", "3456", "2345"}};
  const Section section = section_with(land);
  EXPECT_EQ(section.codes[make_site(section, 2).triangle_beside], 4);  // the left triangle of 3456
  EXPECT_EQ(section.codes[make_site(section, 4).triangle_beside], 5);  // the right one of the last 2345
  EXPECT_EQ(make_site(section, 2).row_beside, 1U);
  const Section wall = section_with({{"....", "....", "....", "...."}, {"1111", "1111", "....", "...."}});
  EXPECT_EQ(wall.codes[make_site(wall, 2).triangle_beside], air_code);
  const Section sea = section_with({{"~~~~", "~~~~", "~~~~", "~~~~"}, {"~~~~", "~~~~", "~~~~", "~~~~"}});
  for (const std::size_t column : {0U, 2U, 4U}) {
    EXPECT_EQ(sea.codes[make_site(sea, column).triangle_beside], sea_code);
    EXPECT_EQ(make_site(sea, column).row_beside, 1U);
  }
}

TEST(Site, Needs_ground_and_room_for_a_derivative) {
  const std::vector<std::string> air(4, "....");
  const std::vector<std::string> sea(4, "~~~~");
  EXPECT_THROW(make_site(section_with({air, air, air, air, air}), 2), std::invalid_argument);
  EXPECT_THROW(make_site(section_with({air, air, air, air}), 2), std::invalid_argument);
  EXPECT_NO_THROW(make_site(section_with({air, air, air}), 2));
  EXPECT_THROW(make_site(section_with({sea}), 2), std::invalid_argument);
  EXPECT_NO_THROW(make_site(section_with({air, sea}), 2));
}

// The weighted sum of a field given by its values at the nodes.
double derivative(const Derivative& weights, const std::function<double(double, double)>& field) {
  double sum = 0.0;
  for (const NodeWeight& node : weights) {
    sum += node.weight * field(node_y[node.column], node_z[node.row]);
  }
  return sum;
}

double curved(double y, double z) { return 3.0 * y - 0.2 * y * y + 7.0 * z + 0.5 * z * z; }
double along_at(double y) { return 3.0 - 0.4 * y; }
double down_at(double z) { return 7.0 + z; }
double secant(double z0, double z1) { return (curved(0, z1) - curved(0, z0)) / (z1 - z0); }

TEST(Site, Looks_down_by_a_parabola_or_by_a_line_where_the_block_changes) {
  const std::string air = "....";
  struct Case {
    const char* name;
    std::vector<std::string> upper, lower;  // rows below the air
    double down;
  };
  const Case cases[] = {
      {"one block", {"1111", "1111", "1111", "1111"}, {"1111", "1111", "1111", "1111"}, down_at(5)},
      {"beside it only", {"1111", "1311", "1113", "1111"}, {"2222", "1111", "1111", "2222"}, down_at(5)},
      {"right cell, left triangle",
       {"1111", "1111", "1211", "1111"},
       {"1111", "1111", "1111", "1111"},
       secant(5, 13)},
      {"left cell, right triangle",
       {"1111", "1111", "1111", "1111"},
       {"1111", "1112", "1111", "1111"},
       secant(5, 13)},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Section section = section_with({{air, air, air, air}, c.upper, c.lower});
    EXPECT_NEAR(derivative(make_site(section, 2).down, curved), c.down, 1e-12);
  }
  // At the ends only the cell that exists is asked.
  const Section ends = section_with({{"1111", "1111", "1111", "1111"}, {"1113", "1111", "1111", "1112"}});
  EXPECT_NEAR(derivative(make_site(ends, 0).down, curved), down_at(0), 1e-12);
  EXPECT_NEAR(derivative(make_site(ends, 4).down, curved), secant(0, 5), 1e-12);
}

TEST(Site, On_a_sea_floor_looks_up) {
  const std::vector<std::string> air(4, "....");
  const std::vector<std::string> sea(4, "~~~~");
  EXPECT_NEAR(derivative(make_site(section_with({sea, sea}), 2).down, curved), down_at(13), 1e-12);
  EXPECT_NEAR(derivative(make_site(section_with({air, sea, sea}), 2).down, curved), down_at(25), 1e-12);
  // One row of sea: the pair of nodes and the sign are the inversion's.
  EXPECT_NEAR(derivative(make_site(section_with({air, sea}), 2).down, curved),
              -(curved(0, 5) - curved(0, 0)) / 8.0, 1e-12);
}

TEST(Site, Looks_along_the_line_from_the_side_that_has_ground_or_sea) {
  const std::string rock = "1111";
  const std::string air = "....";
  const std::string sea = "~~~~";
  struct Case {
    const char* name;
    Rows rows;
    double along;
  };
  const std::vector<std::string> all_air(4, air);
  const std::vector<std::string> all_sea(4, sea);
  const double to_left = (curved(50, 0) - curved(40, 0)) / 10.0;
  const double to_right = (curved(70, 0) - curved(50, 0)) / 20.0;
  const Case cases[] = {
      {"level", {all_air}, along_at(50)},
      {"both tops air", {all_air, {air, "..11", ".11.", air}}, along_at(50)},
      {"right top air: the far end", {all_air, {rock, rock, ".11.", air}}, along_at(0)},
      {"left top air: the far end", {all_air, {air, "..11", rock, rock}}, along_at(100)},
      {"right top air, another block", {all_air, {"2222", rock, ".11.", air}}, to_left},
      {"left top air, another block", {all_air, {air, "..11", rock, "2111"}}, to_right},
      {"sea above both", {all_sea, all_sea}, along_at(50)},
      {"sea above the left cell only", {{sea, sea, sea, rock}, {"11~1", sea, "1~11", rock}}, along_at(0)},
      {"sea above the right cell only", {{rock, sea, sea, sea}, {rock, "111~", sea, "11~1"}}, along_at(100)},
      {"sea above the left cell, another block",
       {{sea, sea, sea, rock}, {"~~1~", sea, "1~11", rock}},
       to_left},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Section section = section_with(c.rows);
    EXPECT_NEAR(derivative(make_site(section, 2).along, [](double y, double) { return curved(y, 0); }),
                c.along, 1e-12);
  }
}

}  // namespace
