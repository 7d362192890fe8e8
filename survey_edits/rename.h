// rename.h: another name for a line, another number for a station, in all tables that have them.
//
// A station's place in local coordinates is its line and number, so that it follows. Its place on the map
// follows only where it was the survey grid's copy of the local one; where a file has given it, it stays.
#pragma once
#include <string>
#include <string_view>

namespace Module_survey_edits {

/// What a line or station would be called; `fault` is a sentence that says why it can't, empty if it can.
struct NewLine {
  std::string line;  // in the normal form
  std::string fault;
};
struct NewStation {
  double station = 0.0;
  std::string fault;
};

/// Looks at a new name as it was typed. A number without a letter goes in the direction of the present line.
/// Needs an open survey; throws dao::Error.
NewLine new_line_name(std::string_view line, std::string_view typed);
NewStation new_station_number(std::string_view line, double station, std::string_view typed);

/// Gives a line another name, or a station another number, in one transaction, and forgets the edits that
/// could be undone, and a removal that could. The session's selection follows. The new name is one that the
/// procedures above have no fault with. @return 0, or -1 after a message; the survey is then as before
[[nodiscard]] int rename_line(std::string_view line, const std::string& to);
[[nodiscard]] int rename_station(std::string_view line, double station, double to);

}  // namespace Module_survey_edits
