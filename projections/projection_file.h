// projection_file.h: definitions of coordinate systems in a CSV file, for exchange.
#pragma once
#include <span>
#include <string>
#include <string_view>

#include "projections/definition_list.h"

namespace Module_projections {

inline constexpr std::string_view projection_file_name = "projection.csv";

/// Adds the definitions of a file to the list: all of them, or none if any line can't be read. A file without
/// definitions is a failure that names it; at the default place it is moved to its name + ".bak", so that it
/// isn't read again at every start.
/// @param path  in: the file; empty for the default one, in the user's or else in the program's folder.
///              out: the file that was looked for
/// @return 0, or -1 after a message
[[nodiscard]] int read_coord_projection_file(std::string& path, CoordSystems& coord_systems);

/// True if there is a file at the default places.
bool has_default_projection_file();

/// Writes all definitions of the list.
/// @return 0, or -1 after a message; a file at the path is then as before
[[nodiscard]] int write_coord_projection_file(const std::string& path, const CoordSystems& coord_systems);

/// The definitions of a file's text. Throws std::runtime_error that names line and column.
CoordSystems definitions_from_csv(std::string_view text);

std::string definitions_as_csv(std::span<const CoordSystem> definitions);

}  // namespace Module_projections
