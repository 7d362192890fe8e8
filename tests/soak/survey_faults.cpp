#include "tests/soak/survey_faults.h"

#include <algorithm>
#include <map>
#include <memory>
#include <stdexcept>
#include <vector>

#include <sqlite3.h>

#include "core/number_text.h"
#include "core/search_sort.h"
#include "core/session_state.h"
#include "reduction/averages.h"
#include "reduction/data_sets/data_sets.h"

namespace {

using Module_database::StoredReading;
using Table = std::vector<std::vector<std::string>>;

struct CloseDatabase {
  void operator()(sqlite3* handle) const { sqlite3_close(handle); }
};

/// All rows of a statement, with a connection of its own that sees what others would.
Table rows_of(const std::string& survey, const char* statement) {
  sqlite3* handle = nullptr;
  const int opened = sqlite3_open_v2(survey.c_str(), &handle, SQLITE_OPEN_READONLY, nullptr);
  const std::unique_ptr<sqlite3, CloseDatabase> closes(handle);
  sqlite3_stmt* prepared = nullptr;
  if (opened != SQLITE_OK || sqlite3_prepare_v2(handle, statement, -1, &prepared, nullptr) != SQLITE_OK) {
    throw std::runtime_error(std::string(statement) + ": " + sqlite3_errmsg(handle));
  }
  Table rows;
  int status = SQLITE_ROW;
  while ((status = sqlite3_step(prepared)) == SQLITE_ROW) {
    std::vector<std::string>& row = rows.emplace_back();
    for (int column = 0; column < sqlite3_column_count(prepared); ++column) {
      const void* const bytes = sqlite3_column_blob(prepared, column);
      const auto size = static_cast<std::size_t>(sqlite3_column_bytes(prepared, column));
      row.emplace_back(bytes == nullptr ? "" : static_cast<const char*>(bytes), bytes == nullptr ? 0 : size);
    }
  }
  sqlite3_finalize(prepared);
  if (status != SQLITE_DONE) {
    throw std::runtime_error(std::string(statement) + ": " + sqlite3_errmsg(handle));
  }
  return rows;
}

std::string first_difference(const Table& stored, const Table& recalculated) {
  if (stored.size() != recalculated.size()) {
    return std::to_string(stored.size()) + " readings, " + std::to_string(recalculated.size()) +
           " after recalculation";
  }
  for (std::size_t row = 0; row < stored.size(); ++row) {
    for (std::size_t column = 0; column < stored[row].size(); ++column) {
      if (stored[row][column] != recalculated[row][column]) {
        return "recalculation changes column " + std::to_string(column) + " of reading " + stored[row][0];
      }
    }
  }
  return {};
}

/// What a statement finds must be nothing.
struct Rule {
  const char* fault;
  const char* statement;
};

constexpr Rule rules[] = {
    {"array lengths of reading",
     "SELECT ID FROM ReadingsDataTable WHERE NumFields IS NOT 20 "
     "OR length(FreqBinary) IS NOT 4 * NumFrequencies "
     "OR length(DataBinary) IS NOT 80 * NumFrequencies "
     "OR length(MaskBinary) IS NOT 8 * NumFrequencies"},
    {"no file of reading",
     "SELECT ID FROM ReadingsDataTable WHERE FileID > 0 AND FileID NOT IN (SELECT ID FROM FileTable)"},
    {"neither of a file nor derived is reading",
     "SELECT ID FROM ReadingsDataTable WHERE FileID IS NULL OR FileID = 0"},
    {"no station of reading",
     "SELECT r.ID FROM ReadingsDataTable AS r LEFT JOIN StationsTable AS s ON s.ID = r.StationID "
     "WHERE s.ID IS NULL OR s.Station IS NOT r.Station OR s.SurveyLine IS NOT r.LineNumber"},
    {"no location of reading",
     "SELECT ID FROM ReadingsDataTable WHERE LocationID NOT IN (SELECT ID FROM LocationLookupTable)"},
    {"twice is there derived reading",
     "SELECT max(ID) FROM ReadingsDataTable WHERE FileID < 0 GROUP BY StationID, ReductionType, "
     "ReferenceType, SampleRate, DataType, DipoleLength HAVING count(*) > 1"},
    {"twice is there station",
     "SELECT max(ID) FROM StationsTable GROUP BY SurveyLine, Station HAVING count(*) > 1"},
};

std::string broken_rule(const std::string& survey) {
  for (const Rule& rule : rules) {
    if (const Table rows = rows_of(survey, rule.statement); !rows.empty()) {
      return std::string(rule.fault) + ' ' + rows[0][0];
    }
  }
  return {};
}

/// The rows as they are stored, by ID.
class StoredRows {
 public:
  explicit StoredRows(const std::string& survey) {
    for (std::vector<std::string>& row :
         rows_of(survey,
                 "SELECT ID, UseReading <> 0, UseResistivity <> 0, UsePhase <> 0, "
                 "CASE WHEN ResOffset > 0 THEN ResOffset ELSE 1 END, FreqBinary, MaskBinary, DataBinary "
                 "FROM ReadingsDataTable")) {
      const auto id = static_cast<std::int32_t>(numeric_value(row[0]));
      rows_.emplace(id, std::move(row));
    }
  }

