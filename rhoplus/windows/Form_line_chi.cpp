#include "rhoplus/windows/Form_line_chi.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QScrollBar>
#include <QTableWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "core/file_names.h"
#include "core/finished_work.h"
#include "core/scope_guard.h"
#include "core/session_state.h"
#include "core/trap_errors.h"
#include "platform/files/safe_files.h"
#include "platform/widgets/copy_cells.h"
#include "platform/widgets/number_cell.h"
#include "platform/widgets/panel_controls.h"

using namespace Module_rhoplus;

namespace {

constexpr int column_station = 0;
constexpr int place_role = Qt::UserRole;  // of the station in the line's table, from 0

constexpr const char* hints[] = {
    "A click shows the station",
    "Name of the site",
    "Resistivities and phases that were inverted",
    "Misfit expected of data of this number with errors as given",
    "Least misfit of any one-dimensional model",
    "Far above 1 the data are not one-dimensional, or their errors are too small",
    "What has to be known of the station"};

QPushButton* make_button(const char* name, const char* caption, const char* tip) {
  auto* const button = named(new QPushButton(caption), name);
  button->setToolTip(tip);
  button->setAutoDefault(false);
  return button;
}

}  // namespace

Form_line_chi::Form_line_chi(QWidget* parent)
    : QDialog(parent, Qt::Window),
      Grid_chi_(named(new QTableWidget(0, static_cast<int>(std::size(chi_headings))), "Grid_chi")),
      Label_chi_summary_(named(new QLabel, "Label_chi_summary")) {
  setObjectName("Form_line_chi");
  for (int column = 0; column < Grid_chi_->columnCount(); ++column) {
    auto* const heading = new QTableWidgetItem(chi_headings[column]);
    heading->setToolTip(hints[column]);
    Grid_chi_->setHorizontalHeaderItem(column, heading);
  }
  Grid_chi_->setAccessibleName("Chi by station");
  Grid_chi_->setToolTip("A click shows the station; a click on a heading sorts by its column");
  Grid_chi_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  Grid_chi_->setSelectionBehavior(QAbstractItemView::SelectRows);
  Grid_chi_->setTabKeyNavigation(false);
  Grid_chi_->setWordWrap(false);
  Grid_chi_->verticalHeader()->hide();
  Grid_chi_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
  Grid_chi_->horizontalHeader()->setHighlightSections(false);  // bold headings would be cut
  // The stretched one is never narrower than this, and needs no more than its text.
  Grid_chi_->horizontalHeader()->setDefaultSectionSize(Grid_chi_->horizontalHeader()->minimumSectionSize());
  Grid_chi_->horizontalHeader()->setStretchLastSection(true);
  Grid_chi_->horizontalHeader()->setSortIndicator(column_station, Qt::AscendingOrder);
  make_cells_copyable(*Grid_chi_);
  connect(Grid_chi_, &QTableWidget::currentCellChanged, this, [this](int row) {
    if (row >= 0 && !filling_) {
      const auto place = Grid_chi_->item(row, column_station)->data(place_role).toULongLong();
      Q_EMIT station_chosen(stations_.at(place).station_index);
    }
  });

  auto* const copy = make_button("Command_copy_table", "&Copy table",
                                 "Puts the table on the clipboard, to be pasted into a spreadsheet");
  connect(copy, &QPushButton::clicked, this,
          [this] { QGuiApplication::clipboard()->setText(qt_text(shown_text())); });
  auto* const save = make_button("Command_save_table", "&Save table...",
                                 "Writes the table to a text file, tabs between its columns");
  connect(save, &QPushButton::clicked, this, &Form_line_chi::save);
  auto* const done = make_button("Command_done", "&Done", "Closes the table (Esc)");
  connect(done, &QPushButton::clicked, this, &QDialog::accept);

  auto* const buttons = new QHBoxLayout;
  buttons->addWidget(copy);
  buttons->addWidget(save);
  buttons->addStretch();
  buttons->addWidget(done);
  auto* const rows = new QVBoxLayout(this);
  rows->addWidget(Grid_chi_);
  rows->addWidget(Label_chi_summary_);
  rows->addLayout(buttons);
  resize_to_fit(*this, {fontMetrics().averageCharWidth() * 90, fontMetrics().height() * 28});
}

