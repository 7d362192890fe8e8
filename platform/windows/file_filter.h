// file_filter.h: the file filters of the logic in the form that the file dialog needs.
#pragma once
#include <QStringList>
#include <string_view>

/// "Description (*.mdb)|*.mdb|All files (*.*)|*.*" as the dialog's list: a name and its patterns for each
/// pair. Patterns are separated by ";". "*.*" becomes "*", which also matches a name without a point. An
/// incomplete pair at the end is left out.
QStringList dialog_filters(std::string_view filter);

/// The suffix that a name typed without one gets: "mdb" for "*.mdb", nothing for "*.*".
QString dialog_suffix(std::string_view default_extension);

/// The same by the file type that is chosen in the dialog, one of dialog_filters: that of its first pattern,
/// nothing if it takes all files.
QString suffix_of_type(const QString& dialog_filter);
