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
#include "occam/windows/short_site_name.h"
#include "platform/graph/picture_axes.h"
#include "platform/widgets/copy_cells.h"
#include "platform/widgets/heading_label.h"
#include "platform/widgets/panel_controls.h"
#include "platform/widgets/vex_splitter.h"

using namespace Module_occam;

namespace {

constexpr const char* distance_axis = "Distance along the line (m)";

/// Two panes above each other; the upper one has the larger share, as it has no axis titles of its own.
template <class Widget>
QWidget* make_pair(const ByPane<Widget*>& widgets) {
  auto* const pair = new QWidget;
  auto* const rows = new QVBoxLayout(pair);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(2);
  rows->addWidget(widgets[0], 11);
  rows->addWidget(widgets[1], 10);
  return pair;
}

ProfileChoice choice_of(const QComboBox& mode, const QComboBox& odds_evens) {
  return {mode.currentIndex(), odds_evens.currentIndex()};
}

/// A list behind its label, to be hidden together.
QWidget* make_choice(const QString& label, QComboBox* list, const QString& tip) {
  auto* const choice = new QWidget;
  auto* const items = new QHBoxLayout(choice);
  items->setContentsMargins(0, 0, 12, 0);
  add_labelled(*items, label, list);
  list->setToolTip(tip);
  return choice;
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
      views_(response_views(response)),
      Combo_response_view_(make_list("Combo_response_view")),
      Combo_response_mode_(make_list("Combo_response_mode")),
      Label_station_(named(new HeadingLabel, "Label_station")),
      HScroll_station_(named(new QScrollBar(Qt::Horizontal), "HScroll_station")),
      Combo_display_mode_(make_list("Combo_display_mode")),
      Combo_display_oddsevens_(make_list("Combo_display_oddsevens")),
      error_pictures_{new PictureError("Picture_res_error", response),
                      new PictureError("Picture_phase_error", response)},
      Grid_misfit_(named(new QTableWidget, "Grid_misfit")),
      Splitter_response_(named(new VexSplitter, "Splitter_response")) {
  make_graphs();
  auto* const tabs = named(new QTabWidget, "Tab_profiles");
  tabs->addTab(make_profiles(), "Profiles");
  tabs->addTab(Grid_misfit_, "Misfits");
  Grid_misfit_->setToolTip("Root mean square misfit of each site and data type, in units of the errors");
  Grid_misfit_->setWordWrap(false);
  QHeaderView& headings = *Grid_misfit_->horizontalHeader();
  headings.setSectionResizeMode(QHeaderView::Stretch);
  headings.setMinimumSectionSize(headings.fontMetrics().horizontalAdvance("tipper") + 8);
  make_cells_copyable(*Grid_misfit_);
  auto* const station = new QWidget;
  auto* const station_rows = new QVBoxLayout(station);
  station_rows->setContentsMargins(0, 0, 0, 0);
  station_rows->addWidget(make_station_row());
  station_rows->addWidget(make_pair(station_graphs_), 1);
  Splitter_response_->setOrientation(Qt::Horizontal);
  Splitter_response_->addWidget(station);
  Splitter_response_->addWidget(make_pair(error_pictures_));
  Splitter_response_->addWidget(tabs);
  Splitter_response_->setChildrenCollapsible(false);
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(2);
  rows->addWidget(make_choices());
  rows->addWidget(Splitter_response_, 1);
  name_panes();
  connect_panes();
}

QWidget* ResponseFrame::make_choices() {
  view_choice_ = make_choice("Sho&w", Combo_response_view_, "Which data of the response the graphs show");
  channel_choice_ = make_choice("Misfits and profiles of", Combo_response_mode_,
                                "Mode that the pictures of misfits and the profiles show");
  choices_ = new QWidget;
  auto* const items = new QHBoxLayout(choices_);
  items->setContentsMargins(0, 2, 0, 0);
  items->addWidget(view_choice_);
  items->addWidget(channel_choice_);
  items->addStretch();
  choices_->hide();  // until a response has something to choose
  return choices_;
}

void ResponseFrame::make_graphs() {
  station_graphs_ = {new ResponseGraph("vxGraph_res", {}, {}), new ResponseGraph("vxGraph_phase", {}, {})};
  for (ResponseGraph* const graph : station_graphs_) {
    graph->chart().set_x_frequency();
  }
  profile_graphs_ = {new ResponseGraph("vxGraph_profile_res", distance_axis, {}),
                     new ResponseGraph("vxGraph_profile_phase", distance_axis, {})};
  for (const auto& [upper, lower] : {station_graphs_, profile_graphs_}) {
    upper->chart().set_x_labels_shown(false);
    upper->chart().share_x_zoom(lower->chart());
  }
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
  rows->addWidget(make_pair(profile_graphs_), 1);
  return profiles;
}

void ResponseFrame::connect_panes() {
  connect(HScroll_station_, &QScrollBar::valueChanged, this, &ResponseFrame::station_chosen);
  for (QComboBox* const list : {Combo_display_mode_, Combo_display_oddsevens_}) {
    connect(list, &QComboBox::currentIndexChanged, this, &ResponseFrame::display_profiles);
  }
  connect(Combo_response_view_, &QComboBox::currentIndexChanged, this, [this] {
    list_channels();
    choose_view();
  });
  connect(Combo_response_mode_, &QComboBox::currentIndexChanged, this, &ResponseFrame::choose_channel);
  for (PictureError* const picture : error_pictures_) {
    connect(picture, &PictureError::hovered, this, &ResponseFrame::hovered);
    connect(picture, &PictureError::site_chosen, HScroll_station_, &QScrollBar::setValue);
  }
  for (ResponseGraph* const graph : profile_graphs_) {
    connect(&graph->chart(), &VexGraphControl::point_selected, this,
            [this](int /*series*/, int point) { HScroll_station_->setValue(point + 1); });
  }
}

void ResponseFrame::clear() {
  for (const Pane pane : panes) {
    station_graphs_[pane_index(pane)]->clear();
    profile_graphs_[pane_index(pane)]->clear();
  }
  clear_errors();
  Grid_misfit_->setRowCount(0);
  Label_station_->clear();
  setEnabled(false);
}

void ResponseFrame::clear_errors() {
  for (PictureError* const picture : error_pictures_) {
    picture->clear();
  }
}

const ResponseView& ResponseFrame::view() const {
  return views_[static_cast<std::size_t>(std::max(Combo_response_view_->currentIndex(), 0))];
}

const ResponseChannel& ResponseFrame::channel() const {
  return view().channels[static_cast<std::size_t>(std::max(Combo_response_mode_->currentIndex(), 0))];
}

/// Lists what there is to be looked at; what was chosen stays so while it is there.
void ResponseFrame::list_views() {
  {
    const QSignalBlocker quiet(Combo_response_view_);
    const QString chosen = Combo_response_view_->currentText();
    Combo_response_view_->clear();
    for (const ResponseView& listed : views_) {
      Combo_response_view_->addItem(listed.name);
    }
    Combo_response_view_->setCurrentIndex(std::max(Combo_response_view_->findText(chosen), 0));
  }
  list_channels();
}

void ResponseFrame::list_channels() {
  const QSignalBlocker quiet(Combo_response_mode_);
  const QString chosen = Combo_response_mode_->currentText();
  Combo_response_mode_->clear();
  for (const ResponseChannel& listed : view().channels) {
    Combo_response_mode_->addItem(qt_text(listed.name));
  }
  Combo_response_mode_->setCurrentIndex(std::max(Combo_response_mode_->findText(chosen), 0));
  view_choice_->setVisible(views_.size() > 1);
  channel_choice_->setVisible(view().has_modes());
  choices_->setVisible(views_.size() > 1 || view().has_modes());
}

/// Draws again after another choice.
void ResponseFrame::choose_view() {
  name_panes();
  display_station(site_number_);
  display_profiles();
}

void ResponseFrame::choose_channel() {
  name_panes();
  display_profiles();
}

/// Titles and axes of all panes, and what the pictures of misfits show.
void ResponseFrame::name_panes() {
  for (const Pane pane : panes) {
    const std::size_t i = pane_index(pane);
    const QString title = qt_text(view().title(pane, channel()));
    station_graphs_[i]->set_title(view().text(pane).title);
    station_graphs_[i]->chart().set_y_title(view().text(pane).axis);
    station_graphs_[i]->set_explanation(qt_text(curves_in_words(view(), pane)));
    profile_graphs_[i]->set_title(title);
    profile_graphs_[i]->chart().set_y_title(view().text(pane).axis);
    error_pictures_[i]->choose(title + " error", channel().type(pane));
  }
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
  for (int column = 0; column < types; ++column) {
    const QString name = qt_text(data_type_name(misfits_.data_types[static_cast<std::size_t>(column)]));
    auto* const heading =
        new QTableWidgetItem(QString(name).replace("resistivity", "Res").replace(' ', '\n'));
    heading->setToolTip(name);
    Grid_misfit_->setHorizontalHeaderItem(column, heading);
  }
  Grid_misfit_->setHorizontalHeaderItem(types, new QTableWidgetItem("All"));
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
  views_ = response_views(response_);
  list_views();
  name_panes();
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
  const QString name = short_site_name(response_.resp_site_names[site]);
  const QString place = qt_text(" at " + format_number(response_.resp_offsets[site], "0.0") + " m");
  const QString rms = qt_text(", RMS " + format_number(misfits_.of_site(site_number).rms(), "0.00"));
  Label_station_->set_texts("Site " + name + place + rms, {name + place + rms, name + rms, name});
  for (const Pane pane : panes) {
    const std::size_t i = pane_index(pane);
    station_graphs_[i]->show_plot(station_curves(response_, view(), pane, site_number));
    error_pictures_[i]->mark_site(site_number);
    profile_graphs_[i]->mark_x(response_.resp_offsets[site]);
  }
}

void ResponseFrame::display_errors(const graph::Palette& palette) {
  for (PictureError* const picture : error_pictures_) {
    picture->show_misfits(palette);
  }
}

void ResponseFrame::display_profiles() {
  if (response_.resp_sites() < 1 || !isEnabled()) {
    return;
  }
  const ProfileChoice choice = choice_of(*Combo_display_mode_, *Combo_display_oddsevens_);
  const double offset = response_.resp_offsets[static_cast<std::size_t>(site_number_) - 1];
  for (const Pane pane : panes) {
    ResponseGraph& graph = *profile_graphs_[pane_index(pane)];
    graph.show_plot(response_profiles(response_, channel().type(pane), choice), false);
    graph.mark_x(offset);
  }
}
