#include "occam/inversion/run_problem.h"

#include <algorithm>
#include <map>
#include <stdexcept>
#include <utility>

#include "occam/results/model_response.h"

namespace Module_occam {

namespace section = numerics::section;
namespace inversion = numerics::occam_inversion;
using section::no_parameter;

namespace {

int type_of(const DataRow& row) { return static_cast<int>(row.type); }

Quantity quantity_of(const DataRow& row) { return find_meaning(row.type)->quantity; }

void refuse_other_types(const ObservedData& data) {
  const auto first =
      std::ranges::find_if_not(data.rows, [](const DataRow& row) { return can_be_inverted(type_of(row)); });
  if (first == data.rows.end()) {
    return;
  }
  const auto count =
      std::ranges::count_if(data.rows, [&](const DataRow& row) { return row.type == first->type; });
  throw std::runtime_error("row " + std::to_string(first - data.rows.begin() + 1) + " of the data has type " +
                           std::to_string(type_of(*first)) + ", which can't be inverted here, as have " +
                           std::to_string(count) + " rows in all");
}

}  // namespace

bool can_be_inverted(int data_type) { return find_meaning(static_cast<DataType>(data_type)) != nullptr; }

RunProblem::RunProblem(const OccamModel& model, const ObservedData& data, const RunRules& rules,
                       Progress progress)
    : model_(model),
      data_(data),
      rules_(rules),
      progress_(std::move(progress)),
      block_parameters_(static_cast<std::size_t>(model.num_free_params)) {
  refuse_other_types(data);
  const std::int32_t first_free = model.param_table_index(1);
  for (const CellCode& cell : model.cell_code) {
    for (const std::int32_t code : cell) {
      parameter_of_triangle_.push_back(code >= first_free ? static_cast<std::size_t>(code - first_free)
                                                          : no_parameter);
    }
  }
  requests_ = RowRequests(data.rows, data.site_offsets);
  take_shifts();
}

void RunProblem::take_shifts() {
  shift_of_row_.assign(data_.rows.size(), 0.0);
  free_shift_of_row_.assign(data_.rows.size(), no_parameter);
  for (const StaticShift& shift : model_.static_shifts) {
    const auto is_of = [&](const DataRow& row) {
      return row.site_number == shift.site_number && type_of(row) == shift.data_type;
    };
    for (std::size_t row = 0; row < data_.rows.size(); ++row) {
      if (is_of(data_.rows[row])) {
        shift_of_row_[row] = shift.is_free ? 0.0 : shift.shift;
        free_shift_of_row_[row] = shift.is_free ? free_shifts_.size() : no_parameter;
      }
    }
    if (shift.is_free) {
      free_shifts_.push_back(shift);
    }
  }
  shifts_of_model_ = free_shifts_.size();
  if (rules_.static_shift) {
    add_shifts();
  }
}

// One for the resistivities of each site and type that the model gives no shift.
void RunProblem::add_shifts() {
  if (!(*rules_.static_shift > 0.0)) {
    throw std::runtime_error("the error of the static shifts must be above 0");
  }
  std::map<std::pair<int, int>, std::size_t> place;  // by site and type
  for (std::size_t row = 0; row < data_.rows.size(); ++row) {
    const DataRow& entry = data_.rows[row];
    const bool is_resistivity = quantity_of(entry) == Quantity::log10_resistivity;
    if (!is_resistivity || free_shift_of_row_[row] != no_parameter) {
      continue;
    }
    const auto [known, is_new] =
        place.emplace(std::pair(entry.site_number, type_of(entry)), free_shifts_.size());
    if (is_new) {
      free_shifts_.push_back({entry.site_number, type_of(entry), 0.0, true});
    }
    free_shift_of_row_[row] = known->second;
  }
}

std::vector<double> RunProblem::model_of(std::span<const double> file_parameters) const {
  const std::size_t listed = block_parameters_ + shifts_of_model_;
  if (file_parameters.size() != listed) {
    throw std::runtime_error("the start has " + std::to_string(file_parameters.size()) +
                             " parameters, the model " + std::to_string(listed));
  }
  std::vector<double> model(file_parameters.begin(), file_parameters.end());
  model.resize(parameters(), 0.0);
  return model;
}

std::vector<double> RunProblem::file_parameters(std::span<const double> model) const {
  const std::span<const double> listed = model.first(block_parameters_ + shifts_of_model_);
  return {listed.begin(), listed.end()};
}

std::string RunProblem::shift_file_text(std::span<const double> model) const {
  std::vector<StaticShift> shifts = free_shifts_;
  for (std::size_t shift = 0; shift < shifts.size(); ++shift) {
    shifts[shift].shift = model[block_parameters_ + shift];
    shifts[shift].is_free = false;
  }
  return Module_occam::shift_file_text(shifts);
}

std::vector<inversion::Block> RunProblem::blocks() const {
  std::vector<inversion::Block> blocks;
  std::vector<int> places(model_.layers.size());
  for (const OccamBlock& block : model_.blocks) {
    inversion::Block& entry = blocks.emplace_back();
    const BlockExtent& extent = block.block_extent;
    entry.layer = block.layer;
    entry.place = places[static_cast<std::size_t>(block.layer)]++;
    entry.left = extent.left_column;
    entry.right = extent.end_column;
    entry.top = extent.top_row;
    entry.bottom = extent.end_row;
    entry.width = block.block_width;
    entry.height = block.block_height;
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
  problem.data.resize(data_.rows.size() + added_shifts(), 0.0);
  problem.errors.resize(problem.data.size(), rules_.static_shift.value_or(1.0));
  problem.respond = [this](std::span<const double> model, inversion::Derivatives derivatives) {
    return modelled(model, derivatives);
  };
  return problem;
}

inversion::Modelled RunProblem::modelled(std::span<const double> model,
                                         inversion::Derivatives derivatives) const {
  const section::Section ground = response_section(model_, model.first(block_parameters_));
  const section::CheckedInput input = section::check_input(ground, data_.site_offsets, data_.frequencies);
  inversion::Modelled result;
  const std::size_t rows = data_.rows.size() + added_shifts();
  const std::size_t n = parameters();
  const bool linearise = derivatives == inversion::Derivatives::yes;
  result.values.resize(rows);
  result.sensitivities.assign(linearise ? rows * n : 0, 0.0);
  for (std::size_t shift = 0; shift < added_shifts(); ++shift) {
    const std::size_t row = data_.rows.size() + shift;
    const std::size_t parameter = block_parameters_ + shifts_of_model_ + shift;
    result.values[row] = model[parameter];
    if (linearise) {
      result.sensitivities[row * n + parameter] = 1.0;
    }
  }
  const auto take = [&](const section::ModeRequest& request, std::size_t site,
                        const section::SiteResponse& response) {
    const double omega_mu = section::Frequency(data_.frequencies[request.frequency_index]).omega_mu();
    for (const std::size_t row : requests_.rows_of(request, site)) {
      const RowValue entry = row_value(data_.rows[row], response, omega_mu);
      const std::size_t shift = free_shift_of_row_[row];
      result.values[row] =
          entry.value + shift_of_row_[row] + (shift == no_parameter ? 0.0 : model[block_parameters_ + shift]);
      if (!linearise) {
        continue;
      }
      const auto change =
          is_tipper(quantity_of(data_.rows[row])) ? response.tipper_change : response.impedance_change;
      double* const derivative = result.sensitivities.data() + row * n;
      for (std::size_t p = 0; p < change.size(); ++p) {
        derivative[p] = entry.factor.real() * change[p].real() - entry.factor.imag() * change[p].imag();
      }
      if (shift != no_parameter) {
        derivative[block_parameters_ + shift] = 1.0;
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
