// batch_program.h: runs the built batch program as its users do and keeps what it said.
#pragma once
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/support/temporary_folder.h"

inline constexpr bool program_draws = BRENLOX_DRAWS;  // not in a build without windows

struct Outcome {
  int status = -1;
  std::string output;  // standard output
  std::string errors;  // standard error
};

/// A folder for each test, in which the program runs; relative paths in the arguments are taken from it.
class Batch_program : public ::testing::Test {
 protected:
  Outcome run(const std::vector<std::string>& arguments) const;
  nlohmann::json run_for_json(const std::vector<std::string>& arguments) const;

  /// Writes the field files of the first stations of the sample survey's first line into "field".
  void write_field_files(int stations) const;
  /// Makes "survey.mdb" and imports "field" into it; fails the test if that fails.
  void import_field_files() const;
  /// The options that decode the names of the sample survey.
  static std::vector<std::string> import_arguments(const std::string& path);

  TemporaryFolder folder_;
};
