// survey_file_commands.h: what the File menu does with survey files.
//
// A command first closes what is open, so a file dialog that is cancelled leaves no survey open. Failures are
// told here or by the operation that met them, once each. A file that is to be replaced goes only when the
// new one stands.
#pragma once
#include <cstddef>
#include <string>

#include "app/main_view.h"

namespace Module_Brenlox {

enum class DatabaseFileItem : int { create = 0, open = 1, close = 2 };

/// File menu: New, Open, Close Database.
void menu_database_file(MainView& view, DatabaseFileItem item);

/// File menu: a recent file, counted from 0 as the menu items are.
void menu_file_list(MainView& view, std::size_t index);

/// File menu: Save Database As. Goes on with the copy; if it can't be made, with the survey that was open.
void menu_saveas(MainView& view);

/// Closes what is open and opens the survey at `path`, or says that there is none.
void open_survey_file(MainView& view, const std::string& path);

/// The state without a survey: menus, recent files, opening picture, header values, station counts, undo.
/// Writes the preferences.
void reset_session(MainView& view);

}  // namespace Module_Brenlox
