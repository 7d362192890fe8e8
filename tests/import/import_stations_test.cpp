// Which station a section comes to: counted on, named by the file, or the next free one; and sites that come
// to one station.
#include <algorithm>

#include "tests/formats/edi/made_edi.h"
#include "tests/import/import_fixture.h"
#include "tests/import/readers/made_fields.h"

using namespace Module_data_file;

namespace {

using Module_database::open_survey;

class ImportStations : public ImportRun {
 protected:
  ImportStations() {
    choices.start_station = "1000";
    choices.station_step = "50";
  }

  /// A file of one section for each SECTID; an empty one is left out of its section.
  std::string add(const std::string& name, const std::vector<std::string>& sectids,
                  const std::string& dataid = "") {
    std::vector<MadeSection> sections;
    sections.reserve(sectids.size());
    for (const std::string& sectid : sectids) {
      sections.push_back({.sectid = sectid.empty() ? "?" : sectid});
    }
    const std::string text = replaced(made_edi(sections), "  SECTID=?\n", "");
    return folder.write(name, dataid.empty() ? replaced(text, "  DATAID=\"MADE\"\n", "")
                                             : replaced(text, "\"MADE\"", "\"" + dataid + "\""));
  }

  /// Stations of a file's raw readings, in order.
  static std::vector<double> stations_of(const std::string& survey_file) {
    dao::Recordset& files = open_survey().files;
    files.find_first("SurveyFile = '" + survey_file + "'");
    if (files.no_match()) {
      ADD_FAILURE() << "no file " << survey_file;
      return {};
    }
    std::vector<double> values =
        column_of("Station", "ReadingsDataTable WHERE DataType = 'ExHy' AND FileID = " +
                                 std::to_string(files.get_long("ID")) + " ORDER BY Station");
    return values;
  }

  static double header_station(const std::string& survey_file) {
    dao::Recordset& files = open_survey().files;
    files.find_first("SurveyFile = '" + survey_file + "'");
    return files.get_double("Station");
  }
};

const std::string em1dfm =
    "Frequency Domain EM Data, version 1\nline 300E survey\nStation no. 7000 5001.5 7002.5 88 1\n"
    " 100  both  0 0 12.5 3.5 9 0.1 0.2\n";

}  // namespace

TEST_F(ImportStations, Files_of_other_kinds_leave_the_count_of_stations_alone) {
  choices.decode[decode_sample_rate].specified = "4096";
  const std::vector<std::string> files{
      folder.write("1.edi", made_edi()),
      folder.write("2_note.txt", "some notes\non several\nlines\n"),
      folder.write("3.res",
                   replaced(made_fixed_columns({{16.0, 0.25, {1e-4, 2e-4}, {}}, {1024.0, 0.5, {}, {}}}),
                            "   50  100", "   25   75")),
      folder.write("4.edi", made_edi()),
      folder.write("5.dat", em1dfm),
      folder.write("6.edi", replaced(made_spectra({{10.0, {1.0, 40.0, -30.0, 2.0}}}, channels_by_id()),
                                     "CHTYPE=EY", "CHTYPE=E9")),  // gives no reading
      folder.write("7.edi", made_edi()),
  };
  ASSERT_EQ(import(files), 0);
  EXPECT_EQ(stations_of("1.edi"), std::vector<double>{1000});
  EXPECT_EQ(stations_of("3.res"), std::vector<double>{1250});
  EXPECT_EQ(stations_of("4.edi"), std::vector<double>{1050});
  EXPECT_EQ(stations_of("5.dat"), std::vector<double>{});  // of another type of data
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE Station = 7000 AND DataType = 'QP' AND FileID > 0"), 1);
  EXPECT_EQ(stations_of("7.edi"), std::vector<double>{1100});
  for (const char* const name : {"1.edi", "4.edi", "7.edi"}) {
    SCOPED_TRACE(name);
    EXPECT_EQ(rows_in("FileTable WHERE SurveyFile = '" + std::string(name) +
                      "' AND DipoleLength = 50 AND StationSpacing = 50"),
              1);
  }
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE Station < 1200 AND DipoleLength <> 50"), 0);
  EXPECT_EQ(rows_in("FileTable WHERE SurveyFile = '2_note.txt'"), 0);
  ImportReport imported = report;
  ASSERT_EQ(import(files, ImportMode::scan), 0);
  ASSERT_EQ(report.stations.size(), imported.stations.size());
  for (std::size_t index = 0; index < report.stations.size(); ++index) {
    EXPECT_EQ(report.stations[index].Station, imported.stations[index].Station);
  }
}

