#include "import/readers/zonge_raw_reader.h"

#include <algorithm>
#include <map>

#include <gtest/gtest.h>

#include "core/absent_value.h"
#include "database/reading_facts.h"
#include "database/sites.h"
#include "formats/zonge/zonge_stn_file.h"
#include "import/import_run.h"
#include "tests/formats/edi/made_edi.h"
#include "tests/formats/zonge/made_zonge_raw.h"
#include "tests/support/survey_fixture.h"

using namespace Module_data_file;
using formats::FileReport;

namespace {

using Module_database::open_survey;
using Module_database::StoredReading;

class ZongeRawReader : public SurveyTest {
 protected:
  ZongeRawReader() {
    new_survey();
    choices.ReferenceType = 0;
    choices.ReductionType = 0;
    choices.decode[decode_line_number].specified = "200";
    choices.decode[decode_event].specified = "3";
    choices.decode[decode_sample_rate].specified = "1";
  }

  FileReport import(const std::string& file, ImportMode mode = ImportMode::import) {
    EXPECT_EQ(run_import(choices, {file}, mode, report), 0);
    return report.files.at(0);
  }
  StoredReading reading(const std::string& criteria) {
    dao::Recordset& readings = open_survey().readings;
    readings.find_first(criteria);
    EXPECT_FALSE(readings.no_match()) << criteria;
    StoredReading found;
    if (!readings.no_match()) {
      found = Module_database::read_reading(readings);
      Module_database::read_facts(found);
    }
    return found;
  }
  static bool tells(const FileReport& file, const std::string& line) {
    return std::ranges::find(file.account, line) != file.account.end();
  }

  ImportChoices choices;
  ImportReport report;
};

}  // namespace

TEST_F(ZongeRawReader, Imports_a_survey_file_and_again_in_place) {
  const std::string file = folder.write("day1.raw", made_zonge_raw());
  (void)folder.write("day1.stn", made_stn());
  std::map<std::string, std::int32_t> rows;
  for (int round = 0; round < 2; ++round) {
    SCOPED_TRACE(round);
    const FileReport told = import(file);
    EXPECT_TRUE(interface.take_messages().empty());
    EXPECT_EQ(told.failure, "");
    EXPECT_EQ(told.readings, 2 * 5 * 4 + 2);  // soundings, frequencies, channels; AMT
    EXPECT_EQ(told.sections, 11);
    EXPECT_EQ(told.frequencies, 4);
    EXPECT_TRUE(told.unreadable.empty());
    for (const char* table : {"FileTable", "ReadingsDataTable", "StationsTable", "LocationLookupTable"}) {
      const auto [entry, is_new] = rows.emplace(table, rows_in(table));
      EXPECT_EQ(entry->second, rows_in(table)) << table;
    }
  }
  EXPECT_EQ(rows["FileTable"], 1);
  EXPECT_EQ(rows["StationsTable"], 8);
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE FileID > 0 AND DataType = 'ExHy'"), 31);
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE FileID > 0 AND EventNumber = 41"), 1);
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE FileID > 0 AND LineNumber = '200E' AND DipoleLength = 100"), 42);
  EXPECT_GT(rows_in("ReadingsDataTable WHERE ReductionType = 2"), 0);

  const StoredReading single =
      reading("FileID > 0 AND Station = 300 AND SampleRate = 512 AND DataType = 'ExHy'");
  ASSERT_EQ(single.curve.count(), 1U);
  EXPECT_EQ(single.curve.frequencies[0], 512.0F);
  EXPECT_EQ(single.curve.value(1, 0), static_cast<float>(made_resistivity(512.0, 4)));
  EXPECT_EQ(single.curve.value(6, 0), static_cast<float>(made_phase(512.0, 4)));
  EXPECT_EQ(single.curve.mask, (std::vector<std::int32_t>{1, 1}));
  for (const int field : {3, 4, 7, 8, 9, 14, 19, 20}) {
    EXPECT_EQ(single.curve.value(field, 0), 0.0F) << field;
  }

  const StoredReading amt = reading("FileID > 0 AND Station = 100 AND SampleRate = 2 AND DataType = 'EyHx'");
  EXPECT_EQ(amt.curve.frequencies, (std::vector<float>{2, 6, 10, 14}));
  EXPECT_EQ(amt.curve.value(1, 2), static_cast<float>(made_resistivity(10.0, 2)));
  EXPECT_EQ(amt.axes, (Module_database::ReadingAxes{Module_database::ey_as_measured, no_data}));
  EXPECT_TRUE(amt.curve.errors.empty());

  dao::Recordset& stations = open_survey().stations;
  stations.find_first("Station = 700");
  EXPECT_EQ(stations.get_double("MapX"), 500700.0);
  EXPECT_EQ(stations.get_double("Elevation"), 357.0);
  EXPECT_EQ(rows_in("SitesTable"), rows_in("StationsTable"));
  EXPECT_EQ(Module_database::find_site("200E", 700.0)->elevation, 357.0);
  dao::Recordset& files = open_survey().files;
  files.move_first();
  EXPECT_EQ(files.get_text("Filter"), "ZongeRaw");
  EXPECT_EQ(files.get_date("DateCollected"), 38119.0);  // 12 May 2004
}

