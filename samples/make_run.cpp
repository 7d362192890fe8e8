// brenlox_make_run: iterations for the run directory of a line of the sample survey, to look at if the
// inversion hasn't been run.
//
// Nothing is inverted: the models go in steps from the start model to the ground that the survey was
// computed over. Their misfits are true ones, of the responses of these models.
#include <algorithm>
#include <cmath>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <CLI/CLI.hpp>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "occam/occam_files.h"
#include "occam/results/model_response.h"
#include "samples/sample_survey.h"

namespace {

namespace fs = std::filesystem;
using namespace Module_occam;

constexpr int iterations = 4;

/// The log10 resistivity that has the conductance of the ground between two depths.
double ground_resistivity(const Module_samples::SampleLine& line, double station, double top, double bottom) {
  const double last_station =
      Module_samples::first_station + Module_samples::station_step * (Module_samples::station_count - 1);
  double conductance = 0.0;  // S
  double layer_top = 0.0;
  const double within = std::clamp(station, Module_samples::first_station, last_station);
  for (const numerics::impedance::Layer& layer : Module_samples::ground_below(line, within)) {
    const double layer_bottom = layer.thickness > 0.0 ? layer_top + layer.thickness : bottom;
    conductance +=
        std::max(std::min(layer_bottom, bottom) - std::max(layer_top, top), 0.0) / layer.resistivity;
    layer_top = layer_bottom;
  }
  return std::log10((bottom - top) / conductance);
}

/// The ground in the free blocks of a model.
std::vector<double> ground_in_blocks(const OccamModel& model, const Module_samples::SampleLine& line) {
  std::vector<double> parameters(static_cast<std::size_t>(model.num_free_params));
  for (const OccamBlock& block : model.blocks) {
    if (block.parameter_number > 0) {
      const BlockExtent& extent = block.block_extent;
      const auto node = [](const std::vector<double>& nodes, int index) {
        return nodes[static_cast<std::size_t>(index)];
      };
      const double middle =
          (node(model.node_x, extent.left_column) + node(model.node_x, extent.end_column)) / 2.0;
      parameters[static_cast<std::size_t>(block.parameter_number) - 1] = ground_resistivity(
          line, middle, node(model.node_z, extent.top_row), node(model.node_z, extent.end_row));
    }
  }
  return parameters;
}

/// Root mean square of the misfits in units of the errors.
double misfit(const OccamModel& model, const std::vector<double>& parameters, const ObservedData& data) {
  const auto modelled = model_data(model, parameters, data, [](double) { return true; });
  double sum = 0.0;
  for (std::size_t i = 0; i < modelled->rows.size(); ++i) {
    sum += std::pow((modelled->rows[i].datum - modelled->modelled[i]) / modelled->rows[i].error, 2.0);
  }
  return std::sqrt(sum / static_cast<double>(std::max<std::size_t>(modelled->rows.size(), 1)));
}

/// Sum of the squared differences between a block and the next one of its layer.
double roughness(const OccamModel& model, const std::vector<double>& parameters) {
  double sum = 0.0;
  for (std::size_t i = 1; i < model.blocks.size(); ++i) {
    const OccamBlock& left = model.blocks[i - 1];
    const OccamBlock& right = model.blocks[i];
    if (left.layer == right.layer && left.parameter_number > 0 && right.parameter_number > 0) {
      sum += std::pow(parameters[static_cast<std::size_t>(right.parameter_number) - 1] -
                          parameters[static_cast<std::size_t>(left.parameter_number) - 1],
                      2.0);
    }
  }
  return sum;
}

void write_file(const fs::path& path, const std::string& text) {
  std::ofstream stream(path, std::ios::binary);
  stream << text;
  stream.close();
  if (!stream) {
    throw std::runtime_error(path.string() + " can't be written");
  }
}

struct Step {
  int number = 0;
  double misfit = 0.0;
  double roughness = 0.0;
};

/// The start file's text with the numbers and parameters of an iteration.
std::string iteration_text(const fs::path& start_file, const Step& step,
                           const std::vector<double>& parameters) {
  constexpr std::string_view line_end = "\r\n";
  const std::pair<std::string_view, std::string> changed[] = {
      {"DESCRIPTION:      ", "Made from the ground of the survey, not inverted"},
      {"ITERATION:        ", std::to_string(step.number)},
      {"RLAST:            ", format_number(step.roughness, "0.0000")},
      {"TLAST:            ", format_number(step.misfit, "0.0000")}};
  std::string text;
  std::ifstream start(start_file);
  bool in_head = true;
  for (std::string line; in_head && std::getline(start, line);) {
    line = std::string(trimmed(line));
    for (const auto& [label, value] : changed) {
      if (line.starts_with(trimmed(label))) {
        line = std::string(label) + value;
      }
    }
    text.append(line).append(line_end);
    in_head = !line.starts_with("NO. PARMS:");
  }
  constexpr std::size_t on_a_line = 4;
  constexpr std::size_t width = 15;
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    text += pad_field(format_number(parameters[i], "0.0000"), width);
    if (i % on_a_line == on_a_line - 1 || i + 1 == parameters.size()) {
      text += line_end;
    }
  }
  return text;
}

