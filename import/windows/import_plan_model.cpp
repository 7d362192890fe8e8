#include "import/windows/import_plan_model.h"

#include <QApplication>
#include <QColor>
#include <QFont>
#include <QPalette>
#include <QStyle>
#include <algorithm>
#include <array>
#include <map>
#include <numeric>
#include <unordered_map>
#include <utility>

#include "import/natural_order.h"

using namespace Module_data_file;

namespace {

constexpr std::array<const char*, plan_column_titles.size()> column_tips{
    "The file; a mark says that something is wrong with the row, the remarks say what",
    "The name of the site in the file",
    "The line that the readings are stored under; type to change it, Del takes the proposal back",
    "The station that the readings are stored under; type to change it, Del takes the proposal back",
    "The event; sections that name a site number themselves",
    "The sample rate in Hz; 0 for merged data",
    "How many frequencies the section has",
    "Where the file says that it was measured",
    "180 degrees on the phases of EyHx and EyHy",
    "Resistivity and phase are computed from the impedances",
    "What is wrong comes first"};

constexpr const char* yes = "yes";  // of a box, as the plan's texts have it

QString qt_text(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

PlanColumn column_of(const QModelIndex& index) { return static_cast<PlanColumn>(index.column()); }

bool is_box(PlanColumn column) {
  return column == PlanColumn::turn_ey || column == PlanColumn::from_impedance;
}

bool is_number(PlanColumn column) {
  return column == PlanColumn::station || column == PlanColumn::event || column == PlanColumn::rate ||
         column == PlanColumn::frequencies;
}

double number(const PlannedSection& section, PlanColumn column) {
  switch (column) {
    case PlanColumn::station:
      return section.station;
    case PlanColumn::event:
      return section.event;
    case PlanColumn::rate:
      return section.stored_rate();
    default:
      return section.frequencies;
  }
}

using SectionKey = std::pair<std::size_t, std::size_t>;  // file, section

SectionKey key_of(const PlannedSection& section) { return {section.file_index, section.section_index}; }

}  // namespace

ImportPlanModel::ImportPlanModel(QObject* parent)
    : QAbstractTableModel(parent),
      problem_(QApplication::style()->standardIcon(QStyle::SP_MessageBoxWarning)) {}

void ImportPlanModel::show_files(std::vector<std::string> files) {
  beginResetModel();
  std::unordered_map<std::string, std::size_t> place;
  for (std::size_t i = 0; i < files.size(); ++i) {
    place.emplace(files[i], i);
  }
  std::erase_if(edits_, [&](const PlannedEdit& edit) { return !place.contains(files_[edit.file_index]); });
  for (PlannedEdit& edit : edits_) {
    edit.file_index = place.at(files_[edit.file_index]);
  }
  files_ = std::move(files);
  plan_ = {};
  order_.clear();
  sorted_by_ = -1;
  endResetModel();
}

void ImportPlanModel::show_plan(ImportPlan plan, LineDirection direction) {
  direction_ = direction;
  lay_out([&] { plan_ = std::move(plan); });
}

// The rows are laid out anew rather than reset, so that selection and open editors stay with their sections.
void ImportPlanModel::lay_out(const std::function<void()>& change) {
  Q_EMIT layoutAboutToBeChanged();
  const QModelIndexList before = persistentIndexList();
  std::vector<SectionKey> keys;
  for (const QModelIndex& index : before) {
    keys.push_back(key_of(section(index.row())));
  }
  change();
  order_ = ordered();
  std::map<SectionKey, int> row_of;
  for (std::size_t row = 0; row < order_.size(); ++row) {
    row_of[key_of(plan_.sections[order_[row]])] = static_cast<int>(row);
  }
  QModelIndexList after;
  for (qsizetype i = 0; i < before.size(); ++i) {
    const auto found = row_of.find(keys[static_cast<std::size_t>(i)]);
    after.append(found == row_of.end() ? QModelIndex() : index(found->second, before[i].column()));
  }
  changePersistentIndexList(before, after);
  Q_EMIT layoutChanged();
}

const PlannedSection& ImportPlanModel::section(int row) const {
  return plan_.sections.at(order_.at(static_cast<std::size_t>(row)));
}

bool ImportPlanModel::is_edited(const QModelIndex& index) const {
  const std::optional<PlanCell> cell = cell_of(column_of(index));
  return cell && std::ranges::find(section(index.row()).edited_cells, *cell) !=
                     section(index.row()).edited_cells.end();
}

bool ImportPlanModel::can_edit(const QModelIndex& index) const {
  return may_edit_ && Module_data_file::can_edit(section(index.row()), column_of(index));
}

int ImportPlanModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(order_.size());
}

int ImportPlanModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(plan_column_titles.size());
}

