#include "rhoplus/windows/Form_rhoplus_inversion.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPointer>
#include <QShortcut>
#include <QTableWidget>
#include <QVBoxLayout>

#include "core/number_text.h"
#include "core/scope_guard.h"
#include "core/session_state.h"
#include "core/user_interface.h"
#include "display/selection.h"
#include "display/site_names.h"
#include "display/windows/graph_pair.h"
#include "display/windows/marking_actions.h"
#include "platform/graph/frequency_axis.h"
#include "platform/widgets/check_cells.h"
#include "platform/widgets/input_only_to.h"
#include "platform/widgets/panel_controls.h"
#include "platform/widgets/typed_text.h"
#include "reduction/data_sets/curve_parts.h"
#include "rhoplus/data_rows.h"
#include "rhoplus/fit_plot.h"
#include "rhoplus/windows/Form_line_chi.h"
#include "rhoplus/windows/Form_rhoplus.h"
#include "ui_Form_rhoplus_inversion.h"

using namespace Module_rhoplus;
using Module_averaged_data::Component;

namespace {

const QString run_caption = QStringLiteral("Run All");
const QString stop_caption = QStringLiteral("Stop Inverting");

/// The signs in their colours, each with its text. They stand on the white of the charts, on which they are
/// seen with every palette of the desktop.
QLabel* make_legend(const QString& name, const std::vector<LegendItem>& items) {
  QStringList parts;
  for (const LegendItem& item : items) {
    const QColor colour(item.colour.red, item.colour.green, item.colour.blue);
    parts << QString("<span style='color:%1; background-color:white'>&nbsp;%2&nbsp;</span>&nbsp;%3")
                 .arg(colour.name(), qt_text(item.sign), qt_text(item.text));
  }
  auto* const legend = named(new QLabel(parts.join(" &nbsp; ")), name);
  legend->setAlignment(Qt::AlignCenter);
  legend->setWordWrap(true);
  return legend;
}

}  // namespace

Form_rhoplus_inversion::Form_rhoplus_inversion(Module_output::RhoplusSettings& settings, QWidget* parent)
    : QMainWindow(parent), settings_(settings), ui_(std::make_unique<Ui::Form_rhoplus_inversion>()) {
  ui_->setupUi(this);
  take_typed_text_before_menus(*this);
  compose();
  connect_controls();
  resize_to_fit(*this, {fontMetrics().averageCharWidth() * 150, fontMetrics().height() * 38});
  show_station_bar();
}

Form_rhoplus_inversion::~Form_rhoplus_inversion() = default;

void Form_rhoplus_inversion::compose() {
  compose_graphs();
  ui_->Splitter_results->addWidget(make_data_pane());
  ui_->Splitter_inversion->setSizes({500, 500});
  ui_->Splitter_results->setSizes({400, 600});
  fit_controls();
  set_tab_order();
  for (QLabel*& panel : panels_) {
    panel = new QLabel;
    ui_->Status_inversion->addWidget(panel, 1);
  }
  run_note_ = named(new QLabel, "Label_run_note");
  ui_->Status_inversion->addPermanentWidget(run_note_);
  Label_not_inverted_ = new QLabel;
  ui_->Status_inversion->addWidget(Label_not_inverted_, 1);  // a message of the bar would hide the panels
}

void Form_rhoplus_inversion::compose_graphs() {
  graphs_ = new GraphPairWidget("vxgraph_station", GraphPairWidget::XAxis::frequency);
  auto* const fit = new QVBoxLayout(ui_->Picture_fit);
  fit->setContentsMargins(0, 0, 0, 0);
  fit->addWidget(graphs_, 1);
  fit->addWidget(make_legend("Legend_fit", fit_legend()));

  Picture_res_model_ = named(new VexGraphControl, "Picture_res_model");
  Picture_res_model_->set_xaxistype(graph::AxisType::logarithmic);
  Picture_res_model_->set_yaxistype(graph::AxisType::logarithmic);
  Picture_res_model_->set_x_title("Depth of sheet (m)");
  Picture_res_model_->set_y_title("Conductance (S)");
  auto* const model = new QWidget;
  auto* const model_rows = new QVBoxLayout(model);
  model_rows->setContentsMargins(0, 0, 0, 0);
  model_rows->addWidget(Picture_res_model_, 1);
  model_rows->addWidget(make_legend("Legend_model", sheet_legend()));
  ui_->Splitter_results->addWidget(model);
}

