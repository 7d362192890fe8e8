// Form_transfer_functions.h: writes curves, tensors and places of lines into files that other packages read.
#pragma once
#include <QDialog>

#include "exchange/export_entries.h"
#include "exchange/export_files.h"
#include "exchange/export_plan.h"

class ExportControls;
class ExportPlanModel;
class ExportTable;
class QBoxLayout;
class QLabel;
class QProgressBar;
class QPushButton;
class QTimer;

/// Shows which files would be written before they are. While stations are looked at or files written, events
/// run: another choice ends the look and begins it again.
class Form_transfer_functions : public QDialog {
  Q_OBJECT

 public:
  /// Needs an open survey.
  /// @param entries  what stays from one time to the next; it must outlive the window
  /// @param rhoplus  settings for the results of Rho+; likewise
  Form_transfer_functions(Module_exchange::ExportEntries& entries,
                          const Module_output::RhoplusSettings& rhoplus, QWidget* parent = nullptr);

  /// Esc and the window's close button stop the writing, and close the window otherwise.
  void reject() override;

 protected:
  bool event(QEvent* event) override;

 private:
  enum class Work { none, looking, writing };

  void lay_out();
  QBoxLayout* make_buttons();
  void connect_controls();
  void choices_changed();
  void enable_write();
  void look();
  [[nodiscard]] Module_exchange::ExportChoices choices() const;
  void make_plan();
  void look_at_stations(Module_exchange::ExportPlan& plan);
  void show_plan(Module_exchange::ExportPlan plan);
  void write();
  void write_files();
  void set_work(Work work);
  void show_progress(bool shown);
  void end_look();
  void open_folder() const;

  Module_exchange::ExportEntries& entries_;
  const Module_output::RhoplusSettings& rhoplus_;
  Module_exchange::ExportLists lists_;
  Module_exchange::ExportChoices looked_for_;  // the stations, last or soon
  Work work_ = Work::none;
  bool write_soon_ = false;  // asked for while stations were looked at
  QString written_to_;       // the folder; empty: nothing was written the last time
  ExportControls* controls_;
  ExportPlanModel* model_;
  ExportTable* table_;
  QLabel* summary_;
  QLabel* doing_;
  QProgressBar* bar_;
  QPushButton* stop_;
  QPushButton* open_folder_;
  QPushButton* write_;
  QPushButton* close_;
  QTimer* look_soon_;
};
