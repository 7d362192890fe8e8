// geosoft_grid_test.cpp: grids as an independent reader finds them; the reader itself on genuine files first.
#include "formats/geosoft/geosoft_grid.h"

#include <cmath>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <limits>
#include <map>
#include <stdexcept>

#include <gtest/gtest.h>
#include <sys/resource.h>

#include "core/scope_guard.h"
#include "tests/formats/geosoft/geosoft_grid_reader.h"
#include "tests/support/temporary_folder.h"

namespace {

using numerics::gridding::RegularGrid;

constexpr double absent = -1e32;

std::string written(const RegularGrid& grid) {
  const TemporaryFolder folder;
  formats::geosoft::write_geosoft_grid(folder.path("made.grd"), grid);
  return file_contents(folder.path("made.grd"));
}

TEST(Geosoft_reader_of_the_tests, Finds_the_values_of_genuine_grids) {
  const std::string folder = BRENLOX_FIELD_DATA "/geosoft/";
  if (!std::filesystem::exists(folder)) {
    GTEST_SKIP() << "no field data beside the checkout";
  }
  std::map<std::pair<double, double>, std::optional<double>> reference;
  std::ifstream table(folder + "reference.csv");
  std::string line;
  std::getline(table, line);
  while (std::getline(table, line)) {
    double x = 0.0;
    double y = 0.0;
    double value = 0.0;
    const int fields = std::sscanf(line.c_str(), "%lf,%lf,%lf", &x, &y, &value);
    reference[{x, y}] = fields == 3 ? std::optional(value) : std::nullopt;
  }
  for (const auto& [name, bound] :
       {std::pair("mask_float32_rows.grd", 0.0), {"mask_float64_columns.grd", 6e-9}}) {
    const GeosoftGrid grid = read_geosoft_grid(file_contents(folder + name));
    ASSERT_EQ(grid.nodes.size(), reference.size());
    for (const GeosoftGrid::Node& node : grid.nodes) {
      const std::optional<double> expected = reference.at({node.x, node.y});
      ASSERT_EQ(node.value.has_value(), expected.has_value()) << name << " " << node.x << ", " << node.y;
      if (expected) {
        EXPECT_NEAR(*node.value, *expected, bound) << name;
      }
    }
  }
}

TEST(Geosoft_grid, Is_the_known_file_byte_for_byte) {
  const std::string bytes = written({{100.0, -50.0, 25.0, 3, 2}, {1.5, 2.0, absent, 0.25, -1.0, 3.0}});
  std::string expected(536, '\0');
  const auto put = [&expected](std::size_t at, const std::string& hexadecimal) {
    for (std::size_t i = 0; 2 * i < hexadecimal.size(); ++i) {
      expected[at + i] = static_cast<char>(std::stoi(hexadecimal.substr(2 * i, 2), nullptr, 16));
    }
  };
  put(0, "0400000002000000030000000200000001000000");
  put(24, "00003940");
  put(32, "00003940");
  put(40, "00005940");
  put(48, "000049c0");
  put(72, "0000f03f");
  put(156, "05000000000080bf00004040000000003333933f6666666666660340");
  put(188, "aec59df4aec59df4aec59df4aec59df4");
  put(512, "0000c03f00000040aec59df40000803e000080bf00004040");
  EXPECT_EQ(bytes, expected);
}

// Different at each corner: rows upside down or x and y exchanged would show.
TEST(Geosoft_grid, Puts_a_section_the_right_way_up) {
  RegularGrid grid = {{-300.0, -2000.0, 100.0, 5, 4}, {}};
  for (std::size_t node = 0; node < 20; ++node) {
    const std::size_t row = node / 5;
    const double x = -300.0 + 100.0 * static_cast<double>(node % 5);
    const double y = -2000.0 + 100.0 * static_cast<double>(row);
    grid.values.push_back(x + y / 7.0);
  }
  const GeosoftGrid found = read_geosoft_grid(written(grid));
  EXPECT_EQ(found.elements, 5);
  EXPECT_EQ(found.vectors, 4);
  EXPECT_EQ(found.order, 1);
  EXPECT_EQ(found.nodes.front().y, -2000.0);  // the deepest row comes first
  for (const GeosoftGrid::Node& node : found.nodes) {
    EXPECT_NEAR(node.value.value(), node.x + node.y / 7.0, 1e-4);
  }
}

TEST(Geosoft_grid, Absent_values_and_statistics) {
  const double nan = std::nan("");
  const double infinity = std::numeric_limits<double>::infinity();
  struct Case {
    const char* name;
    std::size_t columns, rows;
    std::vector<double> values;
    int present;
    float smallest, largest, mean;
    double variance;
  };
  constexpr float none = -1e32F;
  const Case cases[] = {
      {"absent at both ends", 4, 1, {absent, 1, 4, absent}, 2, 1, 4, 2.5F, 4.5},
      {"not finite", 1, 4, {nan, -infinity, infinity, -1e30}, 0, none, none, none, 0},
      {"all there", 2, 2, {-1, -2, -3, -6}, 4, -6, -1, -3, 14.0 / 3.0},
      {"one", 1, 1, {7}, 1, 7, 7, 7, 0},
      {"single precision's absent value", 2, 1, {static_cast<double>(none), 7}, 1, 7, 7, 7, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const std::string bytes = written({{0, 0, 1, c.columns, c.rows}, c.values});
    const GeosoftGrid found = read_geosoft_grid(bytes);
    EXPECT_EQ(found.present, c.present);
    EXPECT_EQ(found.smallest, c.smallest);
    EXPECT_EQ(found.largest, c.largest);
    EXPECT_EQ(found.mean, c.mean);
    EXPECT_DOUBLE_EQ(found.variance, c.variance);
    for (std::size_t i = 0; i < c.values.size(); ++i) {
      const bool there = std::isfinite(c.values[i]) && c.values[i] > -1e30;
      EXPECT_EQ(found.nodes[i].value.has_value(), there) << i;
      if (!there) {
        EXPECT_EQ(bytes.substr(512 + 4 * i, 4), "\xae\xc5\x9d\xf4");  // readers compare with exactly this
      }
    }
  }
}

TEST(Geosoft_grid, A_failure_leaves_the_earlier_file) {
  const TemporaryFolder folder;
  const std::string file = folder.write("made.grd", "earlier");
  const RegularGrid good = {{0, 0, 1, 100, 10}, std::vector<double>(1000, 1.0)};
  const auto fails_with = [&](auto change) {
    RegularGrid grid = good;
    change(grid);
    EXPECT_THROW(formats::geosoft::write_geosoft_grid(file, grid), std::invalid_argument);
    EXPECT_EQ(file_contents(file), "earlier");
  };
  fails_with([](RegularGrid& grid) { grid.values[5] = 1e39; });
  fails_with([](RegularGrid& grid) { grid.values.pop_back(); });
  fails_with([](RegularGrid& grid) { grid.frame.cell = 0.0; });
  fails_with([](RegularGrid& grid) { grid.frame.cell = std::nan(""); });
  fails_with([](RegularGrid& grid) { grid.frame.first_y = std::nan(""); });
  fails_with([](RegularGrid& grid) { grid = {{0, 0, 1, 0, 0}, {}}; });

  EXPECT_THROW(formats::geosoft::write_geosoft_grid(folder.path("missing/made.grd"), good),
               std::runtime_error);
  {
    // As on a full disk: the file may not grow beyond its header.
    rlimit earlier = {};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &earlier), 0);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const ScopeGuard restore([&] {
      setrlimit(RLIMIT_FSIZE, &earlier);
      std::signal(SIGXFSZ, handler);
    });
    const rlimit small = {600, earlier.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    EXPECT_THROW(formats::geosoft::write_geosoft_grid(file, good), std::runtime_error);
  }
  EXPECT_EQ(file_contents(file), "earlier");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.folder()), {}), 1);
  formats::geosoft::write_geosoft_grid(file, good);
  EXPECT_EQ(file_contents(file).size(), 4512U);
}

}  // namespace
