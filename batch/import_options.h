// import_options.h: what the command line of an import says.
#pragma once
#include <array>
#include <string>

#include "import/proposals/import_request.h"

namespace Batch {

struct ImportOptions {
  std::string survey;
  Module_data_file::ImportRequest request;
  std::array<std::string, 3> columns;  // "START,WIDTH" of each decode row
  std::string line_direction = "EN";
  std::string report;
  std::string turn_ey;  // as typed; empty if it wasn't
  bool by_sectid = false;
  bool by_digits = false;  // of SECTID
  bool by_distance = false;
  bool dry_run = false;
  bool json = false;
  bool scan = false;
};

}  // namespace Batch
