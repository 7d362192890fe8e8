// copy_cells.h: the chosen cells of a grid as text on the clipboard.
#pragma once
#include <QAbstractItemView>

/// Gives the grid Ctrl+C and a context menu with "Copy": the chosen cells as lines with tabs between their
/// columns, as spreadsheets take them.
void make_cells_copyable(QAbstractItemView& grid);
