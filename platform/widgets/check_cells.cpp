#include "platform/widgets/check_cells.h"

#include <QApplication>
#include <QHeaderView>
#include <QShortcut>
#include <QTableWidget>
#include <algorithm>

namespace {

constexpr int checked_role = Qt::UserRole;

}  // namespace

void CheckCells::paint(QPainter* painter, const QStyleOptionViewItem& option,
                       const QModelIndex& index) const {
  QStyledItemDelegate::paint(painter, option, index);
  const QVariant checked = index.data(checked_role);
  if (!checked.isValid()) {
    return;
  }
  QStyleOptionButton box;
  const QStyle& style = option.widget != nullptr ? *option.widget->style() : *QApplication::style();
  const QSize size(style.pixelMetric(QStyle::PM_IndicatorWidth, nullptr, option.widget),
                   style.pixelMetric(QStyle::PM_IndicatorHeight, nullptr, option.widget));
  box.rect = QStyle::alignedRect(option.direction, Qt::AlignCenter, size, option.rect);
  box.palette = option.palette;
  box.state = QStyle::State_Enabled | (checked.toBool() ? QStyle::State_On : QStyle::State_Off);
  style.drawPrimitive(QStyle::PE_IndicatorCheckBox, &box, painter, option.widget);
}

QTableWidgetItem* make_check_cell(bool checked) {
  auto* const cell = new QTableWidgetItem;
  cell->setFlags(Qt::ItemIsEnabled);
  set_checked(*cell, checked);
  return cell;
}

bool is_checked(const QTableWidgetItem& cell) { return cell.data(checked_role).toBool(); }

void set_checked(QTableWidgetItem& cell, bool checked) { cell.setData(checked_role, checked); }

QTableWidget* make_switch_grid(const QString& name, const QStringList& headings) {
  auto* const grid = new QTableWidget(0, static_cast<int>(headings.size()));
  grid->setObjectName(name);
  grid->setHorizontalHeaderLabels(headings);
  grid->verticalHeader()->hide();
  grid->verticalHeader()->setDefaultSectionSize(grid->fontMetrics().height() + 6);
  grid->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  grid->horizontalHeader()->setMinimumSectionSize(24);
  grid->setSelectionMode(QAbstractItemView::NoSelection);
  grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
  grid->setTabKeyNavigation(false);  // the tab key goes on to the next control
  grid->setItemDelegate(new CheckCells(grid));
  return grid;
}

void connect_switches(QTableWidget& grid, QObject* context,
                      const std::function<void(int row, int column)>& switch_cell) {
  QObject::connect(&grid, &QTableWidget::cellClicked, context, switch_cell);
  QObject::connect(&grid, &QTableWidget::cellDoubleClicked, context, switch_cell);
  auto* const space = new QShortcut(QKeySequence(Qt::Key_Space), &grid);
  space->setContext(Qt::WidgetShortcut);
  QObject::connect(space, &QShortcut::activated, context, [&grid, switch_cell] {
    if (grid.currentRow() >= 0) {
      switch_cell(grid.currentRow(), std::max(grid.currentColumn(), 1));
    }
  });
}
