#include "database/survey_check.h"

#include <algorithm>
#include <optional>

#include "core/text_fields.h"
#include "database/schema.h"
#include "platform/dao/table_definition.h"

namespace Module_database {

namespace {

using dao::SchemaObject;

constexpr int required_tables = 6;  // of the seven names

[[noreturn]] void fail(const std::string& what) { throw dao::Error("the survey is damaged: " + what); }

struct ColumnWord {
  std::string name;
  std::string type;  // as the statement has it, without a length
};

/// The columns of a table from the statement that creates it.
std::vector<ColumnWord> columns_of(const TableSchema& table) {
  const std::string_view statement = table.create_table;
  const std::size_t first = statement.find('(') + 1;
  std::string_view list = statement.substr(first, statement.rfind(')') - first);
  std::vector<ColumnWord> columns;
  while (!list.empty()) {
    const std::size_t comma = list.find(',');
    const FirstToken words = first_token(list.substr(0, comma));
    columns.push_back({words.token, words.rest.substr(0, words.rest.find('('))});
    list = comma == std::string_view::npos ? std::string_view() : list.substr(comma + 1);
  }
  return columns;
}

void check_columns(dao::Database& survey, const TableSchema& table) {
  const std::vector<dao::Column> found = survey.columns(table.name);
  for (const ColumnWord& wanted : columns_of(table)) {
    const auto column = std::ranges::find_if(
        found, [&](const dao::Column& each) { return equal_ignoring_case(each.name, wanted.name); });
    const std::optional<dao::ColumnType> type = dao::column_type_of(trimmed(wanted.type));
    if (column != found.end() && type && column->type != *type) {
      fail("the column " + column->name + " of " + std::string(table.name) + " is of the type " +
           std::string(dao::word_of(column->type)) + " in place of " + std::string(dao::word_of(*type)));
    }
  }
}

void check_rows_have_numbers(dao::Database& survey, const std::string& name) {
  try {
    (void)survey.open_recordset("SELECT * FROM [" + name + "]");
  } catch (const dao::Error&) {
    fail(name + " is a table without row numbers");
  }
}

}  // namespace

bool has_name(const std::vector<std::string>& names, std::string_view wanted) {
  return std::any_of(names.begin(), names.end(),
                     [&](const std::string& name) { return equal_ignoring_case(trimmed(name), wanted); });
}

bool has_required_form(const dao::Database& database) {
  std::vector<std::string> names = database.table_names();
  for (const SchemaObject& object : database.other_objects()) {
    if (object.kind != SchemaObject::Kind::trigger) {
      names.push_back(object.name);
    }
  }
  return std::ranges::count_if(survey_tables(), [&](const TableSchema& table) {
           return table.required && has_name(names, table.name);
         }) >= required_tables;
}

void check_tables(dao::Database& survey) {
  const auto tables = survey_tables();
  for (const SchemaObject& object : survey.other_objects()) {
    const bool in_place_of_a_table =
        object.kind != SchemaObject::Kind::trigger && std::ranges::any_of(tables, [&](const auto& table) {
          return equal_ignoring_case(trimmed(object.name), table.name);
        });
    if (in_place_of_a_table) {
      fail(object.name + (object.kind == SchemaObject::Kind::view
                              ? " is a view, not a table"
                              : " is a table made by a program, not a stored one"));
    }
  }
  const std::vector<std::string> names = survey.table_names();
  for (const TableSchema& table : tables) {
    const auto name = std::ranges::find_if(
        names, [&](const std::string& each) { return equal_ignoring_case(each, table.name); });
    if (name != names.end()) {
      check_columns(survey, table);
      if (survey.has_conflict_rules(*name)) {
        fail(*name + " is a table whose rows replace one another");
      }
      check_rows_have_numbers(survey, *name);
    }
  }
}

}  // namespace Module_database
