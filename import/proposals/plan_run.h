// plan_run.h: one pass over scanned files as an import goes over files, for the rows of its plan.
#pragma once
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "import/import_choices.h"
#include "import/import_plan.h"
#include "import/proposals/line_places.h"
#include "import/proposals/scanned_file.h"
#include "import/proposals/site_stations.h"
#include "import/proposals/survey_before.h"
#include "import/readers/field_reader.h"
#include "import/station_sites.h"

namespace Module_data_file {

/// The sites of the lines of an import, and what they are on the map.
class PlannedLines {
 public:
  /// @param lines of the sections of each file, in upper case
  PlannedLines(std::span<const ScannedFile> files, const std::vector<std::vector<std::string>>& lines,
               const SurveyBefore& survey);

  /// The place of a file on the map; none for one without a place.
  [[nodiscard]] const std::optional<numerics::geodesy::MapPlace>& place_of(std::size_t file_index) const {
    return places_[file_index];
  }
  /// @param line in upper case; one that the import has
  [[nodiscard]] const LinePlaces& line(const std::string& line) const { return lines_.at(line); }
  [[nodiscard]] const std::map<std::string, LinePlaces>& all() const { return lines_; }
  [[nodiscard]] const PlaceMap& map() const { return map_; }

 private:
  PlaceMap map_;
  std::vector<std::optional<numerics::geodesy::MapPlace>> places_;
  std::map<std::string, LinePlaces> lines_;
};

class PlanRun {
 public:
  /// What is given must outlive the run; the choices have been tested.
  PlanRun(std::span<const ScannedFile> files, const ImportChoices& choices,
          std::span<const PlannedEdit> edits, SurveyBefore& survey);

  /// The rows of all files, without problems that concern more than one of them. Throws dao::Error.
  std::vector<PlannedSection> rows();

  [[nodiscard]] const FoundSites& found() const { return found_; }  // once there are rows
  [[nodiscard]] const PlannedLines& lines() const { return *lines_; }
  [[nodiscard]] const ImportChoices& choices() const { return choices_; }

 private:
  struct DecodedFile {
    std::string name;  // in the survey
    bool has_namesakes = false;
    bool repeated = false;
    std::string line;
    std::int32_t event = 0;
    float rate = 0.0F;
    std::vector<std::string> remarks;
  };

  void decode_files();
  void measure_lines();
  [[nodiscard]] const PlannedEdit* edit_of(std::size_t file, std::size_t section) const;
  [[nodiscard]] std::string line_of(std::size_t file, std::size_t section) const;

  void go_over_files(ReadingRecord& record, std::vector<PlannedSection>* rows);
  void begin_record(ReadingRecord& record, std::size_t file) const;
  bool take_file(std::size_t file, ReadingRecord& record, std::vector<PlannedSection>* rows);
  bool take_named_sections(std::size_t file, ReadingRecord& record, std::vector<PlannedSection>* rows);
  [[nodiscard]] bool turns_ey_of(const ScannedSection& section) const;
  [[nodiscard]] PlannedSection row_of_section(std::size_t file, std::size_t index) const;
  void take_station(const ScannedSection& section, ReadingRecord& record, PlannedSection& row);
  void take_distance(const ScannedSection& section, FileTask& task, const PlannedSection& row);
  [[nodiscard]] bool counts_sites() const;
  void take_counted_site(const ScannedSection& section, FileTask& task, const PlannedSection& row);
  [[nodiscard]] PlannedSection row_of_own_stations(std::size_t file) const;
  static void test_fixed_columns(const ScannedFile& scanned, PlannedSection& row);
  bool take_own_stations(std::size_t file, ReadingRecord& record, std::vector<PlannedSection>* rows);
  [[nodiscard]] PlannedSection begin_row(std::size_t file, std::size_t section) const;
  [[nodiscard]] PlannedSection row_of_nothing(std::size_t file, std::string why) const;
  [[nodiscard]] std::string why_nothing(std::size_t file) const;
  void test_rate(PlannedSection& row) const;
  const FoundSites& look();

  std::span<const ScannedFile> files_;
  const ImportChoices& choices_;
  std::map<std::pair<std::size_t, std::size_t>, const PlannedEdit*> edits_;
  SurveyBefore& survey_;
  std::vector<DecodedFile> decoded_;
  std::optional<PlannedLines> lines_;
  std::optional<SiteStations> site_stations_;  // of the present pass
  std::optional<FoundSites> in_files_;         // what the files say themselves, once it was asked for
  FoundSites found_;
};

}  // namespace Module_data_file
