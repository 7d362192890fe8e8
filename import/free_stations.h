// free_stations.h: stations for sections that don't say theirs, where the others do.
#pragma once
#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>

#include "import/station_sites.h"

namespace Module_data_file {

class FreeStations {
 public:
  /// @param in_files gives what the files of the import say; called only if a station is asked for, as it
  /// looks into all of them
  explicit FreeStations(std::function<const FoundSites&()> in_files) : in_files_(std::move(in_files)) {}

  /// The first of start, start + spacing, start + 2 spacing ... that is neither a station of the line in the
  /// survey, unless it is one of `own`, nor one of a file's nor taken before.
  [[nodiscard]] double next(const std::string& line, double start, double spacing,
                            const std::set<double>& own);

  /// Whether another site has the station: in a file of the import, in the survey, or by `take`.
  /// @param read  what has been read of the files already
  [[nodiscard]] bool is_of_other_site(const std::string& line, double station, const Site& site,
                                      const FoundSites& read) const;

  /// The station has a reading of the site now.
  void take(const std::string& line, double station, const std::string& site);

 private:
  struct Line {
    std::set<double> in_survey;  // when the line was first asked for
    int steps = 0;               // so many from the start on are taken for good
  };
  Line& line_of(const std::string& line);

  std::function<const FoundSites&()> in_files_;
  std::map<LineStation, std::string> taken_;  // with the name of the site
  std::map<std::string, Line> lines_;         // by name in upper case
};

}  // namespace Module_data_file
