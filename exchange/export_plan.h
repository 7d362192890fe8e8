// export_plan.h: which files an export would write, for the user to see beforehand.
#pragma once
#include <cstddef>
#include <string>
#include <vector>

#include "exchange/export_choices.h"

namespace Module_exchange {

/// One file, or one station that gives none.
struct ExportRow {
  std::string file;                  // name in the folder; empty if nothing is written
  std::size_t choice_index = 0;      // of its line in the choices; of a file of all lines 0
  std::string line;                  // empty if the file has several
  std::vector<double> stations;      // that it holds; one in files of a station
  std::string site;                  // name of the site; empty if it has none or there are several
  int frequencies = 0;               // at most, of its curves
  std::string components;            // "Z, tipper", "ExHy"
  std::string place;                 // "20.4561 S, 139.1234 E"; empty without one, or with several
  std::vector<std::string> remarks;  // sentences without their points; of a row without a file why
};

struct ExportPlan {
  std::vector<ExportRow> rows;  // in the order of lines and stations
  std::string fault;            // why nothing can be written at all, a sentence; empty if something can
  bool stopped = false;         // by the user: rows are missing

  [[nodiscard]] int file_count() const;
};

/// Looks at what the choices would write, with progress; the user can stop it. Merged curves that are missing
/// are computed. Needs an open survey.
/// @return 0, also with a fault; -1 after a message
[[nodiscard]] int make_export_plan(const ExportChoices& choices, ExportPlan& plan);

}  // namespace Module_exchange
