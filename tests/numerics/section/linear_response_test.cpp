// linear_response_test.cpp: derivatives of impedances and tippers against central differences.
#include "numerics/section/linear_response.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <gtest/gtest.h>

#include "tests/numerics/section/made_section.h"

namespace {

using namespace numerics::section;

const std::vector<double> sites = {-500.0, -100.0, 200.0, 600.0};
const std::vector<double> frequencies = {50.0, 1.0};

// Blocks of two columns by three rows in the middle of the mesh; the sides have no parameter.
struct Blocks {
  std::vector<std::size_t> index;
  std::size_t count = 0;
};

Blocks blocks_of(const Section& section) {
  const std::size_t columns = section.column_widths.size();
  constexpr std::size_t side = 8;  // columns
  const std::size_t across = (columns - 2 * side + 1) / 2;
  Blocks blocks;
  for (std::size_t row = 0; row < section.row_heights.size(); ++row) {
    for (std::size_t column = 0; column < columns; ++column) {
      const bool inner = column >= side && column < columns - side;
      const std::size_t block = row / 3 * across + (inner ? (column - side) / 2 : 0);
      for (std::size_t t = 0; t < 4; ++t) {
        const bool ground = section.code(column, row, t) > air_code;
        blocks.index.push_back(inner && ground ? block : no_parameter);
      }
      blocks.count = std::max(blocks.count, block + 1);
    }
  }
  return blocks;
}

// What is differentiated, for each mode, frequency and site: ln impedance and, in TE, the tipper; with their
// derivatives, of parameter p at [p].
struct Linear {
  std::vector<Complex> values;
  std::vector<std::vector<Complex>> changes;
};

Linear linear_response(const Section& section, const CheckedInput& input, const Parameters& parameters,
                       std::size_t threads) {
  std::vector<ModeRequest> requests;
  for (std::size_t f = 0; f < frequencies.size(); ++f) {
    requests.push_back({Mode::te, f, {0, 1, 2, 3}, true});
    requests.push_back({Mode::tm, f, {0, 1, 2, 3}, false});
  }
  Linear linear;
  linear.values.resize(4 * sites.size() * frequencies.size());
  linear.changes.resize(linear.values.size());
  const auto take = [&](const ModeRequest& request, std::size_t site, const SiteResponse& response) {
    const std::size_t at = 4 * (request.frequency_index * sites.size() + site);
    const auto put = [&](std::size_t place, const Complex& value, std::span<const Complex> change) {
      linear.values[at + place] = value;
      linear.changes[at + place].assign(change.begin(), change.end());
    };
    put(request.mode == Mode::te ? 0 : 1, std::log(response.impedance), response.impedance_change);
    if (request.tipper) {
      put(2, response.tipper, response.tipper_change);
    }
  };
  EXPECT_TRUE(compute_linear_response(section, input, frequencies, requests, parameters, take,
                                      {.threads = threads, .progress = {}}));
  return linear;
}

Linear linear_response(const Section& section, const Parameters& parameters, std::size_t threads = 1) {
  return linear_response(section, check_input(section, sites, frequencies), parameters, threads);
}

void expect_central_differences(const Section& section) {
  const Blocks blocks = blocks_of(section);
  const Linear found = linear_response(section, {blocks.index, blocks.count});
  constexpr double step = 1e-4;  // decades
  const auto values_with = [&](std::size_t block, double decades) {
    Section changed = section;
    for (std::size_t i = 0; i < blocks.index.size(); ++i) {
      if (blocks.index[i] == block) {
        changed.resistivities[i] *= std::pow(10.0, decades);
      }
    }
    return linear_response(changed, {}).values;
  };
  // Of one quantity at all sites and frequencies: impedance of TE and of TM, tipper.
  constexpr std::size_t quantities = 3;
  std::array<double, quantities> largest = {};
  std::array<double, quantities> worst = {};
  constexpr std::size_t sample = 3;  // each third block; the others are much like their neighbours
  for (std::size_t block = 0; block < blocks.count; block += sample) {
    const std::vector<Complex> more = values_with(block, step);
    const std::vector<Complex> less = values_with(block, -step);
    for (std::size_t i = 0; i < more.size(); ++i) {
      if (i % 4 < quantities) {
        const Complex difference = (more[i] - less[i]) / (2.0 * step);
        largest[i % 4] = std::max(largest[i % 4], std::abs(difference));
        worst[i % 4] = std::max(worst[i % 4], std::abs(found.changes[i][block] - difference));
      }
    }
  }
  for (std::size_t quantity = 0; quantity < quantities; ++quantity) {
    EXPECT_GT(largest[quantity], 1e-4) << quantity;
    EXPECT_LT(worst[quantity], 1e-5 * largest[quantity]) << quantity;
  }
  EXPECT_EQ(linear_response(section, {blocks.index, blocks.count}, 3).changes, found.changes);
  EXPECT_EQ(linear_response(section, {}).values, found.values);
}

double ground(double y, double z) {
  if (z > 150.0 && z < 800.0 && y > -600.0 && y < 0.0) {
    return 5.0;
  }
  return z > 350.0 && y > 200.0 && y < 500.0 ? 900.0 : 100.0;
}

TEST(Linear_response, Derivatives_are_those_of_the_response) {
  const std::vector<double> node_y =
      both_sides(joined(even_nodes(0, 100, 700), growing_nodes(700, 150, 1.7, 4e4)));
  expect_central_differences(section_of_cells(node_y, growing_nodes(0, 20, 1.35, 2e4), ground));
  const std::vector<double> node_z = joined(even_nodes(0, 50, 200), growing_nodes(200, 30, 1.35, 2e4));
  // The same ground under a slope, host low and host high, by triangles and by whole cells.
  const auto sloping = [](double fall, double fill) {
    return [=](double y, double z) {
      return z < std::clamp(100.0 + fall * y, 0.0, 200.0) ? fill : ground(y, z);
    };
  };
  expect_central_differences(section_of_triangles(node_y, node_z, sloping(0.5, air_resistivity)));
  expect_central_differences(section_of_triangles(node_y, node_z, sloping(-0.5, air_resistivity)));
  expect_central_differences(section_of_cells(node_y, node_z, sloping(0.5, air_resistivity)));
  // A sea two rows deep and more, over sites of either side of its shore.
  expect_central_differences(section_of_triangles(node_y, node_z, [&](double y, double z) {
    return y < 300.0 && z < 100.0 ? sea_resistivity : sloping(-0.5, sea_resistivity)(y, z);
  }));
}

// Between two trials of an inversion the other end of the mesh may become the more resistive one, and with it
// the host: each response belongs to the host of its own model.
TEST(Linear_response, Goes_by_the_end_that_is_more_resistive_now) {
  const std::vector<double> node_y =
      both_sides(joined(even_nodes(0, 100, 700), growing_nodes(700, 150, 1.7, 4e4)));
  const std::vector<double> node_z = growing_nodes(0, 20, 1.35, 2e4);
  constexpr double end = 900.0;  // m, where the blocks of the ends begin
  const auto section_with = [&](double log10_left, double log10_right) {
    return section_of_cells(node_y, node_z, [&](double y, double z) {
      return std::abs(y) < end ? ground(y, z) : std::pow(10.0, y < 0.0 ? log10_left : log10_right);
    });
  };
  constexpr double apart = 1e-3;  // decades between the ends
  constexpr double step = 1e-4;
  for (const End host : {End::left, End::right}) {
    const double left = host == End::left ? 2.3 + apart : 2.3;
    const double right = host == End::right ? 2.3 + apart : 2.3;
    const Section section = section_with(left, right);
    std::vector<std::size_t> of_triangle;  // 0 the left end, 1 the right one
    for (std::size_t cell = 0; cell < section.rows() * section.columns(); ++cell) {
      const std::size_t column = cell % section.columns();
      const double y = 0.5 * (node_y[column] + node_y[column + 1]);
      of_triangle.insert(of_triangle.end(), 4, std::abs(y) < end ? no_parameter : y < 0.0 ? 0 : 1);
    }
    const Linear found = linear_response(section, {of_triangle, 2});
    CheckedInput with_end = check_input(section, sites, frequencies);
    with_end.host = end_column(section, host);
    EXPECT_EQ(linear_response(section, with_end, {}, 1).values, found.values);
    with_end.host = end_column(section, host == End::left ? End::right : End::left);
    EXPECT_NE(linear_response(section, with_end, {}, 1).values, found.values);

    const std::size_t other = host == End::left ? 1 : 0;
    for (const std::size_t parameter : {std::size_t{0}, std::size_t{1}}) {
      const auto values_with = [&](double decades) {
        return linear_response(section_with(left + (parameter == 0 ? decades : 0.0),
                                            right + (parameter == 1 ? decades : 0.0)),
                               {})
            .values;
      };
      const std::vector<Complex> more = values_with(step);
      const std::vector<Complex> less = values_with(-step);
      double largest = 0.0;
      double worst = 0.0;
      for (std::size_t i = 0; i < more.size(); ++i) {
        if (!found.changes[i].empty()) {
          const Complex difference = (more[i] - less[i]) / (2.0 * step);
          largest = std::max(largest, std::abs(difference));
          worst = std::max(worst, std::abs(found.changes[i][parameter] - difference));
        }
      }
      // The host itself is held fixed.
      EXPECT_LT(worst, (parameter == other ? 1e-5 : 0.1) * largest) << parameter;
    }
  }
}

}  // namespace
