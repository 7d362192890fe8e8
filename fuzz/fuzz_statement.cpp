// Any text as a statement of the database's dialect, which may hold what a user has typed: it is refused, or
// its literals become parameters of SQL that the engine can prepare.
#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>

#include <sqlite3.h>

#include "platform/dao/error.h"
#include "platform/dao/statement_translator.h"

namespace {

const dao::TableDefinition& table() {
  static const dao::TableDefinition stations{"StationsTable",
                                             {{"StationID", dao::ColumnType::counter},
                                              {"Line", dao::ColumnType::text, 50},
                                              {"Station", dao::ColumnType::double_float},
                                              {"Selected", dao::ColumnType::bit},
                                              {"Collected", dao::ColumnType::date_time},
                                              {"Curve", dao::ColumnType::long_binary}}};
  return stations;
}

const dao::TableDefinition& find_table(std::string_view name) {
  if (name != table().name) throw dao::Error("no table");
  return table();
}

sqlite3* engine() {
  static sqlite3* const opened = [] {
    sqlite3* database = nullptr;
    sqlite3_open(":memory:", &database);
    sqlite3_exec(database,
                 "CREATE TABLE StationsTable (StationID INTEGER PRIMARY KEY, Line TEXT, Station REAL, "
                 "Selected INTEGER, Collected REAL, Curve BLOB)",
                 nullptr, nullptr, nullptr);
    return database;
  }();
  return opened;
}

/// One statement, with a parameter for each value.
void require_sound(const std::string& sql, std::size_t parameters) {
  sqlite3_stmt* statement = nullptr;
  const char* rest = nullptr;
  const int status = sqlite3_prepare_v2(engine(), sql.c_str(), -1, &statement, &rest);
  const int wanted = sqlite3_bind_parameter_count(statement);
  sqlite3_finalize(statement);
  if (status == SQLITE_OK && (*rest != '\0' || wanted != static_cast<int>(parameters))) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  try {
    const dao::SelectStatement select = dao::translate_select(text, find_table);
    if (!select.is_dynaset) require_sound(select.whole.sql, select.whole.parameters.size());
  } catch (const dao::Error&) {
  }
  try {
    const dao::Fragment criteria = dao::translate_criteria(text, table());
    require_sound("SELECT 1 FROM StationsTable WHERE " + criteria.sql, criteria.parameters.size());
  } catch (const dao::Error&) {
  }
  try {
    const dao::ActionStatement action = dao::translate_action(text, find_table);
    require_sound(action.fragment.sql, action.fragment.parameters.size());
  } catch (const dao::Error&) {
  }
  return 0;
}