/// The grid of the data, or the log in its place.
QWidget* Form_rhoplus_inversion::make_data_pane() {
  auto* const pane = new QWidget;
  auto* const rows = new QVBoxLayout(pane);
  rows->setContentsMargins(0, 0, 0, 0);
  QStringList titles;
  for (const char* const title : data_column_titles) {
    titles << title;
  }
  Grid_inversion_data_ = make_switch_grid("Grid_inversion_data", titles);
  Grid_inversion_data_->setAccessibleName("Data and fit");
  Grid_inversion_data_->setToolTip("Click into a use column to mask or use the value");
  Text_rhoplus_out_ = named(new QPlainTextEdit, "Text_rhoplus_out");
  Text_rhoplus_out_->setToolTip("Log of the run");
  Text_rhoplus_out_->setAccessibleName("Log of the run");
  Text_rhoplus_out_->setReadOnly(true);
  Text_rhoplus_out_->setLineWrapMode(QPlainTextEdit::NoWrap);
  Text_rhoplus_out_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  Text_rhoplus_out_->hide();
  rows->addWidget(Grid_inversion_data_);
  rows->addWidget(Text_rhoplus_out_);
  return pane;
}

void Form_rhoplus_inversion::fit_controls() {
  const int digits = fontMetrics().horizontalAdvance("000000.00");
  ui_->Text_rhoplus_target_chi->setFixedWidth(digits);
  ui_->Text_rhoplus_achieved_chi->setFixedWidth(digits);
  ui_->HScroll_repeat->setMinimumWidth(3 * digits);
  // As wide as its longest caption, so that nothing moves when a run starts.
  ui_->Command_run_all->setText(stop_caption);
  ui_->Command_run_all->setMinimumWidth(ui_->Command_run_all->sizeHint().width());
  ui_->Command_run_all->setText(run_caption);
  ui_->Text_rhoplus_target_chi->setAccessibleName("Target chi");
  ui_->Text_rhoplus_achieved_chi->setAccessibleName("Achieved chi");
}

void Form_rhoplus_inversion::set_tab_order() {
  // The bar and the buttons are below the data. The log comes last here: the order is a ring, and after the
  // log the bar would not be moved.
  QWidget* before = Grid_inversion_data_;
  for (QWidget* const control : std::initializer_list<QWidget*>{
           ui_->HScroll_repeat, ui_->Text_rhoplus_target_chi, ui_->Text_rhoplus_achieved_chi,
           ui_->Command_rhoplus_log, ui_->Command_run_all, ui_->Command_occam, ui_->Command_done}) {
    setTabOrder(before, control);
    before = control;
  }
  setTabOrder(Grid_inversion_data_, Text_rhoplus_out_);
  Grid_inversion_data_->setFocus();
}

void Form_rhoplus_inversion::connect_controls() {
  connect(ui_->HScroll_repeat, &QScrollBar::valueChanged, this, [this](int value) {
    if (session().updating_controls || rhoplus_running_all_) {
      return;
    }
    Q_EMIT station_chosen(Module_display_data::first_station_of_current_line() + value -
                          ui_->HScroll_repeat->minimum());
  });
  connect(ui_->Command_rhoplus_log, &QPushButton::clicked, this, &Form_rhoplus_inversion::toggle_log);
  connect(ui_->Command_run_all, &QPushButton::clicked, this, &Form_rhoplus_inversion::run_all);
  connect(ui_->Command_occam, &QPushButton::clicked, this, &Form_rhoplus_inversion::occam_requested);
  connect(ui_->Command_done, &QPushButton::clicked, this, &QWidget::close);
  for (QPushButton* const button :
       {ui_->Command_rhoplus_log, ui_->Command_run_all, ui_->Command_occam, ui_->Command_done}) {
    button->setAutoDefault(true);  // Enter presses the one that has the focus
  }
  connect(ui_->menu_rhoplus_options, &QAction::triggered, this, &Form_rhoplus_inversion::edit_settings);
  connect_switches(*Grid_inversion_data_, this, [this](int row, int column) { switch_cell(row, column); });
  connect(graphs_, &GraphPairWidget::pointer_moved, this, &Form_rhoplus_inversion::show_pointer);
  connect_edits();
}

