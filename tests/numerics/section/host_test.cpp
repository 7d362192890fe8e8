// host_test.cpp: the layered earth at the ends of a section, and the air above it.
#include "numerics/section/host.h"

#include <numeric>
#include <stdexcept>

#include <gtest/gtest.h>

#include "numerics/section/air_rows.h"
#include "tests/numerics/section/made_section.h"

namespace {

using namespace numerics::section;

const std::vector<double> widths = {100.0, 10.0, 100.0};

// ohm-m of each row of ground
std::vector<double> resistivities(const LayeredColumn& column) {
  std::vector<double> values;
  for (const double conductivity : column.conductivity) {
    values.push_back(1.0 / conductivity);
  }
  return values;
}

void expect_resistivities(const LayeredColumn& column, const std::vector<double>& expected) {
  const std::vector<double> found = resistivities(column);
  ASSERT_EQ(found.size(), expected.size());
  for (std::size_t row = 0; row < found.size(); ++row) {
    EXPECT_NEAR(found[row] / expected[row], 1.0, 1e-14) << row;
  }
}

TEST(Host, Is_the_end_column_with_the_more_resistive_upper_layer) {
  const std::vector<double> heights = {1.0, 2.0, 3.0};
  const auto host = [&](const char* left, const char* right) {
    return host_column(drawn_section(
        widths, heights, {{left, "9999", right}, {"4444", "9999", "5555"}, {"6666", "9999", "7777"}}));
  };
  expect_resistivities(host("3333", "2222"), {30, 40, 60});
  expect_resistivities(host("2222", "3333"), {30, 50, 70});
  expect_resistivities(host("3333", "3333"), {30, 40, 60});
  expect_resistivities(host("~~~~", "1111"), {10, 50, 70});  // sea water is a layer like any other
  EXPECT_EQ(host("....", "9999").ground_row, 0U);
  expect_resistivities(host("....", "3333"), {40, 60});  // compared at their own grounds
  EXPECT_EQ(host("....", "3333").ground_row, 1U);
}

// The outer triangle is the left one at the left end and the right one at the right end; the top triangle
// says what is air.
TEST(Host, Goes_by_outer_triangles_below_the_last_row_with_air_on_top) {
  const Section section = drawn_section(widths, {1.0, 2.0, 3.0, 4.0},
                                        {{".111", "....", ".111"},
                                         {"1234", "1111", "1234"},
                                         {"1234", "1111", "1234"},
                                         {"5678", "1111", "5678"}});
  const LayeredColumn left = end_column(section, End::left);
  EXPECT_EQ(left.ground_row, 1U);
  EXPECT_EQ(left.heights, (std::vector<double>{2.0, 3.0, 4.0}));
  expect_resistivities(left, {20, 20, 60});
  expect_resistivities(end_column(section, End::right), {40, 40, 80});

  const Section cave =
      drawn_section(widths, {1.0, 2.0, 3.0},
                    {{"1111", "1111", "...."}, {".111", "1111", "...."}, {"2222", "1111", "...."}});
  EXPECT_EQ(end_column(cave, End::left).ground_row, 2U);
  EXPECT_THROW(end_column(cave, End::right), std::invalid_argument);
}

TEST(Host, Has_as_many_layers_as_the_model_and_ends_as_the_mesh_does) {
  Section section = drawn_section(widths, {1.0, 1.0, 1.0, 1.0, 1.0},
                                  {{"1111", "1111", "1111"},
                                   {"1111", "1111", "1111"},
                                   {"2222", "1111", "1111"},
                                   {"3333", "1111", "1111"},
                                   {"4444", "1111", "1111"}});
  section.host_layers = 4;
  expect_resistivities(end_column(section, End::left), {10, 10, 20, 30, 40});
  section.host_layers = 3;
  expect_resistivities(end_column(section, End::left), {10, 10, 20, 40, 40});
  section.host_layers = 2;
  expect_resistivities(end_column(section, End::left), {10, 10, 40, 40, 40});
}

TEST(Air_rows, Are_ten_up_to_half_the_width_of_the_mesh) {
  const std::vector<double> rows = air_rows(10.0, 2e6);
  ASSERT_EQ(rows.size(), 10U);
  EXPECT_EQ(rows.front(), 10.0);
  EXPECT_NEAR(rows[9] / rows[8], rows[1] / rows[0], 1e-12);
  const double sum = std::accumulate(rows.begin(), rows.end(), 0.0);
  EXPECT_NEAR(sum, 1e6, 1e3);  // the factor is bisected to four digits
  EXPECT_NE(sum, 1e6);
  // A first row too thick for ten of them: the fourth root.
  EXPECT_NEAR(air_rows(1000.0, 10000.0)[1], 1000.0 * 1.4953487812212205, 1e-9);
}

}  // namespace
