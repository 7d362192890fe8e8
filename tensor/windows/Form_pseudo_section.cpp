#include "tensor/windows/Form_pseudo_section.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QShortcut>
#include <QStatusBar>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "core/file_names.h"
#include "core/finished_work.h"
#include "core/scope_guard.h"
#include "core/session_state.h"
#include "core/user_interface.h"
#include "output/rhoplus_settings.h"
#include "platform/widgets/panel_controls.h"
#include "reduction/each_item.h"
#include "tensor/section_masks.h"
#include "tensor/section_texts.h"
#include "tensor/windows/consistency_panel.h"
#include "tensor/windows/pseudo_section_controls.h"
#include "tensor/windows/pseudo_section_file.h"
#include "tensor/windows/pseudo_section_pane.h"

using namespace Module_tensor;
using Module_display_data::PositionSource;

namespace {

constexpr QSize design_size(1260, 720);

QCheckBox* make_switch(const QString& name, const QString& text, const QString& tip, bool on) {
  auto* const box = named(new QCheckBox(text), name);
  box->setToolTip(tip);
  box->setChecked(on);
  return box;
}

void include(const std::optional<SectionRange>& range, std::optional<SectionRange>& all) {
  if (range) {
    all = all ? SectionRange{std::min(all->lower, range->lower), std::max(all->upper, range->upper)} : *range;
  }
}

}  // namespace

Form_pseudo_section::Form_pseudo_section(ShownLine& shown, QWidget* parent)
    : QDialog(parent, Qt::Window),
      shown_(shown),
      Check_compare_(make_switch("Check_compare", "&Two sections",
                                 "A second section beside the first one, with the same axes", true)),
      Check_period_up_(make_switch("Check_period_up", "Period &up",
                                   "Long periods at the top; otherwise at the bottom, where depth is",
                                   false)),
      Check_section_by_distance_(make_switch("Check_section_by_distance", "By &distance",
                                             "Stations at their places along the line, not at their numbers",
                                             false)),
      Check_in_order_(make_switch("Check_in_order", "&Equal widths",
                                  "All stations equally wide, in their order along the line, however far "
                                  "they are apart",
                                  false)),
      Check_contours_(make_switch("Check_contours", "&Contours",
                                  "Lines of equal value at round numbers; not over ellipses", false)),
      Check_points_(make_switch("Check_points", "&Points",
                                "A dot where data are, a cross where they are masked", true)),
      Check_section_hide_masked_(make_switch("Check_section_hide_masked", "&Hide masked",
                                             "No crosses where points are masked",
                                             session().hide_masked_data)),
      Command_save_section_(named(new QPushButton("&Save Picture..."), "Command_save_section")),
      Command_done_(named(new QPushButton("D&one"), "Command_done")),
      Status_section_(named(new QStatusBar, "Status_section")) {
  setObjectName("Form_pseudo_section");
  setWindowTitle("Pseudo-section");
  make_panes();
  consistency_ = new ConsistencyPanel(shown_, [this] { return consistency_of_line(); });
  consistency_->hide();
  lay_out();
  connect_controls();
  add_shortcuts();
  resize_to_fit(*this, design_size);
  panes_[0]->setFocus();
  follow_line();
}

void Form_pseudo_section::make_panes() {
  constexpr std::array first_quantities{SectionQuantity::rho_xy, SectionQuantity::phase_xy};
  for (std::size_t i = 0; i < pane_count; ++i) {
    const QString suffix = "_" + QString::number(i);
    panes_[i] = new PseudoSectionPane("Picture_section" + suffix);
    controls_[i] = new PseudoSectionControls(suffix, first_quantities[i]);
    columns_[i] = new QWidget;
    auto* const column = new QVBoxLayout(columns_[i]);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(controls_[i]);
    column->addWidget(panes_[i], 1);
  }
}

QWidget* Form_pseudo_section::make_switches() {
  auto* const switches = new QWidget;
  auto* const row = new QHBoxLayout(switches);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(12);
  for (QCheckBox* const box : {Check_compare_, Check_period_up_, Check_section_by_distance_, Check_in_order_,
                               Check_contours_, Check_points_, Check_section_hide_masked_}) {
    row->addWidget(box);
  }
  row->addStretch(1);
  Command_save_section_->setToolTip("Writes what is shown as PNG or PDF (Ctrl+S)");
  Command_done_->setToolTip("Closes this window");
  for (QPushButton* const button : {Command_save_section_, Command_done_}) {
    button->setAutoDefault(false);  // Enter ends the typing of a limit
    row->addWidget(button);
  }
  return switches;
}

