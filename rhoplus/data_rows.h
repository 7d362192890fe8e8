// data_rows.h: what the inversion window's grid shows of a station's data.
#pragma once
#include <array>
#include <optional>
#include <string>
#include <vector>

#include "reduction/edits/masks.h"
#include "rhoplus/station_inversion.h"

namespace Module_rhoplus {

enum DataColumn : int {
  column_frequency,
  column_use_resistivity,
  column_observed_resistivity,
  column_inverted_resistivity,
  column_use_phase,
  column_observed_phase,
  column_inverted_phase,
  data_column_count
};

inline constexpr std::array<const char*, data_column_count> data_column_titles{
    "freq", "Use Res", "Obs res", "Inv res", "Use Phz", "Obs Phz", "Inv Phz"};

/// What a click into a column switches; nothing outside of the use columns.
std::optional<Module_averaged_data::Component> switched_in_column(int column);

struct DataRowTexts {
  bool use_resistivity = false;  // it counts: neither masked nor absent
  bool use_phase = false;
  std::array<std::string, data_column_count> texts;  // empty where there is no value, and in the use columns
};

/// A row for each frequency of the merged curve, Hz; resistivities ohm-m with the scale of the inversion;
/// phases degrees.
std::vector<DataRowTexts> data_rows(const StationInversion& inversion);

}  // namespace Module_rhoplus
