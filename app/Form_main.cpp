#include "app/Form_main.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QResizeEvent>
#include <QScreen>

#include "app/given_files.h"
#include "app/help/Form_Whats_New.h"
#include "app/help/Form_about.h"
#include "app/help/help_key.h"
#include "app/imported_line.h"
#include "app/line_document_file.h"
#include "app/main_toolbar.h"
#include "app/panels/output_panel.h"
#include "app/panels/picture_station.h"
#include "app/recent_surveys.h"
#include "app/rhoplus_windows.h"
#include "app/sample_survey_file.h"
#include "app/session_start.h"
#include "app/station_keys.h"
#include "app/survey_display.h"
#include "app/survey_file_commands.h"
#include "app/survey_tools.h"
#include "app/tensor_windows.h"
#include "app/tools/Form_find_file.h"
#include "app/tools/Form_memory_status.h"
#include "app/view_menu.h"
#include "app/view_settings.h"
#include "app/window_size.h"
#include "app/work_line.h"
#include "core/finished_work.h"
#include "core/preferences.h"
#include "core/scope_guard.h"
#include "core/session_state.h"
#include "core/trap_errors.h"
#include "core/undo_stack.h"
#include "database/survey_database.h"
#include "display/windows/line_document.h"
#include "display/windows/marking_actions.h"
#include "exchange/windows/Form_transfer_functions.h"
#include "import/field_files.h"
#include "import/windows/Form_import_MTData.h"
#include "import/windows/Form_import_report.h"
#include "occam/windows/Form_occam2d_mask_topo.h"
#include "occam/windows/results_windows.h"
#include "platform/system/system_facts.h"
#include "platform/widgets/dropped_files.h"
#include "platform/widgets/panel_controls.h"
#include "platform/widgets/typed_text.h"
#include "platform/widgets/window_order.h"
#include "survey_edits/undo_removal.h"
#include "tensor/windows/section_pages.h"
#include "tensor/windows/strike_figures.h"
#include "ui_Form_main.h"

namespace {

constexpr int split_settles_milliseconds = 100;
constexpr int idle_milliseconds = 3000;

UTIL::DisplayFacts display_facts(const QScreen& screen) {
  UTIL::DisplayFacts facts;
  facts.bits_per_pixel = screen.depth();
  facts.planes = 1;
  facts.width_millimetres = static_cast<float>(screen.physicalSize().width());
  facts.width_pixels = screen.size().width();
  facts.logical_pixels_per_inch = static_cast<int>(screen.logicalDotsPerInchX());
  return facts;
}

/// An ampersand in a path is no mnemonic.
QString menu_text(int number, QString path) { return QString("&%1 ").arg(number) + path.replace('&', "&&"); }

/// The copy opens where the survey was looked at.
bool save_and_stay() {
  const std::string place = Module_Brenlox::place_on_show();
  const bool saved = Module_Brenlox::save_survey_as();
  if (saved) {
    Module_Brenlox::remember_place(place);
  }
  return saved;
}

/// A dialog is up, or a run lets events in.
bool is_at_work() {
  return QApplication::activeModalWidget() != nullptr || QApplication::overrideCursor() != nullptr;
}

/// Shows what an import did with its files; nothing if there is no more to it than that they were read.
std::function<void()> report_shower(const Module_data_file::ImportReport& report, QWidget* window) {
  if (!report.has_remarks()) {
    return {};
  }
  return [report, window] {
    if (!is_at_work()) {
      Form_import_report(report, window).exec();
    }
  };
}

}  // namespace

