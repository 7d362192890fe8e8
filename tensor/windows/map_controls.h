// map_controls.h: the column of controls beside the map.
#pragma once
#include <QWidget>

#include "tensor/map_contents.h"

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QGroupBox;
class QPushButton;
class QSpinBox;

class MapControls : public QWidget {
  Q_OBJECT

 public:
  explicit MapControls(QWidget* parent = nullptr);

  [[nodiscard]] Module_tensor::MapLook look() const;
  [[nodiscard]] bool all_lines() const;
  /// Goes back to the line alone, without a signal.
  void choose_line_alone();

 Q_SIGNALS:
  void look_changed();
  void lines_changed();
  void show_all();
  void save_picture();
  void done();

 private:
  QGroupBox* make_sites();
  QGroupBox* make_ellipses();
  QGroupBox* make_arrows();
  void connect_controls();
  void show_usual_scale();
  void enable_parts();

  QComboBox* Combo_map_lines_;
  QCheckBox* Check_map_names_;
  QPushButton* Command_map_fit_;
  QCheckBox* Check_map_ellipses_;
  QComboBox* Combo_map_fill_;
  QComboBox* Combo_map_colours_;
  QCheckBox* Check_map_invert_;
  QDoubleSpinBox* Spin_map_lower_;
  QDoubleSpinBox* Spin_map_upper_;
  QSpinBox* Spin_map_ellipse_size_;
  QCheckBox* Check_map_real_;
  QCheckBox* Check_map_imaginary_;
  QComboBox* Combo_map_convention_;
  QCheckBox* Check_map_reverse_;
  QSpinBox* Spin_map_arrow_size_;
  QPushButton* Command_map_save_;
  QPushButton* Command_done_;
};
