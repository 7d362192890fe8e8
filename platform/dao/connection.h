// connection.h: the SQLite handle of an open database, with its prepared statements and table definitions.
#pragma once
#include <cstdint>
#include <list>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include <sqlite3.h>

#include "platform/dao/access.h"
#include "platform/dao/statement_translator.h"
#include "platform/dao/table_definition.h"
#include "platform/dao/value.h"

namespace dao {

struct FinalizeStatement {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using StatementHandle = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;

class Connection;

/// A prepared statement borrowed from its connection; destroying it resets it and gives it back. A statement
/// lives within one procedure, so that no read stays open between the calls of this library.
class Statement {
 public:
  Statement(Connection& connection, std::string_view sql);
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;
  ~Statement();

  /// Binds the values to the next free parameters. They must outlive the statement.
  void bind(std::span<const Value> values);
  void bind(const Value& value) { bind(std::span(&value, 1)); }
  void bind_integer(std::int64_t value);

  /// @return true if there is a row, false when done
  bool step();

  [[nodiscard]] int column_count() const { return sqlite3_column_count(handle_.get()); }
  [[nodiscard]] std::string column_name(int index) const { return sqlite3_column_name(handle_.get(), index); }
  [[nodiscard]] std::int64_t integer(int index) const { return sqlite3_column_int64(handle_.get(), index); }
  [[nodiscard]] std::string text(int index) const;
  [[nodiscard]] Bytes bytes(int index) const;
  [[nodiscard]] bool is_null(int index) const;
  [[nodiscard]] bool is_bytes_or_null(int index) const;
  [[nodiscard]] Value value(int index) const;

 private:
  Connection& connection_;
  std::string sql_;
  StatementHandle handle_;
  int bound_ = 0;
};

/// An open file of the engine with its prepared statements and table definitions.
class Connection {
 public:
  /// Opens a file that exists and reads its schema; a file that isn't a database fails here.
  Connection(const std::string& path, Access access);
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  ~Connection();

  [[nodiscard]] bool is_open() const { return handle_ != nullptr; }
  void close();

  /// The handle; dao::Error once closed.
  [[nodiscard]] sqlite3* handle() const;

  /// Runs one statement to its end. Throws Error.
  void run(std::string_view sql, std::span<const Value> parameters = {});
  /// The first value of the statement's first row, 0 without a row. Throws Error.
  std::int64_t run_for_integer(std::string_view sql);

  /// A table's definition, kept until forget_tables. Throws Error for an unknown one.
  std::shared_ptr<const TableDefinition> table(std::string_view name);
  [[nodiscard]] TableLookup table_lookup();
  void forget_tables() { tables_.clear(); }

  /// Attaches an empty file as "shelf"; its tables are then found by table() and in statements.
  void attach_shelf(const std::string& path);

  /// Grows with each row that this connection writes and with each transaction that it rolls back.
  [[nodiscard]] std::int64_t changes() const { return sqlite3_total_changes64(handle()) + rollbacks_; }

  /// @return an SQLite result code
  int roll_back() noexcept;

  /// Throws Error with the engine's last message.
  [[noreturn]] void fail() const;

  /// The file at the path is still the one that was opened.
  [[nodiscard]] bool stands_at_path() const;

 private:
  friend class Statement;
  StatementHandle borrow(const std::string& sql);
  void give_back(std::string sql, StatementHandle statement);

  static int refuse_commit_elsewhere(void* connection);

  struct Close {
    void operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }
  };
  using Cached = std::pair<std::string, StatementHandle>;

  std::unique_ptr<sqlite3, Close> handle_;
  std::string path_;  // absolute
  std::uint64_t device_ = 0;
  std::uint64_t inode_ = 0;
  Access access_;
  bool has_shelf_ = false;
  std::int64_t rollbacks_ = 0;
  std::list<Cached> cache_;  // the last used first
  std::unordered_map<std::string_view, std::list<Cached>::iterator> cache_index_;
  std::unordered_map<std::string, std::shared_ptr<const TableDefinition>> tables_;  // by name, upper case
};

}  // namespace dao
