// edited_survey.h: an open survey of imported files, and all that it holds as text.
#pragma once
#include <algorithm>
#include <string>
#include <vector>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "database/reading_facts.h"
#include "database/sites.h"
#include "database/stations.h"
#include "import/import_run.h"
#include "reduction/averages.h"
#include "survey_edits/remove_readings.h"
#include "survey_edits/undo_removal.h"
#include "tests/formats/edi/made_edi.h"
#include "tests/support/survey_fixture.h"

class EditedSurvey : public SurveyTest {
 protected:
  struct MadeFile {
    std::string name;
    std::string line;
    std::vector<std::string> stations;
    int event = 1;
    std::string rho = "10 20 30";
    std::string frequencies = "100. 10. 1.";
    std::string rate = "256";
  };

  /// Two lines that cross at (200, 300); on the first one repeats of different length at two scan rates.
  static std::vector<MadeFile> lines() {
    return {{"a.edi", "200E", {"100", "300"}},
            {"b.edi", "200E", {"100", "300"}, 2, "40 50 60", "90. 10. 1."},
            {"fast.edi", "200e", {"100"}, 1, "70 80 90", "4000. 100. 10.", "4096"},
            {"cross.edi", "300N", {"200", "500"}, 1, "11 12 13"},
            {"c.edi", "200E", {"300"}, 3, "77 88 99"}};
  }

  std::string new_survey(const std::string& name = "survey.mdb") {
    EXPECT_EQ(Module_database::close_database(), 0);
    return SurveyTest::new_survey(name);
  }

  int import(const MadeFile& file) {
    using namespace Module_data_file;
    std::vector<MadeSection> sections;
    for (const std::string& station : file.stations) {
      sections.push_back({station, 3, file.frequencies,
                          ">RHOXY //3\n" + file.rho + "\n>PHSXY //3\n45 44 43\n>RHOYX //3\n" + file.rho +
                              "\n>PHSYX //3\n35 34 33\n"});
    }
    ImportChoices choices;
    choices.ReferenceType = 0;
    choices.ReductionType = 0;
    choices.decode[decode_line_number].specified = file.line;
    choices.decode[decode_event].specified = std::to_string(file.event);
    choices.decode[decode_sample_rate].specified = file.rate;
    choices.stations_by = StationsBy::sectid;
    ImportReport report;
    const int result = run_import(choices, {folder.write(file.name, made_edi(sections))}, ImportMode::import,
                                  report, {}, SharedStations::tell);
    know_more_of(file);
    return result;
  }

  void import_all(const std::vector<MadeFile>& files) {
    for (const MadeFile& file : files) {
      ASSERT_EQ(import(file), 0) << file.name;
    }
  }

  /// Gives the stations of a file a site, and its readings errors.
  static void know_more_of(const MadeFile& file) {
    using namespace Module_database;
    for (const std::string& station : file.stations) {
      keep_site({upper_case(file.line), std::stod(station), "site " + station, -20.0, 139.0, 7.0, "WGS84",
                 ey_sign_by_rule, file.name});
    }
    dao::Recordset rows = open_survey().database.open_recordset(
        "SELECT * FROM ReadingsDataTable WHERE FileID IN (SELECT ID FROM FileTable WHERE SurveyFile = '" +
        file.name + "')");
    for (; !rows.eof(); rows.move_next()) {
      StoredReading reading = read_reading(rows);
      reading.curve.error_at(field_resistivity, 0) = static_cast<float>(file.event);
      write_facts(reading.ID, reading.curve, {ey_turned, 3.0F});
    }
    EXPECT_EQ(Module_averaged_data::recalculate_merged(), 0);  // with these facts
  }

