// export_files.h: writes curves, tensors and places of a survey into files that other packages read.
#pragma once
#include <functional>
#include <string>
#include <vector>

#include "exchange/export_choices.h"

namespace Module_exchange {

struct ExportResult {
  std::vector<std::string> files;    // paths written
  std::vector<std::string> remarks;  // what the user has to know of stations: left out, without a place
  bool stopped = false;              // by the user, between stations: what was written by then stays
  bool declined = false;             // the user didn't want files to be replaced, and nothing is written
};

/// "24 files written to /surveys/out", and after a stop that it isn't all. Remarks aren't in it.
std::string export_summary(const ExportChoices& choices, const ExportResult& result);

/// Writes all files of the choices. Asks once before files are replaced; never takes one that the program
/// has open. Each file is put into place whole. Needs an open survey. A fault of the choices is a message.
/// @param progress  may be empty; is called between stations with the share done, 0 to 1; false stops
/// @return 0, or -1 after a message; files written by then stay and are in the result
[[nodiscard]] int export_files(const ExportChoices& choices, const std::function<bool(double)>& progress,
                               ExportResult& result);

}  // namespace Module_exchange
