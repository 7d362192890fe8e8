// finished_run.h: the files of a finished two-dimensional inversion as plain arrays, read without regard to
// damage.
#pragma once
#include <string>
#include <vector>

#include "numerics/section/section.h"

struct FinishedRun {
  struct Row {
    std::size_t site_number = 0;
    std::size_t frequency_number = 0;
    int type = 0;
    double modelled = 0.0;
  };
  numerics::section::Section section;
  std::vector<int> parameter_index;  // of each triangle, as in the section
  std::vector<double> sites;         // m
  std::vector<double> frequencies;   // Hz
  std::vector<Row> rows;             // of the response file
};

/// Reads the run in a folder: mesh, model, iteration 12, data file and its response.
FinishedRun read_finished_run(const std::string& folder);
