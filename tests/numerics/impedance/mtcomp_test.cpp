#include "numerics/impedance/mtcomp.h"

#include <cmath>
#include <complex>
#include <numbers>
#include <random>
#include <vector>

#include <gtest/gtest.h>

using namespace numerics::impedance;

namespace {

using Complex = std::complex<double>;
using Tensor = std::array<Complex, 4>;  // xx, xy, yx, yy

// What a station records: fields of many realisations, averaged to spectra in the layout of field files.
class Recording {
 public:
  explicit Recording(std::size_t channels) : channels_(channels) {}

  void add(const std::vector<Complex>& fields) { realisations_.push_back(fields); }

  [[nodiscard]] std::vector<double> matrix() const {
    std::vector<double> m(channels_ * channels_);
    for (std::size_t a = 0; a < channels_; ++a) {
      for (std::size_t b = a; b < channels_; ++b) {
        Complex power;
        for (const auto& fields : realisations_) {
          power += fields[a] * std::conj(fields[b]);
        }
        power /= static_cast<double>(realisations_.size());
        m[a * channels_ + b] = -power.imag();
        m[b * channels_ + a] = power.real();
      }
    }
    return m;
  }

 private:
  std::size_t channels_;
  std::vector<std::vector<Complex>> realisations_;
};

constexpr SpectraChannels local{0, 1, 3, 4, 0, 1};
constexpr SpectraChannels remote{0, 1, 3, 4, 5, 6};
const Tensor earth{Complex{-3, 1}, Complex{40, 25}, Complex{-30, -28}, Complex{2, -4}};

class Source {
 public:
  Complex field() { return {normal_(generator_), normal_(generator_)}; }

 private:
  std::mt19937 generator_{7};
  std::normal_distribution<double> normal_;
};

// Hx, Hy, Hz, Ex, Ey and a reference that sees the same source on another scale; noise on the magnetic
// channels if asked.
std::vector<double> recorded(const Tensor& z, int realisations, double magnetic_noise) {
  Source source;
  Recording recording(7);
  for (int k = 0; k < realisations; ++k) {
    const Complex hx = source.field();
    const Complex hy = 0.5 * hx + source.field();
    const Complex rx = 1e7 * (0.9 * hx - 0.2 * hy + 0.3 * source.field());
    const Complex ry = 1e-5 * (0.3 * hx + 1.1 * hy + 0.3 * source.field());
    recording.add({hx + magnetic_noise * source.field(), hy + magnetic_noise * source.field(), source.field(),
                   z[0] * hx + z[1] * hy, z[2] * hx + z[3] * hy, rx, ry});
  }
  return recording.matrix();
}

TensorEstimate estimate_of(const std::vector<double>& matrix, const SpectraChannels& channels,
                           double rotation = 0.0, double averages = 100.0) {
  TensorEstimate estimate;
  const CrossSpectra spectra{1.0, averages, rotation, channels, 7, matrix};
  EXPECT_EQ(mtcomp(spectra, estimate), MtcompError::none);
  return estimate;
}

Complex element(const TensorEstimate& estimate, std::size_t index) {
  const std::size_t place = std::array<std::size_t, 4>{0, 2, 6, 8}.at(index);
  return {estimate.impedance[place], estimate.impedance[place + 1]};
}

double distance(const TensorEstimate& estimate, const Tensor& z) {
  double sum = 0.0;
  for (std::size_t index = 0; index < 4; ++index) {
    sum += std::norm(element(estimate, index) - z[index]);
  }
  return std::sqrt(sum);
}

}  // namespace

TEST(Mtcomp, Gives_back_the_tensor_that_made_the_fields) {
  const std::vector<double> matrix = recorded(earth, 20, 0.0);
  EXPECT_LT(distance(estimate_of(matrix, local), earth), 1e-4);
  const TensorEstimate referenced = estimate_of(matrix, remote);
  EXPECT_LT(distance(referenced, earth), 1e-4);
  EXPECT_NEAR(referenced.coherence, 1.0, 1e-6);
  const Complex determinant = earth[0] * earth[3] - earth[1] * earth[2];
  EXPECT_LT(std::abs(Complex(referenced.impedance[4], referenced.impedance[5]) - std::sqrt(determinant)),
            1e-4);
}

// Noise of the magnetic channels biases the local estimate downwards by its share of their power, and leaves
// the referenced one alone.
TEST(Mtcomp, A_reference_takes_away_the_bias_of_magnetic_noise) {
  const std::vector<double> matrix = recorded(earth, 40000, 0.5);
  const double size = 65.0;  // of the tensor
  EXPECT_GT(distance(estimate_of(matrix, local), earth), 0.1 * size);
  EXPECT_LT(distance(estimate_of(matrix, remote), earth), 0.02 * size);
}

