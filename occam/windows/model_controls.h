// model_controls.h: the column of controls of the results viewer.
#pragma once
#include <QWidget>

#include "occam/results/run_results.h"
#include "occam/windows/section_picture.h"

class QBoxLayout;
class QCheckBox;
class QComboBox;
class QFormLayout;
class QGroupBox;
class QLineEdit;
class QPushButton;
class QScrollBar;
class QSpinBox;
class QTabWidget;

class ModelControls : public QWidget {
  Q_OBJECT

 public:
  /// What the section shows.
  enum class Shown { resistivity, standard_error, change };

  explicit ModelControls(QWidget* parent = nullptr);

  /// Offers the iterations from 0 to the last one of the run, or its start model, without a signal.
  void list_iterations(const Module_occam::RunView& view);
  void show_numbers(const Module_occam::RunView& view);
  /// Shows a range, unless the user has chosen one.
  void propose_range(const Module_occam::ResistivityRange& range);
  /// Whether a range has been proposed or typed.
  [[nodiscard]] bool has_range() const;
  /// "NA" in both boxes if the section is empty.
  void show_model_range(const Module_occam::SectionPicture& picture);
  /// Without what is computed for the section.
  [[nodiscard]] Module_occam::SectionLook look() const;
  [[nodiscard]] Shown shown() const;
  /// The iteration that a change is counted from.
  [[nodiscard]] int base_iteration() const;
  [[nodiscard]] bool fades() const;
  /// Adds a page beside that of the section.
  void add_page(QWidget* page, const QString& title);
  void show_page(QWidget* page);
  /// The button offers what is not on show.
  void offer_response(bool response);

 Q_SIGNALS:
  void iteration_chosen(int iteration);
  void look_changed();
  void quantity_changed();  // and fading, too
  void page_changed();
  void display_response();
  void write_grid();
  void save_section_png();
  void save_section_pdf();
  void save_fits();
  void done();

 private:
  QWidget* make_iteration_group();
  QWidget* make_section_page();
  QWidget* make_look_group();
  void add_quantity_rows(QFormLayout& rows);
  QWidget* make_model_group();
  [[nodiscard]] Module_occam::TypedChoices typed() const;
  void mark_entries();
  void add_buttons(QBoxLayout& rows);

  QComboBox* Combo_iteration_;
  QScrollBar* HScroll_iteration_;
  QLineEdit* Text_iterate_;
  QLineEdit* Text_multiplier_;
  QLineEdit* Text_roughness_;
  QLineEdit* Text_RMS_;
  QComboBox* Combo_colour_table_;
  QCheckBox* Check_invert_colour_;
  QLineEdit* Text_min_res_;
  QLineEdit* Text_max_res_;
  QLineEdit* Text_max_depth_;
  QComboBox* Combo_section_shows_;
  QSpinBox* Spin_base_iteration_;
  QCheckBox* Check_fade_;
  QCheckBox* Check_draw_mesh_;
  QCheckBox* Check_log_vertical_;
  QCheckBox* Check_true_scale_;
  QGroupBox* Group_model_;
  QLineEdit* Text_min_res_model_;
  QLineEdit* Text_max_res_model_;
  QPushButton* Command_display_response_;
  QTabWidget* Tab_controls_;
  bool range_chosen_ = false;  // by the user
};
