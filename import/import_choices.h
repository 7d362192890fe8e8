// import_choices.h: what the user chooses for an import.
#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "database/line_names.h"

namespace Module_data_file {

/// How line, event or sample rate of a file are found: cut from its name, or typed.
struct DecodeRow {
  bool use_file_name = false;
  std::int32_t start_column = 0;  // from 1; 0 is not given
  std::int32_t width = 0;         // 0 is not given
  std::string specified;
};

inline constexpr std::array<std::string_view, 3> decode_row_titles{"Line Number", "Event", "Sample Rate"};

enum DecodeRowIndex : std::size_t { decode_line_number = 0, decode_event = 1, decode_sample_rate = 2 };

using Module_database::LineDirection;

using DecodeTable = std::array<DecodeRow, 3>;

/// Which sections of EDI files get the other sign of Ey: 180 degrees on the phases of EyHx and EyHy.
enum class TurnEy {
  never,
  where_needed,  // where the phases of YX say that the sign is turned
  always,
};

/// Choices of an import; they hold for all of its files.
struct ImportChoices {
  std::int32_t ReferenceType = -1;  // 0 to 2; -1: not chosen yet
  std::int32_t ReductionType = -1;  // 0 raw, 1 averaged, 2 merged; -1: not chosen yet
  DecodeTable decode;
  LineDirection line_direction = LineDirection::local_east;
  std::string start_station;         // as typed; blank: none
  std::string station_step = "100";  // as typed, m
  bool convert_coordinates = false;
  bool sectid_as_station = false;
  bool sectid_digits = false;           // the last run of digits in SECTID is the station
  bool compute_from_impedance = false;  // resistivity and phase where the file has impedances only
  TurnEy turn_ey = TurnEy::never;
};

}  // namespace Module_data_file
