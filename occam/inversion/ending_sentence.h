// ending_sentence.h: how an inversion ended, in words for its user.
#pragma once
#include <span>
#include <string>
#include <vector>

#include "formats/occam/data_file.h"
#include "numerics/occam_inversion/inversion.h"

namespace Module_occam {

struct InversionEnd {
  numerics::occam_inversion::Ending ending = numerics::occam_inversion::Ending::stopped;
  int iteration = 0;  // of the last model
  double rms = 0.0;
  double misfit = 0.0;  // that goes by the target
  bool robust = false;  // the misfit counts outliers linearly
  double target_rms = 1.0;
  bool has_limits = false;              // models keep to limits
  bool has_steps = false;               // models are multiples of a step
  std::vector<std::string> poor_sites;  // that fit much worse than the others, by name
};

/// "RMS 1.05 after 7 iterations; the model is the smoothest one found that fits to the target."
std::string ending_sentence(const InversionEnd& end);

/// The sites that fit a model much worse than the others: "3 (pb27)", or "3" where the data file names it by
/// its place on the line only.
/// @param modelled  of each row
std::vector<std::string> poor_sites(const ObservedData& data, std::span<const double> modelled);

}  // namespace Module_occam
