// error.h: what the database engine reports.
#pragma once
#include <stdexcept>

namespace dao {

/// The engine's description, to follow a fixed text ("... opening the database: database is
/// locked").
class Error : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Another process has the file open, or is opening it.
class LockedError : public Error {
 public:
  LockedError() : Error("database is locked") {}
};

/// There is no room left on the disk.
class FullError : public Error {
 public:
  using Error::Error;
};

}  // namespace dao
