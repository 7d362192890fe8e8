#include "platform/dao/database.h"

#include <exception>
#include <memory>
#include <utility>

#include "platform/dao/connection.h"
#include "platform/dao/dynaset.h"
#include "platform/dao/sidecar_files.h"
#include "platform/dao/snapshot.h"
#include "platform/dao/sql_fragment.h"
#include "platform/dao/statement_translator.h"
#include "platform/files/safe_files.h"

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

void Database::copy_to(const std::string& path) const {
  struct Finish {
    void operator()(sqlite3_backup* backup) const { sqlite3_backup_finish(backup); }
  };
  const Connection& source = dao::open(connection_);
  make_new_file(path);
  try {
    Connection target(path, Access::read_write);
    {
      const std::unique_ptr<sqlite3_backup, Finish> backup(
          sqlite3_backup_init(target.handle(), "main", source.handle(), "main"));
      if (!backup) {
        target.fail();
      }
      if (const int status = sqlite3_backup_step(backup.get(), -1); status != SQLITE_DONE) {
        throw Error(sqlite3_errstr(status));
      }
    }
    target.close();  // without a log
    safe_files::flush_file(path);
  } catch (const std::exception& failure) {
    remove_database_file(path);
    throw Error(failure.what());
  }
}

bool Database::is_compact() const {
  Connection& connection = dao::open(connection_);
  return connection.stands_at_path() && connection.run_for_integer("PRAGMA freelist_count") == 0;
}

bool Database::settle_log() {
  const Connection& connection = dao::open(connection_);
  return sqlite3_get_autocommit(connection.handle()) != 0 && connection.stands_at_path() &&
         sqlite3_wal_checkpoint_v2(connection.handle(), "main", SQLITE_CHECKPOINT_TRUNCATE, nullptr,
                                   nullptr) == SQLITE_OK;
}

std::int64_t Database::change_count() const { return dao::open(connection_).changes(); }

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
                      "SELECT name FROM sqlite_schema WHERE type = 'table' AND rootpage > 0 "
                      "AND name NOT LIKE 'sqlite_%' ORDER BY rowid");
  std::vector<std::string> names;
  while (statement.step()) {
    names.push_back(statement.text(0));
  }
  return names;
}

std::vector<SchemaObject> Database::other_objects() const {
  Statement statement(dao::open(connection_),
                      "SELECT type, name, tbl_name FROM sqlite_schema WHERE type IN ('view', 'trigger') "
                      "OR (type = 'table' AND rootpage = 0) ORDER BY rowid");
  using Kind = SchemaObject::Kind;
  std::vector<SchemaObject> objects;
  while (statement.step()) {
    const std::string type = statement.text(0);
    const Kind kind = type == "view" ? Kind::view : type == "trigger" ? Kind::trigger : Kind::virtual_table;
    objects.push_back({kind, statement.text(1), statement.text(2)});
  }
  return objects;
}

bool Database::has_conflict_rules(const std::string& table) const {
  Statement statement(dao::open(connection_),
                      "SELECT 1 FROM sqlite_schema WHERE type = 'table' AND name = ? COLLATE NOCASE "
                      "AND sql LIKE '%CONFLICT%'");
  const std::array<Value, 1> name{table};  // lives until the step
  statement.bind(name);
  return statement.step();
}

void Database::drop_triggers_and_views() {
  Connection& connection = dao::open(connection_);
  Transaction transaction(*this);
  const std::vector<SchemaObject> objects = other_objects();
  using Kind = SchemaObject::Kind;
  for (const Kind kind : {Kind::trigger, Kind::view}) {  // a view takes its triggers with it
    for (const SchemaObject& object : objects) {
      if (object.kind == kind) {
        connection.run((kind == Kind::view ? "DROP VIEW " : "DROP TRIGGER ") + quoted_name(object.name));
      }
    }
  }
  transaction.commit();
}

std::vector<Column> Database::columns(std::string_view table) const {
  return dao::open(connection_).table(table)->columns;
}

void Database::add_shelf(const std::string& path) {
  Connection& connection = dao::open(connection_);
  make_new_file(path);
  connection.attach_shelf(path);
}

void Database::shelve(const std::string& name, std::string_view like_table) {
  Connection& connection = dao::open(connection_);
  const std::shared_ptr<const TableDefinition> like = connection.table(like_table);
  Statement own(connection, "SELECT 1 FROM sqlite_schema WHERE name = ? COLLATE NOCASE");
  const Value name_value{name};
  own.bind(name_value);
  if (own.step()) {
    throw Error("the database has a table " + name + " of its own");
  }
  std::string columns;
  for (const Column& column : like->columns) {
    columns += (columns.empty() ? "" : ", ") + quoted_name(column.name) + ' ';
    columns += column.type == ColumnType::counter ? "INTEGER PRIMARY KEY" : word_of(column.type);
  }
  const std::string table = "shelf." + quoted_name(name);
  connection.run("DROP TABLE IF EXISTS " + table);
  connection.run("CREATE TABLE " + table + " (" + columns + ")");
  for (const Column& column : like->columns) {  // rows are looked for by those that they belong to
    if (column.type == ColumnType::long_integer && column.name.ends_with("ID")) {
      connection.run("CREATE INDEX shelf." + quoted_name(name + " by " + column.name) + " ON " +
                     quoted_name(name) + " (" + quoted_name(column.name) + ")");
    }
  }
  connection.forget_tables();
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
