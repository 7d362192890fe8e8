// The strike that stations have in common.
#include "numerics/impedance/band_strike.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>

#include <gtest/gtest.h>

#include "tests/numerics/impedance/made_tensors.h"

using namespace numerics::impedance;

namespace {

const std::complex<double> steep = std::polar(20.0, 1.05);
const std::complex<double> flat = std::polar(12.0, 0.52);

/// Tensors of stations, and what refers to them.
class Stations {
 public:
  void add(std::size_t station, const Eigen::Matrix2cd& z) {
    stations_.push_back(station);
    tensors_.push_back(made::tensor_of(z));
    phase_tensors_.push_back(phase_tensor(tensors_.back()).value());
  }
  [[nodiscard]] std::vector<StrikeDatum> data() const {
    std::vector<StrikeDatum> data;
    for (std::size_t i = 0; i < stations_.size(); ++i) {
      data.push_back({stations_[i], &tensors_[i], &phase_tensors_[i], nullptr});
    }
    return data;
  }
  [[nodiscard]] const std::vector<Tensor>& tensors() const { return tensors_; }

 private:
  std::vector<std::size_t> stations_;
  std::vector<Tensor> tensors_;
  std::vector<PhaseTensor> phase_tensors_;
};

/// Two-dimensional ground whose strike is scattered from station to station.
Stations scattered(double strike, double spread, std::size_t count, int frequencies) {
  std::mt19937 random(17);
  std::normal_distribution<double> normal(strike, spread);
  Stations stations;
  for (std::size_t station = 0; station < count; ++station) {
    const double local = normal(random);
    for (int frequency = 0; frequency < frequencies; ++frequency) {
      stations.add(station, made::two_dimensional(local, flat, steep));
    }
  }
  return stations;
}

constexpr StrikeMethod by_tensors[] = {StrikeMethod::phase_tensor_azimuth, StrikeMethod::phase_tensor_alpha,
                                       StrikeMethod::swift_sum};

}  // namespace

TEST(Band_strike, Stations_with_swapped_principal_phases_agree) {
  for (const double strike : {20.0, -44.9, 45.0}) {
    Stations stations;
    stations.add(7, made::two_dimensional(strike, flat, steep));
    stations.add(3, made::two_dimensional(strike, steep, flat));
    for (const StrikeMethod method : by_tensors) {
      for (const StrikeWeights weights : {StrikeWeights::none, StrikeWeights::ellipticity_squared}) {
        SCOPED_TRACE(std::to_string(strike) + " by " + std::to_string(static_cast<int>(method)));
        const BandStrike band = band_strike(stations.data(), {.method = method, .weights = weights});
        EXPECT_NEAR(made::difference(band.strike.value, strike, 90.0), 0.0, 1e-9);
        EXPECT_NEAR(made::difference(band.alternative, band.strike.value + 90.0, 180.0), 0.0, 1e-9);
        EXPECT_NEAR(band.concentration, 1.0, 1e-12);
        EXPECT_NEAR(band.deviation, 0.0, 1e-5);  // the root of rounding
        EXPECT_NEAR(band.strike.error, 0.0, 1e-5);
        EXPECT_EQ(band.used, 2U);
        EXPECT_GT(band.strike.value, -45.0);
        EXPECT_LE(band.strike.value, 45.0);
        EXPECT_GT(band.alternative, -90.0);
        EXPECT_LE(band.alternative, 90.0);
      }
    }
  }
}

TEST(Band_strike, By_impedances_it_makes_the_diagonal_least) {
  std::mt19937 random(23);
  std::normal_distribution<double> normal;
  Stations stations;
  for (std::size_t station = 0; station < 12; ++station) {
    Eigen::Matrix2cd z = made::two_dimensional(-30.0, 10.0 * steep, flat);  // magnitudes must not weigh
    for (std::complex<double>& element : z.reshaped()) {
      element += 4.0 * std::complex(normal(random), normal(random));
    }
    stations.add(station, z * std::pow(10.0, normal(random)));
  }
  const StrikeChoices choices{
      .method = StrikeMethod::swift_sum, .skew_limit = 90.0, .least_ellipticity = 0.0};
  const BandStrike band = band_strike(stations.data(), choices);
  ASSERT_EQ(band.used, 12U);
  const auto diagonal = [&](double angle) {
    double sum = 0.0;
    for (const Tensor& tensor : stations.tensors()) {
      const Eigen::Matrix2cd turned =
          made::turn(angle) * made::matrix_of(tensor) * made::turn(angle).transpose();
      sum += turned.diagonal().squaredNorm() / turned.squaredNorm();
    }
    return sum;
  };
  double best = -45.0;
  for (int hundredth = -4500; hundredth <= 4500; ++hundredth) {
    const double angle = 0.01 * hundredth;
    best = diagonal(angle) < diagonal(best) ? angle : best;
  }
  EXPECT_NEAR(made::difference(band.strike.value, best, 90.0), 0.0, 0.0051);
  EXPECT_LT(band.concentration, 1.0);
}

