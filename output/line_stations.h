// line_stations.h: the stations of a line, as those who write it into files go through them.
#pragma once
#include <vector>

#include "database/reading.h"

namespace Module_output {

enum class DataTypes { selected, all };

/// The stations that have a reading of the selection's line, reference type and dipole, whatever its
/// reduction, in ascending order: where nobody has looked at the line yet there are raw readings only.
/// @param data_types `all`: a station without readings of the selected data type counts as well, but none
/// that has nothing but a tipper Throws dao::Error.
std::vector<double> stations_with_readings(const Module_database::LineSelection& selection,
                                           DataTypes data_types);

}  // namespace Module_output