void Form_line_chi::show_line(const QString& line, std::vector<StationChi> stations, bool complete) {
  line_ = line;
  stations_ = std::move(stations);
  setWindowTitle("Rhoplus chi of line " + line);
  Label_chi_summary_->setText(QString(complete ? "" : "Stopped before the end of the line: ") +
                              qt_text(chi_summary(stations_)));
  fill();
  if (!isVisible()) {  // later its size is the user's
    widen();
  }
}

/// To the width of all columns, or of the screen. The header can't be asked: its last section is stretched.
void Form_line_chi::widen() {
  const QAbstractItemView& cells = *Grid_chi_;
  int columns = 0;
  for (int column = 0; column < Grid_chi_->columnCount(); ++column) {
    columns +=
        std::max(cells.sizeHintForColumn(column) + 1, Grid_chi_->horizontalHeader()->sectionSizeHint(column));
  }
  const QMargins margins = layout()->contentsMargins();
  const int beside = margins.left() + margins.right() + 2 * Grid_chi_->frameWidth() +
                     Grid_chi_->verticalScrollBar()->sizeHint().width();
  resize_to_fit(*this, {std::max(width(), columns + beside), height()});
}

void Form_line_chi::fill() {
  const ScopedValue filling(filling_, true);
  Grid_chi_->setSortingEnabled(false);  // rows would move while they are filled in
  Grid_chi_->setRowCount(0);
  Grid_chi_->setRowCount(static_cast<int>(stations_.size()));
  for (int row = 0; row < Grid_chi_->rowCount(); ++row) {
    const StationChi& station = stations_[static_cast<std::size_t>(row)];
    const std::vector<std::string> texts = chi_row(station);
    const double none = std::numeric_limits<double>::quiet_NaN();
    const double numbers[] = {
        station.station, none, static_cast<double>(station.used_values), station.target, station.achieved,
        station.ratio(), none};
    for (int column = 0; column < Grid_chi_->columnCount(); ++column) {
      const auto index = static_cast<std::size_t>(column);
      const QString text = qt_text(texts[index]);
      const bool is_text = column == 1 || column == Grid_chi_->columnCount() - 1;
      QTableWidgetItem* const cell =
          is_text ? new QTableWidgetItem(text) : new NumberCell(text, numbers[index]);
      cell->setData(place_role, row);
      Grid_chi_->setItem(row, column, cell);
    }
  }
  Grid_chi_->setSortingEnabled(true);
  Grid_chi_->resizeColumnsToContents();
}

void Form_line_chi::mark_station(std::int32_t station_index) {
  const ScopedValue filling(filling_, true);
  for (int row = 0; row < Grid_chi_->rowCount(); ++row) {
    const auto place = Grid_chi_->item(row, column_station)->data(place_role).toULongLong();
    if (stations_.at(place).station_index == station_index) {
      if (row != Grid_chi_->currentRow()) {
        Grid_chi_->setCurrentCell(row, column_station);
      }
      return;
    }
  }
}

/// In the order on the screen.
std::string Form_line_chi::shown_text() const {
  std::vector<StationChi> shown;
  shown.reserve(stations_.size());
  for (int row = 0; row < Grid_chi_->rowCount(); ++row) {
    shown.push_back(stations_.at(Grid_chi_->item(row, column_station)->data(place_role).toULongLong()));
  }
  return chi_table_text(shown);
}

void Form_line_chi::save() {
  std::string path =
      Module_util::directory_of(session().database_file) + line_.toStdString() + "_rhoplus_chi.txt";
  if (Module_util::select_output_file(path, "Save the table", "Text files (*.txt)|*.txt") != 0 ||
      path.empty()) {
    return;
  }
  if (trap_errors("An error occurred while saving the table: ",
                  [&] { safe_files::write_into_place(path, shown_text()); }) == 0) {
    Label_chi_summary_->setText("The table is written to " + qt_text(path));
    Module_Brenlox::tell_finished("Chi by station is written to " + path, path);
  }
}
