#include "survey_edits/remove_readings.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <utility>

#include "core/finished_work.h"
#include "core/number_text.h"
#include "core/session_state.h"
#include "core/trap_errors.h"
#include "core/undo_stack.h"
#include "database/reading_facts.h"
#include "database/stations.h"
#include "database/survey_database.h"
#include "platform/dao/case_folding.h"
#include "platform/dao/text_literal.h"
#include "survey_edits/compute_again.h"
#include "survey_edits/places.h"
#include "survey_edits/taken_out.h"

namespace Module_survey_edits {

namespace {

using Module_averaged_data::each_item;
using Module_averaged_data::Outcome;
using Module_averaged_data::SkippedGroups;
using Module_averaged_data::WorkProgress;
using Module_database::open_survey;

constexpr std::string_view removal_failed = "An error occurred while removing the readings: ";

class Removal {
 public:
  Removal(const SurveyContents& contents, const RemovalPlan& plan, WorkProgress& progress,
          SkippedGroups& skipped)
      : contents_(contents), plan_(plan), progress_(progress), skipped_(skipped) {}

  Outcome run() {
    clear_shelf();
    keep_derived_readings();
    if (const Outcome taken = take_out_readings(); taken != Outcome::finished) {
      return taken;
    }
    take_out_files();
    take_out_stations();
    take_out_locations();
    requery_survey();
    const Outcome computed = compute_again(curves(), progress_, skipped_);
    note_what_is_left();
    return computed;
  }

 private:
  [[nodiscard]] const HeldStation& station(std::size_t index) const { return contents_.stations[index]; }

  [[nodiscard]] std::vector<std::string> readings_at(const std::vector<std::size_t>& stations) const {
    std::vector<std::string> criteria;
    for (const std::size_t index : stations) {
      std::ranges::move(readings_of(station(index)), std::back_inserter(criteria));
    }
    return criteria;
  }

  void keep_derived_readings() {
    for (const std::string& criteria : readings_at(plan_.stations_cut)) {
      keep_readings(criteria + " AND FileID < 0");
    }
  }

  Outcome take_out_readings() {
    std::vector<std::string> criteria = readings_at(plan_.stations_gone);
    std::set<std::pair<std::int32_t, std::size_t>> parts;  // of a file, at a station
    for (const std::size_t index : plan_.readings) {
      const HeldReading& reading = contents_.readings[index];
      if (!std::ranges::binary_search(plan_.stations_gone, reading.station)) {
        parts.emplace(reading.FileID, reading.station);
      }
    }
    for (const auto& [FileID, index] : parts) {
      for (const std::string& of_station : readings_of(station(index))) {
        criteria.push_back(with_ID(FileID, "FileID") + " AND " + of_station);
      }
    }
    progress_.begin("Removing readings", criteria.size());
    return each_item(progress_, [&](std::size_t index) {
      keep_readings(criteria[index]);
      Module_database::delete_readings(criteria[index]);
      return 0;
    });
  }

  void take_out_files() {
    for (const std::size_t index : plan_.files_gone) {
      for (const HeldFileRow& row : contents_.files[index].rows) {
        take_out_rows("FileTable", with_ID(row.ID));
      }
    }
    std::map<std::size_t, std::vector<const HeldReading*>> left;
    for (const std::size_t index : plan_.readings_left) {
      const HeldReading& reading = contents_.readings[index];
      if (std::ranges::binary_search(plan_.files_cut, reading.file)) {
        left[reading.file].push_back(&reading);
      }
    }
    for (const auto& [index, readings] : left) {
      cut_file(contents_.files[index], readings);
    }
  }

  /// Rows of events that have lost all of their readings go; those that remain name a station that has some.
  void cut_file(const HeldFile& file, const std::vector<const HeldReading*>& left) {
    std::vector<HeldFileRow> rows_left;
    for (const HeldFileRow& row : file.rows) {
      keep_rows("FileTable", with_ID(row.ID));
      if (std::ranges::any_of(
              left, [&](const HeldReading* reading) { return reading->EventNumber == row.EventNumber; })) {
        rows_left.push_back(row);
      }
    }
    if (rows_left.empty()) {
      return;  // the readings belong to a row of another event
    }
    for (const HeldFileRow& row : file.rows) {
      if (std::ranges::find(rows_left, row.ID, &HeldFileRow::ID) == rows_left.end()) {
        open_survey().database.execute("DELETE FROM FileTable WHERE " + with_ID(row.ID));
      }
    }
    // All readings of a file belong to its first row: another one takes the place of a first row that goes.
    const std::int32_t first = file.rows.front().ID;
    if (rows_left.front().ID != first) {
      open_survey().database.execute("UPDATE FileTable SET " + with_ID(first) + " WHERE " +
                                     with_ID(rows_left.front().ID));
      rows_left.front().ID = first;
    }
    for (const HeldFileRow& row : rows_left) {
      name_station(row, left);
    }
  }

