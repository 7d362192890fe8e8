#include "tensor/station_tensor.h"

#include <array>
#include <cmath>
#include <complex>
#include <numbers>

#include "core/number_text.h"
#include "database/sites.h"
#include "reduction/averages.h"
#include "tensor/line_tensors.h"
#include "tests/reduction/made_readings.h"
#include "tests/support/named_site.h"
#include "tests/support/survey_fixture.h"
#include "tests/tensor/made_station.h"

using namespace Module_tensor;
using Module_database::ReadingAxes;
using numerics::impedance::Element;

namespace {

using Impedance = std::array<std::complex<double>, 4>;

constexpr double single_rounding = 3e-7;  // of impedances whose resistivity and phase have 32 bits, relative

// Phases of xx and yy lie in the third quadrant and in the fourth: an import masks them.
const Impedance example{std::complex(-1.0, -2.0), {10.0, 8.0}, {-9.0, -11.0}, {-0.5, 1.0}};

double degrees(std::complex<double> z) { return std::arg(z) * 180.0 / std::numbers::pi; }

Impedance scaled(const Impedance& impedance, double factor) {
  Impedance result = impedance;
  for (std::complex<double>& z : result) {
    z *= factor;
  }
  return result;
}

/// What a recording stores, and how.
struct Recording {
  double station = 100.0;
  std::vector<float> frequencies{1.0F};  // Hz
  Impedance impedance = example;
  bool turn_ey = true;
  ReadingAxes axes{Module_database::ey_turned, 0.0F};
  std::int32_t event = 1;
  float scan_rate = 256.0F;
  bool masks = true;  // those of an import, of phases at or below 0
};

class Station_tensor : public SurveyTest {
 protected:
  Station_tensor() { new_survey(); }

  static Module_database::StoredReading reading_of(const Recording& recording, std::size_t element) {
    std::vector<made::Point> points;
    for (const float frequency : recording.frequencies) {
      std::complex<double> z = recording.impedance[element];
      z *= recording.turn_ey && element >= 2 ? -1.0 : 1.0;
      points.push_back({frequency, static_cast<float>(0.2 * std::norm(z) / double{frequency}),
                        static_cast<float>(degrees(z))});
    }
    Module_database::StoredReading reading = made::reading(points);
    reading.axes = recording.axes;
    for (std::size_t at = 0; recording.masks && at < points.size(); ++at) {
      reading.curve.counts_at(2, at) = points[at].phase > 0.0F ? 1 : 0;
    }
    return reading;
  }
  static made::ReadingKey key(const Recording& recording, std::size_t element) {
    made::ReadingKey key = made::key(recording.scan_rate, recording.station);
    key.data_type = curve_types[element];
    return key;
  }
  static void store(const Recording& recording) {
    for (std::size_t element = 0; element < 4; ++element) {
      made::store(key(recording, element), recording.event, reading_of(recording, element));
    }
  }
  static void execute(const std::string& statement) {
    Module_database::open_survey().database.execute(statement);
  }
  static LineTensors load() {
    LineTensors line;
    EXPECT_EQ(load_line_tensors({"200E", 0, 50.0F}, made::frequencies(), line), 0);
    return line;
  }
  /// The only station.
  static StationTensor loaded() {
    const LineTensors line = load();
    EXPECT_EQ(line.stations.size(), 1U);
    return line.stations.empty() ? StationTensor() : line.stations.front();
  }
};

void expect_impedance(const StationTensor& station, std::size_t point, const Impedance& impedance) {
  ASSERT_LT(point, station.points.size()) << station.refusal;
  for (std::size_t element = 0; element < 4; ++element) {
    SCOPED_TRACE(curve_types[element]);
    const std::complex<double> z = station.points[point].tensor.z[element];
    EXPECT_LT(std::abs(z - impedance[element]), single_rounding * std::abs(impedance[element]))
        << z << " for " << impedance[element];
  }
}

}  // namespace

