// zonge_stn_file.h: the file of station places that belongs to a raw receiver file.
//
// A line for each station: number, map x (east), map y (north), elevation, all in m. Lines that don't begin
// with a number ("/line 200") are comments.
#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "formats/file_report.h"

namespace formats::zonge {

inline constexpr const char* no_stn_file_text = "No stn file was located";

struct ZongeStation {
  double station = 0.0;
  double x = 0.0;  // m, east
  double y = 0.0;  // m, north
  double elevation = 0.0;
  bool has_elevation = false;
};

/// What becomes of a station whose x or y can't be read.
enum class UnreadPlace { taken_as_zero, left_out };

/// The companion of a raw file: its name with the last three characters replaced by "stn", else by "utm.stn",
/// else a file "utm.stn" in its folder; each also in upper case. None if there is none of them.
std::optional<std::string> find_stn_file(const std::string& raw_file);

/// Reads the stations. Coordinates that can't be read are 0, or their station is left out; the report says
/// so. Throws std::runtime_error if the file can't be read.
std::vector<ZongeStation> read_stn_file(const std::string& path, FileReport& report,
                                        UnreadPlace unread = UnreadPlace::taken_as_zero);

/// "3 stations are not in the .stn file".
std::string stations_missing(std::int64_t count);

}  // namespace formats::zonge
