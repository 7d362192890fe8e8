// survey_database.h: the open survey file and its ten long-lived recordsets.
//
// One survey is open at a time; its path is session().database_file. The recordsets are shared: every search
// moves their current row, so no caller relies on a position across a call.
#pragma once
#include <cstdint>
#include <memory>
#include <string>

#include "core/trap_errors.h"
#include "platform/dao/database.h"
#include "platform/files/files_in_use.h"
#include "platform/files/private_folder.h"

namespace Module_database {

/// The rows that the last removal has taken out of a survey are on the shelf of its database, until the next
/// removal or the survey's end.
struct TakenOut {
  std::unique_ptr<PrivateFolder> folder;  // of the shelf's file; null: there is no shelf yet
  bool can_come_back = false;
  std::int64_t changes = 0;  // of the database, when they had gone: nothing was edited while it has no others
};

struct OpenSurvey {
  // Of a survey whose file or folder can't be written: the copy that is worked on. Goes after the database.
  std::unique_ptr<PrivateFolder> private_folder;
  std::string private_copy;
  TakenOut taken_out;
  dao::Database database;
  dao::Recordset survey_header;
  dao::Recordset stations;  // ordered by the line's number, line, station
  dao::Recordset locations;
  dao::Recordset mask_definitions;
  dao::Recordset files;
  dao::Recordset readings;
  dao::Recordset frequency_lists;
  dao::Recordset projections;
  dao::Recordset sites;
  dao::Recordset reading_facts;
  // Whether that table has a row, or has had one since the opening: most surveys have none, and pay nothing.
  bool has_facts = false;
  safe_files::FilesInUse files_in_use;  // the survey's own: no output may take their place
  // The changes that settle_idle_survey has met last, and those that are in the file.
  std::int64_t changes_seen = 0;
  std::int64_t changes_settled = 0;
};

/// The open survey; its members are closed when none is open.
OpenSurvey& open_survey();

enum class OpenFor : std::uint8_t { editing, reading };

/// Creates a survey file with its ten empty tables at session().database_file and closes it again.
/// @return 0, or -1: after a message if the file exists and a statement failed, without one if it could not
/// be created
[[nodiscard]] int create_database();

/// Opens the survey at session().database_file: recovers, compacts it, checks its tables, brings an older
/// file up to date and opens the recordsets. The earlier state becomes a ".bak" beside it; an opening that
/// fails or is stopped leaves the earlier ".bak". A genuine Jet file is converted on the way and kept for
/// good beside it; the user is told where. Triggers and views are taken out, and the user is told which. A
/// survey that another process has open, or is opening, is refused with the name of that process, and so is
/// one that another program writes meanwhile. One that was closed compact and that nothing has written since
/// is not compacted again. Of a file with several names, this one gets a file of its own, and the user is
/// told. The user sees the progress and can stop it; the survey is then as before.
///
/// Where the file or its folder can't be written, or for reading, all this is done to a private copy, and the
/// survey is read-only; nothing is left beside it.
/// @return 0, or -1 after a message; then nothing is open and the survey is at its path as before
[[nodiscard]] int open_database(OpenFor purpose = OpenFor::editing);

/// Closes recordsets and file, if open, and clears session().database_open.
/// @return 0, or -1 after a message
[[nodiscard]] int close_database();

/// Whether a private copy stands for a survey that can't be written.
bool survey_is_read_only();

/// What would change a survey that is read-only.
class ReadOnlySurvey : public dao::Error, public CompleteMessage {
 public:
  ReadOnlySurvey();
};

/// Throws ReadOnlySurvey if the open survey is read-only. Edits, imports and recalculation begin with this.
void require_writable();

/// The file that the open survey is worked on in: its own or the private copy.
std::string working_file();

/// Opens and closes the recordsets of the open file. Opening throws dao::Error.
void open_recordsets();
void close_recordsets();

/// The name under which opening keeps the earlier state: the path up to the first ".mdb" in any case, and
/// ".bak".
std::string backup_path(const std::string& path);

/// Brings all that is stored into the survey's file, so that a copy of this file alone holds it. Does nothing
/// without a survey.
void settle_survey();

/// The same if something was stored, but nothing since the last call: for a call every few seconds.
void settle_idle_survey();

/// Copies the open survey as it is now to `path`, also where its own file has been removed. What is at `path`
/// is replaced when the copy is complete. Throws dao::Error or std::runtime_error, and then `path` is as
/// before.
void copy_survey_to(const std::string& path);

/// Keeps the open survey, if there is one, while another one is opened; without let_go it is back at the end.
class SurveySetAside {
 public:
  SurveySetAside();
  SurveySetAside(const SurveySetAside&) = delete;
  SurveySetAside& operator=(const SurveySetAside&) = delete;
  ~SurveySetAside();

  /// Closes the survey that was kept.
  void let_go();

 private:
  OpenSurvey survey_;
  std::string file_;
  bool was_open_;
  bool data_changed_;
  bool comes_back_ = true;
};

/// Closes whatever is open without a message: after a failed opening, and between tests.
void reset_module();

}  // namespace Module_database