void Form_rhoplus_inversion::connect_edits() {
  graphs_->set_marking(true);
  connect(graphs_, &GraphPairWidget::points_enclosed, this, &Form_rhoplus_inversion::mark_observed);
  marking_ = new MarkingActions(*this);
  connect(marking_, &MarkingActions::edited, this, &Form_rhoplus_inversion::edited);
  connect(marking_, &MarkingActions::left, this, &Form_rhoplus_inversion::marked);
  connect(marking_, &MarkingActions::told, this, &Form_rhoplus_inversion::show_in_status);
  connect(new QShortcut(QKeySequence("Ctrl+Z"), this), &QShortcut::activated, this, [this] {
    if (!rhoplus_running_all_) {
      Q_EMIT undo_wanted();
    }
  });
  connect(new QShortcut(QKeySequence("Ctrl+Y"), this), &QShortcut::activated, this, [this] {
    if (!rhoplus_running_all_) {
      Q_EMIT redo_wanted();
    }
  });
}

void Form_rhoplus_inversion::mark_observed(Component component,
                                           const std::vector<Module_display_data::PlotPlace>& places) {
  std::vector<Module_display_data::MarkedPoint> points;
  for (const Module_display_data::PlotPlace& at : places) {
    if (at.series == series_observed && at.point < inversion_.merged.curve.count()) {
      points.push_back({inversion_.merged.ID, inversion_.merged.curve.frequencies[at.point], component});
    }
  }
  Module_display_data::choose_points(points);
  Q_EMIT marked();
}

void Form_rhoplus_inversion::show_marks() {
  marking_->show_count();
  show_in_status(qt_text(Module_display_data::chosen_text()));
  show_graphs();
}

void Form_rhoplus_inversion::refresh_rhoplus_results() {
  if (rhoplus_busy_) {
    return;
  }
  const ScopedValue busy(rhoplus_busy_, true);
  setWindowTitle(qt_text(inversion_title(session().current_line, session().current_station,
                                         Module_display_data::site_name(session().current_station_index))));
  ui_->Text_rhoplus_target_chi->clear();
  ui_->Text_rhoplus_achieved_chi->clear();
  Text_rhoplus_out_->clear();
  run_note_->clear();
  inversion_ = {};
  inverted_key_ = Module_averaged_data::selected_key();
  if (session().current_station_index > 0 && !line_run_failed_) {
    // A failure has been reported; the empty result is shown.
    const int status = ahead_.finish(inverted_key_, session().frequencies, settings_, inversion_);
    line_run_failed_ = in_line_run_ && status != 0;
  }
  show_results();
  show_graphs();
  show_data_grid();
}

void Form_rhoplus_inversion::show_results() {
  const numerics::rhoplus::RhoplusRun& run = inversion_.run;
  Text_rhoplus_out_->setPlainText(qt_text(log_or_reason(inversion_)));
  if (run.status != numerics::rhoplus::rhoplus_ran) {
    Label_not_inverted_->setText(nothing_inverted);
    return;
  }
  Label_not_inverted_->clear();
  run_note_->setText(qt_text(note_of(inversion_)));
  const bool both = !inversion_.missing_files.empty() && !inversion_.unsupported.empty();
  run_note_->setToolTip(qt_text(inversion_.missing_files + (both ? "\n" : "") + inversion_.unsupported));
  ui_->Text_rhoplus_target_chi->setText(qt_text(format_number(run.target_chi, "0.00")));
  ui_->Text_rhoplus_achieved_chi->setText(qt_text(format_number(run.achieved_chi, "0.00")));
}

