#include "app/panels/picture_raw_data.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/panels/mode_legend.h"
#include "app/panels/picture_repeats.h"
#include "app/panels/picture_stats.h"
#include "app/panels/station_heading.h"
#include "app/panels/use_switches.h"
#include "core/number_text.h"
#include "core/scope_guard.h"
#include "core/session_state.h"
#include "display/point_texts.h"
#include "display/raw_plot.h"
#include "platform/widgets/heading_label.h"
#include "platform/widgets/panel_controls.h"
#include "platform/widgets/scroll_column.h"
#include "reduction/data_sets/data_sets.h"
#include "reduction/edits/masks.h"

using namespace Module_display_data;
namespace averaged = Module_averaged_data;

RawPanel::RawPanel(QWidget* parent)
    : QWidget(parent),
      graphs_(new GraphPairWidget("vxgraph_raw_data", GraphPairWidget::XAxis::frequency)),
      Label_raw_(named(new HeadingLabel, "Label_raw")),
      Label_raw_graph_(named(new HeadingLabel, "Label_raw_graph")),
      Label_raw_modes_(make_mode_legend("Label_raw_modes")),
      Combo_scan_rate_(make_list("Combo_scan_rate")),
      Command_show_plan_(named(new QPushButton("Show &Plan"), "Command_show_plan")),
      Check_use_average_(make_use_switches("Check_use_average")),
      repeats_(named(new RepeatsPanel, "Picture_repeats")),
      stats_(named(new StatsPanel, "Picture_stats")) {
  Combo_scan_rate_->setToolTip("The scan rate whose repeats are shown");
  Command_show_plan_->setToolTip("Shows where the stations are in place of the repeats");
  auto* const headings = new QHBoxLayout;
  headings->addWidget(Label_raw_, 3);
  headings->addWidget(Label_raw_modes_);
  Label_raw_graph_->setAlignment(Qt::AlignRight);
  headings->addWidget(Label_raw_graph_, 2);
  auto* const left = new QVBoxLayout;
  left->setSpacing(4);
  left->addLayout(headings);
  left->addWidget(graphs_, 1);
  auto* const columns = new QHBoxLayout(this);
  columns->setContentsMargins(0, 2, 0, 0);
  columns->addLayout(left, 1);
  auto* const side = new ScrollColumn;
  side->setWidget(make_side());
  columns->addWidget(side);
  graphs_->set_point_text(raw_point_text);
  connect_controls();
}

QWidget* RawPanel::make_side() {
  auto* const side = new QWidget;
  auto* const rows = new QVBoxLayout(side);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(4);
  auto* const scan_rate = new QHBoxLayout;
  add_labelled(*scan_rate, "Scan rate (H&z)", Combo_scan_rate_);
  scan_rate->setStretchFactor(Combo_scan_rate_, 1);
  rows->addLayout(scan_rate);
  rows->addWidget(Command_show_plan_);
  auto* const average = new QLabel("Average");
  rows->addWidget(average);
  auto* const switches = new QHBoxLayout;
  for (QCheckBox* const box : Check_use_average_) {
    switches->addWidget(box);
  }
  rows->addLayout(switches);
  rows->addWidget(repeats_, 1);
  rows->addWidget(stats_);
  constexpr int digits = 34;  // three check boxes in a row
  repeats_->setFixedWidth(fontMetrics().horizontalAdvance('0') * digits);
  return side;
}

void RawPanel::connect_controls() {
  connect(Combo_scan_rate_, &QComboBox::currentTextChanged, this, [this](const QString& text) {
    if (!session().updating_controls) {
      Q_EMIT chosen(choose_scan_rate(text.toStdString()));
    }
  });
  connect(Command_show_plan_, &QPushButton::clicked, this, &RawPanel::plan_wanted);
  for (std::size_t index = 0; index < Check_use_average_.size(); ++index) {
    connect(Check_use_average_[index], &QCheckBox::toggled, this, [this, index](bool use) {
      if (session().updating_controls || session().current_station_index < 1) {
        return;
      }
      if (averaged::set_repeat_use(0, static_cast<averaged::UseFlag>(index), use) ==
          averaged::Edit::changed) {
        Q_EMIT edited();
      } else {
        show_average_switches();  // as they are stored
      }
    });
  }
  connect(repeats_, &RepeatsPanel::edited, this, &RawPanel::edited);
  connect(stats_, &StatsPanel::edited, this, &RawPanel::edited);
}

bool RawPanel::display_raw_data(bool fixed_scale) {
  show_station_heading(*Label_raw_, raw_label());
  show_series({});
  show_scan_rates();
  graphs_->show_plot(raw_plot(fixed_scale, Modes::both));
  show_modes(*Label_raw_modes_, averaged::data_sets().repeats.key.data_type,
             !other_mode().repeats.slots.empty());
  show_average_switches();
  repeats_->show_repeats();
  return !averaged::data_sets().repeats.slots.empty();
}

void RawPanel::show_scan_rates() {
  const ScopedValue updating(session().updating_controls, true);
  QStringList rates;
  for (const float rate : averaged::data_sets().station.scan_rates) {
    rates.append(qt_text(plain_text(rate)));
  }
  QStringList present;
  for (int index = 0; index < Combo_scan_rate_->count(); ++index) {
    present.append(Combo_scan_rate_->itemText(index));
  }
  if (rates != present) {
    Combo_scan_rate_->clear();
    Combo_scan_rate_->addItems(rates);
  }
  const QString current = qt_text(plain_text(static_cast<float>(session().current_scan_rate)));
  Combo_scan_rate_->setPlaceholderText(current);  // this station may lack it
  Combo_scan_rate_->setCurrentIndex(Combo_scan_rate_->findText(current));
}

void RawPanel::show_average_switches() {
  const ScopedValue updating(session().updating_controls, true);
  const auto& readings = averaged::data_sets().repeats.slots;
  const bool found = !readings.empty() && readings.front().reading.ID != 0;
  const averaged::StoredReading average = found ? readings.front().reading : averaged::StoredReading();
  show_use_switches(Check_use_average_, average.UseReading, average.UseResistivity, average.UsePhase);
  for (QCheckBox* const box : Check_use_average_) {
    box->setEnabled(found);
  }
}

void RawPanel::show_series(const std::string& label) { show_curve_heading(*Label_raw_graph_, label); }

std::string RawPanel::series() const { return Label_raw_graph_->text().toStdString(); }
