// check_cells.h: cells of a grid that a click switches, with a ticked or an empty box in their middle.
#pragma once
#include <QStyledItemDelegate>
#include <functional>

class QTableWidget;
class QTableWidgetItem;

/// Paints the box of an item made by make_check_cell; other cells as ever.
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

/// Calls `switch_cell(row, column)` for each click on a cell, of which a double click is two, and for the
/// space bar on the cell that the up and down keys have reached.
void connect_switches(QTableWidget& grid, QObject* context,
                      const std::function<void(int row, int column)>& switch_cell);
