#include "occam/windows/Form_occam_inversion.h"

#include <QApplication>
#include <QDir>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QScreen>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTimer>
#include <QVBoxLayout>
#include <utility>

#include "core/file_names.h"
#include "core/finished_work.h"
#include "core/text_fields.h"
#include "core/trap_errors.h"
#include "core/user_interface.h"
#include "occam/results/grid_export.h"
#include "occam/results/iteration_response.h"
#include "occam/results/response_plots.h"
#include "occam/run_parts.h"
#include "occam/windows/inversion_panel.h"
#include "occam/windows/model_controls.h"
#include "occam/windows/picture_model.h"
#include "occam/windows/response_frame.h"
#include "occam/windows/response_graph.h"
#include "occam/windows/section_contents.h"
#include "occam/windows/site_misfit_picture.h"
#include "platform/graph/axis_ticks.h"
#include "platform/widgets/panel_controls.h"
#include "platform/widgets/vex_splitter.h"

using namespace Module_occam;
namespace fs = std::filesystem;

namespace {

constexpr QSize design_size(1240, 760);
constexpr int split_settles_milliseconds = 100;
constexpr int look_again_milliseconds = 2000;

/// "hill" or, of one run among those of the folder, "hill (steep_startup)".
QString name_of(const RunResults& results) {
  const std::string start = own_start(results.control_file);
  return qt_text(results.folder.filename().string() + (start.empty() ? "" : " (" + start + ")"));
}

/// The start file to invert from; empty where an iteration file was chosen.
std::string start_file_of(const RunResults& results) {
  const std::string& name = results.control_file;
  return equal_ignoring_case(std::string_view(name).substr(0, 4), "ITER") ? std::string() : name;
}

/// Another window wants an answer, or work that lets events in is under way.
bool is_busy_elsewhere(const QWidget* window) {
  const QWidget* const modal = QApplication::activeModalWidget();
  return (modal != nullptr && modal != window) || QApplication::overrideCursor() != nullptr;
}

}  // namespace

Form_occam_inversion::Form_occam_inversion(RunResults results, QWidget* parent)
    : QDialog(parent, Qt::Window),
      view_(std::move(results)),
      controls_(new ModelControls),
      Picture_model_(new PictureModel(view_.results().data)),
      course_(new QWidget),
      convergence_(new ResponseGraph("vxGraph_occam", "Iteration", "Value")),
      site_misfits_(new SiteMisfitPicture),
      response_(new ResponseFrame(view_.response())),
      panel_(new InversionPanel(view_.results().folder, start_file_of(view_.results()))),
      contents_(new SectionContents(view_, *controls_, *panel_, this)),
      frames_(named(new QStackedWidget, "Frame_occam")),
      Label_title_(make_heading("Label_title")),
      Status_occam_(named(new QStatusBar, "Status_occam")),
      Label_resolution_(named(new QLabel, "Label_resolution")),
      Label_inversion_(named(new QLabel, "Label_inversion")),
      Splitter_iterate_(named(new VexSplitter, "Splitter_iterate")),
      Splitter_model_(named(new VexSplitter, "Splitter_model")),
      resizer_(new VexControlResizer(this)),
      Timer_resizer_(named(new QTimer(this), "Timer_resizer")),
      Timer_reset_resizer_(named(new QTimer(this), "Timer_reset_resizer")),
      Timer_refresh_(named(new QTimer(this), "Timer_refresh")) {
  setObjectName("Form_occam_inversion");
  setWindowTitle("Occam2D Results: " + name_of(view_.results()));
  graph::use_whole_numbers_along_x(convergence_->chart());
  lay_out();
  connect_controls();
  connect_timers();
  const std::string& title = view_.results().data.title;
  Label_title_->setText(qt_text((title.empty() ? "" : title + "   ") + view_.results().folder.string()));
  controls_->list_iterations(view_);
  panel_->offer_continue(view_.results().has_iterations());
  propose_range();
  response_->clear();
  show_convergence();
  display_current_iterate();
}

