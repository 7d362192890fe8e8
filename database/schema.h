// schema.h: the tables of a survey file and the statements that create them.
#pragma once
#include <span>
#include <string_view>

#include "platform/dao/database.h"

namespace Module_database {

struct TableSchema {
  std::string_view name;
  bool required;  // one of the names by which a file is known to be a survey
  std::string_view create_table;
  std::string_view create_index;  // empty: the table has no primary index
};

/// The ten tables in the order in which they are created.
std::span<const TableSchema> survey_tables();

inline constexpr std::string_view projection_table_name =
    "Projection Defintion Table";  // spelled so in every file

/// Issues a table's statements.
void create_table(dao::Database& database, const TableSchema& table);

/// Creates the indexes of the searches that run for every reading, where they are missing.
void create_search_indexes(dao::Database& database);

}  // namespace Module_database
