#include "tests/numerics/section/made_section.h"

#include <numeric>
#include <utility>

using numerics::section::Section;

std::vector<double> growing_nodes(double first, double step, double growth, double end) {
  std::vector<double> nodes = {first};
  while (nodes.back() < end) {
    nodes.push_back(nodes.back() + step);
    step *= growth;
  }
  return nodes;
}

std::vector<double> both_sides(const std::vector<double>& nodes) {
  std::vector<double> all;
  for (std::size_t i = nodes.size(); i-- > 1;) {
    all.push_back(-nodes[i]);
  }
  return joined(all, nodes);
}

std::vector<double> even_nodes(double first, double step, double last) {
  std::vector<double> nodes = {first};
  while (nodes.back() < last - 0.5 * step) {
    nodes.push_back(nodes.back() + step);
  }
  return nodes;
}

std::vector<double> joined(std::vector<double> head, const std::vector<double>& tail) {
  for (const double node : tail) {
    if (head.empty() || node > head.back()) {
      head.push_back(node);
    }
  }
  return head;
}

std::vector<double> widths_of(const std::vector<double>& nodes) {
  std::vector<double> widths(nodes.size());
  std::adjacent_difference(nodes.begin(), nodes.end(), widths.begin());
  widths.erase(widths.begin());
  return widths;
}

namespace {

Section make_section(const std::vector<double>& node_y, const std::vector<double>& node_z, double off_middle,
                     const std::function<double(double, double)>& resistivity) {
  Section section;
  section.left_edge = node_y.front();
  section.column_widths = widths_of(node_y);
  section.row_heights = widths_of(node_z);
  for (std::size_t row = 0; row < section.row_heights.size(); ++row) {
    for (std::size_t column = 0; column < section.column_widths.size(); ++column) {
      const double w = section.column_widths[column];
      const double h = section.row_heights[row];
      const double y = node_y[column] + 0.5 * w;
      const double z = node_z[row] + 0.5 * h;
      for (const auto& [dy, dz] :
           {std::pair(0.0, -h), std::pair(-w, 0.0), std::pair(0.0, h), std::pair(w, 0.0)}) {
        section.resistivities.push_back(resistivity(y + off_middle * dy, z + off_middle * dz));
      }
    }
  }
  return section;
}

}  // namespace

Section section_of_cells(const std::vector<double>& node_y, const std::vector<double>& node_z,
                         const std::function<double(double, double)>& resistivity) {
  return make_section(node_y, node_z, 0.0, resistivity);
}

Section section_of_triangles(const std::vector<double>& node_y, const std::vector<double>& node_z,
                             const std::function<double(double, double)>& resistivity) {
  return make_section(node_y, node_z, 1.0 / 3.0, resistivity);
}

Section mirrored(const Section& section) {
  using namespace numerics::section;
  Section result = section;
  const std::size_t columns = section.column_widths.size();
  result.left_edge =
      -std::accumulate(section.column_widths.begin(), section.column_widths.end(), section.left_edge);
  for (std::size_t column = 0; column < columns; ++column) {
    const std::size_t from = columns - 1 - column;
    result.column_widths[column] = section.column_widths[from];
    for (std::size_t row = 0; row < section.row_heights.size(); ++row) {
      double* cell = &result.resistivities[4 * (row * columns + column)];
      cell[top_triangle] = section.resistivity(from, row, top_triangle);
      cell[bottom_triangle] = section.resistivity(from, row, bottom_triangle);
      cell[left_triangle] = section.resistivity(from, row, right_triangle);
      cell[right_triangle] = section.resistivity(from, row, left_triangle);
    }
  }
  return result;
}
