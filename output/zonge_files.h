// zonge_files.h: the names of the three files of a Zonge AVG set, and what the user is told about them.
#pragma once
#include <string>

#include "database/reading.h"

namespace Module_output {

struct ZongePaths {
  std::string avg;
  std::string mde;
  std::string stn;
};

/// The files that a path stands for. An ending .avg, .mde or .stn (in any case of letters) gives way to those
/// of the set; any other one belongs to the name: "line.v2" is line.v2.avg.
ZongePaths zonge_paths(const std::string& path);

/// The file name offered for a selection: "200E_0_ExHy.avg". Characters of the line that would lead to
/// another folder become "_".
std::string zonge_file_name(const Module_database::LineSelection& selection);

/// True if none of the files is there, or the user agrees to replace those that are, which the question
/// names. An input file among them is refused with a message.
bool may_write_zonge(const ZongePaths& files);

/// "120 rows written to /surveys/200E_0_ExHy.avg, with 200E_0_ExHy.mde and 200E_0_ExHy.stn"
std::string zonge_summary(int row_count, const ZongePaths& files);

}  // namespace Module_output
