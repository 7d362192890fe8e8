#include "tensor/windows/strike_table.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <algorithm>
#include <cmath>
#include <numeric>
#include <set>
#include <utility>

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

QString ey_text(const StationTensor& station) {
  QString sign = station.ey_turned ? "turned" : "as measured";
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

/// Sets a cell that isn't as it should be: a changed choice leaves most of a long table as it was.
void StrikeTable::put_text(int row, int column, const QString& text) {
  if (QTableWidgetItem* const cell = item(row, column); cell == nullptr) {
    setItem(row, column, new QTableWidgetItem(text));
  } else if (cell->text() != text) {
    cell->setText(text);
  }
}

void StrikeTable::put_number(int row, int column, const QString& text, double number) {
  QTableWidgetItem* const cell = item(row, column);
  if (cell == nullptr) {
    setItem(row, column, new NumberCell(text, number));
    return;
  }
  if (cell->text() != text) {
    cell->setText(text);
  }
  if (cell->data(number_role).toDouble() != number) {
    cell->setData(number_role, number);
  }
}

void StrikeTable::put_number(int row, int column, double number, const char* picture) {
  put_number(row, column, std::isnan(number) ? QString("-") : qt_text(format_number(number, picture)),
             number);
}

void StrikeTable::fill_row(int row, const StrikeStation& station, const StationStrike& shown) {
  const StationTensor& tensors = station.tensors;
  put_number(row, column_station, qt_text(station_text(tensors.station, tensors.name)), tensors.station);
  put_number(row, column_strike, shown.strike.strike.value, "0.0");
  put_number(row, column_other, shown.strike.alternative, "0.0");
  put_number(row, column_deviation, shown.strike.deviation, "0.0");
  put_number(row, column_used, static_cast<double>(shown.strike.used), "0");
  put_number(row, column_left_out, static_cast<double>(shown.strike.left_out), "0");
  put_number(row, column_skew, shown.median_skew, "0.0");
  put_text(row, column_ey, tensors.points.empty() ? QString("-") : ey_text(tensors));
  put_number(row, column_masked, static_cast<double>(shown.masked_diagonals), "0");
  const QString remarks = remarks_text(tensors);
  put_text(row, column_remarks, remarks);
  item(row, column_remarks)->setToolTip(plain_tool_tip(remarks));
}

/// The row of each station in the order that the table is sorted by; as they come where there are others.
/// @return whether the table has had these stations before
bool StrikeTable::take_stations(const std::vector<StrikeStation>& stations, std::vector<int>& rows) {
  rows.assign(stations.size(), -1);
  bool same = static_cast<std::size_t>(rowCount()) == stations.size();
  for (int row = 0; same && row < rowCount(); ++row) {
    const QTableWidgetItem* const cell = item(row, column_station);
    const auto index = static_cast<std::size_t>(cell->data(station_role).toULongLong());
    same = index < stations.size() && cell->data(number_role).toDouble() == stations[index].tensors.station;
    if (same) {
      rows[index] = row;
    }
  }
  if (same) {
    return true;
  }
  std::iota(rows.begin(), rows.end(), 0);
  setRowCount(0);
  setRowCount(static_cast<int>(stations.size()));
  return false;
}

void StrikeTable::show_stations(const std::vector<StrikeStation>& stations,
                                const std::optional<Module_tensor::StrikeSummary>& summary) {
  const std::vector<double> selected = selected_stations();
  setSortingEnabled(false);  // rows would move while they are filled in
  std::vector<int> rows;
  const bool same = take_stations(stations, rows);
  const StationStrike none;
  for (std::size_t i = 0; i < stations.size(); ++i) {
    fill_row(rows[i], stations[i], summary ? summary->stations[i] : none);
    item(rows[i], column_station)->setData(station_role, static_cast<qulonglong>(i));
  }
  setSortingEnabled(true);
  if (!same && !stations.empty() && std::exchange(columns_fitted_, true)) {
    fit_stations();  // another line may have longer names
  } else if (!same && !stations.empty()) {
    resizeColumnsToContents();
    fit_stations();
  }
  if (selected == selected_stations()) {
    return;
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

/// Each of them is bold when it is the current one.
void StrikeTable::fit_stations() {
  resizeColumnToContents(column_station);
  QFont bold = font();
  bold.setBold(true);
  int wider = 0;
  for (int row = 0; row < rowCount(); ++row) {
    const QString text = item(row, column_station)->text();
    wider =
        std::max(wider, QFontMetrics(bold).horizontalAdvance(text) - fontMetrics().horizontalAdvance(text));
  }
  setColumnWidth(column_station, columnWidth(column_station) + wider);
}

void StrikeTable::mark_station(std::optional<std::size_t> index) {
  for (int row = 0; row < rowCount(); ++row) {
    QTableWidgetItem* const cell = item(row, column_station);
    const bool shown = index && cell->data(station_role).toULongLong() == *index;
    if (cell->font().bold() != shown) {
      QFont font = cell->font();
      font.setBold(shown);
      cell->setFont(font);
    }
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
