// survey_summary.h: what a survey holds, at a glance. Needs an open survey; throws dao::Error.
#pragma once
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "database/sites.h"

namespace Module_database {

struct LineSummary {
  std::string line;
  std::vector<double> stations;
  std::vector<std::string> names;  // of their sites, likewise; empty if there is none
};

struct SurveySummary {
  std::vector<std::pair<std::string, std::int32_t>> tables;  // name, rows
  std::vector<LineSummary> lines;
  std::vector<Site> sites;
  std::vector<std::int32_t> reference_types;  // of readings; each once, ascending, as what follows
  std::vector<std::string> data_types;
  std::vector<double> dipoles;     // m
  std::vector<double> scan_rates;  // Hz; a merged curve has none
};

SurveySummary read_survey_summary();

}  // namespace Module_database
