#include "tests/numerics/section/finished_run.h"

#include <cmath>
#include <fstream>
#include <numeric>

namespace {

// The part of a line behind its label.
std::string line_value(std::ifstream& file, std::size_t label_width) {
  std::string line;
  std::getline(file, line);
  return line.size() > label_width ? line.substr(label_width) : "";
}

std::vector<double> numbers(std::ifstream& file, std::size_t count) {
  std::vector<double> values(count);
  for (double& value : values) {
    file >> value;
  }
  return values;
}

void skip_lines(std::ifstream& file, int count) {
  std::string line;
  for (int i = 0; i < count; ++i) {
    std::getline(file, line);
  }
}

void read_data(const std::string& folder, FinishedRun& run) {
  std::ifstream data(folder + "/OccamDataFile.dat");
  skip_lines(data, 2);
  const std::size_t sites = std::stoul(line_value(data, 18));
  skip_lines(data, static_cast<int>(sites) + 1);
  run.sites = numbers(data, sites);
  skip_lines(data, 1);
  run.frequencies = numbers(data, std::stoul(line_value(data, 18)));
  std::ifstream response(folder + "/RESP12.resp");
  double site = 0.0;
  double frequency = 0.0;
  double type = 0.0;
  double rest[4];
  while (response >> site >> frequency >> type >> rest[0] >> rest[1] >> rest[2] >> rest[3]) {
    run.rows.push_back({static_cast<std::size_t>(site), static_cast<std::size_t>(frequency),
                        static_cast<int>(type), rest[2]});
  }
}

std::vector<double> read_parameters(const std::string& folder) {
  std::ifstream iteration(folder + "/ITER12.iter");
  skip_lines(iteration, 18);
  return numbers(iteration, std::stoul(line_value(iteration, 18)));
}

}  // namespace

FinishedRun read_finished_run(const std::string& folder) {
  FinishedRun run;
  read_data(folder, run);

  std::ifstream mesh(folder + "/Occam2DMesh");
  skip_lines(mesh, 1);
  const std::vector<double> head = numbers(mesh, 6);
  run.section.column_widths = numbers(mesh, static_cast<std::size_t>(head[1]) - 1);
  run.section.row_heights = numbers(mesh, static_cast<std::size_t>(head[2]) - 1);

  const std::vector<double> parameters = read_parameters(folder);
  const std::size_t columns = run.section.column_widths.size();
  run.parameter_index.resize(4 * columns * run.section.row_heights.size());
  std::ifstream model(folder + "/Occam2DModel");
  skip_lines(model, 7);
  const double binding_offset = std::stod(line_value(model, 18));
  const std::size_t layers = std::stoul(line_value(model, 18));
  std::size_t top = 0;
  int parameter = 0;
  for (std::size_t layer = 0; layer < layers; ++layer) {
    const std::vector<double> layer_size = numbers(model, 2);
    const auto rows = static_cast<std::size_t>(layer_size[0]);
    std::size_t left = 0;
    for (const double block : numbers(model, static_cast<std::size_t>(layer_size[1]))) {
      const std::size_t right = left + static_cast<std::size_t>(block);
      if (layer == 0 && left == 0) {
        run.section.left_edge =
            binding_offset -
            std::accumulate(run.section.column_widths.begin(),
                            run.section.column_widths.begin() + static_cast<std::ptrdiff_t>(right), 0.0);
      }
      for (std::size_t row = top; row < top + rows; ++row) {
        for (std::size_t triangle = 4 * (row * columns + left); triangle < 4 * (row * columns + right);
             ++triangle) {
          run.parameter_index[triangle] = parameter;
        }
      }
      left = right;
      ++parameter;
    }
    top += rows;
  }
  run.section.host_layers = layers;
  for (const int index : run.parameter_index) {
    run.section.codes.push_back(index + 1);
    run.section.resistivities.push_back(std::pow(10.0, parameters.at(static_cast<std::size_t>(index))));
  }
  return run;
}
