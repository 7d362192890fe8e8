#include "import/windows/import_decode_grid.h"

#include <QApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QSignalBlocker>
#include <QStyledItemDelegate>

#include "import/decode_table.h"

using namespace Module_data_file;

namespace {

constexpr double specify_share = 1.6;  // of the width, where each other column has 1

constexpr std::array<const char*, 4> column_tips{
    "Checked: cut from the name of the file. A click or Space switches",
    "The first column of the value in the name, counted from 1", "How many columns the value has",
    "The value of all files whose names don't tell it"};

QString utf8(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// Edits a cell's text in place and draws the check pictures in the middle of their column.
class CellDelegate final : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& /*option*/,
                        const QModelIndex& /*index*/) const override {
    auto* const editor = new QLineEdit(parent);
    editor->setObjectName("Text_edit");
    editor->setFrame(false);
    return editor;
  }

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    if (index.column() != column_use_file_name) {
      QStyledItemDelegate::paint(painter, option, index);
      return;
    }
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    cell.features &= ~QStyleOptionViewItem::ViewItemFeatures(QStyleOptionViewItem::HasCheckIndicator);
    const QStyle& style = option.widget != nullptr ? *option.widget->style() : *QApplication::style();
    style.drawControl(QStyle::CE_ItemViewItem, &cell, painter, option.widget);
    QStyleOptionButton box;
    const QSize size(style.pixelMetric(QStyle::PM_IndicatorWidth),
                     style.pixelMetric(QStyle::PM_IndicatorHeight));
    box.rect = QStyle::alignedRect(option.direction, Qt::AlignCenter, size, option.rect);
    const bool checked = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
    box.state = (index.flags() & Qt::ItemIsEnabled ? QStyle::State_Enabled : QStyle::State_None) |
                (checked ? QStyle::State_On : QStyle::State_Off);
    style.drawPrimitive(QStyle::PE_IndicatorCheckBox, &box, painter, option.widget);
  }

  // The view flips the check itself; the box is not where an ordinary one would be.
  bool editorEvent(QEvent* /*event*/, QAbstractItemModel* /*model*/, const QStyleOptionViewItem& /*option*/,
                   const QModelIndex& /*index*/) override {
    return false;
  }
};

}  // namespace

ImportDecodeGrid::ImportDecodeGrid(QWidget* parent)
    : QTableWidget(static_cast<int>(decode_row_titles.size()), static_cast<int>(decode_column_titles.size()),
                   parent) {
  for (int column = 0; column < columnCount(); ++column) {
    auto* const title = new QTableWidgetItem(utf8(decode_column_titles.at(static_cast<std::size_t>(column))));
    title->setToolTip(column_tips.at(static_cast<std::size_t>(column)));
    setHorizontalHeaderItem(column, title);
  }
  for (int row = 0; row < rowCount(); ++row) {
    setVerticalHeaderItem(row,
                          new QTableWidgetItem(utf8(decode_row_titles.at(static_cast<std::size_t>(row)))));
    for (int column = 0; column < columnCount(); ++column) {
      auto* const cell = new QTableWidgetItem;
      cell->setTextAlignment(column == column_specify ? Qt::AlignVCenter : Qt::AlignCenter);
      if (column == column_use_file_name) {
        cell->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled);
      }
      setItem(row, column, cell);
    }
  }
  setItemDelegate(new CellDelegate(this));
  setSelectionMode(QAbstractItemView::SingleSelection);
  setEditTriggers(QAbstractItemView::AnyKeyPressed | QAbstractItemView::EditKeyPressed);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  horizontalHeader()->setHighlightSections(false);
  verticalHeader()->setHighlightSections(false);
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 2 * fontMetrics().descent() + 2);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  connect(this, &QTableWidget::cellClicked, this, &ImportDecodeGrid::cell_clicked);
  connect(this, &QTableWidget::cellChanged, this, &ImportDecodeGrid::cell_edited);
}

void ImportDecodeGrid::edit_table(DecodeTable& table) {
  table_ = &table;
  refresh();
}

