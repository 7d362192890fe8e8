// survey_lists.h: what a survey holds, for lists to choose from: lines, stations, reference types, dipoles.
//
// A line is one line in whatever case of letters its files name it; it is spelled as in the row of
// StationsTable with the lowest ID. Needs an open survey; throws dao::Error.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/session_state.h"

namespace Module_database {

struct ListedStation {
  std::int32_t ID = 0;
  std::string line;
  double station = 0.0;
  StationPlace place;
  std::string name;  // of its site; empty if it has none
};

/// All stations by the lines' numbers, then by their names; those of a line together, ascending.
std::vector<ListedStation> listed_stations();

/// The stations of a line that have readings, ascending.
std::vector<ListedStation> stations_with_readings(std::string_view line);

/// What is wrong with each row of StationsTable that is damaged: the lists go without it.
std::vector<std::string> damaged_stations();

/// A line as the survey spells it; one without a station as it is given.
std::string spelled_line(std::string_view line);

/// Whether listed_lines has the line, without a look at the others.
bool has_readings_or_files(std::string_view line);

// Of imported files and of readings: a reading may have lost the row of its file. Ascending.
std::vector<std::string> listed_lines();
std::vector<std::int32_t> listed_reference_types();
std::vector<float> listed_dipoles();  // m

}  // namespace Module_database
