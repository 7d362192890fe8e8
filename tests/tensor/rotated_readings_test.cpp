#include "tensor/rotated_readings.h"

#include <random>

#include <gtest/gtest.h>

#include "core/absent_value.h"
#include "database/sites.h"
#include "tests/tensor/made_station.h"

namespace Module_tensor {
namespace {

using made::Complex;
using made::Elements;
using Module_database::field_phase;
using Module_database::field_resistivity;
using Module_database::StoredReading;

const std::vector<float> frequencies{0.01F, 1.0F, 100.0F};

/// 100 ohm-m and 30 degrees along a strike, 400 ohm-m and 60 degrees across, whatever the frequency.
Elements two_dimensional(double strike, double frequency) {
  return made::in_axes_of_north(strike, made::impedance(100.0, 30.0, frequency),
                                made::impedance(400.0, 60.0, frequency));
}

StationCurves station_of_strike(double strike, made::Ey ey = made::Ey::turned) {
  return made::station(
      1250, frequencies, [strike](double f) { return two_dimensional(strike, f); }, ey);
}

StoredReading rotated(const StationCurves& curves, CurveType type, const Rotation& rotation) {
  return rotated_reading(curves, station_tensor(curves, Module_database::ey_sign_by_rule), type, rotation);
}

/// At all frequencies.
void expect_values(const StoredReading& reading, double resistivity, double phase) {
  ASSERT_EQ(reading.curve.frequencies, frequencies);
  for (std::size_t at = 0; at < reading.curve.count(); ++at) {
    EXPECT_TRUE(reading.curve.point_counts(field_resistivity, at));
    EXPECT_TRUE(reading.curve.point_counts(field_phase, at));
    EXPECT_NEAR(reading.curve.value(field_resistivity, at), resistivity, 1e-5 * resistivity);
    EXPECT_NEAR(reading.curve.value(field_phase, at), phase, 1e-4);
    EXPECT_EQ(reading.curve.value(Module_database::field_all_resistivity, at),
              reading.curve.value(field_resistivity, at));
  }
}

TEST(Rotated_readings, Along_and_across_a_known_strike) {
  const StationCurves curves = station_of_strike(25.0);
  for (const double same : {25.0, 205.0, -155.0}) {  // opposite directions are the same axes
    SCOPED_TRACE(same);
    expect_values(rotated(curves, CurveType::ExHy, {same}), 100.0, 30.0);
    expect_values(rotated(curves, CurveType::EyHx, {same}), 400.0, 60.0);
  }
  expect_values(rotated(curves, CurveType::ExHy, {115.0}), 400.0, 60.0);
  expect_values(rotated(curves, CurveType::EyHx, {-65.0}), 100.0, 30.0);
}

TEST(Rotated_readings, Distortion_scales_resistivities_and_leaves_phases) {
  // E times [[1.2, 0.3], [-0.2, 0.8]] in the axes of the strike, by hand.
  const StationCurves curves = made::station(1250, frequencies, [](double f) {
    const Complex te = made::impedance(100.0, 30.0, f);
    const Complex tm = made::impedance(400.0, 60.0, f);
    return made::in_axes_of_north(25.0, 1.2 * te, 0.8 * tm, -0.3 * tm, -0.2 * te);
  });
  expect_values(rotated(curves, CurveType::ExHy, {25.0}), 1.44 * 100.0, 30.0);
  expect_values(rotated(curves, CurveType::EyHx, {25.0}), 0.64 * 400.0, 60.0);
  expect_values(rotated(curves, CurveType::ExHx, {25.0}), 0.09 * 400.0, 60.0 - 180.0);
  expect_values(rotated(curves, CurveType::EyHy, {25.0}), 0.04 * 100.0, 30.0);  // -0.2, and Ey is turned
}

TEST(Rotated_readings, Axes_of_the_readings_count) {
  StationCurves curves = station_of_strike(25.0);  // as seen from x
  for (std::size_t element = 0; element < 4; ++element) {
    curves.merged[element].axes.HxAzimuth = 30.0F;
    curves.sources[element].axes[0].HxAzimuth = 30.0F;
  }
  const StoredReading reading = rotated(curves, CurveType::ExHy, {55.0});
  expect_values(reading, 100.0, 30.0);
  EXPECT_EQ(reading.axes.HxAzimuth, 55.0F);
  EXPECT_EQ(reading.axes.EyTurned, Module_database::ey_turned);
}

TEST(Rotated_readings, The_sign_of_Ey_is_that_of_the_readings_or_of_inversions) {
  const StationCurves as_measured = station_of_strike(25.0, made::Ey::as_measured);
  expect_values(rotated(as_measured, CurveType::EyHx, {25.0}), 400.0, 60.0 - 180.0);
  Rotation rotation{25.0};
  rotation.ey = RotatedEy::first_quadrant;
  expect_values(rotated(as_measured, CurveType::EyHx, rotation), 400.0, 60.0);
  expect_values(rotated(as_measured, CurveType::ExHy, rotation), 100.0, 30.0);
  expect_values(rotated(station_of_strike(25.0), CurveType::EyHx, rotation), 400.0, 60.0);
}

/// Both quantities of a point of two curves, with their deviations and file errors.
void expect_same_point(const StoredReading& a, const StoredReading& b, std::size_t at, double factor) {
  for (int field = 1; field <= 4; ++field) {
    const bool resistivity = field == 1 || field == 3;
    const double expected = b.curve.value(field, at) * (resistivity ? factor : 1.0);
    EXPECT_NEAR(a.curve.value(field, at), expected, 1e-5 * std::abs(expected)) << "field " << field;
  }
  EXPECT_NEAR(a.curve.error(field_resistivity, at), factor * b.curve.error(field_resistivity, at),
              1e-5 * factor * b.curve.error(field_resistivity, at));
  EXPECT_NEAR(a.curve.error(field_phase, at), b.curve.error(field_phase, at), 1e-4);
}

TEST(Rotated_readings, By_0_degrees_nothing_changes_and_by_90_curves_change_places) {
  StationCurves curves = station_of_strike(25.0);
  curves.merged[1].ResOffset = 4.0F;
  curves.merged[2].ResOffset = 0.25F;
  for (const bool apply_static : {true, false}) {
    SCOPED_TRACE(apply_static);
    for (const CurveType type : {CurveType::ExHy, CurveType::EyHx}) {
      const StoredReading& stored = curves.of(type);
      const bool other = type == CurveType::ExHy;
      const StoredReading& partner = curves.of(other ? CurveType::EyHx : CurveType::ExHy);
      const StoredReading same = rotated(curves, type, {0.0, apply_static});
      const StoredReading swapped = rotated(curves, type, {90.0, apply_static});
      EXPECT_EQ(same.ResOffset, 1.0F);
      EXPECT_GT(same.ID, 0);
      for (std::size_t at = 0; at < frequencies.size(); ++at) {
        expect_same_point(same, stored, at, apply_static ? double{stored.ResOffset} : 1.0);
        expect_same_point(swapped, partner, at, apply_static ? double{partner.ResOffset} : 1.0);
      }
    }
  }
}

TEST(Rotated_readings, Points_without_a_tensor_are_absent_and_masked) {
  StationCurves curves = station_of_strike(25.0);
  curves.merged[2].curve.counts_at(field_phase, 1) = 0;  // somebody has masked a phase of EyHx
  const StoredReading reading = rotated(curves, CurveType::ExHy, {40.0});
  ASSERT_EQ(reading.curve.count(), 3U);
  for (int field = 1; field <= 8; ++field) {
    EXPECT_EQ(reading.curve.value(field, 1), no_data) << field;
  }
  EXPECT_EQ(reading.curve.counts_at(field_resistivity, 1), 0);
  EXPECT_EQ(reading.curve.counts_at(field_phase, 1), 0);
  EXPECT_EQ(reading.curve.error(field_resistivity, 1), no_data);
  EXPECT_TRUE(reading.curve.point_counts(field_phase, 2));
}

TEST(Rotated_readings, What_is_switched_off_or_missing_has_no_tensor) {
  LoadedStation off{station_of_strike(25.0), {}};
  off.curves.merged[1].UsePhase = false;
  LoadedStation lacks_diagonal{station_of_strike(25.0), {}};
  lacks_diagonal.curves.merged[0] = {};
  LoadedStation nothing;
  RotationReport report;
  for (LoadedStation* const station : {&off, &lacks_diagonal, &nothing}) {
    station->tensor = station_tensor(station->curves, Module_database::ey_sign_by_rule);
    EXPECT_EQ(rotated_reading(station->curves, station->tensor, CurveType::EyHx, {25.0}).ID, 0);
    EXPECT_FALSE(report.add(*station));
  }
  for (const bool known : {true, false}) {
    LoadedStation station{station_of_strike(25.0), {}};
    station.tensor = station_tensor(station.curves, Module_database::ey_sign_by_rule);
    station.tensor.axes_known = known;
    EXPECT_TRUE(report.add(station));
  }
  EXPECT_EQ(report.without_azimuth, 1U);
  EXPECT_EQ(
      left_out_text(report),
      "Left out for want of a tensor: Station 1250: ExHy is switched off; Station 1250: there is no ExHx")
      << "nobody misses what a station without curves lacks";
}

TEST(Rotated_readings, Deviations_are_those_of_repeats_that_vary_so) {
  const Elements z{Complex(1, 2), Complex(10, 8), Complex(-9, -11), Complex(0.5, 1)};
  const StationCurves curves = made::station(1, {1.0F}, [&z](double) { return z; });
  constexpr double degrees = 30.0;
  const StoredReading reading = rotated(curves, CurveType::ExHy, {degrees});

  std::mt19937 generator(18);
  std::normal_distribution<double> normal;
  constexpr int draws = 40000;
  std::array<double, 2> sums{};
  std::array<double, 2> squares{};
  const double c = std::cos(made::radians(degrees));
  const double s = std::sin(made::radians(degrees));
  for (int draw = 0; draw < draws; ++draw) {
    Elements varied;
    for (std::size_t element = 0; element < 4; ++element) {  // 2 % of the resistivity and 1 degree
      varied[element] = z[element] * std::sqrt(1.0 + 0.02 * normal(generator)) *
                        std::polar(1.0, made::radians(normal(generator)));
    }
    const Complex xy = -c * s * varied[0] + c * c * varied[1] - s * s * varied[2] + s * c * varied[3];
    const std::array<double, 2> values{0.2 * std::norm(xy), std::arg(xy) / made::radians(1.0)};
    for (std::size_t quantity = 0; quantity < 2; ++quantity) {
      sums[quantity] += values[quantity];
      squares[quantity] += values[quantity] * values[quantity];
    }
  }
  for (std::size_t quantity = 0; quantity < 2; ++quantity) {
    const double mean = sums[quantity] / draws;
    const double deviation = std::sqrt(squares[quantity] / draws - mean * mean);
    const int field = static_cast<int>(quantity) + Module_database::field_resistivity_deviation;
    EXPECT_NEAR(reading.curve.value(field, 0), deviation, 0.02 * deviation);  // draws give 0.4 %
  }
}

TEST(Rotated_readings, Curves_of_files_have_no_deviations) {
  const Elements z{Complex(1, 2), Complex(10, 8), Complex(-9, -11), Complex(0.5, 1)};
  StationCurves curves = made::station(1, {1.0F}, [&z](double) { return z; });
  for (StoredReading& merged : curves.merged) {
    merged.FileID = 5;  // its fields hold what the file has there
  }
  const StoredReading reading = rotated(curves, CurveType::ExHy, {30.0});
  EXPECT_GT(reading.curve.value(Module_database::field_resistivity, 0), 0.0F);
  EXPECT_EQ(reading.curve.value(Module_database::field_resistivity_deviation, 0), 0.0F);
  EXPECT_EQ(reading.curve.value(Module_database::field_phase_deviation, 0), 0.0F);
}

TEST(Rotated_readings, A_diagonal_without_an_error_is_known_as_well_as_its_row) {
  // Zyy, as stored, has a phase below 0, and its error isn't known. Errors of 10 % and 3 degrees of Zyx are
  // 0.05 and 0.0524 of 12.8 along and across; together with Zxx, which has its own, and weights of 1/4.
  const Elements z{Complex(1, 2), Complex(8, 8), Complex(-9, -9), Complex(-1, 3)};
  StationCurves curves = made::station(1, {1.0F}, [&z](double) { return z; });
  ASSERT_EQ(curves.of(CurveType::EyHy).curve.counts_at(field_phase, 0), 0);
  for (SourceValue& value : curves.sources[3].regardless_of_masks[0]) {
    value.error = no_data;
  }
  const StoredReading reading = rotated(curves, CurveType::ExHy, {45.0});
  const auto mean_variance = [](Complex element) {
    return std::norm(element) * (0.05 * 0.05 + made::radians(3.0) * made::radians(3.0)) / 2.0;
  };
  const double variance = (mean_variance(z[0]) + mean_variance(z[1]) + 2.0 * mean_variance(z[2])) / 4.0;
  const Complex xy = (-z[0] + z[1] - z[2] + z[3]) / 2.0;
  const double rho = 0.2 * std::norm(xy);
  // Along and across differ by 5 % only.
  EXPECT_NEAR(reading.curve.error(field_resistivity, 0), 2.0 * rho * std::sqrt(variance) / std::abs(xy),
              0.04 * rho * std::sqrt(variance));
  EXPECT_NEAR(reading.curve.error(field_phase, 0), std::sqrt(variance) / std::abs(xy) / made::radians(1.0),
              0.05);
}

TEST(Rotated_readings, Azimuths_and_the_words_about_them) {
  EXPECT_EQ(rotation_text(-22.5), "rotated to a strike of -22.5 degrees from north");
  EXPECT_TRUE(is_rotation_azimuth(azimuth_of(" -180 ")));
  EXPECT_TRUE(is_rotation_azimuth(azimuth_of("360")));
  for (const char* const bad : {"", "N25E", "25,5", "-180.1", "361", "nan", "inf"}) {
    EXPECT_FALSE(is_rotation_azimuth(azimuth_of(bad))) << bad;
  }
  EXPECT_EQ(impedance_type("EyHx"), CurveType::EyHx);
  EXPECT_EQ(impedance_type("HzHx"), std::nullopt);
  RotationReport report;
  EXPECT_EQ(report_text(25.0, report), "rotated to a strike of 25 degrees from north");
  report.left_out = {"1: a", "2: a", "3: a", "4: a", "5: a", "6: a", "7: a"};
  report.without_azimuth = 1;
  EXPECT_EQ(
      report_text(25.0, report),
      "rotated to a strike of 25 degrees from north, x counting as north at 1 station without an azimuth "
      "of Hx. Left out for want of a tensor: 1: a; 2: a; 3: a; 4: a; 5: a; and 2 more");
}

}  // namespace
}  // namespace Module_tensor
