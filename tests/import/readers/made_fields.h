// made_fields.h: field files of the other formats, made to measure.
#pragma once
#include <array>
#include <complex>
#include <string>
#include <vector>

/// Elements xx, xy, yx, yy.
using MadeTensor = std::array<std::complex<double>, 4>;

/// A section's list of channels and the definitions of the head behind it.
struct MadeChannels {
  std::string definitions;   // >HMEAS, >EMEAS lines
  std::string list;          // lines of the section's head
  std::array<int, 7> order;  // which of Hx, Hy, Hz, Ex, Ey, Rx, Ry a row holds; -1 behind the last
};
MadeChannels channels_by_id();       // ids behind "// 7", remote magnetic channels last
MadeChannels channels_by_keyword();  // HX=, HY=, EX=, EY= in another order, no remote

struct MadeFrequency {
  double frequency = 1.0;  // Hz
  MadeTensor tensor;       // mV/km/nT
  std::string options = "ROTSPEC=0 BW=1.0 AVGT=120";
};

/// The >SPECTRA block of the fields that a tensor makes of four fixed sources, n x n values behind its line.
std::string made_spectra_block(const MadeFrequency& made, const MadeChannels& channels);

/// A whole file of one section.
std::string made_spectra(const std::vector<MadeFrequency>& frequencies, const MadeChannels& channels);

/// One frequency of a fixed-column file: values as they stand in the file.
struct MadeRecord {
  double frequency = 0.0;
  double scalar = 0.5;  // column 71
  std::array<double, 8> impedance{};
  std::array<double, 4> variance{};
};

/// Head line and records, each of which is cut into three lines.
std::string made_fixed_columns(const std::vector<MadeRecord>& records);
