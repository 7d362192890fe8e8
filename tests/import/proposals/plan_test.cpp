// The plan of an import: it is what an import stores, with and without it, and what the user types into it.
#include <filesystem>
#include <map>
#include <set>
#include <sstream>

#include "import/proposals/plan_table.h"
#include "tests/formats/zonge/made_zonge_raw.h"
#include "tests/import/made_site_files.h"
#include "tests/import/proposals/planned_import.h"
#include "tests/import/readers/made_fields.h"

using namespace Module_data_file;

namespace {

const std::string field_data = std::string(BRENLOX_FIELD_DATA) + "/edi";

std::string with_bytes(const dao::Recordset& row, const char* field) {
  const auto bytes = row.get_binary(field);
  return std::to_string(bytes.size()) + ":" +
         std::to_string(
             std::hash<std::string_view>{}({reinterpret_cast<const char*>(bytes.data()), bytes.size()}));
}

/// All that an import has written, row by row.
std::vector<std::string> contents_of_survey() {
  std::vector<std::string> rows;
  const auto add_rows = [&](const std::string& table, const std::vector<const char*>& texts,
                            const std::vector<const char*>& numbers,
                            const std::vector<const char*>& binaries) {
    dao::Recordset row =
        Module_database::open_survey().database.open_recordset("SELECT * FROM " + table + " ORDER BY ID");
    for (; !row.eof(); row.move_next()) {
      std::ostringstream line;
      line << table;
      for (const char* const field : texts) line << '|' << row.get_text(field);
      for (const char* const field : numbers) line << '|' << row.get_double(field);
      for (const char* const field : binaries) line << '|' << with_bytes(row, field);
      rows.push_back(line.str());
    }
  };
  add_rows("FileTable", {"SurveyFile", "LineNumber"},
           {"ID", "Station", "EventNumber", "SampleRate", "DipoleLength", "StationSpacing"}, {});
  add_rows("ReadingsDataTable", {"LineNumber", "DataType"},
           {"FileID", "StationID", "Station", "EventNumber", "SampleRate", "DipoleLength", "ReductionType"},
           {"FreqBinary", "DataBinary", "MaskBinary"});
  add_rows("StationsTable", {"SurveyLine"}, {"Station", "LocalX", "MapX", "MapY", "Elevation"}, {});
  return rows;
}

/// Line, station and rate of the rows that are stored, each once.
std::set<std::string> keys_of(const ImportPlan& plan, const std::vector<ScannedFile>& files) {
  std::set<std::string> keys;
  const auto add = [&](const std::string& line, double station, float rate) {
    std::ostringstream key;
    key << line << ' ' << station << ' ' << rate;
    keys.insert(key.str());
  };
  for (const PlannedSection& row : plan.sections) {
    if (row.is_stored && row.own_stations == 0) {
      add(row.line, row.station, row.rate);
    }
    for (const OwnStation& own : files[row.file_index].own_stations) {
      if (row.is_stored) {
        add(own.line.empty() ? row.line : own.line, own.station, own.rate > 0.0F ? own.rate : row.rate);
      }
    }
  }
  return keys;
}

std::set<std::string> keys_of(const ImportReport& report) {
  std::set<std::string> keys;
  for (const ScannedStation& found : report.stations) {
    std::ostringstream key;
    key << found.LineNumber << ' ' << found.Station << ' ' << found.SampleRate;
    keys.insert(key.str());
  }
  return keys;
}

class PlanOfImport : public PlannedImport {
 protected:
  /// Files of all kinds, with every oddity that changes which row a section comes to.
  std::vector<std::string> mixed_folder() const {
    const std::string impedances = ">ZYXR //3\n-1 -2 -3\n>ZYXI //3\n-1 -2 -3\n";
    const auto nameless = [](const std::string& dataid) {
      return replaced(replaced(made_edi({MadeSection{.sectid = "?"}}), "  SECTID=?\n", ""), "\"MADE\"",
                      "\"" + dataid + "\"");
    };
    std::vector<std::string> files{
        site("n/01.edi", "ET300", "-30", "139"),
        site("s/01.edi", "ET301", "-30.1", "139.2"),
        folder.write("two.edi", made_edi({MadeSection{.sectid = "\"7\""}, MadeSection{.sectid = "\"B8\""},
                                          MadeSection{.sectid = "\"\""}})),
        folder.write("head.edi", nameless("12")),
        folder.write("none.edi", nameless("SITE")),
        folder.write("z.edi", made_edi({MadeSection{.sectid = "9", .blocks = impedances}})),
        folder.write("junk.txt", "some notes\n"),
        folder.write("s.edi", made_spectra({{10.0, {1.0, 40.0, -30.0, 2.0}}}, channels_by_id())),
        folder.write("lost.edi", replaced(made_spectra({{10.0, {1.0, 40.0, -30.0, 2.0}}}, channels_by_id()),
                                          "CHTYPE=EY", "CHTYPE=E9")),
        folder.write("f.res", made_fixed_columns({{16.0, 0.25, {1e-4, 2e-4}, {}}, {1024.0, 0.5, {}, {}}})),
        folder.write("g.res", made_fixed_columns({{16.0, 0.25, {1e-4, 2e-4}, {}}, {32.0, 0.5, {}, {}}})),
        folder.write(
            "1d.dat",
            "Frequency Domain EM Data, version 1\nline 300E survey\n"
            "Station no. 7000 5001.5 7002.5 88 1\n 100  both  0 0 12.5 3.5 9 0.1 0.2\n"
            "line 400E survey\nStation no. 7100 5101.5 7002.5 88 1\n 50  both  0 0 12.5 3.5 9 0.1 0.2\n"),
        folder.write("raw.raw", made_zonge_raw()),
        folder.write("a.xml", made_emtf_xml({.name = "MT21"})),
        folder.write("b.zmm", made_z_file({.name = "", .turned = true})),
        folder.write("c.j", made_j({.name = "301"})),
        folder.write("d.xml", made_emtf_xml().substr(0, 900)),
        site("last.edi", "ET13"),
        folder.path("gone.edi")};
    (void)folder.write("raw.stn", made_stn());
    files.push_back(files.front());
    return files;
  }
};

}  // namespace

