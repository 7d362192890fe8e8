// import_plan.h: what an import would store, a row for each section of each file, for the user to see and to
// change beforehand. The import then stores exactly these rows.
#pragma once
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Module_data_file {

/// What is wrong with a row; the table marks it and sorts it first, in this order.
enum class PlanProblem {
  not_readable,        // the file gives nothing, its remark says why
  no_frequencies,      //
  no_rate,             // what is cut from the file's name is no number
  no_station,          // nothing says the station: SECTID has no number, or the file no place
  shared_station,      // two sites on one station, of the import or with what the survey holds
  two_places,          // one station at two places
  far_off_line,        // the place is far off the line, or far away, of the others
  negative_yx_phases,  // all of them, and the sign of Ey isn't turned
  same_file_name,      // namesakes from different folders
};

/// What the user may type into a row.
enum class PlanCell { line, station, event, rate, turn_ey, from_impedance };

/// One section of a file as it would be stored. A file of a format whose stations are its own has one row,
/// and so has one that gives nothing.
struct PlannedSection {
  std::size_t file_index = 0;     // in the list of files
  std::size_t section_index = 0;  // in the file
  std::string file;               // its name, as the survey would know it
  bool is_stored = false;         // false: the row gives no reading
  std::string site;               // as its file names it; empty where the file says the station itself
  std::string line;               // in the normal form
  double station = 0.0;
  std::size_t own_stations = 0;  // above 0: the file holds so many itself, `station` is the first of them
  std::int32_t event = 0;
  float rate = 0.0F;       // Hz
  bool is_merged = false;  // merged curves belong to no rate
  std::int32_t frequencies = 0;
  std::string place;  // "20.4561 S, 139.1234 E", or map coordinates; empty without a place
  bool turn_ey = false;
  bool from_impedance = false;         // curves are computed from the impedances
  std::vector<PlanCell> editable;      // the others are the file's own
  std::vector<PlanProblem> problems;   // each once
  std::vector<std::string> remarks;    // the problems in words, then others
  std::vector<std::string> reported;   // what the report of the import says of how the station was found
  std::vector<PlanCell> edited_cells;  // that the user has typed into

  /// As it is stored, Hz.
  [[nodiscard]] float stored_rate() const { return is_merged ? 0.0F : rate; }
  [[nodiscard]] bool can_edit(PlanCell cell) const;
  [[nodiscard]] bool is_edited(PlanCell cell) const;
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
  std::vector<PlannedSection> sections;  // in the order of the files and of their sections
  std::string fault;                     // of the choices, which keeps them from being imported

  /// The row of a section, counted from 0; null if there is none.
  [[nodiscard]] const PlannedSection* find(std::size_t file_index, std::size_t section_index) const;
  /// Indices of the sections for a table: those with problems first, each kind together.
  [[nodiscard]] std::vector<std::size_t> display_order() const;
  /// What is said of each station that different sites come to.
  [[nodiscard]] std::vector<std::string> shared_stations() const;
  /// "24 files, 24 stations on line 100E; 3 rows with problems".
  [[nodiscard]] std::string summary() const;
};

/// "two sites on one station".
std::string_view problem_text(PlanProblem problem);

}  // namespace Module_data_file