void Form_pseudo_section::lay_out() {
  auto* const sections = new QHBoxLayout;
  sections->setSpacing(6);
  for (QWidget* const column : columns_) {
    sections->addWidget(column, 1);
  }
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(6, 6, 6, 2);
  rows->setSpacing(6);
  rows->addWidget(make_switches());
  rows->addLayout(sections, 1);
  rows->addWidget(consistency_);
  rows->addWidget(Status_section_);
  Status_section_->setSizeGripEnabled(false);
}

void Form_pseudo_section::connect_controls() {
  for (std::size_t i = 0; i < pane_count; ++i) {
    connect(controls_[i], &PseudoSectionControls::quantity_chosen, this, [this] {
      residuals_stopped_ = false;
      rebuild();
    });
    connect(controls_[i], &PseudoSectionControls::look_changed, this, &Form_pseudo_section::show_pictures);
    connect(controls_[i], &PseudoSectionControls::limits_refused, this,
            [this](const QString& fault) { Status_section_->showMessage(fault); });
    connect(panes_[i], &PseudoSectionPane::clicked, this, [this, i](double station, double frequency) {
      const auto data_type = curve_shown_by(facts_of(sections_[i].quantity));
      shown_.choose(station, frequency, qt_text(std::string(data_type)));
    });
    connect(panes_[i], &PseudoSectionPane::mask_wanted, this,
            [this, i](const SectionColumn& column, const SectionPoint& point) { mask(i, column, point); });
    connect(panes_[i], &PseudoSectionPane::hovered, this,
            [this](const QString& text) { Status_section_->showMessage(text); });
    connect(panes_[i], &PseudoSectionPane::view_changed, this,
            [this, i] { panes_[1 - i]->set_view(panes_[i]->view()); });
  }
  for (QCheckBox* const box :
       {Check_period_up_, Check_contours_, Check_points_, Check_section_hide_masked_}) {
    connect(box, &QCheckBox::toggled, this, &Form_pseudo_section::show_pictures);
  }
  connect(consistency_, &ConsistencyPanel::proposal_changed, this, &Form_pseudo_section::show_pictures);
  connect(Check_compare_, &QCheckBox::toggled, this, &Form_pseudo_section::compare);
  connect(Check_in_order_, &QCheckBox::toggled, this, [this] {
    panes_[0]->reset_zoom();  // the other pane goes along
    rebuild();
  });
  connect(Check_section_by_distance_, &QCheckBox::clicked, this, &Form_pseudo_section::choose_positions);
  connect(Command_save_section_, &QPushButton::clicked, this, &Form_pseudo_section::ask_and_save);
  connect(Command_done_, &QPushButton::clicked, this, &QDialog::accept);
  connect(&shown_, &ShownLine::line_changed, this, &Form_pseudo_section::follow_line);
  connect(&shown_, &ShownLine::station_changed, this, [this] {
    const auto station = shown_.station_index();
    for (PseudoSectionPane* const pane : panes_) {
      pane->frame(station);
    }
  });
}

void Form_pseudo_section::add_shortcuts() {
  const auto add = [this](const QKeySequence& keys, auto act) {
    connect(new QShortcut(keys, this), &QShortcut::activated, this, act);
  };
  add(QKeySequence("Ctrl+S"), [this] { ask_and_save(); });
  add(QKeySequence("Ctrl+Z"), [this] { Q_EMIT undo_wanted(); });
  add(QKeySequence("Ctrl+Y"), [this] { Q_EMIT redo_wanted(); });
}

/// Another line, or other data of this one.
void Form_pseudo_section::follow_line() {
  if (inverting_) {
    changed_meanwhile_ = true;
    return;
  }
  const LineTensors& line = shown_.line();
  // The pictures on show refer to the earlier ones until there are others.
  const auto earlier = std::exchange(phase_tensors_, phase_tensors_of(line));
  follow_positions();
  if (std::exchange(shown_choice_, line.curves.choice) != line.curves.choice) {
    panes_[0]->reset_zoom();  // the other pane goes along
    Status_section_->clearMessage();
  }
  setWindowTitle(
      line.curves.choice.line.empty()
          ? QString("Pseudo-section")
          : "Pseudo-section: " +
                qt_text(Module_util::file_stem(Module_util::file_name_only(session().database_file))) +
                ", line " + qt_text(line.curves.choice.line));
  rebuild();
}

