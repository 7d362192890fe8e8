// import_options.h: what the command line of an import says.
#pragma once
#include <array>
#include <string>
#include <vector>

#include "import/import_choices.h"

namespace Batch {

struct ImportOptions {
  std::string survey;
  std::vector<std::string> paths;
  Module_data_file::ImportChoices choices;
  std::array<std::string, 3> columns;  // "START,WIDTH" of each decode row
  std::string line_direction = "EN";
  std::string extension;  // empty if it wasn't given
  std::string report;
  std::string turn_ey;  // as typed; empty if it wasn't
  bool by_sectid = false;
  bool by_digits = false;  // of SECTID
  bool by_distance = false;
  bool proposals = false;  // for all that isn't given
  bool dry_run = false;
  bool json = false;
  bool scan = false;
};

}  // namespace Batch
