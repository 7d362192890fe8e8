// inversion_panel.h: runs the inversion of a run directory: what is asked of it, how far it is, how it ended.
#pragma once
#include <QElapsedTimer>
#include <QWidget>
#include <filesystem>
#include <optional>
#include <string>

#include "occam/inversion/inversion_entries.h"
#include "occam/inversion/iteration_estimate.h"

class InversionWorker;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QSpinBox;
class QTimer;

class InversionPanel : public QWidget {
  Q_OBJECT

 public:
  /// @param directory   of the run, absolute
  /// @param start_file  in the directory; empty: the one that is found there
  InversionPanel(std::filesystem::path directory, std::string start_file, QWidget* parent = nullptr);

  /// Stopping, too, until the inversion has ended.
  [[nodiscard]] bool running() const;
  void stop();
  /// @param iterations  whether the directory has any to go on from
  void offer_continue(bool iterations);
  /// The progress, or how the last inversion ended; empty before one.
  [[nodiscard]] QString state_text() const;

 Q_SIGNALS:
  void iteration_ended();  // its files are in place
  void state_changed();
  void ended();  // in whatever way

 private:
  void lay_out();
  QWidget* make_entries();
  QWidget* make_shift_row();
  QWidget* make_buttons();
  void connect_controls();
  void fill_entries();
  [[nodiscard]] Module_occam::InversionEntries entries() const;
  void begin(bool go_on);
  void start(const Module_occam::InversionOptions& options);
  void ask_about_earlier(const QString& sentence);
  void show_progress();
  void show_state(const QString& ending);
  void enable_controls();

  std::filesystem::path directory_;
  std::string start_file_;
  InversionWorker* worker_;
  QLineEdit* Text_run_iterations_;
  QLineEdit* Text_run_target_;
  QLineEdit* Text_run_roughness_;
  QComboBox* Combo_run_search_;
  QCheckBox* Check_run_huber_;
  QCheckBox* Check_run_static_shift_;
  QLineEdit* Text_run_static_shift_;
  QSpinBox* Spin_run_threads_;
  QPushButton* Command_run_;
  QPushButton* Command_stop_run_;
  QPushButton* Command_continue_;
  QProgressBar* ProgressBar_run_;
  QLabel* Label_run_progress_;
  QLabel* Label_run_ending_;
  QTimer* Timer_progress_;
  QWidget* entries_box_ = nullptr;
  bool has_iterations_ = false;
  QString last_ending_;
  Module_occam::InversionOptions options_;  // of the inversion that was begun last
  QElapsedTimer clock_;
  std::optional<Module_occam::IterationEstimate> estimate_;
};
