#include <cmath>
#include <map>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/undo_stack.h"
#include "database/reading.h"
#include "import/report_groups.h"
#include "import/store_blocks.h"
#include "tests/formats/edi/made_edi.h"
#include "tests/import/import_fixture.h"

using namespace Module_data_file;
using Module_database::open_survey;
using Texts = std::vector<std::string>;

TEST_F(ImportRun, Stores_a_file_in_ascending_order_and_again_in_place) {
  const std::string file = folder.write("one.edi", made_edi());
  std::map<std::string, std::int32_t> rows;
  for (int round = 0; round < 2; ++round) {
    SCOPED_TRACE(round);
    ASSERT_EQ(import({file}), 0);
    EXPECT_TRUE(interface.take_messages().empty());
    EXPECT_FALSE(report.has_failures());
    EXPECT_EQ(report.files.at(0).readings, 4);
    EXPECT_EQ(report.files.at(0).frequencies, 3);
    for (const char* table : {"FileTable", "ReadingsDataTable", "StationsTable", "LocationLookupTable",
                              "ReadingsFrequencyTable"}) {
      const auto [entry, is_new] = rows.emplace(table, rows_in(table));
      EXPECT_EQ(entry->second, rows_in(table)) << table;
    }
  }
  EXPECT_EQ(rows["FileTable"], 1);
  EXPECT_EQ(raw_readings(), 4);
  EXPECT_GT(rows["ReadingsDataTable"], 4);  // with averages and merged curves

  dao::Recordset& readings = open_survey().readings;
  readings.find_first(
      "SampleRate = 0.1 AND DipoleLength = 33.3 AND Station = 1250.4 AND DataType = 'ExHy' AND FileID > 0");
  ASSERT_FALSE(readings.no_match());
  const Module_database::StoredReading reading = Module_database::read_reading(readings);
  EXPECT_EQ(reading.curve.frequencies, (std::vector<float>{1, 10, 100}));
  EXPECT_EQ(reading.curve.value(1, 0), 3.0F);
  EXPECT_EQ(reading.curve.value(2, 0), 30.0F);
  EXPECT_EQ(reading.curve.value(1, 2), 1.0F);
  EXPECT_EQ(reading.curve.mask, (std::vector<std::int32_t>{1, 1, 1, 0, 1, 1}));
  EXPECT_EQ(readings.get_text("LineNumber"), "200E");
  EXPECT_EQ(readings.get_single("MergeFrequency"), -1.0F);

  dao::Recordset& files = open_survey().files;
  files.move_first();
  EXPECT_EQ(files.get_text("SurveyFile"), "one.edi");
  EXPECT_EQ(files.get_text("Filter"), "EMIRes");
  EXPECT_EQ(files.get_date("DateCollected"), 43760.0);  // 22 October 2019
  EXPECT_EQ(files.get_date("DateAnalysed"), 43759.0);
  EXPECT_EQ(files.get_single("StationSpacing"), 33.3F);
  EXPECT_EQ(files.get_single("Orientation"), 12.5F);  // of the first section's HX

  dao::Recordset& places = open_survey().locations;
  places.move_first();
  EXPECT_EQ(places.get_double("MapX"), 22.0);  // its Y, which is east
  EXPECT_EQ(places.get_double("MapY"), 11.0);
  EXPECT_EQ(places.get_double("Elevation"), 33.0);
  EXPECT_EQ(places.get_double("LocalX"), 200.0);
}

TEST_F(ImportRun, Sections_make_a_line_of_stations_that_runs_on_from_file_to_file) {
  const std::string two = made_edi({MadeSection{}, MadeSection{}});
  ASSERT_EQ(import({folder.write("a.edi", two), folder.write("b.edi", two)}), 0);
  EXPECT_EQ(stations(), (std::vector<double>{1250.4, 1283.7, 1317, 1350.3}));
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE FileID > 0 AND EventNumber = 1"), 8);
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE FileID > 0 AND EventNumber = 0"), 8);
}

