#include "import/file_transaction.h"

#include <exception>
#include <string>

#include "core/trap_errors.h"
#include "database/survey_database.h"
#include "import/store_blocks.h"

namespace Module_data_file {

using formats::FileReport;

namespace {

using Module_database::open_survey;

// Makes the open recordsets forget the rows that a roll-back removed.
void requery_stores() {
  open_survey().files.requery();
  open_survey().readings.requery();
  open_survey().stations.requery();
  open_survey().locations.requery();
  open_survey().sites.requery();
  open_survey().reading_facts.requery();
}

// Whether a file with a failure brings less than its earlier import did.
bool gave_less(const FileTask& task) {
  const StoreNotes& notes = task.notes;
  return !task.report.failure.empty() && notes.file_known &&
         (task.report.readings < notes.replaced_readings ||
          values_of_file(task.record.FileID) < notes.replaced_values);
}

// Ends the file's transaction. The readings of an earlier import of the file are replaced only when all new
// ones have been stored.
void end_transaction(dao::Transaction& transaction, FileTask& task) {
  const StoreNotes& notes = task.notes;
  FileReport& report = task.report;
  const bool failed = report.readings == 0 || !notes.failure.empty() || gave_less(task);
  const bool keep_earlier =
      failed &&
      (notes.file_known || (report.readings == 0 && rows_of_earlier_import(task.record) != nullptr));
  if (!keep_earlier) {
    transaction.commit();
    own_rows_of_file(task.record);
    task.record.run.keys_left.merge(task.notes.replaced_keys);
    report.failure +=
        report.failure.empty() || report.readings == 0 ? "" : "; what stands before that is stored";
    return;
  }
  transaction.roll_back();
  requery_stores();
  report.readings = 0;
  if (report.failure.empty()) {
    report.failure = "the file gave no reading";
  }
  report.failure += "; the readings of its earlier import stay";
}

}  // namespace

bool import_in_transaction(FieldReader read, FileTask& task) {
  const int result = trap_errors(import_failed, [&] {
    try {
      dao::Transaction transaction(open_survey().database);
      (void)read(task);  // its failure is in the report, and the user has seen the message
      end_transaction(transaction, task);
    } catch (const std::exception& failure) {
      task.report.readings = 0;
      task.report.failure = std::string(import_failed) + failure_text(failure);
      throw;
    }
  });
  if (result != 0) {
    (void)trap_errors(import_failed, requery_stores);
  }
  return result == 0;
}

}  // namespace Module_data_file
