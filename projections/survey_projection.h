// survey_projection.h: the coordinate system of the open survey, which is stored in the survey and
// independent of the user's list.
#pragma once
#include "projections/coord_system.h"

namespace Module_projections {

/// The projection of the open survey; an empty name means none.
CoordSystem& current_coord_system();

/// Reads the survey's projection, the first row of its table, into current_coord_system.
/// @return 0; -1 if the survey has none or, after a message, if it can't be read: there is no current one
/// then
[[nodiscard]] int read_survey_projection();

/// Reads the projection of a survey just opened and computes its transform parameters.
/// @return 0; -1 if there is none or, after a message, if it is invalid
[[nodiscard]] int apply_survey_projection();

/// Writes current_coord_system to the survey: replacing the row of its name, or as a new one. It becomes the
/// first row.
/// @return 0, or -1 after a message; the survey is then as before
[[nodiscard]] int store_survey_projection();

}  // namespace Module_projections
