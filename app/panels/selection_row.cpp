#include "app/panels/selection_row.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QVBoxLayout>
#include <algorithm>

#include "core/absent_value.h"
#include "core/number_text.h"
#include "core/scope_guard.h"
#include "core/session_state.h"
#include "display/site_names.h"
#include "platform/widgets/horizontal_bar.h"
#include "platform/widgets/panel_controls.h"

using namespace Module_display_data;

namespace {

/// The bar through the stations of a line. It is disabled during a step. QScrollBar would then stop repeating
/// while its arrow is held down, which is how users walk along the line.
class StationBar final : public HorizontalBar {
 protected:
  void changeEvent(QEvent* event) override {
    if (event->type() == QEvent::EnabledChange) {
      QWidget::changeEvent(event);  // NOLINT(bugprone-parent-virtual-call): past the slider's own
    } else {
      HorizontalBar::changeEvent(event);
    }
  }
};

}  // namespace

SelectionRow::SelectionRow(QWidget* parent)
    : QWidget(parent),
      Combo_line_(make_list("Combo_line")),
      Text_sample_station_(make_text("Text_sample_station", 8, true)),
      Text_site_name_(make_text("Text_site_name", 12, true)),
      HScroll_repeat_(named(new StationBar, "HScroll_repeat")),
      Combo_reference_type_(make_list("Combo_reference_type")),
      Combo_data_type_(make_list("Combo_data_type")),
      Combo_dipole_(make_list("Combo_dipole")),
      Text_frequency_(make_text("Text_frequency", 11)),
      Text_event_(make_text("Text_event", 5, true)),
      Text_file_(named(new QLineEdit, "Text_file")),
      Check_hide_masked_data_(named(new QCheckBox("Hide &masked"), "Check_hide_masked_data")),
      Check_fixed_scale_(named(new QCheckBox("Fi&xed scale"), "Check_fixed_scale")),
      Check_by_distance_(named(new QCheckBox("&By distance"), "Check_by_distance")) {
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(4);
  rows->addLayout(make_selection());
  rows->addLayout(make_read_outs());
  add_tool_tips();
  connect_controls();
}

void SelectionRow::add_tool_tips() {
  Combo_line_->setToolTip("The line whose profile is shown");
  Text_sample_station_->setToolTip("The station that is shown, m");
  Combo_reference_type_->setToolTip("How the readings were referenced");
  Combo_data_type_->setToolTip(
      "The tensor element that is shown; a two-dimensional inversion takes EyHx for TE and ExHy for TM");
  Combo_dipole_->setToolTip("Dipole length of the readings");
  Text_frequency_->setToolTip(
      "Frequency of the point clicked last; commands by frequency act from here, also from a typed one");
  Text_event_->setToolTip("Event of the point clicked last");
  Text_file_->setToolTip("Field file of the point clicked last");
  Check_hide_masked_data_->setToolTip("Leave masked points out of the graphs");
  Check_fixed_scale_->setToolTip("The same axes for all stations of the line");
  Check_by_distance_->setToolTip(
      "The profile by metres along the line, from the places of its sites, not by station numbers");
}

QHBoxLayout* SelectionRow::make_selection() {
  auto* const row = new QHBoxLayout;
  add_labelled(*row, "&Line", Combo_line_);
  add_labelled(*row, "Station", Text_sample_station_);
  Text_site_name_->setAccessibleName("Site");
  Text_site_name_->hide();
  row->addWidget(Text_site_name_);
  HScroll_repeat_->setRange(1, 1);
  HScroll_repeat_->setFocusPolicy(Qt::StrongFocus);
  HScroll_repeat_->setToolTip("Stations of the line (Left, Right)");
  HScroll_repeat_->setAccessibleName("Stations of the line");
  row->addWidget(HScroll_repeat_, 1);
  add_labelled(*row, "&Reference", Combo_reference_type_);
  add_labelled(*row, "Data t&ype", Combo_data_type_);
  add_labelled(*row, "D&ipole (m)", Combo_dipole_);
  return row;
}

QHBoxLayout* SelectionRow::make_read_outs() {
  auto* const row = new QHBoxLayout;
  add_labelled(*row, "Fre&quency (Hz)", Text_frequency_);
  add_labelled(*row, "Event", Text_event_);
  Text_file_->setReadOnly(true);
  Text_file_->setFocusPolicy(Qt::ClickFocus);
  add_labelled(*row, "File", Text_file_);
  row->setStretchFactor(Text_file_, 1);
  row->addSpacing(12);
  row->addWidget(Check_hide_masked_data_);
  row->addWidget(Check_fixed_scale_);
  row->addWidget(Check_by_distance_);
  return row;
}

