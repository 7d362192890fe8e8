#include "occam/ground/topo_mask.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <span>
#include <stdexcept>
#include <utility>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "core/trap_errors.h"
#include "formats/occam/model_file.h"
#include "formats/occam/text_input.h"
#include "occam/occam_files.h"

namespace Module_occam {

namespace {

constexpr double rounding = 1e-6;  // m; ground closer to a node line than this is on it

using Triangles = std::array<bool, triangles>;

constexpr Triangles all_of_cell{true, true, true, true};

/// The triangles masked in the cell that the ground crosses. Air gets to a cell's sides through its top, and
/// to its bottom through both sides.
Triangles masked_in_crossed_cell(const MaskChoices& choices) {
  if (choices.style == MaskStyle::rectangular) {
    return all_of_cell;
  }
  switch (choices.free_triangle) {
    case Triangle::bottom:
      return {true, true, false, true};
    case Triangle::left:
      return {true, false, false, true};
    case Triangle::right:
      return {true, true, false, false};
    case Triangle::top:
      break;
  }
  return {};
}

void mask_cell(CodeLines& row, std::size_t column, const Triangles& which) {
  for (std::size_t k = 0; k < triangles; ++k) {
    if (which[k]) {
      row[k].at(column) = masked_code;
    }
  }
}

std::string place_of(const OccamModel& model, std::size_t column) {
  return "column " + std::to_string(column + 1) + " (" + plain_text(std::round(model.node_x[column])) +
         " to " + plain_text(std::round(model.node_x[column + 1])) + " m)";
}

/// The first node line at or below a depth above 0.
std::size_t node_line_at(const OccamModel& model, std::size_t column, double depth) {
  const auto rows = static_cast<std::size_t>(model.mesh.rows());
  const std::span lines = std::span(model.node_z).first(rows + 1);
  const auto line =
      static_cast<std::size_t>(std::ranges::lower_bound(lines, depth - rounding) - lines.begin());
  if (line >= rows) {
    throw std::runtime_error("the ground in " + place_of(model, column) + " lies " +
                             plain_text(std::round(depth)) +
                             " m below the upper edge of the mesh, whose last row begins at " +
                             plain_text(std::round(model.node_z[rows - 1])) + " m");
  }
  return line;
}

void mask_column(const OccamModel& model, std::size_t column, double depth, const MaskChoices& choices,
                 std::vector<CodeLines>& codes) {
  const std::size_t node_line = node_line_at(model, column, depth);
  const bool crosses = model.node_z[node_line] > depth + rounding;
  for (std::size_t row = 0; row < node_line; ++row) {
    const bool crossed = crosses && row + 1 == node_line;
    mask_cell(codes[row], column, crossed ? masked_in_crossed_cell(choices) : all_of_cell);
  }
}

int refuse(const std::string& message) {
  user_interface().show_message(message);
  return -1;
}

}  // namespace

std::vector<double> ground_depths(const OccamModel& model, const numerics::gridding::CubicSpline& ground,
                                  double datum_elevation) {
  const auto depth_between = [&](std::size_t left, std::size_t right) {
    const double middle = (model.node_x[left] + model.node_x[right]) / 2.0;
    return datum_elevation - numerics::gridding::cubval(ground, middle);
  };
  std::vector<double> depths;
  for (int place = 0; place < model.layers.front().layer_blocks(); ++place) {
    const BlockExtent& extent = model.layer_block(0, place).block_extent;
    depths.resize(static_cast<std::size_t>(extent.end_column),
                  depth_between(static_cast<std::size_t>(extent.left_column),
                                static_cast<std::size_t>(extent.end_column)));
  }
  while (depths.size() < model.mesh.node_widths.size()) {
    depths.push_back(depth_between(depths.size(), depths.size() + 1));
  }
  return depths;
}

std::vector<CodeLines> masked_codes(const OccamModel& model, const numerics::gridding::CubicSpline& ground,
                                    const MaskChoices& choices) {
  std::vector<CodeLines> codes = model.mesh.mesh_code;
  const std::vector<double> depths = ground_depths(model, ground, choices.datum_elevation);
  for (std::size_t column = 0; column < depths.size(); ++column) {
    if (!std::isfinite(depths[column])) {
      throw std::runtime_error("the ground in " + place_of(model, column) + " has no elevation");
    }
    if (depths[column] > rounding) {
      mask_column(model, column, depths[column], choices, codes);
    }
  }
  return codes;
}

std::int64_t free_triangles(const std::vector<CodeLines>& codes) {
  std::int64_t count = 0;
  for (const CodeLines& row : codes) {
    for (const std::string& line : row) {
      count += std::ranges::count(line, free_code);
    }
  }
  return count;
}

bool is_free(const OccamBlock& block, const std::vector<CodeLines>& codes) {
  const BlockExtent& extent = block.block_extent;
  const auto first = static_cast<std::size_t>(extent.left_column);
  const auto columns = static_cast<std::size_t>(extent.end_column - extent.left_column);
  for (int row = extent.top_row; row < extent.end_row; ++row) {
    for (const std::string& line : codes[static_cast<std::size_t>(row)]) {
      if (std::string_view(line).substr(first, columns).find(free_code) != std::string_view::npos) {
        return true;
      }
    }
  }
  return false;
}

int free_blocks(const OccamModel& model, const std::vector<CodeLines>& codes) {
  return static_cast<int>(
      std::ranges::count_if(model.blocks, [&](const OccamBlock& block) { return is_free(block, codes); }));
}

std::string mesh_listing(const OccamModel& model, const std::vector<CodeLines>& codes) {
  constexpr std::size_t row_width = 4;
  constexpr std::size_t depth_width = 12;
  constexpr std::array<std::string_view, triangles> names{"top", "left", "bottom", "right"};
  constexpr std::size_t name_width = 8;
  std::string text = pad_field("Row", row_width) + pad_field("from (m)", depth_width) +
                     pad_field("to (m)", depth_width) + pad_field("triangle", name_width + 1) + "  codes\n";
  for (std::size_t row = 0; row < codes.size(); ++row) {
    for (std::size_t k = 0; k < triangles; ++k) {
      text += k > 0 ? std::string(row_width + 2 * depth_width, ' ')
                    : pad_field(std::to_string(row + 1), row_width) +
                          pad_field(format_number(model.node_z[row], "0.0"), depth_width) +
                          pad_field(format_number(model.node_z[row + 1], "0.0"), depth_width);
      text += pad_field(names[k], name_width + 1) + "  " + codes[row][k] + "\n";
    }
  }
  return text;
}

int read_model_to_mask(const std::string& path, TopoMask& mask) {
  std::error_code ignored;
  if (trimmed(path).empty()) {
    return refuse("No model file has been specified");
  }
  if (!std::filesystem::exists(path, ignored)) {
    return refuse("The specified model file does not exist");
  }
  const std::filesystem::path file(path);
  const std::string improper = "The specified model file is not defined properly";
  try {
    mask.model = read_model_file(file.parent_path(), file.filename().string(), {});
  } catch (const EmptyLine&) {
    return refuse(improper);
  } catch (const std::exception& failure) {
    return refuse(improper + ". " + failure.what());
  }
  report_shared_node(mask.model);
  mask.model_path = path;
  mask.model_files = safe_files::FilesInUse({file, mask.model.mesh_file});
  mask.stations = run_stations(path);
  return 0;
}

int apply_topo_mask(TopoMask& mask) {
  if (mask.topo.empty()) {
    return refuse("No topo has been defined");
  }
  return trap_errors("An error occurred while applying the topo mask: ",
                     [&mask] { mask.masked = masked_codes(mask.model, mask.topo.curve, mask.choices); });
}

bool may_write_mesh(const std::string& path) {
  if (trap_errors("", [&path] { safe_files::refuse_input(path); }) != 0) {
    return false;
  }
  std::error_code ignored;
  return !std::filesystem::exists(path, ignored) ||
         user_interface().ask_yes_no("The specified file already exists. Overwrite?");
}

std::vector<std::string> wall_stations(const TopoMask& mask) {
  return wall_stations(mask.model, mask.masked,
                       mask.stations.names.empty() ? stations_at(mask.topo.points.station) : mask.stations);
}

}  // namespace Module_occam