  /// One row as text, with bytes as they are; without numbers that refer to rows if these don't matter.
  static std::string row_text(const dao::Recordset& row, const std::vector<dao::Column>& columns,
                              bool with_IDs) {
    std::string text;
    for (const dao::Column& column : columns) {
      const bool is_number_of_row = column.name.ends_with("ID");
      if (is_number_of_row && !with_IDs) {
        continue;
      }
      text += '|' + column.name + '=';
      if (row.is_null(column.name)) {
        text += "null";
      } else if (column.type == dao::ColumnType::text) {
        text += row.get_text(column.name);
      } else if (column.type == dao::ColumnType::long_binary) {
        for (const std::byte byte : row.get_binary(column.name)) {
          text += std::to_string(static_cast<int>(byte)) + ' ';
        }
      } else if (column.type == dao::ColumnType::bit) {
        text += row.get_bit(column.name) ? "1" : "0";
      } else if (column.type == dao::ColumnType::date_time) {
        text += criterion_text(row.get_date(column.name));
      } else {
        text += criterion_text(row.get_double(column.name));
      }
    }
    return text;
  }

  /// All rows of all tables, with their numbers.
  static std::vector<std::string> everything() {
    dao::Database& database = Module_database::open_survey().database;
    std::vector<std::string> rows_of_all;
    for (const std::string& table : database.table_names()) {
      dao::Recordset rows = database.open_recordset("SELECT * FROM [" + table + "]");
      for (; !rows.eof(); rows.move_next()) {
        rows_of_all.push_back(table + row_text(rows, database.columns(table), true));
      }
    }
    return rows_of_all;
  }

  static std::string referred(const std::string& table, std::int32_t ID) {
    dao::Database& database = Module_database::open_survey().database;
    const dao::Recordset row =
        database.open_recordset("SELECT * FROM " + table + " WHERE ID = " + std::to_string(ID));
    return row.eof() ? "(none)" : row_text(row, database.columns(table), false);
  }

  /// The same without the frequency lists, each row with the rows that it refers to in place of their
  /// numbers.
  static std::vector<std::string> meaning() {
    dao::Database& database = Module_database::open_survey().database;
    std::vector<std::string> all;
    for (const std::string& table : database.table_names()) {
      if (table == "ReadingsFrequencyTable") {
        continue;
      }
      dao::Recordset rows = database.open_recordset("SELECT * FROM [" + table + "]");
      for (; !rows.eof(); rows.move_next()) {
        std::string text = table + row_text(rows, database.columns(table), false);
        if (table == "ReadingsDataTable") {
          text += " of " + referred("FileTable", rows.get_long("FileID")) + " at " +
                  referred("StationsTable", rows.get_long("StationID")) + " in " +
                  referred("LocationLookupTable", rows.get_long("LocationID"));
        } else if (table == "ReadingFactsTable") {
          text += " of " + referred("ReadingsDataTable", rows.get_long("ReadingID"));
        }
        all.push_back(std::move(text));
      }
    }
    std::ranges::sort(all);
    return all;
  }

  /// What only one of two surveys has, cut short.
  static std::string difference(const std::vector<std::string>& one, const std::vector<std::string>& other) {
    std::string text;
    const auto add = [&](const std::vector<std::string>& rows, const std::vector<std::string>& without,
                         const char* sign) {
      for (const std::string& row : rows) {
        if (std::ranges::count(rows, row) != std::ranges::count(without, row)) {
          text += sign + row.substr(0, 300) + '\n';
        }
      }
    };
    add(one, other, "- ");
    add(other, one, "+ ");
    return text;
  }

  using Choose = void (*)(const Module_survey_edits::SurveyContents&, Module_survey_edits::Choice&);

  static Module_survey_edits::RemovalPlan remove(Choose choose) {
    const auto contents = Module_survey_edits::survey_contents();
    Module_survey_edits::Choice choice;
    choose(contents, choice);
    auto plan = Module_survey_edits::plan_removal(contents, choice);
    EXPECT_EQ(Module_survey_edits::remove_readings(contents, plan), Module_averaged_data::Outcome::finished);
    return plan;
  }

  static std::string undo() {
    std::string told;
    EXPECT_EQ(Module_survey_edits::undo_removal(told), Module_averaged_data::Outcome::finished);
    return told;
  }

  template <std::size_t Size>
  static void take_file(const Module_survey_edits::SurveyContents& contents,
                        Module_survey_edits::Choice& choice, const char (&name)[Size]) {
    const auto files = Module_survey_edits::files_named(contents, name);
    choice.files.insert(files.begin(), files.end());
  }
};