TEST_F(ImportRun, Takes_the_station_from_SECTID) {
  choices.stations_by = StationsBy::sectid;
  const std::vector<std::string> files{
      folder.write("a.edi", made_edi({MadeSection{.sectid = "\"858\""}, MadeSection{.sectid = "ET012_3"}}))};
  ASSERT_EQ(import(files), 0);
  EXPECT_EQ(stations(), (std::vector<double>{858, 0}));
  EXPECT_EQ(report.files.at(0).unreadable.size(), 1U);
  choices.stations_by = StationsBy::sectid_digits;
  ASSERT_EQ(import(files), 0);
  EXPECT_EQ(stations(), (std::vector<double>{858, 0, 3})) << "the last digits";
}

// 3 of 5 in -180..-90, 2 of 4, none present, and an impedance in the third quadrant.
TEST_F(ImportRun, Turns_Ey_where_more_than_half_of_the_phases_of_YX_say_so) {
  const auto with_phases = [](const std::string& phases) {
    return MadeSection{.count = 5,
                       .frequencies = "5 4 3 2 1",
                       .blocks = ">RHOYX //5\n1 2 3 4 5\n>PHSYX //5\n" + phases +
                                 "\n>RHOYY //5\n1 2 3 4 5\n>PHSYY //5\n10 10 10 10 10\n"};
  };
  const MadeSection impedance{
      .count = 5,
      .frequencies = "5 4 3 2 1",
      .blocks = ">ZYXR //5\n-1 -1 -1 1 1e32\n>ZYXI //5\n-1 -1 -2 1 1\n>ZYYR //5\n1 1 1 1 1\n"};
  const std::string file = folder.write(
      "a.edi",
      made_edi({with_phases("-135 190 -100 45 45"), with_phases("-135 -135 45 45 1e32"),
                with_phases("1e32 1e32 1e32 1e32 1e32"), with_phases("-80 -80 -80 -80 -80"), impedance}));
  const auto value = [](int event, const std::string& data_type, int field, std::size_t index) {
    dao::Recordset& readings = open_survey().readings;
    readings.find_first("FileID > 0 AND EventNumber = " + std::to_string(event) + " AND DataType = '" +
                        data_type + "'");
    EXPECT_FALSE(readings.no_match());
    return Module_database::read_reading(readings).curve.value(field, index);
  };
  choices.turn_ey = TurnEy::where_needed;
  ASSERT_EQ(import({file}, ImportMode::scan), 0);
  EXPECT_EQ(report.files.at(0).sections_turned, 2);
  ASSERT_EQ(import({file}), 0);
  EXPECT_EQ(report.files.at(0).sections_turned, 2);
  EXPECT_TRUE(report.has_remarks());
  EXPECT_NE(report.to_json().find("\"sections_turned\": 2"), std::string::npos);
  EXPECT_NE(report_text(report).find("Ey turned in 2 sections"), std::string::npos);
  EXPECT_EQ(value(0, "EyHx", 2, 4), 45.0F);    // at 5 Hz, -135 before
  EXPECT_EQ(value(0, "EyHx", 2, 0), -135.0F);  // at 1 Hz
  EXPECT_EQ(value(0, "EyHy", 2, 0), -170.0F);
  EXPECT_EQ(value(1, "EyHx", 2, 4), -135.0F);  // exactly half
  EXPECT_EQ(value(1, "EyHy", 2, 0), 10.0F);
  EXPECT_EQ(value(2, "EyHy", 2, 0), 10.0F);
  EXPECT_EQ(value(3, "EyHx", 2, 0), -80.0F);  // all negative, but not of a turned sign
  EXPECT_EQ(value(4, "EyHx", 9, 4), 1.0F);
  EXPECT_EQ(value(4, "EyHy", 9, 4), -1.0F);

  choices.turn_ey = TurnEy::always;
  ASSERT_EQ(import({file}), 0);
  EXPECT_EQ(report.files.at(0).sections_turned, 5);
  EXPECT_EQ(value(1, "EyHx", 2, 1), -135.0F);  // 45 before
  EXPECT_EQ(value(3, "EyHx", 2, 0), 100.0F);
  choices.turn_ey = TurnEy::never;
  ASSERT_EQ(import({file}), 0);
  EXPECT_EQ(report.files.at(0).sections_turned, 0);
  EXPECT_EQ(value(0, "EyHx", 2, 4), -135.0F);
  EXPECT_FALSE(report.files.at(0).all_yx_phases_negative);
  ASSERT_EQ(import({folder.write("grün.edi", made_edi({with_phases("-135 -80 -100 -45 1e32")}))}), 0);
  EXPECT_TRUE(report.files.at(0).all_yx_phases_negative);
  EXPECT_NE(report.to_json().find("grün.edi"), std::string::npos) << "letters as they are, not by number";
}

