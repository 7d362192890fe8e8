// station_proposals.h: which rule gives each site of an import a station of its own.
#pragma once
#include <span>
#include <string>

#include "import/proposals/plan_maker.h"
#include "import/proposals/scanned_file.h"

namespace Module_data_file {

struct StationProposal {
  std::string value;  // "distance along the line"
  std::string why;
};

/// Sets stations_by, start station and spacing of choices whose lines are set. Throws dao::Error.
StationProposal propose_station_rule(std::span<const ScannedFile> files, PlanMaker& maker,
                                     ImportChoices& choices);

}  // namespace Module_data_file
