// import_choices.h: what the user chooses for an import.
#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "database/line_names.h"
#include "projections/coord_system.h"

namespace Module_data_file {

/// How line, event or sample rate of a file are found: cut from its name, or typed.
struct DecodeRow {
  bool use_file_name = false;
  std::int32_t start_column = 0;  // from 1; 0 is not given
  std::int32_t width = 0;         // 0 is not given
  std::string specified;

  bool operator==(const DecodeRow&) const = default;
};

inline constexpr std::array<std::string_view, 3> decode_row_titles{"Line Number", "Event", "Sample Rate"};

enum DecodeRowIndex : std::size_t { decode_line_number = 0, decode_event = 1, decode_sample_rate = 2 };

using Module_database::LineDirection;

using DecodeTable = std::array<DecodeRow, 3>;

/// Which sections that name a site get the other sign of Ey: 180 degrees on the phases of EyHx and EyHy.
enum class TurnEy {
  never,
  where_needed,  // where the phases of YX say that the sign is turned
  always,
};

/// Where the stations of sections that name a site come from. Files of other formats hold theirs.
enum class StationsBy {
  count,          // start station and spacing, from section to section
  sectid,         // the number that SECTID, or another name of the site, begins with
  sectid_digits,  // the last run of digits in it, also behind letters
  distance,       // whole metres along the line
};

/// The line of the files that stand right in a folder, or of one file, which counts before its folder's.
struct FolderLine {
  std::string folder;  // path as folder_of or settled_file gives it
  std::string line;
};

/// Choices of an import; they hold for all of its files.
struct ImportChoices {
  std::int32_t ReferenceType = -1;  // 0 to 2; -1: not chosen yet
  std::int32_t ReductionType = -1;  // 0 raw, 1 averaged, 2 merged; -1: not chosen yet
  DecodeTable decode;
  std::vector<FolderLine> folder_lines;    // before the specified line, unless lines are cut from file names
  bool own_rate_of_fixed_columns = false;  // four times their last frequency, whatever rate is specified
  LineDirection line_direction = LineDirection::local_east;
  std::string start_station;         // as typed; blank: none
  std::string station_step = "100";  // as typed, m
  StationsBy stations_by = StationsBy::count;
  bool count_sites = false;  // by count: sites are counted, not sections, and known ones keep their stations
  bool convert_coordinates = false;
  std::optional<Module_projections::CoordSystem> projection;  // for a survey without one; it converts by it
  bool compute_from_impedance = false;  // resistivity and phase where the file has impedances only
  TurnEy turn_ey = TurnEy::never;
};

/// Whether sections are named by their SECTID, which leaves the start station to those without one.
inline bool by_sectid(const ImportChoices& choices) {
  return choices.stations_by == StationsBy::sectid || choices.stations_by == StationsBy::sectid_digits;
}

}  // namespace Module_data_file
