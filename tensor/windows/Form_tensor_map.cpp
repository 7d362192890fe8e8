#include "tensor/windows/Form_tensor_map.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>
#include <QStatusBar>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "core/file_names.h"
#include "core/finished_work.h"
#include "core/session_state.h"
#include "core/trap_errors.h"
#include "core/user_interface.h"
#include "platform/graph/painted_file.h"
#include "platform/widgets/panel_controls.h"
#include "platform/widgets/scroll_column.h"
#include "tensor/windows/map_controls.h"
#include "tensor/windows/map_picture.h"
#include "tensor/windows/map_view.h"

using namespace Module_tensor;
using Module_averaged_data::Outcome;

namespace {

constexpr QSize design_size(1180, 760);

std::string heading_of(const LineChoice& choice, bool all_lines, bool some_unread) {
  return !all_lines ? "Line " + choice.line : some_unread ? "Some of the lines" : "All lines";
}

/// Whether both are the same plan, so that the part in view stays. Another projection moves all sites.
bool same_plan(const MapContents& one, const MapContents& other) {
  if (one.heading != other.heading || one.map.sites.empty()) {
    return false;
  }
  const MapSite& site = one.map.sites.front();
  const auto same = std::ranges::find(other.map.sites, site.station.StationID,
                                      [](const MapSite& candidate) { return candidate.station.StationID; });
  return same != other.map.sites.end() && same->east == site.east && same->north == site.north;
}

std::string empty_note(const LineChoice& choice, const SiteMap& map) {
  if (choice.line.empty()) {
    return "Open a survey and choose a station: the map shows its line";
  }
  return map.without_place.empty() ? "Line " + choice.line + " has no stations with curves of this kind"
                                   : "None of the stations has a place";
}

}  // namespace

Form_tensor_map::Form_tensor_map(ShownLine& shown, QWidget* parent)
    : QDialog(parent, Qt::Window),
      shown_(shown),
      controls_(new MapControls),
      view_(new MapView),
      Slider_map_period_(named(new QSlider(Qt::Horizontal), "Slider_map_period")),
      Label_map_period_(named(new QLabel, "Label_map_period")),
      Label_map_remarks_(named(new QLabel, "Label_map_remarks")),
      Status_map_(named(new QStatusBar, "Status_map")) {
  setObjectName("Form_tensor_map");
  setWindowTitle("Map of Phase Tensors and Induction Arrows");
  lay_out();
  connect_controls();
  follow_line();
}

void Form_tensor_map::lay_out() {
  auto* const period_row = new QHBoxLayout;
  period_row->addWidget(Label_map_period_);
  period_row->addWidget(Slider_map_period_, 1);
  Label_map_period_->setMinimumWidth(fontMetrics().horizontalAdvance("Period 0.00001234 s (81030 Hz)"));
  Slider_map_period_->setToolTip(
      "Period of the map, the shortest one at the left (arrow keys, Page Up and Page Down, or the wheel)");
  Slider_map_period_->setAccessibleName("Period");
  Slider_map_period_->setTickPosition(QSlider::TicksBelow);
  Label_map_remarks_->setWordWrap(true);
  auto* const right = new QVBoxLayout;
  right->addWidget(view_, 1);
  right->addLayout(period_row);
  right->addWidget(Label_map_remarks_);
  auto* const column = new ScrollColumn;
  column->setWidget(controls_);
  auto* const parts = new QHBoxLayout;
  parts->addWidget(column);
  parts->addLayout(right, 1);
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(6, 6, 6, 2);
  rows->addLayout(parts, 1);
  rows->addWidget(Status_map_);
  Status_map_->setSizeGripEnabled(false);
  resize_to_fit(*this, design_size);
  view_->setFocus();  // the keys step through the periods and zoom
}

