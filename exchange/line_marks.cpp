#include "exchange/line_marks.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <system_error>

#include "core/number_text.h"
#include "database/sites.h"
#include "database/survey_lists.h"
#include "exchange/site_places.h"
#include "exchange/text_lists.h"

namespace Module_exchange {

using formats::places::LineMarks;
using formats::places::SiteMark;

namespace {

/// Bytes that an address can't hold are written as % and two hexadecimal digits.
std::string in_address(std::string_view text) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  constexpr std::string_view plain = "-._~";
  std::string encoded;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    const bool is_letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    if (is_letter || plain.find(c) != std::string_view::npos) {
      encoded += c;
    } else {
      encoded += '%';
      encoded += digits[byte >> 4U];
      encoded += digits[byte & 15U];
    }
  }
  return encoded;
}

void replace_all(std::string& text, std::string_view name, const std::string& value) {
  for (std::size_t at = text.find(name); at != std::string::npos; at = text.find(name, at + value.size())) {
    text.replace(at, name.size(), value);
  }
}

/// The plots of a line in the folder, where they are there.
std::string default_link(const ExportChoices& choices, const std::string& line) {
  if (line.find_first_of("/\\") != std::string::npos) {
    return {};
  }
  std::error_code unreadable;
  const std::string file = line + ".pdf";
  return std::filesystem::exists(std::filesystem::path(choices.folder) / file, unreadable) ? in_address(file)
                                                                                           : std::string();
}

/// Names of sites by station, of those that have one.
std::map<double, std::string> names_of_line(const std::string& line) {
  std::map<double, std::string> names;
  for (const Module_database::Site& site : Module_database::sites_of_line(line)) {
    if (!site.name.empty()) {
      names[site.station] = site.name;
    }
  }
  return names;
}

LineMarks marks_of(const ExportChoices& choices, const std::string& line,
                   std::vector<std::string>& without_place, std::vector<std::string>& remarks) {
  const auto places = places_of_line(line);
  const auto names = names_of_line(line);
  const std::string of_line = default_link(choices, line);
  LineMarks marks{line, {}};
  for (const Module_database::ListedStation& station : Module_database::stations_with_readings(line)) {
    const auto found = places.find(station.station);
    if (found == places.end()) {
      without_place.push_back(line + " " + plain_text(station.station));
      continue;
    }
    const GeographicSite& place = found->second;
    if (std::string remark = datum_remark(place);
        !remark.empty() && std::ranges::find(remarks, remark) == remarks.end()) {
      remarks.push_back(std::move(remark));
    }
    const std::string number = plain_text(station.station);
    SiteMark mark;
    const auto name = names.find(station.station);
    mark.name = name == names.end() ? number : name->second;
    mark.station = station.station;
    mark.latitude = place.latitude;
    mark.longitude = place.longitude;
    mark.elevation = place.elevation;
    mark.plot = choices.plot_link.empty() ? of_line : plot_link(choices.plot_link, line, number, mark.name);
    marks.sites.push_back(std::move(mark));
  }
  return marks;
}

}  // namespace

std::string plot_link(const std::string& link, const std::string& line, const std::string& station,
                      const std::string& name) {
  std::string text = link;
  // A value holds no braces, which an address can't hold, so that none is taken for a name.
  replace_all(text, "{line}", in_address(line));
  replace_all(text, "{station}", in_address(station));
  replace_all(text, "{name}", in_address(name));
  return text;
}

PlacedLines placed_lines(const ExportChoices& choices) {
  PlacedLines placed;
  std::vector<std::string> seen;
  std::vector<std::string> without_place;
  for (const Module_tensor::LineChoice& choice : choices.lines) {
    if (std::ranges::find(seen, choice.line) != seen.end()) {
      continue;
    }
    seen.push_back(choice.line);
    LineMarks marks = marks_of(choices, choice.line, without_place, placed.remarks);
    if (!marks.sites.empty()) {
      placed.lines.push_back(std::move(marks));
    }
  }
  if (!without_place.empty()) {
    placed.remarks.push_back("Left out, as they have no place: " + listed_first(without_place));
  }
  return placed;
}

}  // namespace Module_exchange