TEST_F(ImportRun, Frequencies_that_are_not_above_0_are_stored_and_told) {
  ASSERT_EQ(import({folder.write("a.edi", made_edi({MadeSection{.frequencies = "100. -10. 0"}}))}), 0);
  dao::Recordset& readings = open_survey().readings;
  readings.find_first("FileID > 0 AND DataType = 'ExHy'");
  EXPECT_EQ(Module_database::read_reading(readings).curve.frequencies, (std::vector<float>{-10, 0, 100}));
  ASSERT_EQ(report.files.at(0).unreadable.size(), 1U);
  EXPECT_NE(report.files.at(0).unreadable[0].text.find("2 frequencies are not above 0 Hz (-10"),
            std::string::npos)
      << report.files.at(0).unreadable[0].text;
}

TEST_F(ImportRun, Lengths_in_feet_are_told) {
  for (const char* unit : {"UNITS=FT", " units = \"feet\""}) {
    SCOPED_TRACE(unit);
    ASSERT_EQ(import({folder.write("a.edi", replaced(made_edi(), "UNITS=M", unit))}), 0);
    ASSERT_EQ(report.files.at(0).ignored.size(), 1U);
    EXPECT_NE(report.files.at(0).ignored[0].text.find("lengths in feet are taken as metres"),
              std::string::npos);
    EXPECT_EQ(report.files.at(0).ignored[0].line, 5);
  }
}

// The HX of these files stands at 12.5 degrees.
TEST_F(ImportRun, Impedances_in_axes_that_nobody_measured_in_are_told) {
  const auto file = [&](const std::string& rotation) {
    return folder.write(
        "a.edi", made_edi({MadeSection{.blocks = ">RHOXY //3\n1 2 3\n>PHSXY //3\n45 -45 30\n>ZROT //3\n0 0 " +
                                                 rotation + "\n"}}));
  };
  for (const char* const known : {"0", "360", "12.4", "-12.5", "347.5", "1e32"}) {
    report = {};
    ASSERT_EQ(import({file(known)}), 0);
    EXPECT_FALSE(told(0, "ZROT")) << known;
  }
  report = {};
  ASSERT_EQ(import({file("30")}), 0);
  EXPECT_TRUE(
      told(0, "ZROT is 30 degrees and the azimuth of HX 12.5: the axes of the impedances may be turned"));
}

TEST_F(ImportRun, Other_encodings_are_read_and_damage_and_compression_named) {
  std::string wide = "\xFF\xFE";
  for (const char c : made_edi()) {
    wide += {c, '\0'};
  }
  const std::string nul = replaced(made_edi(), "1 2 3", std::string("1 \0 3", 5));
  ASSERT_EQ(import({folder.write("wide.edi", wide), folder.write("nul.edi", nul),
                    folder.write("packed.edi", "\x1F\x8B\x08 and so on")}),
            0);
  EXPECT_EQ(report.files.at(0).readings, 4);
  EXPECT_FALSE(report.files.at(0).has_remarks());
  EXPECT_EQ(report.files.at(1).readings, 4);
  ASSERT_EQ(report.files.at(1).unreadable.size(), 2U);
  EXPECT_EQ(report.files.at(1).unreadable[0].text, "'?' is not a number, taken as absent");
  EXPECT_EQ(report.files.at(1).unreadable[1].text,
            "1 NUL byte where text belongs, read as '?'; the file may be damaged");
  EXPECT_TRUE(
      report.files.at(2).failure.ends_with("packed.edi is a compressed file (gzip); unpack it first"));
}

