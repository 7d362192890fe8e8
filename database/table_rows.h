// table_rows.h: a table of a survey file as texts, row by row, for looking at it.
//
// It has a handle of its own that can't write. A row is read when it is asked for; opening reads no more than
// the keys, so that a table of any size is there at once.
#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/dao/database.h"

namespace Module_database {

struct ViewedTable {
  std::string_view caption;  // as the menu has it
  std::string_view table;
};

inline constexpr std::array<ViewedTable, 3> viewed_tables{{{"Survey Header", "SurveyHeader"},
                                                           {"File Headers", "FileTable"},
                                                           {"Data Readings", "ReadingsDataTable"}}};

class TableRows {
 public:
  /// Throws dao::Error if the file or the table can't be opened.
  TableRows(const std::string& path, std::string_view table);

  [[nodiscard]] const std::vector<dao::Column>& columns() const { return columns_; }
  [[nodiscard]] std::int32_t row_count() const { return row_count_; }

  /// The texts of a row, by its place in the order of ID, from 0. A null is empty, a date is "21-Oct-2019",
  /// bytes are their number ("4800 bytes"). Throws dao::Error if the row can't be read.
  [[nodiscard]] std::vector<std::string> row(std::int32_t index);

  /// How many rows have been read so far.
  [[nodiscard]] std::size_t rows_read() const { return rows_read_; }

 private:
  [[nodiscard]] std::string text_of(const dao::Column& column) const;

  dao::Database database_;
  dao::Recordset rows_;
  std::vector<dao::Column> columns_;
  std::int32_t row_count_ = 0;
  std::size_t rows_read_ = 0;
};

}  // namespace Module_database
