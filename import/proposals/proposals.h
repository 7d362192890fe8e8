// proposals.h: the choices of an import that fit its files, and why.
#pragma once
#include <span>
#include <string>
#include <vector>

#include "import/import_choices.h"
#include "import/proposals/plan_maker.h"
#include "import/proposals/scanned_file.h"

namespace Module_data_file {

/// What a proposal is about; the window puts its reason beside the control.
enum class ProposedChoice {
  reference,
  reduction,
  line,
  event,
  rate,
  turn_ey,
  from_impedance,
  projection,
  stations
};

struct Proposal {
  ProposedChoice choice = ProposedChoice::reference;
  std::string value;  // "Remote", "100E", "distance along the line"
  std::string why;    // "SECTID has letters: its last digits"
};

struct Proposals {
  ImportChoices choices;
  std::vector<Proposal> reasons;  // in the order of ProposedChoice; none for what the files leave open

  [[nodiscard]] const Proposal* find(ProposedChoice choice) const;
};

/// "Reference", "Line".
std::string_view proposed_title(ProposedChoice choice);

/// Choices for an import of these files into what `maker` knows of the survey. Also for no files: then only
/// what is always proposed.
/// @param direction of the lines, which says the letter of those without one
Proposals propose(std::span<const ScannedFile> files, PlanMaker& maker,
                  LineDirection direction = LineDirection::local_east);

/// Proposes stations again for choices whose line or others have changed: only stations_by, start_station and
/// station_step of the choices change. @return the reason
Proposal propose_stations(std::span<const ScannedFile> files, ImportChoices& choices, PlanMaker& maker);

/// Who has chosen the rule of stations: one that was proposed follows the other choices.
enum class ChosenStations { by_proposal, by_hand };

/// Proposes again what depends on a choice that has changed: the line that isn't typed or of file names takes
/// its letter from the direction, and stations by proposal are those of the line. The reasons tell it.
void follow_choices(std::span<const ScannedFile> files, PlanMaker& maker, ChosenStations stations,
                    ImportChoices& choices, Proposals& proposals);

}  // namespace Module_data_file
