// brenlox_batch mask-topo: masks the mesh of a two-dimensional inversion above the ground.
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>

#include <nlohmann/json.hpp>

#include "batch/command.h"
#include "core/number_text.h"
#include "core/user_interface.h"
#include "occam/ground/masked_run.h"
#include "occam/ground/topo_mask.h"

namespace Batch {
namespace {

using Module_occam::MaskStyle;
using Module_occam::TopoMask;
using Module_occam::Triangle;

struct MaskTopoOptions {
  std::string model;
  Module_occam::LocationEntries locations;
  std::string output;
  MaskStyle style = MaskStyle::rectangular;
  Triangle free_triangle = Triangle::bottom;
  std::optional<double> datum_elevation;
  bool json = false;
};

/// The path of a file beside the mesh; empty for none.
std::string beside_mesh(const MaskTopoOptions& options, const std::string& name) {
  return name.empty() ? name : (std::filesystem::path(options.output).parent_path() / name).string();
}

void print_summary(const MaskTopoOptions& options, const TopoMask& mask, const Module_occam::MaskedRun& run) {
  const Module_occam::OccamModel& model = mask.model;
  const std::int64_t as_read = Module_occam::free_triangles(model.mesh.mesh_code);
  const std::int64_t masked = Module_occam::free_triangles(mask.masked);
  const int blocks = free_blocks(model, mask.masked);
  const std::string model_path = beside_mesh(options, run.model_file);
  const std::string start_path = beside_mesh(options, run.start_file);
  if (options.json) {
    const auto or_null = [](const std::string& path) {
      return path.empty() ? nlohmann::ordered_json() : nlohmann::ordered_json(path);
    };
    const nlohmann::ordered_json json{{"points", mask.topo.points.station.size()},
                                      {"datum_elevation", mask.choices.datum_elevation},
                                      {"free_triangles_as_read", as_read},
                                      {"free_triangles", masked},
                                      {"parameters_as_read", model.num_free_params},
                                      {"parameters", blocks},
                                      {"stations_on_a_wall", wall_stations(mask)},
                                      {"mesh", options.output},
                                      {"model", or_null(model_path)},
                                      {"start_file", or_null(start_path)}};
    // Paths may hold bytes that are no UTF-8.
    std::cout << json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
    return;
  }
  std::cout << mask.topo.points.station.size() << " points, upper edge of the mesh at "
            << plain_text(mask.choices.datum_elevation) << " m\n"
            << "The mesh is written to " << options.output << '\n';
  if (run.start_file.empty()) {
    std::cout << "No model and no start file: the mesh isn't beside a start file of the model\n";
  } else {
    std::cout << "The model is written to " << model_path << '\n'
              << "The start file is written to " << start_path << '\n';
  }
  std::cout << masked << " free triangles of " << as_read << ", " << blocks << " parameters of "
            << model.num_free_params << "; the others are air\n";
}

int run_mask_topo(MaskTopoOptions& options) {
  options.output = path_from_here(options.output);
  TopoMask mask;
  if (load_locations(options.locations, mask.topo) != 0 || read_model_to_mask(options.model, mask) != 0) {
    return status_failed;
  }
  if (const std::string left_out = left_out_text(mask.topo.left_out); !left_out.empty()) {
    user_interface().show_message(left_out);
  }
  mask.choices = {options.style, options.free_triangle,
                  options.datum_elevation.value_or(mask.topo.highest_elevation())};
  Module_occam::MaskedRun run;
  if (apply_topo_mask(mask) != 0 || !Module_occam::may_write_mesh(options.output) ||
      write_masked_mesh(options.output, mask, run) != 0) {
    return status_failed;
  }
  print_summary(options, mask, run);
  return status_done;
}

}  // namespace

Command add_mask_topo_command(Program& program) {
  const auto options = std::make_shared<MaskTopoOptions>();
  Parser parser =
      program.add_command("mask-topo", "Masks the mesh of a two-dimensional inversion above the ground");
  Module_occam::LocationEntries& locations = options->locations;
  parser.add_option("MODEL", options->model, "model file of the inversion; it names the mesh").required();
  parser.add_option("TOPO", locations.file, "text file of stations and elevations, m").required();
  parser.add_option("--output", options->output, "mesh file to write").required();
  const auto add_entry = [&parser](const char* name, std::string& text, const char* help) {
    parser.add_option(name, text, help).shows_default();
  };
  add_entry("--first-line", locations.first_line, "number of the first data line, comments counted");
  add_entry("--line-step", locations.line_step, "step between lines of data");
  add_entry("--station-column", locations.station_column, "column of the station, m along the line");
  add_entry("--elevation-column", locations.elevation_column, "column of the elevation, m");
  parser.add_choice<MaskStyle>(
      "--style", options->style,
      {{"rectangular", MaskStyle::rectangular}, {"triangular", MaskStyle::triangular}},
      "whole cells, or triangles where the ground crosses a cell");
  parser.add_choice<Triangle>("--free-triangle", options->free_triangle,
                              {{"right", Triangle::right},
                               {"bottom", Triangle::bottom},
                               {"left", Triangle::left},
                               {"top", Triangle::top}},
                              "of a crossed cell, with --style triangular");
  parser.add_option("--datum", options->datum_elevation,
                    "elevation of the mesh's upper edge, m; else that of the highest point");
  add_overwrite_flag(parser, "replace a file that exists");
  parser.add_flag("--json", options->json, "report the result as JSON");
  return {parser, [options] { return run_mask_topo(*options); }};
}

}  // namespace Batch
