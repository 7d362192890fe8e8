// mesh_picture.h: a mesh with the four triangles of each cell and the ground over it.
//
// Distance m along the line, depth m from the mesh's upper edge down. With the mouse as in the charts: a drag
// zooms to its rectangle, the wheel zooms about the pointer, over an axis along that axis only, the middle
// button drags the picture, a double click shows the whole again.
#pragma once
#include <QWidget>
#include <optional>

#include "occam/ground/topo_mask.h"
#include "platform/graph/axis_view.h"

class MeshPicture final : public QWidget {
  Q_OBJECT

 public:
  explicit MeshPicture(QWidget* parent = nullptr);

  /// What is drawn; a zoom stays.
  /// @param codes  of the mask's mesh, as read or as masked
  void show_mesh(const Module_occam::TopoMask& mask, const std::vector<Module_occam::CodeLines>& codes);
  void set_whole_mesh(bool whole);
  void reset_zoom();

  /// Text of the tool tip at a place of the widget, pixels; empty beside the mesh.
  [[nodiscard]] QString text_at(QPointF at) const;

  [[nodiscard]] QSize sizeHint() const override { return {640, 300}; }
  [[nodiscard]] QSize minimumSizeHint() const override { return {240, 140}; }

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void connect_mouse();
  void set_home();
  [[nodiscard]] QRectF plot_area() const;
  [[nodiscard]] QPointF to_pixels(double station, double depth) const;
  [[nodiscard]] QPointF from_pixels(QPointF at) const;
  void zoom_to_band(QPointF from, QPointF to);
  void turn_wheel(QPointF at, double notches);

  void draw_cells(QPainter& painter) const;
  void draw_triangles(QPainter& painter, std::size_t row, std::size_t column) const;
  void draw_cell_edges(QPainter& painter) const;
  void draw_ground(QPainter& painter) const;
  void draw_axes(QPainter& painter) const;
  void draw_key(QPainter& painter) const;

  Module_occam::TopoMask mask_;
  std::vector<Module_occam::CodeLines> codes_;
  graph::AxisView station_view_;
  graph::AxisView depth_view_;
  std::optional<QRectF> band_;  // being drawn for a zoom, pixels
  bool whole_mesh_ = false;
};
