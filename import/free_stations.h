// free_stations.h: stations for sections that don't say theirs, where the others do.
#pragma once
#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>

namespace Module_data_file {

using LineStation = std::pair<std::string, double>;  // the line in upper case

class FreeStations {
 public:
  /// @param of_files gives the stations that the files of the import say; called once, and only if a station
  /// is asked for, as it looks into all files
  explicit FreeStations(std::function<std::set<LineStation>()> of_files) : of_files_(std::move(of_files)) {}

  /// The first of start, start + spacing, start + 2 spacing ... that is neither a station of the line in the
  /// survey, unless it is one of `own`, nor one of a file's nor taken before.
  [[nodiscard]] double next(const std::string& line, double start, double spacing,
                            const std::set<double>& own);

  /// The station has a reading now.
  void take(const std::string& line, double station);

 private:
  struct Line {
    std::set<double> in_survey;  // when the line was first asked for
    int steps = 0;               // so many from the start on are taken for good
  };
  Line& line_of(const std::string& line);

  std::function<std::set<LineStation>()> of_files_;
  bool has_asked_ = false;
  std::set<LineStation> taken_;
  std::map<std::string, Line> lines_;  // by name in upper case
};

}  // namespace Module_data_file