// The strongest proof that the table tells the truth: what it says is what is stored, whoever works it out.
TEST_F(PlanOfImport, Is_what_an_import_stores_without_it) {
  const std::vector<std::string> files = mixed_folder();
  const std::vector<ScannedFile> looked = scanned(files);
  choices.decode[decode_sample_rate].specified = "4096";
  choices.start_station = "100";
  choices.station_step = "50";
  for (const StationsBy rule : {StationsBy::count, StationsBy::sectid, StationsBy::sectid_digits}) {
    const std::string name = std::to_string(static_cast<int>(rule)) + ".mdb";
    SCOPED_TRACE(name);
    choices.stations_by = rule;
    choices.own_rate_of_fixed_columns = rule != StationsBy::sectid;
    choices.turn_ey = choices.own_rate_of_fixed_columns ? TurnEy::where_needed : TurnEy::never;
    choices.compute_from_impedance = choices.own_rate_of_fixed_columns;
    ASSERT_EQ(Module_database::close_database(), 0);
    new_survey("plain" + name);
    const ImportPlan plan = PlanMaker().plan(looked, choices);
    for (int round = 0; round < 2; ++round) {  // the second time the survey has the files
      SCOPED_TRACE(round);
      ASSERT_EQ(import(files), 0);
      EXPECT_EQ(keys_of(plan, looked), keys_of(report));
      EXPECT_EQ(keys_of(PlanMaker().plan(looked, choices), looked), keys_of(report));
    }
    const std::vector<std::string> stored = contents_of_survey();
    ASSERT_EQ(Module_database::close_database(), 0);
    new_survey("planned" + name);
    for (int round = 0; round < 2; ++round) {
      const ImportPlan now = PlanMaker().plan(looked, choices);
      ASSERT_EQ(run_import(choices, files, ImportMode::import, report, {}, SharedStations::ask, &now), 0);
    }
    EXPECT_TRUE(interface->questions.empty()) << "the table has shown what is shared";
    EXPECT_EQ(contents_of_survey(), stored);
  }
}

TEST_F(PlanOfImport, Is_what_a_scan_of_real_files_finds) {
  if (!std::filesystem::is_directory(field_data)) {
    GTEST_SKIP() << "no field data beside the checkout";
  }
  std::vector<std::string> files = find_import_files(field_data, "edi");
  for (const char* const kind : {"emtf_xml", "zmm", "jformat"}) {
    std::ranges::copy(find_import_files(std::string(BRENLOX_FIELD_DATA) + "/exchange/" + kind, ""),
                      std::back_inserter(files));
  }
  const std::vector<ScannedFile> looked = scanned(files);
  for (const StationsBy rule : {StationsBy::count, StationsBy::sectid, StationsBy::sectid_digits}) {
    SCOPED_TRACE(static_cast<int>(rule));
    choices.stations_by = rule;
    choices.turn_ey = TurnEy::where_needed;
    ASSERT_EQ(import(files, ImportMode::scan), 0);
    const ImportPlan plan = PlanMaker().plan(looked, choices);
    EXPECT_EQ(keys_of(plan, looked), keys_of(report));
    std::map<std::size_t, std::int32_t> sections;
    std::map<std::size_t, std::int32_t> turned;
    for (const PlannedSection& row : plan.sections) {
      sections[row.file_index] += row.is_stored ? 1 : 0;
      turned[row.file_index] += row.is_stored && row.turn_ey ? 1 : 0;
    }
    for (std::size_t index = 0; index < files.size(); ++index) {
      EXPECT_EQ(sections[index], report.files[index].sections) << files[index];
      EXPECT_EQ(turned[index], report.files[index].sections_turned) << files[index];
    }
  }
}

