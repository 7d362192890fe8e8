#include "app/imported_line.h"

#include <algorithm>

#include "core/session_state.h"
#include "core/text_fields.h"

namespace Module_Brenlox {

using Module_data_file::ScannedStation;

namespace {

bool same_line(const ScannedStation& station, const std::string& line) {
  return upper_case(station.LineNumber) == upper_case(line);
}

bool is_on_selected_line(const ScannedStation& station) {
  const SessionState& state = session();
  return same_line(station, state.current_line) && station.ReferenceType == state.current_reference_type &&
         station.DipoleLength == state.current_dipole;
}

}  // namespace

void select_imported(const Module_data_file::ImportReport& report) {
  if (report.stations.empty() || std::ranges::any_of(report.stations, is_on_selected_line)) {
    return;
  }
  const ScannedStation* first = &report.stations.front();
  for (const ScannedStation& station : report.stations) {
    if (same_line(station, first->LineNumber) && station.Station < first->Station) {
      first = &station;
    }
  }
  session().current_line = first->LineNumber;
  session().current_station = first->Station;
  session().current_reference_type = first->ReferenceType;
  session().current_dipole = first->DipoleLength;
}

}  // namespace Module_Brenlox
