// topo_points.h: the elevations along a line, from a text file with a column for the station and one for the
// elevation.
//
// Lines, columns and steps count from 1; stations m along the line, elevations m, upwards.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "numerics/gridding/cubic_spline.h"
#include "platform/files/files_in_use.h"

namespace Module_occam {

/// Where the values are in the file.
struct LocationLayout {
  int first_line = 1;  // of the data; comments before it count
  int line_step = 1;   // from one line of data to the next; comments between them don't count
  int station_column = 1;
  int elevation_column = 2;
};

struct TopoPoints {
  std::vector<double> station;
  std::vector<double> elevation;  // one for each station
};

/// Lines of data that give no point, other than blank ones.
struct LeftOutLines {
  std::int64_t count = 0;
  std::int64_t first = 0;  // its number in the file, from 1
};

struct LocationsRead {
  TopoPoints points;         // of the lines that have both values
  bool any_station = false;  // a line had a station value
  LeftOutLines left_out;
};

/// Reads the points of a topo file in its order. Lines that begin with "!" or "\" are comments. A line whose
/// station or elevation isn't a finite number gives no point.
/// @return 0, or -1 after a message; `read` is then as before
[[nodiscard]] int read_locations_file(const std::string& path, const LocationLayout& layout,
                                      LocationsRead& read);

/// What the user has typed.
struct LocationEntries {
  std::string file;
  std::string first_line = "1";
  std::string line_step = "1";
  std::string station_column = "1";
  std::string elevation_column = "2";
};

/// The ground along a line.
struct Topo {
  TopoPoints points;  // in the order of the file
  numerics::gridding::CubicSpline
      curve;  // through them, in the order of their stations; empty without points
  LeftOutLines left_out;
  safe_files::FilesInUse file;  // that they were read from

  [[nodiscard]] bool empty() const { return curve.x.empty(); }
  /// Of the points, m; 0 without any.
  [[nodiscard]] double highest_elevation() const;
};

/// "3 lines are left out, the first is line 12: no number for the station or the elevation"; empty for none.
std::string left_out_text(const LeftOutLines& lines);

/// The curve through points in any order; points at the same station count as one with their mean elevation.
/// Throws std::invalid_argument as cubspl does.
numerics::gridding::CubicSpline ground_curve(const TopoPoints& points);

/// True if a text is valid as a line, step or column: a number of 1 or more.
bool is_position(const std::string& text);

/// Checks the entries, reads the file and fits the curve.
/// @return 0, or -1 after a message; `topo` is then as before
[[nodiscard]] int load_locations(const LocationEntries& entries, Topo& topo);

}  // namespace Module_occam
