// survey_database.h: the open survey file and its eight long-lived recordsets.
//
// One survey is open at a time; its path is session().database_file. The recordsets are shared: every search
// moves their current row, so no caller relies on a position across a call.
#pragma once
#include <string>

#include "platform/dao/database.h"
#include "platform/files/input_files.h"

namespace Module_database {

struct OpenSurvey {
  dao::Database database;
  dao::Recordset survey_header;
  dao::Recordset stations;  // ordered by the line's number, line, station
  dao::Recordset locations;
  dao::Recordset mask_definitions;
  dao::Recordset files;
  dao::Recordset readings;
  dao::Recordset frequency_lists;
  dao::Recordset projections;
  safe_files::InputFiles files_in_use;  // the survey's own: no output may take their place
};

/// The open survey; its members are closed when none is open.
OpenSurvey& open_survey();

/// Creates a survey file with its eight empty tables at session().database_file and closes it again.
/// @return 0, or -1: after a message if the file exists and a statement failed, without one if it could not
/// be created
[[nodiscard]] int create_database();

/// Opens the survey at session().database_file: recovers, compacts it with the earlier state kept in a ".bak"
/// beside it, checks its tables, brings an older file up to date and opens the recordsets. A genuine Jet file
/// is converted on the way and kept for good beside it; the user is told where. A survey that another process
/// has open, or is opening, is refused.
/// @return 0, or -1 after a message; then nothing is open and the survey is at its path as before
[[nodiscard]] int open_database();

/// Closes recordsets and file, if open, and clears session().database_open.
/// @return 0, or -1 after a message
[[nodiscard]] int close_database();

/// Opens and closes the recordsets of the open file. Opening throws dao::Error.
void open_recordsets();
void close_recordsets();

/// The name under which opening keeps the earlier state: the path up to the first ".mdb" in any case, and
/// ".bak".
std::string backup_path(const std::string& path);

/// Closes whatever is open without a message: after a failed opening, and between tests.
void reset_module();

}  // namespace Module_database
