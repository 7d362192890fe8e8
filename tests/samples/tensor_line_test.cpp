// The made line of tensors: its ground and its faults, by formulas of the field and not by the code that made
// it.
#include "samples/tensor_line.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <numbers>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/samples/edi_blocks.h"

namespace {

using namespace Module_samples;
using Complex = std::complex<double>;

constexpr double degrees = 180.0 / std::numbers::pi;

const std::vector<SampleFile>& line() {
  static const std::vector<SampleFile> files = make_tensor_line();
  return files;
}

const std::string& text_at(double station) {
  return line().at(static_cast<std::size_t>((station - tensor_line_first) / tensor_line_step)).text;
}

/// A transfer function of a station, for each frequency.
std::vector<Complex> element(double station, const std::string& real, const std::string& imaginary) {
  const std::vector<double> x = block(text_at(station), real);
  const std::vector<double> y = block(text_at(station), imaginary);
  std::vector<Complex> values;
  for (std::size_t k = 0; k < x.size(); ++k) {
    values.emplace_back(x[k], y[k]);
  }
  return values;
}

struct Tensors {
  explicit Tensors(double station)
      : xx(element(station, "ZXXR", "ZXXI")),
        xy(element(station, "ZXYR", "ZXYI")),
        yx(element(station, "ZYXR", "ZYXI")),
        yy(element(station, "ZYYR", "ZYYI")) {}
  std::vector<Complex> xx, xy, yx, yy;
};

/// Swift (1967), -45 < strike <= 45.
double swift_strike(const Tensors& z, std::size_t k) {
  const Complex s2 = z.xy[k] + z.yx[k];
  const Complex d1 = z.xx[k] - z.yy[k];
  return 0.25 * degrees * std::atan2(-2.0 * (d1 * std::conj(s2)).real(), std::norm(s2) - std::norm(d1));
}

/// Skew beta of the phase tensor, degrees: Caldwell, Bibby & Brown (2004).
double beta(const Tensors& z, std::size_t k) {
  const double determinant = z.xx[k].real() * z.yy[k].real() - z.xy[k].real() * z.yx[k].real();
  const double xx = (z.yy[k].real() * z.xx[k].imag() - z.xy[k].real() * z.yx[k].imag()) / determinant;
  const double xy = (z.yy[k].real() * z.xy[k].imag() - z.xy[k].real() * z.yy[k].imag()) / determinant;
  const double yx = (z.xx[k].real() * z.yx[k].imag() - z.yx[k].real() * z.xx[k].imag()) / determinant;
  const double yy = (z.xx[k].real() * z.yy[k].imag() - z.yx[k].real() * z.xy[k].imag()) / determinant;
  return 0.5 * degrees * std::atan2(xy - yx, xx + yy);
}

double median(std::vector<double> values) {
  std::ranges::sort(values);
  return values[values.size() / 2];
}

/// The frequencies of a band, as places.
std::vector<std::size_t> band(double lowest, double highest) {
  const std::vector<double> frequencies = tensor_line_frequencies();
  std::vector<std::size_t> places;
  for (std::size_t k = 0; k < frequencies.size(); ++k) {
    if (frequencies[k] >= lowest && frequencies[k] <= highest) {
      places.push_back(k);
    }
  }
  return places;
}

template <class Value>
double median_in(const std::vector<std::size_t>& places, Value value) {
  std::vector<double> values;
  for (const std::size_t k : places) {
    values.push_back(value(k));
  }
  return median(values);
}

bool is_special(double station) {
  return std::ranges::any_of(special_stations, [&](const auto& each) { return each.station == station; });
}

}  // namespace

TEST(Tensor_line, Has_the_strike_that_it_says_where_nothing_distorts_it) {
  ASSERT_EQ(line().size(), 15U);
  for (int place = 0; place < tensor_line_stations; ++place) {
    const double station = tensor_line_first + tensor_line_step * place;
    SCOPED_TRACE(station);
    const Tensors z(station);
    const auto in_band = band(0.1, 1.0);
    const double strike = median_in(in_band, [&](auto k) { return swift_strike(z, k); });
    const double skew = median_in(in_band, [&](auto k) { return beta(z, k); });
    if (!is_special(station)) {
      EXPECT_NEAR(strike, tensor_line_strike, 4.0);
    }
    EXPECT_NEAR(skew, station == 7000.0 ? 9.0 : 0.0, 2.0) << "distortion leaves the phase tensor alone";
    for (const std::size_t k : in_band) {
      EXPECT_LT((z.xy[k] * std::conj(z.yx[k])).real(), 0.0) << "Ey isn't turned";
    }
  }
  EXPECT_GT(std::abs(median_in(band(0.1, 1.0), [z = Tensors(3500.0)](auto k) { return swift_strike(z, k); }) -
                     tensor_line_strike),
            15.0);
}

// Parkinson's arrows point to the dyke from either side, across the strike.
TEST(Tensor_line, Arrows_point_to_the_conductor) {
  for (const auto& [station, azimuth] : {std::pair{1500.0, 120.0}, std::pair{6500.0, -60.0}}) {
    SCOPED_TRACE(station);
    const std::vector<Complex> x = element(station, "TXR.EXP", "TXI.EXP");
    const std::vector<Complex> y = element(station, "TYR.EXP", "TYI.EXP");
    const auto in_band = band(0.2, 2.0);
    EXPECT_NEAR(median_in(in_band, [&](auto k) { return degrees * std::atan2(-y[k].real(), -x[k].real()); }),
                azimuth, 4.0);
    EXPECT_GT(median_in(in_band, [&](auto k) { return std::hypot(x[k].real(), y[k].real()); }), 0.25);
  }
}

TEST(Tensor_line, Stated_errors_are_those_of_the_noise) {
  // Along the strike the tipper of this ground is 0, so that what is there is noise.
  const double c = std::cos(tensor_line_strike / degrees);
  const double s = std::sin(tensor_line_strike / degrees);
  std::vector<double> shares;
  for (const double station : {500.0, 2500.0, 4500.0, 7500.0}) {
    const std::vector<Complex> x = element(station, "TXR.EXP", "TXI.EXP");
    const std::vector<Complex> y = element(station, "TYR.EXP", "TYI.EXP");
    const std::vector<double> variance_x = block(text_at(station), "TXVAR.EXP");
    const std::vector<double> variance_y = block(text_at(station), "TYVAR.EXP");
    for (std::size_t k = 0; k < x.size(); ++k) {
      shares.push_back(std::norm(c * x[k] + s * y[k]) / (c * c * variance_x[k] + s * s * variance_y[k]));
    }
  }
  EXPECT_NEAR(median(shares), std::numbers::ln2, 0.15);  // the median of a complex normal variable
}

TEST(Tensor_line, Is_the_same_each_time_and_has_other_noise_with_another_seed) {
  const std::vector<SampleFile> again = make_tensor_line();
  const std::vector<SampleFile> other = make_tensor_line(7);
  for (std::size_t k = 0; k < line().size(); ++k) {
    EXPECT_EQ(again[k].text, line()[k].text);
    EXPECT_EQ(other[k].name, line()[k].name);
    EXPECT_NE(other[k].text, line()[k].text);
  }
  EXPECT_EQ(line().front().name, "L300T_S0500_E1_R0512.edi");
}