// A pipe would be waited for, and so would the whole run.
TEST_F(ImportRun, What_is_no_file_is_named_and_the_others_come_in) {
  const std::string pipe = folder.path("pipe.edi");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  ::alarm(60);
  for (const ImportMode mode : {ImportMode::scan, ImportMode::import}) {
    ASSERT_EQ(import({pipe, "/dev/zero", folder.write("good.edi", made_edi())}, mode), 0);
    EXPECT_EQ(report.files.at(0).failure, pipe + " is a pipe, not a file");
    EXPECT_EQ(report.files.at(1).failure, "/dev/zero is a device, not a file");
    EXPECT_EQ(report.files.at(2).readings, 4);
  }
  ::alarm(0);
  EXPECT_EQ(find_import_files(folder.folder().string(), "edi").size(), 2U);
}

TEST_F(ImportRun, A_scan_stores_nothing) {
  ASSERT_EQ(import({folder.write("a.edi", made_edi({MadeSection{}, MadeSection{}}))}, ImportMode::scan), 0);
  EXPECT_EQ(report.files.at(0).sections, 2);
  EXPECT_EQ(report.files.at(0).readings, 8);
  EXPECT_EQ(rows_in("FileTable") + rows_in("ReadingsDataTable") + rows_in("StationsTable"), 0);
  EXPECT_EQ(report.stations.size(), 2U);
}

TEST_F(ImportRun, A_bad_file_costs_no_other) {
  const std::vector<std::string> files{
      folder.path("none.edi"),
      folder.write("o'hara.edi", made_edi()),
      folder.write("empty.edi", ""),
      folder.write("spectra.edi", ">HEAD\n>=SPECTRASECT\n"),
      folder.write("binary.edi", std::string(1000, '\0')),
      folder.write("cut.edi", replaced(made_edi(), "45 -45 30\n>END\n", "45 ")),
      folder.folder().string(),
      folder.write("good.edi", made_edi()),
  };
  ASSERT_EQ(import(files), 0);
  ASSERT_EQ(report.files.size(), files.size());
  for (std::size_t index = 0; index + 1 < files.size(); ++index) {
    EXPECT_FALSE(report.files[index].failure.empty()) << files[index];
    EXPECT_EQ(report.files[index].readings, 0) << files[index];
  }
  EXPECT_TRUE(report.files.back().failure.empty());
  EXPECT_EQ(raw_readings(), 4);
  const std::vector<std::string> messages = interface.take_messages();
  ASSERT_FALSE(messages.empty());
  EXPECT_TRUE(messages[0].starts_with("An error occurred while string the header block: ")) << messages[0];
  EXPECT_TRUE(
      messages[0].ends_with(": The name of the file has an apostrophe: rename the file to import it."))
      << messages[0];
  EXPECT_EQ(report.files[1].failure, messages[0]);
  EXPECT_TRUE(report.files[2].failure.ends_with("empty.edi is empty")) << report.files[2].failure;
  EXPECT_EQ(messages.size(), 4U);  // none for the missing, cut and section-less ones, which the report names
}

TEST_F(ImportRun, Readings_that_lost_their_file_are_not_given_to_another) {
  ASSERT_EQ(import({folder.write("a.edi", made_edi()), folder.write("b.edi", made_edi())}), 0);
  open_survey().database.execute("DELETE FROM FileTable");
  open_survey().files.requery();
  choices.decode[decode_line_number].specified = "300";
  ASSERT_EQ(import({folder.write("c.edi", made_edi())}), 0);
  EXPECT_EQ(raw_readings(), 12);
}

