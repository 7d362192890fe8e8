#include "import/station_sites.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "core/user_interface.h"
#include "database/survey_database.h"
#include "import/file_formats.h"
#include "platform/dao/text_literal.h"

namespace Module_data_file {

namespace {

using Module_database::open_survey;

constexpr std::size_t sites_listed = 6;
constexpr std::size_t stations_listed = 12;

bool is_same(const Site& a, const Site& b) {
  return (a.says_station && b.says_station) || equal_ignoring_case(a.name, b.name);
}

std::string label(const Site& site) {
  return site.name == site.file ? site.file : site.name + " (" + site.file + ")";
}

std::string label_in_survey(const std::string& file) { return file + " in the survey"; }

bool is_digit(char c) { return c >= '0' && c <= '9'; }

// Whether a file's name has the site's name in it, and not as a part of a longer number: "100" in
// "L200E_S0100_E1", but not in "1000". That is all that a survey knows of a site whose file gave no name.
bool names_site(std::string_view file, const Site& site) {
  std::string stem = upper_case(file.substr(file.find_last_of('/') + 1));
  const std::string file_name = stem;
  stem.resize(std::min(stem.find_last_of('.'), stem.size()));
  std::string name = upper_case(trimmed(site.name));
  if (name == file_name) {
    return true;
  }
  if (is_digit(name.empty() ? ' ' : name.front())) {
    name.erase(0, std::min(name.find_first_not_of('0'), name.size() - 1));
  }
  for (std::size_t place = stem.find(name); !name.empty() && place != std::string::npos;
       place = stem.find(name, place + 1)) {
    const std::size_t end = place + name.size();
    std::size_t before = place;
    while (before > 0 && stem[before - 1] == '0') {
      --before;
    }
    const bool begins = !is_digit(name.front()) || before == 0 || !is_digit(stem[before - 1]);
    const bool ends = !is_digit(name.back()) || end == stem.size() || !is_digit(stem[end]);
    if (begins && ends) {
      return true;
    }
  }
  return false;
}

// Files of the survey that have readings at the station and are none of the import's.
std::vector<std::string> others_in_survey(const FilesAtStations::Station& known,
                                          const std::vector<Site>& sites,
                                          const std::set<std::int32_t>& own_rows) {
  std::vector<std::string> others;
  for (const FilesAtStations::File& file : known.files) {
    const auto is_other = [&](const Site& site) {
      return !(site.says_station && file.says_station) && !equal_ignoring_case(known.site, site.name) &&
             !names_site(file.name, site);
    };
    if (!own_rows.contains(file.ID) && std::ranges::any_of(sites, is_other)) {
      others.push_back(file.name);
    }
  }
  return others;
}

}  // namespace

std::string SharedStation::text() const {
  std::vector<std::string> labels;
  for (const Site& site : sites) {
    labels.push_back(label(site));
  }
  for (const std::string& file : in_survey) {
    labels.push_back(label_in_survey(file));
  }
  std::string listed = "Station " + plain_text(station) + " of line " + line + ":";
  for (std::size_t index = 0; index < std::min(labels.size(), sites_listed); ++index) {
    listed += (index == 0 ? " " : ", ") + labels[index];
  }
  if (labels.size() > sites_listed) {
    listed += " and " + plain_text(static_cast<std::int64_t>(labels.size() - sites_listed)) + " more";
  }
  return listed;
}

void StationSites::add(const std::string& line, double station, Site site) {
  AtStation& place = stations_[{upper_case(line), station}];
  if (place.sites.empty()) {
    place.line = line;
  }
  if (std::ranges::none_of(place.sites, [&](const Site& other) { return is_same(other, site); })) {
    place.sites.push_back(std::move(site));
  }
}

FilesAtStations::Line FilesAtStations::read_line(const std::string& line) {
  Line stations;
  if (!open_survey().database.is_open()) {
    return stations;
  }
  dao::Recordset& files = open_survey().files;
  dao::Recordset rows = open_survey().database.open_recordset(
      "SELECT DISTINCT Station,FileID FROM ReadingsDataTable WHERE LineNumber = " + dao::text_literal(line) +
      " AND FileID > 0");
  for (; !rows.eof(); rows.move_next()) {
    const std::int32_t ID = rows.get_long("FileID");
    files.find_first("ID = " + format_number(ID, "0"));
    if (!files.no_match()) {
      stations[rows.get_double("Station")].files.push_back(
          {ID, files.get_text("SurveyFile"), !is_filter_of_named_sites(files.get_text("Filter"))});
    }
  }
  rows = open_survey().database.open_recordset("SELECT Station,SiteName FROM SitesTable WHERE SurveyLine = " +
                                               dao::text_literal(line));
  for (; !rows.eof(); rows.move_next()) {
    const auto station = stations.find(rows.get_double("Station"));
    if (station != stations.end()) {
      station->second.site = rows.get_text("SiteName");
    }
  }
  return stations;
}

const FilesAtStations::Line& FilesAtStations::of_line(const std::string& line) {
  const std::string name = upper_case(line);
  auto known = lines_.find(name);
  if (known == lines_.end()) {
    known = lines_.emplace(name, read_line(line)).first;
  }
  return known->second;
}

const FilesAtStations::Station& FilesAtStations::at(const std::string& line, double station) {
  static const Station none;
  const Line& stations = of_line(line);
  const auto found = stations.find(station);
  return found == stations.end() ? none : found->second;
}

std::vector<SharedStation> shared_stations(const FoundSites& found, FilesAtStations& survey) {
  std::vector<SharedStation> shared;
  for (const auto& [key, place] : found.sites.all()) {
    SharedStation here{place.line, key.second, place.sites,
                       others_in_survey(survey.at(place.line, key.second), place.sites, found.own_rows)};
    if (here.sites.size() + here.in_survey.size() > 1) {
      shared.push_back(std::move(here));
    }
  }
  return shared;
}

void remark_on_shared_stations(const std::vector<SharedStation>& shared,
                               std::vector<formats::FileReport>& files) {
  for (const SharedStation& place : shared) {
    const std::string other =
        place.in_survey.empty() ? label(place.sites.front()) : label_in_survey(place.in_survey.front());
    for (std::size_t index = place.in_survey.empty() ? 1 : 0; index < place.sites.size(); ++index) {
      const Site& site = place.sites[index];
      if (site.file_index < files.size()) {
        formats::remark_ignored(files[site.file_index], 0,
                                site.name + " comes to station " + plain_text(place.station) + " of line " +
                                    place.line + ", as does " + other,
                                std::string(different_sites_kind));
      }
    }
  }
}

std::vector<std::string> texts_of(const std::vector<SharedStation>& shared) {
  std::vector<std::string> texts;
  std::ranges::transform(shared, std::back_inserter(texts), &SharedStation::text);
  return texts;
}

std::string list_of_stations(const std::vector<std::string>& texts) {
  std::string list;
  for (std::size_t index = 0; index < std::min(texts.size(), stations_listed); ++index) {
    list += (index == 0 ? "" : "\n") + texts[index];
  }
  if (texts.size() > stations_listed) {
    list +=
        "\nand " + plain_text(static_cast<std::int64_t>(texts.size() - stations_listed)) + " more stations";
  }
  return list;
}

bool may_share_stations(const std::vector<std::string>& texts) {
  return texts.empty() ||
         user_interface().ask_yes_no("Different sites come to one line and station.\n" +
                                     list_of_stations(texts) + "\nTake them as repeats of one station?");
}

}  // namespace Module_data_file
