// create_inversion.h: turns the merged curves of a line into a run directory for the inversion program.
#pragma once
#include <string>
#include <vector>

#include "occam/setup/data_forming.h"
#include "occam/setup/inversion_inputs.h"
#include "occam/setup/mode_counts.h"
#include "output/rhoplus_settings.h"

namespace Module_occam {

/// The line and kind of curves selected in the session.
Module_database::LineSelection selected_line();

/// Checks the least that an inversion of the current line needs: two stations, two enabled frequencies.
/// @return 0, or -1 after a message
[[nodiscard]] int check_line_for_inversion();

struct CreatedInversion {
  bool stopped = false;           // by the user; nothing was written
  int data_count = 0;             // rows of data written
  std::vector<ModeTotal> totals;  // of the rows in each mode
  Module_tensor::RotationReport rotation;
  std::string unsupported;  // which curves rest on nothing that is in use; empty if none
  std::string directory;    // of the run
  std::string earlier_run;  // where the run that the directory held has gone; empty if it held none
};

/// Checks the entries, stores them in the user's settings and creates the run directory: data file, model,
/// mesh, start file and the files that start the program. Reports the number of data and the folder at the
/// end. An earlier inversion in the folder moves into a folder of its own if the user agrees. All files are
/// put into place together: after a failure or a stop, those of an earlier inversion are as before.
/// @param rhoplus  the user's settings, also whether errors of files are used; whether static factors apply
///                 is an entry of its own
/// @return 0, also when it was stopped; -1 after a message or when the user kept the earlier inversion
[[nodiscard]] int create_inversion(const Module_database::LineSelection& line, const InversionInputs& inputs,
                                   const Module_output::RhoplusSettings& rhoplus, const StationSteps& steps,
                                   CreatedInversion& created);

}  // namespace Module_occam