// The spectra of a uniform earth written down by hand: Hy of power 1 and Ex = 1 + i times Hy, that is
// <Ex Hy*> = 1 + i with Hy in row 1 and Ex in row 3, so that M[3][1] = 1 and M[1][3] = +1.
TEST(Mtcomp, A_uniform_earth_has_a_phase_of_45_degrees) {
  std::vector<double> matrix(25);
  matrix[0 * 5 + 0] = 1.0;
  matrix[1 * 5 + 1] = 1.0;
  matrix[3 * 5 + 3] = 2.0;
  matrix[4 * 5 + 4] = 2.0;
  matrix[3 * 5 + 1] = 1.0;
  matrix[1 * 5 + 3] = 1.0;
  matrix[4 * 5 + 0] = -1.0;  // <Ey Hx*> = -1 - i
  matrix[0 * 5 + 4] = -1.0;
  TensorEstimate estimate;
  ASSERT_EQ(mtcomp({1.0, 0.0, 0.0, local, 5, matrix}, estimate), MtcompError::none);
  EXPECT_EQ(element(estimate, 1), Complex(1.0, 1.0));
  EXPECT_EQ(element(estimate, 2), Complex(-1.0, -1.0));
  EXPECT_EQ(element(estimate, 0), Complex());
  EXPECT_LE(estimate.errors[1], -1e30F) << "no averages, no errors";
}

// A tensor seen from axes turned clockwise by t is R^T Z R with R = [[cos t, -sin t], [sin t, cos t]].
TEST(Mtcomp, Turns_the_tensor_back_to_the_axes_of_the_channels) {
  for (const double degrees : {-37.0, 30.0, 90.0, 107.0, 360.0}) {
    SCOPED_TRACE(degrees);
    const double c = std::cos(degrees * std::numbers::pi / 180.0);
    const double s = std::sin(degrees * std::numbers::pi / 180.0);
    const auto& [xx, xy, yx, yy] = earth;
    const Tensor turned{
        c * c * xx + c * s * (xy + yx) + s * s * yy, c * c * xy + c * s * (yy - xx) - s * s * yx,
        c * c * yx + c * s * (yy - xx) - s * s * xy, c * c * yy - c * s * (xy + yx) + s * s * xx};
    EXPECT_LT(distance(estimate_of(recorded(turned, 20, 0.0), remote, degrees), earth), 1e-4);
  }
}

// Many stations on one earth, each of which averages as many spectra: their estimates scatter by the errors
// that they are given.
TEST(Mtcomp, Errors_are_the_scatter_of_real_and_imaginary_parts) {
  constexpr int stations = 1000;
  constexpr int averages = 24;
  Source source;
  for (const SpectraChannels& channels : {local, remote}) {
    SCOPED_TRACE(channels.reference_x);
    std::array<double, 4> scatter{};   // of the real part, then of the imaginary part of xx; the same of xy
    std::array<double, 2> variance{};  // as estimated, of xx and xy
    for (int station = 0; station < stations; ++station) {
      Recording recording(7);
      for (int k = 0; k < averages; ++k) {
        const Complex hx = source.field();
        const Complex hy = 0.5 * hx + source.field();
        recording.add({hx, hy, source.field(), earth[0] * hx + earth[1] * hy + 5.0 * source.field(),
                       source.field(), hx + 0.2 * source.field(), hy + 0.2 * source.field()});
      }
      const TensorEstimate estimate = estimate_of(recording.matrix(), channels, 0.0, averages);
      for (std::size_t index = 0; index < 2; ++index) {
        const Complex difference = element(estimate, index) - earth.at(index);
        scatter.at(2 * index) += difference.real() * difference.real() / stations;
        scatter.at(2 * index + 1) += difference.imag() * difference.imag() / stations;
        variance.at(index) += estimate.errors.at(index) * estimate.errors.at(index) / stations;
      }
    }
    for (std::size_t index = 0; index < 2; ++index) {
      EXPECT_NEAR(scatter.at(2 * index) / variance.at(index), 1.0, 0.15);
      EXPECT_NEAR(scatter.at(2 * index + 1) / variance.at(index), 1.0, 0.15);
    }
  }
}

TEST(Mtcomp, Errors_need_more_averages_than_a_row_has_elements) {
  const std::vector<double> matrix = recorded(earth, 20, 0.5);
  EXPECT_LE(estimate_of(matrix, local, 0.0, 2.0).errors[1], -1e30F);
  EXPECT_GT(estimate_of(matrix, local, 0.0, 2.5).errors[1], 0.0F);
}

