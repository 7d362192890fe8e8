// Form_occam2d_mask_topo.h: masks the mesh of a two-dimensional inversion above the ground.
#pragma once
#include <QDialog>
#include <memory>

#include "occam/ground/topo_mask.h"

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
  void display_model_text(const QString& path);
  void display_data_file(const QString& path);
  void load_locations();
  void show_page(int page);
  /// Reads the model and shows its mesh. @return the page to show: the one where something is missing, or
  /// the mesh
  int display_occam_model(const QString& path);
  void read_choices();
  void redraw();
  void display_mesh();
  void save_mesh();

  std::unique_ptr<Ui::Form_occam2d_mask_topo> ui_;
  Module_occam::TopoMask mask_;
};