/// As the main window has the stations, until the user chooses otherwise here; a new choice there counts.
void Form_pseudo_section::follow_positions() {
  const bool by_distance = shown_.axis().by_distance();
  if (by_distance != main_by_distance_) {
    own_by_distance_.reset();
  }
  main_by_distance_ = by_distance;
  axis_.take_line(shown_.line().curves.choice.line);
  static_cast<void>(axis_.choose(own_by_distance_.value_or(by_distance) ? PositionSource::distances
                                                                        : PositionSource::station_numbers));
  Check_section_by_distance_->setChecked(axis_.by_distance());
}

void Form_pseudo_section::choose_positions(bool by_distance) {
  const std::string refusal =
      axis_.choose(by_distance ? PositionSource::distances : PositionSource::station_numbers);
  own_by_distance_ = axis_.by_distance();
  Check_section_by_distance_->setChecked(axis_.by_distance());
  rebuild();
  if (!refusal.empty()) {
    Status_section_->showMessage(qt_text(refusal));
  }
}

bool Form_pseudo_section::shows_misfit() const {
  return facts_of(controls_[0]->quantity()).is_misfit() ||
         (Check_compare_->isChecked() && facts_of(controls_[1]->quantity()).is_misfit());
}

/// Inverts what isn't up to date; the user may stop it.
void Form_pseudo_section::update_residuals() {
  if (!shows_misfit() || residuals_stopped_ || inverting_) {
    return;
  }
  constexpr std::size_t hundred = 100;
  const BusyPointer busy;
  const ScopedValue inverting(inverting_, true);
  const LineTensors line = shown_.line();  // events run meanwhile, and the line may become another one
  const Frequencies frequencies = session().frequencies;
  Module_averaged_data::WorkProgress progress("Computing Rho+ along the line", hundred);
  residuals_stopped_ =
      !residuals_.update(line, frequencies, Module_output::rhoplus_settings(), [&progress](double share) {
        progress.show(static_cast<std::size_t>(share * hundred));
        return !user_interface().stop_requested();
      });
}

const Module_rhoplus::LineConsistency* Form_pseudo_section::consistency_of_line() {
  residuals_stopped_ = false;
  rebuild();
  return residuals_stopped_ || inverting_ ? nullptr : &residuals_.consistency();
}

std::vector<RingedPoint> Form_pseudo_section::proposed_points(const QuantityFacts& facts) const {
  std::vector<RingedPoint> points;
  if (!facts.is_misfit() || !consistency_->proposal()) {
    return points;
  }
  const bool of_phase = facts.component == Module_averaged_data::OutlierField::phase;
  for (const Module_rhoplus::ProposedPoint& point : consistency_->proposal()->points) {
    if (facts.curves[0] == Module_rhoplus::consistency_types[point.mode_index] &&
        (of_phase ? point.phase : point.resistivity)) {
      points.push_back({point.station_index, point.frequency});
    }
  }
  std::ranges::sort(points);
  return points;
}

PseudoSection Form_pseudo_section::make_section(SectionQuantity quantity) {
  const auto residuals = residuals_stopped_ ? std::span<const StationResiduals>() : residuals_.stations();
  const SectionSource source{&shown_.line(), &session().frequencies, phase_tensors_, residuals};
  const StationPlaces places = [this](double station) { return axis_.x_of(station); };
  return make_pseudo_section(source, quantity,
                             Check_in_order_->isChecked() ? places_in_order(shown_.line(), places) : places);
}

void Form_pseudo_section::rebuild() {
  if (inverting_) {
    changed_meanwhile_ = true;
    return;
  }
  update_residuals();
  if (std::exchange(changed_meanwhile_, false)) {
    follow_line();
    return;
  }
  const std::size_t shown_panes = Check_compare_->isChecked() ? pane_count : 1;
  for (std::size_t i = 0; i < pane_count; ++i) {
    sections_[i] = i < shown_panes ? make_section(controls_[i]->quantity()) : PseudoSection{};
  }
  show_pictures();
}

