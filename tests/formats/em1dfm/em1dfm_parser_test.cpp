#include "formats/em1dfm/em1dfm_parser.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "tests/support/temporary_folder.h"

using namespace formats::em1dfm;

namespace {

struct Parsed {
  std::vector<Station> stations;
  formats::FileReport report;

  [[nodiscard]] bool mentions(const std::string& text) const {
    const auto has = [&](const formats::ReportRemark& remark) {
      return remark.text.find(text) != std::string::npos;
    };
    return std::ranges::any_of(report.unreadable, has) || std::ranges::any_of(report.ignored, has) ||
           report.failure.find(text) != std::string::npos;
  }
};

Parsed parse(const std::string& text) {
  const TemporaryFolder folder;
  Parsed parsed;
  LineReader reader(folder.write("made.dat", text));
  Em1dfmParser parser(reader, parsed.report);
  Station station;
  while (parser.next_station(station)) {
    parsed.stations.push_back(station);
  }
  return parsed;
}

}  // namespace

TEST(Em1dfm_parser, Stations_with_faults_are_named) {
  const std::string head = "FREQUENCY DOMAIN EM DATA\nLINE 1E\n";
  const std::string good = "STATION 1 200 0 0 0 1\n 5 B 0 0 1 2 0 3 4\n";
  struct Case {
    const char* name;
    std::string text;
    std::size_t stations;
    const char* remark;
  };
  const Case cases[] = {
      {"too few frequencies", head + "STATION 1 100 0 0 0 3\n 7 B 0 0 1 2 0 3 4\n" + good, 2,
       "1 of 3 frequencies"},
      {"cut", head + good + "STATION 1 100 0 0 0 3\n 7 B 0 0 1 2 0 3 4\n", 1,
       "ends inside the station of line 5"},
      {"cut in a line", head + "STATION 1 100 0 0 0 1\n 7 B 0 0 1", 1, "a number is missing"},
      {"huge count", head + "STATION 1 100 0 0 0 1e300\n" + good, 1, "has no frequencies"},
      {"no kind", head + "STATION 1 100 0 0 0 1\n 7 X 0 0 1 2 0 3 4\n" + good, 2, "tells no kind of data"},
      {"frequency 0", head + "STATION 1 100 0 0 0 2\n 6 B 0 0 1 2 0 3 4\n 0 B 0 0 1 2 0 3 4\n" + good, 2,
       "not above 0"},
      {"other text", head + "remark\n" + good, 1, "neither a line nor a station"},
      {"odd value", head + "STATION 1 100 0 0 0 1\n 7 B 0 0 1.#QNAN 2 0 3 4\n" + good, 2,
       "'1.#QNAN' is not a number, taken as absent"},
      {"no line", "FREQUENCY DOMAIN EM DATA\n" + good, 1, "before any line"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Parsed parsed = parse(c.text);
    EXPECT_EQ(parsed.stations.size(), c.stations);
    EXPECT_TRUE(parsed.mentions(c.remark)) << parsed.report.failure;
  }
}

TEST(Em1dfm_parser, Takes_odd_values_as_absent_and_frequencies_as_they_came) {
  const Parsed parsed = parse(
      "FREQUENCY DOMAIN EM DATA\nLINE 1E\nSTATION 1 100x 5 6 7 3\n"
      " 8 B 0 0 1.#QNAN 2 0 3 4x\n -7 Q 0 5 0 1.5-002\n 0 B 0 0 1 2 0 3 4\n");
  ASSERT_EQ(parsed.stations.size(), 1U);
  EXPECT_EQ(parsed.stations[0].station, 100.0) << "options of a station are read as far as they go";
  const std::vector<Point>& points = parsed.stations[0].points;
  ASSERT_EQ(points.size(), 3U);
  EXPECT_EQ(points[0].values, (std::array<float, 4>{no_data, 2, 3, no_data}));
  EXPECT_EQ(points[1].frequency, -7.0F);
  EXPECT_EQ(points[1].values, (std::array<float, 4>{5, no_data, 0.015F, no_data}));
  EXPECT_EQ(points[2].frequency, 0.0F);
  EXPECT_TRUE(parsed.mentions("2 frequencies are not above 0 Hz"));
}

// Whatever is cut off, a station is given whole or not at all.
TEST(Em1dfm_parser, Gives_whole_stations_of_a_file_cut_behind_any_line) {
  const std::string whole =
      "FREQUENCY DOMAIN EM DATA\nLINE 1E\nSTATION 1 100 5 6 7 2\n 8 B 0 0 1 2 0 3 4\n 7 Q 0 5 0 6\n"
      "STATION 1 200 5 6 7 2\n 8 B 0 0 1 2 0 3 4\n 7 Q 0 5 0 6\n";
  std::size_t line_count = 0;
  for (std::size_t end = whole.find('\n'); end != std::string::npos; end = whole.find('\n', end + 1)) {
    SCOPED_TRACE(++line_count);
    const Parsed parsed = parse(whole.substr(0, end + 1));
    EXPECT_EQ(parsed.stations.size(), line_count < 5 ? 0U : line_count < 8 ? 1U : 2U);
    EXPECT_EQ(parsed.report.failure.empty(), line_count < 3 || line_count == 5 || line_count == 8);
    for (const Station& station : parsed.stations) {
      EXPECT_EQ(station.line, "1E");
      EXPECT_EQ(station.y, 6.0);
      ASSERT_EQ(station.points.size(), 2U);
      EXPECT_EQ(station.points[0].values, (std::array<float, 4>{1, 2, 3, 4}));
      EXPECT_EQ(station.points[1].values, (std::array<float, 4>{5, no_data, 6, no_data}));
    }
  }
}
