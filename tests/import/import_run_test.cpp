#include <cmath>
#include <map>

#include <gtest/gtest.h>

#include "database/reading.h"
#include "import/store_blocks.h"
#include "tests/formats/edi/made_edi.h"
#include "tests/import/import_fixture.h"

using namespace Module_data_file;
using Module_database::open_survey;

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
  EXPECT_EQ(files.get_single("Orientation"), 0.0F);

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
  choices.sectid_as_station = true;
  const std::vector<std::string> files{
      folder.write("a.edi", made_edi({MadeSection{.sectid = "\"858\""}, MadeSection{.sectid = "ET012_3"}}))};
  ASSERT_EQ(import(files), 0);
  EXPECT_EQ(stations(), (std::vector<double>{858, 0}));
  EXPECT_EQ(report.files.at(0).unreadable.size(), 1U);
  choices.sectid_digits = true;
  ASSERT_EQ(import(files), 0);
  EXPECT_EQ(stations(), (std::vector<double>{858, 0, 3})) << "the last digits";
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
  EXPECT_EQ(messages.size(), 4U);  // none for the missing, cut and section-less ones, which the report names
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
  ASSERT_EQ(import({folder.write(std::string(60, 'x') + ".edi", made_edi())}), 0);
  EXPECT_EQ(interface.take_messages().size(), 1U);
  EXPECT_TRUE(report.has_failures());
  EXPECT_EQ(rows_in("FileTable"), 0);
}

TEST_F(ImportRun, Stops_between_files_and_keeps_what_was_stored) {
  int asked = 0;
  interface->stop = [&] { return ++asked > 2; };
  const std::string text = made_edi();
  ASSERT_EQ(import({folder.write("a.edi", text), folder.write("b.edi", text), folder.write("c.edi", text)}),
            0);
  EXPECT_TRUE(report.stopped);
  EXPECT_EQ(report.files.size(), 2U);
  EXPECT_EQ(raw_readings(), 8);
  EXPECT_EQ(interface->progress.back(), -1);
  EXPECT_FALSE(interface->busy);
}

TEST_F(ImportRun, Faults_of_the_choices_end_it_before_anything_is_stored) {
  const std::string file = folder.write("a.edi", made_edi());
  const ImportChoices good = choices;
  choices.start_station = "here";
  EXPECT_EQ(import({file}), -1);
  choices = good;
  choices.station_step = "0";
  EXPECT_EQ(import({file}), -1);
  choices = good;
  choices.convert_coordinates = true;
  EXPECT_EQ(import({file}), -1);
  EXPECT_EQ(interface.take_messages(),
            (std::vector<std::string>{"The start station number is invalid", "The station spacing is invalid",
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
