// picture_model.h: Picture_model, the section of the results viewer.
//
// With the mouse as in the charts: the wheel zooms about the pointer, a drag zooms to its rectangle, the
// middle button drags the section, a double click shows all of it again.
#pragma once
#include <QWidget>
#include <optional>

#include "occam/windows/section_painter.h"

class PictureModel : public QWidget {
  Q_OBJECT

 public:
  /// @param sites  marked at the ground; they outlive the picture
  explicit PictureModel(const Module_occam::OccamData& sites, QWidget* parent = nullptr);

  /// The size that a section should have.
  [[nodiscard]] Module_occam::PictureSize picture_size() const { return Module_occam::section_part(size()); }
  void show_picture(Module_occam::SectionPicture picture);
  [[nodiscard]] const Module_occam::SectionPicture& picture() const { return picture_; }
  void reset_zoom();

  QSize sizeHint() const override { return {800, 340}; }
  QSize minimumSizeHint() const override { return {320, 150}; }

 Q_SIGNALS:
  void resized();
  /// Text about the place under the pointer; empty off the section.
  void hovered(const QString& text);
  void menu_asked_for(QPoint global);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  /// Where a pixel lies in the view, as shares of its width and height.
  [[nodiscard]] QPointF share_of_plot(QPointF at) const;
  /// Where a pixel lies in the section, zoomed or not.
  [[nodiscard]] QPointF place_in_section(QPointF at) const;
  void zoom_to_band(QPointF from, QPointF to);

  const Module_occam::OccamData& sites_;
  Module_occam::SectionPicture picture_;
  Module_occam::SectionZoom zoom_;
  std::optional<QPointF> band_start_;
  QPointF pointer_;  // where it was last seen
};
