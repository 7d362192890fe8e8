// survey_projection.h: the coordinate system of the open survey, which the survey keeps for itself whatever
// the user's list holds.
#pragma once
#include "projections/coord_system.h"

namespace Module_projections {

/// The one in force for the open survey; without a name there is none.
CoordSystem& current_coord_system();

/// Reads the survey's projection, the first row of its table, into current_coord_system.
/// @return 0; -1 if the survey has none or, after a message, can't be read: there is no current one then
[[nodiscard]] int read_survey_projection();

/// Reads the projection of a survey just opened and makes it ready for use.
/// @return 0; -1 if there is none or, after a message, it is invalid
[[nodiscard]] int apply_survey_projection();

/// Writes current_coord_system to the survey: over the row of its name, or as a new one. It becomes the first
/// row.
/// @return 0, or -1 after a message; the survey is then as before
[[nodiscard]] int store_survey_projection();

}  // namespace Module_projections