TEST_F(Station_tensor, Is_the_same_however_the_sign_of_Ey_was_stored) {
  constexpr ReadingAxes says_turned{Module_database::ey_turned, 0.0F};
  constexpr ReadingAxes says_measured{Module_database::ey_as_measured, 0.0F};
  constexpr ReadingAxes says_nothing{Module_database::ey_not_known, 0.0F};
  struct Case {
    const char* name;
    bool turn_ey;
    ReadingAxes axes;
    std::int32_t sign;  // EySign of the site
    EyReason reason;
    const char* remark;  // in it; empty: there is none
  };
  const Case cases[] = {
      {"turned, and said", true, says_turned, 0, EyReason::facts, ""},
      {"measured, and said", false, says_measured, 0, EyReason::rule, ""},
      {"turned, not known", true, says_nothing, 0, EyReason::rule, "Ey counts as turned by"},
      {"measured, not known", false, says_nothing, 0, EyReason::rule, "Ey counts as measured by"},
      {"turned in the files", true, says_measured, 0, EyReason::rule, ": its files have it so"},
      {"the user says turned", true, says_measured, -1, EyReason::user, ""},
      {"the user says measured", false, says_turned, 1, EyReason::user, ""}};
  double station = 0.0;
  for (const Case& c : cases) {
    station += 100.0;
    store({.station = station, .turn_ey = c.turn_ey, .axes = c.axes, .masks = false});
    Module_database::set_ey_sign("200E", station, c.sign);
  }
  const LineTensors line = load();
  ASSERT_EQ(line.stations.size(), std::size(cases));
  for (std::size_t index = 0; index < std::size(cases); ++index) {
    SCOPED_TRACE(cases[index].name);
    const StationTensor& found = line.stations[index];
    EXPECT_EQ(found.ey_turned, cases[index].turn_ey);
    EXPECT_EQ(found.ey_reason, cases[index].reason);
    expect_impedance(found, 0, example);
    EXPECT_EQ(found.masked_diagonals, 0U);
    const std::string remark = cases[index].remark;
    ASSERT_EQ(found.remarks.size(), remark.empty() ? 0U : 1U);
    EXPECT_TRUE(remark.empty() || found.remarks[0].find(remark) != std::string::npos) << found.remarks[0];
  }
}

TEST_F(Station_tensor, Follows_the_sign_of_a_site_when_it_is_read_again) {
  store({});
  LineTensors line = load();
  Module_database::set_ey_sign("200E", 100.0, Module_database::ey_sign_as_measured);
  ASSERT_EQ(reload_station(100.0, made::frequencies(), line), 0);
  EXPECT_FALSE(line.stations[0].ey_turned);
  Impedance as_stored = example;
  as_stored[2] *= -1.0;
  as_stored[3] *= -1.0;
  expect_impedance(line.stations[0], 0, as_stored);
}

TEST_F(Station_tensor, Takes_masked_diagonals_and_leaves_masked_modes_out) {
  store({.frequencies = {1.0F, 2.0F, 4.0F}});
  const auto all = loaded();
  ASSERT_EQ(all.points.size(), 3U);
  EXPECT_EQ(all.masked_diagonals, 6U);  // both phases are below 0 as they are stored
  expect_impedance(all, 2, example);

  // A mask on the merged curve, as a click sets it: 2 Hz of xy, then of xx.
  for (const auto& [type, left] : {std::pair{CurveType::ExHy, 2U}, std::pair{CurveType::ExHx, 2U}}) {
    SCOPED_TRACE(left);
    LineTensors line = load();
    auto merged = line.curves.stations[0].of(type);
    merged.curve.counts_at(1, 1) = 0;
    dao::Recordset row = made::row(merged.ID);
    row.edit();
    Module_database::write_curve(row, merged.curve);
    row.update();
    ASSERT_EQ(reload_station(100.0, made::frequencies(), line), 0);
    EXPECT_EQ(line.stations[0].points.size(), left);
    expect_impedance(line.stations[0], 1, example);
  }
}

