// zonge_avg_parser.h: averaged soundings of Zonge processing, in both layouts that are in use.
//
// The plain layout is a table of all stations under a "skp" line; phases are milliradians, electric less
// magnetic. The keyword layout has "$Key=value" lines and a table for each component of each station, with
// its columns named. Resistivity ohm-m; phase degrees; |Z| mV/km/nT; angles degrees; lengths m.
#pragma once
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/line_reader.h"
#include "formats/file_report.h"
#include "formats/transfer_function/transfer_function.h"
#include "formats/zonge/zonge_avg_facts.h"

namespace formats::zonge {

struct AvgStation {
  double station = 0.0;
  bool names_component = true;   // false, of a set of one component: its curve stands as zxy
  std::optional<double> dipole;  // m
  std::optional<AvgMapPlace> place;
  transfer_function::TransferFunction function;
};

/// Reads the stations in the order in which they come. Points that the file skips are not in use, nor is the
/// half of a point, resistivity or phase, that it gives no weight. What isn't taken is in the report; its
/// failure says why there is nothing, or that the file is cut off.
std::vector<AvgStation> read_zonge_avg(LineReader& lines, FileReport& report);

/// Whether a line is one by which such a file is known: the heading of a table, or a receiver's component.
bool is_zonge_avg_line(std::string_view line);

}  // namespace formats::zonge
