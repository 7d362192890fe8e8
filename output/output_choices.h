// output_choices.h: what the output panel offers, and the checks of what was chosen before a line is written.
#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "output/rhoplus_settings.h"
#include "output/zonge.h"

namespace Module_output {

enum class OutputKind { rhoplus = 0, zonge = 1 };  // in the order of the menu

struct OutputLists {
  std::vector<std::string> lines;
  std::vector<float> dipoles;  // m
  std::vector<std::int32_t> reference_types = {};
  std::vector<std::string> data_types = {};
};

/// The lines, dipole lengths, reference types and data types that the survey has.
/// @return 0, or -1 after a message ("There is no data in the database", or the failure)
[[nodiscard]] int read_output_lists(OutputLists& lists);

/// The choices on the panel; an index is -1 while nothing is chosen.
struct OutputChoices {
  int line_index = -1;
  int reference_index = -1;  // the reference type itself
  int dipole_index = -1;
  std::string folder;
  std::string data_type = {};                   // empty: that of the session's selection
  std::optional<double> strike = std::nullopt;  // that Rho+ curves are rotated to, degrees from north
};

/// What a data type stands for in the axes of a rotation to the strike, for the panel: "ExHy, its electric
/// field along the strike".
std::string rotated_data_type(const std::string& data_type);

/// Writes the chosen line as Rho+ control files with a batch file into the chosen folder or, if `sub_folder`
/// is not blank, into that folder of it, or where a whole path in it leads. The settings are checked first.
/// @return 0 after a message what was written, also by the time of a stop; -1 after a message that names what
/// is missing or failed
[[nodiscard]] int write_chosen_rhoplus(const OutputLists& lists, const OutputChoices& choices,
                                       const RhoplusSettings& settings, const std::string& sub_folder,
                                       const std::function<void(int)>& show_row_count);

/// Writes the chosen line as a Zonge set. Asks for the file.
/// @return 0 after a message what was written, or without one if the user cancelled; -1 after a message that
/// names what is missing or failed
[[nodiscard]] int write_chosen_zonge(const OutputLists& lists, const OutputChoices& choices,
                                     const std::function<void(int)>& show_row_count);

}  // namespace Module_output