TEST_F(Station_tensor, Is_refused_where_an_element_is_off_or_missing) {
  store({});
  store({.station = 200.0});
  store({.station = 300.0, .turn_ey = false});  // its yx phase is below 0
  name_site("200E", 200.0, "ET200");
  (void)load();
  execute(
      "UPDATE ReadingsDataTable SET UsePhase = 0 WHERE ReductionType = 2 AND DataType = 'EyHy' AND "
      "Station = 100");
  execute("DELETE FROM ReadingsDataTable WHERE DataType = 'ExHx' AND Station = 200");
  Module_database::set_ey_sign("200E", 200.0, Module_database::ey_sign_as_measured);
  const LineTensors line = load();
  ASSERT_EQ(line.stations.size(), 3U);
  EXPECT_EQ(line.stations[0].refusal, "Station 100: EyHy is switched off");
  EXPECT_EQ(line.stations[1].refusal, "Station 200 (ET200): there is no ExHx");
  EXPECT_NE(line.stations[2].refusal.find("no phase of EyHx counts"), std::string::npos);
  for (const StationTensor& station : line.stations) {
    EXPECT_TRUE(station.points.empty());
  }
  // What the user says of Ey holds all the same.
  EXPECT_EQ(line.stations[1].ey_reason, EyReason::user);
  EXPECT_FALSE(line.stations[1].ey_turned);
  EXPECT_TRUE(yx_points_away(line.curves.stations[1], line.stations[1]));
  EXPECT_TRUE(line.stations[0].ey_turned);
}

TEST(Station_tensor_without_diagonals, Says_so_and_takes_the_quadrant_of_most_phases) {
  for (const made::Ey ey : {made::Ey::as_measured, made::Ey::turned}) {
    StationCurves curves = made::station(
        100.0, {1.0F, 2.0F, 4.0F}, [](double) { return example; }, ey);
    for (Module_database::StoredReading& merged : curves.merged) {  // the readings say nothing of Ey
      merged.axes.EyTurned = Module_database::ey_not_known;
    }
    for (const std::size_t element : {0U, 3U}) {
      for (std::size_t at = 0; at < 3; ++at) {
        curves.merged[element].curve.counts_at(2, at) = 0;
        curves.sources[element].regardless_of_masks[at] = {};
      }
    }
    const StationTensor station = station_tensor(curves, Module_database::ey_sign_by_rule);
    EXPECT_EQ(station.refusal, "Station 100: ExHx and EyHy have no values");
    EXPECT_EQ(yx_points_away(curves, station), ey == made::Ey::as_measured);
  }
}

// Those of a measured Ey are masked by an import that doesn't turn it.
TEST(Station_tensor_without_phases, Takes_the_sign_of_Ey_from_its_readings_or_from_masked_phases) {
  for (const made::Ey ey : {made::Ey::as_measured, made::Ey::turned}) {
    StationCurves curves = made::station(
        100.0, {1.0F, 2.0F, 4.0F}, [](double) { return example; }, ey);
    for (std::size_t at = 0; at < 3; ++at) {
      curves.merged[2].curve.counts_at(Module_database::field_phase, at) = 0;
    }
    const auto points_away = [&] {
      return yx_points_away(curves, station_tensor(curves, Module_database::ey_sign_by_rule));
    };
    EXPECT_EQ(points_away(), ey == made::Ey::as_measured) << "its readings say it";
    for (Module_database::StoredReading& merged : curves.merged) {
      merged.axes.EyTurned = Module_database::ey_not_known;
    }
    EXPECT_EQ(points_away(), ey == made::Ey::as_measured) << "by the phases, masked as they are";
  }
}

// Sums over repeats are divided by the number of all repeats, one of which lacks 1 Hz.
TEST_F(Station_tensor, Masked_values_are_means_of_the_repeats_that_have_them) {
  store({.frequencies = {1.0F, 2.0F}, .event = 1});
  store({.frequencies = {2.0F}, .event = 2});
  Recording unused{.frequencies = {1.0F, 2.0F}, .impedance = scaled(example, 3.0), .event = 3};
  store(unused);
  execute("UPDATE ReadingsDataTable SET UseReading = 0 WHERE EventNumber = 3");
  const StationTensor station = loaded();
  expect_impedance(station, 0, example);
  expect_impedance(station, 1, example);
}

