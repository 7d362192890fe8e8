// Form_frequency.h: which frequencies of the current reference type take part in graphs and output.
#pragma once
#include <QDialog>

#include "database/frequency_store.h"

class QPushButton;
class QTableWidget;

class Form_frequency : public QDialog {
  Q_OBJECT

 public:
  Form_frequency(Frequencies selection, QWidget* parent);

  /// True once a selection has been saved.
  [[nodiscard]] bool frequencies_changed() const { return frequencies_changed_; }

 private:
  void show_selection();
  void switch_cell(int row, int column);
  void save_changes();
  void cancel_changes();
  void set_edited(bool edited);

  Frequencies selection_;
  QTableWidget* Grid_frequencies_;
  QPushButton* Command_save_changes_;
  QPushButton* Command_cancel_changes_;
  bool frequencies_changed_ = false;
};