Form_main::Form_main(QWidget* parent)
    : QMainWindow(parent),
      ui_(std::make_unique<Ui::Form_main>()),
      resizer_(new VexControlResizer(this)),
      resizer_timer_(new QTimer(this)),
      idle_timer_(new QTimer(this)),
      version_(new QLabel(this)),
      help_key_(new HelpKey(*this)) {
  new TypedTextFirst(this);
  new WindowOrder(this);
  compose();
  resizer_->capture_layout();
  Module_Brenlox::start_session(display_facts(*screen()));
  version_->setText("Brenlox Version " + QString::fromStdString(session().version_text));
  restore_size(*this);
  connect_file_menu();
  connect_data_menus();
  connect_output_menus();
  connect_help_menu();
  add_station_keys(*ui_->Selection_row);
  fill_toolbar();
  Module_Brenlox::reset_session();
  show_no_survey();
}

Form_main::~Form_main() {
  Module_Brenlox::set_undo_listener({});
  Module_Brenlox::set_redo_listener({});
  Module_Brenlox::set_finished_listener({});
}

void Form_main::compose() {
  ui_->setupUi(this);
  marking_ = new MarkingActions(*this);
  ui_->menu_edit->insertActions(ui_->menu_rhoplus_options,
                                {marking_->actions().begin(), marking_->actions().end()});
  ui_->menu_edit->insertSeparator(marking_->actions().front());
  ui_->menu_edit->insertSeparator(ui_->menu_rhoplus_options);
  take_typed_text_before_menus(*this);
  explain_items_without_work();
  setAcceptDrops(true);
  display_ = new SurveyDisplay(
      {ui_->Selection_row, ui_->Picture_profile, ui_->Picture_station, ui_->Picture_plan_group}, this);

  output_ = new OutputPanel(ui_->Frame_display);
  output_->setObjectName("Frame_store");
  ui_->display_layout->addWidget(output_);
  output_->hide();

  survey_tools_ = new SurveyTools(*display_, *this);
  rhoplus_ = new RhoplusWindows(*display_, *this);
  tensor_ = new TensorWindows(*display_, *this);
  results_ = new ResultsWindows(this);

  QFont calm_heading = ui_->Command_first_import->font();
  calm_heading.setPointSizeF(calm_heading.pointSizeF() * 1.3);
  ui_->Command_first_import->setFont(calm_heading);
  connect(ui_->Command_first_import, &QPushButton::clicked, ui_->menu_import_MT, &QAction::trigger);

  work_line_ = new WorkLine(this);
  setStatusBar(work_line_);
  Module_Brenlox::set_finished_listener(
      [this](const Module_Brenlox::FinishedWork& work) { tell_work(work); });

  for (QPushButton* const button : findChildren<QPushButton*>()) {
    button->setAutoDefault(true);  // Enter presses the one that has the focus
  }

  version_->setObjectName("Label_version");
  version_->setContentsMargins(0, 2, 9, 0);  // on the line of the menus
  ui_->menu_bar->setCornerWidget(version_);  // a bar of its own would take space from the graphs

  for (QLineEdit* const box : findChildren<QLineEdit*>()) {
    box->setAcceptDrops(false);  // a file dropped there would be typed in as a name
  }

  resizer_->setObjectName("vxReSizer");
  resizer_->manage(ui_->Splitter_profile, {2.0, 3.0});
  resizer_->manage(ui_->Splitter_map, {2.0, 3.0});

  resizer_timer_->setObjectName("Timer_resizer");
  resizer_timer_->setSingleShot(true);
  resizer_timer_->setInterval(split_settles_milliseconds);
  connect(resizer_timer_, &QTimer::timeout, this, &Form_main::resizer_timer_event);
  // Whoever copies the file of a survey that is open gets all but the edits of the last seconds.
  idle_timer_->setObjectName("Timer_idle");
  idle_timer_->setInterval(idle_milliseconds);
  connect(idle_timer_, &QTimer::timeout, this, Module_database::settle_idle_survey);
  idle_timer_->start();
  for (const VexSplitter* const splitter : {ui_->Splitter_profile, ui_->Splitter_map}) {
    connect(splitter, &VexSplitter::split_moved, resizer_timer_, qOverload<>(&QTimer::start));
  }
}

