// zonge.h: merged curves of one line as a Zonge AVG data set: ".avg", ".mde" and ".stn" files with a common
// root.
#pragma once
#include <cstdint>
#include <functional>
#include <string>

namespace Module_output {

struct ZongeSelection {
  std::string line;
  std::int32_t reference_type = 0;
  std::string data_type;  // ExHy, EyHx, ...
  float dipole = 0.0F;    // m
};

/// The file name offered for a selection: "200E_0.avg".
std::string zonge_file_name(const ZongeSelection& selection);

/// Writes the three files of a line; `avg_path` is the path of the ".avg" file, the others take its root. All
/// three are written beside their places first, so that a failure leaves earlier files whole.
/// @param show_row_count told the running number of data rows; may be empty
/// @param row_count rows written to the ".avg" file
/// @return 0, or -1 after a message ("There is no data for the specified line and data type", or the failure)
[[nodiscard]] int output_zonge(const ZongeSelection& selection, const std::string& avg_path,
                               const std::function<void(int)>& show_row_count, int& row_count);

}  // namespace Module_output
