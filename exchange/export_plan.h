// export_plan.h: which files an export would write, for the user to see beforehand.
#pragma once
#include <string>
#include <vector>

#include "exchange/export_choices.h"

namespace Module_exchange {

/// One file, or one station that gives none.
struct ExportRow {
  std::string file;  // name in the folder; empty if nothing is written
  std::string line;
  std::vector<double> stations;      // that it holds; one in files of a station
  std::string site;                  // name of the site; empty if it has none or there are several
  int frequencies = 0;               // at most, of its curves
  std::string components;            // "Z, tipper", "ExHy"
  std::string place;                 // "20.4561 S, 139.1234 E"; empty without one
  std::vector<std::string> remarks;  // sentences; of a row without a file why
};

struct ExportPlan {
  std::vector<ExportRow> rows;  // in the order of lines and stations
  std::string fault;            // why nothing can be written at all, a sentence; empty if something can

  [[nodiscard]] int file_count() const;
};

/// Looks at what the choices would write; the user can stop it. Needs an open survey.
/// @return 0, or -1 after a message
[[nodiscard]] int make_export_plan(const ExportChoices& choices, ExportPlan& plan);

}  // namespace Module_exchange
