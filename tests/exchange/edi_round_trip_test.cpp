// What is written as EDI and imported again: the same curves, errors, tippers and places.
#include <filesystem>

#include "database/sites.h"
#include "tests/exchange/exported_survey.h"

using formats::transfer_function::component_count;
using formats::transfer_function::Point;
using formats::transfer_function::Value;
using Module_exchange::StationDocument;

namespace {

const std::string field_data = BRENLOX_FIELD_DATA "/";

// What the file's digits and 32-bit values allow. Phases are printed as turned ones, of up to 180 degrees; an
// impedance moves with them.
constexpr double nine_digits_of_phases = 5.1e-7;  // degrees
constexpr double nine_digits = 1e-8;              // relative
constexpr double single_precision = 1.2e-7;       // relative

/// The largest differences between the values of two surveys.
struct Differences {
  std::size_t compared = 0;
  std::size_t on_one_side = 0;  // values and errors that only one of them has
  double resistivity = 0.0;     // relative
  double phase = 0.0;           // degrees
  double error = 0.0;           // relative
  double value = 0.0;           // of impedance or tipper, relative to its magnitude
};

void add(double before, double after, double scale, double& largest, Differences& all) {
  if (std::isfinite(before) != std::isfinite(after)) {
    ++all.on_one_side;
  } else if (std::isfinite(before)) {
    ++all.compared;
    largest = std::max(largest, std::abs(after - before) / scale);
  }
}

void compare(const Point& before, const Point& after, Differences& all) {
  for (std::size_t component = 0; component < component_count; ++component) {
    const Value& a = before.values[component];
    const Value& b = after.values[component];
    add(a.resistivity, b.resistivity, a.resistivity, all.resistivity, all);
    add(a.phase, b.phase, 1.0, all.phase, all);
    add(a.resistivity_error, b.resistivity_error, a.resistivity_error, all.error, all);
    add(a.phase_error, b.phase_error, a.phase_error, all.error, all);
    add(std::sqrt(a.variance), std::sqrt(b.variance), std::sqrt(a.variance), all.error, all);
    add(a.value.real(), b.value.real(), std::abs(a.value), all.value, all);
    add(a.value.imag(), b.value.imag(), std::abs(a.value), all.value, all);
  }
}

Differences compare(const std::vector<StationDocument>& before, const std::vector<StationDocument>& after) {
  Differences all;
  EXPECT_EQ(before.size(), after.size());
  for (std::size_t station = 0; station < std::min(before.size(), after.size()); ++station) {
    const auto& a = before[station].document.function.points;
    const auto& b = after[station].document.function.points;
    EXPECT_EQ(a.size(), b.size());
    for (std::size_t at = 0; at < std::min(a.size(), b.size()); ++at) {
      EXPECT_EQ(a[at].frequency, b[at].frequency);
      compare(a[at], b[at], all);
    }
  }
  return all;
}

void expect_same_places(const std::vector<StationDocument>& before,
                        const std::vector<StationDocument>& after) {
  for (std::size_t station = 0; station < before.size(); ++station) {
    const auto& a = before[station].document.function.site;
    const auto& b = after.at(station).document.function.site;
    ASSERT_EQ(a.latitude.has_value(), b.latitude.has_value());
    if (a.latitude) {
      EXPECT_NEAR(*a.latitude, *b.latitude, 2e-8);  // 0.0001 seconds, rounded
      EXPECT_NEAR(*a.longitude, *b.longitude, 2e-8);
    }
    EXPECT_EQ(a.elevation.value_or(0.0), b.elevation.value_or(0.0));
    EXPECT_EQ(a.datum, b.datum);
    EXPECT_EQ(a.x_azimuth.value_or(0.0), b.x_azimuth);
  }
}

class EdiRoundTrip : public ExportedSurvey {};

}  // namespace

// Repeats differ, so that resistivity and phase have errors of their own; rates overlap.
TEST_F(EdiRoundTrip, Averaged_and_merged_curves_come_back_with_errors_and_tipper) {
  std::vector<std::string> files;
  for (int event = 0; event < 3; ++event) {
    files.push_back(section_file(event, 4096, {1000, 300, 100, 33.3}));
    files.push_back(section_file(event, 1024, {100, 33.3, 10, 3.1}));
  }
  ASSERT_EQ(import(files), 0);
  const auto before = documents();
  ASSERT_EQ(before.size(), 1U);
  ASSERT_EQ(before[0].document.function.points.size(), 6U);
  import_what_is_written();
  const auto after = documents();
  const Differences found = compare(before, after);
  EXPECT_EQ(found.on_one_side, 0U);
  EXPECT_EQ(found.compared, 6U * (4 * 7 + 2 * 3));
  EXPECT_EQ(found.resistivity, 0.0);
  EXPECT_LT(found.phase, nine_digits_of_phases);
  EXPECT_LT(found.error, single_precision);
  EXPECT_LT(found.value, nine_digits);
  expect_same_places(before, after);
}

// AZM of Hx stays that of the sensors; the axes of the values are in ZROT.
TEST_F(EdiRoundTrip, A_file_in_turned_axes_comes_back_in_them) {
  ASSERT_EQ(import({section_file(0, 1024, {100, 10})}), 0);
  const auto made = documents(30.0);
  ASSERT_EQ(made.size(), 1U);
  const std::string file =
      folder.write("L200E_S0100_E0_R0512.edi", formats::edi::edi_text(made.front().document));
  EXPECT_EQ(Module_database::close_database(), 0);
  new_survey("turned.mdb");
  ASSERT_EQ(import({file}), 0);
  EXPECT_FALSE(told(0, "ZROT"));
  const auto read = documents();
  ASSERT_EQ(read.size(), 1U);
  EXPECT_EQ(read.front().document.function.site.x_azimuth, 30.0);
}

TEST_F(EdiRoundTrip, Field_data_come_back) {
  struct Case {
    const char* folder;
    std::size_t files;
  };
  for (const Case& c :
       {Case{"edi/tensor_line", 24}, {"edi/impedance_only", 10}, {"exchange/edi_tipper", 6}}) {
    if (!std::filesystem::exists(field_data + c.folder)) {
      GTEST_SKIP() << "no field data";
    }
    SCOPED_TRACE(c.folder);
    EXPECT_EQ(Module_database::close_database(), 0);
    new_survey("first.mdb");
    choices.decode[Module_data_file::decode_line_number] = {false, 0, 0, "200E"};
    choices.decode[Module_data_file::decode_event] = {false, 0, 0, "0"};
    choices.decode[Module_data_file::decode_sample_rate] = {false, 0, 0, "1024"};
    choices.stations_by = Module_data_file::StationsBy::count;
    choices.start_station = "0";
    choices.ReductionType = 0;
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(field_data + c.folder)) {
      files.push_back(entry.path().string());
    }
    std::ranges::sort(files);
    ASSERT_EQ(import(files), 0) << interface.take_messages().back();
    const auto before = documents();
    EXPECT_EQ(before.size(), c.files);
    import_what_is_written();
    const auto after = documents();
    const Differences found = compare(before, after);
    EXPECT_EQ(found.on_one_side, 0U);
    EXPECT_GT(found.compared, 9000U);
    EXPECT_EQ(found.resistivity, 0.0);
    EXPECT_LT(found.phase, nine_digits_of_phases);
    EXPECT_LT(found.error, single_precision);
    EXPECT_LT(found.value, nine_digits);
    expect_same_places(before, after);
    std::filesystem::remove(folder.path("again.mdb"));
    std::filesystem::remove(folder.path("first.mdb"));
  }
}
