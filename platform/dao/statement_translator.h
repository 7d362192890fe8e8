// statement_translator.h: statements of the dialect turned into SQL of the file's engine.
//
// Literals become bound parameters, so that statements that differ in literals only share a prepared
// statement and no literal can change what a statement does. The schema holds no functions or collations of
// our own, so that any browser can open the file.
#pragma once
#include <string>
#include <string_view>
#include <vector>

#include "platform/dao/sql_fragment.h"
#include "platform/dao/table_definition.h"

namespace dao {

struct SelectStatement {
  std::string table;
  bool is_dynaset = false;           // its rows are rows of the table
  std::vector<std::string> columns;  // of a dynaset; empty for all
  Fragment condition;                // of a dynaset; empty for every row
  std::string order;                 // of a dynaset; empty for the table's own order
  Fragment whole;                    // of a snapshot: the statement itself
};

/// Throws Error for a statement that the dialect doesn't know, and for an unknown table or column; so do the
/// others.
SelectStatement translate_select(std::string_view statement, const TableLookup& tables);

/// A search criterion on the rows of a table.
Fragment translate_criteria(std::string_view criteria, const TableDefinition& table);

struct ActionStatement {
  Fragment fragment;
  bool changes_schema = false;
};

/// CREATE TABLE, CREATE INDEX, DROP, INSERT, UPDATE or DELETE.
ActionStatement translate_action(std::string_view statement, const TableLookup& tables);

}  // namespace dao
