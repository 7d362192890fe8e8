#include "platform/dao/compact.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <future>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <system_error>

#include <sys/stat.h>

#include "platform/dao/connection.h"
#include "platform/dao/error.h"
#include "platform/dao/jet/jet_file.h"
#include "platform/dao/sidecar_files.h"
#include "platform/files/safe_files.h"

namespace dao {

namespace {

constexpr std::string_view engine_mark("SQLite format 3\0", 16);
constexpr std::string_view jet_mark("\0\1\0\0Standard Jet DB\0", 20);

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

std::string first_bytes(const std::string& path, std::size_t count) {
  struct stat state {};
  if (::stat(path.c_str(), &state) != 0 || !S_ISREG(state.st_mode)) {
    return {};  // reading a pipe could wait for ever
  }
  std::string bytes(count, '\0');
  const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path.c_str(), "rb"));
  bytes.resize(file ? std::fread(bytes.data(), 1, count, file.get()) : 0);
  return bytes;
}

void check_whole(Connection& connection) {
  Statement statement(connection, "PRAGMA quick_check(1)");
  const std::string finding = statement.step() ? statement.text(0) : "";
  if (finding != "ok") {
    throw Error("database disk image is malformed: " + finding);
  }
}

double size_of(const std::string& path) {
  std::error_code missing;
  const std::uintmax_t size = std::filesystem::file_size(path, missing);
  return missing ? 0.0 : static_cast<double>(size);
}

// The engine checks a file in one go and would not ask meanwhile whether to go on: it works in a thread of
// its own, where it can be interrupted at any time.
void work_watched(Connection& connection, const std::function<void()>& engine_work,
                  const std::function<void()>& look) {
  constexpr std::chrono::milliseconds between_looks(40);
  std::future<void> work = std::async(std::launch::async, engine_work);
  try {
    while (look && work.wait_for(between_looks) != std::future_status::ready) {
      look();
    }
  } catch (...) {
    sqlite3_interrupt(connection.handle());
    work.wait();
    throw;
  }
  work.get();
}

void vacuum_into(const std::string& source, const std::string& destination, const CompactionWatch& watch) {
  Connection connection(source, Access::read_only);
  std::atomic<bool> checked = false;
  const auto compact = [&] {
    check_whole(connection);
    checked = true;
    Statement statement(connection, "VACUUM INTO ?");
    const Value path{destination};
    statement.bind(path);
    while (statement.step()) {
    }
  };
  const double size = std::max(1.0, size_of(source));
  const auto look = [&] {
    checked ? watch("compacting", std::min(1.0, size_of(destination) / size)) : watch("checking", 0.0);
  };
  work_watched(connection, compact, watch ? std::function<void()>(look) : nullptr);
}

void flush(const std::string& path) {
  try {
    safe_files::flush_file(path);
  } catch (const safe_files::DiskFull& full) {
    throw FullError(full.what());
  } catch (const std::runtime_error& failure) {
    throw Error(failure.what());
  }
}

}  // namespace

FileKind file_kind(const std::string& path) {
  const std::string bytes = first_bytes(path, jet_mark.size());
  if (bytes.starts_with(engine_mark)) {
    return FileKind::survey_engine;
  }
  return bytes.starts_with(jet_mark) ? FileKind::genuine_jet : FileKind::unknown;
}

void recover_database(const std::string& path) {
  struct stat state {};
  if (::stat(path.c_str(), &state) != 0) {
    throw Error("unable to open database file");
  }
  const FileKind kind = file_kind(path);
  if (kind == FileKind::genuine_jet) {
    return;
  }
  if (kind == FileKind::unknown) {
    throw Error("file is not a database");
  }
  Connection connection(path, Access::read_write);
  if (sqlite3_db_readonly(connection.handle(), "main") != 0) {
    throw Error("attempt to write a readonly database");
  }
  // Leaving the log takes the whole file for oneself, and so does the transaction where there is no log: both
  // fail while another process works with the file.
  connection.run("PRAGMA journal_mode = DELETE");
  connection.run("BEGIN EXCLUSIVE");
  connection.run("COMMIT");
}

void with_no_other_process(const std::string& path, const std::function<void()>& work) {
  Connection connection(path, Access::read_write);
  connection.run("BEGIN EXCLUSIVE");  // rolled back at the end, as nothing was written
  work();
}

bool expects_log(const std::string& path) {
  constexpr std::size_t place_of_version = 18;  // of the format in the file's head, for writing
  constexpr char with_log = 2;
  const std::string bytes = first_bytes(path, place_of_version + 1);
  return bytes.starts_with(engine_mark) && bytes.size() > place_of_version &&
         bytes[place_of_version] == with_log;
}

void clear_place(const std::string& path) {
  if (file_kind(path) != FileKind::survey_engine) {
    remove_logs(path);
    return;
  }
  try {
    recover_database(path);
  } catch (const LockedError&) {
    throw;
  } catch (const Error&) {
    std::error_code unreadable;
    if (std::filesystem::exists(path + "-wal", unreadable) ||
        std::filesystem::exists(path + "-journal", unreadable)) {
      throw;  // a damaged file that stands alone needs no more
    }
  }
}

void check_database(const std::string& path, const CompactionWatch& watch) {
  Connection connection(path, Access::read_only);
  const auto look = [&] { watch("checking", 0.0); };
  work_watched(
      connection, [&] { check_whole(connection); }, watch ? std::function<void()>(look) : nullptr);
}

void compact_database(const std::string& source, const std::string& destination,
                      const CompactionWatch& watch) {
  const FileKind kind = file_kind(source);
  if (kind == FileKind::unknown) {
    throw Error("file is not a database");
  }
  if (kind == FileKind::genuine_jet) {
    convert_jet_database(source, destination);
  } else {
    make_new_file(destination);
  }
  try {
    if (kind == FileKind::survey_engine) {
      vacuum_into(source, destination, watch);
    }
    flush(destination);
  } catch (...) {
    remove_database_file(destination);
    throw;
  }
}

}  // namespace dao
