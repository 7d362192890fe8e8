#include "exchange/line_marks.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <system_error>

#include "core/number_text.h"
#include "core/text_lists.h"
#include "database/sites.h"
#include "database/survey_lists.h"
#include "exchange/site_places.h"

namespace Module_exchange {

using formats::places::LineMarks;
using formats::places::SiteMark;

namespace {

constexpr std::string_view hexadecimal = "0123456789ABCDEFabcdef";

bool is_letter_or_digit(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

std::string in_percents(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return {'%', hexadecimal[byte >> 4U], hexadecimal[byte & 15U]};
}

/// Of a name all that means something in an address is written as % and two hexadecimal digits.
std::string in_address(std::string_view name) {
  constexpr std::string_view plain = "-._~";
  std::string encoded;
  for (const char c : name) {
    encoded +=
        is_letter_or_digit(c) || plain.find(c) != std::string_view::npos ? std::string(1, c) : in_percents(c);
  }
  return encoded;
}

/// A link as it was typed, with the characters in percents that an address can't hold; braces stay, for they
/// hold names. What is in percents already stays. In the path of a file "#" and "?" are letters like others,
/// in an address they mean something.
std::string typed_address(std::string_view link) {
  const std::string_view special = link.find("://") == std::string_view::npos ? "\"<>\\^`|#?" : "\"<>\\^`|";
  std::string encoded;
  for (std::size_t at = 0; at < link.size(); ++at) {
    const char c = link[at];
    const auto byte = static_cast<unsigned char>(c);
    const bool is_encoded = c == '%' && at + 2 < link.size() &&
                            hexadecimal.find(link[at + 1]) != std::string_view::npos &&
                            hexadecimal.find(link[at + 2]) != std::string_view::npos;
    const bool stays =
        c == '%' ? is_encoded : byte > ' ' && byte < 0x7F && special.find(c) == std::string_view::npos;
    encoded += stays ? std::string(1, c) : in_percents(c);
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

/// What stations there is something to say of, each as "200E 100".
struct ToldStations {
  std::vector<std::string> without_place;
  std::map<std::string, std::vector<std::string>> of_other_datums;  // by datum
};

LineMarks marks_of(const ExportChoices& choices, const std::string& line, ToldStations& told) {
  const auto places = places_of_line(line);
  const auto names = names_of_line(line);
  const std::string of_line = default_link(choices, line);
  const std::string before_number = line + " ";
  LineMarks marks{line, {}};
  for (const Module_database::ListedStation& station : Module_database::stations_with_readings(line)) {
    const auto found = places.find(station.station);
    const std::string number = plain_text(station.station);
    if (found == places.end()) {
      told.without_place.push_back(before_number + number);
      continue;
    }
    const GeographicSite& place = found->second;
    if (is_on_other_datum(place)) {
      told.of_other_datums[place.datum].push_back(before_number + number);
    }
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
  std::string text = typed_address(link);
  // A value holds no braces, which an address can't hold, so that none is taken for a name.
  replace_all(text, "{line}", in_address(line));
  replace_all(text, "{station}", in_address(station));
  replace_all(text, "{name}", in_address(name));
  replace_all(text, "{", "%7B");
  replace_all(text, "}", "%7D");
  return text;
}

PlacedLines placed_lines(const ExportChoices& choices) {
  PlacedLines placed;
  std::vector<std::string> seen;
  ToldStations told;
  for (const Module_tensor::LineChoice& choice : choices.lines) {
    if (std::ranges::find(seen, choice.line) != seen.end()) {
      continue;
    }
    seen.push_back(choice.line);
    LineMarks marks = marks_of(choices, choice.line, told);
    if (!marks.sites.empty()) {
      placed.lines.push_back(std::move(marks));
    }
  }
  for (const auto& [datum, stations] : told.of_other_datums) {
    placed.remarks.push_back(datum_remark(datum, stations));
  }
  if (!told.without_place.empty()) {
    placed.remarks.push_back("Left out, as they have no place: " + listed_first(told.without_place));
  }
  return placed;
}

}  // namespace Module_exchange
