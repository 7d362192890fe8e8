#include "survey_edits/undo_removal.h"

#include <algorithm>
#include <vector>

#include "core/finished_work.h"
#include "core/number_text.h"
#include "core/session_state.h"
#include "core/trap_errors.h"
#include "core/undo_stack.h"
#include "database/reading_facts.h"
#include "database/survey_database.h"
#include "platform/dao/text_literal.h"
#include "survey_edits/compute_again.h"
#include "survey_edits/removal_plan.h"
#include "survey_edits/returning_rows.h"
#include "survey_edits/taken_out.h"

namespace Module_survey_edits {

namespace {

using Module_averaged_data::Outcome;
using Module_averaged_data::SkippedGroups;
using Module_averaged_data::WorkProgress;
using Module_database::open_survey;

constexpr std::string_view undo_failed = "An error occurred while undoing the removal: ";
constexpr std::size_t most_named = 3;

std::size_t count_rows(const std::string& source) {
  return static_cast<std::size_t>(
      open_survey().database.open_recordset("SELECT Count(*) AS Rows FROM " + source).get_long("Rows"));
}

/// Puts the rows of all tables on the shelf into the survey, in place of those of the same number.
void put_back_rows() {
  dao::Database& database = open_survey().database;
  for (const std::string_view table : changed_tables) {
    database.execute("DELETE FROM " + std::string(table) + " WHERE ID" + in_kept(table));
    database.execute("INSERT INTO " + std::string(table) + " SELECT * FROM " + kept(table));
  }
  requery_survey();
}

/// The derived readings of stations that the removal has cut: all that it kept of them comes back. Readings
/// without a row of their station share a number, so that the name counts as well.
void delete_computed_since() {
  dao::Recordset rows = open_survey().database.open_recordset(
      "SELECT DISTINCT StationID,LineNumber,Station FROM " + kept("ReadingsDataTable"));
  for (; !rows.eof(); rows.move_next()) {
    Module_database::delete_readings(
        with_ID(rows.get_long("StationID"), "StationID") +
        " AND FileID < 0 AND LineNumber = " + dao::text_literal(rows.get_text("LineNumber")) +
        " AND Station = " + criterion_text(rows.get_double("Station")));
  }
}

std::string told_of_files(const std::vector<std::string>& names) {
  if (names.empty()) {
    return {};
  }
  std::string text = names.size() == 1 ? "\nThis file was imported again since and stays as it is now: "
                                       : "\nThese files were imported again since and stay as they are now: ";
  for (std::size_t index = 0; index < std::min(names.size(), most_named); ++index) {
    text += (index == 0 ? "" : ", ") + names[index];
  }
  return names.size() <= most_named ? text : text + " and " + counted(names.size() - most_named, "more file");
}

Outcome put_back(SkippedGroups& skipped, std::string& told) {
  if (unchanged_since()) {
    delete_computed_since();
    told = counted(count_rows(kept("ReadingsDataTable") + " WHERE FileID > 0"), "reading") +
           " put back; the survey is as it was before.";
    put_back_rows();
    return Outcome::finished;
  }
  const std::vector<Module_database::ReadingKey> keys = keys_on_shelf();
  const std::vector<std::string> imported_again = drop_files_imported_again();
  fit_to_survey();
  exchange_derived_rows();
  const std::size_t readings = count_rows(kept("ReadingsDataTable") + " WHERE FileID > 0");
  put_back_rows();
  told = counted(readings, "reading") +
         " put back. The survey was changed since the removal, so that averages and merged curves were "
         "computed again." +
         told_of_files(imported_again);
  WorkProgress progress("Averaging repeats", 0);
  return compute_again(touched_curves(keys), progress, skipped);
}

Outcome put_back_in_transaction(SkippedGroups& skipped, std::string& told) {
  dao::Transaction transaction(open_survey().database);
  const Outcome outcome = put_back(skipped, told);
  if (outcome == Outcome::finished) {
    forget_taken_out();
    transaction.commit();
  }
  return outcome;
}

}  // namespace

bool removal_can_be_undone() { return open_survey().taken_out.can_come_back; }

Outcome undo_removal(std::string& told) {
  if (!removal_can_be_undone()) {
    return Outcome::finished;
  }
  const BusyPointer busy;
  SkippedGroups skipped;
  Outcome outcome = Outcome::failed;
  const ShelfAsItIs shelf;
  const int result = trap_errors(undo_failed, [&] {
    Module_database::require_writable();
    outcome = put_back_in_transaction(skipped, told);
  });
  if (result != 0 || outcome != Outcome::finished) {
    shelf.stays();
    return result == 0 ? outcome : Outcome::failed;
  }
  Module_Brenlox::clear_undo();
  session().data_changed = true;
  Module_database::settle_survey();
  skipped.tell(std::string(undo_failed));
  Module_Brenlox::tell_finished(told + " Stored in " + session().database_file, session().database_file);
  return outcome;
}

}  // namespace Module_survey_edits