/// A survey has nothing that these could show or delete. Readings are taken out by Remove.
void Form_main::explain_items_without_work() {
  for (QMenu* const menu :
       {ui_->menu_file, ui_->menu_database, ui_->menu_display_database, ui_->menu_delete}) {
    menu->setToolTipsVisible(true);
  }
  const auto disable = [](const QMenu& menu, const QString& why) {
    menu.menuAction()->setEnabled(false);
    menu.menuAction()->setToolTip(why);
    for (QAction* const item : menu.actions()) {
      item->setEnabled(false);
      item->setToolTip(why);
    }
  };
  disable(*ui_->menu_display_database,
          "A survey is shown by line and station; choose them above the graphs, or look into its tables by "
          "View Table");
  disable(
      *ui_->menu_delete,
      "A survey keeps no overrides. Masks are taken back at the points, readings are taken out by Remove");
}

void Form_main::connect_file_menu() {
  connect(ui_->menu_database_file_0, &QAction::triggered, this,
          [this] { change_survey(Module_Brenlox::create_chosen_survey); });
  connect(ui_->menu_database_file_1, &QAction::triggered, this,
          [this] { change_survey(Module_Brenlox::open_chosen_survey); });
  connect(ui_->menu_database_file_2, &QAction::triggered, this,
          [this] { change_survey(Module_Brenlox::close_survey); });
  for (std::size_t index = 0; index < session().recent_files.size(); ++index) {
    connect(menu_item("menu_file_list", static_cast<int>(index)), &QAction::triggered, this,
            [this, index] { open_survey(QString::fromStdString(session().recent_files.at(index))); });
  }
  connect(ui_->menu_saveas, &QAction::triggered, this, [this] { change_survey(save_and_stay); });
  connect(ui_->menu_line_document, &QAction::triggered, this, &Form_main::write_line_document);
  connect(ui_->menu_exit, &QAction::triggered, this, &QWidget::close);
  connect(ui_->menu_file, &QMenu::aboutToShow, this, &Form_main::show_recent_files);  // files come and go
  connect(ui_->Picture_open, &OpeningPage::new_wanted, ui_->menu_database_file_0, &QAction::trigger);
  connect(ui_->Picture_open, &OpeningPage::open_wanted, ui_->menu_database_file_1, &QAction::trigger);
  connect(ui_->Picture_open, &OpeningPage::sample_wanted, this,
          [this] { change_survey(Module_Brenlox::create_sample_survey); });
  connect(ui_->Picture_open, &OpeningPage::tutorial_wanted, help_key_, &HelpKey::show_tutorial);
  connect(ui_->Picture_open, &OpeningPage::recent_chosen, this, [this](int index) {
    open_survey(QString::fromStdString(session().recent_files.at(static_cast<std::size_t>(index))));
  });
}

void Form_main::connect_data_menus() {
  connect(ui_->menu_Recalculate_merged, &QAction::triggered, survey_tools_, &SurveyTools::recalculate_merged);
  connect(ui_->menu_import_MT, &QAction::triggered, this, &Form_main::import_data);
  for (std::size_t index = 0; index < Module_database::viewed_tables.size(); ++index) {
    connect(menu_item("menu_view_table", static_cast<int>(index)), &QAction::triggered, this,
            [this, index] { survey_tools_->view_table(Module_database::viewed_tables.at(index)); });
  }
  connect(ui_->menu_thresholds, &QAction::triggered, survey_tools_, &SurveyTools::select_frequencies);
  connect_survey_edits();
  connect(ui_->menu_undo, &QAction::triggered, display_, &SurveyDisplay::undo);
  connect(ui_->menu_redo, &QAction::triggered, display_, &SurveyDisplay::redo);
  connect(marking_, &MarkingActions::edited, display_, &SurveyDisplay::redraw);
  connect(marking_, &MarkingActions::left, display_, &SurveyDisplay::redraw_marks);
  connect(display_, &SurveyDisplay::marks_changed, marking_, &MarkingActions::show_count);
  const auto tell = [this](const QString& text) { tell_work({text.toStdString(), {}}); };
  connect(display_, &SurveyDisplay::told, this, tell);
  connect(marking_, &MarkingActions::told, this, tell);
  Module_Brenlox::set_undo_listener([this](bool available) { ui_->menu_undo->setEnabled(available); });
  Module_Brenlox::set_redo_listener([this](bool available) { ui_->menu_redo->setEnabled(available); });
}

