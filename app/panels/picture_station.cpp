#include "app/panels/picture_station.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/panels/mode_legend.h"
#include "app/panels/station_heading.h"
#include "app/panels/use_switches.h"
#include "core/number_text.h"
#include "core/scope_guard.h"
#include "core/session_state.h"
#include "display/mask_commands.h"
#include "display/point_texts.h"
#include "display/station_plot.h"
#include "platform/widgets/entry_mark.h"
#include "platform/widgets/heading_label.h"
#include "platform/widgets/panel_controls.h"
#include "reduction/data_sets/data_sets.h"
#include "reduction/edits/masks.h"

using namespace Module_display_data;
namespace averaged = Module_averaged_data;

StationPanel::StationPanel(QWidget* parent)
    : QWidget(parent),
      graphs_(new GraphPairWidget("vxgraph_station", GraphPairWidget::XAxis::frequency)),
      Label_station_(named(new HeadingLabel, "Label_station")),
      Label_station_graph_(named(new HeadingLabel, "Label_station_graph")),
      Label_station_modes_(make_mode_legend("Label_station_modes")),
      Check_use_merged_(make_use_switches("Check_use_merged")),
      Text_static_(make_text("Text_static", 8)),
      Check_multi_station_(named(new QCheckBox("&Neighbours"), "Check_multi_station")),
      Check_multi_all_(named(new QCheckBox("&All"), "Check_multi_all")),
      Text_multi_count_(make_text("Text_multi_count", 3)),
      Combo_multi_side_(make_list("Combo_multi_side")),
      Command_invert_(named(new QPushButton("Invert"), "Command_invert")) {
  Text_static_->setToolTip("Static shift factor: multiplies the resistivities of the merged curve");
  Check_multi_station_->setToolTip(
      "Show the merged curves of neighbouring stations in place of the averages");
  Check_multi_all_->setToolTip("All stations of the line");
  Command_invert_->setToolTip("One-dimensional inversion of the merged curve");
  Text_multi_count_->setText("2");
  Text_multi_count_->setToolTip("Stations on each side");
  Text_multi_count_->setAccessibleName("Neighbours on each side");
  Combo_multi_side_->setAccessibleName("Side of the neighbours");
  Combo_multi_side_->setToolTip("On which side of the station the neighbours stand");
  Combo_multi_side_->addItems({"Both", "Before", "After"});
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 2, 0, 0);
  rows->setSpacing(4);
  rows->addLayout(make_headings());
  rows->addWidget(graphs_, 1);
  rows->addLayout(make_switches());
  rows->addLayout(make_neighbours());
  graphs_->set_point_text(station_point_text);
  connect_controls();
}

QHBoxLayout* StationPanel::make_headings() {
  auto* const row = new QHBoxLayout;
  row->addWidget(Label_station_, 3);
  row->addWidget(Label_station_modes_);
  Label_station_graph_->setAlignment(Qt::AlignRight);
  row->addWidget(Label_station_graph_, 2);
  return row;
}

QHBoxLayout* StationPanel::make_switches() {
  auto* const row = new QHBoxLayout;
  for (QCheckBox* const box : Check_use_merged_) {
    row->addWidget(box);
  }
  row->addStretch();
  add_labelled(*row, "Stati&c", Text_static_);
  return row;
}

QHBoxLayout* StationPanel::make_neighbours() {
  auto* const row = new QHBoxLayout;
  row->addWidget(Check_multi_station_);
  row->addWidget(Text_multi_count_);
  row->addWidget(Combo_multi_side_);
  row->addWidget(Check_multi_all_);
  row->addStretch();
  row->addWidget(Command_invert_);
  return row;
}

void StationPanel::connect_controls() {
  for (std::size_t index = 0; index < Check_use_merged_.size(); ++index) {
    connect(Check_use_merged_[index], &QCheckBox::toggled, this, [this, index](bool use) {
      if (session().updating_controls || session().current_station_index < 1) {
        return;
      }
      if (averaged::set_merged_use(static_cast<averaged::UseFlag>(index), use) == averaged::Edit::changed) {
        Q_EMIT edited();
      } else {
        show_merged_switches();  // as they are stored
      }
    });
  }
  connect(Command_invert_, &QPushButton::clicked, this, &StationPanel::inversion_wanted);
  Text_static_->installEventFilter(this);
  connect(Text_static_, &QLineEdit::editingFinished, this, &StationPanel::leave_static_factor);
  connect(Text_static_, &QLineEdit::textEdited, this, [this] { mark_entry(*Text_static_, static_fault()); });
  connect(Text_static_, &QLineEdit::returnPressed, this, [this] {
    if (is_marked(*Text_static_)) {
      Text_static_->selectAll();  // to be corrected
    } else {
      Q_EMIT static_factor_entered();
    }
  });
  for (const QCheckBox* const box : {Check_multi_station_, Check_multi_all_}) {
    connect(box, &QCheckBox::toggled, this, [this] { Q_EMIT chosen(neighbours_changed()); });
  }
  connect(Combo_multi_side_, &QComboBox::currentIndexChanged, this,
          [this] { Q_EMIT chosen(neighbours_changed()); });
  connect(Text_multi_count_, &QLineEdit::textChanged, this, [this](const QString& text) {
    if (is_numeric(text.toStdString()) && numeric_value(text.toStdString()) >= 0.0) {
      Q_EMIT chosen(neighbours_changed());
    }
  });
}