  /// @return how a shown reading differs from its row; empty if it doesn't
  [[nodiscard]] std::string difference(const StoredReading& shown) const {
    if (shown.ID == 0) {
      return {};
    }
    const std::vector<std::string>* const row = find(shown.ID);
    if (row == nullptr) {
      return "has no row";
    }
    if (bytes((*row)[6]) != bytes(Module_database::bytes_of(shown.curve.mask))) {
      return "has other masks";
    }
    if (bytes((*row)[5]) != bytes(Module_database::bytes_of(shown.curve.frequencies)) ||
        bytes((*row)[7]) != bytes(Module_database::bytes_of(shown.curve.data))) {
      return "has other values";
    }
    return flag_difference(*row, shown);
  }

  [[nodiscard]] std::string difference(const Module_averaged_data::ProfileColumn& shown,
                                       std::span<const float> frequency_list) const {
    const std::vector<std::string>* const row = find(shown.ID);
    if (row == nullptr) {
      return "has no row";
    }
    const auto frequencies = Module_database::singles_from(std::as_bytes(std::span((*row)[5])));
    const auto masks = Module_database::longs_from(std::as_bytes(std::span((*row)[6])));
    for (std::size_t i = 0; i < frequencies.size(); ++i) {
      const int place = basSearchSort::search_sorted(frequency_list, frequencies[i]);
      if (place < 0) {
        continue;
      }
      for (std::size_t component = 0; component < Module_database::mask_count; ++component) {
        if (shown.mask.at(static_cast<std::size_t>(place)).at(component) !=
            std::min(masks.at(Module_database::mask_count * i + component), 1)) {
          return "has other masks";
        }
      }
    }
    return flag_difference(*row, shown);
  }

 private:
  static std::string_view bytes(const std::string& stored) { return stored; }
  static std::string_view bytes(std::span<const std::byte> shown) {
    return {reinterpret_cast<const char*>(shown.data()), shown.size()};
  }
  [[nodiscard]] const std::vector<std::string>* find(std::int32_t id) const {
    const auto found = rows_.find(id);
    return found == rows_.end() ? nullptr : &found->second;
  }
  template <class Shown>
  static std::string flag_difference(const std::vector<std::string>& row, const Shown& shown) {
    const bool same_flags = (row[1] == "1") == shown.UseReading && (row[2] == "1") == shown.UseResistivity &&
                            (row[3] == "1") == shown.UsePhase;
    if (!same_flags) {
      return "has other flags";
    }
    return static_cast<float>(numeric_value(row[4])) == shown.ResOffset ? "" : "has another static factor";
  }

  std::map<std::int32_t, std::vector<std::string>> rows_;
};

/// Whether the data sets behind the graphs hold what is stored.
std::string fault_of_display(const std::string& survey) {
  using namespace Module_averaged_data;
  const StoredRows rows(survey);
  const auto fault = [](const char* graph, std::int32_t id, const std::string& difference) {
    return std::string(graph) + ": reading " + std::to_string(id) + ' ' + difference;
  };
  for (const RepeatSlot& slot : data_sets().repeats.slots) {
    if (const std::string found = rows.difference(slot.reading); !found.empty()) {
      return fault("repeats", slot.reading.ID, found);
    }
  }
  for (const StationSlot& slot : data_sets().station.slots) {
    if (const std::string found = rows.difference(slot.reading); !found.empty()) {
      return fault("station", slot.reading.ID, found);
    }
  }
  for (const ProfileColumn& column : data_sets().profile.columns) {
    if (const std::string found = rows.difference(column, data_sets().profile.frequencies); !found.empty()) {
      return fault("profile", column.ID, found);
    }
  }
  return {};
}

std::string fault_of_reduction(const std::string& survey) {
  const char* const readings = "SELECT * FROM ReadingsDataTable ORDER BY ID";
  const Table stored = rows_of(survey, readings);
  if (Module_averaged_data::recalculate_merged() != 0) {
    return "recalculation fails";
  }
  return first_difference(stored, rows_of(survey, readings));
}

}  // namespace

std::string fault_of_open_survey() {
  const std::string survey = session().database_file;
  const Table integrity = rows_of(survey, "PRAGMA integrity_check");
  if (integrity != Table{{"ok"}}) {
    return "integrity check: " + integrity.at(0).at(0);
  }
  for (const auto& check : {broken_rule, fault_of_display, fault_of_reduction}) {
    if (std::string fault = check(survey); !fault.empty()) {
      return fault;
    }
  }
  return {};
}
