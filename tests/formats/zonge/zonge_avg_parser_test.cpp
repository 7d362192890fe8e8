#include "formats/zonge/zonge_avg_parser.h"

#include <cmath>
#include <filesystem>
#include <numbers>
#include <utility>

#include <gtest/gtest.h>

#include "tests/support/temporary_folder.h"

using namespace formats::transfer_function;
using formats::zonge::AvgStation;
namespace fs = std::filesystem;

namespace {

constexpr double degrees_per_milliradian = 0.18 / std::numbers::pi;

struct Read {
  std::vector<AvgStation> stations;
  formats::FileReport report;
};

Read read(const std::string& path) {
  Read result;
  LineReader lines(path);
  result.stations = formats::zonge::read_zonge_avg(lines, result.report);
  return result;
}

Read read_text(const std::string& text) {
  const TemporaryFolder folder;
  return read(folder.write("made.avg", text));
}

Read field_file(const std::string& name) {
  return read((fs::path(BRENLOX_FIELD_DATA) / "exchange" / "zonge_avg" / name).string());
}

}  // namespace

TEST(Zonge_avg, Keyword_tables_go_by_their_headings) {
  const Read made = read_text(
      "$Unit.Length=ft\n$Rx.GdpStn=7\n$Rx.Stn = 25\n$Rx.Length= 100\n$Rx.Cmp= Zyx\n"
      "ARes.mag, Freq, Z.phz, Skp, ARes.%err, Z.mag, Z.perr\n"
      "50.0, .5, -2356.1945, 2, 10, 11.18034, 50\n*, 1.41, 0, 2, 10, *, 1\n8.0, 2, 785.4, 1, 168, 8.9, 997\n"
      "$Rx.Cmp=Tzy\n0.5, 4, 0, 2, 20, 0.5, 1\n$Rx.Cmp=Rxxr\n0.5, 4, 0, 2, 20, 0.5, 1\n");
  EXPECT_EQ(made.report.failure, "");
  ASSERT_EQ(made.report.ignored.size(), 1U);
  ASSERT_EQ(made.stations.size(), 1U);
  EXPECT_DOUBLE_EQ(made.stations[0].station, 25.0);
  EXPECT_NEAR(made.stations[0].dipole.value(), 30.48, 1e-9);
  const auto& points = made.stations[0].function.points;
  ASSERT_EQ(points.size(), 4U);
  const Value& first = points[0].of(Component::zyx);
  EXPECT_NEAR(first.phase, -135.0, 1e-5);
  EXPECT_NEAR(first.resistivity_error, 5.0, 1e-12);
  EXPECT_NEAR(std::sqrt(first.variance / 2.0), 11.18034 * 0.05, 1e-6);
  EXPECT_TRUE(std::isnan(points[1].of(Component::zyx).resistivity));
  EXPECT_FALSE(points[2].of(Component::zyx).use_phase);
  EXPECT_TRUE(std::isnan(points[2].of(Component::zyx).resistivity_error));  // "168" stands for unknown
  EXPECT_NEAR(points[3].of(Component::ty).value.real(), 0.5, 1e-12);
  EXPECT_FALSE(points[3].of(Component::ty).has_curve());
}

TEST(Zonge_avg, Errors_of_repeats_may_be_large) {
  const Read made = read_text(
      "\\$ ASPACE= 50.0m\nskpStation Freq Comp Resistivity Phase %Rho sPhz\n"
      "2 150 8 ExHy 100 700 200 300 more columns\n2 150 4 ExHy 100 -3490.6585 200 1100\n");
  EXPECT_DOUBLE_EQ(made.stations.at(0).dipole.value(), 50.0);
  const auto& points = made.stations[0].function.points;
  EXPECT_DOUBLE_EQ(points.at(0).of(Component::zxy).resistivity_error, 200.0);
  EXPECT_NEAR(points.at(0).of(Component::zxy).phase_error, 300.0 * degrees_per_milliradian, 1e-9);
  EXPECT_DOUBLE_EQ(points.at(1).of(Component::zxy).resistivity_error, 200.0);  // no cap in this layout
  EXPECT_NEAR(points[1].of(Component::zxy).phase, 160.0, 1e-5) << "-200 degrees";
  EXPECT_NEAR(points[1].of(Component::zxy).phase_error, 1100.0 * degrees_per_milliradian, 1e-9);
  const Read above =
      read_text("$Rx.Stn=1\n$Rx.Cmp=Zxy\nFreq,ARes.mag,Z.phz,ARes.%err,Z.perr\n8,10,1,170,997\n");
  EXPECT_DOUBLE_EQ(above.stations.at(0).function.points.at(0).of(Component::zxy).resistivity_error, 17.0);
}

