// site_names.h: what the sites of a data file are called.
//
// A site has a line of the file for its name, and programs that read it may take the first word of it.
#pragma once
#include <string>
#include <vector>

namespace Module_occam {

struct InversionSite {
  double station = 0.0;
  std::string name;  // as its field file has it; empty if it has none
};

/// A name for each site, no two alike in whatever case: that of its field file with '_' for blanks, and where
/// several sites have it with the station's number behind, "ET001_1250"; "station_" and the number for a
/// site without a name, or with one that has no room in tables and at the section's edge.
std::vector<std::string> names_in_data_file(const std::vector<InversionSite>& sites);

}  // namespace Module_occam
