// sample_survey.h: the field files of a synthetic survey, for trying the workstation out and for tests.
//
// Two lines of twelve stations stand over ground of four layers that changes along the lines: the conductive
// third layer rises to the north. Every station was measured at two scan rates whose frequencies overlap,
// three times each. The readings have noise, strongest in the dead band near 2 Hz, and outliers; on each line
// one station is statically shifted and one has a repeat that went wrong. The site of station 100 is named
// 100A on the first line, 100B on the second; its latitude and longitude are those of the station to a metre.
//
// Ey was measured with its positive end to the west, so that the phases of both modes lie in 0..90 degrees.
#pragma once
#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "numerics/impedance/layered_earth.h"

namespace Module_samples {

struct ScanRate {
  double rate = 0.0;               // Hz
  double highest_frequency = 0.0;  // Hz
  int frequency_count = 0;         // two to the octave, downward from the highest
};

struct SampleLine {
  std::string_view name;    // "200E"
  char letter = ' ';        // of its sites' names
  double local_east = 0.0;  // m
  double shifted_station = 0.0;
  double shift_of_ex = 1.0;  // factor on the resistivity of ExHx and ExHy
  double shift_of_ey = 1.0;  // the same for EyHx and EyHy
  double spoiled_station = 0.0;
  int spoiled_repeat = 0;     // from 1
  double depth_change = 0.0;  // m; how much deeper the conductive layer lies than under the first line
};

inline constexpr std::array<SampleLine, 2> sample_lines{{
    {"200E", 'A', 200.0, 500.0, 4.0, 1.0, 800.0, 2, 0.0},
    {"400E", 'B', 400.0, 900.0, 0.3, 0.5, 300.0, 3, 150.0},
}};
inline constexpr std::array<ScanRate, 2> sample_scan_rates{{{4096.0, 1024.0, 17}, {256.0, 64.0, 21}}};
inline constexpr int station_count = 12;
inline constexpr double first_station = 100.0;  // m
inline constexpr double station_step = 100.0;   // m
inline constexpr int repeat_count = 3;
inline constexpr std::uint64_t default_seed = 1954;

/// One field file. Its name holds line (columns 2 to 5), station (8 to 11), repeat (14) and scan rate (17 to
/// 20): "L200E_S0100_E1_R4096.edi".
struct SampleFile {
  std::string name;
  std::string text;  // EDI, lines end in LF
};

/// The ground under a station of a line.
std::vector<numerics::impedance::Layer> ground_below(const SampleLine& line, double station);

/// Elevation of a station of either line, m: the lines cross a hill.
double elevation_at(double station);

/// The elevations of a line's stations as a text for masking a mesh: a title, then station and elevation, m.
std::string elevation_table();

/// The frequencies of a scan rate, Hz, descending as instruments write them. Both scan rates give the same
/// numbers where they overlap.
std::vector<double> frequencies_of(const ScanRate& scan_rate);

/// All files of the survey. The same seed gives the same files on every platform.
std::vector<SampleFile> make_sample_survey(std::uint64_t seed = default_seed);

}  // namespace Module_samples
