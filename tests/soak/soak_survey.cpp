#include "tests/soak/soak_survey.h"

#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

#include <sqlite3.h>

#include "core/session_state.h"
#include "database/survey_database.h"
#include "import/import_run.h"
#include "reduction/averages.h"
#include "samples/sample_survey.h"
#include "tests/occam/made_results.h"

namespace {

using Table = std::vector<std::vector<std::string>>;

struct CloseDatabase {
  void operator()(sqlite3* handle) const { sqlite3_close(handle); }
};

/// All rows of a statement, with a connection of its own that sees what others would.
Table rows_of(const std::string& survey, const char* statement) {
  sqlite3* handle = nullptr;
  const int opened = sqlite3_open_v2(survey.c_str(), &handle, SQLITE_OPEN_READONLY, nullptr);
  const std::unique_ptr<sqlite3, CloseDatabase> closes(handle);
  sqlite3_stmt* prepared = nullptr;
  if (opened != SQLITE_OK || sqlite3_prepare_v2(handle, statement, -1, &prepared, nullptr) != SQLITE_OK) {
    throw std::runtime_error(std::string(statement) + ": " + sqlite3_errmsg(handle));
  }
  Table rows;
  int status = SQLITE_ROW;
  while ((status = sqlite3_step(prepared)) == SQLITE_ROW) {
    std::vector<std::string>& row = rows.emplace_back();
    for (int column = 0; column < sqlite3_column_count(prepared); ++column) {
      const void* const bytes = sqlite3_column_blob(prepared, column);
      const auto size = static_cast<std::size_t>(sqlite3_column_bytes(prepared, column));
      row.emplace_back(bytes == nullptr ? "" : static_cast<const char*>(bytes), bytes == nullptr ? 0 : size);
    }
  }
  sqlite3_finalize(prepared);
  if (status != SQLITE_DONE) {
    throw std::runtime_error(std::string(statement) + ": " + sqlite3_errmsg(handle));
  }
  return rows;
}

std::string first_difference(const Table& stored, const Table& recalculated) {
  if (stored.size() != recalculated.size()) {
    return std::to_string(stored.size()) + " readings, " + std::to_string(recalculated.size()) +
           " after recalculation";
  }
  for (std::size_t row = 0; row < stored.size(); ++row) {
    for (std::size_t column = 0; column < stored[row].size(); ++column) {
      if (stored[row][column] != recalculated[row][column]) {
        return "recalculation changes column " + std::to_string(column) + " of reading " + stored[row][0];
      }
    }
  }
  return {};
}

bool is_wanted(const Module_samples::SampleFile& file) {
  const std::string station = file.name.substr(7, 4);
  const char repeat = file.name[13];
  return station <= "0300" && repeat <= '2';
}

}  // namespace

std::string make_soak_survey(const TemporaryFolder& folder) {
  std::vector<std::string> files;
  for (const Module_samples::SampleFile& file : Module_samples::make_sample_survey()) {
    if (is_wanted(file)) {
      files.push_back(folder.write("field/" + file.name, file.text));
    }
  }
  static_cast<void>(folder.write("text.mdb", "line,station\n200E,100\n"));
  static_cast<void>(folder.write("empty.mdb", ""));
  static_cast<void>(made::write_results(folder, "run/"));
  static_cast<void>(folder.write("run/points.xyz", "-100 0\n105 5\n120 12\n150 3\n260 -4\n"));

  Module_data_file::ImportChoices choices;
  choices.ReferenceType = 0;
  choices.ReductionType = 0;
  choices.decode[Module_data_file::decode_line_number] = {true, 2, 4, ""};
  choices.decode[Module_data_file::decode_event] = {true, 14, 1, ""};
  choices.decode[Module_data_file::decode_sample_rate] = {true, 17, 4, ""};
  choices.sectid_as_station = true;
  Module_data_file::ImportReport report;
  std::string survey = folder.path("survey.mdb");
  session().database_file = survey;
  if (Module_database::create_database() != 0 || Module_database::open_database() != 0 ||
      run_import(choices, files, Module_data_file::ImportMode::import, report) != 0 ||
      Module_database::close_database() != 0) {
    throw std::runtime_error("the survey can't be made");
  }
  return survey;
}

std::string fault_of_open_survey() {
  const std::string survey = session().database_file;
  const Table integrity = rows_of(survey, "PRAGMA integrity_check");
  if (integrity != Table{{"ok"}}) {
    return "integrity check: " + integrity.at(0).at(0);
  }
  const Table lengths = rows_of(survey,
                                "SELECT ID FROM ReadingsDataTable WHERE NumFields IS NOT 20 "
                                "OR length(FreqBinary) IS NOT 4 * NumFrequencies "
                                "OR length(DataBinary) IS NOT 80 * NumFrequencies "
                                "OR length(MaskBinary) IS NOT 8 * NumFrequencies");
  if (!lengths.empty()) {
    return "array lengths of reading " + lengths[0][0];
  }
  const char* const readings = "SELECT * FROM ReadingsDataTable ORDER BY ID";
  const Table stored = rows_of(survey, readings);
  if (Module_averaged_data::recalculate_merged() != 0) {
    return "recalculation fails";
  }
  return first_difference(stored, rows_of(survey, readings));
}