TEST_F(ImportRun, A_station_that_loses_its_readings_keeps_no_curves) {
  const std::string file = folder.write("a.edi", made_edi());
  ASSERT_EQ(import({file}), 0);
  choices.start_station = "5000";
  ASSERT_EQ(import({file}), 0);
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE Station < 5000"), 0);
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE FileID < 0 AND Station = 5000"), 8);
  choices.ReductionType = 2;  // taken as merged: the computed curves rest on nothing any more
  ASSERT_EQ(import({file}), 0);
  EXPECT_EQ(rows_in("ReadingsDataTable"), 4);
}

// Curves of the keys that a file had before it came in again: without its values, or gone where they were
// all.
TEST_F(ImportRun, A_file_that_comes_again_under_another_key_leaves_no_stale_curves) {
  const auto with_value = [](const char* value) { return replaced(made_edi(), "1 2 3", value); };
  const auto derived = [](const std::string& more) {
    return rows_in("ReadingsDataTable WHERE FileID < 0 AND DataType = 'ExHy' AND " + more);
  };
  const auto value = [](const std::string& more) {
    dao::Recordset rows = open_survey().database.open_recordset(
        "SELECT * FROM ReadingsDataTable WHERE FileID < 0 AND DataType = 'ExHy' AND " + more);
    return rows.eof() ? -1.0F : Module_database::read_reading(rows).curve.value(1, 0);
  };
  const auto import_at = [&](const std::string& file, const char* rate) {
    choices.decode[decode_sample_rate].specified = rate;
    ASSERT_EQ(import({file}), 0);
  };
  const std::string first = folder.write("a.edi", with_value("10 10 10"));
  const std::string second = folder.write("b.edi", with_value("40 40 40"));
  import_at(first, "35200");
  import_at(second, "35200");
  const float both = value("ReductionType = 1");
  EXPECT_GT(both, 10.0F);
  EXPECT_LT(both, 40.0F);
  import_at(second, "100");
  EXPECT_EQ(report.files.at(0).replaced_readings, 4);
  EXPECT_NEAR(value("ReductionType = 1 AND SampleRate = 35200"), 10.0F, 1e-3F);
  EXPECT_NEAR(value("ReductionType = 1 AND SampleRate = 100"), 40.0F, 1e-3F);
  EXPECT_EQ(derived("ReductionType = 2"), 1);
  import_at(first, "100");  // nothing has the rate of before any more
  EXPECT_EQ(derived("ReductionType = 1 AND SampleRate = 35200"), 0);
  EXPECT_NEAR(value("ReductionType = 1"), both, 1e-3F);
  EXPECT_NEAR(value("ReductionType = 2"), both, 1e-3F);
  choices.ReferenceType = 0;  // a key of its own, also of the merged curve
  import_at(first, "100");
  EXPECT_NEAR(value("ReductionType = 1 AND ReferenceType = 1"), 40.0F, 1e-3F);
  EXPECT_NEAR(value("ReductionType = 2 AND ReferenceType = 1"), 40.0F, 1e-3F);
  import_at(second, "100");
  EXPECT_EQ(derived("ReferenceType = 1"), 0);
  EXPECT_EQ(derived("ReferenceType = 0"), 2);
}

TEST_F(ImportRun, A_copy_that_was_cut_takes_no_readings_away) {
  const std::string whole = made_edi({MadeSection{}, MadeSection{}});
  const std::string file = folder.write("a.edi", whole);
  ASSERT_EQ(import({file}), 0);
  ASSERT_EQ(raw_readings(), 8);
  (void)folder.write("a.edi", whole.substr(0, whole.size() - 12));
  ASSERT_EQ(import({file}), 0);
  EXPECT_EQ(raw_readings(), 8);
  EXPECT_NE(report.files.at(0).failure.find("earlier import stay"), std::string::npos);
}

