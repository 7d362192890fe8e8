// copy_cells.h: copies the selected cells of a grid to the clipboard as text.
#pragma once
#include <QAbstractItemView>

/// Gives the grid Ctrl+C and a context menu with "Copy": the selected cells as lines with tabs between their
/// columns, which spreadsheets accept.
void make_cells_copyable(QAbstractItemView& grid);
