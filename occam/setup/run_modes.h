// run_modes.h: the modes of an inversion, and the data types that their curves come from.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "formats/occam/data_type.h"

namespace Module_occam {

enum class ModeChoice : std::uint8_t { current_type, both };

/// A mode with the data type of its curves.
struct RunMode {
  Mode mode;
  std::string data_type;  // as "EyHx"
};

/// What an inversion is made of: the current data type alone, EyHx as TE and every other one as TM, or TE
/// from EyHx and TM from ExHy.
std::vector<RunMode> run_modes(ModeChoice choice, const std::string& current_type);

/// What the data of a run are called in the name of its folder: "ExHy", or "TE_TM" for both modes.
std::string modes_in_name(ModeChoice choice, const std::string& current_type);

}  // namespace Module_occam
