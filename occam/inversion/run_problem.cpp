#include "occam/inversion/run_problem.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "occam/inversion/data_checks.h"
#include "occam/results/model_response.h"

namespace Module_occam {

namespace section = numerics::section;
namespace inversion = numerics::occam_inversion;
using section::no_parameter;

namespace {

Quantity quantity_of(const DataRow& row) { return find_meaning(row.type)->quantity; }

/// All rows, if an inversion can take them.
std::span<const DataRow> usable_rows(const OccamModel& model, const ObservedData& data) {
  refuse_unusable_rows(model, data);
  return data.rows;
}

}  // namespace

RunProblem::RunProblem(const OccamModel& model, const ObservedData& data, const RunRules& rules,
                       Progress progress)
    : model_(model),
      data_(data),
      rules_(rules),
      progress_(std::move(progress)),
      block_parameters_(static_cast<std::size_t>(model.num_free_params)),
      requests_(usable_rows(model, data), data.site_offsets),
      shifts_(model, data, rules.static_shift) {
  if (block_parameters_ == 0) {
    throw std::runtime_error("the model has no free block");
  }
  // What has no response is told before any work; resistivities don't matter to that.
  static_cast<void>(
      section::check_input(response_section(model, std::vector<double>(block_parameters_), rules.limits),
                           data.site_offsets, data.frequencies));
  const std::int32_t first_free = model.param_table_index(1);
  for (const CellCode& cell : model.cell_code) {
    for (const std::int32_t code : cell) {
      parameter_of_triangle_.push_back(code >= first_free ? static_cast<std::size_t>(code - first_free)
                                                          : no_parameter);
    }
  }
}

std::vector<double> RunProblem::model_of(std::span<const double> file_parameters,
                                         std::span<const StaticShift> found) const {
  const std::size_t listed = block_parameters_ + shifts_.of_model();
  if (file_parameters.size() != listed) {
    throw std::runtime_error(
        "the start has " + std::to_string(file_parameters.size()) + " parameters, the model has " +
        std::to_string(block_parameters_) + " free blocks" +
        (shifts_.of_model() > 0 ? " and " + std::to_string(shifts_.of_model()) + " free static shifts" : ""));
  }
  std::vector<double> model(file_parameters.begin(), file_parameters.end());
  for (std::size_t place = shifts_.of_model(); place < shifts_.free().size(); ++place) {
    const StaticShift& unknown = shifts_.free()[place];
    const auto earlier = std::ranges::find_if(found, [&](const StaticShift& shift) {
      return shift.site_number == unknown.site_number && shift.data_type == unknown.data_type;
    });
    model.push_back(earlier == found.end() ? 0.0 : earlier->shift);
  }
  return model;
}

std::vector<double> RunProblem::file_parameters(std::span<const double> model) const {
  const std::span<const double> listed = model.first(block_parameters_ + shifts_.of_model());
  return {listed.begin(), listed.end()};
}

StaticsFile RunProblem::found_shifts(std::span<const double> model) const {
  return shifts_.found(model.subspan(block_parameters_));
}

std::vector<inversion::Block> RunProblem::blocks() const {
  std::vector<inversion::Block> blocks;
  const int last = model_.num_layers() - 1;
  const bool is_like_above =
      last > 0 && model_.layers[static_cast<std::size_t>(last)].block_columns.size() ==
                      model_.layers[static_cast<std::size_t>(last) - 1].block_columns.size();
  for (const OccamBlock& block : model_.blocks) {
    inversion::Block& entry = blocks.emplace_back();
    const BlockExtent& extent = block.block_extent;
    entry.left = extent.left_column;
    entry.right = extent.end_column;
    entry.top = extent.top_row;
    entry.bottom = extent.end_row;
    entry.width = block.block_width;
    entry.height = block.layer == last && !is_like_above
                       ? model_.node_z[static_cast<std::size_t>(extent.end_row)] -
                             model_.node_z[static_cast<std::size_t>(extent.top_row)]
                       : block.block_height;
    entry.first_row_bottom = model_.node_z[static_cast<std::size_t>(extent.top_row) + 1];
    if (block.parameter_number > 0) {
      entry.parameter = static_cast<std::size_t>(block.parameter_number - 1);
    }
  }
  return blocks;
}

inversion::Problem RunProblem::problem() const {
  inversion::Problem problem;
  for (const DataRow& row : data_.rows) {
    problem.data.push_back(row.datum);
    problem.errors.push_back(row.error);
  }
  for (const ShiftDatum& sum : shifts_.data()) {
    problem.data.push_back(sum.datum);
    problem.errors.push_back(sum.error);
  }
  problem.respond = [this](std::span<const double> model, inversion::Derivatives derivatives) {
    return modelled(model, derivatives);
  };
  return problem;
}

inversion::Modelled RunProblem::modelled(std::span<const double> model,
                                         inversion::Derivatives derivatives) const {
  const section::Section ground = response_section(model_, model.first(block_parameters_), rules_.limits);
  const section::CheckedInput input = section::check_input(ground, data_.site_offsets, data_.frequencies);
  inversion::Modelled result;
  const std::size_t rows = data_.rows.size() + shifts_.data().size();
  const std::size_t n = parameters();
  const bool linearise = derivatives == inversion::Derivatives::yes;
  result.values.resize(rows);
  result.sensitivities.assign(linearise ? rows * n : 0, 0.0);
  for (std::size_t sum = 0; sum < shifts_.data().size(); ++sum) {
    const std::size_t row = data_.rows.size() + sum;
    for (const std::size_t shift : shifts_.data()[sum].shifts) {
      result.values[row] += model[block_parameters_ + shift];
      if (linearise) {
        result.sensitivities[row * n + block_parameters_ + shift] = 1.0;
      }
    }
  }
  const auto take = [&](const section::ModeRequest& request, std::size_t site,
                        const section::SiteResponse& response) {
    const double omega_mu = section::Frequency(data_.frequencies[request.frequency_index]).omega_mu();
    for (const std::size_t row : requests_.rows_of(request, site)) {
      const RowValue entry = row_value(data_.rows[row], response, omega_mu);
      const std::optional<std::size_t> shift = shifts_.free_of(row);
      result.values[row] =
          entry.value + shifts_.fixed_of(row) + (shift ? model[block_parameters_ + *shift] : 0.0);
      if (!linearise) {
        continue;
      }
      const auto change =
          is_tipper(quantity_of(data_.rows[row])) ? response.tipper_change : response.impedance_change;
      double* const derivative = result.sensitivities.data() + row * n;
      for (std::size_t p = 0; p < change.size(); ++p) {
        derivative[p] = entry.factor.real() * change[p].real() - entry.factor.imag() * change[p].imag();
      }
      if (shift) {
        derivative[block_parameters_ + *shift] = 1.0;
      }
    }
  };
  const section::Parameters groups =
      linearise ? section::Parameters{parameter_of_triangle_, block_parameters_} : section::Parameters{};
  if (!section::compute_linear_response(ground, input, data_.frequencies, requests_.requests(), groups, take,
                                        {.threads = rules_.threads, .progress = progress_})) {
    throw inversion::Stopped();
  }
  return result;
}

}  // namespace Module_occam
