// The files of the made survey: how many, the same each time, and with the faults they promise.
#include "samples/sample_survey.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "numerics/geodesy/geographic_angle.h"
#include "numerics/impedance/apparent_resistivity.h"
#include "tests/samples/edi_blocks.h"

namespace {

using namespace Module_samples;  // the room under test
using numerics::impedance::apparent_resistivity;
using numerics::impedance::surface_impedance;

const std::vector<SampleFile>& survey() {
  static const std::vector<SampleFile> files = make_sample_survey();
  return files;
}

const std::string& text_of(const std::string& name) {
  const auto found = std::ranges::find(survey(), name, &SampleFile::name);
  if (found == survey().end()) {
    throw std::runtime_error("no file " + name);
  }
  return found->text;
}

/// Median over the frequencies of a file's resistivity divided by that of the layers below the station.
double median_shift(const std::string& name, const std::string& tag, const SampleLine& line, double station) {
  const std::vector<double> frequencies = block(text_of(name), "FREQ");
  std::vector<double> ratios = block(text_of(name), tag);
  for (std::size_t k = 0; k < ratios.size(); ++k) {
    ratios[k] /=
        apparent_resistivity(surface_impedance(ground_below(line, station), frequencies[k]), frequencies[k]);
  }
  std::ranges::sort(ratios);
  return ratios[ratios.size() / 2];
}

/// Mean size of the logarithm of a resistivity against that of the layers.
double scatter(const std::string& name, const SampleLine& line, double station) {
  const std::vector<double> frequencies = block(text_of(name), "FREQ");
  const std::vector<double> values = block(text_of(name), "RHOXY");
  double sum = 0.0;
  for (std::size_t k = 0; k < values.size(); ++k) {
    sum += std::abs(std::log(
        values[k] / apparent_resistivity(surface_impedance(ground_below(line, station), frequencies[k]),
                                         frequencies[k])));
  }
  return sum / static_cast<double>(values.size());
}

TEST(Sample_survey, Has_every_file_once_under_a_name_that_can_be_taken_apart) {
  std::set<std::string> names;
  for (const SampleFile& file : survey()) {
    names.insert(file.name);
    const bool known_line = file.name.substr(1, 4) == "200E" || file.name.substr(1, 4) == "400E";
    EXPECT_TRUE(known_line) << file.name;
    EXPECT_TRUE(is_numeric(file.name.substr(7, 4))) << file.name;
    EXPECT_TRUE(is_numeric(file.name.substr(13, 1))) << file.name;
    EXPECT_TRUE(is_numeric(file.name.substr(16, 4))) << file.name;
  }
  EXPECT_EQ(survey().size(), 2U * 12U * 2U * 3U);
  EXPECT_EQ(names.size(), survey().size());
}

TEST(Sample_survey, Is_the_same_each_time_and_another_with_another_seed) {
  const std::vector<SampleFile> again = make_sample_survey();
  const std::vector<SampleFile> other = make_sample_survey(7);
  ASSERT_EQ(again.size(), survey().size());
  ASSERT_EQ(other.size(), survey().size());
  for (std::size_t k = 0; k < again.size(); ++k) {
    EXPECT_EQ(again[k].text, survey()[k].text);
    EXPECT_NE(other[k].text, survey()[k].text);
  }
}

TEST(Sample_survey, Scan_rates_share_frequencies_to_the_last_digit) {
  const std::vector<double> high = block(text_of("L200E_S0100_E1_R4096.edi"), "FREQ");
  const std::vector<double> low = block(text_of("L200E_S0100_E1_R0256.edi"), "FREQ");
  const auto shared = std::ranges::count_if(low, [&](double f) { return std::ranges::count(high, f) == 1; });
  EXPECT_EQ(shared, 9);  // 64 to 4 Hz, two to the octave
  EXPECT_EQ(high.size(), 17U);
  EXPECT_EQ(low.size(), 21U);
}

TEST(Sample_survey, Shifted_stations_are_shifted_and_no_other) {
  for (const SampleLine& line : sample_lines) {
    for (const double station : {line.shifted_station, line.shifted_station + station_step}) {
      const bool shifted = station == line.shifted_station;
      const std::string name =
          "L" + std::string(line.name) + "_S" + format_number(station, "0000") + "_E1_R4096.edi";
      SCOPED_TRACE(name);
      const double of_ex = shifted ? line.shift_of_ex : 1.0;
      const double of_ey = shifted ? line.shift_of_ey : 1.0;
      EXPECT_NEAR(median_shift(name, "RHOXY", line, station) / of_ex, 1.0, 0.05);
      EXPECT_NEAR(median_shift(name, "RHOYX", line, station) / of_ey, 1.0, 0.05);
    }
  }
}

TEST(Sample_survey, One_repeat_of_a_line_is_spoiled) {
  const SampleLine& line = sample_lines[0];
  const double spoiled = scatter("L200E_S0800_E2_R4096.edi", line, 800.0);
  EXPECT_GT(spoiled, 3.0 * scatter("L200E_S0800_E1_R4096.edi", line, 800.0));
  EXPECT_GT(spoiled, 3.0 * scatter("L200E_S0800_E3_R4096.edi", line, 800.0));
}

TEST(Sample_survey, Stated_errors_are_those_of_the_noise) {
  const std::string& text = text_of("L200E_S0300_E1_R4096.edi");
  const std::vector<double> real = block(text, "ZXXR");  // which is noise alone
  const std::vector<double> imaginary = block(text, "ZXXI");
  const std::vector<double> variance = block(text, "ZXX.VAR");
  std::vector<double> shares;
  for (std::size_t k = 0; k < real.size(); ++k) {
    shares.push_back((real[k] * real[k] + imaginary[k] * imaginary[k]) / variance[k]);
  }
  std::ranges::sort(shares);
  EXPECT_NEAR(shares[shares.size() / 2], std::log(2.0), 0.3);  // the median of a complex normal variable
  const std::vector<double> xy_real = block(text, "ZXYR");
  const std::vector<double> xy_imaginary = block(text, "ZXYI");
  const std::vector<double> phase_error = block(text, "PHSXY.ERR");
  const std::vector<double> xy_variance = block(text, "ZXY.VAR");
  for (std::size_t k = 0; k < phase_error.size(); ++k) {
    const double s = std::sqrt(xy_variance[k] / 2.0);
    EXPECT_NEAR(phase_error[k], s / std::hypot(xy_real[k], xy_imaginary[k]) * 180.0 / std::numbers::pi, 1e-4);
  }
}

// In metres by the length of a degree of latitude there, from tables; the surveyor is off by a metre.
TEST(Sample_survey, Sites_lie_where_their_stations_are) {
  constexpr double metres_per_degree = 110930.0;  // of latitude, at 34.3 S
  for (const double station : {100.0, 700.0, 1200.0}) {
    SCOPED_TRACE(station);
    const std::string end = format_number(station, "0000") + "_E1_R4096.edi";
    const auto place_of = [](const std::string& text) {
      const auto value = [&](const std::string& key, numerics::geodesy::GeographicAngle kind) {
        const std::size_t first = text.find(key + "=") + key.size() + 1;
        return numerics::geodesy::read_geographic_angle(text.substr(first, text.find('\n', first) - first),
                                                        kind)
            .value();
      };
      return std::pair{value("REFLAT", numerics::geodesy::GeographicAngle::latitude),
                       value("REFLONG", numerics::geodesy::GeographicAngle::longitude)};
    };
    const auto [latitude, longitude] = place_of(text_of("L200E_S" + end));
    const auto [first_latitude, first_longitude] = place_of(text_of("L200E_S0100_E1_R4096.edi"));
    EXPECT_NEAR((latitude - first_latitude) * metres_per_degree, station - 100.0, 2.0);
    const auto [other_latitude, other_longitude] = place_of(text_of("L400E_S" + end));
    const double cosine = std::cos(latitude * std::numbers::pi / 180.0);
    EXPECT_NEAR((other_longitude - longitude) * metres_per_degree * cosine, 200.0, 2.5);
    EXPECT_NEAR((other_latitude - latitude) * metres_per_degree, 0.0, 2.0);
    EXPECT_EQ(place_of(text_of("L200E_S" + format_number(station, "0000") + "_E3_R0256.edi")),
              (std::pair{latitude, longitude}))
        << "a station was surveyed once";
  }
}

TEST(Sample_survey, The_table_of_elevations_is_that_of_the_field_files) {
  const std::string table = elevation_table();
  EXPECT_EQ(std::ranges::count(table, '\n'), 1 + station_count);
  for (const double station : {100.0, 600.0, 1200.0}) {
    const std::string& file = text_of("L400E_S" + format_number(station, "0000") + "_E2_R0256.edi");
    const std::size_t first = file.find("ELEV=") + 5;
    const double elevation = numeric_value(file.substr(first, file.find('\n', first) - first));
    EXPECT_NE(table.find("\n" + plain_text(station) + "  " + format_number(elevation, "0.0") + "\n"),
              std::string::npos)
        << table;
  }
}

// A phase of 0 or below would be masked at import.
TEST(Sample_survey, Phases_of_both_modes_lie_in_the_first_quadrant) {
  std::size_t inside = 0;
  std::size_t all = 0;
  for (const SampleFile& file : survey()) {
    for (const char* tag : {"PHSXY", "PHSYX"}) {
      for (const double phase : block(file.text, tag)) {
        ++all;
        inside += phase > 0.0 && phase < 90.0 ? 1U : 0U;
      }
    }
  }
  EXPECT_EQ(all, 2U * 3U * 24U * (17U + 21U));
  EXPECT_GT(static_cast<double>(inside), 0.97 * static_cast<double>(all));  // but for outliers
}

}  // namespace
