#include "exchange/windows/export_plan_model.h"

#include <QApplication>
#include <QCollator>
#include <QPalette>
#include <algorithm>
#include <array>
#include <numeric>
#include <utility>

#include "platform/widgets/panel_controls.h"

using namespace Module_exchange;

namespace {

constexpr std::array<const char*, export_column_titles.size()> column_tips{
    "The file in the folder; rows without one are grey, their remarks say why",
    "The line of the survey",
    "The station, or how many the file holds",
    "The site, as its field file names it",
    "Latitude and longitude",
    "How many frequencies the curves have, at most",
    "What there is of impedance and tipper",
    "What has to be known of the station"};

/// Texts with numbers in them as people order them: line 2 before line 10.
const QCollator& natural_order() {
  static const QCollator collator = [] {
    QCollator natural{QLocale(QLocale::English)};  // that of C knows no numbers
    natural.setNumericMode(true);
    natural.setCaseSensitivity(Qt::CaseInsensitive);
    return natural;
  }();
  return collator;
}

bool comes_before(const ExportRow& a, const ExportRow& b, ExportColumn column) {
  if (column == ExportColumn::station) {
    return a.stations < b.stations;
  }
  return column == ExportColumn::frequencies
             ? a.frequencies < b.frequencies
             : natural_order().compare(qt_text(export_cell_text(a, column)),
                                       qt_text(export_cell_text(b, column))) < 0;
}

bool is_number(ExportColumn column) {
  return column == ExportColumn::station || column == ExportColumn::frequencies;
}

}  // namespace

void ExportPlanModel::show_plan(ExportPlan plan) {
  beginResetModel();
  plan_ = std::move(plan);
  order_ = ordered();
  endResetModel();
}

const ExportRow& ExportPlanModel::row_at(const QModelIndex& index) const {
  return plan_.rows.at(order_.at(static_cast<std::size_t>(index.row())));
}

int ExportPlanModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(order_.size());
}

int ExportPlanModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(export_column_titles.size());
}

QVariant ExportPlanModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) {  // Ctrl+C without a current row
    return {};
  }
  const auto column = static_cast<ExportColumn>(index.column());
  const ExportRow& row = row_at(index);
  switch (role) {
    case Qt::DisplayRole:
      return qt_text(export_cell_text(row, column));
    case Qt::ToolTipRole:
      return plain_tool_tip(qt_text(export_cell_text(row, column)));
    case Qt::TextAlignmentRole:
      return is_number(column) ? QVariant(Qt::AlignRight | Qt::AlignVCenter) : QVariant();
    case Qt::ForegroundRole:
      return row.file.empty() ? QVariant(QApplication::palette().brush(QPalette::PlaceholderText))
                              : QVariant();
    default:
      return {};
  }
}

QVariant ExportPlanModel::headerData(int column, Qt::Orientation orientation, int role) const {
  const auto place = static_cast<std::size_t>(column);
  if (orientation == Qt::Horizontal && role == Qt::DisplayRole) {
    return qt_text(std::string(export_column_titles.at(place))) +
           (static_cast<ExportColumn>(column) == ExportColumn::place ? " (degrees)" : "");
  }
  return orientation == Qt::Horizontal && role == Qt::ToolTipRole ? QVariant(column_tips.at(place))
                                                                  : QVariant();
}

std::vector<std::size_t> ExportPlanModel::ordered() const {
  std::vector<std::size_t> order(plan_.rows.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::ranges::stable_sort(order, [this](std::size_t a, std::size_t b) {
    const ExportRow& first = plan_.rows[a];
    const ExportRow& second = plan_.rows[b];
    if (sorted_by_ < 0) {
      return first.file.empty() && !second.file.empty();
    }
    const auto column = static_cast<ExportColumn>(sorted_by_);
    return sort_order_ == Qt::AscendingOrder ? comes_before(first, second, column)
                                             : comes_before(second, first, column);
  });
  return order;
}

// Laid out anew rather than reset: what is selected stays so, wherever it comes to be.
void ExportPlanModel::sort(int column, Qt::SortOrder order) {
  Q_EMIT layoutAboutToBeChanged();
  const std::vector<std::size_t> before = order_;
  sorted_by_ = column;
  sort_order_ = order;
  order_ = ordered();
  std::vector<int> row_of(order_.size());
  for (std::size_t row = 0; row < order_.size(); ++row) {
    row_of[order_[row]] = static_cast<int>(row);
  }
  const QModelIndexList old = persistentIndexList();
  QModelIndexList moved;
  for (const QModelIndex& place : old) {
    moved.append(index(row_of[before[static_cast<std::size_t>(place.row())]], place.column()));
  }
  changePersistentIndexList(old, moved);
  Q_EMIT layoutChanged();
}
