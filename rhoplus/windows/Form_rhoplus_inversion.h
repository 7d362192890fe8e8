// Form_rhoplus_inversion.h: one-dimensional inversion of the current station: fit, model, data and log.
//
// The window stays open beside the main window, which owns what is displayed: the signals ask it for a
// station or to redraw, and it calls this window in turn to follow or to refresh.
#pragma once
#include <QMainWindow>
#include <array>
#include <memory>
#include <vector>

#include "display/chosen_points.h"
#include "reduction/edits/masks.h"
#include "rhoplus/inversion_ahead.h"
#include "rhoplus/line_chi.h"

namespace Ui {
class Form_rhoplus_inversion;
}
class Form_line_chi;
class GraphPairWidget;
class MarkingActions;
class QLabel;
class QPlainTextEdit;
class QTableWidget;
class VexGraphControl;

class Form_rhoplus_inversion : public QMainWindow {
  Q_OBJECT

 public:
  /// @param settings  of the inversion; outlive the window, which can edit them
  explicit Form_rhoplus_inversion(Module_output::RhoplusSettings& settings, QWidget* parent = nullptr);
  ~Form_rhoplus_inversion() override;

  /// Inverts the session's current station and shows fit and model. A call during another one is ignored.
  void refresh_rhoplus_results();
  /// The main window displays another station of the line: the bar follows and the inversion runs again.
  void follow_station();
  /// Rings the points that are marked now, and hides masked ones or shows them as all graphs do.
  void show_marks();
  /// While a run goes through the line, only the first failure is reported; later stations are shown without
  /// their inversion.
  void begin_line_run();
  void end_line_run();

 Q_SIGNALS:
  /// The main window has to display a station of the line; station index from 1.
  void station_chosen(int station_index);
  /// A run through the line displays stations for itself; at its end the main window goes back.
  void line_run_begun();
  void line_run_ended();
  /// Masks have changed; the main window has to redraw its graphs.
  void edited();
  void occam_requested();
  void undo_wanted();
  void redo_wanted();
  /// Other points are marked.
  void marked();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void compose();
  void compose_graphs();
  QWidget* make_data_pane();
  void fit_controls();
  void set_tab_order();
  void connect_controls();
  void connect_edits();
  void mark_observed(Module_averaged_data::Component component,
                     const std::vector<Module_display_data::PlotPlace>& places);
  void show_station_bar();
  void show_results();
  void show_log_caption();
  void show_graphs();
  void show_data_grid();
  void switch_cell(int row, int column);
  void toggle_log();
  void show_in_status(const QString& text);
  void show_pointer(Module_averaged_data::Component component, bool off, double x, double y);
  void run_all();
  /// @return whether the end of the line was reached
  bool invert_all(std::vector<Module_rhoplus::StationChi>& chis);
  void show_line_chi(std::vector<Module_rhoplus::StationChi> chis, bool complete);
  void edit_settings();

  Module_output::RhoplusSettings& settings_;
  std::unique_ptr<Ui::Form_rhoplus_inversion> ui_;
  GraphPairWidget* graphs_ = nullptr;
  MarkingActions* marking_ = nullptr;
  VexGraphControl* Picture_res_model_ = nullptr;
  QTableWidget* Grid_inversion_data_ = nullptr;
  QPlainTextEdit* Text_rhoplus_out_ = nullptr;
  std::array<QLabel*, 3> panels_{};
  QLabel* run_note_ = nullptr;  // what the results lack
  QLabel* Label_not_inverted_ = nullptr;
  Form_line_chi* line_chi_ = nullptr;  // once a line has been run
  Module_rhoplus::InversionAhead ahead_;
  Module_rhoplus::StationInversion inversion_;
  Module_database::ReadingKey inverted_key_;
  bool rhoplus_busy_ = false;
  bool rhoplus_running_all_ = false;
  bool rhoplus_stop_requested_ = false;
  bool in_line_run_ = false;
  bool line_run_failed_ = false;
};