void ImportDecodeGrid::open_row(int row, bool open) {
  const QSignalBlocker quiet(this);
  for (int column = 0; column < columnCount(); ++column) {
    Qt::ItemFlags flags = Qt::ItemIsSelectable | (open ? Qt::ItemIsEnabled : Qt::NoItemFlags);
    if (open && column != column_use_file_name) {
      flags |= Qt::ItemIsEditable;
    }
    item(row, column)->setFlags(flags);
  }
  verticalHeaderItem(row)->setForeground(
      palette().brush(open ? QPalette::Active : QPalette::Disabled, QPalette::ButtonText));
  viewport()->update();
}

void ImportDecodeGrid::refresh() {
  const QSignalBlocker quiet(this);
  for (int row = 0; row < rowCount(); ++row) {
    const DecodeRow& decode = table_->at(static_cast<std::size_t>(row));
    item(row, column_use_file_name)->setCheckState(decode.use_file_name ? Qt::Checked : Qt::Unchecked);
    for (int column = column_start; column < columnCount(); ++column) {
      item(row, column)
          ->setText(QString::fromStdString(decode_cell_text(decode, static_cast<DecodeColumn>(column))));
    }
  }
  viewport()->update();
}

QSize ImportDecodeGrid::sizeHint() const {
  return {QTableWidget::sizeHint().width(),
          horizontalHeader()->sizeHint().height() + verticalHeader()->length() + 2 * frameWidth()};
}

void ImportDecodeGrid::cell_clicked(int row, int column) {
  if (table_ == nullptr || !(item(row, column)->flags() & Qt::ItemIsEnabled)) {
    return;
  }
  if (column != column_use_file_name) {
    editItem(item(row, column));
    return;
  }
  DecodeRow& decode = table_->at(static_cast<std::size_t>(row));
  decode.use_file_name = !decode.use_file_name;
  refresh();
  Q_EMIT table_changed();
}

void ImportDecodeGrid::cell_edited(int row, int column) {
  if (table_ == nullptr || column == column_use_file_name) {
    return;
  }
  const std::string typed = item(row, column)->text().toStdString();
  const bool taken =
      set_decode_cell(table_->at(static_cast<std::size_t>(row)), static_cast<DecodeColumn>(column), typed);
  refresh();
  Q_EMIT table_changed();
  if (!taken) {
    QApplication::beep();
    Q_EMIT refused("\"" + utf8(typed) + "\" can't be used: " + horizontalHeaderItem(column)->text() +
                   " counts characters of the file name");
  }
}

void ImportDecodeGrid::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Space && currentColumn() == column_use_file_name) {
    cell_clicked(currentRow(), column_use_file_name);
    return;
  }
  QTableWidget::keyPressEvent(event);
}

bool ImportDecodeGrid::at_end(bool last) const {
  return last ? currentRow() == rowCount() - 1 && currentColumn() == columnCount() - 1
              : currentRow() <= 0 && currentColumn() <= 0;
}

// Tab goes from cell to cell, and after the last one to the next control.
bool ImportDecodeGrid::focusNextPrevChild(bool next) {
  setTabKeyNavigation(!at_end(next));
  return QTableWidget::focusNextPrevChild(next);
}

void ImportDecodeGrid::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
  const bool next = hint == QAbstractItemDelegate::EditNextItem;
  const bool leaves = (next || hint == QAbstractItemDelegate::EditPreviousItem) && at_end(next);
  QTableWidget::closeEditor(editor, leaves ? QAbstractItemDelegate::NoHint : hint);
  if (leaves) {
    focusNextPrevChild(next);
  }
}

void ImportDecodeGrid::resizeEvent(QResizeEvent* event) {
  QTableWidget::resizeEvent(event);
  const double share = viewport()->width() / (columnCount() - 1 + specify_share);
  int left = viewport()->width();
  for (int column = 0; column < column_specify; ++column) {
    setColumnWidth(column, static_cast<int>(share));
    left -= columnWidth(column);
  }
  setColumnWidth(column_specify, left);
}
