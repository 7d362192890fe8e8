#include "occam/inversion/site_shifts.h"

#include <algorithm>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>

namespace Module_occam {

namespace {

int type_of(const DataRow& row) { return static_cast<int>(row.type); }

bool is_log10_resistivity(int data_type) {
  return data_type == static_cast<int>(DataType::te_resistivity) ||
         data_type == static_cast<int>(DataType::tm_resistivity);
}

std::string name_of(const StaticShift& shift) {
  return "the static shift of site " + std::to_string(shift.site_number) + ", data type " +
         std::to_string(shift.data_type) + ",";
}

}  // namespace

SiteShifts::SiteShifts(const OccamModel& model, const ObservedData& data, std::optional<double> drawn_to_0)
    : fixed_of_row_(data.rows.size()), free_of_row_(data.rows.size()), has_shift_(data.rows.size()) {
  take_model(model, data);
  of_model_ = free_.size();
  add_constraints(model);
  if (drawn_to_0) {
    add_unknown(data, *drawn_to_0);
  }
}

void SiteShifts::take_model(const OccamModel& model, const ObservedData& data) {
  for (const StaticShift& shift : model.static_shifts) {
    if (!is_log10_resistivity(shift.data_type)) {
      throw std::runtime_error(name_of(shift) + " is of no log10 resistivity");
    }
    bool has_rows = false;
    for (std::size_t row = 0; row < data.rows.size(); ++row) {
      const DataRow& entry = data.rows[row];
      if (entry.site_number != shift.site_number || type_of(entry) != shift.data_type) {
        continue;
      }
      if (has_shift_[row]) {
        throw std::runtime_error(name_of(shift) + " stands twice in the statics file");
      }
      has_rows = true;
      has_shift_[row] = true;
      fixed_of_row_[row] = shift.is_free ? 0.0 : shift.shift;
      free_of_row_[row] = shift.is_free ? std::optional(free_.size()) : std::nullopt;
    }
    if (shift.is_free && !has_rows) {
      throw std::runtime_error(name_of(shift) + " is free and has no data");
    }
    (shift.is_free ? free_ : fixed_).push_back(shift);
  }
}

void SiteShifts::add_constraints(const OccamModel& model) {
  if (model.shift_constraint == ShiftConstraint::none || free_.empty()) {
    return;
  }
  if (model.shift_constraint_error == 0.0) {
    throw std::runtime_error("the constraint of the static shifts has an error of 0");
  }
  std::map<int, ShiftDatum> sums;  // by data type
  for (std::size_t place = 0; place < free_.size(); ++place) {
    const int type = model.shift_constraint == ShiftConstraint::sum_of_all ? 0 : free_[place].data_type;
    ShiftDatum& sum = sums[type];
    sum.data_type = type;
    sum.datum += free_[place].shift;
    sum.error = model.shift_constraint_error;
    sum.shifts.push_back(place);
  }
  for (auto& [type, sum] : sums) {
    data_.push_back(std::move(sum));
  }
}

void SiteShifts::add_unknown(const ObservedData& data, double error) {
  if (!(error > 0.0)) {
    throw std::runtime_error("the error of the static shifts must be above 0");
  }
  if (of_model_ > 0) {
    throw std::runtime_error("the model's statics file has free shifts already; others can't be looked for");
  }
  error_ = error;
  std::map<std::pair<int, int>, std::size_t> places;  // by site and type
  for (std::size_t row = 0; row < data.rows.size(); ++row) {
    const DataRow& entry = data.rows[row];
    if (!is_log10_resistivity(type_of(entry)) || has_shift_[row]) {
      continue;
    }
    const auto [known, is_new] = places.emplace(std::pair(entry.site_number, type_of(entry)), free_.size());
    if (is_new) {
      data_.push_back({type_of(entry), 0.0, error, {free_.size()}});
      free_.push_back({entry.site_number, type_of(entry), 0.0, true});
    }
    free_of_row_[row] = known->second;
  }
  if (free_.empty()) {
    throw std::runtime_error("the run has no log10 resistivities whose static shifts could be looked for");
  }
}

StaticsFile SiteShifts::found(std::span<const double> values) const {
  StaticsFile statics{ShiftConstraint::none, error_, fixed_};
  for (std::size_t place = of_model_; place < free_.size(); ++place) {
    statics.shifts.push_back({free_[place].site_number, free_[place].data_type, values[place], false});
  }
  std::ranges::sort(statics.shifts, {},
                    [](const StaticShift& shift) { return std::pair(shift.site_number, shift.data_type); });
  return statics;
}

}  // namespace Module_occam
