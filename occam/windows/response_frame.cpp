#include "occam/windows/response_frame.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QTabWidget>
#include <QTableWidget>
#include <QVBoxLayout>

#include "core/number_text.h"
#include "occam/windows/picture_axes.h"
#include "platform/widgets/copy_cells.h"
#include "platform/widgets/panel_controls.h"
#include "platform/widgets/vex_splitter.h"

using namespace Module_occam;

namespace {

constexpr const char* resistivity_axis = "Resistivity (log10 ohm-m)";
constexpr const char* phase_axis = "Phase (deg)";
constexpr const char* frequency_axis = "Frequency (Hz)";
constexpr const char* distance_axis = "Distance along the line (m)";

/// Two panes above each other; the upper one has the larger share, as it has no axis titles of its own.
QWidget* make_pair(QWidget* upper, QWidget* lower) {
  auto* const pair = new QWidget;
  auto* const rows = new QVBoxLayout(pair);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(2);
  rows->addWidget(upper, 11);
  rows->addWidget(lower, 10);
  return pair;
}

ProfileChoice choice_of(const QComboBox& mode, const QComboBox& odds_evens) {
  return {mode.currentIndex(), odds_evens.currentIndex()};
}

QTableWidgetItem* misfit_cell(const MisfitTable::Cell& cell) {
  auto* const item =
      new QTableWidgetItem(cell.count > 0 ? qt_text(format_number(cell.rms(), "0.00")) : QString());
  item->setTextAlignment(Qt::AlignCenter);
  item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
  return item;
}

}  // namespace

ResponseFrame::ResponseFrame(const OccamResponse& response, QWidget* parent)
    : QWidget(parent),
      response_(response),
      Label_station_(make_heading("Label_station")),
      HScroll_station_(named(new QScrollBar(Qt::Horizontal), "HScroll_station")),
      Combo_display_mode_(make_list("Combo_display_mode")),
      Combo_display_oddsevens_(make_list("Combo_display_oddsevens")),
      Picture_res_error_(
          new PictureError("Picture_res_error", "Resistivity error", response, ResponseKind::resistivity)),
      Picture_phase_error_(
          new PictureError("Picture_phase_error", "Phase error", response, ResponseKind::phase)),
      Grid_misfit_(named(new QTableWidget, "Grid_misfit")),
      Splitter_response_(named(new VexSplitter, "Splitter_response")) {
  make_graphs();
  auto* const tabs = named(new QTabWidget, "Tab_profiles");
  tabs->addTab(make_profiles(), "&Profiles");
  tabs->addTab(Grid_misfit_, "Mis&fits");
  Grid_misfit_->setToolTip("Root mean square misfit of each site and data type, in units of the errors");
  Grid_misfit_->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  make_cells_copyable(*Grid_misfit_);
  auto* const station = new QWidget;
  auto* const station_rows = new QVBoxLayout(station);
  station_rows->setContentsMargins(0, 0, 0, 0);
  station_rows->addWidget(make_station_row());
  station_rows->addWidget(make_pair(station_resistivity_, station_phase_), 1);
  Splitter_response_->setOrientation(Qt::Horizontal);
  Splitter_response_->addWidget(station);
  Splitter_response_->addWidget(make_pair(Picture_res_error_, Picture_phase_error_));
  Splitter_response_->addWidget(tabs);
  Splitter_response_->setChildrenCollapsible(false);
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->addWidget(Splitter_response_);
  connect_panes();
}

void ResponseFrame::make_graphs() {
  station_resistivity_ = new ResponseGraph("vxGraph_res", frequency_axis, resistivity_axis);
  station_phase_ = new ResponseGraph("vxGraph_phase", frequency_axis, phase_axis);
  profile_resistivity_ = new ResponseGraph("vxGraph_profile_res", distance_axis, resistivity_axis);
  profile_phase_ = new ResponseGraph("vxGraph_profile_phase", distance_axis, phase_axis);
  for (ResponseGraph* const graph : {station_resistivity_, profile_resistivity_}) {
    graph->set_title("Resistivity");
    graph->chart().set_x_labels_shown(false);
  }
  for (ResponseGraph* const graph : {station_phase_, profile_phase_}) {
    graph->set_title("Phase");
  }
  station_resistivity_->chart().share_x_zoom(station_phase_->chart());
  profile_resistivity_->chart().share_x_zoom(profile_phase_->chart());
}

QWidget* ResponseFrame::make_station_row() {
  auto* const row = new QWidget;
  auto* const items = new QHBoxLayout(row);
  items->setContentsMargins(0, 0, 0, 0);
  HScroll_station_->setFocusPolicy(Qt::StrongFocus);
  HScroll_station_->setToolTip("Station on show");
  HScroll_station_->setAccessibleName("Station");
  HScroll_station_->setPageStep(1);
  items->addWidget(Label_station_, 5);
  items->addWidget(HScroll_station_, 2);
  return row;
}

QWidget* ResponseFrame::make_profiles() {
  for (const std::string_view name : odds_evens_names) {
    Combo_display_oddsevens_->addItem(QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())));
  }
  list_frequencies();
  Combo_display_mode_->setToolTip("Frequencies whose values the profiles show");
  Combo_display_oddsevens_->setToolTip("Of these, all or every other one");
  auto* const profiles = new QWidget;
  auto* const choices = new QHBoxLayout;
  choices->addWidget(Combo_display_mode_);
  choices->addWidget(Combo_display_oddsevens_);
  choices->addStretch();
  auto* const rows = new QVBoxLayout(profiles);
  rows->setContentsMargins(2, 2, 2, 2);
  rows->setSpacing(2);
  rows->addLayout(choices);
  rows->addWidget(make_pair(profile_resistivity_, profile_phase_), 1);
  return profiles;
}

