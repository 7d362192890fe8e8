#include "app/survey_summary.h"

#include <gtest/gtest.h>

#include "tests/reduction/made_readings.h"
#include "tests/support/survey_fixture.h"

namespace {

using Module_Brenlox::LineSummary;
using Module_Brenlox::SurveySummary;

class Survey_summary : public SurveyTest {};

made::ReadingKey key(const std::string& line, double station, float scan_rate) {
  return {line, station, 0, scan_rate, "ExHy", 50.0F};
}

TEST_F(Survey_summary, Of_an_empty_survey_is_empty) {
  new_survey();
  EXPECT_EQ(Module_Brenlox::survey_summary(), SurveySummary{});
}

TEST_F(Survey_summary, Groups_readings_by_curve_and_keeps_lines_of_one_number_apart) {
  new_survey();
  const auto two = made::reading({{1.0F, 10.0F, 45.0F}, {10.0F, 10.0F, 45.0F}});
  auto three = made::reading({{1.0F, 10.0F, 45.0F}, {5.0F, 10.0F, 45.0F}, {10.0F, 10.0F, 45.0F}});
  made::store(key("200W", 50.0, 256.0F), 0, two);
  made::store(key("200E", 100.0, 256.0F), 0, two);
  three.UseReading = false;
  made::store(key("200E", 100.0, 256.0F), 1, three);
  made::store(key("200E", 100.0, 4096.0F), 0, two);
  made::store(key("200E", 100.0, 256.0F), 0, two, 1, -1);
  made::store(key("200E", 100.0, 0.0F), 0, two, 2, -1);
  made::store(key("200W", 25.0, 256.0F), 0, two);
  made::store(key("200E", 75.5, 256.0F), 0, two);

  const SurveySummary summary = Module_Brenlox::survey_summary();
  ASSERT_EQ(summary.lines.size(), 2U);
  const LineSummary& east = summary.lines[0];
  EXPECT_EQ(east.line, "200E");
  ASSERT_EQ(east.stations.size(), 2U);
  EXPECT_EQ(east.stations[0].station, 75.5);
  EXPECT_EQ(east.stations[1].station, 100.0);
  EXPECT_EQ(summary.lines[1].line, "200W");
  EXPECT_EQ(summary.lines[1].stations.size(), 2U);
  EXPECT_EQ(summary.station_count(), 4);
  EXPECT_EQ(summary.readings, (std::array<std::int32_t, 3>{6, 1, 1}));
  EXPECT_EQ(summary.scan_rates, (std::vector<float>{256.0F, 4096.0F}));

  const auto& groups = east.stations[1].groups;
  ASSERT_EQ(groups.size(), 4U);
  EXPECT_EQ(groups[0].scan_rate, 256.0F);
  EXPECT_EQ(groups[0].readings, 2);
  EXPECT_EQ(groups[0].used_readings, 1);
  EXPECT_EQ(groups[0].fewest_frequencies, 2);
  EXPECT_EQ(groups[0].most_frequencies, 3);
  EXPECT_EQ(east.stations[1].readings(0), 3);
}

}  // namespace