/// Escape leaves what was typed as the factor, and shows the one that is stored. What is marked in the graphs
/// waits for the next Escape, whose shortcut would take the typed factor first.
bool StationPanel::eventFilter(QObject* receiver, QEvent* event) {
  const bool key = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
  if (receiver != Text_static_ || !key || static_cast<const QKeyEvent*>(event)->key() != Qt::Key_Escape) {
    return QWidget::eventFilter(receiver, event);
  }
  if (event->type() == QEvent::ShortcutOverride) {
    if (!static_factor_typed()) {
      return false;
    }
    event->accept();
  } else {
    show_merged_switches();
    Text_static_->selectAll();
  }
  return true;
}

/// The shown text has two decimals, the factor may have more.
bool StationPanel::static_factor_typed() const {
  return Text_static_->isModified() || Text_static_->text() != shown_static_;
}

/// Why the text in the box is no factor; empty if it is one.
QString StationPanel::static_fault() const {
  const QString text = Text_static_->text();
  return is_static_factor(text.toStdString())
             ? QString()
             : QString("Static shift factor: \"%1\" is not a number above 0").arg(text.trimmed());
}

void StationPanel::leave_static_factor() {
  if (!static_factor_typed()) {
    return;  // passing by must not cut off decimals
  }
  const QString fault = static_fault();
  mark_entry(*Text_static_, fault);
  if (!fault.isEmpty()) {
    Q_EMIT told(fault + "; the factor is still " + shown_static_);
    return;
  }
  const averaged::Edit edit = enter_static_factor(Text_static_->text().toStdString());
  if (edit == averaged::Edit::changed) {
    Q_EMIT static_factor_changed();
  } else if (edit == averaged::Edit::failed) {
    show_merged_switches();  // as they are stored
  }
}

void StationPanel::display_station_data(bool fixed_scale) {
  show_station_heading(*Label_station_, station_label(Modes::both));
  show_series({});
  graphs_->show_plot(station_plot(fixed_scale, Modes::both));
  show_modes(*Label_station_modes_, averaged::data_sets().station.key.data_type,
             !other_mode().station.slots.empty());
}

void StationPanel::show_merged_switches() {
  const ScopedValue updating(session().updating_controls, true);
  const auto& columns = averaged::data_sets().profile.columns;
  const std::int32_t number = session().current_profile_column;
  const bool found = number > 0 && std::cmp_less_equal(number, columns.size());
  const averaged::ProfileColumn column =
      found ? columns[static_cast<std::size_t>(number) - 1] : averaged::ProfileColumn();
  show_use_switches(Check_use_merged_, column.UseReading, column.UseResistivity, column.UsePhase);
  for (QCheckBox* const box : Check_use_merged_) {
    box->setEnabled(found);
  }
  Text_static_->setEnabled(found);
  shown_static_ = found ? qt_text(format_number(column.ResOffset, "0.00")) : QString();
  Text_static_->setText(shown_static_);
  mark_entry(*Text_static_, {});
}

void StationPanel::show_series(const std::string& label) { show_curve_heading(*Label_station_graph_, label); }

std::string StationPanel::series() const { return Label_station_graph_->text().toStdString(); }

void StationPanel::clear() {
  graphs_->clear();
  Label_station_->clear();
  show_series({});
}

NeighbourOptions StationPanel::neighbours() {
  NeighbourOptions options;
  options.show = Check_multi_station_->isChecked();
  options.all = Check_multi_all_->isChecked();
  options.side = static_cast<averaged::NeighbourSide>(Combo_multi_side_->currentIndex());
  if (options.show && !options.all) {
    std::string count = Text_multi_count_->text().toStdString();
    options.count = neighbour_count_of(count);
    const ScopedValue updating(session().updating_controls, true);
    Text_multi_count_->setText(qt_text(count));
  }
  return options;
}