TEST_F(Station_tensor, Masked_phases_have_means_on_the_circle) {
  for (const std::int32_t event : {1, 2}) {
    Recording recording{.event = event};
    recording.impedance[0] = std::polar(2.0, (event == 1 ? 179.0 : -179.0) * std::numbers::pi / 180.0);
    store(recording);
  }
  LineTensors line = load();
  // It is the same mean whether one of the two phases counts or none.
  EXPECT_NEAR(std::abs(degrees(line.stations[0].points[0].tensor[Element::xx])), 180.0, 1e-4);
  auto merged = line.curves.stations[0].of(CurveType::ExHx);
  merged.curve.counts_at(2, 0) = 0;
  dao::Recordset row = made::row(merged.ID);
  row.edit();
  Module_database::write_curve(row, merged.curve);
  row.update();
  ASSERT_EQ(reload_station(100.0, made::frequencies(), line), 0);
  EXPECT_NEAR(std::abs(degrees(line.stations[0].points[0].tensor[Element::xx])), 180.0, 1e-4);
}

TEST_F(Station_tensor, A_mask_on_some_repeats_of_a_diagonal_says_nothing_either) {
  std::int32_t event = 0;
  for (const double phase : {-20.0, -16.0, 6.0}) {
    Recording recording{.event = ++event};
    recording.impedance[0] = std::polar(2.0, phase * std::numbers::pi / 180.0);
    recording.impedance[3] = std::polar(2.0, (phase - 100.0) * std::numbers::pi / 180.0);  // turned: unmasked
    store(recording);
  }
  const StationTensor station = loaded();
  ASSERT_EQ(station.points.size(), 1U);
  EXPECT_NEAR(degrees(station.points[0].tensor[Element::xx]), -10.0, 1e-4);
  EXPECT_NEAR(degrees(station.points[0].tensor[Element::yy]), -110.0, 1e-4);
  EXPECT_EQ(station.points[0].masked_diagonals, 1);
}

// Resistivities of 1 and 1.21 at one rate, of 4 and 4.84 at the other: means of 1.105 and 4.42, known to
// 0.105 over the root of 2 and to four times that.
TEST_F(Station_tensor, Where_scan_rates_overlap_the_error_is_that_of_their_mean) {
  for (const auto& [scan_rate, factor] : {std::pair{64.0F, 1.0}, std::pair{256.0F, 2.0}}) {
    store({.impedance = scaled(example, factor), .event = 1, .scan_rate = scan_rate});
    store({.impedance = scaled(scaled(example, 1.1), factor), .event = 2, .scan_rate = scan_rate});
  }
  const StationTensor station = loaded();
  ASSERT_EQ(station.points.size(), 1U);
  const double mean = (1.105 + 4.42) / 2.0;
  const double error = std::sqrt(1.0 + 16.0) / 2.0 * 0.105 / std::numbers::sqrt2;
  for (const Element element : {Element::xx, Element::xy}) {  // masked, and not
    const double size = std::abs(example[static_cast<std::size_t>(element)]) * std::sqrt(mean);
    const double along = size * error / (2.0 * mean);
    const auto& known = station.points[0].tensor.known(element);
    EXPECT_NEAR((known.real + known.imaginary) / (2.0 * along * along), 1.0, 1e-4);  // the phases agree
  }
}

TEST_F(Station_tensor, Has_the_static_factors_and_the_offsets_of_averages) {
  store({.frequencies = {1.0F, 8.0F}, .scan_rate = 64.0F});
  store({.frequencies = {8.0F, 32.0F}, .impedance = scaled(example, 2.0), .scan_rate = 256.0F});
  (void)load();
  execute(
      "UPDATE ReadingsDataTable SET ResOffset = 4, PhaseOffset = 10 WHERE ReductionType = 1 AND "
      "DataType = 'ExHx' AND SampleRate = 256");
  Module_database::StoredReading merged;
  ASSERT_EQ(Module_averaged_data::merge_scan_rates(key({}, 0), made::frequencies(), merged), 0);
  for (const char* const element : {"ExHx", "ExHy"}) {
    execute("UPDATE ReadingsDataTable SET ResOffset = 9 WHERE ReductionType = 2 AND DataType = '" +
            std::string(element) + "'");
  }
  const StationTensor station = loaded();
  ASSERT_EQ(station.points.size(), 3U);
  // 9 on resistivity is 3 on the impedance of both elements of Ex.
  Impedance slow = example;
  slow[0] *= 3.0;
  slow[1] *= 3.0;
  expect_impedance(station, 0, slow);
  // xx is masked and taken from the average of the highest rate: 2 by its data, 2 and 10 degrees by its
  // offsets; with 10 degrees less it would be where the recording had it.
  Impedance fast = scaled(slow, 2.0);
  fast[0] *= std::polar(2.0, 10.0 * std::numbers::pi / 180.0);
  expect_impedance(station, 2, fast);
  // At 8 Hz both rates have a point: what counts is a mean, of resistivities 1 and 4 times the first one's,
  // for xx 1 and 16 times; its phase is masked and the mean of the rates all the same.
  const auto& shared = station.points[1].tensor;
  EXPECT_NEAR(std::abs(shared[Element::xy]) / std::abs(slow[1]), std::sqrt(2.5), 1e-6);
  EXPECT_NEAR(std::abs(shared[Element::xx]) / std::abs(slow[0]), std::sqrt(8.5), 1e-6);
  EXPECT_NEAR(degrees(shared[Element::xx]), degrees(slow[0]) + 5.0, 1e-4);
}

