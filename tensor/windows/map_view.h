// map_view.h: the map on screen: a click chooses a station, a drag moves the plan, the wheel zooms about the
// pointer, a double click shows all.
//
// Keys, where the map has the focus: plus and minus zoom, Home shows all, left and right go to a shorter or
// longer period.
#pragma once
#include <QPointF>
#include <QWidget>

#include "platform/widgets/picture_drag.h"
#include "tensor/map_contents.h"

class MapView : public QWidget {
  Q_OBJECT

 public:
  explicit MapView(QWidget* parent = nullptr);

  /// The part of the plan stays as it is, where it was chosen.
  void show_contents(Module_tensor::MapContents contents);
  [[nodiscard]] const Module_tensor::MapContents& contents() const { return contents_; }
  /// Everything but the sites and their part of the plan.
  void show_period(double frequency);
  void show_look(const Module_tensor::MapLook& look);
  void mark(std::optional<std::int32_t> StationID);
  void show_all();

  QSize sizeHint() const override { return {860, 620}; }
  QSize minimumSizeHint() const override { return {420, 300}; }

 Q_SIGNALS:
  void site_chosen(int site_index);  // of the map, from 0
  void hovered(const QString& text);
  void period_wanted(int steps);  // to longer ones

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void leaveEvent(QEvent* event) override;
  bool event(QEvent* event) override;

 private:
  void zoom(double factor, QPointF about);
  [[nodiscard]] QString place_text(QPointF at) const;

  Module_tensor::MapContents contents_;
  PictureDrag drag_{*this};
};
