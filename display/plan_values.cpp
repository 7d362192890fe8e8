#include "display/plan_values.h"

#include <algorithm>
#include <cmath>

#include "core/absent_value.h"
#include "core/session_state.h"

namespace Module_display_data {

using Module_averaged_data::Component;
using Module_averaged_data::ProfileColumn;
using Module_averaged_data::ProfileDataSet;
using Module_database::ReadingKey;

namespace {

ReadingKey key_of(const std::string& data_type) {
  ReadingKey key;
  key.reference_type = session().current_reference_type;
  key.data_type = data_type;
  key.dipole = session().current_dipole;
  return key;
}

bool same_kind(const ReadingKey& a, const ReadingKey& b) {
  return a.reference_type == b.reference_type && a.data_type == b.data_type && a.dipole == b.dipole;
}

float value_that_counts(float value, bool used, std::int32_t mask) {
  return used && mask == 1 ? value : no_data;
}

}  // namespace

int PlanValues::read(const std::string& data_type) {
  forget();
  const SessionState& state = session();
  ReadingKey key = key_of(data_type);
  curves_.resize(static_cast<std::size_t>(state.station_count));
  frequencies_ = state.frequencies.count();
  key_ = key;
  for (std::int32_t line = 0; line < state.line_count; ++line) {
    const std::int32_t first = state.first_station_of_line[static_cast<std::size_t>(line)];
    key.line = state.station_line[static_cast<std::size_t>(first) - 1];
    ProfileDataSet curves;
    if (load_profile_data(key, state.frequencies, curves) != 0) {
      forget();
      return -1;
    }
    take_line(curves);
  }
  return 0;
}

bool PlanValues::are_of(const std::string& data_type) const {
  return key_ && same_kind(*key_, key_of(data_type)) && frequencies_ == session().frequencies.count() &&
         curves_.size() == static_cast<std::size_t>(session().station_count);
}

void PlanValues::take_line(const ProfileDataSet& line) {
  const SessionState& state = session();
  if (!key_ || !same_kind(*key_, line.key) || line.frequencies.size() != frequencies_) {
    return;
  }
  std::size_t at = curves_.size();  // of the stations of the line, which both have in the same order
  for (std::int32_t i = 0; i < state.line_count && at == curves_.size(); ++i) {
    const auto first = static_cast<std::size_t>(state.first_station_of_line[static_cast<std::size_t>(i)]) - 1;
    at = state.station_line[first] == line.key.line ? first : at;
  }
  for (const ProfileColumn& column : line.columns) {
    const auto is_its_station = [&](std::size_t i) {
      return state.station_value[i] == column.station && state.station_line[i] == line.key.line;
    };
    while (at < curves_.size() && !is_its_station(at)) {
      ++at;
    }
    if (at == curves_.size()) {
      return;
    }
    std::vector<Point>& curve = curves_[at];
    curve.resize(frequencies_);
    for (std::size_t i = 0; i < frequencies_; ++i) {
      curve[i] = {
          value_that_counts(column.resistivity[i], column.UseReading && column.UseResistivity,
                            column.mask[i][0]),
          value_that_counts(column.phase[i], column.UseReading && column.UsePhase, column.mask[i][1])};
      if (!is_absent(double{curve[i][0]})) {
        curve[i][0] *= column.ResOffset;
      }
    }
  }
}

std::vector<double> PlanValues::at(Component component, std::size_t frequency_index) const {
  std::vector<double> values(curves_.size(), no_data);
  for (std::size_t i = 0; i < curves_.size(); ++i) {
    if (frequency_index < curves_[i].size()) {
      const double value = curves_[i][frequency_index][static_cast<std::size_t>(component)];
      if (!is_absent(value) && (component == Component::phase || value > 0.0)) {
        values[i] = value;
      }
    }
  }
  return values;
}

PlanRange plan_range(Component component, const std::vector<double>& values) {
  const bool logarithmic = component == Component::resistivity;
  const double step = logarithmic ? 0.5 : 10.0;
  std::optional<PlanRange> range;
  for (const double value : values) {
    if (!is_absent(value)) {
      const double scaled = logarithmic ? std::log10(value) : value;
      range = range ? PlanRange{std::min(range->lower, scaled), std::max(range->upper, scaled)}
                    : PlanRange{scaled, scaled};
    }
  }
  if (!range) {
    return logarithmic ? PlanRange{0.0, 3.0} : PlanRange{0.0, 90.0};
  }
  const double lower = std::floor(range->lower / step) * step;
  return {lower, std::max(std::ceil(range->upper / step) * step, lower + step)};
}

}  // namespace Module_display_data
