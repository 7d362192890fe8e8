// brenlox_batch occam-info: what a run directory of the two-dimensional inversion holds.
#include <algorithm>
#include <cmath>
#include <iomanip>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "batch/command.h"
#include "batch/run_option.h"
#include "core/number_text.h"
#include "occam/results/run_summary.h"

namespace Batch {
namespace {

using Module_occam::OccamIteration;
using Module_occam::OccamModel;
using Module_occam::RunSummary;

/// Position of a site's node, m; nothing for a site beyond the mesh.
nlohmann::ordered_json node_position(const OccamModel& model, std::size_t site) {
  const std::int32_t node = model.site_node[site];
  if (node == Module_occam::no_site_node) {
    return nullptr;
  }
  constexpr double millimetre = 1000.0;  // the rest is rounding of the sums of cell widths
  return std::round(model.node_x[static_cast<std::size_t>(node)] * millimetre) / millimetre;
}

void print_json(const RunSummary& run) {
  const OccamModel& model = run.model;
  nlohmann::ordered_json json;
  json["model_file"] = run.names.model_file;
  json["data_file"] = run.names.data_file;
  json["title"] = run.data.title;
  json["sites"] = nlohmann::ordered_json::array();
  for (std::size_t site = 0; site < run.data.site_names.size(); ++site) {
    json["sites"].push_back({{"name", run.data.site_names[site]},
                             {"offset", decimal_of_single(run.data.site_offsets[site])},
                             {"node", node_position(model, site)}});
  }
  json["node_columns"] = model.mesh.node_columns();
  json["node_rows"] = model.mesh.node_rows();
  json["binding_offset"] = model.binding_offset;
  json["layers"] = model.num_layers();
  json["blocks"] = model.num_blocks();
  json["parameters"] = model.num_free_params;
  json["iterations"] = nlohmann::ordered_json::array();
  for (const OccamIteration& iteration : run.iterations) {
    json["iterations"].push_back({{"iteration", iteration.number},
                                  {"misfit", iteration.TLAST},
                                  {"roughness", iteration.RLAST},
                                  {"multiplier", iteration.PMU},
                                  {"parameters", iteration.parameter_count}});
  }
  // Names may hold bytes that are no UTF-8.
  std::cout << json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
}

using TableRow = std::vector<std::string>;

/// Each column is as wide as its longest text; the first one is aligned left, the others right.
void print_rows(const std::vector<TableRow>& rows) {
  constexpr std::size_t gap = 2;
  constexpr std::size_t least_width = 12;
  std::vector<std::size_t> widths(rows.front().size(), least_width);
  for (const TableRow& row : rows) {
    for (std::size_t column = 0; column < row.size(); ++column) {
      widths[column] = std::max(widths[column], row[column].size());
    }
  }
  std::cout << '\n';
  for (const TableRow& row : rows) {
    std::cout << row.front() << std::string(widths.front() - row.front().size(), ' ');
    for (std::size_t column = 1; column < row.size(); ++column) {
      std::cout << std::string(gap + widths[column] - row[column].size(), ' ') << row[column];
    }
    std::cout << '\n';
  }
}

void print_table(const RunSummary& run) {
  constexpr int name_width = 20;
  const OccamModel& model = run.model;
  const auto line = [](const char* name, const std::string& value) {
    std::cout << std::left << std::setw(name_width) << name << value << '\n';
  };
  line("Title", run.data.title);
  line("Model file", run.names.model_file);
  line("Data file", run.names.data_file);
  line("Node columns", plain_text(model.mesh.node_columns()));
  line("Node rows", plain_text(model.mesh.node_rows()));
  line("Layers", plain_text(model.num_layers()));
  line("Blocks", plain_text(model.num_blocks()));
  line("Parameters", plain_text(model.num_free_params));
  std::vector<TableRow> sites{{"Site", "Offset (m)"}};
  for (std::size_t site = 0; site < run.data.site_names.size(); ++site) {
    sites.push_back({run.data.site_names[site], format_number(run.data.site_offsets[site], "0.0")});
  }
  print_rows(sites);
  std::vector<TableRow> iterations{{"Iteration", "Misfit", "Roughness", "Multiplier"}};
  for (const OccamIteration& iteration : run.iterations) {
    iterations.push_back({plain_text(iteration.number), format_number(iteration.TLAST, "0.0000"),
                          format_number(iteration.RLAST, "0.0000"), format_number(iteration.PMU, "0.0000")});
  }
  print_rows(iterations);
}

struct OccamInfoOptions {
  std::string directory;
  std::string control_file;
  bool json = false;
};

int run_occam_info(const OccamInfoOptions& options) {
  RunSummary run;
  if (Module_occam::read_run(options.directory, options.control_file, run) != 0) {
    return status_failed;
  }
  options.json ? print_json(run) : print_table(run);
  return status_done;
}

}  // namespace

Command add_occam_info_command(Program& program) {
  const auto options = std::make_shared<OccamInfoOptions>();
  Parser parser =
      program.add_command("occam-info", "Shows what a run directory of a two-dimensional inversion holds");
  parser.add_option("DIR", options->directory, "the run directory").required();
  add_control_option(parser, options->control_file);
  parser.add_flag("--json", options->json,
                  "as JSON: sites with offsets and nodes, mesh, layers, blocks, parameters, iterations");
  return {parser, [options] { return run_occam_info(*options); }};
}

}  // namespace Batch
