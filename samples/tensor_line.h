// tensor_line.h: the field files of a synthetic line of full tensors with tippers over ground that is not
// layered, for trying out strike, phase tensors and induction arrows and for tests.
//
// Fifteen stations stand half a kilometre apart on a line that crosses a conductive dyke and the edge of a
// resistive basement, which both strike along one azimuth. The line isn't quite perpendicular to it. Fields
// were measured in geographic axes, Ey with its positive end to the east. Surface bodies distort the electric
// field at some stations, one is statically shifted, and a body beside the line makes one three-dimensional.
#pragma once
#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

#include "samples/sample_survey.h"

namespace Module_samples {

inline constexpr std::string_view tensor_line_name = "300T";
inline constexpr double tensor_line_strike = 30.0;    // degrees clockwise from north
inline constexpr double tensor_line_azimuth = 110.0;  // of the line itself
inline constexpr int tensor_line_stations = 15;
inline constexpr double tensor_line_first = 500.0;  // m
inline constexpr double tensor_line_step = 500.0;   // m

/// What the ground near a station does to the field that the dyke and the basement make.
struct LocalGround {
  double station = 0.0;                                  // m
  std::array<double, 4> distortion{1.0, 0.0, 0.0, 1.0};  // of the electric field: xx, xy, yx, yy
  double skew = 0.0;  // degrees, beta of the phase tensor at low frequencies
};

/// Stations 2000, 3500 and 6000 are distorted, 5000 is statically shifted, 7000 is three-dimensional.
inline constexpr std::array<LocalGround, 5> special_stations{{
    {2000.0, {1.2, 0.3, -0.2, 0.8}, 0.0},
    {3500.0, {0.8, -0.25, 0.3, 1.3}, 0.0},
    {5000.0, {2.0, 0.0, 0.0, 0.6}, 0.0},
    {6000.0, {1.1, 0.4, 0.35, 0.9}, 0.0},
    {7000.0, {1.0, 0.0, 0.0, 1.0}, 9.0},
}};

/// The frequencies of all files, Hz, descending, two to the octave.
std::vector<double> tensor_line_frequencies();

/// All files of the line, "L300T_S0500_E1_R0512.edi", named as those of the sample survey. The same seed
/// gives the same noise; the response of the ground is computed anew each time.
std::vector<SampleFile> make_tensor_line(std::uint64_t seed = default_seed);

}  // namespace Module_samples