TEST_F(Station_tensor, Takes_masked_diagonals_from_averages_of_files_where_nothing_was_averaged) {
  store({.frequencies = {1.0F}, .scan_rate = 64.0F});
  store({.frequencies = {32.0F}, .scan_rate = 256.0F});
  execute("UPDATE ReadingsDataTable SET ReductionType = 1 WHERE SampleRate = 256");
  const StationTensor station = loaded();
  ASSERT_EQ(station.points.size(), 2U);
  for (std::size_t point = 0; point < 2; ++point) {
    SCOPED_TRACE(point);
    expect_impedance(station, point, example);
  }
}

// Repeats of 1 and 1.1 times an impedance: resistivities r and 1.21 r deviate by 0.105 r from their
// mean 1.105 r, which is known to that over the root of 2.
TEST_F(Station_tensor, Errors_are_those_of_files_or_of_the_mean_of_repeats) {
  for (std::size_t element = 0; element < 4; ++element) {
    made::store(key({}, element), 1, made::with_errors(reading_of({}, element), 2.0F, 3.0F));
  }
  StationTensor station = loaded();
  const auto sum_of_variances = [&](Element element) {
    const auto& known = station.points.at(0).tensor.known(element);
    return known.real + known.imaginary;
  };
  for (const Element element : {Element::xx, Element::xy}) {  // masked, and not
    const double size = std::abs(example[static_cast<std::size_t>(element)]);
    const double along = size * 2.0 / (2.0 * 0.2 * size * size);
    const double across = size * 3.0 * std::numbers::pi / 180.0;
    EXPECT_NEAR(sum_of_variances(element) / (along * along + across * across), 1.0, 1e-5);
  }

  store({.station = 200.0, .event = 1});
  store({.station = 200.0, .impedance = scaled(example, 1.1), .event = 2});
  station = load().stations.at(1);
  for (const Element element : {Element::xx, Element::xy}) {
    const double size = std::abs(example[static_cast<std::size_t>(element)]) * std::sqrt(1.105);
    const double along = size * 0.105 / std::numbers::sqrt2 / (2.0 * 1.105);
    EXPECT_NEAR(sum_of_variances(element) / (2.0 * along * along), 1.0, 1e-4);  // the phases agree
  }
}

