// line_marks.h: the stations of the lines chosen as marks on a map.
#pragma once
#include <string>
#include <vector>

#include "exchange/export_choices.h"
#include "formats/places/site_marks.h"

namespace Module_exchange {

struct PlacedLines {
  std::vector<formats::places::LineMarks> lines;  // with a station that has a place, each once
  std::vector<std::string> remarks;               // stations left out, datums; sentences without their points
};

/// The stations with readings that have a place. Needs an open survey; throws dao::Error.
PlacedLines placed_lines(const ExportChoices& choices);

/// The template of a link with what its names stand for, in characters of addresses.
std::string plot_link(const std::string& link, const std::string& line, const std::string& station,
                      const std::string& name);

}  // namespace Module_exchange
