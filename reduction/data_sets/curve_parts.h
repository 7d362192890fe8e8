// curve_parts.h: what the data sets of the main view have in common.
//
// Conventions: frequency Hz; resistivity ohm-m; phase degrees; absent values as in core/absent_value.h.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/absent_value.h"
#include "core/frequencies.h"
#include "database/reading.h"

namespace Module_averaged_data {

/// Smallest and largest value met; the wrong way round until there is one.
struct Extent {
  float minimum = -no_data;
  float maximum = no_data;

  void include(float value);  // an absent value is skipped
  [[nodiscard]] bool empty() const { return !(minimum <= maximum); }
};

struct CurveExtents {
  Extent frequency;    // Hz
  Extent resistivity;  // ohm-m
  Extent phase;        // degrees

  void include(const Module_database::Curve& curve);
};

/// The index of each frequency of a reading in a frequency list; -1 where it isn't listed.
std::vector<std::int32_t> list_positions(const Module_database::Curve& curve, const Frequencies& frequencies);

/// The key of the session's selection; the scan rate is that of the raw graph.
Module_database::ReadingKey selected_key();

/// "LineNumber = '200E' AND Station = 100"
std::string place_criteria(const Module_database::ReadingKey& key);

/// "ReductionType = 2 AND ReferenceType = 0 AND DataType ='ExHy' AND DipoleLength = 50"
std::string kind_criteria(std::int32_t reduction, const Module_database::ReadingKey& key);

/// True if both name one line: rows spell it as their files did, in whatever case of letters.
bool same_line(std::string_view a, std::string_view b);

/// True if both keys are of the same place and kind, whatever their scan rates.
bool same_station(const Module_database::ReadingKey& a, const Module_database::ReadingKey& b);

}  // namespace Module_averaged_data