TEST_F(PlanOfImport, Takes_what_is_typed_and_stores_it) {
  const std::vector<std::string> files{
      site("a.edi", "1"),
      folder.write("b.edi", made_edi({MadeSection{.sectid = "2"}, MadeSection{.sectid = "3"}})),
      folder.write("f.res", made_fixed_columns({{16.0, 0.25, {1e-4, 2e-4}, {}}, {1024.0, 0.5, {}, {}}}))};
  choices.stations_by = StationsBy::sectid;
  choices.own_rate_of_fixed_columns = true;
  const ImportPlan plain = plan_for(files, choices);
  std::vector<PlannedEdit> edits;
  const auto type = [&](std::size_t row, PlanColumn column, const char* text) {
    return edit_plan_cell(edits, plain.sections.at(row), column, text, LineDirection::local_north);
  };
  EXPECT_EQ(type(0, PlanColumn::line, "-40"), "");
  EXPECT_EQ(type(0, PlanColumn::turn_ey, "yes"), "");
  EXPECT_EQ(type(2, PlanColumn::station, "33.5"), "");
  EXPECT_EQ(type(2, PlanColumn::rate, "64"), "");
  EXPECT_EQ(type(3, PlanColumn::event, "4"), "");
  EXPECT_EQ(type(3, PlanColumn::station, "77"), "");
  EXPECT_EQ(type(1, PlanColumn::station, "5"), "");
  EXPECT_EQ(type(1, PlanColumn::station, " "), "");  // taken back
  EXPECT_NE(type(1, PlanColumn::station, "x5"), "");
  EXPECT_NE(type(1, PlanColumn::line, "5Q"), "");
  EXPECT_NE(type(1, PlanColumn::rate, "-5"), "");
  EXPECT_NE(type(1, PlanColumn::event, "2"), "") << "EDI files number their sections themselves";
  EXPECT_NE(type(3, PlanColumn::event, "1.5"), "");
  const ImportPlan plan = plan_for(files, choices, edits);
  EXPECT_EQ(planned_stations(plan), (std::vector<double>{1, 2, 33.5, 77}));
  ASSERT_EQ(run_import(choices, files, ImportMode::import, report, {}, SharedStations::tell, &plan), 0);
  const std::vector<const char*> stored{
      "LineNumber = '40S' AND Station = 1 AND EventNumber = 0", "LineNumber = '200E' AND Station = 2",
      "LineNumber = '200E' AND Station = 33.5 AND EventNumber = 1 AND SampleRate = 64",
      "LineNumber = '200E' AND Station = 77 AND EventNumber = 4 AND SampleRate = 4096"};
  for (const char* const row : stored) {
    EXPECT_EQ(rows_in("ReadingsDataTable WHERE FileID > 0 AND " + std::string(row)), 4) << row;
  }
  EXPECT_EQ(raw_readings(), 16);
  EXPECT_EQ(report.files.at(0).sections_turned, 1);
  EXPECT_EQ(report.files.at(1).sections_turned, 0);
}

