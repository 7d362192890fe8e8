// edi_section.h: the impedances, resistivities, phases and tippers of one section of an EDI file.
//
// Conventions: frequency Hz, resistivity ohm-m, phase degrees, impedance in the file's unit; a tipper is Hz
// over Hx or Hy, z down, with the time dependence exp(+i omega t) of the format; an absent value is no_data
// (-1e32). Values are in the order of the file.
#pragma once
#include <array>
#include <cstddef>
#include <vector>

#include "formats/edi/edi_channels.h"

namespace formats::edi {

enum EdiElement : std::size_t { element_xx, element_xy, element_yx, element_yy, element_count };

/// Hz over Hx, Hz over Hy.
enum EdiTipper : std::size_t { tipper_x, tipper_y, tipper_count };

enum EdiQuantity : std::size_t {
  quantity_resistivity,
  quantity_phase,
  quantity_real,
  quantity_imaginary,
  quantity_variance,           // of the impedance or tipper, a complex value
  quantity_resistivity_error,  // of the resistivity, ohm-m, or of its decimal logarithm: files differ
  quantity_phase_error,
  quantity_count
};

/// One quantity of one element.
struct EdiValues {
  bool present = false;   // some block of the section gave it
  std::size_t block = 0;  // the number of that block in the section, from 1
  std::vector<float> values;
  // What 32-bit values leave of the file's numbers where these are calculated with: -134.877 has a digit
  // fewer than the 45.123 that it is turned to, and errors that are computed back come out as they were.
  std::vector<float> rests;

  /// The file's number.
  [[nodiscard]] double number(std::size_t index) const {
    return static_cast<double>(values[index]) + (rests.empty() ? 0.0 : static_cast<double>(rests[index]));
  }
};

struct EdiSection : EdiSectionHead {
  std::vector<float> frequencies;  // length n
  std::array<std::array<EdiValues, quantity_count>, element_count> elements;
  std::array<std::array<EdiValues, quantity_count>, tipper_count> tipper;  // parts and variance
  std::vector<float> ZROT;  // degrees clockwise, the axes of the impedances; empty if not given
  std::vector<float> TROT;  // the same of the tipper

  [[nodiscard]] const EdiValues& get(std::size_t element, EdiQuantity quantity) const {
    return elements[element][quantity];
  }
  EdiValues& get(std::size_t element, EdiQuantity quantity) { return elements[element][quantity]; }
  EdiValues& get(EdiTipper element, EdiQuantity quantity) { return tipper[element][quantity]; }
  [[nodiscard]] const EdiValues& get(EdiTipper element, EdiQuantity quantity) const {
    return tipper[element][quantity];
  }
  void clear();
};

}  // namespace formats::edi