void Form_occam_inversion::lay_out() {
  auto* const course_parts = new QHBoxLayout(course_);
  course_parts->setContentsMargins(0, 0, 0, 0);
  course_parts->addWidget(convergence_, 3);
  course_parts->addWidget(site_misfits_, 2);
  frames_->addWidget(course_);
  frames_->addWidget(response_);
  controls_->add_page(panel_, "In&version");
  Splitter_model_->setOrientation(Qt::Vertical);
  Splitter_model_->addWidget(Picture_model_);
  Splitter_model_->addWidget(frames_);
  Splitter_model_->setChildrenCollapsible(false);
  Splitter_iterate_->setOrientation(Qt::Horizontal);
  Splitter_iterate_->addWidget(controls_);
  Splitter_iterate_->addWidget(Splitter_model_);
  Splitter_iterate_->setChildrenCollapsible(false);
  Splitter_iterate_->setStretchFactor(0, 0);
  Splitter_iterate_->setStretchFactor(1, 1);
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(6, 6, 6, 2);
  rows->setSpacing(4);
  rows->addWidget(Label_title_);
  rows->addWidget(Splitter_iterate_, 1);
  rows->addWidget(Status_occam_);
  Status_occam_->setSizeGripEnabled(false);
  Status_occam_->addPermanentWidget(Label_resolution_);
  Status_occam_->addPermanentWidget(Label_inversion_);
  resizer_->manage(Splitter_model_, {1.0, 1.0});
  resizer_->manage(response_->splitter(), {1.0, 1.0, 1.0});
  resize_to_fit(*this, design_size);
}

void Form_occam_inversion::connect_controls() {
  connect(controls_, &ModelControls::iteration_chosen, this, &Form_occam_inversion::choose_iteration);
  connect(controls_, &ModelControls::look_changed, this, &Form_occam_inversion::display_current_iterate);
  connect(controls_, &ModelControls::quantity_changed, this, &Form_occam_inversion::redraw_section);
  connect(contents_, &SectionContents::changed, this, [this] {
    redraw_section();
    close_if_wanted();
  });
  connect(contents_, &SectionContents::state_changed, this,
          [this] { Label_resolution_->setText(contents_->state_text()); });
  connect(controls_, &ModelControls::display_response, this, &Form_occam_inversion::swap_frames);
  connect(controls_, &ModelControls::write_grid, this, &Form_occam_inversion::write_grid);
  connect(controls_, &ModelControls::save_section_png, this, [this] { save_section("png"); });
  connect(controls_, &ModelControls::save_section_pdf, this, [this] { save_section("pdf"); });
  connect(controls_, &ModelControls::save_fits, this, &Form_occam_inversion::save_fits);
  connect(controls_, &ModelControls::done, this, &QDialog::accept);
  connect(controls_, &ModelControls::page_changed, this, &Form_occam_inversion::show_inversion_state);
  connect(panel_, &InversionPanel::state_changed, this, &Form_occam_inversion::show_inversion_state);
  connect(panel_, &InversionPanel::iteration_ended, this, &Form_occam_inversion::follow_inversion);
  connect(panel_, &InversionPanel::ended, this, &Form_occam_inversion::end_inversion);
  connect(site_misfits_, &SiteMisfitPicture::hovered, this, &Form_occam_inversion::show_status);
  connect(site_misfits_, &SiteMisfitPicture::site_chosen, this, &Form_occam_inversion::show_station_of);
  connect(Picture_model_, &PictureModel::resized, this, &Form_occam_inversion::redraw_section);
  connect(Picture_model_, &PictureModel::hovered, this, &Form_occam_inversion::show_status);
  connect(Picture_model_, &PictureModel::menu_asked_for, this, &Form_occam_inversion::show_section_menu);
  connect(response_, &ResponseFrame::hovered, this, &Form_occam_inversion::show_status);
  connect(response_, &ResponseFrame::station_chosen, this, [this](int site_number) {
    view_.choose_site(site_number);
    display_current_station();
  });
  connect(&convergence_->chart(), &VexGraphControl::pointer_moved, this,
          [this](bool off, double iteration, double value) {
            show_status(off ? QString() : qt_text(convergence_text(convergence_->plot(), iteration, value)));
          });
  connect(&convergence_->chart(), &VexGraphControl::point_selected, this, [this](int series, int point) {
    const auto& x = convergence_->plot().table.series[static_cast<std::size_t>(series)].x;
    choose_iteration(static_cast<int>(x[static_cast<std::size_t>(point)]));
  });
}

void Form_occam_inversion::connect_timers() {
  Timer_resizer_->setSingleShot(true);
  Timer_resizer_->setInterval(split_settles_milliseconds);
  connect(Timer_resizer_, &QTimer::timeout, this, [this] { resizer_->apply_resize(); });
  Timer_reset_resizer_->setSingleShot(true);
  Timer_reset_resizer_->setInterval(split_settles_milliseconds);
  connect(Timer_reset_resizer_, &QTimer::timeout, this, [this] { resizer_->capture_layout(); });
  for (VexSplitter* const splitter : {Splitter_iterate_, Splitter_model_, response_->splitter()}) {
    connect(splitter, &VexSplitter::split_moved, Timer_reset_resizer_, qOverload<>(&QTimer::start));
  }
  Timer_refresh_->setSingleShot(true);  // started again when a look is over: it may show a message
  Timer_refresh_->setInterval(look_again_milliseconds);
  connect(Timer_refresh_, &QTimer::timeout, this, &Form_occam_inversion::look_for_iterations);
}

