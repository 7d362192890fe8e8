// foreign_change.h: another program at a closed survey.
#pragma once
#include <string>

#include <sqlite3.h>

/// Runs statements on a file as a program does that knows nothing of surveys. @return whether all went well
inline bool change_file(const std::string& path, const std::string& statements) {
  sqlite3* handle = nullptr;
  sqlite3_open(path.c_str(), &handle);
  const bool done = sqlite3_exec(handle, statements.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
  sqlite3_close(handle);
  return done;
}
