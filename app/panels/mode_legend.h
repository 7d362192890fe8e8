// mode_legend.h: which colour is which mode, beside the heading of a graph that shows both.
#pragma once
#include <string>

class QLabel;
class QString;

/// Hidden until there are two modes to tell apart.
QLabel* make_mode_legend(const QString& name);

/// @param selected  data type that edits act on; its name is bold
/// @param both  whether the other mode is shown, too
void show_modes(QLabel& legend, const std::string& selected, bool both);
