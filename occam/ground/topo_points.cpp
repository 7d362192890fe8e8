#include "occam/ground/topo_points.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <limits>
#include <numeric>
#include <optional>

#include "core/line_reader.h"
#include "core/number_text.h"
#include "core/text_fields.h"
#include "core/trap_errors.h"

namespace Module_occam {

namespace {

bool is_comment(std::string_view line) {
  const std::string_view text = trimmed(line);
  return text.starts_with('!') || text.starts_with('\\');
}

/// The item as a number; nothing if it isn't a finite one.
std::optional<double> number_of(std::string_view item) {
  if (!is_numeric(item)) {
    return std::nullopt;
  }
  const double value = numeric_value(item);
  return std::isfinite(value) ? std::optional(value) : std::nullopt;
}

/// @return whether the line gives a point
bool take_line(std::string_view line, const LocationLayout& layout, LocationsRead& read) {
  std::optional<double> station;
  std::optional<double> elevation;
  const int last_column = std::max(layout.station_column, layout.elevation_column);
  std::string_view rest = line;
  for (int column = 1; column <= last_column && !rest.empty(); ++column) {
    const std::string_view item = next_token(rest);
    if (column == layout.station_column) {
      station = number_of(item);
    }
    if (column == layout.elevation_column) {
      elevation = number_of(item);
    }
  }
  read.any_station |= station.has_value();
  if (!station || !elevation) {
    return false;
  }
  read.points.station.push_back(*station);
  read.points.elevation.push_back(*elevation);
  return true;
}

/// The whole part of a typed number, limited to the range of a count; 0 for a text that isn't a number.
int position_of(const std::string& text) {
  const double value = is_numeric(text) ? numeric_value(text) : 0.0;
  return static_cast<int>(std::clamp(value, -1.0, double{std::numeric_limits<int>::max()}));
}

/// @return the message about the first invalid entry; null if all are valid
const char* invalid_location_entry(const LocationEntries& entries, LocationLayout& layout) {
  std::error_code ignored;
  if (trimmed(entries.file).empty()) {
    return "No data file has been specified";
  }
  if (!std::filesystem::exists(entries.file, ignored)) {
    return "The specified data file does not exist";
  }
  if (!is_numeric(entries.first_line)) {
    return "The number of the first data line is not numeric";
  }
  layout = {position_of(entries.first_line), position_of(entries.line_step),
            position_of(entries.station_column), position_of(entries.elevation_column)};
  // "2O" isn't 2; what begins with no number at all is told as no position below.
  const auto is_half_number = [](const std::string& text) {
    return numeric_value(text) > 0.0 && !is_numeric(text);
  };
  if (is_half_number(entries.line_step)) {
    return "The step between lines of data is not numeric";
  }
  if (is_half_number(entries.station_column)) {
    return "The station column location is not numeric";
  }
  if (layout.first_line < 1) {
    return "The number of the first data line must be positive";
  }
  if (layout.line_step < 1) {
    return "The step between lines of data must be positive";
  }
  if (layout.station_column < 1) {
    return "The station column location must be positive";
  }
  if (!is_numeric(entries.elevation_column)) {
    return "The elevation column location is not numeric";
  }
  if (layout.elevation_column < 1) {
    return "The elevation column location must be positive";
  }
  return nullptr;
}

int refuse(const char* message) {
  user_interface().show_message(message);
  return -1;
}

}  // namespace

int read_locations_file(const std::string& path, const LocationLayout& layout, LocationsRead& read) {
  return trap_errors("An error occurred while reading the location file : ", [&] {
    LineReader lines(path);
    LocationsRead found;
    std::int64_t data_line = 0;
    for (std::string_view line; lines.next(line);) {
      if (lines.line_number() < layout.first_line || is_comment(line)) {
        continue;
      }
      const bool is_step = data_line++ % layout.line_step == 0;
      if (is_step && !take_line(line, layout, found) && !trimmed(line).empty() &&
          found.left_out.count++ == 0) {
        found.left_out.first = lines.line_number();
      }
    }
    read = std::move(found);
  });
}

std::string left_out_text(const LeftOutLines& lines) {
  if (lines.count == 0) {
    return {};
  }
  const std::string first = std::to_string(lines.first);
  return (lines.count == 1
              ? "Line " + first + " is left out"
              : std::to_string(lines.count) + " lines are left out, the first is line " + first) +
         ": no number for the station or the elevation";
}

double Topo::highest_elevation() const {
  return points.elevation.empty() ? 0.0 : *std::ranges::max_element(points.elevation);
}

numerics::gridding::CubicSpline ground_curve(const TopoPoints& points) {
  std::vector<std::size_t> order(points.station.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::ranges::stable_sort(order, {}, [&](std::size_t point) { return points.station[point]; });
  std::vector<double> station;
  std::vector<double> elevation;
  double count = 0.0;  // of the points at the last station
  for (const std::size_t point : order) {
    if (station.empty() || points.station[point] != station.back()) {
      station.push_back(points.station[point]);
      elevation.push_back(points.elevation[point]);
      count = 1.0;
    } else {
      count += 1.0;
      elevation.back() += (points.elevation[point] - elevation.back()) / count;
    }
  }
  return numerics::gridding::cubspl(station, elevation);
}

bool is_position(const std::string& text) { return position_of(text) >= 1; }

int load_locations(const LocationEntries& entries, Topo& topo) {
  return trap_errors("An error occurred while loading the topo values: ", [&] {
    LocationLayout layout;
    if (const char* const fault = invalid_location_entry(entries, layout)) {
      return refuse(fault);
    }
    LocationsRead read;
    if (read_locations_file(entries.file, layout, read) != 0) {
      return -1;
    }
    if (!read.any_station) {
      return refuse("No valid station values were read");
    }
    if (read.points.station.empty()) {
      return refuse("No valid elevation coordinate values were read");
    }
    Topo loaded;
    loaded.curve = ground_curve(read.points);
    loaded.points = std::move(read.points);
    loaded.left_out = read.left_out;
    loaded.file = safe_files::FilesInUse({entries.file});
    topo = std::move(loaded);
    return 0;
  });
}

}  // namespace Module_occam
