#include "app/survey_tools.h"

#include <cstdint>
#include <string>
#include <utility>

#include "app/survey_display.h"
#include "app/tools/Form_frequency.h"
#include "core/session_state.h"
#include "core/trap_errors.h"
#include "core/user_interface.h"
#include "database/frequency_store.h"
#include "database/survey_database.h"
#include "database/windows/Form_view_table.h"
#include "reduction/averages.h"
#include "survey_edits/undo_removal.h"
#include "survey_edits/windows/Form_remove_readings.h"
#include "survey_edits/windows/Form_rename.h"

SurveyTools::SurveyTools(SurveyDisplay& display, QWidget& window)
    : QObject(&window), display_(display), window_(window) {}

void SurveyTools::recalculate_merged() {
  const BusyPointer busy;
  static_cast<void>(Module_averaged_data::recalculate_merged());
  display_.reload_readings();  // a failure or a stop keeps what was rebuilt by then
}

void SurveyTools::remove_readings() {
  const int result = trap_errors("An error occurred while reading the survey: ", [this] {
    Module_database::require_writable();
    return Form_remove_readings(Module_survey_edits::survey_contents(), &window_).exec() == QDialog::Accepted
               ? 0
               : -1;
  });
  if (result == 0) {
    Q_EMIT readings_changed();
  }
}

void SurveyTools::undo_removal() {
  std::string told;
  if (Module_survey_edits::undo_removal(told) == Module_averaged_data::Outcome::finished) {
    Q_EMIT readings_changed();
    user_interface().show_message(told);
  }
}

void SurveyTools::rename_line_or_station() {
  const int result = trap_errors("An error occurred while reading the survey: ", [this] {
    Module_database::require_writable();
    Form_rename dialog(Module_survey_edits::survey_contents(), session().current_line, &window_);
    return dialog.exec() == QDialog::Accepted ? 0 : -1;
  });
  if (result == 0) {
    Q_EMIT readings_changed();
  }
}

void SurveyTools::view_table(const Module_database::ViewedTable& table) {
  static_cast<void>(trap_errors("An error occurred while opening the table: ", [&] {
    Form_view_table(Module_database::working_file(), table, &window_).exec();
  }));
}

void SurveyTools::select_frequencies() {
  const std::int32_t reference_type = session().current_reference_type;
  if (reference_type < 0) {
    return;
  }
  auto frequencies = Module_database::load_reference_frequencies(reference_type);
  if (!frequencies || frequencies->empty()) {
    return;
  }
  Form_frequency dialog(std::move(*frequencies), &window_);
  dialog.exec();
  if (dialog.frequencies_changed() && session().current_station_index > 0 &&
      Module_database::load_selected_frequencies() == 0) {
    display_.redraw();
  }
}