void Form_rhoplus_inversion::show_log_caption() {
  ui_->Command_rhoplus_log->setText(Text_rhoplus_out_->isHidden() ? "Results" : "Data");
}

void Form_rhoplus_inversion::show_graphs() {
  const Module_display_data::GraphPair plot = fit_plot(inversion_, session().frequencies);
  graphs_->set_point_text([plot](std::size_t series, std::size_t point, Component component) {
    return fit_point_text(plot, series, point, component);
  });
  if (plot.empty()) {
    graphs_->clear();
  } else {
    graphs_->show_plot(plot);
  }
  hand_over(*Picture_res_model_, sheet_plot(inversion_.run.model));
  Picture_res_model_->set_point_text([model = inversion_.run.model](int series, int) {
    return qt_text(sheet_text(model, static_cast<std::size_t>(series)));
  });
  Picture_res_model_->draw_graph();
}

void Form_rhoplus_inversion::show_data_grid() {
  const std::vector<DataRowTexts> rows = data_rows(inversion_);
  Grid_inversion_data_->setRowCount(static_cast<int>(rows.size()));
  for (int row = 0; row < Grid_inversion_data_->rowCount(); ++row) {
    const DataRowTexts& texts = rows[static_cast<std::size_t>(row)];
    for (int column = 0; column < data_column_count; ++column) {
      const std::optional<Component> switched = switched_in_column(column);
      auto* const cell =
          switched ? make_check_cell(*switched == Component::phase ? texts.use_phase : texts.use_resistivity)
                   : new QTableWidgetItem(qt_text(texts.texts[static_cast<std::size_t>(column)]));
      cell->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
      Grid_inversion_data_->setItem(row, column, cell);
    }
  }
}

void Form_rhoplus_inversion::switch_cell(int row, int column) {
  const std::optional<Component> component = switched_in_column(column);
  if (!component || inversion_.merged.ID == 0 || rhoplus_running_all_) {
    return;
  }
  // The main window may still show the curves of another dipole length.
  if (Module_averaged_data::toggle_merged_point(inversion_.merged, static_cast<std::size_t>(row), *component,
                                                inverted_key_) == Module_averaged_data::Edit::changed) {
    Q_EMIT edited();
  }
}

void Form_rhoplus_inversion::toggle_log() {
  const bool show_log = Text_rhoplus_out_->isHidden();
  Text_rhoplus_out_->setVisible(show_log);
  Grid_inversion_data_->setVisible(!show_log);
  show_log_caption();
}

void Form_rhoplus_inversion::show_pointer(Component component, bool off, double x, double y) {
  const QString marked = qt_text(Module_display_data::chosen_text());
  if (!marked.isEmpty() || off) {
    show_in_status(marked);  // stays in view as long as it matters
    return;
  }
  show_in_status(component == Component::resistivity ? "Resistivity" : "Phase");
  panels_[1]->setText(graph::FrequencyAxis::instance().text(x));
  panels_[2]->setText(qt_text(format_number(y, "0.00")));
}

/// A sentence takes the room of all three panels.
void Form_rhoplus_inversion::show_in_status(const QString& text) {
  panels_[0]->setText(text);
  const int part = ui_->Status_inversion->width() / static_cast<int>(panels_.size() + 1);
  const bool fits = fontMetrics().horizontalAdvance(text) < part;
  for (const std::size_t other : {1U, 2U}) {
    panels_.at(other)->clear();
    panels_.at(other)->setVisible(fits);
  }
}

void Form_rhoplus_inversion::follow_station() {
  if (rhoplus_running_all_) {
    return;  // the run displays the stations and inverts them itself
  }
  show_station_bar();
  refresh_rhoplus_results();
  if (line_chi_) {
    line_chi_->mark_station(session().current_station_index);
  }
}