TEST(Zonge_avg, Stations_keep_what_is_theirs) {
  const Read made = read_text(
      "$Unit.Phase=deg\n$Unit.Length=ft\n$GPS.Lat=10\n$GPS.Lon=20\n$Rx.Stn=25\n$Rx.Length=100\n$Rx.GdpStn=1\n"
      "$Rx.Center=1000:2000:100\nFreq,Z.phz,ARes.mag\n$Rx.Cmp=Zxy\n$Ch.Azimuth=11.3,101.3\n8,45,100\n8,46,"
      "101\n"
      "$Rx.Cmp=Zyx\n$Ch.Azimuth=101.3,11.3\n8,-135,100\n"
      "$Rx.GdpStn=2\n$Rx.Cmp=Zxy\n8,30,300\n$Rx.Stn=east\n$Rx.Cmp=Zxy\n8,40,400\n$Rx.Cmp=Rxxr\n8,1,1\n4,1,"
      "1\n");
  ASSERT_EQ(made.stations.size(), 2U);
  const AvgStation& first = made.stations[0];
  EXPECT_DOUBLE_EQ(first.station, 25.0);  // by its name, not the receiver's number
  EXPECT_DOUBLE_EQ(first.function.site.latitude.value(), 10.0);
  EXPECT_NEAR(first.place.value().north, 609.6, 1e-9);
  EXPECT_DOUBLE_EQ(first.function.site.x_azimuth.value(), 11.3);
  ASSERT_EQ(first.function.points.size(), 2U);  // a sounding repeated
  EXPECT_DOUBLE_EQ(first.function.points[0].of(Component::zxy).phase, 45.0);
  EXPECT_DOUBLE_EQ(first.function.points[1].of(Component::zxy).phase, 46.0);
  EXPECT_DOUBLE_EQ(first.function.points[0].of(Component::zyx).phase, -135.0);
  const AvgStation& second = made.stations[1];
  EXPECT_DOUBLE_EQ(second.station, 2.0);
  EXPECT_FALSE(second.function.site.latitude.has_value());
  EXPECT_FALSE(second.place.has_value());
  EXPECT_FALSE(second.function.site.x_azimuth.has_value());  // that of the first one's channels
  EXPECT_EQ(second.function.points.size(), 1U);  // a station without a number doesn't fall to the one before
  EXPECT_EQ(made.report.unreadable.size(), 4U);  // its line, and the three rows of it
}

TEST(Zonge_avg, Weights_switch_off_one_half_and_the_skip_flag_both) {
  const Read made = read_text(
      "$Rx.Stn=1\n$Rx.Cmp=Zxy\nSkp,Freq,ARes.mag,Z.phz,Z.mwgt,Z.pwgt\n"
      "2,8,10,500,0,1\n2,4,10,500,1,0\n1,2,10,500,1,1\n2,1,10,500,1,1\n");
  const std::pair<bool, bool> used[] = {{false, true}, {true, false}, {false, false}, {true, true}};
  for (std::size_t index = 0; index < 4; ++index) {
    const Value& value = made.stations.at(0).function.points.at(index).of(Component::zxy);
    EXPECT_EQ(std::pair(value.use_resistivity, value.use_phase), used[index]) << index;
  }
}

TEST(Zonge_avg, Says_what_it_cannot_read) {
  EXPECT_EQ(read_text("").report.failure, "the file has no table of averaged soundings");
  const Read made = read_text(
      "skp Station Freq Comp Resistivity Phase\n 2 x 8 ExHy 1 2\n 2 100 0 ExHy 1 2\n 2 100 8 ExHy a 2\n");
  EXPECT_EQ(made.report.unreadable.size(), 4U);  // two numbers, and the two rows without station or frequency
  ASSERT_EQ(made.stations.size(), 1U);
  EXPECT_FALSE(made.stations[0].function.points.at(0).of(Component::zxy).has_curve());
}

// The last value may be half a number: 4.2454e+3 that has become 4.2.
TEST(Zonge_avg, A_row_that_is_cut_does_not_count) {
  const std::string head = "skp Station Freq Comp Resistivity Phase %Emag\n2 100 8 ExHy 10 500 1\n";
  const Read cut = read_text(head + "2 100 4 ExHy 4.2\n\n");
  EXPECT_EQ(cut.report.failure, "the file is cut off in line 3");
  ASSERT_EQ(cut.stations.size(), 1U);
  EXPECT_EQ(cut.stations[0].function.points.size(), 1U);
  const Read phase = read_text(head + "2 100 4 ExHy 11 5");
  EXPECT_EQ(phase.stations.at(0).function.points.size(), 1U);
  const Read amid = read_text(head + "2 100 4 ExHy 4.2\n2 100 2 ExHy 12 500 1\n");
  EXPECT_EQ(amid.report.failure, "");
  EXPECT_EQ(amid.stations.at(0).function.points.size(), 2U);
  EXPECT_EQ(amid.report.unreadable.size(), 1U);
  const Read short_notes = read_text(
      "skp Station Freq Comp Resistivity Phase Note Remark\n"
      "2 100 8 ExHy 10 500 calm\n2 100 4 ExHy 11 500 wind\n");
  EXPECT_EQ(short_notes.report.failure, "") << "all rows are short: the last one is no cut";
  EXPECT_EQ(short_notes.stations.at(0).function.points.size(), 2U);
}

