// table_definition.h: a table's columns as declared, and the values that they accept.
#pragma once
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/dao/column.h"
#include "platform/dao/value.h"

namespace dao {

struct TableDefinition {
  std::string name;
  std::vector<Column> columns;

  /// The column of that name in any case of letters, or none.
  [[nodiscard]] const Column* find(std::string_view column) const;
};

/// Returns a table's definition; throws dao::Error for an unknown table.
using TableLookup = std::function<const TableDefinition&(std::string_view)>;

/// The column type that a word of a declaration names ("LONG", "TEXT", ...); none for an unknown word.
std::optional<ColumnType> column_type_of(std::string_view word);

/// The word for a column type in the dialect, upper case.
std::string_view word_of(ColumnType type);

// Values as their column stores them; dao::Error names the column if they don't fit.
Value stored_text(const Column& column, std::string_view text);
Value stored_long(const Column& column, std::int64_t value);
Value stored_single(const Column& column, float value);
Value stored_double(const Column& column, double value);

}  // namespace dao
