#include "tensor/windows/strike_table.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <algorithm>
#include <cmath>
#include <set>

#include "core/number_text.h"
#include "platform/widgets/copy_cells.h"
#include "platform/widgets/number_cell.h"
#include "platform/widgets/panel_controls.h"

using Module_tensor::EyReason;
using Module_tensor::station_text;
using Module_tensor::StationStrike;
using Module_tensor::StationTensor;
using Module_tensor::StrikeStation;

namespace {

enum Column : int {
  column_station,
  column_strike,
  column_other,
  column_deviation,
  column_used,
  column_left_out,
  column_skew,
  column_ey,
  column_masked,
  column_remarks
};

const QStringList headings{"Station",  "Strike",      "Other",      "Deviation", "Points",
                           "Left out", "Median skew", "Sign of Ey", "Masked",    "Remarks"};
const char* const hints[] = {
    "A double click shows the station in the main window",
    "Degrees from north, by the method that is chosen above",
    "The other solution, at a right angle",
    "Of its points, degrees; points of one station aren't independent, so that this is no error of the mean",
    "That have a say",
    "By the limits of skew and ellipticity",
    "Median of the absolute skew of all phase tensors of the band, degrees",
    "Whether Ey was turned back, and what says so",
    "Diagonal values that were taken in spite of a mask",
    "What has to be known of the station"};

constexpr int station_role = Qt::UserRole;
constexpr int number_role = NumberCell::number_role;

QTableWidgetItem* number_cell(double number, const char* picture) {
  return new NumberCell(std::isnan(number) ? QString("-") : qt_text(format_number(number, picture)), number);
}

QTableWidgetItem* count_cell(std::size_t count) { return number_cell(static_cast<double>(count), "0"); }

QString ey_text(const StationTensor& station) {
  const QString sign = station.ey_turned ? "turned" : "as measured";
  switch (station.ey_reason) {
    case EyReason::facts:
      return sign + ", by the import";
    case EyReason::rule:
      return sign + ", by rule";
    case EyReason::user:
      return sign + ", set";
  }
  return sign;
}

QString remarks_text(const StationTensor& station) {
  QStringList remarks;
  if (!station.refusal.empty()) {
    remarks.append(qt_text(station.refusal));
  }
  for (const std::string& remark : station.remarks) {
    remarks.append(qt_text(remark));
  }
  return remarks.join("; ");
}

}  // namespace

StrikeTable::StrikeTable(QWidget* parent) : QTableWidget(0, static_cast<int>(headings.size()), parent) {
  setObjectName("Grid_stations");
  setAccessibleName("Strike by station");
  setToolTip("A double click shows the station in the main window");
  setHorizontalHeaderLabels(headings);
  for (int column = 0; column < columnCount(); ++column) {
    horizontalHeaderItem(column)->setToolTip(hints[column]);
  }
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setSelectionBehavior(QAbstractItemView::SelectRows);
  setWordWrap(false);
  verticalHeader()->hide();
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
  horizontalHeader()->setStretchLastSection(true);
  horizontalHeader()->setSortIndicator(column_station, Qt::AscendingOrder);
  setSortingEnabled(true);
  make_cells_copyable(*this);
  connect(this, &QTableWidget::cellDoubleClicked, this, [this](int row, int /*column*/) {
    Q_EMIT station_chosen(item(row, column_station)->data(number_role).toDouble());
  });
}

void StrikeTable::add_cell(int row, int column, QTableWidgetItem* cell, std::size_t index) {
  cell->setData(station_role, static_cast<qulonglong>(index));
  setItem(row, column, cell);
}

void StrikeTable::fill_row(int row, const StrikeStation& station, const StationStrike* strike) {
  const auto index = static_cast<std::size_t>(row);
  const StationTensor& tensors = station.tensors;
  add_cell(row, column_station,
           new NumberCell(qt_text(station_text(tensors.station, tensors.name)), tensors.station), index);
  const StationStrike none;
  const StationStrike& shown = strike != nullptr ? *strike : none;
  add_cell(row, column_strike, number_cell(shown.strike.strike.value, "0.0"), index);
  add_cell(row, column_other, number_cell(shown.strike.alternative, "0.0"), index);
  add_cell(row, column_deviation, number_cell(shown.strike.deviation, "0.0"), index);
  add_cell(row, column_used, count_cell(shown.strike.used), index);
  add_cell(row, column_left_out, count_cell(shown.strike.left_out), index);
  add_cell(row, column_skew, number_cell(shown.median_skew, "0.0"), index);
  add_cell(row, column_ey, new QTableWidgetItem(tensors.points.empty() ? QString("-") : ey_text(tensors)),
           index);
  add_cell(row, column_masked, count_cell(shown.masked_diagonals), index);
  const QString remarks = remarks_text(tensors);
  auto* const cell = new QTableWidgetItem(remarks);
  cell->setToolTip(plain_tool_tip(remarks));
  add_cell(row, column_remarks, cell, index);
}

void StrikeTable::show_stations(const std::vector<StrikeStation>& stations,
                                const std::optional<Module_tensor::StrikeSummary>& summary) {
  const std::vector<double> selected = selected_stations();
  const bool first = rowCount() == 0;
  setSortingEnabled(false);  // rows would move while they are filled in
  setRowCount(0);
  setRowCount(static_cast<int>(stations.size()));
  for (std::size_t i = 0; i < stations.size(); ++i) {
    fill_row(static_cast<int>(i), stations[i], summary ? &summary->stations[i] : nullptr);
  }
  setSortingEnabled(true);
  if (first) {
    resizeColumnsToContents();
  }
  for (int row = 0; row < rowCount(); ++row) {
    if (std::ranges::find(selected, item(row, column_station)->data(number_role).toDouble()) !=
        selected.end()) {
      for (int column = 0; column < columnCount(); ++column) {
        item(row, column)->setSelected(true);
      }
    }
  }
}

void StrikeTable::mark_station(std::optional<std::size_t> index) {
  for (int row = 0; row < rowCount(); ++row) {
    QTableWidgetItem* const cell = item(row, column_station);
    const bool shown = index && cell->data(station_role).toULongLong() == *index;
    QFont font = cell->font();
    font.setBold(shown);
    cell->setFont(font);
    if (shown) {
      scrollToItem(cell);
    }
  }
}

std::vector<double> StrikeTable::selected_stations() const {
  std::set<double> stations;
  for (const QTableWidgetItem* const cell : selectedItems()) {
    stations.insert(item(cell->row(), column_station)->data(number_role).toDouble());
  }
  return {stations.begin(), stations.end()};
}

void StrikeTable::copy_all() const {
  QStringList lines{headings.join('\t')};
  for (int row = 0; row < rowCount(); ++row) {
    QStringList texts;
    for (int column = 0; column < columnCount(); ++column) {
      texts.append(item(row, column)->text());
    }
    lines.append(texts.join('\t'));
  }
  QGuiApplication::clipboard()->setText(lines.join('\n'));
}
