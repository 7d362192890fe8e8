#include "platform/dao/connection.h"

#include <array>
#include <utility>

#include <sys/stat.h>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "platform/dao/case_folding.h"
#include "platform/dao/error.h"

namespace dao {

namespace {

constexpr std::size_t cached_statements = 100;  // more than the wordings a survey session uses
constexpr int busy_timeout_milliseconds = 200;  // another process's commit is over by then
constexpr const char* cache_size = "PRAGMA cache_size = -32000";  // KiB: a large survey's readings index

std::string_view text_argument(sqlite3_value* value) {
  const auto* const text = reinterpret_cast<const char*>(sqlite3_value_text(value));
  return text == nullptr ? std::string_view()
                         : std::string_view(text, static_cast<std::size_t>(sqlite3_value_bytes(value)));
}

void val_function(sqlite3_context* context, int /*count*/, sqlite3_value** arguments) {
  sqlite3_result_double(context, numeric_value(text_argument(arguments[0])));
}

void fold_case_function(sqlite3_context* context, int /*count*/, sqlite3_value** arguments) {
  if (sqlite3_value_type(arguments[0]) == SQLITE_NULL) {
    sqlite3_result_null(context);
    return;
  }
  const std::string folded = folded_text(text_argument(arguments[0]));
  sqlite3_result_text64(context, folded.data(), folded.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}

void register_functions(sqlite3* handle) {
  constexpr int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC;
  sqlite3_create_function_v2(handle, "Val", 1, flags, nullptr, val_function, nullptr, nullptr, nullptr);
  sqlite3_create_function_v2(handle, "fold_case", 1, flags, nullptr, fold_case_function, nullptr, nullptr,
                             nullptr);
}

// A column declared by another program than this gets the nearest type.
Column declared_column(std::string name, const std::string& declaration, bool is_only_key) {
  const std::string upper = upper_case(declaration);
  if (upper == "INTEGER" && is_only_key) {
    return {std::move(name), ColumnType::counter, 0};
  }
  const std::size_t parenthesis = upper.find('(');
  const std::optional<ColumnType> type =
      column_type_of(trimmed(std::string_view(upper).substr(0, parenthesis)));
  if (type) {
    const bool sized = *type == ColumnType::text && parenthesis != std::string::npos;
    const int size = sized ? static_cast<int>(numeric_value(upper.substr(parenthesis + 1))) : 0;
    return {std::move(name), *type, size};
  }
  const auto has = [&](const char* part) { return upper.find(part) != std::string::npos; };
  const ColumnType nearest = has("INT")                                  ? ColumnType::long_integer
                             : has("CHAR") || has("CLOB") || has("TEXT") ? ColumnType::text
                             : upper.empty() || has("BLOB")              ? ColumnType::long_binary
                                                                         : ColumnType::double_float;
  return {std::move(name), nearest, 0};
}

}  // namespace

Statement::Statement(Connection& connection, std::string_view sql)
    : connection_(connection), sql_(sql), handle_(connection.borrow(sql_)) {}

Statement::~Statement() {
  sqlite3_reset(handle_.get());
  sqlite3_clear_bindings(handle_.get());
  connection_.give_back(std::move(sql_), std::move(handle_));
}

void Statement::bind(std::span<const Value> values) {
  for (const Value& value : values) {
    const int place = ++bound_;
    sqlite3_stmt* const statement = handle_.get();
    int status = SQLITE_OK;
    if (const auto* const integer = std::get_if<std::int64_t>(&value)) {
      status = sqlite3_bind_int64(statement, place, *integer);
    } else if (const auto* const number = std::get_if<double>(&value)) {
      status = sqlite3_bind_double(statement, place, *number);
    } else if (const auto* const text = std::get_if<std::string>(&value)) {
      status = sqlite3_bind_text64(statement, place, text->data(), text->size(), SQLITE_STATIC, SQLITE_UTF8);
    } else if (const auto* const bytes = std::get_if<Bytes>(&value)) {
      // No bytes are still bytes, not a null.
      status = bytes->empty()
                   ? sqlite3_bind_zeroblob(statement, place, 0)
                   : sqlite3_bind_blob64(statement, place, bytes->data(), bytes->size(), SQLITE_STATIC);
    }
    if (status != SQLITE_OK) {
      connection_.fail();
    }
  }
}

void Statement::bind_integer(std::int64_t value) {
  if (sqlite3_bind_int64(handle_.get(), ++bound_, value) != SQLITE_OK) {
    connection_.fail();
  }
}

bool Statement::step() {
  const int status = sqlite3_step(handle_.get());
  if (status != SQLITE_ROW && status != SQLITE_DONE) {
    connection_.fail();
  }
  return status == SQLITE_ROW;
}

std::string Statement::text(int index) const {
  const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(handle_.get(), index));
  return text == nullptr
             ? std::string()
             : std::string(text, static_cast<std::size_t>(sqlite3_column_bytes(handle_.get(), index)));
}

Bytes Statement::bytes(int index) const {
  const auto* const first = static_cast<const std::byte*>(sqlite3_column_blob(handle_.get(), index));
  return first == nullptr ? Bytes() : Bytes(first, first + sqlite3_column_bytes(handle_.get(), index));
}

bool Statement::is_bytes_or_null(int index) const {
  const int type = sqlite3_column_type(handle_.get(), index);
  return type == SQLITE_BLOB || type == SQLITE_NULL;
}

bool Statement::is_null(int index) const { return sqlite3_column_type(handle_.get(), index) == SQLITE_NULL; }

Value Statement::value(int index) const {
  switch (sqlite3_column_type(handle_.get(), index)) {
    case SQLITE_INTEGER:
      return integer(index);
    case SQLITE_FLOAT:
      return sqlite3_column_double(handle_.get(), index);
    case SQLITE_TEXT:
      return text(index);
    case SQLITE_BLOB:
      return bytes(index);
    default:
      return Null();
  }
}

Connection::Connection(const std::string& path, Access access) : access_(access) {
  struct stat file {};
  if (::stat(path.c_str(), &file) != 0 || !S_ISREG(file.st_mode)) {
    throw Error("unable to open database file");
  }
  const int flags = access == Access::read_only ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE;
  sqlite3* handle = nullptr;
  const int status = sqlite3_open_v2(path.c_str(), &handle, flags | SQLITE_OPEN_NOMUTEX, nullptr);
  handle_.reset(handle);
  if (status != SQLITE_OK) {
    throw Error(handle == nullptr ? "out of memory" : sqlite3_errmsg(handle));
  }
  path_ = sqlite3_db_filename(handle, "main");
  device_ = file.st_dev;
  inode_ = file.st_ino;
  // Without this, a survey that was moved or removed would go on accepting edits that are lost.
  sqlite3_commit_hook(handle, refuse_commit_elsewhere, this);
  sqlite3_busy_timeout(handle, busy_timeout_milliseconds);
  // A misspelled column must not count as a text.
  sqlite3_db_config(handle, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
  sqlite3_db_config(handle, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
  // A survey may come from anybody. What its schema would run at a read or a write stays without effect, and
  // its own tables can't be used to damage the file.
  for (const int what_a_schema_runs :
       {SQLITE_DBCONFIG_TRUSTED_SCHEMA, SQLITE_DBCONFIG_ENABLE_TRIGGER, SQLITE_DBCONFIG_ENABLE_VIEW}) {
    sqlite3_db_config(handle, what_a_schema_runs, 0, nullptr);
  }
  sqlite3_db_config(handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  register_functions(handle);
  run_for_integer("SELECT count(*) FROM sqlite_schema");
  run("PRAGMA foreign_keys = OFF");
  run("PRAGMA ignore_check_constraints = ON");
  run("PRAGMA temp_store = MEMORY");
  run(cache_size);
}

Connection::~Connection() { close(); }

void Connection::close() {
  if (!handle_) {
    return;
  }
  cache_index_.clear();
  cache_.clear();
  tables_.clear();
  if (access_ == Access::read_write) {
    if (sqlite3_get_autocommit(handle_.get()) == 0) {
      roll_back();
    }
    // A closed file has no log beside it, so that it can be copied alone and read from a folder that can't be
    // written to. If another process has it open, that one removes the log.
    sqlite3_busy_timeout(handle_.get(), 0);
    // A file that was moved is left complete; what is beside its earlier path isn't ours any more.
    sqlite3_exec(handle_.get(),
                 stands_at_path() ? "PRAGMA journal_mode = DELETE" : "PRAGMA wal_checkpoint(TRUNCATE)",
                 nullptr, nullptr, nullptr);
  }
  handle_.reset();
}

sqlite3* Connection::handle() const {
  if (!handle_) {
    throw Error("the database is closed");
  }
  return handle_.get();
}

void Connection::fail() const {
  sqlite3* const failed = handle();
  const int status = sqlite3_extended_errcode(failed);
  if (status == SQLITE_CONSTRAINT_COMMITHOOK) {
    throw Error("the file is no longer at its place, and nothing more is stored in it: " + path_);
  }
  if ((status & 0xff) == SQLITE_BUSY) {
    throw LockedError();
  }
  if ((status & 0xff) == SQLITE_FULL) {
    throw FullError(sqlite3_errmsg(failed));
  }
  throw Error(sqlite3_errmsg(failed));
}

bool Connection::stands_at_path() const {
  struct stat file {};
  return ::stat(path_.c_str(), &file) == 0 && file.st_dev == device_ && file.st_ino == inode_;
}

int Connection::refuse_commit_elsewhere(void* connection) {
  return static_cast<const Connection*>(connection)->stands_at_path() ? 0 : 1;
}

void Connection::run(std::string_view sql, std::span<const Value> parameters) {
  Statement statement(*this, sql);
  statement.bind(parameters);
  while (statement.step()) {
  }
}

std::int64_t Connection::run_for_integer(std::string_view sql) {
  Statement statement(*this, sql);
  return statement.step() ? statement.integer(0) : 0;
}

int Connection::roll_back() noexcept {
  ++rollbacks_;
  tables_.clear();
  return sqlite3_exec(handle_.get(), "ROLLBACK", nullptr, nullptr, nullptr);
}

StatementHandle Connection::borrow(const std::string& sql) {
  if (const auto found = cache_index_.find(sql); found != cache_index_.end()) {
    const auto cached = found->second;
    StatementHandle statement = std::move(cached->second);
    cache_index_.erase(found);
    cache_.erase(cached);
    return statement;
  }
  sqlite3_stmt* statement = nullptr;
  if (sqlite3_prepare_v3(handle(), sql.c_str(), static_cast<int>(sql.size()), SQLITE_PREPARE_PERSISTENT,
                         &statement, nullptr) != SQLITE_OK) {
    fail();
  }
  return StatementHandle(statement);
}

void Connection::give_back(std::string sql, StatementHandle statement) {
  if (cache_index_.contains(sql)) {
    return;  // the same statement was borrowed twice
  }
  cache_.emplace_front(std::move(sql), std::move(statement));
  cache_index_.emplace(cache_.front().first, cache_.begin());
  if (cache_.size() > cached_statements) {
    cache_index_.erase(cache_.back().first);
    cache_.pop_back();
  }
}

void Connection::attach_shelf(const std::string& path) {
  run("ATTACH ? AS shelf", std::array<Value, 1>{path});
  has_shelf_ = true;
  // The file is of no use after this process: what it takes to survive a crash would be waste.
  run("PRAGMA shelf.journal_mode = MEMORY");
  run("PRAGMA shelf.synchronous = OFF");
}

std::shared_ptr<const TableDefinition> Connection::table(std::string_view name) {
  const std::string key = upper_case(name);
  if (const auto found = tables_.find(key); found != tables_.end()) {
    return found->second;
  }
  auto definition = std::make_shared<TableDefinition>();
  Statement statement(
      *this,
      "SELECT s.name, c.name, c.type, c.pk, (SELECT sum(pk) FROM pragma_table_info(s.name)) FROM " +
          std::string(has_shelf_ ? "(SELECT * FROM sqlite_schema UNION ALL SELECT * FROM shelf.sqlite_schema)"
                                 : "sqlite_schema") +
          " s, pragma_table_info(s.name) c "
          "WHERE s.type = 'table' AND s.rootpage > 0 AND s.name = ? COLLATE NOCASE ORDER BY c.cid");
  const Value name_value{std::string(name)};
  statement.bind(name_value);
  while (statement.step()) {
    definition->name = statement.text(0);
    definition->columns.push_back(declared_column(statement.text(1), statement.text(2),
                                                  statement.integer(3) == 1 && statement.integer(4) == 1));
  }
  if (definition->columns.empty()) {
    throw Error("no such table: " + std::string(name));
  }
  return tables_.emplace(key, std::move(definition)).first->second;
}

TableLookup Connection::table_lookup() {
  return [this](std::string_view name) -> const TableDefinition& { return *table(name); };
}

}  // namespace dao
