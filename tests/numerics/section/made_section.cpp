#include "tests/numerics/section/made_section.h"

#include <map>
#include <numeric>
#include <utility>

using namespace numerics::section;

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
  std::map<double, Code> code_of = {{air_resistivity, air_code}, {sea_resistivity, sea_code}};
  Code next = 1;
  for (std::size_t row = 0; row < section.row_heights.size(); ++row) {
    for (std::size_t column = 0; column < section.column_widths.size(); ++column) {
      const double w = section.column_widths[column];
      const double h = section.row_heights[row];
      const double y = node_y[column] + 0.5 * w;
      const double z = node_z[row] + 0.5 * h;
      for (const auto& [dy, dz] :
           {std::pair(0.0, -h), std::pair(-w, 0.0), std::pair(0.0, h), std::pair(w, 0.0)}) {
        const double value = resistivity(y + off_middle * dy, z + off_middle * dz);
        section.resistivities.push_back(value);
        const auto [code, is_new] = code_of.try_emplace(value, next);
        next += is_new ? 1 : 0;
        section.codes.push_back(code->second);
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

Section drawn_section(const std::vector<double>& widths, const std::vector<double>& heights,
                      const std::vector<std::vector<std::string>>& rows) {
  Section section;
  section.column_widths = widths;
  section.row_heights = heights;
  for (const std::vector<std::string>& row : rows) {
    for (const std::string& cell : row) {
      for (const char triangle : cell) {
        section.codes.push_back(triangle == '.' ? air_code : triangle == '~' ? sea_code : triangle - '0');
        section.resistivities.push_back(triangle == '.'   ? air_resistivity
                                        : triangle == '~' ? sea_resistivity
                                                          : 10.0 * section.codes.back());
      }
    }
  }
  check_section(section);
  return section;
}

Section mirrored(const Section& section) {
  Section result = section;
  const std::size_t columns = section.column_widths.size();
  result.left_edge =
      -std::accumulate(section.column_widths.begin(), section.column_widths.end(), section.left_edge);
  for (std::size_t column = 0; column < columns; ++column) {
    const std::size_t from = columns - 1 - column;
    result.column_widths[column] = section.column_widths[from];
    for (std::size_t row = 0; row < section.row_heights.size(); ++row) {
      for (const auto& [to, source] :
           {std::pair(top_triangle, top_triangle), std::pair(bottom_triangle, bottom_triangle),
            std::pair(left_triangle, right_triangle), std::pair(right_triangle, left_triangle)}) {
        result.resistivities[result.index(column, row, to)] = section.resistivity(from, row, source);
        result.codes[result.index(column, row, to)] = section.code(from, row, source);
      }
    }
  }
  return result;
}
