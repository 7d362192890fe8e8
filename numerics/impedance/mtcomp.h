// mtcomp.h: the impedance tensor and the tipper of a station from the cross-spectra of its channels at one
// frequency.
//
// Conventions: time dependence exp(+i omega t), so that a uniform earth has a Zxy of phase +45 degrees; the
// impedance is in the unit of electric over magnetic channels, mV/km/nT in field files. Elements come in the
// order xx, xy, yx, yy. The tipper is Hz over Hx and over Hy, z down as the channel is.
#pragma once
#include <array>
#include <cstddef>
#include <optional>
#include <span>

namespace numerics::impedance {

/// Places of the channels among the rows and columns of the matrix, from 0. Where the reference is the
/// station's own magnetic field, it has the places of hx and hy.
struct SpectraChannels {
  std::size_t hx = 0;
  std::size_t hy = 0;
  std::size_t ex = 0;
  std::size_t ey = 0;
  std::size_t reference_x = 0;  // a distant magnetic or electric field
  std::size_t reference_y = 0;
  std::optional<std::size_t> hz = std::nullopt;
};

struct CrossSpectra {
  double frequency = 0.0;  // Hz, above 0
  double averages = 0.0;   // independent averages; 2 or fewer: nothing is known of the errors
  double rotation = 0.0;   // degrees clockwise by which the channels' axes were turned before
  SpectraChannels channels;
  std::size_t channel_count = 0;   // n
  std::span<const double> matrix;  // n x n, row by row: auto powers on the diagonal, real parts of the cross
                                   // powers below, imaginary parts above; for row a < column b
                                   // <A conj(B)> = M[b][a] - i M[a][b]
};

struct TensorEstimate {
  float coherence = 0.0F;             // 0 to 1: the part of the power of Ex, or of Ey if that is less, which
                                      // the tensor predicts from the magnetic field
  std::array<float, 10> impedance{};  // real and imaginary parts: xx in 0, 1; xy in 2, 3; the determinant
                                      // impedance in 4, 5; yx in 6, 7; yy in 8, 9
  std::array<float, 4> errors{};      // standard error of the real and of the imaginary part of each
                                      // element, no_data if not known
  std::array<float, 4> tipper{};      // real and imaginary parts: x in 0, 1; y in 2, 3; no_data without a
                                      // channel hz, or where they don't fit a single
  std::array<float, 2> tipper_errors{};  // as errors, of x and y
};

enum class MtcompError {
  none,
  bad_frequency,  // not above 0
  bad_matrix,     // not n x n finite numbers, or a channel beyond n
  singular        // the magnetic field, or what the reference sees of it, has one direction only
};

/// Least squares with the reference's conjugate fields (Gamble, Goubau and Clarke 1979, Geophysics 44,
/// 53-68), which are the station's own in the local case:
///
///   | <Ex Rx*> <Ex Ry*> |   | Zxx Zxy |   | <Hx Rx*> <Hx Ry*> |
///   | <Ey Rx*> <Ey Ry*> | = | Zyx Zyy | . | <Hy Rx*> <Hy Ry*> |
///
/// in the axes of the channel definitions: the channels are turned back by the rotation first. The scale of
/// the reference cancels. The tipper is one more row, of Hz in place of Ex.
///
/// Errors are standard errors of the real part and, equally, of the imaginary part (Pedersen 1982,
/// Geophysical Prospecting 30, 188-210; with a reference by Gamble, Goubau and Clarke 1979, Geophysics 44,
/// 959-968), with s2 the power of the residual of Ex, Ey or Hz:
///
///   dZij^2 = s2_i / (2 (averages - 2)) [S_HR^-H S_RR S_HR^-1]_jj
///
/// Each average is one complex value of each channel, and the two elements of a row take two of them. The
/// variance of the complex element is twice dZij^2: public files that exist both as spectra and as impedances
/// print it, with averages for averages - 2.
///
/// The determinant impedance sqrt(Zxx Zyy - Zxy Zyx), real part not negative, doesn't depend on the axes
/// (Berdichevsky and Dmitriev 1976).
///
/// @param estimate unchanged after an error
[[nodiscard]] MtcompError mtcomp(const CrossSpectra& spectra, TensorEstimate& estimate);

}  // namespace numerics::impedance
