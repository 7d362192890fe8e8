// Form_frequency.h: switches the frequencies of a reference type on and off for graphs and output.
#pragma once
#include <QDialog>
#include <cstdint>
#include <memory>

#include "database/frequency_store.h"

namespace Ui {
class Form_frequency;
}

class Form_frequency : public QDialog {
  Q_OBJECT

 public:
  explicit Form_frequency(std::int32_t reference_type, QWidget* parent = nullptr);
  ~Form_frequency() override;

  /// The reference type has a list to show; without one the dialog is not to be opened.
  [[nodiscard]] bool has_frequencies() const { return has_frequencies_; }
  /// Something was saved, so that what follows from the selection is to be drawn anew.
  [[nodiscard]] bool frequencies_changed() const { return frequencies_changed_; }

 private:
  void load();
  void show_row(int row);
  void toggle(int row, int column);
  void save();
  void set_edited(bool edited);

  std::unique_ptr<Ui::Form_frequency> ui_;
  std::int32_t reference_type_;
  Module_database::FrequencySelection selection_;
  bool has_frequencies_ = false;
  bool frequencies_changed_ = false;
};
