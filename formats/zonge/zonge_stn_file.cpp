#include "formats/zonge/zonge_stn_file.h"

#include <cmath>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "core/line_reader.h"
#include "core/number_text.h"
#include "core/text_fields.h"

namespace formats::zonge {

namespace {

bool is_file(const std::string& path) {
  std::error_code ignored;
  return std::filesystem::is_regular_file(path, ignored);
}

// What to tell of coordinates that can't be read.
struct Telling {
  std::string line;  // of another file than the report's others, so it is named with it
  const char* fate = "";
  FileReport& report;
};

std::optional<double> take_coordinate(std::string_view& rest, const char* what, const Telling& telling) {
  const std::string_view token = next_token(rest);
  const double value = is_numeric(token) ? numeric_value(token) : NAN;
  if (std::isfinite(value)) {
    return value;
  }
  remark_unreadable(telling.report, 0,
                    telling.line + what + " " + in_quotes(token) + " is not a number, " + telling.fate);
  return std::nullopt;
}

}  // namespace

std::optional<std::string> find_stn_file(const std::string& raw_file) {
  constexpr std::size_t extension_length = 3;
  if (raw_file.size() < extension_length) {
    return std::nullopt;
  }
  const std::string stem = raw_file.substr(0, raw_file.size() - extension_length);
  const std::string folder = (std::filesystem::path(raw_file).parent_path() / "").string();
  for (const std::string& path :
       {stem + "stn", stem + "STN", stem + "utm.stn", stem + "UTM.STN", stem + "utm.STN", folder + "utm.stn",
        folder + "UTM.STN", folder + "utm.STN"}) {
    if (is_file(path)) {
      return path;
    }
  }
  return std::nullopt;
}

std::vector<ZongeStation> read_stn_file(const std::string& path, FileReport& report, UnreadPlace unread) {
  const bool leaves_out = unread == UnreadPlace::left_out;
  const std::string name = text_from_field_file(std::filesystem::path(path).filename().string());
  std::vector<ZongeStation> stations;
  LineReader reader(path);
  std::string_view line;
  while (reader.next(line)) {
    std::string_view rest = trimmed(line);
    const std::string_view first = next_token(rest);
    const double station = numeric_value(first);
    if (!is_numeric(first) || !std::isfinite(station)) {
      continue;
    }
    ZongeStation entry;
    entry.station = station;
    Telling telling{name + " line " + plain_text(reader.line_number()) + ": ",
                    leaves_out ? "the station is left out" : "taken as 0", report};
    const std::optional<double> x = take_coordinate(rest, "x", telling);
    const std::optional<double> y = take_coordinate(rest, "y", telling);
    telling.fate = "taken as 0";
    const std::optional<double> elevation =
        rest.empty() ? std::nullopt : take_coordinate(rest, "elevation", telling);
    if (leaves_out && !(x && y)) {
      continue;
    }
    entry.x = x.value_or(0.0);
    entry.y = y.value_or(0.0);
    entry.elevation = elevation.value_or(0.0);
    entry.has_elevation = elevation.has_value();
    stations.push_back(entry);
  }
  return stations;
}

std::string stations_missing(std::int64_t count) {
  return plain_text(count) + (count == 1 ? " station is" : " stations are") + " not in the .stn file";
}

}  // namespace formats::zonge