TEST(Mtcomp, Refuses_what_has_no_tensor) {
  const std::vector<double> good = recorded(earth, 20, 0.0);
  std::vector<double> with_nan = good;
  with_nan[2] = std::nan("");
  // One direction of the magnetic field: the columns of the second channel repeat the first one's.
  const std::vector<double> polarised(49, 1.0);
  const std::vector<double> zeros(49, 0.0);
  const std::vector<double> cut(good.begin(), good.end() - 1);
  struct Case {
    const char* name;
    CrossSpectra spectra;
    MtcompError error;
  };
  const Case cases[] = {
      {"frequency 0", {0.0, 100.0, 0.0, local, 7, good}, MtcompError::bad_frequency},
      {"frequency not a number", {std::nan(""), 100.0, 0.0, local, 7, good}, MtcompError::bad_frequency},
      {"not a number", {1.0, 100.0, 0.0, local, 7, with_nan}, MtcompError::bad_matrix},
      {"a value short", {1.0, 100.0, 0.0, local, 7, cut}, MtcompError::bad_matrix},
      {"channel beyond", {1.0, 100.0, 0.0, {0, 1, 3, 7, 0, 1}, 7, good}, MtcompError::bad_matrix},
      {"zeros", {1.0, 100.0, 0.0, local, 7, zeros}, MtcompError::singular},
      {"polarised", {1.0, 100.0, 0.0, remote, 7, polarised}, MtcompError::singular}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    TensorEstimate estimate;
    estimate.coherence = 0.5F;
    EXPECT_EQ(mtcomp(c.spectra, estimate), c.error);
    EXPECT_EQ(estimate.coherence, 0.5F);
  }
}

// Written down by hand: uncorrelated Hx and Hy of powers 1 and 4, Hz = (0.2 - 0.1i) Hx + (-0.3 + 0.05i) Hy
// and noise of power 0.03, so that <Hz Hx*> = 0.2 - 0.1i, <Hz Hy*> = -1.2 + 0.2i, <Hz Hz*> = 0.45.
TEST(Mtcomp, The_tipper_is_a_row_of_Hz_with_errors_of_its_own) {
  std::vector<double> matrix(25);
  const auto put = [&](std::size_t row, std::size_t column, double value) {
    matrix[row * 5 + column] = value;
  };
  put(0, 0, 1.0);
  put(1, 1, 4.0);
  put(2, 2, 0.45);
  put(2, 0, 0.2);  // <Hx Hz*> = 0.2 + 0.1i
  put(0, 2, -0.1);
  put(2, 1, -1.2);  // <Hy Hz*> = -1.2 - 0.2i
  put(1, 2, 0.2);
  put(3, 3, 1.0);
  put(4, 4, 1.0);
  SpectraChannels channels = local;
  TensorEstimate without;
  ASSERT_EQ(mtcomp({1.0, 52.0, 0.0, channels, 5, matrix}, without), MtcompError::none);
  EXPECT_LE(without.tipper[0], -1e30F) << "no channel of Hz";
  channels.hz = 2;
  const double errors[] = {std::sqrt(3e-4), std::sqrt(0.75e-4)};  // 0.03 / (2 (52 - 2)) over the powers
  for (const double averages : {52.0, 2.0}) {
    TensorEstimate estimate;
    ASSERT_EQ(mtcomp({1.0, averages, 0.0, channels, 5, matrix}, estimate), MtcompError::none);
    const float expected[] = {0.2F, -0.1F, -0.3F, 0.05F};
    for (std::size_t part = 0; part < 4; ++part) {
      EXPECT_NEAR(estimate.tipper.at(part), expected[part], 1e-7);
    }
    for (std::size_t k = 0; k < 2; ++k) {
      if (averages > 2.0) {
        EXPECT_NEAR(estimate.tipper_errors.at(k), errors[k], 1e-7);
      } else {
        EXPECT_LE(estimate.tipper_errors.at(k), -1e30F) << "no averages, no errors";
      }
    }
    EXPECT_EQ(estimate.impedance, without.impedance);
  }
  // Channels turned clockwise by 90 degrees before: what they call Hx points east.
  TensorEstimate turned;
  ASSERT_EQ(mtcomp({1.0, 52.0, 90.0, channels, 5, matrix}, turned), MtcompError::none);
  EXPECT_NEAR(turned.tipper[0], 0.3, 1e-7);
  EXPECT_NEAR(turned.tipper[2], 0.2, 1e-7);
  EXPECT_NEAR(turned.tipper_errors[0], errors[1], 1e-7);
  channels.hz = 5;
  EXPECT_EQ(mtcomp({1.0, 52.0, 0.0, channels, 5, matrix}, turned), MtcompError::bad_matrix);
}

// A distant reference sees the tipper that made Hz, whatever noise the horizontal channels have.
TEST(Mtcomp, A_reference_takes_the_bias_from_the_tipper_too) {
  const Complex tx{0.3, -0.2};
  const Complex ty{-0.15, 0.1};
  Source source;
  Recording recording(7);
  for (int k = 0; k < 20000; ++k) {
    const Complex hx = source.field();
    const Complex hy = 0.5 * hx + source.field();
    recording.add({hx + 0.5 * source.field(), hy + 0.5 * source.field(), tx * hx + ty * hy, hy, hx,
                   hx + 0.3 * source.field(), hy + 0.3 * source.field()});
  }
  SpectraChannels channels = remote;
  channels.hz = 2;
  const TensorEstimate estimate = estimate_of(recording.matrix(), channels);
  EXPECT_NEAR(std::abs(Complex(estimate.tipper[0], estimate.tipper[1]) - tx), 0.0, 0.01);
  EXPECT_NEAR(std::abs(Complex(estimate.tipper[2], estimate.tipper[3]) - ty), 0.0, 0.01);
}