TEST_F(ImportStations, The_header_has_the_station_of_the_first_section) {
  choices.stations_by = StationsBy::sectid;
  const std::string spectra =
      replaced(made_spectra({{10.0, {1.0, 40.0, -30.0, 2.0}}}, channels_by_id()), "\"12\"", "\"40\"");
  ASSERT_EQ(import({add("a.edi", {"300", "400"}), add("b.edi", {"100"}), folder.write("s.edi", spectra)}), 0);
  EXPECT_EQ(header_station("a.edi"), 300);
  EXPECT_EQ(header_station("b.edi"), 100);
  EXPECT_EQ(header_station("s.edi"), 40);
  EXPECT_EQ(rows_in("FileTable"), 3);
  choices.stations_by = StationsBy::count;
  ASSERT_EQ(import({add("c.edi", {"300", "400"})}), 0);
  EXPECT_EQ(header_station("c.edi"), 1000);
}

TEST_F(ImportStations, A_section_without_SECTID_takes_the_next_free_station) {
  choices.stations_by = StationsBy::sectid;
  choices.start_station = "";
  choices.station_step = "100";
  ASSERT_EQ(import({add("earlier.edi", {"0"})}), 0);
  const std::vector<std::string> files{add("a.edi", {"300"}), add("b.edi", {""}),
                                       add("c.edi", {"", "500", ""}), add("d.edi", {"\"\""}),
                                       add("e.edi", {"100"})};
  const auto expect_stations = [&] {
    EXPECT_EQ(stations_of("a.edi"), std::vector<double>{300});
    EXPECT_EQ(stations_of("b.edi"), std::vector<double>{200}) << "0 is in the survey, 100 in a file behind";
    EXPECT_EQ(stations_of("c.edi"), (std::vector<double>{400, 500, 600}));
    EXPECT_EQ(stations_of("d.edi"), std::vector<double>{700});
    EXPECT_EQ(stations_of("e.edi"), std::vector<double>{100});
  };
  ASSERT_EQ(import(files, ImportMode::scan), 0);
  std::vector<double> scanned;
  for (const ScannedStation& station : report.stations) {
    scanned.push_back(station.Station);
  }
  EXPECT_EQ(scanned, (std::vector<double>{300, 200, 400, 500, 600, 700, 100}));
  EXPECT_EQ(raw_readings(), 4);
  for (int round = 0; round < 2; ++round) {  // again: each file gets its own stations back
    SCOPED_TRACE(round);
    ASSERT_EQ(import(files), 0);
    expect_stations();
    EXPECT_TRUE(told(1, "section 1 has no SECTID; it takes station 200, the next free one"));
    EXPECT_TRUE(told(2, "section 3 has no SECTID; it takes station 600, the next free one"));
    EXPECT_EQ(raw_readings(), 4 * 8);
  }
  EXPECT_EQ(header_station("c.edi"), 400);
}

TEST_F(ImportStations, The_name_in_the_head_comes_before_the_next_free_station) {
  choices.stations_by = StationsBy::sectid;
  choices.start_station = "50";
  ASSERT_EQ(import({add("a.edi", {""}, "12"), add("b.edi", {"", ""}, "13"), add("c.edi", {""}, "MT14")}), 0);
  EXPECT_EQ(stations_of("a.edi"), std::vector<double>{12});
  EXPECT_TRUE(told(0, "section 1 has no SECTID; it takes station 12 from DATAID '12'"));
  EXPECT_EQ(stations_of("b.edi"), (std::vector<double>{50, 100}))
      << "the head names the file, not its sections";
  EXPECT_EQ(stations_of("c.edi"), std::vector<double>{150});
  const std::string words_in_info =
      replaced(made_edi({{.sectid = "?"}}), ">=DEFINEMEAS", ">INFO\n>=MTSECT is explained\n>=DEFINEMEAS");
  ASSERT_EQ(
      import({folder.write("w.edi", replaced(replaced(words_in_info, "  SECTID=?\n", ""), "MADE", "15"))}),
      0);
  EXPECT_EQ(stations_of("w.edi"), std::vector<double>{15}) << "text of the head is no section";
  choices.stations_by = StationsBy::sectid_digits;
  ASSERT_EQ(import({folder.path("c.edi")}), 0);
  EXPECT_EQ(stations_of("c.edi"), std::vector<double>{14});
  // Of several files the first one, whatever the others are called; not where another one is.
  ASSERT_EQ(import({add("d.edi", {""}, "X21"), add("e.edi", {""}, "Y21"), add("f.edi", {""}, "X21"),
                    add("g.edi", {""}, "Z22"), add("h.edi", {"X22"}), add("i.edi", {""}, "Y14")}),
            0);
  EXPECT_EQ(stations_of("d.edi"), std::vector<double>{21});
  EXPECT_EQ(stations_of("e.edi"), std::vector<double>{200});
  EXPECT_EQ(stations_of("f.edi"), std::vector<double>{250});
  EXPECT_EQ(stations_of("g.edi"), std::vector<double>{300}) << "22 is in a file behind";
  EXPECT_EQ(stations_of("i.edi"), std::vector<double>{350}) << "14 is in the survey";
  EXPECT_TRUE(report.shared_stations.empty());
  ASSERT_EQ(import({folder.path("f.edi")}), 0);
  EXPECT_EQ(stations_of("f.edi"), std::vector<double>{250}) << "its own again";
}

