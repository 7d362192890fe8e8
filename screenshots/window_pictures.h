// window_pictures.h: a walk through all windows, and their pictures for the pages that describe them.
#pragma once
#include <QString>
#include <functional>

class Form_main;
class QWidget;

/// Gets the name of a state, as "import_files", and the window that shows it.
using WindowVisitor = std::function<void(const QString& name, QWidget& window)>;

/// Brings each window up on the open survey as its menu item does, hands it to the visitor and closes it
/// again. Nothing is stored in the survey, and the main window shows what it showed before. The folder of the
/// survey, or one below it, should hold field files to choose from, and a run of a two-dimensional inversion
/// with a file of elevations ("*.xyz") in its folder; without a run the windows that need one are skipped.
void visit_windows(Form_main& window, const WindowVisitor& visitor);

/// Writes a picture of each window into a folder, which is created if it is missing.
/// @return 0, or -1 after a message for each picture that can't be written
[[nodiscard]] int save_window_pictures(Form_main& window, const QString& folder);