void Form_main::connect_survey_edits() {
  connect(survey_tools_, &SurveyTools::readings_changed, this, [this] {
    rhoplus_->close_results();
    survey_changed();
  });
  connect(ui_->menu_database_remove, &QAction::triggered, survey_tools_, &SurveyTools::remove_readings);
  connect(ui_->menu_database_undo_removal, &QAction::triggered, survey_tools_, &SurveyTools::undo_removal);
  connect(ui_->menu_database_rename, &QAction::triggered, survey_tools_,
          &SurveyTools::rename_line_or_station);
}

void Form_main::connect_output_menus() {
  connect(ui_->menu_output_data_0, &QAction::triggered, this,
          [this] { show_output_panel(Module_output::OutputKind::rhoplus); });
  connect(ui_->menu_output_data_1, &QAction::triggered, this,
          [this] { show_output_panel(Module_output::OutputKind::zonge); });
  connect(ui_->menu_transfer_functions, &QAction::triggered, this, &Form_main::write_transfer_functions);
  connect(output_, &OutputPanel::done, this, [this] { show_panels(session().station_count > 0); });
  connect(ui_->menu_occam2d, &QAction::triggered, results_, &ResultsWindows::open_chosen);
  connect(rhoplus_, &RhoplusWindows::inversion_wanted, results_,
          [this](const QString& directory) { results_->open_to_run(directory.toStdString()); });
  connect(results_, &ResultsWindows::all_closed, this, &QWidget::close);
  connect(ui_->menu_occam2d_topo_mask, &QAction::triggered, this,
          [this] { Form_occam2d_mask_topo(this).exec(); });
  connect(ui_->menu_pseudo_section, &QAction::triggered, tensor_, &TensorWindows::show_pseudo_section);
  connect(ui_->menu_strike, &QAction::triggered, tensor_, &TensorWindows::show_strike);
  connect(ui_->menu_tensor_map, &QAction::triggered, tensor_, &TensorWindows::show_map);
  connect(tensor_, &TensorWindows::strike_chosen, rhoplus_, &RhoplusWindows::propose_strike);
  connect(tensor_, &TensorWindows::strike_chosen, output_, &OutputPanel::propose_strike);
  connect(tensor_, &TensorWindows::strike_chosen, this,
          [this](std::optional<double> strike) { export_entries_.propose_strike(strike); });
  connect(ui_->menu_rhoplus_options, &QAction::triggered, rhoplus_, &RhoplusWindows::edit_settings);
  connect(ui_->Picture_station, &StationPanel::inversion_wanted, rhoplus_, &RhoplusWindows::show_results);
}

void Form_main::connect_help_menu() {
  connect(ui_->menu_tutorial, &QAction::triggered, help_key_, &HelpKey::show_tutorial);
  connect(ui_->menu_keys, &QAction::triggered, help_key_, &HelpKey::show_keys);
  connect(ui_->menu_about, &QAction::triggered, this, [this] { Form_about(this).exec(); });
  connect(ui_->menu_find_file, &QAction::triggered, this, [this] { Form_find_file(this).exec(); });
  connect(ui_->menu_memory_status, &QAction::triggered, this, [this] { Form_memory_status(this).exec(); });
  connect(ui_->menu_whats_new, &QAction::triggered, this, [this] { Form_Whats_New(this).exec(); });
}

