// Form_occam.h: creates the run directory of a two-dimensional inversion of the current line.
#pragma once
#include <QDialog>
#include <QString>
#include <memory>
#include <optional>
#include <vector>

#include "occam/setup/create_inversion.h"
#include "occam/setup/mode_counts.h"

namespace Ui {
class Form_occam;
}
class QPushButton;

class Form_occam : public QDialog {
  Q_OBJECT

 public:
  /// Shows the stored entries and a free folder beside the survey.
  /// @param rhoplus  the user's settings, for the fit of each station; the choice of errors is one of them
  /// and
  ///                 can be changed here. They outlive the window.
  /// @param steps    what else happens at each station while the run is created
  /// @param positions  that are proposed, if the line has them
  /// @param strike   that is proposed to rotate to, degrees from north
  explicit Form_occam(Module_output::RhoplusSettings& rhoplus, Module_occam::StationSteps steps,
                      QWidget* parent = nullptr,
                      Module_occam::PositionSource positions = Module_occam::PositionSource::station_numbers,
                      std::optional<double> strike = std::nullopt);
  ~Form_occam() override;

  /// The run that was created last, if the user asked for its inversion; else empty.
  [[nodiscard]] const std::string& directory_to_run() const { return directory_to_run_; }

  /// Esc and the window's close button ask a run to stop, and close the window otherwise.
  void reject() override;

 private:
  void fill_controls();
  void add_run_button();
  void fill_drives();
  void connect_controls();
  void offer_positions(Module_occam::PositionSource proposed);
  void show_positions_hint();
  void choose_modes();
  void choose_rotation();
  void propose_folder();
  void count_data();
  [[nodiscard]] int load_tensors();
  void show_error_form();
  void mark_invalid(const std::optional<Module_occam::InvalidEntry>& fault);
  void go_to_marked();
  void show_run_folder();
  void show_summary();
  void choose_file_errors(int index);
  void show_hint();
  [[nodiscard]] Module_occam::InversionInputs inputs() const;
  void create_inversion();
  void set_running(bool running);

  std::unique_ptr<Ui::Form_occam> ui_;
  Module_output::RhoplusSettings& rhoplus_;
  QString file_errors_hint_;  // of the line; empty where there is nothing to say
  Module_occam::StationSteps steps_;
  Module_database::LineSelection line_;
  Module_projections::LineDistances distances_;
  std::vector<Module_occam::ModeCount> counts_;        // in the chosen modes
  std::optional<Module_tensor::LineTensors> tensors_;  // of the line, from when they are to be rotated
  QString proposed_folder_;
  QPushButton* Command_run_inversion_;
  std::string created_directory_;
  std::string directory_to_run_;
  bool running_ = false;
};
