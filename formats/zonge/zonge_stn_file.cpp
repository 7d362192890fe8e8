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

double take_coordinate(std::string_view& rest, const char* what, const std::string& where, FileReport& report,
                       std::int64_t line_number) {
  const std::string_view token = next_token(rest);
  const double value = is_numeric(token) ? numeric_value(token) : NAN;
  if (std::isfinite(value)) {
    return value;
  }
  // The line is of another file than the report's others, so it is named with it.
  remark_unreadable(report, 0,
                    where + " line " + plain_text(line_number) + ": " + what + " " + in_quotes(token) +
                        " is not a number, taken as 0");
  return 0.0;
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

std::vector<ZongeStation> read_stn_file(const std::string& path, FileReport& report) {
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
    entry.x = take_coordinate(rest, "x", name, report, reader.line_number());
    entry.y = take_coordinate(rest, "y", name, report, reader.line_number());
    if (!rest.empty()) {
      entry.elevation = take_coordinate(rest, "elevation", name, report, reader.line_number());
    }
    stations.push_back(entry);
  }
  return stations;
}

}  // namespace formats::zonge