void Form_main::fill_toolbar() {
  toolbar_ = new MainToolbar(this);
  addToolBar(toolbar_);
  view_menu_ = new ViewMenu(*ui_->menu_view_data, *display_, this);
  toolbar_->add_item(*ui_->menu_database_file_1, ToolbarIcon::open, "Open a survey");
  toolbar_->add_item(*ui_->menu_import_MT, ToolbarIcon::import_files, "Import field files");
  toolbar_->addSeparator();
  toolbar_->add_item(*ui_->menu_undo, ToolbarIcon::undo, "Undo the last change");
  toolbar_->add_item(*ui_->menu_redo, ToolbarIcon::redo, "Do again what was undone");
  toolbar_->addSeparator();
  QAction* const previous = toolbar_->add_button("Toolbar_previous", ToolbarIcon::previous,
                                                 "Previous station", "Previous station of the line (Left)");
  connect(previous, &QAction::triggered, ui_->Selection_row,
          [this] { ui_->Selection_row->step_station(-1); });
  QAction* const next = toolbar_->add_button("Toolbar_next", ToolbarIcon::next, "Next station",
                                             "Next station of the line (Right)");
  connect(next, &QAction::triggered, ui_->Selection_row, [this] { ui_->Selection_row->step_station(1); });
  toolbar_->add_item(*view_menu_->both_modes(), ToolbarIcon::both_modes, "ExHy and EyHx together");
  toolbar_->addSeparator();
  toolbar_->add_item(*ui_->menu_pseudo_section, ToolbarIcon::pseudo_section, "Pseudo-section of the line");
  QAction* const invert = toolbar_->add_button("Toolbar_invert", ToolbarIcon::invert, "Invert",
                                               "One-dimensional inversion of the merged curve");
  connect(invert, &QAction::triggered, rhoplus_, &RhoplusWindows::show_results);
  toolbar_->add_item(*ui_->menu_occam2d, ToolbarIcon::inversion, "Runs of two-dimensional inversion");
  toolbar_->add_item(*ui_->menu_transfer_functions, ToolbarIcon::export_files,
                     "Export transfer functions for other programs");
  toolbar_->set_needs({ui_->menu_import_MT},
                      {previous, next, view_menu_->both_modes(), ui_->menu_pseudo_section, invert,
                       ui_->menu_transfer_functions});
  view_menu_->switch_toolbar(*toolbar_);
}

QAction* Form_main::menu_item(const char* array, int index) const {
  return findChild<QAction*>(QString("%1_%2").arg(array).arg(index));
}

void Form_main::open_survey(const QString& path) {
  change_survey([file = path.toStdString()] { return Module_Brenlox::open_survey_file(file); });
}

void Form_main::open_files(const QStringList& paths) {
  if (is_at_work()) {
    QApplication::beep();
    work_line_->tell("Nothing was opened: another window or some work has to end first", {});
    return;
  }
  std::vector<std::string> given_paths;
  for (const QString& path : paths) {
    given_paths.push_back(path.toStdString());
  }
  const Module_Brenlox::GivenFiles given = Module_Brenlox::sort_given_files(given_paths);
  if (given.surveys.size() > 1) {
    user_interface().show_message("Only one survey can be open: " + given.surveys[0] + " or " +
                                  given.surveys[1]);
    return;
  }
  if (!given.surveys.empty()) {
    open_survey(QString::fromStdString(given.surveys.front()));
    if (!session().database_open || session().database_file != given.surveys.front()) {
      return;  // the field files given with it are for no other survey
    }
  }
  if (!given.field_paths.empty()) {
    import_given(given.field_paths);
  }
}

void Form_main::dragEnterEvent(QDragEnterEvent* event) {
  if (!is_at_work() && !local_paths(*event->mimeData()).isEmpty()) {
    event->setDropAction(Qt::CopyAction);  // whatever is proposed: the files stay where they are
    event->accept();
  }
}

