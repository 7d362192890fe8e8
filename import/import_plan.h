// import_plan.h: what an import would store, a row for each section of each file, for the user to see and to
// change beforehand. The import then stores exactly these rows.
#pragma once
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "import/import_choices.h"

namespace Module_data_file {

/// What is wrong with a row; the table marks it and sorts it first.
enum class PlanProblem {
  none,
  not_readable,        // the file gives nothing, its remark says why
  no_frequencies,      //
  shared_station,      // two sites on one station, of the import or with what the survey holds
  two_places,          // one station at two places
  far_off_line,        // the place is far off the line of the others
  negative_yx_phases,  // all of them, and the sign of Ey isn't turned
  same_file_name,      // namesakes from different folders
};

/// One section of a file as it would be stored. A file of a format whose stations are its own has one row.
struct PlannedSection {
  std::size_t file_index = 0;     // in the list of files
  std::size_t section_index = 0;  // in the file
  std::string site;               // as its file names it; empty without a name
  std::string line;               // in the normal form
  double station = 0.0;
  bool has_own_stations = false;  // the file holds its stations itself, `station` is the first of them
  std::int32_t event = 0;
  float rate = 0.0F;  // Hz
  std::int32_t frequencies = 0;
  std::string place;  // "20.4561 S, 139.1234 E", or map coordinates; empty without a place
  bool turn_ey = false;
  bool from_impedance = false;  // curves are computed from the impedances
  std::vector<PlanProblem> problems;
  std::vector<std::string> remarks;  // the problems in words first
};

/// What the user has typed into a row; it stays when the choices change.
struct PlannedEdit {
  std::size_t file_index = 0;
  std::size_t section_index = 0;
  std::optional<std::string> line;
  std::optional<double> station;
  std::optional<std::int32_t> event;
  std::optional<float> rate;
  std::optional<bool> turn_ey;
  std::optional<bool> from_impedance;
};

struct ImportPlan {
  std::vector<PlannedSection> sections;  // in the order of the files
};

}  // namespace Module_data_file