TEST(Band_strike, Limits_leave_tensors_out_and_weights_favour_the_clear_ones) {
  Stations stations;
  const Eigen::Matrix2d X = Eigen::Matrix2d::Identity();
  stations.add(0, made::of_phase_tensor(10.0, 0.0, 1.5, 0.5, X));    // ellipticity 0.5
  stations.add(1, made::of_phase_tensor(30.0, 0.0, 1.25, 0.75, X));  // 0.25
  stations.add(2, made::of_phase_tensor(0.0, 4.0, 1.5, 0.5, X));     // skew 4
  stations.add(3, made::of_phase_tensor(0.0, 0.0, 1.05, 0.95, X));   // ellipticity 0.05
  std::vector<StrikeDatum> data = stations.data();
  data.push_back({4, nullptr, nullptr, nullptr});

  const BandStrike plain = band_strike(data, {.weights = StrikeWeights::none});
  EXPECT_NEAR(plain.strike.value, 20.0, 1e-9);
  EXPECT_EQ(plain.used, 2U);
  EXPECT_EQ(plain.left_out, 3U);
  // |s| of two directions 4 x 20 degrees apart is cos 40.
  EXPECT_NEAR(plain.concentration, 0.766044443, 1e-9);
  EXPECT_NEAR(plain.deviation, std::sqrt(-2.0 * std::log(0.766044443)) / 4.0 * 57.2957795, 1e-6);

  // Weights 4 to 1: tan of 4 times the angle from the first is sin 80 / (4 + cos 80).
  const BandStrike weighted = band_strike(data, {.weights = StrikeWeights::ellipticity_squared});
  EXPECT_NEAR(weighted.strike.value, 10.0 + std::atan(0.984807753 / 4.173648178) * 57.2957795 / 4.0, 1e-6);
  EXPECT_EQ(band_strike(data, {.skew_limit = 5.0}).used, 3U);
  EXPECT_EQ(band_strike(data, {.least_ellipticity = 0.01}).used, 3U);

  const BandStrike alpha =
      band_strike({&data[2], 1}, {.method = StrikeMethod::phase_tensor_alpha, .skew_limit = 5.0});
  EXPECT_NEAR(alpha.strike.value, 0.0, 1e-9);
  const SingleStrike azimuth =
      single_strike(data[2], {.weights = StrikeWeights::ellipticity_squared, .skew_limit = 5.0});
  EXPECT_NEAR(azimuth.strike, -4.0, 1e-9);
  EXPECT_NEAR(azimuth.weight, 0.25, 1e-9);
  EXPECT_TRUE(std::isnan(single_strike(data[2], {}).strike));
}

TEST(Band_strike, Arrows_stand_across_the_strike) {
  const PartCovariance known{1e-4, 1e-4};
  const Tipper east{0.0, 0.3, known, known};
  const Tipper west{0.0, {-0.2, 0.1}, known, known};
  const Tipper too_short{0.03, 0.0, known, known};
  const StrikeDatum data[] = {{0, nullptr, nullptr, &east},
                              {1, nullptr, nullptr, &west},
                              {2, nullptr, nullptr, &too_short},
                              {3, nullptr, nullptr, nullptr}};
  const BandStrike band = band_strike(data, {.method = StrikeMethod::tipper});
  EXPECT_NEAR(band.strike.value, 0.0, 1e-9);
  EXPECT_EQ(band.used, 2U);
  EXPECT_EQ(band.left_out, 2U);
}