void Form_pseudo_section::show_pictures() {
  const LineTensors& line = shown_.line();
  consistency_->setVisible(shows_misfit() && !line.stations.empty());
  std::optional<SectionRange> across;
  std::array<std::optional<SectionRange>, 2> heights;  // by SectionAxis: sections of one kind have one axis
  for (const PseudoSection& section : sections_) {
    include(section.across, across);
    include(section.heights, heights[static_cast<std::size_t>(facts_of(section.quantity).axis)]);
  }
  for (std::size_t i = 0; i < pane_count; ++i) {
    const PseudoSection& section = sections_[i];
    PseudoSectionPicture picture;
    picture.section = section;
    picture.scale = controls_[i]->scale_for(section);
    picture.across = across.value_or(SectionRange{});
    picture.heights =
        heights[static_cast<std::size_t>(facts_of(section.quantity).axis)].value_or(SectionRange{});
    picture.title =
        qt_text(section_title(session().database_file, line.curves.choice.line, controls_[i]->quantity()));
    picture.in_order = Check_in_order_->isChecked();
    picture.x_title = picture.in_order ? "Station" : axis_.title();
    picture.note = qt_text(empty_section_note(section, line.stations.empty()));
    picture.period_up = Check_period_up_->isChecked();
    picture.contours = Check_contours_->isChecked();
    picture.points = Check_points_->isChecked();
    picture.hide_masked = Check_section_hide_masked_->isChecked();
    picture.framed = shown_.station_index();
    picture.ringed = proposed_points(facts_of(section.quantity));
    panes_[i]->show_picture(std::move(picture));
  }
}

void Form_pseudo_section::compare(bool second) {
  columns_[1]->setVisible(second);
  rebuild();
}

void Form_pseudo_section::mask(std::size_t pane, const SectionColumn& column, const SectionPoint& point) {
  const double station = column.station;  // the picture goes with the edit
  using Module_averaged_data::Edit;
  switch (toggle_section_point(shown_.line(), column.station_index, point, sections_[pane].quantity)) {
    case Edit::changed:
      shown_.announce_edit(station);
      break;
    case Edit::nothing:
      Status_section_->showMessage(
          "Nothing to mask here: the merged curve has no value, as its readings are masked or have none");
      break;
    case Edit::failed:
      break;
  }
}

void Form_pseudo_section::step_station(int step) {
  const auto& columns = sections_[0].columns;
  const auto current = std::ranges::find(columns, shown_.station_index(), [](const SectionColumn& column) {
    return std::optional(column.station_index);
  });
  const auto next = (current - columns.begin()) + step;
  if (current != columns.end() && next >= 0 && next < std::ssize(columns)) {
    shown_.choose(columns[static_cast<std::size_t>(next)].station, 0.0);
  }
}

void Form_pseudo_section::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Left || event->key() == Qt::Key_Right) {
    step_station(event->key() == Qt::Key_Right ? 1 : -1);
  } else {
    QDialog::keyPressEvent(event);
  }
}

int Form_pseudo_section::save_picture(const std::string& path) {
  std::vector<PseudoSectionPicture> pictures{panes_[0]->picture()};
  if (Check_compare_->isChecked()) {
    pictures.push_back(panes_[1]->picture());
  }
  for (PseudoSectionPicture& picture : pictures) {
    picture.framed.reset();  // what is chosen on the screen is nothing to a report
  }
  return save_pseudo_sections(path, pictures, panes_[0]->view(), panes_[0]->size());
}

void Form_pseudo_section::ask_and_save() {
  std::string path = Module_util::directory_of(session().database_file) + shown_.line().curves.choice.line +
                     "_" + std::string(facts_of(controls_[0]->quantity()).word) + ".png";
  if (Module_util::select_output_file(path, "Save the pseudo-section",
                                      "PNG pictures (*.png)|*.png|PDF documents (*.pdf)|*.pdf") == 0 &&
      !path.empty() && save_picture(path) == 0) {
    Status_section_->showMessage("The picture is written to " + qt_text(path));
    Module_Brenlox::tell_finished("The pseudo-section is written to " + path, path);
  }
}
