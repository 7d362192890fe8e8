// import_fixture.h: an open survey and choices with which files are imported into it.
#pragma once
#include <string>
#include <vector>

#include "import/import_run.h"
#include "tests/support/survey_fixture.h"

class ImportRun : public SurveyTest {
 protected:
  ImportRun() {
    using namespace Module_data_file;
    new_survey();
    choices.ReferenceType = 1;
    choices.ReductionType = 0;
    choices.decode[decode_line_number].specified = "200";
    choices.decode[decode_event].specified = "0";
    choices.decode[decode_sample_rate].specified = "0.1";
    choices.start_station = "1250.4";
    choices.station_step = "33.3";
  }

  int import(const std::vector<std::string>& files,
             Module_data_file::ImportMode mode = Module_data_file::ImportMode::import) {
    return run_import(choices, files, mode, report);
  }

  /// Stations in the order in which they were created.
  static std::vector<double> stations() { return column_of("Station", "StationsTable"); }

  /// The values of a column of numbers in the order of the rows.
  static std::vector<double> column_of(const std::string& column, const std::string& table) {
    std::vector<double> values;
    dao::Recordset rows = Module_database::open_survey().database.open_recordset("SELECT * FROM " + table);
    for (; !rows.eof(); rows.move_next()) {
      values.push_back(rows.get_double(column));
    }
    return values;
  }

  static std::int32_t raw_readings() { return rows_in("ReadingsDataTable WHERE FileID > 0"); }

  /// Whether a remark on a file of the last run holds the text.
  [[nodiscard]] bool told(std::size_t file, const std::string& text) const {
    for (const std::string& line : Module_data_file::remark_lines(report.files.at(file))) {
      if (line.find(text) != std::string::npos) {
        return true;
      }
    }
    return false;
  }

  Module_data_file::ImportChoices choices;
  Module_data_file::ImportReport report;
};
