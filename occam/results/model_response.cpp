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
#include "numerics/section/linear_response.h"
#include "occam/results/row_response.h"

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

/// Numbers of six decimals, like those of a data file, do for log10 resistivity and phase; the others may be
/// small or large.
std::string_view picture_of(DataType type) {
  const TypeMeaning* const meaning = find_meaning(type);
  const bool decimal = meaning != nullptr && (meaning->quantity == Quantity::log10_resistivity ||
                                              meaning->quantity == Quantity::phase);
  return decimal ? "0.000000" : "0.000000E+00";
}

void add_row(std::string& text, const DataRow& row, double modelled) {
  const auto add = [&text](double value, std::string_view picture) {
    text.append(" ").append(pad_field(format_number(value, picture), number_width));
  };
  const FitOfRow fit = fit_of_row(row, modelled);
  text += pad_field(std::to_string(row.site_number), 6);
  text += pad_field(std::to_string(row.frequency_number), 12);
  text += pad_field(std::to_string(static_cast<int>(row.type)), 8);
  for (const double value : {fit.datum, fit.residual, fit.modelled}) {
    add(value, picture_of(row.type));
  }
  add(fit.misfit, "0.000000");
  text += line_end;
}

}  // namespace

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
  namespace section = numerics::section;
  ModelledData result;
  std::ranges::copy_if(data.rows, std::back_inserter(result.rows),
                       [](const DataRow& row) { return find_meaning(row.type) != nullptr; });
  result.other_rows = static_cast<int>(data.rows.size() - result.rows.size());
  if (result.rows.empty()) {
    throw std::runtime_error("the data file holds no row of a data type that can be computed");
  }
  if (!progress(0.0)) {
    return {};
  }
  result.modelled.resize(result.rows.size());
  const section::Section ground = response_section(model, parameters, limits);
  const section::CheckedInput input = section::check_input(ground, data.site_offsets, data.frequencies);
  const RowRequests asked(result.rows, data.site_offsets);
  const auto take = [&](const section::ModeRequest& request, std::size_t site,
                        const section::SiteResponse& response) {
    const double omega_mu = section::Frequency(data.frequencies[request.frequency_index]).omega_mu();
    for (const std::size_t row : asked.rows_of(request, site)) {
      result.modelled[row] = row_value(result.rows[row], response, omega_mu).value;
    }
  };
  if (!section::compute_linear_response(ground, input, data.frequencies, asked.requests(), {}, take,
                                        {.threads = 0, .progress = progress})) {
    return {};
  }
  return result;
}

FitOfRow fit_of_row(const DataRow& row, double modelled) {
  const double residual = row.datum - modelled;
  return {row.datum, residual, modelled, row.error != 0.0 ? residual / std::abs(row.error) : 0.0};
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
