// column.h: a column of a table as it is declared.
#pragma once
#include <string>

namespace dao {

enum class ColumnType {
  counter,
  long_integer,
  single_float,
  double_float,
  text,
  bit,
  long_binary,
  date_time
};

struct Column {
  std::string name;
  ColumnType type = ColumnType::long_integer;
  int size = 0;  // characters of a TEXT(n) column
};

}  // namespace dao