void Form_occam_inversion::resizeEvent(QResizeEvent* event) {
  QDialog::resizeEvent(event);
  Timer_resizer_->start();
}

void Form_occam_inversion::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  resizer_->apply_resize();
  Timer_refresh_->start();
}

void Form_occam_inversion::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_F5) {
    look_for_iterations();
  } else {
    QDialog::keyPressEvent(event);
  }
}

bool Form_occam_inversion::response_on_show() const { return frames_->currentWidget() == response_; }

void Form_occam_inversion::show_status(const QString& text) { Status_occam_->showMessage(text); }

void Form_occam_inversion::show_convergence() {
  convergence_->show_plot(convergence_plot(view_.results()));
  convergence_->mark_x(view_.current_iteration());
}

void Form_occam_inversion::redraw_section() {
  SectionPicture picture = make_section_picture(view_, contents_->look(), Picture_model_->picture_size());
  controls_->show_model_range(picture);
  Picture_model_->show_picture(std::move(picture));
}

void Form_occam_inversion::display_current_iterate() {
  response_->clear_errors();
  controls_->show_numbers(view_);
  convergence_->mark_x(view_.current_iteration());
  redraw_section();
  if (response_on_show()) {
    display_current_response();
  } else {
    show_site_misfits();
  }
}

void Form_occam_inversion::show_site_misfits() {
  const bool has_response = view_.results().has(view_.current_iteration()) &&
                            !find_response(view_.results(), view_.current_iteration()).empty();
  if (has_response && (view_.response_ready() || view_.load_response() == 0)) {
    site_misfits_->show_misfits(misfit_table(view_.response()), view_.response().resp_site_names);
  } else {
    site_misfits_->show_note(has_response ? "The response of this iteration can't be read"
                             : view_.results().has_start_only()
                                 ? "No iteration yet, and no misfits: the section shows the start model"
                                 : "No response of this iteration yet");
  }
}

void Form_occam_inversion::show_station_of(int site_number) {
  view_.choose_site(site_number);
  swap_frames();
}

void Form_occam_inversion::display_current_response() {
  if (!view_.response_ready() && view_.load_response() != 0) {
    response_->clear();
    return;
  }
  response_->take_response();
  display_current_station();
  display_response_errors();
  display_response_profiles();
}

void Form_occam_inversion::display_current_station() {
  if (view_.response_ready()) {
    response_->display_station(view_.current_site());
  }
}

void Form_occam_inversion::display_response_errors() {
  const SectionLook look = controls_->look();
  response_->display_errors(image_palette(look.colour_table, look.invert));
}

void Form_occam_inversion::display_response_profiles() { response_->display_profiles(); }

void Form_occam_inversion::propose_range() {
  if (view_.load_iteration() == 0) {
    controls_->propose_range(suggested_range(view_.parameters()));
  }
}

void Form_occam_inversion::choose_iteration(int iteration) {
  view_.choose_iteration(iteration);
  if (!controls_->has_range()) {
    propose_range();  // the iteration that the window began with couldn't be read
  }
  controls_->list_iterations(view_);
  display_current_iterate();
}

void Form_occam_inversion::swap_frames() {
  const bool response = !response_on_show();
  frames_->setCurrentWidget(response ? static_cast<QWidget*>(response_) : course_);
  controls_->offer_response(!response);
  if (response) {
    resizer_->apply_resize();
    display_current_response();
  } else {
    show_site_misfits();
  }
}

void Form_occam_inversion::look_for_iterations() {
  const bool followed = view_.current_iteration() == view_.results().last_iteration;
  if (!is_busy_elsewhere(this) && view_.refresh()) {
    take_changes(followed);
  }
  Timer_refresh_->start();
}

/// @param followed  whether the last iteration was on show: then the newest one comes
void Form_occam_inversion::take_changes(bool followed) {
  panel_->offer_continue(view_.results().has_iterations());
  if (followed) {
    view_.choose_iteration(view_.results().last_iteration);
    propose_range();
  }
  controls_->list_iterations(view_);
  show_convergence();
  display_current_iterate();
}

