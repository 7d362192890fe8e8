// line_chi.h: how well a layered earth fits each station of a line: chi by station.
//
// Conventions: chi is the root of chi-squared, dimensionless; NaN where nothing was inverted.
#pragma once
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "rhoplus/station_inversion.h"

namespace Module_rhoplus {

struct StationChi {
  std::int32_t station_index = 0;  // of the survey, from 1
  double station = 0.0;
  std::string name;     // of its site; empty if it has none
  int used_values = 0;  // resistivities and phases
  double target = std::numeric_limits<double>::quiet_NaN();
  double achieved = std::numeric_limits<double>::quiet_NaN();
  std::string remark;  // what the results lack, or why there are none

  /// Achieved over target: far above 1 the data are not one-dimensional, or their errors are too small.
  [[nodiscard]] double ratio() const { return achieved / target; }
};

/// @param station_index  of the survey, from 1; @param station  its number
StationChi chi_of(const StationInversion& inversion, std::int32_t station_index, double station);

/// The table with a line of headings, tabs between the columns: for spreadsheets.
std::string chi_table_text(const std::vector<StationChi>& stations);

/// "400 stations inverted; achieved chi above the target at 12 of them; nothing to invert at 3".
std::string chi_summary(const std::vector<StationChi>& stations);

inline constexpr const char* chi_headings[] = {
    "Station", "Site", "Values", "Target chi", "Achieved chi", "Achieved/target", "Remarks"};

/// The cells of a station in the order of the headings; "-" where there is no number.
std::vector<std::string> chi_row(const StationChi& station);

}  // namespace Module_rhoplus
