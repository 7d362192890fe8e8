#include "survey_edits/windows/checked_list.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <algorithm>
#include <utility>

#include "core/number_text.h"

namespace {

constexpr int sort_role =
    Qt::UserRole;  // a number as a number, which is shown as everywhere, not by the locale

}  // namespace

CheckedRows::CheckedRows(QStringList headers, std::size_t rows, CellValue value,
                         std::set<std::size_t>& checked, QObject* parent)
    : QAbstractTableModel(parent),
      headers_(std::move(headers)),
      rows_(rows),
      value_(std::move(value)),
      checked_(checked) {}

int CheckedRows::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_);
}

int CheckedRows::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(headers_.size());
}

QVariant CheckedRows::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) {  // Ctrl+C without a current row
    return {};
  }
  const auto row = static_cast<std::size_t>(index.row());
  if (role == Qt::CheckStateRole && index.column() == 0) {
    return checked_.contains(row) ? Qt::Checked : Qt::Unchecked;
  }
  if (role != Qt::DisplayRole && role != sort_role && role != Qt::TextAlignmentRole) {
    return {};
  }
  const QVariant value = value_(row, index.column());
  const bool is_text = value.typeId() == QMetaType::QString;
  if (role == Qt::TextAlignmentRole) {
    return is_text ? QVariant() : QVariant(Qt::AlignRight | Qt::AlignVCenter);
  }
  return role == sort_role || is_text ? value : QString::fromStdString(plain_text(value.toDouble()));
}

QVariant CheckedRows::headerData(int section, Qt::Orientation orientation, int role) const {
  return orientation == Qt::Horizontal && role == Qt::DisplayRole ? headers_.at(section) : QVariant();
}

Qt::ItemFlags CheckedRows::flags(const QModelIndex& index) const {
  const Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
  return index.column() == 0 ? flags | Qt::ItemIsUserCheckable : flags;
}

bool CheckedRows::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::CheckStateRole) {
    return false;
  }
  check({static_cast<std::size_t>(index.row())}, value.toInt() == Qt::Checked);
  return true;
}

void CheckedRows::check(const std::set<std::size_t>& rows, bool checked) {
  for (const std::size_t row : rows) {
    checked ? static_cast<void>(checked_.insert(row)) : static_cast<void>(checked_.erase(row));
  }
  if (!rows.empty()) {
    Q_EMIT dataChanged(index(static_cast<int>(*rows.begin()), 0), index(static_cast<int>(*rows.rbegin()), 0),
                       {Qt::CheckStateRole});
    Q_EMIT checked_changed();
  }
}

CheckedList::CheckedList(CheckedRows* rows, const QString& name)
    : rows_(rows), shown_(new QSortFilterProxyModel(this)) {
  setObjectName(name);
  shown_->setSourceModel(rows);
  shown_->setSortRole(sort_role);
  shown_->setFilterKeyColumn(-1);  // any
  shown_->setFilterCaseSensitivity(Qt::CaseInsensitive);
  setModel(shown_);
  setRootIsDecorated(false);
  setUniformRowHeights(true);
  setAllColumnsShowFocus(true);
  setSelectionMode(QAbstractItemView::ExtendedSelection);
  setSortingEnabled(true);
  sortByColumn(-1, Qt::AscendingOrder);  // as given, until a heading is clicked
  header()->setResizeContentsPrecision(100);
  header()->setStretchLastSection(false);
  for (int column = 0; column < shown_->columnCount(); ++column) {
    resizeColumnToContents(column);
  }
}

void CheckedList::filter(const QString& text) { shown_->setFilterFixedString(text.trimmed()); }

void CheckedList::check_shown(bool checked) {
  std::set<std::size_t> rows;
  for (int row = 0; row < shown_->rowCount(); ++row) {
    rows.insert(static_cast<std::size_t>(shown_->mapToSource(shown_->index(row, 0)).row()));
  }
  rows_->check(rows, checked);
}

std::set<std::size_t> CheckedList::selected_rows() const {
  std::set<std::size_t> rows;
  for (const QModelIndex& index : selectionModel()->selectedRows()) {
    rows.insert(static_cast<std::size_t>(shown_->mapToSource(index).row()));
  }
  return rows;
}

void CheckedList::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Space) {
    const std::set<std::size_t> rows = selected_rows();
    const bool all = std::ranges::all_of(rows, [this](std::size_t row) {
      return rows_->data(rows_->index(static_cast<int>(row), 0), Qt::CheckStateRole) == Qt::Checked;
    });
    rows_->check(rows, !all);
  } else if (event->key() == Qt::Key_Delete) {
    Q_EMIT delete_pressed();
  } else {
    QTreeView::keyPressEvent(event);
  }
}
