// export_row.h: a row of the plan of an export.
#pragma once
#include <cstddef>
#include <string>
#include <vector>

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

}  // namespace Module_exchange
