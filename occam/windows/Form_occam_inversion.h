// Form_occam_inversion.h: a run directory: its inversion, and of each of its iterations section, convergence
// and responses. It holds no reference to the survey.
#pragma once
#include <QDialog>

#include "occam/results/run_view.h"
#include "occam/windows/section_picture.h"
#include "platform/graph/image_palette.h"
#include "platform/widgets/vex_control_resizer.h"

class InversionPanel;
class ModelControls;
class PictureModel;
class QLabel;
class QStackedWidget;
class QStatusBar;
class QTimer;
class ResponseFrame;
class ResponseGraph;
class SectionContents;
class SiteMisfitPicture;
class VexSplitter;

class Form_occam_inversion : public QDialog {
  Q_OBJECT

 public:
  explicit Form_occam_inversion(Module_occam::RunResults results, QWidget* parent = nullptr);

  /// Folder of the run, absolute.
  [[nodiscard]] const std::filesystem::path& folder() const { return view_.results().folder; }
  [[nodiscard]] const std::string& control_file() const { return view_.results().control_file; }
  /// Brings the page of the inversion up.
  void show_inversion();
  [[nodiscard]] bool running() const;
  /// Closes the window; where an inversion is running, once it has been stopped.
  void stop_and_close();
  /// Whatever closes the window: a running inversion is stopped first if the user agrees.
  void done(int result) override;

  /// Draws the section of the current iteration and shows its numbers; the response on show follows.
  void display_current_iterate();
  /// Reads or computes the response and draws all of the response frame.
  void display_current_response();
  void display_current_station();
  void display_response_errors();
  void display_response_profiles();
  [[nodiscard]] static graph::Palette image_palette(int table, bool invert) {
    return graph::image_palette(table, invert);
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
  void propose_range();
  void choose_iteration(int iteration);
  void swap_frames();
  void look_for_iterations();
  void take_changes(bool followed);
  void follow_inversion();
  void end_inversion();
  /// Once nothing is running any more.
  void close_if_wanted();
  void show_inversion_state();
  void show_site_misfits();
  void show_station_of(int site_number);
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
  QWidget* course_;  // of the inversion: convergence and misfits of the sites
  ResponseGraph* convergence_;
  SiteMisfitPicture* site_misfits_;
  ResponseFrame* response_;
  InversionPanel* panel_;
  SectionContents* contents_;
  QStackedWidget* frames_;
  QLabel* Label_title_;
  QStatusBar* Status_occam_;
  QLabel* Label_resolution_;
  QLabel* Label_inversion_;  // while the panel is out of sight
  VexSplitter* Splitter_iterate_;
  VexSplitter* Splitter_model_;
  VexControlResizer* resizer_;
  QTimer* Timer_resizer_;
  QTimer* Timer_reset_resizer_;
  QTimer* Timer_refresh_;
  bool closing_ = false;  // once the work under way has ended
};
