// Form_occam2d_mask_topo.h: masks the mesh of a two-dimensional inversion above the ground.
#pragma once
#include <QDialog>
#include <memory>

#include "occam/topo_mask.h"

class QLineEdit;

namespace Ui {
class Form_occam2d_mask_topo;
}

class Form_occam2d_mask_topo : public QDialog {
  Q_OBJECT

 public:
  explicit Form_occam2d_mask_topo(QWidget* parent = nullptr);
  ~Form_occam2d_mask_topo() override;

 private:
  void connect_files();
  void connect_entries();
  void connect_mesh();
  void select_model_file();
  void select_data_file();
  void display_model_text();
  void display_data_file();
  void load_locations();
  void show_page(int page);
  void read_choices();
  void redraw();
  void display_occam_model();
  void save_mesh();
  /// Puts the last good text back when the person leaves a control with one that `accepts` refuses.
  template <class Accepts>
  void refuse_unless(QLineEdit* control, Accepts accepts);

  std::unique_ptr<Ui::Form_occam2d_mask_topo> ui_;
  Module_occam::TopoMask mask_;
};
