#include "import/store_blocks.h"

#include <algorithm>
#include <exception>
#include <numeric>
#include <set>
#include <stdexcept>
#include <utility>
#include <vector>

#include "core/calendar.h"
#include "core/number_text.h"
#include "core/session_state.h"
#include "core/text_fields.h"
#include "core/trap_errors.h"
#include "database/frequency_store.h"
#include "database/reading.h"
#include "database/reading_facts.h"
#include "database/sites.h"
#include "database/stations.h"
#include "database/survey_database.h"
#include "platform/dao/text_literal.h"
#include "reduction/derived_rows.h"

namespace Module_data_file {

namespace {

using Module_database::Curve;
using Module_database::error_count;
using Module_database::field_count;
using Module_database::mask_count;

constexpr std::string_view failure_text = "An error occurred while string the header block: ";

// Runs a store with its message, which the notes keep for the report.
template <class Operation>
int store_with_notes(StoreNotes& notes, Operation&& operation) {
  return trap_errors(failure_text, [&] {
    try {
      std::forward<Operation>(operation)();
    } catch (const std::exception& failure) {
      notes.failure = std::string(failure_text) + ::failure_text(failure);
      throw;
    }
  });
}

std::string row_criteria(const ReadingRecord& record) {
  return "SurveyFile = " + dao::text_literal(record.SurveyFile) + " AND DateCollected = #" +
         criterion_date(record.DateCollected) +
         "# AND EventNumber = " + format_number(record.EventNumber, "0");
}

std::string ID_criteria(std::int32_t ID) { return "ID = " + format_number(ID, "0"); }

// What the file says of its stations may be another thing this time, and of other stations.
void forget_sites_of_file(std::int32_t file_id, const std::string& name) {
  dao::Recordset places = Module_database::open_survey().database.open_recordset(
      "SELECT DISTINCT LineNumber,Station FROM ReadingsDataTable WHERE FileID = " +
      format_number(file_id, "0"));
  for (; !places.eof(); places.move_next()) {
    Module_database::forget_site(places.get_text("LineNumber"), places.get_double("Station"), name);
  }
}

std::int64_t values_of_reading(const dao::Recordset& row) {
  using namespace Module_database;
  const Curve curve = read_reading(row).curve;
  std::int64_t values = 0;
  for (std::size_t index = 0; index < curve.count(); ++index) {
    for (const int part : {field_resistivity, field_phase, field_resistivity_error, field_phase_error}) {
      values += curve.is_present(part, index) ? 1 : 0;
    }
  }
  return values;
}

// A damaged row has no key by which anything could have been computed from it.
void note_key(const dao::Recordset& row, KeySet& keys) {
  try {
    keys.insert(Module_averaged_data::key_of_row(row));
  } catch (const dao::Error&) {
    return;
  }
}

// One statement: a search for each row would go through what is left of the file again and again.
std::int32_t delete_readings_of_file(std::int32_t file_id, std::set<std::int32_t>& left, KeySet& keys) {
  auto& survey = Module_database::open_survey();
  const std::string of_file = "FileID = " + format_number(file_id, "0");
  const std::string readings = "FROM ReadingsDataTable WHERE " + of_file;
  const std::int32_t count = survey.database.open_recordset("SELECT ID " + readings).record_count();
  dao::Recordset places = survey.database.open_recordset("SELECT DISTINCT StationID " + readings);
  for (; !places.eof(); places.move_next()) {
    left.insert(places.get_long("StationID"));
  }
  dao::Recordset replaced = survey.database.open_recordset(
      "SELECT DISTINCT LineNumber,Station,ReferenceType,SampleRate,DataType,DipoleLength " + readings);
  for (; !replaced.eof(); replaced.move_next()) {
    note_key(replaced, keys);
  }
  Module_database::delete_readings(of_file);
  return count;
}

// Readings can outlive their row of FileTable; an ID that they have would give them to another file.
std::int32_t free_file_ID() {
  const double highest = std::max(Module_database::get_max_value("ID", "FileTable"),
                                  Module_database::get_max_value("FileID", "ReadingsDataTable"));
  return static_cast<std::int32_t>(std::max(highest, 0.0)) + 1;
}

void write_header(dao::Recordset& files, const ReadingRecord& record) {
  files.set_text("SurveyFile", record.SurveyFile);
  files.set_date("DateCollected", record.DateCollected);
  files.set_date("DateAnalysed", record.DateAnalysed);
  files.set_text("LineNumber", record.LineNumber);
  files.set_double("Station", record.Station);
  files.set_long("EventNumber", record.EventNumber);
  files.set_long("ReferenceType", record.choices.ReferenceType);
  files.set_long("ReductionType", record.choices.ReductionType);
  files.set_single("SampleRate", record.SampleRate);
  files.set_single("DipoleLength", record.DipoleLength);
  files.set_single("StationSpacing", record.StationSpacing);
  files.set_single("Orientation", record.Orientation);
  files.set_text("Filter", record.Filter);
}

// The file goes by the name that this import gives it. Two files of one name and day couldn't be told apart
// by the next import, so the name is another where another file has that one.
void take_earlier_rows(ReadingRecord& record) {
  const FileRows* const earlier = rows_of_earlier_import(record);
  record.SurveyFile = record.run.earlier_files->name_for(record.SurveyFile, earlier, record.DateCollected);
  if (earlier == nullptr) {
    return;
  }
  record.file_rows = *earlier;
  if (record.SurveyFile == earlier->name) {
    return;
  }
  dao::Recordset& files = Module_database::open_survey().files;
  for (const auto& [event, ID] : earlier->ID_of_event) {
    files.find_first(ID_criteria(ID));
    files.edit();
    files.set_text("SurveyFile", record.SurveyFile);
    files.update();
  }
}

void store_header(ReadingRecord& record, StoreNotes& notes) {
  dao::Recordset& files = Module_database::open_survey().files;
  files.find_first(row_criteria(record));  // fails for a name that no criterion can hold, before a write
  if (record.FileID == 0) {
    take_earlier_rows(record);
  }
  FileRows& rows = record.file_rows;
  const auto row = rows.ID_of_event.find(record.EventNumber);
  if (row == rows.ID_of_event.end()) {
    files.add_new();
    files.set_long("ID", free_file_ID());
  } else {
    notes.file_known = true;
    notes.earlier_name = rows.name;
    forget_sites_of_file(row->second, rows.name);
    notes.replaced_values = values_of_file(row->second);
    notes.replaced_readings =
        delete_readings_of_file(row->second, record.run.stations_left, notes.replaced_keys);
    files.find_first(ID_criteria(row->second));
    files.edit();
  }
  write_header(files, record);
  files.update();
  session().data_changed = true;
  if (row == rows.ID_of_event.end()) {
    files.go_to_added();
    rows.ID_of_event.emplace(record.EventNumber, files.get_long("ID"));
  }
  if (rows.first_ID == 0) {
    rows.name = record.SurveyFile;
    rows.first_ID = rows.ID_of_event.begin()->second;
  }
  record.FileID = rows.first_ID;  // all readings of a file belong to its first row, whatever the event
}

/// A merged curve belongs to no scan rate, whatever was typed or is in the name of its file.
float stored_rate(const ReadingRecord& record) {
  return record.choices.ReductionType == Module_database::reduction_merged ? 0.0F : record.SampleRate;
}

void write_reading(dao::Recordset& readings, const ReadingRecord& record, std::string_view data_type) {
  readings.set_long("FileID", record.FileID);
  readings.set_long("StationID", record.StationID);
  readings.set_long("LocationID", record.LocationID);
  readings.set_text("LineNumber", record.LineNumber);
  readings.set_double("Station", record.Station);
  readings.set_long("EventNumber", record.EventNumber);
  readings.set_long("ReferenceType", record.choices.ReferenceType);
  readings.set_long("ReductionType", record.choices.ReductionType);
  readings.set_text("DataType", data_type);
  readings.set_single("DipoleLength", record.DipoleLength);
  readings.set_single("SampleRate", stored_rate(record));
  readings.set_single("ResOffset", 1.0F);
  readings.set_single("PhaseOffset", 0.0F);
  readings.set_single("MergeFrequency", -1.0F);  // none was chosen
  readings.set_bit("UseReading", true);
  readings.set_bit("UseResistivity", true);
  readings.set_bit("UsePhase", true);
  Module_database::write_curve(readings, record.curve);
}

void store_data(const ReadingRecord& record, std::string_view data_type, StoreNotes& notes) {
  dao::Recordset& readings = Module_database::open_survey().readings;
  const std::string criteria = "FileID = " + format_number(record.FileID, "0") +
                               " AND SampleRate = " + criterion_text(stored_rate(record)) +
                               " AND EventNumber = " + format_number(record.EventNumber, "0") +
                               " AND DataType = " + dao::text_literal(data_type);
  readings.find_first(criteria);
  const bool is_new = readings.no_match();
  if (is_new) {
    readings.add_new();
  } else {
    note_key(readings, notes.replaced_keys);
    readings.edit();
  }
  write_reading(readings, record, data_type);
  readings.update();
  if (record.choices.ReductionType == Module_database::reduction_raw) {
    notes.replaced_keys.erase({record.LineNumber, record.Station, record.choices.ReferenceType,
                               stored_rate(record), std::string(data_type), record.DipoleLength});
  }
  if (is_new) {
    readings.go_to_added();  // it has its counter now
  }
  Module_database::write_facts(readings.get_long("ID"), record.curve, record.axes);
  session().data_changed = true;
}

// Puts groups of `width` values into the order that `places` gives.
template <class T>
void reorder_groups(std::vector<T>& values, const std::vector<std::size_t>& places, std::size_t width) {
  std::vector<T> ordered;
  ordered.reserve(values.size());
  for (const std::size_t place : places) {
    const auto group = values.begin() + static_cast<std::ptrdiff_t>(place * width);
    ordered.insert(ordered.end(), group, group + static_cast<std::ptrdiff_t>(width));
  }
  values = std::move(ordered);
}

}  // namespace

bool sort_curve(Curve& curve) {
  if (std::is_sorted(curve.frequencies.begin(), curve.frequencies.end())) {
    return true;
  }
  std::vector<std::size_t> places(curve.count());
  std::iota(places.begin(), places.end(), std::size_t{0});
  std::stable_sort(places.begin(), places.end(),
                   [&](std::size_t a, std::size_t b) { return curve.frequencies[a] < curve.frequencies[b]; });
  reorder_groups(curve.frequencies, places, 1);
  reorder_groups(curve.data, places, field_count);
  reorder_groups(curve.mask, places, mask_count);
  if (!curve.errors.empty()) {
    reorder_groups(curve.errors, places, error_count);
  }
  return false;
}

std::int64_t values_of_file(std::int32_t file_id) {
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      "SELECT * FROM ReadingsDataTable WHERE FileID = " + format_number(file_id, "0"));
  std::int64_t values = 0;
  for (; !rows.eof(); rows.move_next()) {
    try {
      values += values_of_reading(rows);
    } catch (const std::exception&) {
      continue;  // the bytes of a damaged row are no curve
    }
  }
  return values;
}

