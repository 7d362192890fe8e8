// projection_choice.h: what the buttons and menus of the projection dialog do.
//
// Indices count from 1 in the list; 0 is none. A procedure that returns an index says which definition the
// list shows afterwards.
#pragma once
#include <string>

#include "projections/definition_list.h"

namespace Module_projections {

/// Fills the list from the store or, if that is empty and the user has not emptied it, from the default file,
/// which is then stored.
void load_user_definitions(CoordSystems& coord_systems);

/// Writes the values to the definition at `index`, under the name it has.
int save_current(CoordSystems& coord_systems, int index,
                 const numerics::geodesy::CoordinateSystemValues& values);

/// Asks for a name and saves the values under it.
/// @param index  what the list shows now
int save_new(CoordSystems& coord_systems, int index, const numerics::geodesy::CoordinateSystemValues& values);

/// Deletes the definition at `index` from list and store.
int delete_current(CoordSystems& coord_systems, int index);

/// The name under which values would be used: that of a definition or of the survey's projection with these
/// values, else the name that was asked for, else that of the definition at `index` or of the survey's
/// projection.
std::string name_for(const CoordSystems& coord_systems,
                     const numerics::geodesy::CoordinateSystemValues& values, int index,
                     const std::string& asked_name);

/// Makes a definition the survey's projection: tests it, stores it in the open survey and, unless it is the
/// survey's already, adds it to the user's list; where that can't be stored, the user is told and the list
/// stays.
/// @return 0; -1 after a message or a No: survey, list and current_coord_system are then as before
[[nodiscard]] int use_projection(CoordSystems& coord_systems, const CoordSystem& definition);

/// Adds the definitions of a file that the user picks.
void read_definition_file(CoordSystems& coord_systems);

/// Writes all definitions to a file that the user picks.
void save_definition_file(const CoordSystems& coord_systems);

/// Deletes all definitions, if the user confirms it.
void confirm_clear_definitions(CoordSystems& coord_systems);

}  // namespace Module_projections
