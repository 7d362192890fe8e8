#include "database/windows/table_model.h"

#include <utility>

namespace {

constexpr std::size_t kept_rows = 1000;  // several screens; a repaint reads none of them again

bool is_number(dao::ColumnType type) {
  using dao::ColumnType;
  return type == ColumnType::counter || type == ColumnType::long_integer ||
         type == ColumnType::single_float || type == ColumnType::double_float ||
         type == ColumnType::long_binary;
}

}  // namespace

TableModel::TableModel(Module_database::TableRows rows, QObject* parent)
    : QAbstractTableModel(parent), rows_(std::move(rows)) {}

int TableModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_.row_count(); }

int TableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.columns().size());
}

QVariant TableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) {
    return {};
  }
  if (role == Qt::DisplayRole) {
    return row(index.row()).value(index.column());
  }
  if (role == Qt::TextAlignmentRole) {
    const bool right = is_number(rows_.columns()[static_cast<std::size_t>(index.column())].type);
    return QVariant::fromValue(Qt::Alignment(Qt::AlignVCenter | (right ? Qt::AlignRight : Qt::AlignLeft)));
  }
  return {};
}

QVariant TableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation == Qt::Horizontal && role == Qt::DisplayRole) {
    return QString::fromStdString(rows_.columns()[static_cast<std::size_t>(section)].name);
  }
  return QAbstractTableModel::headerData(section, orientation, role);
}

const QStringList& TableModel::row(int index) const {
  if (const auto found = read_.find(index); found != read_.end()) {
    return found->second;
  }
  if (read_.size() >= kept_rows) {
    read_.clear();
  }
  QStringList texts;
  try {
    for (const std::string& text : rows_.row(index)) {
      texts.append(QString::fromStdString(text));
    }
  } catch (const dao::Error& failure) {
    // Painting can't stop for a message; the row itself says what is wrong with it.
    texts = QStringList(columnCount());
    texts[0] = QString::fromUtf8(failure.what());
  }
  return read_.emplace(index, std::move(texts)).first->second;
}
