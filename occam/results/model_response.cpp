#include "occam/results/model_response.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <type_traits>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "formats/occam/table_input.h"
#include "numerics/section/response.h"

namespace Module_occam {

namespace {

static_assert(air_cell == numerics::section::air_code && sea_cell == numerics::section::sea_code);
static_assert(std::is_same_v<std::int32_t, numerics::section::Code>);

/// The codes of all triangles. A fixed code beyond the list would name a free parameter.
std::vector<std::int32_t> triangle_codes(const OccamModel& model) {
  const OccamMesh& mesh = model.mesh;
  std::vector<std::int32_t> codes;
  codes.reserve(triangles * model.cell_code.size());
  auto cell = model.cell_code.begin();
  for (std::size_t row = 0; row < mesh.mesh_code.size(); ++row) {
    for (std::size_t column = 0; column < mesh.node_widths.size(); ++column, ++cell) {
      for (std::size_t triangle = 0; triangle < triangles; ++triangle) {
        const std::int32_t code = (*cell)[triangle];
        const char letter = mesh.mesh_code[row][triangle][column];
        if (code == free_cell) {
          throw std::runtime_error("a free cell of the mesh lies in no block of the model");
        }
        if (letter != free_code && code != sea_cell && (code < air_cell || code > mesh.num_fixed_res())) {
          throw std::runtime_error(std::string("the mesh has the code \"") + letter + "\" in row " +
                                   std::to_string(row + 1) + ", column " + std::to_string(column + 1) +
                                   " and lists " + std::to_string(mesh.num_fixed_res()) +
                                   " fixed resistivities");
        }
        codes.push_back(code);
      }
    }
  }
  return codes;
}

bool is_response(DataType type) {
  return std::ranges::any_of(modes, [type](const Mode& mode) { return mode.has(type); });
}

double value_of(const numerics::section::Response& response, const DataRow& row, std::size_t frequencies) {
  const std::size_t at = (static_cast<std::size_t>(row.site_number) - 1) * frequencies +
                         static_cast<std::size_t>(row.frequency_number) - 1;
  const bool te = te_mode.has(row.type);
  const auto& mode_response = te ? response.te : response.tm;
  return row.type == (te ? te_mode : tm_mode).resistivity ? mode_response.log10_resistivity[at]
                                                          : beside_datum(mode_response.phase[at], row.datum);
}

constexpr std::string_view line_end = "\r\n";
constexpr std::size_t number_width = 14;

void add_line(std::string& text, std::string_view label, std::string_view value = {}) {
  text.append(label).append(value).append(line_end);
}

void add_numbers(std::string& text, const std::vector<double>& values) {
  for (const double value : values) {
    add_line(text, "   ", criterion_text(value));
  }
}

void add_row(std::string& text, const DataRow& row, double modelled) {
  const auto add = [&text](double value, std::string_view picture) {
    text.append(" ").append(pad_field(format_number(value, picture), number_width));
  };
  const double residual = row.datum - modelled;
  text += pad_field(std::to_string(row.site_number), 6);
  text += pad_field(std::to_string(row.frequency_number), 12);
  text += pad_field(std::to_string(static_cast<int>(row.type)), 8);
  add(row.datum, "0.000000");
  add(residual, "0.000000");
  add(modelled, "0.000000");
  add(row.error > 0.0 ? residual / row.error : 0.0, "0.000000");
  text += line_end;
}

}  // namespace

double beside_datum(double phase, double datum) {
  constexpr double turn = 360.0;  // degrees
  const double distance = std::abs(phase - datum);
  if (std::abs(phase - turn - datum) < distance) {
    return phase - turn;
  }
  return std::abs(phase + turn - datum) < distance ? phase + turn : phase;
}

numerics::section::ResistivityLimits limits_at(int debug_level) {
  using numerics::section::ResistivityLimits;
  return debug_level == 0 ? ResistivityLimits::kept : ResistivityLimits::cut;
}

numerics::section::Section response_section(const OccamModel& model, std::span<const double> parameters,
                                            numerics::section::ResistivityLimits limits) {
  if (parameters.size() != static_cast<std::size_t>(model.num_free_params)) {
    throw std::runtime_error("the iteration has " + std::to_string(parameters.size()) +
                             " parameters, the model " + std::to_string(model.num_free_params));
  }
  numerics::section::Section section;
  section.left_edge = model.node_x.front();
  section.column_widths = model.mesh.node_widths;
  section.row_heights = model.mesh.node_heights;
  section.codes = triangle_codes(model);
  section.resistivities =
      numerics::section::triangle_resistivities(section.codes, model.mesh.fixed_res, parameters, limits);
  section.host_layers = model.layers.size();
  return section;
}

std::optional<ModelledData> model_data(const OccamModel& model, std::span<const double> parameters,
                                       const ObservedData& data, const std::function<bool(double)>& progress,
                                       numerics::section::ResistivityLimits limits) {
  ModelledData result;
  std::ranges::copy_if(data.rows, std::back_inserter(result.rows),
                       [](const DataRow& row) { return is_response(row.type); });
  result.other_rows = static_cast<int>(data.rows.size() - result.rows.size());
  if (result.rows.empty()) {
    throw std::runtime_error("the data file holds no apparent resistivities and no phases");
  }
  if (!progress(0.0)) {
    return {};
  }
  const auto response =
      numerics::section::compute_response(response_section(model, parameters, limits), data.site_offsets,
                                          data.frequencies, {.threads = 0, .progress = progress});
  if (!response) {
    return {};
  }
  for (const DataRow& row : result.rows) {
    result.modelled.push_back(value_of(*response, row, data.frequencies.size()));
  }
  return result;
}

std::string response_file_text(const ObservedData& data, const ModelledData& modelled) {
  std::string text;
  add_line(text, "FORMAT:           ", data_marker);
  add_line(text, "TITLE:            ", "response of the model on its mesh");
  add_line(text, "SITES:            ", std::to_string(data.site_names.size()));
  for (const std::string& name : data.site_names) {
    add_line(text, "   ", name);
  }
  add_line(text, "OFFSETS:");
  add_numbers(text, data.site_offsets);
  add_line(text, "FREQUENCIES:      ", std::to_string(data.frequencies.size()));
  add_numbers(text, data.frequencies);
  add_line(text, "NO.DATABLOCKS:    ", std::to_string(modelled.rows.size()));
  add_line(text, "SITE,FREQUENCY,DATATYPE,DATUM,RESIDUAL,MODELLED,MISFIT");
  for (std::size_t row = 0; row < modelled.rows.size(); ++row) {
    add_row(text, modelled.rows[row], modelled.modelled[row]);
  }
  return text;
}

}  // namespace Module_occam