const FileRows* rows_of_earlier_import(ReadingRecord& record) {
  if (!Module_database::open_survey().database.is_open()) {
    return nullptr;  // a scan needs no survey
  }
  if (!record.run.earlier_files) {
    record.run.earlier_files = std::make_shared<EarlierFiles>();
  }
  return record.run.earlier_files->find(record.SurveyFile, record.path_tails, record.DateCollected);
}

int store_header_block(ReadingRecord& record, StoreNotes& notes) {
  return store_with_notes(notes, [&] {
    if (record.SurveyFile.find('\'') != std::string::npos) {
      throw std::runtime_error("The name of the file has an apostrophe: rename the file to import it.");
    }
    store_header(record, notes);
  });
}

int store_data_block(ReadingRecord& record, std::string_view data_type, StoreNotes& notes) {
  const int order_result = sort_curve(record.curve) ? 0 : -1;
  if (store_with_notes(notes, [&] { store_data(record, trimmed(data_type), notes); }) != 0) {
    return -1;
  }
  // A failure here has its own message and doesn't make the reading a failed one. The elements of a section
  // share their frequencies.
  if (notes.listed_frequencies != record.curve.frequencies &&
      Module_database::add_reading_frequencies(record.choices.ReferenceType, record.SampleRate,
                                               record.curve.frequencies) == 0) {
    notes.listed_frequencies = record.curve.frequencies;
  }
  return order_result;
}

}  // namespace Module_data_file
