// check_cells.h: cells of a grid with a check box in their middle, switched by a click.
#pragma once
#include <QStyledItemDelegate>
#include <functional>

class QTableWidget;
class QTableWidgetItem;

/// Paints the box of an item made by make_check_cell; other cells as usual.
class CheckCells : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

QTableWidgetItem* make_check_cell(bool checked);
bool is_checked(const QTableWidgetItem& cell);
void set_checked(QTableWidgetItem& cell, bool checked);

/// A grid without row headings whose columns share its width, painted by CheckCells.
QTableWidget* make_switch_grid(const QString& name, const QStringList& headings);

/// Calls `switch_cell(row, column)` for each click on a cell (a double click counts as two), and for the
/// space bar on the current cell.
void connect_switches(QTableWidget& grid, QObject* context,
                      const std::function<void(int row, int column)>& switch_cell);
