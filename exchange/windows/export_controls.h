// export_controls.h: what a user chooses of an export: format, lines, kind of curves, rotation, folder.
#pragma once
#include <QWidget>

#include "exchange/export_entries.h"

class QBoxLayout;
class QCheckBox;
class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QVBoxLayout;

class ExportControls : public QWidget {
  Q_OBJECT

 public:
  explicit ExportControls(QWidget* parent = nullptr);

  /// Offers what the survey has, and shows the entries.
  void show_entries(const Module_exchange::ExportLists& lists, const Module_exchange::ExportEntries& entries);
  /// Takes what is chosen into the entries.
  void read_entries(Module_exchange::ExportEntries& entries) const;
  /// Shows what is wrong beside what was typed, and what there is a use for. What there is none for seems not
  /// to be chosen, and is kept.
  void follow(const Module_exchange::ExportEntries& entries);

 Q_SIGNALS:
  /// What would be written is another than before.
  void changed();

 private:
  QVBoxLayout* make_lines();
  QFormLayout* make_choices();
  QVBoxLayout* make_folder();
  void connect_controls();
  void choose_folder();
  void fill_lines();
  void check_lines(Qt::CheckState state);
  void show_kinds();
  void follow_uses(const Module_exchange::ExportEntries& entries);
  [[nodiscard]] std::string typed_folder() const;

  Module_exchange::ExportLists lists_;
  QComboBox* format_;
  QLabel* purpose_;
  QListWidget* lines_;
  QPushButton* all_lines_;
  QPushButton* no_line_;
  QFormLayout* choices_ = nullptr;
  QComboBox* reference_;
  QComboBox* dipole_;
  QCheckBox* rotate_;
  QLineEdit* rotation_;
  QLabel* rotation_fault_;
  QComboBox* reduction_;
  QCheckBox* rhoplus_;
  QLineEdit* plot_link_;
  QLineEdit* folder_;
  QPushButton* choose_folder_;
  QLabel* folder_fault_;
  QLabel* folder_hint_;
};