QVariant ImportPlanModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) {  // Ctrl+C without a current row
    return {};
  }
  const PlanColumn column = column_of(index);
  const QString text = qt_text(plan_cell_text(section(index.row()), column));
  switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
      return is_box(column) ? QVariant() : QVariant(text);
    case Qt::CheckStateRole:
      return is_box(column) ? QVariant(text == yes ? Qt::Checked : Qt::Unchecked) : QVariant();
    case Qt::ToolTipRole:
      return column == PlanColumn::file ? qt_text(files_.at(section(index.row()).file_index)) : text;
    case Qt::TextAlignmentRole:
      return is_number(column) ? QVariant(Qt::AlignRight | Qt::AlignVCenter) : QVariant();
    case Qt::DecorationRole:
      return column == PlanColumn::file && has_problem(index.row()) ? QVariant(problem_) : QVariant();
    case Qt::BackgroundRole:  // shows in light and dark palettes
      return has_problem(index.row()) ? QVariant(QColor(255, 160, 0, 60)) : QVariant();
    case Qt::ForegroundRole:  // what the file says itself can't be typed
      return cell_of(column) && !Module_data_file::can_edit(section(index.row()), column)
                 ? QVariant(QApplication::palette().brush(QPalette::Disabled, QPalette::Text))
                 : QVariant();
    case Qt::FontRole: {
      QFont bold;
      bold.setBold(true);
      return is_edited(index) ? QVariant(bold) : QVariant();
    }
    default:
      return {};
  }
}

QVariant ImportPlanModel::headerData(int column, Qt::Orientation orientation, int role) const {
  const auto place = static_cast<std::size_t>(column);
  if (orientation == Qt::Horizontal && role == Qt::DisplayRole) {
    switch (static_cast<PlanColumn>(column)) {  // the remarks need the room
      case PlanColumn::frequencies:
        return "Freq.";
      case PlanColumn::from_impedance:
        return "From Z";
      default:
        return qt_text(plan_column_titles.at(place));
    }
  }
  return orientation == Qt::Horizontal && role == Qt::ToolTipRole ? QVariant(column_tips.at(place))
                                                                  : QVariant();
}

Qt::ItemFlags ImportPlanModel::flags(const QModelIndex& index) const {
  Qt::ItemFlags flags = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
  if (can_edit(index)) {
    flags |= is_box(column_of(index)) ? Qt::ItemIsUserCheckable : Qt::ItemIsEditable;
  }
  return flags;
}

bool ImportPlanModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role == Qt::CheckStateRole && can_edit(index)) {
    take(index, value.toInt() == Qt::Checked ? yes : "");
    Q_EMIT edited();
  } else if (role == Qt::EditRole && value.toString() != index.data(Qt::EditRole).toString()) {
    type_into({index}, value.toString());
  }
  return true;
}

bool ImportPlanModel::take(const QModelIndex& index, const std::string& text) {
  const std::string why = edit_plan_cell(edits_, section(index.row()), column_of(index), text, direction_);
  if (!why.empty()) {
    Q_EMIT refused(qt_text(why));
  }
  return why.empty();
}

void ImportPlanModel::type_into(const QModelIndexList& cells, const QString& text) {
  bool any = false;
  for (const QModelIndex& index : cells) {
    if (!is_box(column_of(index)) && can_edit(index)) {
      if (!take(index, text.toStdString())) {
        break;  // the same text is refused in every row
      }
      any = true;
    }
  }
  if (any) {
    Q_EMIT edited();
  }
}

/// A cell goes back to what is proposed for it.
void ImportPlanModel::take_back(const QModelIndex& index) {
  const PlanColumn column = column_of(index);
  if (!is_box(column)) {
    take(index, "");
    return;
  }
  for (PlannedEdit& edit : edits_) {
    if (SectionKey(edit.file_index, edit.section_index) == key_of(section(index.row()))) {
      (column == PlanColumn::turn_ey ? edit.turn_ey : edit.from_impedance).reset();
    }
  }
}

void ImportPlanModel::reset_cells(const QModelIndexList& cells) {
  bool any = false;
  for (const QModelIndex& index : cells) {
    if (may_edit_ && is_edited(index)) {
      take_back(index);
      any = true;
    }
  }
  if (any) {
    Q_EMIT edited();
  }
}

void ImportPlanModel::reset_all() {
  if (may_edit_) {
    edits_.clear();
    Q_EMIT edited();
  }
}

bool ImportPlanModel::comes_before(std::size_t a, std::size_t b) const {
  const auto column = static_cast<PlanColumn>(sorted_by_);
  const PlannedSection& first = plan_.sections[a];
  const PlannedSection& second = plan_.sections[b];
  return is_number(column)
             ? number(first, column) < number(second, column)
             : comes_before_naturally(plan_cell_text(first, column), plan_cell_text(second, column));
}

std::vector<std::size_t> ImportPlanModel::ordered() const {
  if (sorted_by_ < 0) {
    return plan_.display_order();
  }
  std::vector<std::size_t> order(plan_.sections.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::ranges::stable_sort(order, [this](std::size_t a, std::size_t b) {
    return sort_order_ == Qt::AscendingOrder ? comes_before(a, b) : comes_before(b, a);
  });
  return order;
}

void ImportPlanModel::sort(int column, Qt::SortOrder order) {
  lay_out([&] {
    sorted_by_ = column;
    sort_order_ = order;
  });
}