TEST(Band_strike, Of_arrows_has_a_period_of_180_degrees) {
  const auto strike_of = [](const std::vector<double>& strikes) {
    std::vector<Tipper> tippers;
    for (const double strike : strikes) {
      const double across = (strike + 90.0) * std::acos(-1.0) / 180.0;
      tippers.push_back({0.3 * std::cos(across), 0.3 * std::sin(across), {}, {}});
    }
    std::vector<StrikeDatum> data;
    for (std::size_t i = 0; i < tippers.size(); ++i) {
      data.push_back({i, nullptr, nullptr, &tippers[i]});
    }
    return band_strike(data, {.method = StrikeMethod::tipper});
  };
  // |s| of two directions 2 x 20 degrees on either side of their mean is cos 40.
  const BandStrike scattered_arrows = strike_of({60.0, 100.0});
  EXPECT_NEAR(scattered_arrows.strike.value, 80.0, 1e-9);
  EXPECT_NEAR(scattered_arrows.alternative, -10.0, 1e-9);
  EXPECT_NEAR(scattered_arrows.concentration, 0.766044443, 1e-9);
  EXPECT_NEAR(scattered_arrows.deviation, std::sqrt(-2.0 * std::log(0.766044443)) / 2.0 * 57.2957795, 1e-6);
  EXPECT_GT(scattered_arrows.strike.error, 5.0);
  // At right angles they cancel.
  EXPECT_NEAR(strike_of({60.0, 60.0, -30.0}).strike.value, 60.0, 1e-9);
  EXPECT_NEAR(strike_of({60.0, 60.0, -30.0}).concentration, 1.0 / 3.0, 1e-9);
  EXPECT_FALSE(strike_of({10.0, 100.0}).strike.has_value());
  const BandStrike single = strike_of({85.0});
  EXPECT_NEAR(single.strike.value, 85.0, 1e-9);
  EXPECT_TRUE(std::isnan(single.deviation));
}

TEST(Band_strike, Its_error_is_that_of_the_mean_of_stations) {
  constexpr std::size_t count = 60;
  const StrikeChoices choices{.weights = StrikeWeights::none};
  const Stations stations = scattered(40.0, 4.0, count, 1);
  const BandStrike band = band_strike(stations.data(), choices);
  EXPECT_NEAR(made::difference(band.strike.value, 40.0, 90.0), 0.0, 3.0 * 4.0 / std::sqrt(60.0));
  EXPECT_NEAR(band.deviation, 4.0, 1.0);
  EXPECT_NEAR(band.strike.error, band.deviation / std::sqrt(60.0), 0.15 * band.strike.error);

  // Many frequencies of the same stations say no more about the ground between them.
  const BandStrike many = band_strike(scattered(40.0, 4.0, count, 20).data(), choices);
  EXPECT_NEAR(many.strike.error, band.strike.error, 1e-9);

  // The same data, the same error, whatever their order.
  std::vector<StrikeDatum> shuffled = stations.data();
  std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(1));
  EXPECT_EQ(band_strike(stations.data(), choices).strike.error, band.strike.error);
  EXPECT_NEAR(band_strike(shuffled, choices).strike.error, band.strike.error, 1e-9);
}

TEST(Band_strike, Without_a_direction_there_is_no_strike) {
  const BandStrike nothing = band_strike({}, {});
  EXPECT_FALSE(nothing.strike.has_value());
  EXPECT_EQ(nothing.used + nothing.left_out, 0U);

  const BandStrike single = band_strike(scattered(10.0, 0.0, 1, 5).data(), {});
  EXPECT_NEAR(single.strike.value, 10.0, 1e-9);
  EXPECT_FALSE(single.strike.has_error());

  Stations opposite;  // 45 degrees apart: the most that strikes can differ
  opposite.add(0, made::two_dimensional(0.0, flat, steep));
  opposite.add(1, made::two_dimensional(45.0, flat, steep));
  const BandStrike band = band_strike(opposite.data(), {.weights = StrikeWeights::none});
  EXPECT_FALSE(band.strike.has_value());
  EXPECT_NEAR(band.concentration, 0.0, 1e-12);
  EXPECT_TRUE(std::isnan(band.alternative));
  EXPECT_TRUE(std::isnan(band.deviation));
}
