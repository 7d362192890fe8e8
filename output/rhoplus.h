// rhoplus.h: Rho+ control files of a station or of a whole line.
#pragma once
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "database/reading.h"
#include "output/rhoplus_data.h"
#include "tensor/rotated_readings.h"

namespace Module_output {

/// Writes the control file of a station's merged curve, over an earlier one.
/// @param frequencies of the curve's reference type
/// @param tables the rows written; empty if the station has no resistivity to invert, and then no file is
///               written
/// @return 0, or -1 after a message; an earlier file is then as before
[[nodiscard]] int write_rhoplus_file(const std::string& path, double station,
                                     const Module_database::StoredReading& merged,
                                     const Frequencies& frequencies, const RhoplusSettings& settings,
                                     RhoplusTables& tables);

/// The stations of a line that have readings of this kind, m, ascending. Throws dao::Error.
std::vector<double> rhoplus_stations(const Module_database::LineSelection& selection);

struct RhoplusCounts {
  int stations = 0;  // control files written
  int replaced = 0;  // those of them that took the place of an earlier file, as of another line's station
  int rows = 0;      // data rows in them
  bool stopped = false;
  std::optional<double> strike;  // that the curves were rotated to, degrees from north
  Module_tensor::RotationReport rotation;
};

/// "12 control files with 300 rows written to /surveys/rho, with tmd_run.bat", how many files were replaced,
/// and what the curves were rotated to.
std::string rhoplus_summary(const RhoplusCounts& counts, const RhoplusSettings& settings,
                            const std::string& folder);

/// Writes a control file for each station of a line that has resistivities, and root + "_run.bat", which runs
/// Rho+ on each of them. The folder is created if it is missing. The user can stop it between stations; the
/// batch file then holds the stations written so far.
/// @param show_row_count gets the running number of data rows after each station; may be empty
/// @param strike  degrees from north: the data type is that element of the tensors in axes whose x is along
///                it, so that ExHy has its electric field along the strike and EyHx across, both with phases
///                in the first quadrant. The batch file says so. Stations without a tensor are left out.
/// @return 0, or -1 after a message ("There is no data for the specified line and data type", or the failure)
[[nodiscard]] int output_rhoplus(const Module_database::LineSelection& selection, const std::string& folder,
                                 const RhoplusSettings& settings,
                                 const std::function<void(int)>& show_row_count, RhoplusCounts& counts,
                                 std::optional<double> strike = std::nullopt);

}  // namespace Module_output
