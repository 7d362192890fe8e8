// entry_mark.h: marks a text box whose text can't be used.
#pragma once
#include <QString>

class QLineEdit;

/// Puts a sign into the box and says in its tool tip, and to a screen reader, why its text can't be used; an
/// empty fault takes all that away.
void mark_entry(QLineEdit& box, const QString& fault);

/// Whether the box is marked.
bool is_marked(const QLineEdit& box);
