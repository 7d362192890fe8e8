// wall_stations.h: the stations that stand on a vertical wall of a masked mesh, where TM has no meaningful
// value.
//
// The ground's steps lie at the edges of blocks, the stations in the middle of them: a station on a wall is
// one that was placed by another rule, or that shares its block with none.
#pragma once
#include <string>
#include <vector>

#include "formats/occam/occam_model.h"

namespace Module_occam {

struct MaskStations {
  std::vector<std::string> names;
  std::vector<double> offsets;  // m along the line, one for each name
};

/// The sites of the run that a model file belongs to: that of the start file, or else of an iteration file,
/// in its folder. None if there is no such run, or its data file can't be read.
MaskStations run_stations(const std::string& model_path);

/// Stations named by their place along the line.
MaskStations stations_at(const std::vector<double>& offsets);

/// The names of those on a wall; stations beyond the mesh are none.
std::vector<std::string> wall_stations(const OccamModel& model, const std::vector<CodeLines>& codes,
                                       const MaskStations& stations);

/// The sentence for the user; empty without names.
std::string wall_report(const std::vector<std::string>& names);

}  // namespace Module_occam