std::string elevations() {
  std::string text = "! station (m), elevation (m)\n";
  for (int place = 0; place < Module_samples::station_count; ++place) {
    const double station = Module_samples::first_station + Module_samples::station_step * place;
    text += plain_text(station) + "  " + format_number(Module_samples::elevation_at(station), "0.0") + "\n";
  }
  return text;
}

const Module_samples::SampleLine& find_line(const std::string& name) {
  const auto* const line =
      std::ranges::find(Module_samples::sample_lines, name, &Module_samples::SampleLine::name);
  if (line == Module_samples::sample_lines.end()) {
    throw std::runtime_error("the made survey has no line " + name);
  }
  return *line;
}

void make_run(const fs::path& folder, const std::string& line_name) {
  const Module_samples::SampleLine& line = find_line(line_name);
  const fs::path start_file = folder / "startup";
  OccamIteration start;
  OccamData sites;
  ObservedData data;
  OccamModel model;
  if (read_occam_iteration(IterationParts::with_parameters, start_file.string(), start) != 0 ||
      read_occam_data_file((folder / start.data_file).string(), sites) != 0 ||
      read_occam_data_rows((folder / start.data_file).string(), data) != 0 ||
      read_occam_model(folder, start.model_file, sites, model) != 0) {
    throw std::runtime_error("there is no start file with its model and data in " + folder.string());
  }
  const std::vector<double> ground = ground_in_blocks(model, line);
  for (int number = 1; number <= iterations; ++number) {
    const double share = static_cast<double>(number) / iterations;
    std::vector<double> parameters;
    for (std::size_t i = 0; i < ground.size(); ++i) {
      parameters.push_back(start.parameters.at(i) + share * (ground[i] - start.parameters[i]));
    }
    const Step step{number, misfit(model, parameters, data), roughness(model, parameters)};
    write_file(folder / ("ITER_" + std::to_string(number)), iteration_text(start_file, step, parameters));
    std::cout << "iteration " << number << ": misfit " << format_number(step.misfit, "0.00") << '\n';
  }
  write_file(folder / "elevations.xyz", elevations());
}

int run(int argument_count, char** arguments) {
  CLI::App program(
      "Writes iterations and a file of elevations into the run directory of a line of the made survey. "
      "Nothing is "
      "inverted: the models walk from the start model to the ground that the survey was made over.");
  std::string folder;
  std::string line;
  program.add_option("RUN_FOLDER", folder, "folder that brenlox_batch occam has made")->required();
  program.add_option("LINE", line, "line of the made survey, as 200E")->required();
  try {
    program.parse(argument_count, arguments);
  } catch (const CLI::ParseError& fault) {
    return program.exit(fault) == 0 ? 0 : 2;
  }
  make_run(folder, line);
  return 0;
}

}  // namespace

int main(int argument_count, char** arguments) {
  try {
    return run(argument_count, arguments);
  } catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
    return 1;
  }
}