void SelectionRow::connect_controls() {
  connect(Combo_line_, &QComboBox::currentIndexChanged, this, [this](int index) {
    Q_EMIT chosen(choose_line(index, Combo_line_->itemText(index).toStdString()));
  });
  connect(Combo_data_type_, &QComboBox::currentTextChanged, this,
          [this](const QString& text) { Q_EMIT chosen(choose_data_type(text.toStdString())); });
  connect(Combo_reference_type_, &QComboBox::currentIndexChanged, this, [this](int index) {
    if (!session().updating_controls) {
      Q_EMIT chosen(choose_reference_type(Combo_reference_type_->itemData(index).toInt()));
    }
  });
  connect(Combo_dipole_, &QComboBox::currentIndexChanged, this,
          [this](int index) { Q_EMIT chosen(choose_dipole(Combo_dipole_->itemData(index).toFloat())); });
  connect(HScroll_repeat_, &QScrollBar::valueChanged, this, &SelectionRow::go_to_place);
  connect(Check_fixed_scale_, &QCheckBox::toggled, this, [this] { Q_EMIT chosen(fixed_scale_changed()); });
  connect(Check_by_distance_, &QCheckBox::clicked, this, [this](bool checked) {
    Q_EMIT positions_chosen(checked ? PositionSource::distances : PositionSource::station_numbers);
  });
  connect(Check_hide_masked_data_, &QCheckBox::toggled, this,
          [this](bool hide) { Q_EMIT chosen(choose_hide_masked(hide)); });
}

void SelectionRow::go_to_place(int place_in_line) {
  if (session().updating_controls) {
    return;
  }
  const bool focused = HScroll_repeat_->hasFocus();
  HScroll_repeat_->setEnabled(false);  // a slow step must not be overtaken by the next
  Q_EMIT chosen(choose_station_in_line(place_in_line));
  HScroll_repeat_->setEnabled(true);
  if (focused) {
    HScroll_repeat_->setFocus();
  }
}

void SelectionRow::fill(const SelectionLists& lists) {
  const ScopedValue updating(session().updating_controls, true);
  for (QComboBox* const list : {Combo_line_, Combo_reference_type_, Combo_data_type_, Combo_dipole_}) {
    list->clear();
  }
  for (const std::string& line : lists.lines) {
    Combo_line_->addItem(qt_text(line));
  }
  for (const ReferenceTypeItem& item : lists.reference_types) {
    Combo_reference_type_->addItem(qt_text(item.text), item.reference_type);
  }
  for (const std::string& data_type : lists.data_types) {
    Combo_data_type_->addItem(qt_text(data_type));
  }
  for (const float dipole : lists.dipoles) {
    Combo_dipole_->addItem(qt_text(plain_text(dipole)), dipole);
  }
  Check_hide_masked_data_->setChecked(session().hide_masked_data);
  Text_site_name_->setVisible(any_site_names());
  show_read_out({});
  show_station();
}

void SelectionRow::show_station() {
  const ScopedValue updating(session().updating_controls, true);
  Combo_line_->setCurrentIndex(session().line_count > 0 ? session().current_line_index - 1 : -1);
  Combo_reference_type_->setCurrentIndex(Combo_reference_type_->findData(session().current_reference_type));
  Combo_data_type_->setCurrentIndex(Combo_data_type_->findText(qt_text(session().current_data_type)));
  Combo_dipole_->setCurrentIndex(Combo_dipole_->findData(session().current_dipole));
  const int stations = std::max(session().stations_in_line, 1);
  HScroll_repeat_->setRange(1, stations);
  HScroll_repeat_->setPageStep(std::max(stations / 10, 1));
  HScroll_repeat_->setValue(std::max(place_in_line(), 1));
  const bool selected = session().current_station_index > 0 && !is_absent(session().current_station);
  Text_sample_station_->setText(selected ? qt_text(plain_text(session().current_station)) : QString());
  show_site_name();
}

void SelectionRow::show_site_name() {
  const QString name = qt_text(site_name(session().current_station_index));
  const int room = Text_site_name_->width() - Text_site_name_->fontMetrics().horizontalAdvance("00");
  Text_site_name_->setText(Text_site_name_->fontMetrics().elidedText(name, Qt::ElideRight, room));
  Text_site_name_->setToolTip(
      plain_tool_tip("The site, as its file names it" + (name.isEmpty() ? name : ": " + name)));
}

void SelectionRow::show_read_out(const PointClick& click) {
  Text_frequency_->setText(qt_text(click.frequency_text));
  Text_event_->setText(qt_text(click.event_text));
  Text_file_->setText(qt_text(click.file_text));
  Text_file_->setCursorPosition(0);
}

PointClick SelectionRow::read_out() const {
  PointClick shown;
  shown.frequency_text = frequency_text();
  shown.event_text = Text_event_->text().toStdString();
  shown.file_text = Text_file_->text().toStdString();
  return shown;
}

std::string SelectionRow::frequency_text() const { return Text_frequency_->text().toStdString(); }

void SelectionRow::show_by_distance(bool by_distance) { Check_by_distance_->setChecked(by_distance); }

bool SelectionRow::fixed_scale() const { return Check_fixed_scale_->isChecked(); }

void SelectionRow::focus_stations() { HScroll_repeat_->setFocus(); }

void SelectionRow::step_station(int step) { HScroll_repeat_->setValue(HScroll_repeat_->value() + step); }
