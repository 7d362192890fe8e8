#include "formats/zonge/zonge_avg_set.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <system_error>

#include "core/line_reader.h"
#include "core/text_fields.h"

namespace formats::zonge {

namespace {

namespace fs = std::filesystem;

std::string_view without_ending(std::string_view file_name) {
  return file_name.substr(0, file_name.find_last_of('.'));
}

}  // namespace

std::optional<std::string> find_beside(const std::string& avg_file, std::string_view ending) {
  const fs::path path(avg_file);
  const std::string name = path.stem().string() + "." + std::string(ending);
  std::error_code failure;
  const fs::path exact = path.parent_path() / name;
  if (fs::is_regular_file(exact, failure)) {
    return exact.string();
  }
  std::optional<std::string> found;
  const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
  for (fs::directory_iterator entry(folder, failure), end; !failure && entry != end;
       entry.increment(failure)) {
    std::error_code ignored;
    const bool is_it =
        equal_ignoring_case(entry->path().filename().string(), name) && entry->is_regular_file(ignored);
    if (is_it && (!found || entry->path().string() < *found)) {  // the same one in whatever order they come
      found = entry->path().string();
    }
  }
  return found;
}

std::optional<ZongeStation> place_among(std::span<const ZongeStation> stations, double station,
                                        double longest_gap) {
  const auto above = std::ranges::lower_bound(stations, station, {}, &ZongeStation::station);
  if (above == stations.end() || (above == stations.begin() && above->station != station)) {
    return std::nullopt;
  }
  if (above->station == station) {
    return *above;
  }
  const ZongeStation& below = *(above - 1);
  const double gap = above->station - below.station;
  if (gap > longest_gap) {
    return std::nullopt;
  }
  const double part = (station - below.station) / gap;
  const auto between = [&](double ZongeStation::*member) {
    return below.*member + part * ((*above).*member - below.*member);
  };
  return ZongeStation{station, between(&ZongeStation::x), between(&ZongeStation::y),
                      between(&ZongeStation::elevation), below.has_elevation && above->has_elevation};
}

std::optional<std::string> data_type_in_name(std::string_view file_name) {
  constexpr std::array<std::string_view, 5> data_types{"ExHx", "ExHy", "EyHx", "EyHy", "QP"};
  const std::string stem = upper_case(without_ending(file_name));
  const auto found = std::ranges::find_if(
      data_types, [&](std::string_view data_type) { return stem.ends_with("_" + upper_case(data_type)); });
  return found == data_types.end() ? std::nullopt : std::optional(std::string(*found));
}

std::string line_of_mde(const std::string& mde_file) {
  LineReader lines(mde_file);
  std::string_view line;
  while (lines.next(line)) {
    const std::size_t equals = line.find('=');
    if (equals != std::string_view::npos &&
        upper_case(line.substr(0, equals)).find("JOBLINE") != std::string::npos) {
      return text_from_field_file(trimmed(line.substr(equals + 1)));
    }
  }
  return {};
}

}  // namespace formats::zonge
