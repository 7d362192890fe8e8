#include "occam/setup/run_modes.h"

namespace Module_occam {

namespace {

constexpr const char* te_data_type = "EyHx";
constexpr const char* tm_data_type = "ExHy";

}  // namespace

std::vector<RunMode> run_modes(ModeChoice choice, const std::string& current_type) {
  if (choice == ModeChoice::both) {
    return {{te_mode, te_data_type}, {tm_mode, tm_data_type}};
  }
  return {{current_type == te_data_type ? te_mode : tm_mode, current_type}};
}

std::string modes_in_name(ModeChoice choice, const std::string& current_type) {
  return choice == ModeChoice::both ? "TE_TM" : current_type;
}

}  // namespace Module_occam