  void name_station(const HeldFileRow& row, const std::vector<const HeldReading*>& left) {
    const HeldStation* other = nullptr;
    for (const HeldReading* const reading : left) {
      if (reading->EventNumber == row.EventNumber) {
        const HeldStation& held = station(reading->station);
        if (held.station == row.station && dao::folded_text(held.line) == dao::folded_text(row.line)) {
          return;
        }
        other = other == nullptr ? &held : other;
      }
    }
    if (other == nullptr) {
      return;
    }
    dao::Recordset& files = open_survey().files;
    files.find_first(with_ID(row.ID));
    files.edit();
    files.set_text("LineNumber", other->line);
    files.set_double("Station", other->station);
    files.update();
  }

  void take_out_stations() {
    for (const std::size_t index : plan_.stations_gone) {
      for (const std::int32_t ID : station(index).IDs) {
        take_out_station(ID);
      }
    }
    for (const std::size_t index : plan_.stations_gone) {
      take_out_rows("SitesTable", "SurveyLine = " + dao::text_literal(station(index).line) +
                                      " AND Station = " + criterion_text(station(index).station));
    }
    for (const std::size_t index : plan_.readings) {
      const HeldReading& reading = contents_.readings[index];
      if (std::ranges::binary_search(plan_.stations_gone, reading.station)) {
        locations_left_.insert(reading.LocationID);
      }
    }
    locations_left_.erase(Module_database::no_row);
  }

  void take_out_station(std::int32_t ID) {
    dao::Recordset& stations = open_survey().stations;
    stations.find_first(with_ID(ID));
    if (!stations.no_match()) {
      locations_left_.insert(
          Module_database::find_location(stations.get_double("LocalX"), stations.get_double("LocalY"))
              .LocationID);
    }
    take_out_rows("StationsTable", with_ID(ID));
  }

  void take_out_locations() {
    std::set<std::int32_t> unused = locations_left_;
    for (const LocationUse& use : uses_of(locations_left_)) {
      unused.erase(use.LocationID);
      if (!has_name_of_a_station(use.LocationID)) {
        keep_rows("LocationLookupTable", with_ID(use.LocationID));
        name_location(use);
      }
    }
    for (const std::int32_t ID : unused) {
      take_out_rows("LocationLookupTable", with_ID(ID));
    }
  }

  [[nodiscard]] TouchedCurves curves() const {
    std::vector<Module_database::ReadingKey> keys;
    std::set<std::size_t> touched;
    for (const std::size_t index : plan_.readings) {  // also those of a file of averages
      const HeldReading& reading = contents_.readings[index];
      if (!std::ranges::binary_search(plan_.stations_gone, reading.station) &&
          touched.insert(reading.curve).second) {
        keys.push_back(contents_.curves[reading.curve].key);
      }
    }
    return touched_curves(std::move(keys));
  }

  void note_what_is_left() {
    for (const std::string& criteria : readings_at(plan_.stations_cut)) {
      note_left(criteria + " AND FileID < 0");
    }
    std::set<std::int32_t> files;
    for (const std::size_t index : plan_.readings_left) {
      if (std::ranges::binary_search(plan_.files_cut, contents_.readings[index].file)) {
        files.insert(contents_.readings[index].FileID);
      }
    }
    for (const std::int32_t FileID : files) {
      note_left(with_ID(FileID, "FileID"));
    }
  }

  const SurveyContents& contents_;
  const RemovalPlan& plan_;
  WorkProgress& progress_;
  SkippedGroups& skipped_;
  std::set<std::int32_t> locations_left_;  // by stations that go
};

Outcome remove_in_transaction(const SurveyContents& contents, const RemovalPlan& plan,
                              SkippedGroups& skipped) {
  prepare_shelf();
  const ShelfAsItIs shelf;
  Outcome outcome = Outcome::failed;
  try {
    WorkProgress progress("Removing readings", 0);
    dao::Transaction transaction(open_survey().database);
    outcome = Removal(contents, plan, progress, skipped).run();
    if (outcome == Outcome::finished) {
      transaction.commit();
    } else {
      transaction.roll_back();
    }
  } catch (const std::exception&) {
    shelf.stays();
    throw;
  }
  if (outcome == Outcome::finished) {
    can_come_back();
  } else {
    shelf.stays();
  }
  return outcome;
}

}  // namespace

Outcome remove_readings(const SurveyContents& contents, const RemovalPlan& plan) {
  const BusyPointer busy;
  Outcome outcome = Outcome::failed;
  SkippedGroups skipped;
  const int result = trap_errors(removal_failed, [&] {
    Module_database::require_writable();
    outcome = remove_in_transaction(contents, plan, skipped);
  });
  if (result == 0 && outcome == Outcome::finished) {
    Module_Brenlox::clear_undo();  // its rows may be gone
    session().data_changed = true;
    Module_database::settle_survey();
    skipped.tell(std::string(removal_failed));
    Module_Brenlox::tell_finished("Removed from " + session().database_file + ": " + what_goes(plan),
                                  session().database_file);
  }
  return result == 0 ? outcome : Outcome::failed;
}

}  // namespace Module_survey_edits