// The rows that are missing leave no trace but that the other curves have them.
TEST(Zonge_avg, An_end_between_two_rows_is_told_by_the_other_curves) {
  const std::string plain = "skp Station Freq Comp Resistivity Phase\n";
  const std::string stations =
      "2 100 8 ExHy 10 500\n2 100 4 ExHy 11 500\n2 200 8 ExHy 12 500\n2 200 4 ExHy 13 500\n";
  const std::string tensor = "2 100 8 ExHy 1 5\n2 100 8 EyHx 1 5\n2 150 8 ExHy 1 5\n2 150 8 EyHx 1 5\n";
  struct Case {
    const char* name;
    std::string rows;
    std::string missing;
  };
  for (const Case& c :
       {Case{"whole", stations, ""},
        Case{"cut", stations + "2 300 8 ExHy 14 500\n",
             "station 300 ends after 1 of the 2 frequencies of the other curves; the file may be cut off"},
        Case{"other frequencies", stations + "2 300 4 ExHy 14 500\n", ""},
        Case{"curves of different lengths", stations + "2 300 8 ExHy 1 5\n2 400 8 ExHy 1 5\n", ""},
        Case{"one component", tensor + "2 200 8 ExHy 1 5\n",
             "station 200 has fewer components than the others; the file may be cut off"},
        Case{"a scalar station first", "2 50 8 ExHy 1 5\n" + tensor + "2 200 8 ExHy 1 5\n", ""}}) {
    SCOPED_TRACE(c.name);
    const formats::FileReport report = read_text(plain + c.rows).report;
    EXPECT_EQ(report.failure, "");
    ASSERT_EQ(report.unreadable.size(), c.missing.empty() ? 0U : 1U);
    EXPECT_EQ(c.missing.empty() ? "" : report.unreadable[0].text, c.missing);
  }
}

TEST(Zonge_avg, Field_files_have_their_values) {
  if (!fs::exists(fs::path(BRENLOX_FIELD_DATA) / "exchange" / "zonge_avg")) {
    GTEST_SKIP() << "the field data is absent";
  }
  const Read plain = field_file("K1.AVG");
  ASSERT_EQ(plain.stations.size(), 47U);
  EXPECT_DOUBLE_EQ(plain.stations[0].station, 150.0);
  EXPECT_DOUBLE_EQ(plain.stations[0].dipole.value(), 50.0);
  const Value& first = plain.stations[0].function.points.at(0).of(Component::zxy);
  EXPECT_DOUBLE_EQ(first.resistivity, 277.46);
  EXPECT_NEAR(first.phase, -581.6 * degrees_per_milliradian, 1e-9);
  EXPECT_NEAR(first.resistivity_error, 277.46 * 0.147, 1e-9);
  EXPECT_NEAR(first.phase_error, 136.0 * degrees_per_milliradian, 1e-9);

  EXPECT_FALSE(plain.report.has_remarks());
  EXPECT_EQ(plain.stations[0].function.site.date, "01/01/99");

  const Read scalar = field_file("K2.AVG");
  ASSERT_EQ(scalar.stations.size(), 28U);
  EXPECT_TRUE(scalar.report.unreadable.empty());
  EXPECT_DOUBLE_EQ(scalar.stations[0].station, 25.0);
  EXPECT_DOUBLE_EQ(scalar.stations[0].function.points.at(0).of(Component::zxy).resistivity, 87910.0);

  const Read tensor = field_file("tf_avg.avg");
  ASSERT_EQ(tensor.stations.size(), 1U);
  EXPECT_TRUE(tensor.report.unreadable.empty());
  const auto& points = tensor.stations[0].function.points;
  EXPECT_FALSE(points.at(1).of(Component::zxx).use_resistivity);
  for (const Point& point : points) {  // |Z| and resistivity belong together
    const Value& value = point.of(Component::zxy);
    if (value.has_curve()) {
      EXPECT_NEAR(0.2 * std::norm(value.value) / point.frequency / value.resistivity, 1.0, 0.01);
    }
  }
  const Read with_tipper = field_file("tf_avg_tipper.avg");
  ASSERT_EQ(with_tipper.stations.size(), 1U);
  EXPECT_DOUBLE_EQ(with_tipper.stations[0].function.site.x_azimuth.value(), 11.0);
  EXPECT_TRUE(with_tipper.stations[0].function.points.at(0).of(Component::tx).has_value());
  EXPECT_EQ(with_tipper.stations[0].function.site.date, "05/16/2022");
  EXPECT_NEAR(with_tipper.stations[0].place.value().elevation, 1548.1, 1e-9);
}