TEST_F(ImportRun, Earlier_readings_stay_when_a_file_gives_none) {
  const std::string file = folder.write("a.edi", made_edi());
  ASSERT_EQ(import({file}), 0);
  (void)folder.write("a.edi", replaced(made_edi(), "45 -45 30\n>END\n", "45 "));
  ASSERT_EQ(import({file}), 0);
  EXPECT_EQ(report.files.at(0).readings, 0);
  EXPECT_NE(report.files.at(0).failure.find("earlier import stay"), std::string::npos);
  EXPECT_EQ(raw_readings(), 4);
  // The recordsets go on working behind the roll-back.
  (void)folder.write("a.edi", made_edi());
  ASSERT_EQ(import({file}), 0);
  EXPECT_EQ(raw_readings(), 4);
  EXPECT_EQ(rows_in("FileTable"), 1);
}

TEST_F(ImportRun, Texts_too_long_for_their_columns_are_failures) {
  choices.decode[decode_line_number] = {
      .use_file_name = true, .start_column = 1, .width = 60, .specified = ""};
  const auto too_long = [&](char letter) {
    return folder.write(std::string(60, letter) + ".edi", made_edi());
  };
  ASSERT_EQ(import({too_long('x')}), 0);
  EXPECT_EQ(interface.take_messages().size(), 1U);
  EXPECT_TRUE(report.has_failures());
  EXPECT_EQ(rows_in("FileTable"), 0);

  report = {};
  // Nobody wants the same message for each of a thousand files; one that comes in between shows that the
  // others may.
  const std::string good = folder.write("good.edi", made_edi());
  EXPECT_EQ(import({too_long('a'), too_long('b'), good, too_long('c'), too_long('d'), too_long('e'), good}),
            -1);
  EXPECT_EQ(report.files.back().failure, "not imported: the run ended before this file");
  EXPECT_EQ(interface.take_messages().size(), 5U);
  EXPECT_EQ(raw_readings(), 4);
}

TEST_F(ImportRun, Stops_between_files_and_still_reduces_what_was_stored) {
  int asked = 0;
  interface->stop = [&] { return ++asked > 2; };
  const std::string text = made_edi();
  ASSERT_EQ(import({folder.write("a.edi", text), folder.write("b.edi", text), folder.write("c.edi", text)}),
            0);
  EXPECT_TRUE(report.stopped);
  EXPECT_EQ(report.files.size(), 2U);
  EXPECT_EQ(raw_readings(), 8);
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE ReductionType = 1"), 8);
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE ReductionType = 2"), 8);
  EXPECT_EQ(interface->progress_texts, (Texts{"Importing data files", "", "Finishing: averages", ""}));
  EXPECT_EQ(interface->progress.back(), -1);
  EXPECT_FALSE(interface->busy);
}

TEST_F(ImportRun, A_stop_while_it_averages_changes_only_what_is_shown) {
  int asked = 0;
  interface->stop = [&] { return ++asked > 2; };  // two files
  ASSERT_EQ(import({folder.write("a.edi", made_edi()), folder.write("b.edi", made_edi())}), 0);
  EXPECT_FALSE(report.stopped);
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE ReductionType = 2"), 8);
  EXPECT_EQ(interface->progress_texts,
            (Texts{"Importing data files", "", "Averaging repeats", "Finishing: averages", ""}));
}

TEST_F(ImportRun, A_damaged_reading_keeps_no_other_station_from_its_average) {
  const std::string text = made_edi();
  ASSERT_EQ(import({folder.write("a.edi", text), folder.write("b.edi", text)}), 0);
  open_survey().database.execute(
      "UPDATE ReadingsDataTable SET NumFrequencies = 99 WHERE FileID > 0 AND Station = 1250.4");
  open_survey().database.execute("DELETE FROM ReadingsDataTable WHERE FileID < 0");
  open_survey().readings.requery();
  ASSERT_EQ(import({folder.write("c.edi", text), folder.write("d.edi", text)}), 0);
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE ReductionType = 1"), 4) << "of the other station";
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE ReductionType = 2"), 4);
  EXPECT_EQ(report.groups_skipped, 4U);
  const Texts messages = interface.take_messages();
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_EQ(
      messages[0].rfind("An error occurred while averaging the data: 4 groups of readings were skipped", 0),
      0U)
      << messages[0];
  EXPECT_NE(messages[0].find("\nline 200E, station 1250.4, ExHx, 0.1 Hz: reading "), std::string::npos);
}

