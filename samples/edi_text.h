// edi_text.h: the text of an EDI file with one section of impedances, resistivities and phases, and of the
// tipper if there is one.
//
// Arrays run over the frequencies of the section. Impedances are in mV/km/nT, errors are one standard
// deviation. Latitude and longitude are those of WGS 84.
#pragma once
#include <array>
#include <complex>
#include <string>
#include <vector>

namespace Module_samples {

struct TensorElement {  // of the impedance or the tipper
  std::vector<std::complex<double>> impedance;
  std::vector<double> deviation;  // of real and imaginary part
};

enum class EyEnd { east, west };  // the positive one

struct EdiSection {
  std::string data_id;
  std::string section_id;
  std::string date;                       // "05/14/11", month, day, year
  std::string remark;                     // for >INFO; lines end in LF
  double latitude = 0.0;                  // degrees, north positive
  double longitude = 0.0;                 // degrees, east positive
  double north = 0.0;                     // m
  double east = 0.0;                      // m
  double elevation = 0.0;                 // m
  double dipole = 0.0;                    // m
  std::vector<double> frequencies;        // Hz, descending
  std::array<TensorElement, 4> elements;  // XX, XY, YX, YY
  std::array<TensorElement, 2> tipper;    // TX, TY, dimensionless; empty if Hz wasn't measured
  EyEnd ey_end = EyEnd::west;

  [[nodiscard]] bool has_tipper() const { return !tipper.front().impedance.empty(); }
};

std::string edi_text(const EdiSection& section);

}  // namespace Module_samples
