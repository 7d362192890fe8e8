#include "database/survey_lists.h"

#include <algorithm>

#include "database/reading.h"
#include "database/stations.h"
#include "database/survey_summary.h"
#include "tests/support/foreign_change.h"
#include "tests/support/survey_fixture.h"

using namespace Module_database;

namespace {

using Texts = std::vector<std::string>;

void add_station(const std::string& line, double station) {
  (void)find_station(StationSearch::create, line, station);
}

void add_row(dao::Recordset& table, const std::string& line, std::int32_t reference_type, float dipole) {
  table.add_new();
  table.set_text("LineNumber", line);
  table.set_long("ReferenceType", reference_type);
  table.set_single("DipoleLength", dipole);
  table.update();
}

Texts listed() {
  Texts texts;
  for (const ListedStation& station : listed_stations()) {
    texts.push_back(station.line + " " + std::to_string(static_cast<int>(station.station)));
  }
  return texts;
}

}  // namespace

TEST_F(SurveyTest, A_line_in_two_letter_cases_is_one_line_spelled_as_its_first_station) {
  new_survey();
  add_station("200e", 300.0);
  add_station("200E", 100.0);
  add_station("1000E", 100.0);
  add_station("200W", 100.0);
  add_station("200e", 200.0);
  add_station("\u00C5E", 200.0);  // letters beyond ASCII have cases, too
  add_station("\u00E5e", 100.0);
  EXPECT_EQ(listed(), (Texts{"\u00C5E 100", "\u00C5E 200", "200e 100", "200e 200", "200e 300", "200W 100",
                             "1000E 100"}));
  EXPECT_EQ(spelled_line("200E"), "200e");
  EXPECT_EQ(spelled_line("\u00E5e "), "\u00C5E");
  EXPECT_EQ(spelled_line("7n"), "7n");
  add_row(open_survey().files, "200E", 0, 50.0F);
  add_row(open_survey().files, "7N", 0, 50.0F);
  add_row(open_survey().readings, "7n", 0, 50.0F);
  EXPECT_EQ(listed_lines(), (Texts{"200e", "7N"}));
}

TEST_F(SurveyTest, Lists_come_from_readings_where_the_files_have_no_row) {
  new_survey();
  add_row(open_survey().readings, "400E", 1, 25.0F);
  add_row(open_survey().readings, "200E", 0, 33.3F);
  EXPECT_EQ(listed_lines(), (Texts{"200E", "400E"}));
  EXPECT_EQ(listed_reference_types(), (std::vector<std::int32_t>{0, 1}));
  EXPECT_EQ(listed_dipoles(), (std::vector<float>{25.0F, 33.3F}));
  add_row(open_survey().files, "600E", 2, 10.0F);  // imported since
  EXPECT_EQ(listed_lines(), (Texts{"200E", "400E", "600E"}));
  EXPECT_EQ(listed_reference_types(), (std::vector<std::int32_t>{0, 1, 2}));
  EXPECT_EQ(listed_dipoles(), (std::vector<float>{10.0F, 25.0F, 33.3F}));
}

TEST_F(SurveyTest, A_damaged_station_is_named_once_and_hides_no_other) {
  const std::string path = new_survey();
  for (const double station : {100.0, 200.0, 300.0}) {
    add_station("200E", station);
    dao::Recordset& readings = open_survey().readings;
    readings.add_new();
    readings.set_text("LineNumber", "200E");
    readings.set_double("Station", station);
    readings.set_long("ReductionType", 0);
    readings.update();
  }
  ASSERT_EQ(close_database(), 0);
  ASSERT_TRUE(change_file(path, "UPDATE StationsTable SET LocalY = 'north' WHERE Station = 200"));
  ASSERT_EQ(open_database(), 0);
  const Texts messages = interface.take_messages();
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_TRUE(messages[0].starts_with(
      "Stations are left out of the lists, as their rows in StationsTable are damaged:\n"))
      << messages[0];
  EXPECT_NE(messages[0].find("LocalY"), std::string::npos) << messages[0];
  EXPECT_EQ(listed(), (Texts{"200E 100", "200E 300"}));
  const std::vector<ListedStation> with_readings = stations_with_readings("200E");
  ASSERT_EQ(with_readings.size(), 2U);
  EXPECT_EQ(with_readings.back().station, 300.0);
}

TEST_F(SurveyTest, A_summary_lists_stations_under_their_lines_and_what_readings_have) {
  new_survey();
  for (const double station : {300.0, 100.0}) {
    add_station("400E", station);
  }
  add_station("200E", 50.0);
  dao::Recordset& readings = open_survey().readings;
  const struct {
    std::int32_t reduction;
    float scan_rate;
    const char* data_type;
  } rows[] = {{0, 256.0F, "EyHx"}, {1, 64.0F, "ExHy"}, {0, 64.0F, "ExHy"}, {2, 0.0F, "ExHy"}};
  for (const auto& row : rows) {
    readings.add_new();
    readings.set_long("ReductionType", row.reduction);
    readings.set_single("SampleRate", row.scan_rate);
    readings.set_text("DataType", row.data_type);
    readings.update();
  }
  const SurveySummary summary = read_survey_summary();
  ASSERT_EQ(summary.lines.size(), 2U);
  EXPECT_EQ(summary.lines[0].line, "200E");
  EXPECT_EQ(summary.lines[0].stations, std::vector<double>{50.0});
  EXPECT_EQ(summary.lines[1].line, "400E");
  EXPECT_EQ(summary.lines[1].stations, (std::vector<double>{100.0, 300.0}));
  EXPECT_EQ(summary.lines[1].names, Texts(2));
  EXPECT_EQ(summary.data_types, (Texts{"ExHy", "EyHx"}));
  EXPECT_EQ(summary.scan_rates, (std::vector<double>{64.0, 256.0})) << "a merged curve has none";
  const std::pair<std::string, std::int32_t> stations("StationsTable", 3);
  EXPECT_EQ(std::ranges::count(summary.tables, stations), 1);
}