void Form_main::dropEvent(QDropEvent* event) {
  const QStringList paths = local_paths(*event->mimeData());
  if (is_at_work() || paths.isEmpty()) {
    return;
  }
  event->setDropAction(Qt::CopyAction);
  event->accept();
  activateWindow();
  // Later: the program that they come from waits for the end of this event.
  QMetaObject::invokeMethod(
      this, [this, paths] { open_files(paths); }, Qt::QueuedConnection);
}

void Form_main::change_survey(const std::function<bool()>& change) {
  leave_text_box();
  Module_Brenlox::remember_place(Module_Brenlox::place_on_show());
  told_of_survey_ = false;
  const bool changed = change();
  if (changed) {
    display_->leave_survey();
    if (!told_of_survey_) {
      work_line_->tell({}, {});  // what stood there was about the survey before
    }
  }
  if (changed || !session().database_open) {
    show_no_survey();
  }
  if (changed && session().database_open) {
    show_survey();
  }
}

void Form_main::tell_work(const Module_Brenlox::FinishedWork& work) {
  told_of_survey_ = true;
  work_line_->tell(QString::fromStdString(work.text), QString::fromStdString(work.path));
}

void Form_main::show_no_survey() {
  const ScopedValue<bool> updating(session().updating_controls, true);
  set_database_menus(false);
  setWindowTitle(QString::fromStdString(Module_Brenlox::window_caption()));
  show_recent_files();
  ui_->Picture_open->set_picture(QString::fromStdString(Module_Brenlox::opening_picture_file()));
}

void Form_main::show_survey() {
  set_database_menus(true);
  setWindowTitle(QString::fromStdString(Module_Brenlox::window_caption()));
  show_recent_files();
  display_site_map();
}

void Form_main::apply_resize() {
  if (isMinimized() || session().updating_controls || !isVisible()) {
    return;
  }
  resizer_->apply_resize();
  if (!isMaximized() && !isFullScreen()) {  // the size to go back to stays
    session().form_width = static_cast<float>(width());
    session().form_height = static_cast<float>(height());
  }
}

void Form_main::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  apply_resize();
}

void Form_main::showEvent(QShowEvent* event) {
  QMainWindow::showEvent(event);
  apply_resize();
}

void Form_main::resizer_timer_event() {
  resizer_->capture_layout();
  display_site_map();
}

void Form_main::leave_text_box() { take_typed_text(); }

void Form_main::closeEvent(QCloseEvent* event) {
  if (!results_->close_all()) {
    event->ignore();  // the window closes once the inversions have ended, if they are to
    return;
  }
  leave_text_box();
  Module_Brenlox::remember_place(Module_Brenlox::place_on_show());
  Module_Brenlox::write_preferences();
  keep_maximized(*this);
  rhoplus_->close_results();
  tensor_->close_all();
  event->accept();
}

void Form_main::set_database_menus(bool open) {
  for (QAction* const item :
       {ui_->menu_database_file_2, ui_->menu_saveas, ui_->menu_line_document, ui_->menu_edit->menuAction(),
        ui_->menu_database->menuAction(), ui_->menu_view_data->menuAction(), ui_->menu_thresholds,
        ui_->menu_output->menuAction()}) {
    item->setVisible(open);
  }
  ui_->menu_database_undo_removal->setEnabled(Module_survey_edits::removal_can_be_undone());
  for (QAction* const item : {ui_->menu_database_file_0, ui_->menu_import->menuAction()}) {
    item->setVisible(true);
    item->setEnabled(true);
  }
  // Hides one page before it shows the other, so that neither is laid out in half the room.
  if (open) {
    ui_->Picture_open->hide();
    ui_->Frame_display->show();
    ui_->central->layout()->activate();
    show_panels(true);  // before anything is drawn; the window may have been resized since
  } else {
    ui_->Frame_display->hide();
    ui_->Picture_open->show();
    toolbar_->enable_items(false, false);
    rhoplus_->close_results();
    tensor_->close_all();
    display_->clear();
  }
}

