// command.h: the commands of brenlox_batch, one file each, and what they share.
#pragma once
#include <functional>
#include <string>

#include "batch/options.h"

namespace Batch {

inline constexpr int status_done = 0;
inline constexpr int status_failed = 1;       // after a message
inline constexpr int status_wrong_usage = 2;  // after a message

struct Command {
  Parser parser;
  std::function<int()> run;  // gives the exit status
};

Command add_new_command(Program& program);
Command add_import_command(Program& program);
Command add_recalculate_command(Program& program);
Command add_consistency_command(Program& program);
Command add_export_command(Program& program);
Command add_grid_command(Program& program);
Command add_info_command(Program& program);
Command add_curve_command(Program& program);
Command add_inversion_command(Program& program);  // in two dimensions
Command add_invert_command(Program& program);
Command add_plots_command(Program& program);  // only in a build with windows
Command add_projection_command(Program& program);
Command add_pseudosection_command(Program& program);  // only in a build with windows
Command add_remove_command(Program& program);
Command add_rename_command(Program& program);
Command add_response_command(Program& program);
Command add_rhoplus_command(Program& program);
Command add_mask_topo_command(Program& program);
Command add_occam_command(Program& program);
Command add_occam_info_command(Program& program);
Command add_section_command(Program& program);  // only in a build with windows
Command add_strike_command(Program& program);
Command add_tensor_command(Program& program);
Command add_zonge_command(Program& program);

/// The whole path, as messages and reports name it, and wherever the process works later.
std::string path_from_here(const std::string& path);

/// Adds --overwrite, which answers questions whether to replace a file with yes.
void add_overwrite_flag(Parser& parser, const char* help);

/// Says what a stop has left, if the user has asked for one. @return whether they have
bool report_stop(const char* what_it_left);

/// Adds the positional SURVEY.mdb to a command.
void add_survey_argument(Parser& parser, std::string& path);

/// Opens the survey, runs `work` on it (0 done, -1 failed after a message) and closes it again, also after a
/// failure.
/// @return the exit status
int with_open_survey(const std::string& path, const std::function<int()>& work);

/// The same for work on one line, which is then spelled as in the survey.
int with_open_survey(const std::string& path, std::string& line, const std::function<int()>& work);

}  // namespace Batch
