#include "occam/setup/run_modes.h"

namespace Module_occam {

namespace {

constexpr const char* te_data_type = "EyHx";
constexpr const char* tm_data_type = "ExHy";

// Where x is the azimuth of the strike.
constexpr const char* along_strike = "ExHy";
constexpr const char* across_strike = "EyHx";

}  // namespace

std::vector<RunMode> run_modes(ModeChoice choice, const std::string& current_type, CurveAxes axes) {
  const bool to_strike = axes == CurveAxes::strike;
  const RunMode te{te_mode, to_strike ? along_strike : te_data_type};
  const RunMode tm{tm_mode, to_strike ? across_strike : tm_data_type};
  if (choice == ModeChoice::both) {
    return {te, tm};
  }
  if (current_type == te_data_type) {
    return {te};
  }
  return {to_strike ? tm : RunMode{tm_mode, current_type}};
}

std::string rotation_fault(ModeChoice choice, const std::string& current_type) {
  return choice == ModeChoice::both || current_type == te_data_type || current_type == tm_data_type
             ? std::string()
             : "A run that is rotated to the strike is of TE (EyHx) or TM (ExHy), not of " + current_type;
}

std::string modes_in_name(ModeChoice choice, const std::string& current_type) {
  return choice == ModeChoice::both ? "TE_TM" : current_type;
}

}  // namespace Module_occam