void Form_main::show_recent_files() {
  const std::vector<RecentSurvey> surveys = recent_surveys();
  ui_->sep1->setVisible(!surveys.empty());
  for (int index = 0; index < static_cast<int>(session().recent_files.size()); ++index) {
    QAction* const item = menu_item("menu_file_list", index);
    const bool used = index < static_cast<int>(surveys.size());
    item->setText(used ? menu_text(index + 1, surveys[static_cast<std::size_t>(index)].shown) : QString());
    item->setToolTip(used ? plain_tool_tip(surveys[static_cast<std::size_t>(index)].path) : QString());
    item->setVisible(used);
    item->setEnabled(used);
  }
  ui_->Picture_open->show_recent(surveys);
}

void Form_main::display_site_map() {
  if (!session().database_open) {
    return;
  }
  display_->display_site_map();
  show_panels(session().station_count > 0);
}

void Form_main::show_panels(bool any_readings) {
  output_->hide();
  ui_->Command_first_import->setVisible(!any_readings);
  ui_->Selection_row->setVisible(any_readings);
  toolbar_->enable_items(session().database_open, any_readings);
  ui_->Splitter_profile->setVisible(any_readings);
  if (any_readings) {
    ui_->Frame_display->layout()->activate();
    resizer_->apply_resize();
  }
}

void Form_main::show_output_panel(Module_output::OutputKind kind) {
  if (output_->open_for(kind)) {
    ui_->Selection_row->hide();
    ui_->Splitter_profile->hide();
    output_->show();
    output_->take_focus();
  }
}

void Form_main::survey_changed() {
  ui_->menu_database_undo_removal->setEnabled(Module_survey_edits::removal_can_be_undone());
  display_->reload();
  show_panels(session().station_count > 0);
}

void Form_main::write_line_document() {
  const std::string path = Module_Brenlox::ask_for_line_document();
  // After a failure, which has been reported, the selection is as before.
  if (!path.empty() && Module_display_data::write_line_document(
                           path, display_->positions(),
                           Module_display_data::joined(Module_tensor::section_pages(display_->positions()),
                                                       Module_tensor::strike_pages())) ==
                           Module_averaged_data::Outcome::finished) {
    Module_Brenlox::tell_finished("The graphs of line " + session().current_line + " are written to " + path,
                                  path);
  }
}

void Form_main::write_transfer_functions() {
  Form_transfer_functions(export_entries_, Module_output::rhoplus_settings(), this).exec();
}

void Form_main::import_data() { run_import_dialog({}); }

void Form_main::import_given(const std::vector<std::string>& paths) {
  leave_text_box();
  const std::vector<std::string> files = Module_data_file::field_files_of(paths);
  if (files.empty()) {
    user_interface().show_message("No field files were found in " + paths.front());
    return;
  }
  if (!session().database_open) {
    change_survey(
        [&] { return Module_Brenlox::create_survey_of_folder(Module_Brenlox::folder_of_given(paths)); });
  }
  if (session().database_open && trap_errors({}, Module_database::require_writable) == 0) {
    run_import_dialog(files);
  }
}

void Form_main::run_import_dialog(const std::vector<std::string>& given_files) {
  rhoplus_->close_results();
  Form_import_MTData dialog(import_lasting_, this);
  if (!given_files.empty()) {
    dialog.take_files(given_files);
  }
  dialog.exec();
  Module_Brenlox::select_imported(dialog.report());
  survey_changed();  // a run that failed or was stopped has stored files, too
  if (!dialog.told().isEmpty()) {
    // Dropped files are imported without a message: what is told of them can be read afterwards.
    const QString survey = QString::fromStdString(session().database_file);
    work_line_->tell(dialog.told() + "\nStored in " + survey, survey, report_shower(dialog.report(), this));
  }
}
