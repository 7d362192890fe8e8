#include "occam/inversion/run_problem.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <limits>
#include <map>
#include <numbers>
#include <optional>
#include <stdexcept>
#include <tuple>

#include "numerics/constants.h"
#include "occam/inversion/data_checks.h"
#include "occam/results/model_response.h"

namespace Module_occam {

namespace section = numerics::section;
namespace inversion = numerics::occam_inversion;
using section::no_parameter;

namespace {

/// What a row of the data file holds.
enum class Quantity {
  log10_resistivity,
  phase,
  resistivity,
  real_impedance,
  imaginary_impedance,
  real_tipper,
  imaginary_tipper,
};

struct TypeMeaning {
  int data_type;
  section::Mode mode;
  Quantity quantity;
  double sign = 1.0;  // of the file's impedance against ours
};

// Zyx of the files lies in the third quadrant.
constexpr std::array<TypeMeaning, 12> type_meanings{
    {{1, section::Mode::te, Quantity::log10_resistivity},
     {2, section::Mode::te, Quantity::phase},
     {3, section::Mode::te, Quantity::real_tipper},
     {4, section::Mode::te, Quantity::imaginary_tipper},
     {5, section::Mode::tm, Quantity::log10_resistivity},
     {6, section::Mode::tm, Quantity::phase},
     {9, section::Mode::te, Quantity::resistivity},
     {10, section::Mode::tm, Quantity::resistivity},
     {13, section::Mode::te, Quantity::real_impedance},
     {14, section::Mode::te, Quantity::imaginary_impedance},
     {15, section::Mode::tm, Quantity::real_impedance, -1.0},
     {16, section::Mode::tm, Quantity::imaginary_impedance, -1.0}}};

const TypeMeaning* find_meaning(int data_type) {
  const auto found = std::ranges::find(type_meanings, data_type, &TypeMeaning::data_type);
  return found == type_meanings.end() ? nullptr : &*found;
}

int type_of(const DataRow& row) { return static_cast<int>(row.type); }

const TypeMeaning& meaning_of(const DataRow& row) { return *find_meaning(type_of(row)); }

bool is_tipper(Quantity quantity) {
  return quantity == Quantity::real_tipper || quantity == Quantity::imaginary_tipper;
}

/// A value and what turns the derivative of ln Z, or of the tipper, into that of the value.
struct RowValue {
  double value = 0.0;
  std::complex<double> factor;  // the derivative is Re(factor x change)
};

RowValue row_value(const TypeMeaning& meaning, const section::SiteResponse& response, double omega_mu,
                   double datum) {
  const std::complex<double> impedance = meaning.sign * response.impedance;
  const double resistivity = std::norm(impedance) / omega_mu;
  const std::complex<double> minus_i(0.0, -1.0);
  switch (meaning.quantity) {
    case Quantity::log10_resistivity:
      return {std::log10(resistivity), 2.0 / std::numbers::ln10};
    case Quantity::phase:
      return {beside_datum(std::arg(impedance) * numerics::degrees_per_radian, datum),
              minus_i * numerics::degrees_per_radian};
    case Quantity::resistivity:
      return {resistivity, 2.0 * resistivity};
    case Quantity::real_impedance:
      return {impedance.real(), impedance};
    case Quantity::imaginary_impedance:
      return {impedance.imag(), minus_i * impedance};
    case Quantity::real_tipper:
      return {response.tipper.real(), 1.0};
    case Quantity::imaginary_tipper:
      break;
  }
  return {response.tipper.imag(), minus_i};
}

}  // namespace

RunProblem::RunProblem(const OccamModel& model, const ObservedData& data, const RunRules& rules,
                       Progress progress)
    : model_(model),
      data_(data),
      rules_(rules),
      progress_(std::move(progress)),
      block_parameters_(static_cast<std::size_t>(model.num_free_params)),
      shifts_(model, data, rules.static_shift) {
  refuse_unusable_rows(model, data);
  if (block_parameters_ == 0) {
    throw std::runtime_error("the model has no free block");
  }
  // What has no response is told before any work; resistivities don't matter to that.
  static_cast<void>(section::check_input(response_section(model, std::vector<double>(block_parameters_)),
                                         data.site_offsets, data.frequencies));
  const std::int32_t first_free = model.param_table_index(1);
  for (const CellCode& cell : model.cell_code) {
    for (const std::int32_t code : cell) {
      parameter_of_triangle_.push_back(code >= first_free ? static_cast<std::size_t>(code - first_free)
                                                          : no_parameter);
    }
  }
  make_requests();
}

void RunProblem::make_requests() {
  // Rows by mode, frequency and site.
  std::map<std::pair<section::Mode, std::size_t>, std::map<std::size_t, std::vector<std::size_t>>> asked;
  std::map<std::pair<section::Mode, std::size_t>, bool> tipper;
  for (std::size_t row = 0; row < data_.rows.size(); ++row) {
    const DataRow& entry = data_.rows[row];
    const TypeMeaning& meaning = meaning_of(entry);
    const std::pair key(meaning.mode, static_cast<std::size_t>(entry.frequency_number - 1));
    asked[key][static_cast<std::size_t>(entry.site_number - 1)].push_back(row);
    tipper[key] = tipper[key] || is_tipper(meaning.quantity);
  }
  for (auto& [key, by_site] : asked) {
    section::ModeRequest& request = requests_.emplace_back();
    request.mode = key.first;
    request.frequency_index = key.second;
    request.tipper = tipper[key];
    std::vector<std::pair<double, std::size_t>> from_left;
    for (const auto& [site, rows] : by_site) {
      from_left.emplace_back(data_.site_offsets[site], site);
    }
    std::ranges::sort(from_left);
    rows_.emplace_back(data_.site_offsets.size());
    for (const auto& [offset, site] : from_left) {
      request.site_indices.push_back(site);
      rows_.back()[site] = by_site[site];
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
  const section::Section ground = response_section(model_, model.first(block_parameters_));
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
    const auto request_index = static_cast<std::size_t>(&request - requests_.data());
    const double omega_mu = section::Frequency(data_.frequencies[request.frequency_index]).omega_mu();
    for (const std::size_t row : rows_[request_index][site]) {
      const TypeMeaning& meaning = meaning_of(data_.rows[row]);
      const RowValue entry = row_value(meaning, response, omega_mu, data_.rows[row].datum);
      const std::optional<std::size_t> shift = shifts_.free_of(row);
      result.values[row] =
          entry.value + shifts_.fixed_of(row) + (shift ? model[block_parameters_ + *shift] : 0.0);
      if (!linearise) {
        continue;
      }
      const auto change = is_tipper(meaning.quantity) ? response.tipper_change : response.impedance_change;
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
  if (!section::compute_linear_response(ground, input, data_.frequencies, requests_, groups, take,
                                        {.threads = rules_.threads, .progress = progress_})) {
    throw inversion::Stopped();
  }
  return result;
}

}  // namespace Module_occam