TEST_F(ZongeRawReader, A_scan_stores_nothing) {
  const std::string file = folder.write("day1.raw", made_zonge_raw());
  (void)folder.write("day1.stn", made_stn());
  EXPECT_EQ(import(file, ImportMode::scan).readings, 42);
  EXPECT_EQ(rows_in("FileTable") + rows_in("ReadingsDataTable") + rows_in("StationsTable"), 0);
  EXPECT_EQ(report.stations.size(), 2U * 5U * 3U + 1U);
}

TEST_F(ZongeRawReader, Drops_blocks_with_faults_and_keeps_the_others) {
  const std::string first = made_csamt(2, 8.0, 100.0);
  const std::string text =
      made_header(1, "VEC", "-5") + first + replaced(made_csamt(3, 64.0, 100.0), " Hz", " Hertz") +
      replaced(made_csamt(4, 512.0, 100.0), "Tx 1", "ABORTED\nTx 1") + made_header(5, "VEC", "50 m") +
      replaced(made_csamt(6, 4096.0, 100.0), " 1 Hy", " 1 Hz");
  (void)folder.write("UTM.STN", "/LINE\n100 abc 2\n");
  const FileReport told = import(folder.write("a.raw", text));
  EXPECT_TRUE(tells(told, "Header Block : 1 not stored because A Spacing is not positive : -5 on line : 3"));
  EXPECT_TRUE(tells(told, "Data Block : 3 not stored because Base Frequency is invalid  on line : 20"));
  EXPECT_TRUE(tells(told, "Data Block : 4 not stored because Reading was aborted by the operator"));
  EXPECT_TRUE(tells(told, "Block : 6 Channel Ex has no matching Hy field on line : 58"));
  ASSERT_EQ(told.unreadable.size(), 3U);
  EXPECT_EQ(told.unreadable[0].text, "UTM.STN line 2: x 'abc' is not a number, taken as 0");
  EXPECT_EQ(told.unreadable[1].text,
            "2 stations are not in the .stn file; new ones get their places from the survey grid");
  EXPECT_EQ(told.unreadable[2].text, "3 blocks are not stored; the account says why");
  EXPECT_EQ(told.unreadable[2].line, 0) << "of no line";
  EXPECT_EQ(told.readings, 5);  // 4 of the second block, EyHx of the sixth
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE FileID > 0 AND DipoleLength = 50 AND DataType = 'EyHx'"), 1);
  EXPECT_EQ(rows_in("FileTable"), 2);  // the second header stands behind readings
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE FileID = 1"), 5);
}

TEST_F(ZongeRawReader, Tells_of_a_file_that_ends_within_a_block) {
  const std::string last = made_csamt(3, 64.0, 100.0);
  (void)folder.write("a.stn", made_stn());
  const FileReport told = import(folder.write(
      "a.raw", made_header(1) + made_csamt(2, 8.0, 100.0) + last.substr(0, last.find("Ch Name"))));
  EXPECT_EQ(told.readings, 4);
  ASSERT_EQ(told.unreadable.size(), 1U);
  EXPECT_EQ(told.unreadable[0].text, "block 3, the last one, has no data: the file may be cut off");
}

TEST_F(ZongeRawReader, Without_a_file_of_stations_nothing_is_read) {
  std::vector<std::string> files;
  for (const char* const name : {"a.raw", "b.raw", "c.raw", "d.raw"}) {
    files.push_back(folder.write(name, made_zonge_raw(1)));
  }
  (void)folder.write("d.stn", made_stn());
  ASSERT_EQ(run_import(choices, files, ImportMode::import, report), 0);
  for (std::size_t index = 0; index < 3; ++index) {
    EXPECT_EQ(report.files[index].failure, "No stn file was located");
  }
  EXPECT_EQ(report.files[3].failure, "");
  EXPECT_EQ(rows_in("FileTable"), 1);
}

// The last three characters of "a.raw" become "stn" or, where there is none, "utm.stn".
TEST_F(ZongeRawReader, Finds_the_stations_under_each_of_their_names) {
  const std::string file = folder.write("a.raw", made_zonge_raw(1));
  for (const char* const name : {"UTM.STN", "utm.stn", "a.UTM.STN", "a.utm.stn", "a.STN", "a.stn"}) {
    SCOPED_TRACE(name);
    const std::string stations = folder.write(name, made_stn());
    EXPECT_EQ(formats::zonge::find_stn_file(file), stations);
  }
  EXPECT_EQ(import(file).failure, "");
}

TEST_F(ZongeRawReader, Values_that_are_absent_or_below_zero_are_masked) {
  std::string text = made_amt(1, 8.0, 100.0, {3});
  text = replaced(text, " 1 3 3.21", " 1 3 3.21 -12.5 1e31\n 1 5 3.21 45 0\n 2 9 1");
  (void)folder.write("a.stn", made_stn());
  const FileReport told = import(folder.write("a.raw", text));
  ASSERT_EQ(told.readings, 2) << told.account.back();
  const StoredReading ex = reading("FileID > 0 AND DataType = 'ExHy'");
  EXPECT_EQ(ex.curve.frequencies, (std::vector<float>{8, 24, 40, 72}));
  EXPECT_EQ(ex.curve.value(1, 1), no_data);
  EXPECT_EQ(ex.curve.value(2, 1), -12.5F);
  EXPECT_EQ(ex.curve.value(1, 3), no_data);  // EyHx alone has it
  EXPECT_EQ(ex.curve.mask, (std::vector<std::int32_t>{1, 1, 0, 0, 0, 1, 0, 0}));
}
