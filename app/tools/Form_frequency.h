// Form_frequency.h: which frequencies of the current reference type take part in graphs and output.
#pragma once
#include <QDialog>

#include "app/tools/frequency_choice.h"

class QHBoxLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableWidget;

class Form_frequency : public QDialog {
  Q_OBJECT

 public:
  Form_frequency(Frequencies selection, QWidget* parent);

  /// True once a selection has been saved.
  [[nodiscard]] bool frequencies_changed() const { return frequencies_changed_; }

  /// Closes the window, by whatever key or button; unsaved changes are asked about before, and
  /// a cancelled question leaves it open.
  void done(int result) override;

 private:
  QHBoxLayout* make_range();
  QHBoxLayout* make_buttons();
  void connect_controls();
  void fill_grid();
  void show_choice();
  void switch_cell(int row, int column);
  void set_range(bool use);
  [[nodiscard]] bool save_changes();

  Module_Brenlox::FrequencyChoice choice_;
  int last_row_ = 0;  // that was switched: Shift goes from there
  QTableWidget* Grid_frequencies_;
  QLineEdit* Text_from_;
  QLineEdit* Text_to_;
  QPushButton* Command_use_range_;
  QPushButton* Command_leave_range_;
  QLabel* Label_count_;
  QPushButton* Command_save_changes_;
  QPushButton* Command_cancel_changes_;
  QPushButton* Command_done_;
  bool frequencies_changed_ = false;
};
