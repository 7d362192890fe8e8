// Form_main.h: the main window: menus, the display of the open survey, and the page shown without one.
//
// It lays out the panels and passes each menu item on to the logic. It lives as long as the program.
#pragma once
#include <QMainWindow>
#include <QTimer>
#include <functional>
#include <memory>

#include "core/finished_work.h"
#include "exchange/export_entries.h"
#include "import/import_entries.h"
#include "output/output_choices.h"
#include "platform/widgets/vex_control_resizer.h"

namespace Ui {
class Form_main;
}
class QLabel;
class HelpKey;
class MainToolbar;
class MarkingActions;
class OutputPanel;
class ResultsWindows;
class RhoplusWindows;
class SurveyDisplay;
class SurveyTools;
class TensorWindows;
class ViewMenu;
class WorkLine;

class Form_main : public QMainWindow {
  Q_OBJECT

 public:
  /// Reads the preferences, which may size the window, and starts without a survey.
  explicit Form_main(QWidget* parent = nullptr);
  ~Form_main() override;

  /// Opens a survey as the recent files menu does.
  void open_survey(const QString& path);

  /// Opens a survey that is among these files, and brings the others to the import dialog; folders stand for
  /// the field files below them. Without a survey a new one is asked for first. Refused during other work.
  void open_files(const QStringList& paths);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void compose();
  void explain_items_without_work();
  void connect_file_menu();
  void connect_data_menus();
  void connect_output_menus();
  void connect_help_menu();
  void fill_toolbar();
  void apply_resize();
  void resizer_timer_event();
  void leave_text_box();
  /// Shows the survey that is open after `change`, or that there is none, if it returns true.
  void change_survey(const std::function<bool()>& change);
  void tell_work(const Module_Brenlox::FinishedWork& work);
  void show_no_survey();
  void show_survey();
  void set_database_menus(bool open);
  void show_recent_files();
  void display_site_map();
  void show_panels(bool any_readings);
  void survey_changed();
  void write_line_document();
  void show_output_panel(Module_output::OutputKind kind);
  void write_transfer_functions();
  void import_data();
  void connect_survey_edits();
  void import_given(const std::vector<std::string>& paths);
  void run_import_dialog(const std::vector<std::string>& given_files);
  [[nodiscard]] QAction* menu_item(const char* array, int index) const;

  std::unique_ptr<Ui::Form_main> ui_;
  VexControlResizer* resizer_;
  QTimer* resizer_timer_;
  QTimer* idle_timer_;
  QLabel* version_;
  HelpKey* help_key_;
  WorkLine* work_line_ = nullptr;
  bool told_of_survey_ = false;  // while it changed
  SurveyDisplay* display_ = nullptr;
  SurveyTools* survey_tools_ = nullptr;
  ViewMenu* view_menu_ = nullptr;
  MainToolbar* toolbar_ = nullptr;
  MarkingActions* marking_ = nullptr;
  OutputPanel* output_ = nullptr;
  RhoplusWindows* rhoplus_ = nullptr;
  TensorWindows* tensor_ = nullptr;
  ResultsWindows* results_ = nullptr;                // of runs; they need no survey and outlast it
  Module_data_file::LastingChoices import_lasting_;  // from one import to the next
  Module_exchange::ExportEntries export_entries_;    // likewise
};
