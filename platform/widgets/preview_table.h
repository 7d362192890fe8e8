// preview_table.h: the look and habits of tables that show what some work would do.
#pragma once

class QTableView;

/// Rows of one line that are sorted by their headings, where a third click brings the first order back; the
/// last column takes the room that is left.
void set_up_preview_table(QTableView& table);
