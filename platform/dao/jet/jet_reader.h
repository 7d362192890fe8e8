// jet_reader.h: reading genuine Jet 3 and Jet 4 files, one table after the other.
//
// The contents of a file aren't trusted: pages, rows and values are looked up only within their bounds, and
// what doesn't fit is a dao::Error that names the place. Jet has no checksums, so a changed byte inside a
// value of the right length goes unnoticed here. The file is only read, and no lock file is created.
#pragma once
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include <glib.h>  // before mdbtools.h, which would include it with C linkage
#include <mdbtools.h>

#include "platform/dao/column.h"
#include "platform/dao/value.h"

namespace dao {

/// One value of a row; monostate is a null.
using JetValue = std::variant<std::monostate, bool, std::int32_t, float, double, std::string, Bytes>;

struct JetIndex {
  std::string name;
  std::vector<std::string> columns;
};

struct CloseJetHandle {
  void operator()(MdbHandle* handle) const { mdb_close(handle); }
};
using JetHandle = std::unique_ptr<MdbHandle, CloseJetHandle>;

struct FreeJetTable {
  void operator()(MdbTableDef* table) const { mdb_free_tabledef(table); }
};
using JetTableHandle = std::unique_ptr<MdbTableDef, FreeJetTable>;

/// A table being read from its first row to its last. Rows come in the order of the file's pages, which is
/// that of the counter but for rows that have moved.
class JetTable {
 public:
  /// @param definition_page  page number of the table's definition
  JetTable(MdbHandle* file, std::size_t page_count, const std::string& name, std::uint32_t definition_page);

  [[nodiscard]] const std::string& name() const { return name_; }

  /// Columns as this engine can store them: BYTE and INT become LONG, currency and decimals DOUBLE, a memo
  /// the longest TEXT, anything else that is unknown here LONGBINARY.
  [[nodiscard]] const std::vector<Column>& columns() const { return columns_; }

  /// The primary index, without columns when there is none.
  [[nodiscard]] const JetIndex& primary_index() const { return primary_index_; }

  /// Reads the next row, a value for each column; false at the end. A row or value that is damaged is an
  /// error, and so is an end that comes before the number of rows in the table's definition.
  bool read_row(std::vector<JetValue>& row);

 private:
  struct Extent {
    std::size_t first = 0;
    std::size_t end = 0;  // one past the last byte
  };

  void read_columns();
  void read_primary_index();
  [[nodiscard]] std::string column_numbered(int column_number) const;
  [[nodiscard]] MdbColumn& column_at(std::size_t column_index) const;
  [[nodiscard]] std::span<const std::byte> page() const;
  [[nodiscard]] bool find_row(std::span<const std::byte> page_bytes, std::size_t row_number,
                              Extent& extent) const;
  [[nodiscard]] bool is_null(const MdbColumn& column, const Extent& row) const;
  [[nodiscard]] JetValue read_value(std::size_t column_index, const Extent& row) const;
  [[nodiscard]] std::string read_text(std::span<const std::byte> encoded) const;
  [[nodiscard]] Bytes read_long_value(std::span<const std::byte> stored, const std::string& place) const;
  [[nodiscard]] std::span<const std::byte> long_value_piece(std::uint32_t page_and_row) const;
  [[nodiscard]] std::string place_of(std::size_t column_index) const;
  [[noreturn]] void fail_definition() const;

  MdbHandle* file_;
  std::size_t page_count_;
  std::string name_;
  std::unique_ptr<MdbCatalogEntry> entry_;  // the table handle points to it
  JetTableHandle table_;
  std::vector<Column> columns_;
  JetIndex primary_index_;
  std::size_t rows_read_ = 0;
  std::string row_label_;  // for messages: the counter's value where there is one
};

class JetFile {
 public:
  /// Opens the file and reads its list of tables. Throws dao::Error if it can't be opened, isn't a Jet file
  /// of version 3 or 4, is cut, or its list of tables is damaged.
  explicit JetFile(const std::string& path);

  /// Names of the users' tables, without the engine's own, in the order in which the file lists them.
  [[nodiscard]] const std::vector<std::string>& table_names() const { return table_names_; }

  /// Starts reading a table, by its place in table_names(). Only one table of a file may be read at a time.
  [[nodiscard]] JetTable open_table(std::size_t table_index) const;

 private:
  void read_table_list();

  std::size_t page_count_ = 0;
  JetHandle handle_;
  std::vector<std::string> table_names_;
  std::vector<std::uint32_t> definition_pages_;
};

}  // namespace dao