void ResponseFrame::connect_panes() {
  connect(HScroll_station_, &QScrollBar::valueChanged, this, &ResponseFrame::station_chosen);
  for (QComboBox* const list : {Combo_display_mode_, Combo_display_oddsevens_}) {
    connect(list, &QComboBox::currentIndexChanged, this, &ResponseFrame::display_profiles);
  }
  for (PictureError* const picture : {Picture_res_error_, Picture_phase_error_}) {
    connect(picture, &PictureError::hovered, this, &ResponseFrame::hovered);
    connect(picture, &PictureError::site_chosen, HScroll_station_, &QScrollBar::setValue);
  }
  for (ResponseGraph* const graph : {profile_resistivity_, profile_phase_}) {
    connect(&graph->chart(), &VexGraphControl::point_selected, this,
            [this](int /*series*/, int point) { HScroll_station_->setValue(point + 1); });
  }
}

void ResponseFrame::clear() {
  for (ResponseGraph* const graph :
       {station_resistivity_, station_phase_, profile_resistivity_, profile_phase_}) {
    graph->clear();
  }
  clear_errors();
  Grid_misfit_->setRowCount(0);
  Label_station_->clear();
  setEnabled(false);
}

void ResponseFrame::clear_errors() {
  Picture_res_error_->clear();
  Picture_phase_error_->clear();
}

void ResponseFrame::list_frequencies() {
  const QSignalBlocker quiet(Combo_display_mode_);
  const int chosen = std::max(Combo_display_mode_->currentIndex(), 0);
  Combo_display_mode_->clear();
  for (const std::string_view mode : profile_modes) {
    Combo_display_mode_->addItem(QString::fromUtf8(mode.data(), static_cast<qsizetype>(mode.size())));
  }
  for (const double frequency : response_.resp_frequencies) {
    Combo_display_mode_->addItem(qt_text(plain_text(static_cast<float>(frequency)) + " Hz"));
  }
  Combo_display_mode_->setCurrentIndex(chosen < Combo_display_mode_->count() ? chosen : 0);
}

void ResponseFrame::list_misfits() {
  const int types = static_cast<int>(misfits_.data_types.size());
  const int sites = response_.resp_sites();
  Grid_misfit_->setColumnCount(types + 1);
  Grid_misfit_->setRowCount(sites + 1);
  QStringList headings;
  for (const int type : misfits_.data_types) {
    headings.append(qt_text(data_type_name(type)).replace(' ', '\n'));
  }
  Grid_misfit_->setHorizontalHeaderLabels(headings << "All");
  QStringList names;
  for (int site = 1; site <= sites; ++site) {
    const auto& cells = misfits_.site_cells[static_cast<std::size_t>(site) - 1];
    names.append(qt_text(response_.resp_site_names[static_cast<std::size_t>(site) - 1]));
    for (int column = 0; column < types; ++column) {
      const auto cell = cells.find(misfits_.data_types[static_cast<std::size_t>(column)]);
      Grid_misfit_->setItem(site - 1, column,
                            misfit_cell(cell == cells.end() ? MisfitTable::Cell() : cell->second));
    }
    Grid_misfit_->setItem(site - 1, types, misfit_cell(misfits_.of_site(site)));
  }
  for (int column = 0; column < types; ++column) {
    Grid_misfit_->setItem(
        sites, column, misfit_cell(misfits_.of_type(misfits_.data_types[static_cast<std::size_t>(column)])));
  }
  Grid_misfit_->setItem(sites, types, misfit_cell(misfits_.of_all()));
  Grid_misfit_->setVerticalHeaderLabels(names << "All sites");
}

void ResponseFrame::take_response() {
  setEnabled(true);
  misfits_ = misfit_table(response_);
  const QSignalBlocker quiet(HScroll_station_);
  HScroll_station_->setRange(1, response_.resp_sites());
  list_frequencies();
  list_misfits();
}

void ResponseFrame::display_station(int site_number) {
  site_number_ = site_number;
  {
    const QSignalBlocker quiet(HScroll_station_);
    HScroll_station_->setValue(site_number);
  }
  const auto site = static_cast<std::size_t>(site_number) - 1;
  Label_station_->setText("Site " + short_site_name(response_.resp_site_names[site]) +
                          qt_text(" at " + format_number(response_.resp_offsets[site], "0.0") + " m, RMS " +
                                  format_number(misfits_.of_site(site_number).rms(), "0.00")));
  Label_station_->setToolTip(Label_station_->text());  // cut off in a narrow pane
  station_resistivity_->show_plot(station_curves(response_, ResponseKind::resistivity, site_number));
  station_phase_->show_plot(station_curves(response_, ResponseKind::phase, site_number));
  Picture_res_error_->mark_site(site_number);
  Picture_phase_error_->mark_site(site_number);
  for (ResponseGraph* const graph : {profile_resistivity_, profile_phase_}) {
    graph->mark_x(response_.resp_offsets[site]);
  }
}

void ResponseFrame::display_errors(const Palette& palette) {
  Picture_res_error_->show_misfits(palette);
  Picture_phase_error_->show_misfits(palette);
}

void ResponseFrame::display_profiles() {
  if (response_.resp_sites() < 1 || !isEnabled()) {
    return;
  }
  const ProfileChoice choice = choice_of(*Combo_display_mode_, *Combo_display_oddsevens_);
  profile_resistivity_->show_plot(response_profiles(response_, ResponseKind::resistivity, choice), false);
  profile_phase_->show_plot(response_profiles(response_, ResponseKind::phase, choice), false);
  const double offset = response_.resp_offsets[static_cast<std::size_t>(site_number_) - 1];
  profile_resistivity_->mark_x(offset);
  profile_phase_->mark_x(offset);
}
