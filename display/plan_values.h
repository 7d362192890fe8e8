// plan_values.h: what the plan colours its stations by: a quantity of their merged curves at one frequency.
//
// Station indices count from 1 as in the session; what is kept by station is at index - 1.
#pragma once
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "reduction/data_sets/profile_data_set.h"
#include "reduction/edits/masks.h"

namespace Module_display_data {

/// The merged curves of all stations, of one data type and the reference type and dipole of the selection.
class PlanValues {
 public:
  /// Reads the curves of all lines of the session. @return 0, or -1 after a message: there are none then
  [[nodiscard]] int read(const std::string& data_type);
  /// What was read last, and is still of the session's selection and frequencies.
  [[nodiscard]] bool are_of(const std::string& data_type) const;
  void forget() { *this = {}; }
  /// Takes over what an edit has made of a line's curves; of another kind of curves, nothing.
  void take_line(const Module_averaged_data::ProfileDataSet& line);

  /// Of each station: apparent resistivity with its static factor, ohm-m, or phase, degrees. Absent where
  /// there is none that counts: masked, switched off, not measured.
  /// @param frequency_index  in the session's list, from 0
  [[nodiscard]] std::vector<double> at(Module_averaged_data::Component component,
                                       std::size_t frequency_index) const;

 private:
  using Point = std::array<float, 2>;  // resistivity, phase

  std::optional<Module_database::ReadingKey> key_;  // its line and station don't count
  std::size_t frequencies_ = 0;
  std::vector<std::vector<Point>> curves_;  // of each station; empty without a merged curve
};

/// The ends of a colour scale that takes values in: of resistivities, half decades of log10 ohm-m; of phases,
/// tens of degrees. 0 to 3, 0 to 90 without any value.
struct PlanRange {
  double lower = 0.0;
  double upper = 0.0;
};
PlanRange plan_range(Module_averaged_data::Component component, const std::vector<double>& values);

}  // namespace Module_display_data
