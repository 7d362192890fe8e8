// database.h: the database engine as the survey's modules know it, on SQLite.
//
// Statements are written in the engine's dialect: types COUNTER, LONG, SINGLE, DOUBLE, TEXT(n), BIT,
// LONGBINARY, DATETIME; WITH PRIMARY; [names in brackets]; Val(...); Abs(...); date literals #MM/DD/YYYY#;
// text literals in apostrophes (text_literal.h); INSERT INTO one SELECT * (or columns that both have) FROM
// other. Comparisons are the engine's: text compares without regard to case and to trailing blanks, a date
// literal matches its whole day, a SINGLE column compares by the decimal that users see (0.1 finds 0.1).
// Failures throw dao::Error with the engine's description.
#pragma once
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/dao/access.h"
#include "platform/dao/column.h"
#include "platform/dao/error.h"
#include "platform/dao/recordset.h"

namespace dao {

class Connection;  // the SQLite handle with its cache of prepared statements

/// What a file holds beside its plain tables.
struct SchemaObject {
  enum class Kind { view, trigger, virtual_table };
  Kind kind = Kind::view;
  std::string name;
  std::string table;  // that a trigger acts on
};

/// An open database file. Movable; closes with its last recordset gone or on close().
class Database {
 public:
  Database();
  Database(Database&&) noexcept;
  Database& operator=(Database&&) noexcept;
  ~Database();

  /// Creates a new, empty file. Fails if the file exists or can't be created. `locale` is the engine's locale
  /// string (";LANGID=0x0409;CP=1252;COUNTRY=0"); text is kept as UTF-8 whatever it says.
  static Database create(const std::string& path, std::string_view locale);

  /// Opens an existing file of this engine. A missing, unreadable, damaged or foreign file is an error at
  /// once.
  static Database open(const std::string& path, Access access = Access::read_write);

  [[nodiscard]] bool is_open() const;

  /// Closes the file; recordsets still open are closed with it. Closing twice is harmless.
  void close();

  /// Writes all that is committed to the new file `path`, which is then complete by itself and on the disk.
  /// Works for a file that has been removed meanwhile, too. Fails if `path` exists or can't be written, and
  /// then leaves nothing there.
  void copy_to(const std::string& path) const;

  /// Brings all that is committed from the log into the file, so that the file alone holds it. Does nothing
  /// in a transaction. @return false if something is left in the log, as while another program reads
  bool settle_log();

  /// Whether a compaction would gain no room, for a file that is still at its path.
  [[nodiscard]] bool is_compact() const;

  /// Grows with each row that is written.
  [[nodiscard]] std::int64_t change_count() const;

  /// Runs one statement that returns no rows.
  void execute(std::string_view statement);

  /// Names of the plain tables, without the engine's own, in the order they were created.
  [[nodiscard]] std::vector<std::string> table_names() const;

  /// Triggers, views and tables whose rows a program makes. None of the first two has any effect here.
  [[nodiscard]] std::vector<SchemaObject> other_objects() const;

  /// Whether the definition of a plain table makes rows replace or drop one another ("ON CONFLICT").
  [[nodiscard]] bool has_conflict_rules(const std::string& table) const;

  /// Removes all triggers and views.
  void drop_triggers_and_views();

  /// The columns of a table as declared; an unknown table is an error.
  [[nodiscard]] std::vector<Column> columns(std::string_view table) const;

  /// Puts a new file at `path` beside this database, for copies of its rows that may be wanted back.
  /// Statements name tables on this shelf as they name the database's own, and transactions hold for them,
  /// too; no other call sees them. They are lost when the database is closed. Not within a transaction.
  void add_shelf(const std::string& path);

  /// Makes an empty table on the shelf, with the columns that a table of the database has, in place of an
  /// earlier one of this name. The database itself must have no table of the name.
  void shelve(const std::string& name, std::string_view like_table);

  /// Opens a recordset on a SELECT. One that names a single table, with `*` or plain columns and without
  /// DISTINCT or aggregates, is a dynaset and can be edited; any other is a snapshot.
  [[nodiscard]] Recordset open_recordset(std::string_view statement);

 private:
  friend class Transaction;
  std::shared_ptr<Connection> connection_;
};

/// Groups writes: all of them are kept by commit(), or none if the scope is left without it. Transactions
/// don't nest. Everything that a transaction wrote is seen by recordsets of the same database at once.
class Transaction {
 public:
  explicit Transaction(Database& database);
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  ~Transaction();
  void commit();
  void roll_back();

 private:
  std::shared_ptr<Connection> connection_;  // empty once finished
};

}  // namespace dao
