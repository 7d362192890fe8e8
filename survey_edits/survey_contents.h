// survey_contents.h: what a survey holds, for the user to choose from what is to be taken out: files,
// stations and lines, with how much belongs to each.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "database/reading.h"

namespace Module_survey_edits {

struct HeldFileRow {  // of FileTable
  std::int32_t ID = 0;
  std::int32_t EventNumber = 0;
  std::string line;
  double station = 0.0;
};

/// A field file as it was imported: all events of one name and day.
struct HeldFile {
  std::vector<HeldFileRow> rows;      // by ID; none if readings have lost the row of their file
  std::string name;                   // in the survey; "(unknown file 7)" without a row
  double date = 0.0;                  // collected, days since 30 December 1899
  std::vector<std::size_t> stations;  // of its readings, ascending
  std::size_t readings = 0;
};

struct HeldStation {
  std::vector<std::int32_t> IDs;       // in StationsTable; older surveys may have a station more than once
  std::vector<std::int32_t> lost_IDs;  // that readings of this line and number have without a row of them
  std::string line;
  double station = 0.0;
  std::string name;          // of its site
  std::size_t readings = 0;  // imported ones
  std::size_t files = 0;

  /// Left by an import whose readings have come to other stations since.
  [[nodiscard]] bool is_ghost() const { return readings == 0; }
};

struct HeldLine {
  std::string line;
  std::vector<std::size_t> stations;
  std::size_t readings = 0;
};

/// An imported reading. Averages and merged curves, which are computed here, are none.
struct HeldReading {
  std::int32_t FileID = 0;
  std::int32_t StationID = 0;
  std::int32_t LocationID = 0;
  std::int32_t EventNumber = 0;
  std::int32_t ReductionType = 0;
  std::size_t file = 0;
  std::size_t station = 0;
  std::size_t curve = 0;
};

/// What repeats have in common that are averaged.
struct HeldCurve {
  Module_database::ReadingKey key;
  std::size_t station = 0;
};

/// Places in one of the lists are given to the others as indices.
struct SurveyContents {
  std::vector<HeldFile> files;  // by name, then by day
  std::vector<HeldStation> stations;
  std::vector<HeldLine> lines;
  std::vector<HeldReading> readings;
  std::vector<HeldCurve> curves;
};

/// What the open survey holds. Rows that are damaged are left out. Throws dao::Error.
SurveyContents survey_contents();

/// What finds the readings of a station: one condition after the other, on different rows.
std::vector<std::string> readings_of(const HeldStation& station);

/// "line 200E station 100".
std::string name_of(const HeldStation& station);

// By the names that users type; letters of any case. Empty if there is none.
std::vector<std::size_t> files_named(const SurveyContents& contents, std::string_view name);
std::vector<std::size_t> stations_named(const SurveyContents& contents, std::string_view line,
                                        double station);
std::vector<std::size_t> lines_named(const SurveyContents& contents, std::string_view line);

}  // namespace Module_survey_edits
