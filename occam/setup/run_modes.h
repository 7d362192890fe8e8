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

/// In which axes the curves of a run are.
enum class CurveAxes : std::uint8_t {
  readings,
  strike  // x along it: whatever element gave a mode before, TE is now x'y' and TM y'x'
};

/// What an inversion is made of: the current data type alone, EyHx as TE and every other one as TM, or TE
/// from EyHx and TM from ExHy. In the axes of the strike the modes are the same, but TE, whose electric field
/// is along it, comes from ExHy and TM from EyHx.
std::vector<RunMode> run_modes(ModeChoice choice, const std::string& current_type,
                               CurveAxes axes = CurveAxes::readings);

/// Why a run can't be rotated to the strike, a sentence without its point; empty if it can.
std::string rotation_fault(ModeChoice choice, const std::string& current_type);

/// What the data of a run are called in the name of its folder: "ExHy", or "TE_TM" for both modes.
std::string modes_in_name(ModeChoice choice, const std::string& current_type);

}  // namespace Module_occam
