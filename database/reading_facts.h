// reading_facts.h: what is known of a reading beyond its row: the errors of its values, and its axes.
//
// The counters of readings are given out again, so that facts must never outlive their reading: readings are
// deleted by delete_readings, and who writes over one writes its facts, too.
#pragma once
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "database/reading.h"

namespace Module_database {

/// Writes the errors of a curve and the axes of a reading in place of what was known of it. Throws
/// dao::Error.
void write_facts(std::int32_t ReadingID, const Curve& curve, const ReadingAxes& axes);

/// Fills errors and axes of a reading whose row was read; both are as not known where nothing is stored.
/// Facts of another number of frequencies than the reading has are none: an earlier version has written over
/// it. Throws dao::Error.
void read_facts(StoredReading& reading);

/// The facts of many readings, read at once.
class ReadingFacts {
 public:
  /// @param criteria  which rows of ReadingsDataTable: "StationID = 3 AND ReductionType = 0". Throws
  /// dao::Error.
  explicit ReadingFacts(const std::string& criteria);

  /// What read_facts does.
  void add_to(StoredReading& reading) const;

 private:
  std::map<std::int32_t, std::pair<std::vector<float>, ReadingAxes>> facts_;  // by the reading's ID
};

/// The row that holds a reading's facts.
struct FactsRow {
  std::int32_t ID = 0;  // 0: there is none
  std::vector<float> errors;
  ReadingAxes axes;
};

/// The row of a reading. Throws dao::Error.
FactsRow find_facts(std::int32_t ReadingID);

/// Makes the facts of a reading what they were, in a row of the ID that it had, unless another reading's has
/// that now. Throws dao::Error.
void put_back_facts(std::int32_t ReadingID, const FactsRow& row);

/// Deletes the readings that the criteria find, with their facts. Throws dao::Error.
void delete_readings(const std::string& criteria);

}  // namespace Module_database