void Form_tensor_map::connect_controls() {
  connect(controls_, &MapControls::look_changed, this, [this] { view_->show_look(controls_->look()); });
  connect(controls_, &MapControls::lines_changed, this, &Form_tensor_map::choose_lines);
  connect(controls_, &MapControls::show_all, view_, &MapView::show_all);
  connect(controls_, &MapControls::save_picture, this, &Form_tensor_map::ask_and_save);
  connect(controls_, &MapControls::done, this, &QDialog::accept);
  connect(view_, &MapView::hovered, Status_map_,
          [this](const QString& text) { Status_map_->showMessage(text); });
  connect(view_, &MapView::site_chosen, this, &Form_tensor_map::choose_station);
  connect(view_, &MapView::period_wanted, this,
          [this](int steps) { Slider_map_period_->setValue(Slider_map_period_->value() + steps); });
  connect(Slider_map_period_, &QSlider::valueChanged, this, &Form_tensor_map::choose_period);
  connect(&shown_, &ShownLine::line_changed, this, &Form_tensor_map::follow_line);
  connect(&shown_, &ShownLine::survey_changed, this, [this] { survey_.forget(); });
  connect(&shown_, &ShownLine::station_changed, this, [this] { view_->mark(shown_.station_id()); });
}

/// Another line, or other data of this one.
void Form_tensor_map::follow_line() {
  survey_.take(shown_.line());
  choose_lines();
}

void Form_tensor_map::choose_lines() {
  if (controls_->all_lines() && survey_.load_others(session().frequencies) == Outcome::failed) {
    controls_->choose_line_alone();  // the user has seen why
  }
  rebuild();
}

void Form_tensor_map::rebuild() {
  MapContents contents;
  contents.look = controls_->look();
  const BusyPointer busy;
  static_cast<void>(survey_.make_map(controls_->all_lines(), session().frequencies, contents.map));
  contents.unread_lines = controls_->all_lines() ? survey_.left_out() : 0;
  contents.heading = heading_of(survey_.shown(), controls_->all_lines(), contents.unread_lines > 0);
  contents.note = empty_note(survey_.shown(), contents.map);
  contents.current = shown_.station_id();
  if (same_plan(contents, view_->contents())) {
    contents.frame = view_->contents().frame;
  }
  view_->show_contents(std::move(contents));
  list_periods();
}

void Form_tensor_map::list_periods() {
  frequencies_ = map_frequencies(view_->contents().map.sites);
  const auto distance = [this](double frequency) { return std::abs(std::log(frequency / frequency_)); };
  std::size_t index = frequencies_.size() / 2;
  if (frequency_ > 0.0 && !frequencies_.empty()) {
    index =
        static_cast<std::size_t>(std::ranges::min_element(frequencies_, {}, distance) - frequencies_.begin());
  }
  const QSignalBlocker blocker(Slider_map_period_);
  Slider_map_period_->setEnabled(frequencies_.size() > 1);
  Slider_map_period_->setRange(0, std::max(static_cast<int>(frequencies_.size()) - 1, 0));
  Slider_map_period_->setValue(static_cast<int>(index));
  choose_period(Slider_map_period_->value());
}

void Form_tensor_map::choose_period(int index) {
  const bool has_one = static_cast<std::size_t>(index) < frequencies_.size();
  if (has_one) {
    frequency_ = frequencies_[static_cast<std::size_t>(index)];
  }
  view_->show_period(has_one ? frequency_ : 0.0);
  Label_map_period_->setText(has_one ? qt_text(period_text(frequency_)) : "No periods");
  show_remarks();
}

void Form_tensor_map::show_remarks() {
  Label_map_remarks_->setText(qt_text(remarks_text(view_->contents())));
}

void Form_tensor_map::choose_station(int site_index) {
  const auto index = static_cast<std::size_t>(site_index);
  const SiteValues& values = view_->contents().values[index];
  const double own = values.phase_tensor ? values.tensor_frequency : values.tipper_frequency;
  shown_.choose_site(view_->contents().map.sites[index].station.StationID, own);
}

int Form_tensor_map::save_picture(const std::string& path) {
  return trap_errors("An error occurred while saving the map: ", [&] {
    const MapContents& contents = view_->contents();
    graph::write_painted(
        qt_text(path), qt_text(contents.heading), view_->size(),
        [&contents](QPainter& painter, const QRectF& area) { paint_map(painter, area, contents); });
  });
}

void Form_tensor_map::ask_and_save() {
  std::string path = Module_util::directory_of(session().database_file) + "/" +
                     (controls_->all_lines() ? std::string("survey") : survey_.shown().line) + "_map.png";
  if (Module_util::select_output_file(path, "Save the map",
                                      "PNG pictures (*.png)|*.png|PDF documents (*.pdf)|*.pdf") == 0 &&
      !path.empty() && save_picture(path) == 0) {
    user_interface().show_message("The map is written to " + path);
    Module_Brenlox::tell_finished("The map is written to " + path, path);
  }
}
