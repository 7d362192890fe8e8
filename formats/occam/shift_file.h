// shift_file.h: the statics file of an inversion: what is added to the modelled log10 resistivity of a site.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

namespace Module_occam {

struct StaticShift {
  int site_number = 0;   // from 1
  int data_type = 0;     // of a log10 resistivity: 1 TE, 5 TM
  double shift = 0.0;    // decades
  bool is_free = false;  // found by the inversion; iterations list it behind the resistivities of the blocks
};

/// Of which free shifts the sum is a datum.
enum class ShiftConstraint : std::uint8_t { none = 0, sum_of_all = 1, sum_of_each_mode = 2 };

struct StaticsFile {
  ShiftConstraint constraint = ShiftConstraint::none;
  double constraint_error = 0.0;  // decades, of the sums
  std::vector<StaticShift> shifts;
};

/// "SHIFT07.shift": the static shifts found with iteration 7, a statics file beside the iteration's.
std::string shift_file_name(int iteration);

/// The text of a statics file, lines ending in LF.
std::string shift_file_text(const StaticsFile& statics);

/// Reads a statics file. Throws FileFault (text_input.h) with what is wrong.
StaticsFile read_shift_file(const std::string& path);

}  // namespace Module_occam
