#include "app/panels/picture_repeats.h"

#include <QColor>
#include <QTableWidget>
#include <QVBoxLayout>

#include "core/number_text.h"
#include "display/both_modes.h"
#include "display/plot_colours.h"
#include "platform/widgets/check_cells.h"
#include "platform/widgets/panel_controls.h"
#include "reduction/data_sets/data_sets.h"
#include "reduction/edits/masks.h"

namespace averaged = Module_averaged_data;

namespace {

/// As the graph has it: with two modes on show all repeats have the colour of theirs.
graph::Colour colour_of(int repeat) {
  return Module_display_data::other_mode().repeats.slots.empty()
             ? Module_display_data::repeat_colour(repeat)
             : Module_display_data::pale_mode_colour(averaged::data_sets().repeats.key.data_type);
}

QTableWidgetItem* legend_cell(int repeat) {
  const graph::Colour colour = colour_of(repeat);
  const QColor background(colour.red, colour.green, colour.blue);
  auto* const cell = new QTableWidgetItem(qt_text(format_number(repeat, "0")));
  cell->setFlags(Qt::ItemIsEnabled);
  cell->setTextAlignment(Qt::AlignCenter);
  cell->setBackground(background);
  // Luma of Rec. 601; qGray takes bright green for dark.
  const double luma = 0.299 * background.red() + 0.587 * background.green() + 0.114 * background.blue();
  constexpr double middle = 128.0;
  cell->setForeground(luma < middle ? Qt::white : Qt::black);
  return cell;
}

}  // namespace

RepeatsPanel::RepeatsPanel(QWidget* parent)
    : QWidget(parent), Grid_repeats_(make_switch_grid("Grid_repeats", {"", "Data", "Res", "Phz"})) {
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->addWidget(Grid_repeats_);
  Grid_repeats_->setAccessibleName("Repeats");
  Grid_repeats_->setMinimumHeight(70);
  Grid_repeats_->setToolTip("Click into a column to leave the repeat, or a part of it, out of the average");
  connect_switches(*Grid_repeats_, this, [this](int row, int column) { switch_cell(row, column); });
}

void RepeatsPanel::show_repeats() {
  const auto& readings = averaged::data_sets().repeats.slots;
  Grid_repeats_->setRowCount(readings.empty() ? 0 : static_cast<int>(readings.size()) - 1);
  for (int row = 0; row < Grid_repeats_->rowCount(); ++row) {
    const averaged::StoredReading& reading = readings[static_cast<std::size_t>(row) + 1].reading;
    Grid_repeats_->setItem(row, 0, legend_cell(row + 1));
    Grid_repeats_->setItem(row, 1, make_check_cell(reading.UseReading));
    Grid_repeats_->setItem(row, 2, make_check_cell(reading.UseResistivity));
    Grid_repeats_->setItem(row, 3, make_check_cell(reading.UsePhase));
  }
}

void RepeatsPanel::switch_cell(int row, int column) {
  if (column < 1) {
    return;
  }
  const bool use = !is_checked(*Grid_repeats_->item(row, column));
  if (averaged::set_repeat_use(static_cast<std::size_t>(row) + 1, static_cast<averaged::UseFlag>(column - 1),
                               use) == averaged::Edit::changed) {
    Q_EMIT edited();
  }
}
