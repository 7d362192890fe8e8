#include "platform/dao/database.h"

#include <memory>
#include <utility>

#include "platform/dao/connection.h"
#include "platform/dao/dynaset.h"
#include "platform/dao/sidecar_files.h"
#include "platform/dao/snapshot.h"
#include "platform/dao/statement_translator.h"

namespace dao {

namespace {

Connection& open(const std::shared_ptr<Connection>& connection) {
  if (!connection) {
    throw Error("the database is closed");
  }
  (void)connection->handle();
  return *connection;
}

// Readers go on beside a writer, and a commit doesn't wait for the disk; a killed process leaves a sound
// file.
void work_with_log(Connection& connection) {
  connection.run("PRAGMA journal_mode = WAL");
  connection.run("PRAGMA synchronous = NORMAL");
  // The first read with the log takes the lock by which others see that the file is in use.
  (void)connection.run_for_integer("SELECT count(*) FROM sqlite_schema");
}

}  // namespace

Database::Database() = default;
Database::Database(Database&&) noexcept = default;
Database& Database::operator=(Database&&) noexcept = default;
Database::~Database() = default;

Database Database::create(const std::string& path, std::string_view /*locale*/) {
  make_new_file(path);
  Database database;
  database.connection_ = std::make_shared<Connection>(path, Access::read_write);
  // Writes the first page, so that the file is a database from the beginning. There is nothing to lose yet,
  // so it needn't wait for the disk.
  database.connection_->run("PRAGMA synchronous = OFF");
  database.connection_->run("PRAGMA user_version = 1");
  work_with_log(*database.connection_);
  return database;
}

Database Database::open(const std::string& path, Access access) {
  Database database;
  database.connection_ = std::make_shared<Connection>(path, access);
  Connection& connection = *database.connection_;
  if (connection.run_for_integer("PRAGMA page_count") == 0) {
    throw Error("file is not a database");  // an empty file
  }
  if (access == Access::read_write) {
    if (sqlite3_db_readonly(connection.handle(), "main") != 0) {
      throw Error("attempt to write a readonly database");
    }
    work_with_log(connection);
  }
  return database;
}

bool Database::is_open() const { return connection_ && connection_->is_open(); }

void Database::close() {
  if (connection_) {
    connection_->close();
    connection_.reset();
  }
}

void Database::execute(std::string_view statement) {
  Connection& connection = dao::open(connection_);
  const ActionStatement action = translate_action(statement, connection.table_lookup());
  if (action.changes_schema) {
    connection.forget_tables();
  }
  connection.run(action.fragment.sql, action.fragment.parameters);
}

std::vector<std::string> Database::table_names() const {
  Statement statement(dao::open(connection_),
                      "SELECT name FROM sqlite_schema WHERE type = 'table' AND name NOT LIKE 'sqlite_%' "
                      "ORDER BY rowid");
  std::vector<std::string> names;
  while (statement.step()) {
    names.push_back(statement.text(0));
  }
  return names;
}

std::vector<Column> Database::columns(std::string_view table) const {
  return dao::open(connection_).table(table)->columns;
}

Recordset Database::open_recordset(std::string_view statement) {
  SelectStatement select = translate_select(statement, dao::open(connection_).table_lookup());
  return Recordset(select.is_dynaset ? make_dynaset(connection_, std::move(select))
                                     : make_snapshot(connection_, std::move(select)));
}

Transaction::Transaction(Database& database) : connection_(database.connection_) {
  dao::open(connection_).run("BEGIN IMMEDIATE");
}

Transaction::~Transaction() {
  if (connection_ && connection_->is_open()) {
    // The result doesn't matter: a transaction that the engine has ended by itself is rolled back already.
    connection_->roll_back();
  }
}

void Transaction::commit() {
  dao::open(connection_).run("COMMIT");
  connection_.reset();
}

void Transaction::roll_back() {
  const std::shared_ptr<Connection> connection = std::exchange(connection_, nullptr);
  if (dao::open(connection).roll_back() != SQLITE_OK) {
    connection->fail();
  }
}

}  // namespace dao
