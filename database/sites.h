// sites.h: what the files call the stations of a survey, and where they put them.
//
// A station is known in the survey by its line and number; its site has the name and the geographic place
// that the first file of the station gave. A station has at most one site.
#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Module_database {

// EySign of a site: how the sign of its Ey is taken where the tensor is asked for.
inline constexpr std::int32_t ey_sign_by_rule = 0;
inline constexpr std::int32_t ey_sign_as_measured = 1;
inline constexpr std::int32_t ey_sign_turned = -1;

struct Site {
  std::string line;
  double station = 0.0;
  std::string name;                 // as its file has it; empty if it has none
  std::optional<double> latitude;   // degrees, north positive; either both or none
  std::optional<double> longitude;  // degrees, east positive
  std::optional<double> elevation;  // m
  std::string datum;                // as the file names it; empty if it doesn't
  std::int32_t EySign = ey_sign_by_rule;
  std::string SurveyFile;  // that the site came with
};

/// Stores what a file says of a station's site. The first file's name and place win: another file fills only
/// what was missing; the file itself, imported again, is taken as it is now, and a file that was removed has
/// no say. EySign stays. Needs an open survey; throws dao::Error.
/// @return the name that the station keeps, if the file gives another one
std::optional<std::string> keep_site(const Site& site);

/// Takes back what a file has said of a station's site, as its readings go: name and place. EySign stays.
/// What another file has said stays, too. Needs an open survey; throws dao::Error.
void forget_site(std::string_view line, double station, std::string_view SurveyFile);

/// Sets how the sign of Ey is taken at a station: one of the three values. It gets a site if it has none;
/// nothing else of a site changes. Needs an open survey that can be written; throws dao::Error.
void set_ey_sign(std::string_view line, double station, std::int32_t sign);

/// The site of a station. Needs an open survey; throws dao::Error.
std::optional<Site> find_site(std::string_view line, double station);

/// What a site is called beside its station: its name, but nothing where that only repeats the number.
std::string shown_name(const Site& site);

/// All sites by line and station. Needs an open survey; throws dao::Error.
std::vector<Site> listed_sites();

/// Those of a line, by station. Needs an open survey; throws dao::Error.
std::vector<Site> sites_of_line(std::string_view line);

}  // namespace Module_database
