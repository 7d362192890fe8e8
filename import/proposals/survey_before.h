// survey_before.h: what the open survey holds before an import, as far as a plan of the import asks.
#pragma once
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "database/sites.h"
#include "import/earlier_files.h"
#include "import/station_sites.h"
#include "projections/coord_system.h"

namespace Module_data_file {

/// Reads the survey that is open when it is made; without one it is empty.
class SurveyBefore {
 public:
  /// Throws dao::Error.
  SurveyBefore();

  [[nodiscard]] FilesAtStations& files_at_stations() { return files_at_stations_; }

  /// The files that the survey has, to be used up by one run over the files of an import; null without a
  /// survey.
  [[nodiscard]] std::shared_ptr<EarlierFiles> earlier_files() const {
    return earlier_files_ ? std::make_shared<EarlierFiles>(*earlier_files_) : nullptr;
  }
  /// The rows of a file, if an earlier import stored it. @param name the file's own
  [[nodiscard]] const FileRows* rows_of(const std::string& path, const std::string& name, double date) const;

  /// The one line that all readings of an earlier import of the file are on; empty if there are more.
  std::string line_of(const FileRows& rows);

  [[nodiscard]] bool has_line(const std::string& line) const;

  /// The sites of a line, by their stations.
  [[nodiscard]] const std::vector<Module_database::Site>& sites(const std::string& line) const;

  /// The station that an earlier import of a file gave to one of its events on a line; none if it isn't
  /// there.
  std::optional<double> station_of(const FileRows& rows, const std::string& line, std::int32_t event);

  /// The highest station of a line that has readings of a file; none without such.
  std::optional<double> highest_station(const std::string& line);

  [[nodiscard]] bool has_projection() const { return has_projection_; }
  /// The survey's projection, with its transform parameters; none if it has none or a faulty one.
  [[nodiscard]] const std::optional<Module_projections::CoordSystem>& projection() const {
    return projection_;
  }

 private:
  using StationOfEvent = std::map<std::pair<std::string, std::int32_t>, double>;  // line in upper case, event
  const StationOfEvent& stations_of_file(const FileRows& rows);

  FilesAtStations files_at_stations_;
  std::unique_ptr<EarlierFiles> earlier_files_;
  std::set<std::string> lines_;                                      // in upper case
  std::map<std::string, std::vector<Module_database::Site>> sites_;  // by line in upper case
  std::map<std::int32_t, StationOfEvent> stations_of_file_;          // by FileID
  std::optional<Module_projections::CoordSystem> projection_;
  bool has_projection_ = false;
};

}  // namespace Module_data_file