/// What the inversion of this window has written is whole: no second look is needed to see that.
void Form_occam_inversion::follow_inversion() {
  if (is_busy_elsewhere(this)) {
    return;  // the timer looks later
  }
  const bool followed = view_.current_iteration() == view_.results().last_iteration;
  const bool changed = view_.refresh();
  if (view_.refresh() || changed) {
    take_changes(followed);
  }
}

void Form_occam_inversion::end_inversion() {
  follow_inversion();
  redraw_section();  // with what had to wait for the end
  close_if_wanted();
}

void Form_occam_inversion::close_if_wanted() {
  if (!closing_ || running() || contents_->running()) {
    return;
  }
  if (is_busy_elsewhere(this)) {  // what asks in front of this window mustn't lose it
    constexpr int look_again = 100;
    QTimer::singleShot(look_again, this, &Form_occam_inversion::close_if_wanted);
    return;
  }
  closing_ = false;
  QDialog::done(result());
}

void Form_occam_inversion::show_inversion_state() {
  const QString text = panel_->isVisible() ? QString() : panel_->state_text();
  // A long sentence would widen the window; half of it is for what the pointer reads.
  Label_inversion_->setText(fontMetrics().elidedText(text, Qt::ElideRight, width() / 2));
  Label_inversion_->setToolTip(plain_tool_tip(text));
}

void Form_occam_inversion::show_inversion() { controls_->show_page(panel_); }

bool Form_occam_inversion::running() const { return panel_->running(); }

void Form_occam_inversion::stop_and_close() {
  closing_ = true;
  panel_->stop();
  contents_->finish();
  close_if_wanted();
  setEnabled(!closing_);  // nothing is begun in a window that is about to close
}

void Form_occam_inversion::done(int result) {
  if (running() && !closing_ &&
      !user_interface().ask_yes_no("An inversion is running in " + folder().string() +
                                   ". Stop it and close the window? Iterations that are finished stay, and "
                                   "it can be continued.")) {
    return;
  }
  setResult(result);
  stop_and_close();
}

void Form_occam_inversion::write_grid() {
  if (!view_.can_write() && !ask_for_output_folder()) {
    return;
  }
  static_cast<void>(write_grids(view_));  // the user has seen the outcome
  if (response_on_show()) {
    display_current_response();
  }
}

bool Form_occam_inversion::ask_for_output_folder() {
  std::string path = suggested_file("_logres.grd");
  if (Module_util::select_output_file(path, "The run's folder can't be written: choose another for the grids",
                                      "Geosoft grids (*.grd)|*.grd") != 0 ||
      path.empty()) {
    return false;
  }
  view_.write_to(fs::path(path).parent_path());
  return true;
}

std::string Form_occam_inversion::suggested_file(const std::string& ending) const {
  const RunResults& results = view_.results();
  const int iteration = view_.current_iteration();
  const fs::path path = results.has(iteration) ? results.derived_file(iteration, ending)
                                               : results.output_folder / ("section" + ending);
  return view_.can_write() ? path.string()
                           : QDir::home().filePath(qt_text(path.filename().string())).toStdString();
}

void Form_occam_inversion::save_section(const char* ending) {
  std::string path = suggested_file(std::string("_section.") + ending);
  const std::string filter =
      ending == std::string("pdf") ? "PDF documents (*.pdf)|*.pdf" : "PNG pictures (*.png)|*.png";
  if (Module_util::select_output_file(path, "Save the section", filter) == 0 && !path.empty() &&
      Module_occam::save_section(view_, contents_->look(), path, Picture_model_->size()) == 0) {
    user_interface().show_message("The section is written to " + path);
    Module_Brenlox::tell_finished("The section is written to " + path, path);
  }
}

void Form_occam_inversion::save_fits() {
  std::string path = suggested_file("_fit.pdf");
  if (Module_util::select_output_file(path, "Save the fit of all stations", "PDF documents (*.pdf)|*.pdf") ==
          0 &&
      !path.empty() && save_station_fits(view_, path) == 0) {
    user_interface().show_message("The fit of all stations is written to " + path);
    Module_Brenlox::tell_finished("The fit of all stations is written to " + path, path);
  }
}

void Form_occam_inversion::show_section_menu(QPoint global) {
  QMenu menu;
  menu.addAction("Show &all", Picture_model_, &PictureModel::reset_zoom);
  menu.addSeparator();
  menu.addAction("Save as P&NG...", this, [this] { save_section("png"); });
  menu.addAction("Save as P&DF...", this, [this] { save_section("pdf"); });
  menu.exec(global);
}
