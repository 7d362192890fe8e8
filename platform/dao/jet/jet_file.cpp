#include "platform/dao/jet/jet_file.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <set>
#include <system_error>
#include <variant>
#include <vector>

#include "platform/dao/database.h"
#include "platform/dao/error.h"
#include "platform/dao/jet/jet_reader.h"
#include "platform/dao/jet/library_silence.h"
#include "platform/dao/recordset.h"
#include "platform/dao/table_definition.h"

namespace dao {

namespace {

std::string type_words(const Column& column) {
  const std::string word(word_of(column.type));
  return column.type == ColumnType::text ? word + "(" + std::to_string(column.size) + ")" : word;
}

std::string in_brackets(const std::string& name) { return "[" + name + "]"; }

void create_table(Database& database, const JetTable& table) {
  std::string columns;
  for (const Column& column : table.columns()) {
    columns += (columns.empty() ? "" : ",") + in_brackets(column.name) + " " + type_words(column);
  }
  database.execute("CREATE TABLE " + in_brackets(table.name()) + " (" + columns + ")");
}

// Jet's index names are unique within a table only, ours within the file.
std::string free_index_name(const JetTable& table, std::set<std::string>& taken) {
  std::string name = table.primary_index().name;
  while (!taken.insert(name).second) {
    name.insert(0, table.name() + " ");
  }
  return name;
}

void create_primary_index(Database& database, const JetTable& table, std::set<std::string>& index_names) {
  std::string columns;
  for (const std::string& column : table.primary_index().columns) {
    columns += (columns.empty() ? "" : ",") + in_brackets(column);
  }
  if (!columns.empty()) {
    database.execute("CREATE UNIQUE INDEX " + in_brackets(free_index_name(table, index_names)) + " ON " +
                     in_brackets(table.name()) + "(" + columns + ") WITH PRIMARY");
  }
}

// Stores a value in the row being added; a null is what the column starts with.
struct ValueSetter {
  Recordset& rows;
  const Column& column;

  void operator()(std::monostate) const {}
  void operator()(bool value) const { rows.set_bit(column.name, value); }
  void operator()(std::int32_t value) const { rows.set_long(column.name, value); }
  void operator()(float value) const { rows.set_single(column.name, value); }
  void operator()(double value) const {
    if (column.type == ColumnType::date_time) {
      rows.set_date(column.name, value);
    } else {
      rows.set_double(column.name, value);
    }
  }
  void operator()(const std::string& value) const { rows.set_text(column.name, value); }
  void operator()(const Bytes& value) const { rows.set_binary(column.name, value); }
};

void copy_rows(Database& database, JetTable& table) {
  Recordset rows = database.open_recordset("SELECT * FROM " + in_brackets(table.name()));
  std::vector<JetValue> values;
  while (table.read_row(values)) {
    rows.add_new();
    for (std::size_t i = 0; i < values.size(); ++i) {
      std::visit(ValueSetter{rows, table.columns()[i]}, values[i]);
    }
    rows.update();
  }
}

void copy_tables(const JetFile& file, const std::string& destination) {
  Database database = Database::create(destination, ";LANGID=0x0409;CP=1252;COUNTRY=0");
  Transaction transaction(database);
  std::set<std::string> index_names;
  for (std::size_t i = 0; i < file.table_names().size(); ++i) {
    JetTable table = file.open_table(i);
    create_table(database, table);
    create_primary_index(database, table, index_names);
    copy_rows(database, table);
  }
  transaction.commit();
}

}  // namespace

void convert_jet_database(const std::string& source, const std::string& destination) {
  const LibrarySilence silence;
  const JetFile file(source);
  std::error_code ignored;
  if (std::filesystem::exists(destination, ignored)) {
    throw Error("The file '" + destination + "' exists already.");
  }
  try {
    copy_tables(file, destination);
  } catch (...) {
    std::filesystem::remove(destination, ignored);
    throw;
  }
}

}  // namespace dao