TEST_F(PlanOfImport, Marks_what_is_wrong_and_sorts_it_first) {
  choices.stations_by = StationsBy::sectid_digits;
  ASSERT_EQ(import({site("old.edi", "OLD5")}), 0);
  const std::vector<std::string> files{
      site("fine.edi", "ET1", "-30", "139"),
      site("fine2.edi", "ET10", "-30", "139.08"),
      site("fine3.edi", "ET11", "-30", "139.09"),
      site("n/x.edi", "ET2", "-30", "139.01"),
      site("s/x.edi", "ET3", "-30", "139.02"),
      site("b.edi", "A4", "-30", "139.03"),
      site("c.edi", "B4", "-30", "139.04"),
      site("d.edi", "NEW5", "-30", "139.05"),
      folder.write("e.edi", made_edi({MadeSection{.sectid = "E6", .blocks = ">PHSYX //3\n-20 -30 -40\n"}})),
      site("far.edi", "F7", "30", "-139"),
      site("g.edi", "G8", "-30", "139.06"),
      site("h.edi", "G8", "-30", "139.07"),
      folder.write("i.edi", replaced(made_edi({MadeSection{.sectid = "I9"}}), ">FREQ", ">NONE")),
      folder.path("gone.edi")};
  const ImportPlan plan = plan_for(files, choices);
  const std::map<std::string, std::vector<PlanProblem>> expected{{"fine.edi", {}},
                                                                 {"fine2.edi", {}},
                                                                 {"fine3.edi", {}},
                                                                 {"n/x.edi", {PlanProblem::same_file_name}},
                                                                 {"s/x.edi", {PlanProblem::same_file_name}},
                                                                 {"b.edi", {PlanProblem::shared_station}},
                                                                 {"c.edi", {PlanProblem::shared_station}},
                                                                 {"d.edi", {PlanProblem::shared_station}},
                                                                 {"e.edi", {PlanProblem::negative_yx_phases}},
                                                                 {"far.edi", {PlanProblem::far_off_line}},
                                                                 {"g.edi", {PlanProblem::two_places}},
                                                                 {"h.edi", {PlanProblem::two_places}},
                                                                 {"i.edi", {PlanProblem::no_frequencies}},
                                                                 {"gone.edi", {PlanProblem::not_readable}}};
  ASSERT_EQ(plan.sections.size(), files.size());
  for (const PlannedSection& row : plan.sections) {
    const auto found = expected.find(row.file);
    ASSERT_NE(found, expected.end()) << row.file;
    EXPECT_EQ(row.problems, found->second) << row.file;
    EXPECT_EQ(row.remarks.empty(), row.problems.empty()) << row.file;
  }
  // Two sites on one station are at two places, too, which says nothing more.
  const std::vector<std::size_t> order = plan.display_order();
  EXPECT_EQ(plan.sections[order.front()].file, "gone.edi");
  EXPECT_EQ(plan.sections[order.back()].file, "fine3.edi");
  EXPECT_NE(plan_as_text(plan).find("\n!  gone.edi"), std::string::npos);
  EXPECT_NE(plan_as_text(plan).find("NEW5 (d.edi), old.edi in the survey"), std::string::npos);
}

TEST_F(PlanOfImport, Says_what_of_a_file_cannot_be_stored) {
  const std::vector<std::string> files{site("it's.edi", "1"), site("rate64.edi", "2"),
                                       site("ratexx.edi", "3")};
  const ImportPlan counted = plan_for(files, choices);
  EXPECT_EQ(counted.sections[0].problems, std::vector{PlanProblem::not_readable});
  EXPECT_EQ(
      counted.sections[0].remarks,
      std::vector<std::string>{"The name of the file has an apostrophe: rename the file to import it."});
  EXPECT_EQ(counted.sections[1].station, 1250.4) << "it takes no station";
  choices.decode[decode_sample_rate] = {true, 5, 2, ""};
  const ImportPlan cut = plan_for(files, choices);
  EXPECT_EQ(plan_cell_text(cut.sections[1], PlanColumn::rate), "64");
  EXPECT_TRUE(cut.sections[1].problems.empty());
  EXPECT_EQ(cut.sections[2].problems, std::vector{PlanProblem::no_rate});
  choices.ReductionType = 2;
  for (const PlannedSection& row : plan_for(files, choices).sections) {
    EXPECT_FALSE(row.is_stored && has(row, PlanProblem::no_rate));
    EXPECT_FALSE(row.is_stored && can_edit(row, PlanColumn::rate));
    EXPECT_EQ(plan_cell_text(row, PlanColumn::rate), row.is_stored ? "0" : "") << "merged curves have none";
  }
}

// They would be averaged into one another, station by station.
TEST_F(PlanOfImport, Marks_tables_of_two_lines_that_came_to_one) {
  const std::string avg =
      "skp Station Freq Comp Resistivity Phase\n 2 100 1 ExHy 10 500\n 2 150 1 ExHy 10 500\n";
  const auto problems = [&](const std::string& name, const std::string& of_a, const std::string& of_b) {
    std::vector<std::string> files;
    for (const auto& [file, stn] : {std::pair{"a", of_a}, std::pair{"b", of_b}}) {
      files.push_back(folder.write(name + "/" + file + ".avg", avg));
      if (!stn.empty()) {
        (void)folder.write(name + "/" + file + ".stn", stn);
      }
    }
    const ImportPlan plan = plan_for(files, choices);
    EXPECT_EQ(plan.sections.at(0).problems, plan.sections.at(1).problems);
    return plan.sections[0];
  };
  const std::string here = "100 1000 2000\n150 1050 2000\n";
  const PlannedSection apart = problems("apart", here, "100 1000 2300\n150 1050 2400\n");
  EXPECT_EQ(apart.problems, std::vector{PlanProblem::two_places});
  EXPECT_EQ(apart.remarks,
            std::vector<std::string>{"2 stations of line 200E in common with b.avg, up to 400 m apart"});
  EXPECT_EQ(problems("same", here, here).problems, std::vector<PlanProblem>{});
  EXPECT_EQ(problems("unplaced", here, "").problems, std::vector{PlanProblem::shared_station});
}
