// geosoft_grid.h: regular grids as Geosoft binary grids (.grd), see docs/formats/geosoft_grd.md.
#pragma once
#include <filesystem>

#include "numerics/gridding/regular_grid.h"

namespace formats::geosoft {

/// Writes a grid: 32-bit values in rows along X from the lowest Y upwards, not compressed.
///
/// A value that is not finite, or at or below -1e30, is absent and becomes the format's dummy. An earlier
/// file is replaced in one step; a companion file with its projection is left alone.
///
/// Throws std::invalid_argument for a grid without nodes, with a count that doesn't fit its values, with a
/// position or cell that isn't finite and positive, or with a value beyond 32 bits; std::runtime_error with
/// the system's description if the file can't be written. An earlier file is then as before.
void write_geosoft_grid(const std::filesystem::path& file, const numerics::gridding::RegularGrid& grid);

}  // namespace formats::geosoft
