// Form_main.h: the main window: menus, the display of the open survey, and the page shown without one.
//
// It composes the panels and passes each menu item on to the logic; it is the only window that lives as long
// as the program.
#pragma once
#include <QMainWindow>
#include <QPointer>
#include <QTimer>
#include <memory>

#include "app/main_view.h"
#include "database/table_rows.h"
#include "import/import_choices.h"
#include "output/output_choices.h"
#include "platform/widgets/vex_control_resizer.h"

namespace Ui {
class Form_main;
}
class QLabel;
class Form_tutorial;
class OutputPanel;
class RhoplusWindows;
class SurveyDisplay;

class Form_main : public QMainWindow, private MainView {
  Q_OBJECT

 public:
  /// Reads the preferences, which may size the window, and starts without a survey.
  explicit Form_main(QWidget* parent = nullptr);
  ~Form_main() override;

  /// Opens a survey as the recent files menu does.
  void open_survey(const QString& path);

  /// What the import dialog takes the names of field files for; it stays from one import to the next.
  [[nodiscard]] Module_data_file::DecodeTable& import_decode() { return import_decode_; }

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  /// Sees all keys of the program: the key for help works in every window.
  bool eventFilter(QObject* receiver, QEvent* event) override;

 private:
  void set_database_menus(bool open) override;
  void set_caption(const std::string& caption) override;
  void show_recent_files() override;
  void show_opening_picture() override;
  void display_site_map() override;

  void compose();
  void connect_menus();
  void size_from_preferences();
  void apply_resize();
  void resizer_timer_event();
  void leave_text_box();
  void show_panels(bool any_readings);
  void survey_changed();
  void write_line_document();
  void show_output_panel(Module_output::OutputKind kind);
  void recalculate_merged();
  void import_data();
  void select_frequencies();
  void show_tutorial();
  void attach_tutorial(QWidget& window);
  void view_table(const Module_database::ViewedTable& table);
  [[nodiscard]] QAction* menu_item(const char* array, int index) const;

  std::unique_ptr<Ui::Form_main> ui_;
  VexControlResizer* resizer_;
  QTimer* resizer_timer_;
  QLabel* version_;
  SurveyDisplay* display_ = nullptr;
  OutputPanel* output_ = nullptr;
  RhoplusWindows* rhoplus_ = nullptr;
  Module_data_file::DecodeTable import_decode_;
  QPointer<Form_tutorial> tutorial_;  // made when it is first asked for
};
