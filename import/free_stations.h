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

  /// Whether no file of the import says the station, none has taken it, and the line doesn't have it in the
  /// survey, unless it is one of `own`.
  [[nodiscard]] bool is_free(const std::string& line, double station, const std::set<double>& own);

  /// The station has a reading now.
  void take(const std::string& line, double station);

 private:
  struct Line {
    std::set<double> in_survey;  // when the line was first asked for
    int steps = 0;               // so many from the start on are taken for good
  };
  Line& line_of(const std::string& line);

  std::function<const FoundSites&()> in_files_;
  std::set<LineStation> taken_;
  std::map<std::string, Line> lines_;  // by name in upper case
};

}  // namespace Module_data_file