TEST_F(ImportStations, The_last_digits_of_SECTID_are_the_station) {
  choices.stations_by = StationsBy::sectid_digits;
  std::vector<std::string> files;
  std::vector<double> expected;
  for (int number = 1; number <= 87; ++number) {
    const std::string digits = std::to_string(1000 + number).substr(1);
    files.push_back(add(digits + ".edi", {"\"Z2HX" + digits + "\""}));
    expected.push_back(number);
  }
  ASSERT_EQ(import(files), 0);
  EXPECT_EQ(stations(), expected);
  EXPECT_TRUE(report.shared_stations.empty());
  EXPECT_FALSE(report.has_remarks());
}

TEST_F(ImportStations, Two_sites_on_one_station_are_named) {
  choices.stations_by = StationsBy::sectid_digits;
  const std::vector<std::string> files{add("a.edi", {"\"Z2HX7\""}), add("b.edi", {"\"Z2HX7\""}),
                                       add("c.edi", {"\"ET7\""}), add("d.edi", {"\"ET8\""})};
  for (const ImportMode mode : {ImportMode::scan, ImportMode::import, ImportMode::import}) {
    SCOPED_TRACE(static_cast<int>(mode));
    ASSERT_EQ(import(files, mode), 0);
    ASSERT_EQ(report.shared_stations.size(), 1U);
    EXPECT_EQ(report.shared_stations.at(0).text(), "Station 7 of line 200E: Z2HX7 (a.edi), ET7 (c.edi)");
    EXPECT_TRUE(told(2, "ET7 comes to station 7 of line 200E, as does Z2HX7 (a.edi)"));
    EXPECT_FALSE(told(1, "comes to station"));
    EXPECT_FALSE(report.has_failures());
  }
  // A later import of another site, and one that goes by a counted station.
  ASSERT_EQ(import({add("e.edi", {"\"Q9HX8\""})}), 0);
  ASSERT_EQ(report.shared_stations.size(), 1U);
  EXPECT_EQ(report.shared_stations.at(0).text(),
            "Station 8 of line 200E: Q9HX8 (e.edi), d.edi in the survey");
  choices.stations_by = StationsBy::count;
  choices.start_station = "8";
  ASSERT_EQ(import({add("Q9HX8_second.edi", {"\"Q9HX8\""})}), 0);
  EXPECT_EQ(report.shared_stations.at(0).text(),
            "Station 8 of line 200E: Q9HX8 (Q9HX8_second.edi), d.edi in the survey, e.edi in the survey");
  choices.start_station = "9";
  ASSERT_EQ(import({add("f.edi", {""}), add("g.edi", {""}, "SITE")}), 0);
  EXPECT_TRUE(report.shared_stations.empty());
  choices.start_station = "60";
  ASSERT_EQ(import({add("X200.edi", {"\"ET9\""})}), 0);
  ASSERT_EQ(import({add("Y.edi", {"\"X20\""})}), 0);
  ASSERT_EQ(report.shared_stations.size(), 1U) << "X200 is no file of X20";
  choices.start_station = "";
  choices.stations_by = StationsBy::sectid_digits;
  ASSERT_EQ(import({add("SITE_day1.edi", {"\"SITE59\""}), folder.path("f.edi")}), 0);
  ASSERT_EQ(report.shared_stations.size(), 1U) << "g.edi is another file";
}

TEST_F(ImportStations, Sharing_a_station_is_asked_before_anything_is_stored) {
  choices.stations_by = StationsBy::sectid_digits;
  const std::vector<std::string> files{add("a.edi", {"\"Z2HX7\""}), add("b.edi", {"\"ET7\""}),
                                       folder.write("c.edi", "no field file\n")};
  const auto import_asking = [&] {
    return run_import(choices, files, ImportMode::import, report, {}, SharedStations::ask);
  };
  EXPECT_EQ(import_asking(), 0);  // the answer is No
  ASSERT_EQ(interface->questions.size(), 1U);
  EXPECT_EQ(interface->questions.at(0),
            "Different sites come to one line and station.\n"
            "Station 7 of line 200E: Z2HX7 (a.edi), ET7 (b.edi)\n"
            "Take them as repeats of one station?");
  EXPECT_TRUE(report.files.empty());
  EXPECT_EQ(rows_in("FileTable") + rows_in("StationsTable") + rows_in("ReadingsDataTable"), 0);
  EXPECT_TRUE(interface.take_messages().empty()) << "the look at the files shows none";
  interface->yes_no_answers = {true};
  EXPECT_EQ(import_asking(), 0);
  EXPECT_EQ(raw_readings(), 8);
  EXPECT_EQ(report.shared_stations.size(), 1U);
  EXPECT_EQ(interface->questions.size(), 2U);
  choices.stations_by = StationsBy::count;
  choices.start_station = "100";
  EXPECT_EQ(import_asking(), 0);
  EXPECT_EQ(interface->questions.size(), 2U) << "each site has a station";
}
