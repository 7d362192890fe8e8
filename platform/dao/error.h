// error.h: what the database engine reports.
#pragma once
#include <stdexcept>

namespace dao {

/// The engine's description, ready to stand behind a fixed text ("... opening the database: database is
/// locked").
class Error : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace dao
