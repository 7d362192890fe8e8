// made_line.h: a line of sites over a section of blocks, as an inversion has them.
#pragma once
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "numerics/section/linear_response.h"

struct MadeLine {
  numerics::section::Section section;
  std::vector<std::size_t> parameter_of_triangle;
  std::size_t parameters = 0;
  std::size_t across = 0;           // blocks in a layer
  std::vector<double> sites;        // m
  std::vector<double> frequencies;  // Hz

  [[nodiscard]] std::vector<numerics::section::ModeRequest> requests() const {
    std::vector<numerics::section::ModeRequest> result;
    for (const auto mode : {numerics::section::Mode::te, numerics::section::Mode::tm}) {
      for (std::size_t frequency = 0; frequency < frequencies.size(); ++frequency) {
        result.push_back({mode, frequency, {}, false});
        for (std::size_t site = 0; site < sites.size(); ++site) {
          result.back().site_indices.push_back(site);
        }
      }
    }
    return result;
  }
};

struct LineSize {
  std::size_t columns = 82;
  std::size_t rows = 60;
  std::size_t layers = 41;  // of blocks; those of the rows below reach to the bottom
  std::size_t sites = 15;
  std::size_t frequencies = 19;
};

/// Blocks are two columns wide but for the outermost ones, which hold the columns that grow to the sides;
/// sites stand in the even columns between.
inline MadeLine made_line(const LineSize& size) {
  constexpr std::size_t growing = 9;  // columns at each side
  constexpr double width = 200.0;     // m
  MadeLine line;
  for (std::size_t column = 0; column < size.columns; ++column) {
    const std::size_t outwards = std::min(column, size.columns - 1 - column);
    const auto steps = static_cast<double>(outwards < growing ? growing - outwards : 0);
    line.section.column_widths.push_back(width * std::pow(1.9, steps));
  }
  for (std::size_t column = 0; column < growing; ++column) {
    line.section.left_edge -= line.section.column_widths[column];
  }
  line.across = (size.columns - 2 * growing) / 2 + 2;
  line.parameters = line.across * size.layers;
  for (std::size_t row = 0; row < size.rows; ++row) {
    line.section.row_heights.push_back(20.0 * std::pow(1.11, static_cast<double>(row)));
    for (std::size_t column = 0; column < size.columns; ++column) {
      const std::size_t place = column < growing                   ? 0
                                : column >= size.columns - growing ? line.across - 1
                                                                   : (column - growing) / 2 + 1;
      const std::size_t layer = std::min(row, size.layers - 1);
      const double wave = std::sin(0.7 * static_cast<double>(place) + 0.4 * static_cast<double>(layer));
      line.section.resistivities.insert(line.section.resistivities.end(), 4,
                                        std::pow(10.0, 2.0 + 0.5 * wave));
      const std::size_t parameter = layer * line.across + place;
      line.section.codes.insert(line.section.codes.end(), 4,
                                static_cast<numerics::section::Code>(1 + parameter));
      line.parameter_of_triangle.insert(line.parameter_of_triangle.end(), 4, parameter);
    }
  }
  const double length = width * static_cast<double>(size.columns - 2 * growing);
  for (std::size_t site = 0; site < size.sites; ++site) {
    line.sites.push_back(length * (static_cast<double>(site) + 0.5) / static_cast<double>(size.sites));
  }
  for (std::size_t frequency = 0; frequency < size.frequencies; ++frequency) {
    const double share = static_cast<double>(frequency) / static_cast<double>(size.frequencies);
    line.frequencies.push_back(100.0 * std::pow(10.0, -4.0 * share));
  }
  return line;
}
