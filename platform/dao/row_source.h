// row_source.h: where a recordset gets its rows; what a dynaset and a snapshot have in common.
#pragma once
#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/text_fields.h"
#include "platform/dao/column.h"
#include "platform/dao/connection.h"
#include "platform/dao/error.h"
#include "platform/dao/table_definition.h"
#include "platform/dao/value.h"

namespace dao {

/// A column of a recordset. A computed one has no declared type; each value has its own.
struct Field {
  std::string name;
  const Column* column = nullptr;
};

class RowSource {
 public:
  RowSource(std::shared_ptr<Connection> connection, std::shared_ptr<const TableDefinition> table)
      : connection_(std::move(connection)), table_(std::move(table)) {}
  RowSource(const RowSource&) = delete;
  RowSource& operator=(const RowSource&) = delete;
  virtual ~RowSource() = default;

  [[nodiscard]] bool is_open() const { return connection_->is_open(); }
  [[nodiscard]] bool no_match() const { return no_match_; }

  virtual void find_first(std::string_view criteria) = 0;
  virtual bool eof() = 0;
  virtual void move_first() = 0;
  virtual void move_next() = 0;
  virtual void move_last() = 0;
  virtual std::int32_t record_count() = 0;
  virtual void set_absolute_position(std::size_t position) = 0;
  virtual void requery() = 0;
  virtual void add_new() = 0;
  virtual void edit() = 0;
  virtual void update() = 0;
  virtual void go_to_added() = 0;
  virtual void delete_row() = 0;

  /// The column of this name, in any case. Throws Error if there is none, or once the database is closed.
  const Field& field(std::string_view name) {
    (void)connection();
    const auto found = std::ranges::find_if(
        fields_, [&](const Field& each) { return equal_ignoring_case(each.name, name); });
    if (found == fields_.end()) {
      throw Error("item not found in this collection: field '" + std::string(name) + "'");
    }
    return *found;
  }
  /// The current row as messages name it.
  virtual std::string row_name() = 0;
  virtual Value value(const Field& field) = 0;
  virtual Bytes bytes(const Field& field) = 0;
  virtual std::int64_t size(const Field& field) = 0;
  virtual void set(const Field& field, Value value) = 0;

 protected:
  Connection& connection() {
    (void)connection_->handle();  // an error once the database is closed
    return *connection_;
  }

  std::shared_ptr<Connection> connection_;
  std::shared_ptr<const TableDefinition> table_;
  std::vector<Field> fields_;
  bool no_match_ = false;
};

/// The current row holds something that no writer of its column stores.
inline Error damaged_row(RowSource& rows, const Field& field, std::string_view wanted) {
  return Error(rows.row_name() + " is damaged: its " + field.name + " is not " + std::string(wanted));
}

}  // namespace dao