TEST_F(ImportRun, A_merged_reading_has_no_scan_rate) {
  choices.ReductionType = 2;
  const std::string file = folder.write("a.edi", made_edi());
  for (int round = 0; round < 2; ++round) {
    ASSERT_EQ(import({file}), 0);
    EXPECT_EQ(rows_in("ReadingsDataTable"), 4);
    EXPECT_EQ(rows_in("ReadingsDataTable WHERE ReductionType = 2 AND SampleRate = 0 AND FileID > 0"), 4);
  }
  // As earlier versions stored them; another reading keeps its rate.
  open_survey().database.execute("UPDATE ReadingsDataTable SET SampleRate = 256");
  open_survey().database.execute("UPDATE ReadingsDataTable SET ReductionType = 0 WHERE DataType = 'ExHx'");
  reopen();
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE ReductionType = 2 AND SampleRate = 0"), 3);
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE SampleRate = 256"), 1);
}

TEST_F(ImportRun, Frequencies_of_0_and_below_are_stored_and_stay_out_of_lists_and_averages) {
  MadeSection section;
  section.frequencies = "-100. 0. 1.";
  ASSERT_EQ(import({folder.write("a.edi", made_edi({section}))}), 0);
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE FileID > 0 AND NumFrequencies = 3"), 4);
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE FileID < 0 AND NumFrequencies = 1"), 8);
  EXPECT_EQ(rows_in("ReadingsFrequencyTable WHERE NumFrequencies = 1"), 1);
}

TEST_F(ImportRun, Drops_what_could_be_undone) {
  Module_Brenlox::push_undo_static(1, 1.0F);
  const std::string file = folder.write("a.edi", made_edi());
  ASSERT_EQ(import({file}, ImportMode::scan), 0);
  EXPECT_EQ(Module_Brenlox::undo_count(), 1U);
  ASSERT_EQ(import({file}), 0);
  EXPECT_EQ(Module_Brenlox::undo_count(), 0U);
}

TEST_F(ImportRun, Faults_of_the_choices_end_it_before_anything_is_stored) {
  const std::string file = folder.write("a.edi", made_edi());
  const ImportChoices good = choices;
  for (const char* const start : {"here", "1e999"}) {
    choices.start_station = start;
    EXPECT_EQ(import({file}), -1);
  }
  choices = good;
  for (const char* const step : {"0", "1e39"}) {
    choices.station_step = step;
    EXPECT_EQ(import({file}), -1);
  }
  choices = good;
  choices.convert_coordinates = true;
  EXPECT_EQ(import({file}), -1);
  EXPECT_EQ(
      interface.take_messages(),
      (std::vector<std::string>{"The start station number is invalid", "The start station number is invalid",
                                "The station spacing is invalid", "The station spacing is invalid",
                                "The projection has not been defined"}));
  EXPECT_EQ(rows_in("FileTable"), 0);
}

TEST(Sort_curve, Keeps_fields_and_masks_in_step) {
  Module_database::Curve curve;
  curve.assign(5000);
  for (std::size_t index = 0; index < 5000; ++index) {
    curve.frequencies[index] = std::floor(static_cast<float>(4999 - index) / 2.0F);  // descending in pairs
    curve.value(20, index) = static_cast<float>(index);
    curve.counts_at(2, index) = static_cast<std::int32_t>(index);
  }
  EXPECT_FALSE(sort_curve(curve));
  for (std::size_t index = 0; index < 5000; ++index) {
    const std::size_t source = 4998 - index / 2 * 2 + index % 2;  // the pairs turn, their members don't
    ASSERT_EQ(curve.value(20, index), static_cast<float>(source));
    ASSERT_EQ(curve.counts_at(2, index), static_cast<std::int32_t>(source));
  }
  EXPECT_TRUE(sort_curve(curve));
}
