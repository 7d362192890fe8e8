#include "occam/results/grid_export.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

#include "core/absent_value.h"
#include "core/finished_work.h"
#include "core/number_text.h"
#include "core/scope_guard.h"
#include "core/text_fields.h"
#include "core/trap_errors.h"
#include "formats/geosoft/geosoft_grid.h"
#include "occam/results/response_views.h"
#include "platform/files/folder_access.h"
#include "platform/files/safe_files.h"

namespace Module_occam {

namespace {

constexpr std::size_t max_grid_nodes = 4'000'000;  // 16 MB a file, some seconds of gridding
constexpr std::string_view line_end = "\r\n";
constexpr const char* writing_grids = "Writing the grids";

double node(const std::vector<double>& nodes, int index) { return nodes[static_cast<std::size_t>(index)]; }

/// A right-aligned number; a long one is never cut, unlike in a field of fixed width.
void add_number(std::string& text, double value, std::string_view picture, std::size_t width) {
  const std::string number = format_number(value, picture);
  text.append(width - std::min(width, number.size()), ' ').append(number);
}

GridBlock grid_block(const OccamModel& model, const OccamBlock& block, double value) {
  const BlockExtent& extent = block.block_extent;
  GridBlock result{node(model.node_x, extent.left_column), node(model.node_x, extent.end_column),
                   node(model.node_z, extent.top_row), node(model.node_z, extent.end_row), value};
  const auto width = static_cast<double>(block.block_width);
  if (extent.left_column == 0) {
    result.left = std::max(result.left, result.right - width);
  } else if (extent.end_column == model.mesh.columns()) {
    result.right = std::min(result.right, result.left + width);
  }
  result.bottom = std::min(result.bottom, result.top + static_cast<double>(block.block_height));
  return result;
}

/// The nodes of one axis that lie in [from, to): the first one and the one after the last.
std::pair<std::size_t, std::size_t> nodes_within(double from, double to, double first, double cell,
                                                 std::size_t count) {
  const auto index = [&](double place) {
    return static_cast<std::size_t>(
        std::clamp(std::ceil((place - first) / cell), 0.0, static_cast<double>(count)));
  };
  return {index(from), index(to)};
}

/// The smoothest surface through the middles of the blocks, blank where the plain grid is.
/// @return nothing if the user stopped it
std::optional<numerics::gridding::RegularGrid> smooth_grid(std::span<const GridBlock> blocks,
                                                           const numerics::gridding::RegularGrid& plain) {
  std::vector<numerics::gridding::ScatteredPoint> points;
  for (const GridBlock& block : blocks) {
    points.push_back({block.x(), block.elevation(), block.value});
  }
  numerics::gridding::GriddingOptions options;
  options.progress = [](double share) {
    constexpr double from = 30.0;  // percent of the whole work
    constexpr double to = 90.0;
    user_interface().show_progress(writing_grids, static_cast<int>(from + (to - from) * share));
    user_interface().process_events();
    return !user_interface().stop_requested();
  };
  auto surface = numerics::gridding::minimum_curvature(points, plain.frame, options);
  if (!surface) {
    return {};
  }
  for (std::size_t i = 0; i < plain.values.size(); ++i) {
    if (is_absent(plain.values[i])) {
      surface->grid.values[i] = plain.values[i];
    }
  }
  return std::move(surface->grid);
}

void report_cell(double wanted, double cell) {
  if (cell > wanted) {
    user_interface().show_message("Grids with nodes every " + plain_text(static_cast<float>(wanted)) +
                                  " m would be too large; their nodes are " +
                                  plain_text(static_cast<float>(cell)) + " m apart");
  }
}

/// The next larger number of three digits.
double three_digits(double value) {
  const double scale = std::pow(10.0, 2.0 - std::floor(std::log10(value)));
  return std::ceil(value * scale) / scale;
}

/// @return false if the user stopped it
bool write_grid_files(const RunView& view, std::span<const GridBlock> blocks) {
  const auto file = [&view](const char* ending) {
    return view.results().derived_file(view.current_iteration(), ending);
  };
  const auto progress = [](int percent) {
    user_interface().show_progress(writing_grids, percent);
    user_interface().process_events();
    return !user_interface().stop_requested();
  };
  const double cell = grid_cell(view.results().model.mesh);
  const numerics::gridding::GridFrame frame = grid_frame(blocks, cell);
  report_cell(cell, frame.cell);
  if (!progress(0)) {
    return false;
  }
  make_folder(view.results().output_folder);
  const numerics::gridding::RegularGrid plain = block_grid(blocks, frame);
  safe_files::write_into_place(file(".xyz"), point_table(blocks));
  formats::geosoft::write_geosoft_grid(file("_logres.grd"), plain);
  formats::geosoft::write_geosoft_grid(file("_res.grd"), antilog(plain));
  static_cast<void>(progress(30));
  auto smooth = smooth_grid(blocks, plain);
  if (!smooth) {
    return false;
  }
  static_cast<void>(progress(90));
  formats::geosoft::write_geosoft_grid(file("_LogRes_smth.grd"), *smooth);
  formats::geosoft::write_geosoft_grid(file("_res_smth.grd"), antilog(std::move(*smooth)));
  return true;
}

/// The resistivity of a place, or in its absence the one that is given itself, as a logarithm.
OccamResponse::Row resistivity_row(const OccamResponse& response, const Mode& mode, int site, int frequency) {
  const OccamResponse::Row row = response.row(mode.resistivity, site, frequency);
  return row[0] == no_data ? drawn_datum(response, mode.linear_resistivity, site, frequency).values : row;
}

/// @return 0, or -1 after a message
int write_fit(RunView& view) {
  const auto fit_file = [&view](const char* ending) {
    return view.results().derived_file(view.current_iteration(), ending);
  };
  const auto tm_fit = fit_file("_data_fit.dat");
  const auto te_fit = fit_file("_data_fit_TE.dat");
  if (!view.response_ready() && view.load_response() != 0) {
    return -1;
  }
  const OccamResponse& response = view.response();
  safe_files::write_into_place(tm_fit, data_fit_table(response, tm_mode));
  if (response.has(te_mode.resistivity) || response.has(te_mode.linear_resistivity) ||
      response.has(te_mode.phase)) {
    safe_files::write_into_place(te_fit, data_fit_table(response, te_mode));
  } else {
    std::filesystem::remove(te_fit);  // of an earlier run
  }
  return 0;
}

}  // namespace

std::vector<GridBlock> grid_blocks(const OccamModel& model, std::span<const double> parameters) {
  if (parameters.size() < static_cast<std::size_t>(model.num_free_params)) {
    throw std::runtime_error("the iteration has " + std::to_string(parameters.size()) +
                             " parameters, the model " + std::to_string(model.num_free_params));
  }
  if (model.layers.empty()) {
    return {};
  }
  const OccamBlock& first = model.layer_block(0, 0);
  const OccamBlock& last = model.layer_block(0, model.layers.front().layer_blocks() - 1);
  const double left = grid_block(model, first, 0.0).left;
  const double right = grid_block(model, last, 0.0).right;
  std::vector<GridBlock> blocks;
  for (const OccamBlock& block : model.blocks) {
    if (block.parameter_number < 1) {
      continue;
    }
    const double value = parameters[static_cast<std::size_t>(block.parameter_number) - 1];
    GridBlock counted = grid_block(model, block, value);
    counted.left = std::max(counted.left, left);
    counted.right = std::min(counted.right, right);
    if (std::abs(value) <= max_decades && counted.left < counted.right) {
      blocks.push_back(counted);
    }
  }
  return blocks;
}

double grid_cell(const OccamMesh& mesh) {
  constexpr double enough = 2.5;  // m
  double dx = mesh.min_node_width() / 2.0;
  const double dz = mesh.min_node_height() / 2.0;
  while (dz + enough < dx) {
    dx /= 2.0;
  }
  return dx;
}

numerics::gridding::GridFrame grid_frame(std::span<const GridBlock> blocks, double cell) {
  if (blocks.empty()) {
    throw std::runtime_error("the model has no blocks to make a grid of");
  }
  double left = std::numeric_limits<double>::infinity();
  double right = -left;
  double top = left;
  double bottom = -left;
  for (const GridBlock& block : blocks) {
    left = std::min(left, block.left);
    right = std::max(right, block.right);
    top = std::min(top, block.top);
    bottom = std::max(bottom, block.bottom);
  }
  constexpr double part_of_cell = 1e-6;  // edges are sums of many widths
  const auto count = [](double length, double size) {
    return std::max(std::ceil(length / size - part_of_cell), 1.0);
  };
  const double width = right - left;
  const double height = bottom - top;
  constexpr double most = static_cast<double>(max_grid_nodes);
  while (!(count(width, cell) * count(height, cell) <= most)) {
    // Whole cells and grids of a single row take more than the area says.
    constexpr double step = 1.001;
    cell =
        three_digits(std::max({step * cell, std::sqrt(width * height / most), width / most, height / most}));
  }
  numerics::gridding::GridFrame frame{.first_x = left + 0.5 * cell,
                                      .cell = cell,
                                      .columns = static_cast<std::size_t>(count(width, cell)),
                                      .rows = static_cast<std::size_t>(count(height, cell))};
  frame.first_y = -top - (static_cast<double>(frame.rows) - 0.5) * cell;
  return frame;
}

numerics::gridding::RegularGrid block_grid(std::span<const GridBlock> blocks,
                                           const numerics::gridding::GridFrame& frame) {
  numerics::gridding::RegularGrid grid{frame,
                                       std::vector<double>(frame.columns * frame.rows, double{no_data})};
  for (const GridBlock& block : blocks) {
    const auto [first_column, end_column] =
        nodes_within(block.left, block.right, frame.first_x, frame.cell, frame.columns);
    const auto [first_row, end_row] =
        nodes_within(-block.bottom, -block.top, frame.first_y, frame.cell, frame.rows);
    for (std::size_t row = first_row; row < end_row; ++row) {
      const auto start = grid.values.begin() + static_cast<std::ptrdiff_t>(row * frame.columns);
      std::fill(start + static_cast<std::ptrdiff_t>(first_column),
                start + static_cast<std::ptrdiff_t>(end_column), block.value);
    }
  }
  return grid;
}

numerics::gridding::RegularGrid antilog(numerics::gridding::RegularGrid grid) {
  for (double& value : grid.values) {
    value = is_absent(value) ? value : std::pow(10.0, value);
  }
  return grid;
}

std::string point_table(std::span<const GridBlock> blocks) {
  constexpr std::size_t place_width = 10;
  constexpr std::size_t value_width = 12;
  std::string text = "         X,         Z,         Res,      LogRes";
  text += line_end;
  for (const GridBlock& block : blocks) {
    add_number(text, block.x(), "0.00", place_width);
    text += ',';
    add_number(text, block.elevation(), "0.00", place_width);
    text += ',';
    add_number(text, std::pow(10.0, block.value), "0.00000E+00", value_width);
    text += ',';
    add_number(text, block.value, "0.00000E+00", value_width);
    text += line_end;
  }
  return text;
}

std::string data_fit_table(const OccamResponse& response, const Mode& mode) {
  constexpr std::size_t width = 12;
  std::string text =
      "         X,        Freq,         Res,      ResMod,      ResErr,        ResZ,         Phz,      PhzMod,"
      "      PhzErr,        PhzZ";
  text += line_end;
  for (int site = 1; site <= response.resp_sites(); ++site) {
    for (int frequency = 1; frequency <= response.resp_frequency_count(); ++frequency) {
      text +=
          pad_field(format_number(response.resp_offsets[static_cast<std::size_t>(site) - 1], "0.0"), width);
      text += ',';
      text += pad_field(
          format_number(response.resp_frequencies[static_cast<std::size_t>(frequency) - 1], "0.00000E+00"),
          width);
      for (const OccamResponse::Row& row :
           {resistivity_row(response, mode, site, frequency), response.row(mode.phase, site, frequency)}) {
        for (const float value : row) {
          text += ',';
          text += value == no_data ? "           *" : pad_field(format_number(value, "0.0000"), width);
        }
      }
      text += line_end;
    }
  }
  return text;
}

int write_grids(RunView& view) {
  if (view.load_iteration() != 0) {
    return -1;
  }
  return trap_errors("An error occurred while writing the grids: ", [&] {
    const BusyPointer busy;
    const ScopeGuard end_progress([] { user_interface().show_progress("", -1); });
    if (!write_grid_files(view, grid_blocks(view.results().model, view.parameters())) ||
        write_fit(view) != 0) {
      return -1;
    }
    const std::string folder = view.results().output_folder.string();
    user_interface().show_message("Grid file has been written. The files are in " + folder);
    Module_Brenlox::tell_finished("The grids are written to " + folder, folder);
    return 0;
  });
}

}  // namespace Module_occam
