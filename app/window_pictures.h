// window_pictures.h: pictures of all windows, for the pages that describe them and for a look at each.
#pragma once
#include <QString>

class Form_main;

/// Brings each window up on the open survey as its menu item does, writes a picture of it into a folder (made
/// if it is missing) and closes it again. Nothing is stored in the survey. The folder of the survey, or one
/// below it, should hold field files to choose from.
/// @return 0, or -1 after a message for each picture that can't be written
[[nodiscard]] int save_window_pictures(Form_main& window, const QString& folder);
