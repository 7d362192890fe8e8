// definition_list.h: the user's own list of coordinate systems, kept in the settings store.
//
// No name and no set of values is in the list twice. Indices count from 1, as lists do; 0 is none.
#pragma once
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "projections/coord_system.h"

namespace Module_projections {

/// The definitions, sorted by their names in upper case. Each user of the list has a copy of its own, filled
/// from the store.
using CoordSystems = std::vector<CoordSystem>;

/// Fills the list from the store. A malformed entry is deleted from the store.
/// @return 0, or -1 after a message
[[nodiscard]] int load_coord_system_definitions(CoordSystems& coord_systems);

/// Writes a definition to the store; all of them for an index of 0 or less.
/// @return 0, or -1 after a message
[[nodiscard]] int save_coord_system_definitions(const CoordSystems& coord_systems, int index);

/// Changes the list and stores all of it. What can't be stored joins no list: after a failure list and store
/// are as before.
/// @param change  0, or -1 after a message
/// @return 0, or -1 after a message
[[nodiscard]] int change_stored_list(CoordSystems& coord_systems, const std::function<int()>& change);

/// Adds a definition to the list. It replaces those with its name (in any case of letters) or its values;
/// what was listed under another name loses its key in the store. The definition itself isn't stored. One
/// without a name is left out.
/// @return 0, or -1 after a message
[[nodiscard]] int add_coord_definitions_to_list(CoordSystems& coord_systems, const CoordSystem& definition);

/// Deletes a definition's key from the store.
void forget_definition(std::string_view name);

/// Empties the list and deletes every key of the store's section; list_was_emptied from then on.
void clear_definitions(CoordSystems& coord_systems);

/// Remembers that the user wants an empty list to stay empty: the default file doesn't fill it again.
void note_emptied_list();
bool list_was_emptied();

/// The definition whose name proper is that of `name`, in any case of letters; 0 if there is none.
int find_definition(const CoordSystems& coord_systems, std::string_view name);

/// The definition with these values; 0 if there is none.
int find_definition(const CoordSystems& coord_systems,
                    const numerics::geodesy::CoordinateSystemValues& values);

/// A definition as the store keeps it: its values with ";" between them.
std::string definition_text(const numerics::geodesy::CoordinateSystemValues& values);

/// The values of such a text; none if it is malformed, and `fault` then names the first bad field.
std::optional<numerics::geodesy::CoordinateSystemValues> definition_from_text(std::string_view text,
                                                                              std::string& fault);

}  // namespace Module_projections
