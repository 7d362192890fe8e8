// site_stations.h: the stations of sites by their names, so that repeats of a site come to its station.
#pragma once
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "database/sites.h"
#include "import/proposals/line_places.h"
#include "import/proposals/scanned_file.h"
#include "import/proposals/survey_before.h"

namespace Module_data_file {

/// Places of one site from different days differ by some metres, and by thirty where they are written in
/// whole seconds.
inline constexpr double same_place = 50.0;  // m

/// The place of a site of the survey on a map; none without one.
std::optional<numerics::geodesy::MapPlace> place_on(const PlaceMap& map, const Module_database::Site& site);

/// Metres between two places.
double distance(const numerics::geodesy::MapPlace& a, const numerics::geodesy::MapPlace& b);

/// The same between two stations of tables; none where one of them has no place.
std::optional<double> metres_between(const OwnStation& a, const OwnStation& b, const PlaceMap& map);

/// The sites of the survey, and those that an import has come to so far.
class SiteStations {
 public:
  /// What is given must outlive it.
  SiteStations(const PlaceMap& map, const SurveyBefore& survey) : map_(map), survey_(survey) {}

  using Place = std::optional<numerics::geodesy::MapPlace>;

  /// The station of the site of this name, in whatever case, that is within same_place.
  std::optional<double> close_to(const std::string& line, const std::string& name, const Place& place);
  /// The same; where the one or the other has no place, the name is enough.
  std::optional<double> named(const std::string& line, const std::string& name, const Place& place);

  void add(const std::string& line, const std::string& name, const Place& place, double station);

 private:
  struct Known {
    Place place;
    double station = 0.0;
  };
  using Line = std::map<std::string, std::vector<Known>>;  // by name in upper case
  Line& line_of(const std::string& line);

  const PlaceMap& map_;
  const SurveyBefore& survey_;
  std::map<std::string, Line> lines_;  // by name in upper case
};

}  // namespace Module_data_file
