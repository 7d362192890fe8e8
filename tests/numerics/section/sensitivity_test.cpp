// sensitivity_test.cpp: derivatives of the response against central differences.
#include "numerics/section/sensitivity.h"

#include <algorithm>
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

void expect_central_differences(const Section& section) {
  const Blocks blocks = blocks_of(section);
  const Sensitivity found =
      compute_sensitivity(section, blocks.index, blocks.count, sites, frequencies).value();
  const auto largest = [](const std::vector<double>& values) {
    return std::abs(*std::max_element(values.begin(), values.end(),
                                      [](double a, double b) { return std::abs(a) < std::abs(b); }));
  };
  constexpr double step = 1e-4;  // decades
  const auto response_with = [&](std::size_t block, double decades) {
    Section changed = section;
    for (std::size_t i = 0; i < blocks.index.size(); ++i) {
      if (blocks.index[i] == block) {
        changed.resistivities[i] *= std::pow(10.0, decades);
      }
    }
    return compute_response(changed, sites, frequencies).value();
  };
  double worst = 0.0;
  constexpr std::size_t sample = 3;  // each third block; the others are much like their neighbours
  for (std::size_t block = 0; block < blocks.count; block += sample) {
    const Response more = response_with(block, step);
    const Response less = response_with(block, -step);
    const auto compare = [&](const std::vector<double>& derivative, const std::vector<double>& high,
                             const std::vector<double>& low) {
      for (std::size_t i = 0; i < high.size(); ++i) {
        const double difference = (high[i] - low[i]) / (2.0 * step);
        worst = std::max(worst,
                         std::abs(derivative[i * blocks.count + block] - difference) / largest(derivative));
      }
    };
    compare(found.te.log10_resistivity, more.te.log10_resistivity, less.te.log10_resistivity);
    compare(found.te.phase, more.te.phase, less.te.phase);
    compare(found.tm.log10_resistivity, more.tm.log10_resistivity, less.tm.log10_resistivity);
    compare(found.tm.phase, more.tm.phase, less.tm.phase);
  }
  EXPECT_LT(worst, 1e-5);
}

double ground(double y, double z) {
  if (z > 150.0 && z < 800.0 && y > -600.0 && y < 0.0) {
    return 5.0;
  }
  return z > 350.0 && y > 200.0 && y < 500.0 ? 900.0 : 100.0;
}

TEST(Sensitivity, Is_the_derivative_of_the_response) {
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

}  // namespace
