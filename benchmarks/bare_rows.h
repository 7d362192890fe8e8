// bare_rows.h: the curves of stored readings, read and written with bare SQLite: the bound of whatever works
// on a survey.
#pragma once
#include <cstdint>
#include <stdexcept>
#include <string>

#include <sqlite3.h>

class BareRows {
 public:
  /// @param path  of a survey's copy
  explicit BareRows(const std::string& path) {
    require(sqlite3_open(path.c_str(), &database_) == SQLITE_OK);
    execute("PRAGMA journal_mode=WAL");
    execute("PRAGMA synchronous=NORMAL");
    select_ = prepare("SELECT FreqBinary,DataBinary,MaskBinary FROM ReadingsDataTable WHERE ID=?1");
    update_ = prepare("UPDATE ReadingsDataTable SET FreqBinary=?2,DataBinary=?3,MaskBinary=?4 WHERE ID=?1");
  }
  BareRows(const BareRows&) = delete;
  BareRows& operator=(const BareRows&) = delete;
  ~BareRows() {
    sqlite3_finalize(select_);
    sqlite3_finalize(update_);
    sqlite3_close(database_);
  }

  void execute(const char* text) const {
    require(sqlite3_exec(database_, text, nullptr, nullptr, nullptr) == SQLITE_OK);
  }
  void read(std::int64_t ID) {
    sqlite3_bind_int64(select_, 1, ID);
    require(sqlite3_step(select_) == SQLITE_ROW);
    for (int column = 0; column < 3; ++column) {
      const auto* const bytes = static_cast<const char*>(sqlite3_column_blob(select_, column));
      columns_[static_cast<std::size_t>(column)].assign(
          bytes, static_cast<std::size_t>(sqlite3_column_bytes(select_, column)));
    }
    sqlite3_reset(select_);
  }
  /// Writes what was read last.
  void write(std::int64_t ID) {
    sqlite3_bind_int64(update_, 1, ID);
    for (int column = 0; column < 3; ++column) {
      const std::string& bytes = columns_[static_cast<std::size_t>(column)];
      sqlite3_bind_blob(update_, column + 2, bytes.data(), static_cast<int>(bytes.size()), SQLITE_STATIC);
    }
    require(sqlite3_step(update_) == SQLITE_DONE);
    sqlite3_reset(update_);
  }

 private:
  static void require(bool done) {
    if (!done) {
      throw std::runtime_error("a row can't be read or written");
    }
  }
  sqlite3_stmt* prepare(const char* text) const {
    sqlite3_stmt* statement = nullptr;
    require(sqlite3_prepare_v2(database_, text, -1, &statement, nullptr) == SQLITE_OK);
    return statement;
  }

  sqlite3* database_ = nullptr;
  sqlite3_stmt* select_ = nullptr;
  sqlite3_stmt* update_ = nullptr;
  std::string columns_[3];
};
