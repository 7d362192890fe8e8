// Form_occam_inversion.h: the results of an inversion, finished or still running: section, convergence and
// responses of its iterations.
#pragma once
#include <QDialog>

#include "occam/results/image_palette.h"
#include "occam/results/run_view.h"
#include "occam/windows/section_picture.h"
#include "platform/widgets/vex_control_resizer.h"

class ModelControls;
class PictureModel;
class QLabel;
class QStackedWidget;
class QStatusBar;
class QTimer;
class ResponseFrame;
class ResponseGraph;
class VexSplitter;

class Form_occam_inversion : public QDialog {
  Q_OBJECT

 public:
  explicit Form_occam_inversion(Module_occam::RunResults results, QWidget* parent = nullptr);

  /// Draws the section of the current iteration and shows its numbers; the response on show follows.
  void display_current_iterate();
  /// Reads or computes the response and draws all of the response frame.
  void display_current_response();
  void display_current_station();
  void display_response_errors();
  void display_response_profiles();
  [[nodiscard]] static Module_occam::Palette image_palette(int table, bool invert) {
    return Module_occam::image_palette(table, invert);
  }

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void lay_out();
  void connect_controls();
  void connect_timers();
  void show_convergence();
  void redraw_section();
  void choose_iteration(int iteration);
  void swap_frames();
  void look_for_iterations();
  void write_grid();
  bool ask_for_output_folder();
  void save_section(const char* ending);
  void save_fits();
  void show_section_menu(QPoint global);
  void show_status(const QString& text);
  [[nodiscard]] bool response_on_show() const;
  [[nodiscard]] std::string suggested_file(const std::string& ending) const;

  Module_occam::RunView view_;
  ModelControls* controls_;
  PictureModel* Picture_model_;
  ResponseGraph* convergence_;
  ResponseFrame* response_;
  QStackedWidget* frames_;
  QLabel* Label_title_;
  QStatusBar* Status_occam_;
  VexSplitter* Splitter_iterate_;
  VexSplitter* Splitter_model_;
  VexControlResizer* resizer_;
  QTimer* Timer_resizer_;
  QTimer* Timer_reset_resizer_;
  QTimer* Timer_refresh_;
};

/// Asks for the control file of a run, reads the run and shows it until the user closes the window.
void menu_occam2d(QWidget* parent);
