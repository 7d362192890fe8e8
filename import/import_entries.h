// import_entries.h: what stays of an import's choices for the next one.
//
// Line, event, rate, columns and stations belong to one list of files: they are proposed for every list, and
// those of the last import are there to be asked for. A list that has files taken out or added is still that
// list. How fields were referenced and reduced and which values are computed is the habit of a crew: what the
// user has set by hand there holds until the program ends, and only what he hasn't touched is proposed again.
#pragma once
#include <optional>

#include "import/import_choices.h"

namespace Module_data_file {

struct ImportEntries {
  DecodeTable decode;
  LineDirection line_direction = LineDirection::local_east;
  StationsBy stations_by = StationsBy::count;
  std::string start_station;
  std::string station_step;
};

/// Keeps the entries of an import in the user's settings.
void keep_import_entries(const ImportChoices& choices);
/// @return none before the first import, and where the setting can't be read
std::optional<ImportEntries> last_import_entries();
/// Puts entries in the place of what is chosen.
void take_entries(const ImportEntries& entries, ImportChoices& choices);

/// What was chosen for a list of files, beside what was proposed for it.
struct ListChoices {
  ImportChoices proposed;
  ImportChoices chosen;
  bool stations_chosen = false;  // by hand
};

/// Puts what was set by hand in the place of what is proposed now.
void take_set_by_hand(const ListChoices& list, ImportChoices& choices);

/// What the user has set by hand; none: it follows the files.
struct LastingChoices {
  std::optional<std::int32_t> ReferenceType;
  std::optional<std::int32_t> ReductionType;
  std::optional<bool> convert_coordinates;
  std::optional<bool> compute_from_impedance;
  std::optional<TurnEy> turn_ey;
};

void take_lasting(const LastingChoices& lasting, ImportChoices& choices);
/// Keeps what the user has changed just now.
void note_by_hand(const ImportChoices& before, const ImportChoices& now, LastingChoices& lasting);

}  // namespace Module_data_file
