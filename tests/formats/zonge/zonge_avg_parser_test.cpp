#include "formats/zonge/zonge_avg_parser.h"

#include <cmath>
#include <filesystem>
#include <numbers>

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
  EXPECT_FALSE(points[2].of(Component::zyx).in_use);
  EXPECT_TRUE(std::isnan(points[2].of(Component::zyx).resistivity_error));  // "168" stands for unknown
  EXPECT_NEAR(points[3].of(Component::ty).value.real(), 0.5, 1e-12);
  EXPECT_FALSE(points[3].of(Component::ty).has_curve());
}

TEST(Zonge_avg, Says_what_it_cannot_read) {
  EXPECT_EQ(read_text("").report.failure, "the file has no table of averaged soundings");
  const Read made = read_text(
      "skp Station Freq Comp Resistivity Phase\n 2 x 8 ExHy 1 2\n 2 100 0 ExHy 1 2\n 2 100 8 ExHy a 2\n");
  EXPECT_EQ(made.report.unreadable.size(), 4U);
  ASSERT_EQ(made.stations.size(), 1U);
  EXPECT_FALSE(made.stations[0].function.points.at(0).of(Component::zxy).has_curve());
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

  const Read scalar = field_file("K2.AVG");
  ASSERT_EQ(scalar.stations.size(), 28U);
  EXPECT_DOUBLE_EQ(scalar.stations[0].station, 25.0);
  EXPECT_DOUBLE_EQ(scalar.stations[0].function.points.at(0).of(Component::zxy).resistivity, 87910.0);

  const Read tensor = field_file("tf_avg.avg");
  ASSERT_EQ(tensor.stations.size(), 1U);
  const auto& points = tensor.stations[0].function.points;
  EXPECT_FALSE(points.at(1).of(Component::zxx).in_use);
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
  EXPECT_NEAR(with_tipper.stations[0].place.value().elevation, 1548.1, 1e-9);
}