TEST_F(Station_tensor, Has_the_axes_that_its_readings_agree_on) {
  constexpr std::int32_t turned = Module_database::ey_turned;
  store({.axes = {turned, 359.75F}, .event = 1});
  store({.axes = {turned, 0.25F}, .event = 2});
  store({.station = 200.0, .axes = {turned, no_data}});
  store({.station = 300.0, .axes = {turned, 10.0F}, .event = 1});
  store({.station = 300.0, .axes = {turned, 22.5F}, .event = 2});
  store({.station = 400.0, .axes = {turned, 10.0F}, .event = 1});
  store({.station = 400.0, .axes = {turned, no_data}, .event = 2});
  const Recording mixed{.station = 500.0, .axes = {turned, 10.0F}};
  for (std::size_t element = 0; element < 4; ++element) {
    Module_database::StoredReading reading = reading_of(mixed, element);
    reading.axes.HxAzimuth = element == 2 ? 12.0F : 10.0F;
    made::store(key(mixed, element), 1, reading);
  }
  const LineTensors line = load();
  ASSERT_EQ(line.stations.size(), 5U);
  EXPECT_TRUE(line.stations[0].axes_known);
  EXPECT_NEAR(std::remainder(line.stations[0].axes, 360.0), 0.0, 1e-4);
  EXPECT_TRUE(line.stations[0].remarks.empty());
  EXPECT_FALSE(line.stations[1].axes_known);
  EXPECT_EQ(line.stations[1].axes, 0.0);
  EXPECT_EQ(line.stations[1].remarks.size(), 1U);
  EXPECT_EQ(line.stations[2].refusal,
            "Station 300: the azimuths of Hx of its readings differ by 12.5 degrees, so they make no tensor");
  EXPECT_TRUE(line.stations[2].points.empty());
  EXPECT_EQ(line.stations[3].axes, 10.0);
  EXPECT_EQ(line.stations[3].remarks.size(), 1U);
  EXPECT_NE(line.stations[4].refusal.find("differ by 2.0 degrees"), std::string::npos);
}

// A two-dimensional tensor and tipper along and across 25 degrees, in axes of 40 degrees.
TEST_F(Station_tensor, Is_turned_to_any_azimuth_with_its_tipper) {
  const double angle = 15.0 * std::numbers::pi / 180.0;  // from the strike to x
  const double c = std::cos(angle);
  const double s = std::sin(angle);
  const std::complex<double> te(10.0, 8.0);
  const std::complex<double> tm(-9.0, -11.0);
  // R [[0, te], [tm, 0]] R^T
  const Impedance turned{c * s * (te + tm), c * c * te - s * s * tm, c * c * tm - s * s * te,
                         -c * s * (te + tm)};
  StationTensor station;
  station.axes = 40.0;
  station.points.resize(1);
  station.points[0].tensor.z = turned;
  station.tipper.resize(1);
  station.tipper[0].tipper.x = s;  // (0, 1) in the axes of the strike
  station.tipper[0].tipper.y = c;
  const StationTensor along = turned_to(station, 25.0);
  EXPECT_EQ(along.axes, 25.0);
  EXPECT_NEAR(std::abs(along.points[0].tensor[Element::xx]), 0.0, 1e-12);
  EXPECT_NEAR(std::abs(along.points[0].tensor[Element::xy] - te), 0.0, 1e-12);
  EXPECT_NEAR(std::abs(along.points[0].tensor[Element::yx] - tm), 0.0, 1e-12);
  EXPECT_NEAR(std::abs(along.tipper[0].tipper.x), 0.0, 1e-12);
  EXPECT_NEAR(std::abs(along.tipper[0].tipper.y - 1.0), 0.0, 1e-12);
}

// Files with edited resistivities of xy and yx and impedances of all; in a unit of their own.
TEST_F(Station_tensor, Names_elements_that_were_found_in_different_ways) {
  for (const double station : {100.0, 200.0}) {
    const Recording recording{.station = station, .frequencies = {1.0F, 2.0F, 4.0F}};
    for (std::size_t element = 0; element < 4; ++element) {
      Module_database::StoredReading reading = reading_of(recording, element);
      const bool is_edited = station == 100.0 && (element == 1 || element == 2);
      for (std::size_t at = 0; at < 3; ++at) {
        reading.curve.value(9, at) = static_cast<float>(1e-4 * recording.impedance[element].real());
        reading.curve.value(10, at) = static_cast<float>(1e-4 * recording.impedance[element].imag());
        reading.curve.value(1, at) *= is_edited ? 1.21F : 1.0F;
      }
      made::store(key(recording, element), 1, reading);
    }
  }
  const LineTensors line = load();
  ASSERT_EQ(line.stations[0].remarks.size(), 1U);
  EXPECT_EQ(line.stations[0].remarks[0],
            "Station 100: ExHx and EyHy came from impedances, ExHy and EyHx from resistivities that the file "
            "has beside them; their |Z| differ by 10.50 percent in the median");
  EXPECT_TRUE(line.stations[1].remarks.empty());
}