void Form_rhoplus_inversion::begin_line_run() {
  in_line_run_ = true;
  line_run_failed_ = false;
}

void Form_rhoplus_inversion::end_line_run() { in_line_run_ = line_run_failed_ = false; }

void Form_rhoplus_inversion::show_station_bar() {
  const ScopedValue updating(session().updating_controls, true);
  ui_->HScroll_repeat->setRange(1, std::max(1, session().stations_in_line));
  ui_->HScroll_repeat->setValue(Module_display_data::place_in_line());
}

void Form_rhoplus_inversion::run_all() {
  if (rhoplus_running_all_) {
    rhoplus_stop_requested_ = true;
    return;
  }
  const QPointer<Form_rhoplus_inversion> still_open(this);
  rhoplus_running_all_ = true;
  rhoplus_stop_requested_ = false;
  ui_->Command_run_all->setText(stop_caption);
  ui_->HScroll_repeat->setEnabled(false);
  ui_->Command_occam->setEnabled(false);  // it goes through the line, too, and would put the display back
  begin_line_run();
  Q_EMIT line_run_begun();
  std::vector<StationChi> chis;
  const bool complete = invert_all(chis);
  if (still_open) {
    ui_->HScroll_repeat->setEnabled(true);
    ui_->Command_occam->setEnabled(true);
    ui_->Command_run_all->setText(run_caption);
    rhoplus_running_all_ = false;
    Q_EMIT line_run_ended();  // after a failure it isn't told again
    end_line_run();
    if (isVisible() && !chis.empty()) {
      show_line_chi(std::move(chis), complete);
    }
  }
}

void Form_rhoplus_inversion::show_line_chi(std::vector<StationChi> chis, bool complete) {
  if (line_chi_ == nullptr) {
    line_chi_ = new Form_line_chi(this);
    connect(line_chi_, &Form_line_chi::station_chosen, this, [this](int station_index) {
      if (!rhoplus_running_all_) {
        Q_EMIT station_chosen(station_index);
      }
    });
  }
  line_chi_->show_line(qt_text(session().current_line), std::move(chis), complete);
  line_chi_->mark_station(session().current_station_index);
  line_chi_->show();
  line_chi_->raise();
  line_chi_->activateWindow();
}

// Events run between the stations, so the window may have been closed and deleted after each of them.
bool Form_rhoplus_inversion::invert_all(std::vector<StationChi>& chis) {
  const QPointer<Form_rhoplus_inversion> still_open(this);
  // The main window's lists stay as they are while the run goes through the line.
  const ScopedValue updating(session().updating_controls, true);
  const int first = Module_display_data::first_station_of_current_line();
  const int count = session().stations_in_line;
  const InputOnlyTo only_this_window(*this);
  for (int place = 1; place <= count; ++place) {
    ui_->HScroll_repeat->setValue(place);
    const int station_index = first + place - 1;
    Module_database::ReadingKey key = Module_averaged_data::selected_key();
    key.station = session().station_value[static_cast<std::size_t>(station_index) - 1];
    line_run_failed_ = ahead_.begin(key, session().frequencies, settings_) != 0;
    Q_EMIT station_chosen(station_index);
    refresh_rhoplus_results();
    if (line_run_failed_) {
      return false;
    }
    chis.push_back(chi_of(inversion_, station_index, session().current_station));
    QCoreApplication::processEvents();  // the station is drawn once; what the user has done meanwhile comes
                                        // now
    if (!still_open || !isVisible() || (rhoplus_stop_requested_ && place < count)) {
      return false;
    }
  }
  return true;
}

void Form_rhoplus_inversion::edit_settings() {
  Form_rhoplus(settings_, this).exec();
  refresh_rhoplus_results();
}

void Form_rhoplus_inversion::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {  // that no control has used
    ui_->Command_done->click();
  } else {
    QMainWindow::keyPressEvent(event);
  }
}

void Form_rhoplus_inversion::closeEvent(QCloseEvent* event) {
  rhoplus_stop_requested_ = true;
  event->accept();
}
