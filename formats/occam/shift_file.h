// shift_file.h: the statics file of an inversion: what is added to the modelled log10 resistivity of a site.
#pragma once
#include <string>
#include <vector>

namespace Module_occam {

struct StaticShift {
  int site_number = 0;   // from 1
  int data_type = 0;     // of a resistivity, 1 or 5 as a rule
  double shift = 0.0;    // decades
  bool is_free = false;  // found by the inversion; iterations list it behind the resistivities of the blocks
};

/// The text of a statics file without constraints, lines ending in LF.
std::string shift_file_text(const std::vector<StaticShift>& shifts);

/// Reads a statics file. Throws Refusal or EmptyLine (text_input.h), or std::runtime_error with what is
/// wrong.
std::vector<StaticShift> read_shift_file(const std::string& path);

}  // namespace Module_occam
