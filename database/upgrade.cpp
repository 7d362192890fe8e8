#include "database/upgrade.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <set>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "database/frequency_store.h"
#include "database/reading.h"
#include "database/schema.h"
#include "database/sound_rows.h"
#include "database/survey_check.h"
#include "database/survey_database.h"

namespace Module_database {

namespace {

std::vector<std::string> add_missing_tables(dao::Database& database) {
  const std::vector<std::string> names = database.table_names();
  std::vector<std::string> missing;
  for (const TableSchema& table : survey_tables()) {
    if (!has_name(names, table.name)) {
      create_table(database, table);
      missing.emplace_back(table.name);
    }
  }
  return missing;
}

std::set<std::int32_t> reference_types_in(dao::Database& database, const std::string& table) {
  std::set<std::int32_t> types;
  dao::Recordset rows = database.open_recordset("SELECT DISTINCT ReferenceType FROM " + table);
  for_each_sound_row(rows, [&](const dao::Recordset& row) { types.insert(row.get_long("ReferenceType")); });
  return types;
}

/// All frequencies of a type's readings. Those of a damaged reading are left out; what is wrong with it is
/// said where it is used.
std::vector<float> frequencies_of_readings(dao::Database& database, std::int32_t reference_type) {
  std::set<float> frequencies;
  dao::Recordset rows = database.open_recordset(
      "SELECT NumFrequencies,FreqBinary FROM ReadingsDataTable WHERE ReferenceType = " +
      plain_text(reference_type));
  for (; !rows.eof(); rows.move_next()) {
    try {
      const dao::Bytes bytes = rows.get_binary("FreqBinary");
      const std::int64_t wanted = std::int64_t{4} * rows.get_long("NumFrequencies");
      if (static_cast<std::int64_t>(bytes.size()) == wanted) {
        const std::vector<float> values = singles_from(bytes);
        std::copy_if(values.begin(), values.end(), std::inserter(frequencies, frequencies.end()),
                     [](float value) { return std::isfinite(value); });
      }
    } catch (const dao::Error&) {  // NOLINT(bugprone-empty-catch)
    }
  }
  return {frequencies.begin(), frequencies.end()};
}

void add_missing_frequency_lists(dao::Database& database) {
  const std::set<std::int32_t> listed = reference_types_in(database, "ReadingsFrequencyTable");
  for (const std::int32_t type : reference_types_in(database, "ReadingsDataTable")) {
    if (listed.contains(type)) {
      continue;
    }
    const std::vector<float> frequencies = frequencies_of_readings(database, type);
    if (!frequencies.empty()) {
      join_frequency_list(type, frequencies);
    }
  }
}

/// Kinds of readings that are there; found in an index, without the readings themselves.
struct ReadingKinds {
  bool has_oldest_names = false;  // of components
  bool has_merged_with_rate = false;
};

ReadingKinds kinds_in(dao::Database& database) {
  ReadingKinds kinds;
  dao::Recordset rows =
      database.open_recordset("SELECT DISTINCT DataType,ReductionType,SampleRate FROM ReadingsDataTable");
  for_each_sound_row(rows, [&](const dao::Recordset& row) {
    const std::string text = row.get_text("DataType");
    const std::string_view type = trimmed(text);
    kinds.has_oldest_names |= equal_ignoring_case(type, "Ex") || equal_ignoring_case(type, "Ey");
    kinds.has_merged_with_rate |=
        row.get_long("ReductionType") == reduction_merged && row.get_single("SampleRate") != 0.0F;
  });
  return kinds;
}

void bring_readings_up_to_date(dao::Database& database) {
  const ReadingKinds kinds = kinds_in(database);
  if (kinds.has_oldest_names) {
    database.execute("UPDATE ReadingsDataTable SET DataType  = 'ExHy' WHERE DataType  = 'Ex'");
    database.execute("UPDATE ReadingsDataTable SET DataType  = 'EyHx' WHERE DataType  = 'Ey'");
  }
  // Merged curves from files were kept at the rate that was typed, where none looks for a merged curve.
  if (kinds.has_merged_with_rate) {
    database.execute(
        "UPDATE ReadingsDataTable SET SampleRate = 0 WHERE ReductionType = 2 AND SampleRate <> 0");
  }
}

}  // namespace

std::vector<std::string> upgrade_survey() {
  dao::Database& database = open_survey().database;
  dao::Transaction transaction(database);
  std::vector<std::string> missing = add_missing_tables(database);
  create_search_indexes(database);
  bring_readings_up_to_date(database);
  // Earlier versions delete readings and give their counters to others, without a thought for their facts.
  database.execute("DELETE FROM ReadingFactsTable WHERE ReadingID NOT IN (SELECT ID FROM ReadingsDataTable)");
  add_missing_frequency_lists(database);
  transaction.commit();
  return missing;
}

}  // namespace Module_database
