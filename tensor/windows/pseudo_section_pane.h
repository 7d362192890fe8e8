// pseudo_section_pane.h: a pseudo-section on the screen.
//
// With the mouse as in the charts: a click goes to station and frequency, Shift+click turns the mask of the
// point around, the wheel zooms about the pointer, a drag zooms to its rectangle, the middle button drags the
// section, a double click shows all of it again.
#pragma once
#include <QPixmap>
#include <QWidget>
#include <optional>
#include <utility>

#include "tensor/windows/pseudo_section_painter.h"

class PseudoSectionPane : public QWidget {
  Q_OBJECT

 public:
  explicit PseudoSectionPane(const QString& name, QWidget* parent = nullptr);

  void show_picture(Module_tensor::PseudoSectionPicture picture);
  [[nodiscard]] const Module_tensor::PseudoSectionPicture& picture() const { return picture_; }
  /// Frames another station.
  void frame(std::optional<std::size_t> station_index);
  void set_view(const Module_tensor::PseudoSectionView& view);
  [[nodiscard]] const Module_tensor::PseudoSectionView& view() const { return view_; }
  void reset_zoom();

  QSize sizeHint() const override { return {620, 520}; }
  QSize minimumSizeHint() const override { return {300, 220}; }

 Q_SIGNALS:
  /// @param frequency  Hz; 0 beside the points
  void clicked(double station, double frequency);
  /// Of the picture's section.
  void mask_wanted(const Module_tensor::SectionColumn& column, const Module_tensor::SectionPoint& point);
  /// Text about the point under the pointer; empty where there is none.
  void hovered(const QString& text);
  void view_changed();

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void click(QPointF at);
  void change_view();
  void redraw();
  [[nodiscard]] QPointF share_of_plot(QPointF at) const;
  [[nodiscard]] QPointF place_in_section(QPointF at) const;
  [[nodiscard]] QString text_at(QPointF at, const std::string& separator) const;

  Module_tensor::PseudoSectionPicture picture_;
  Module_tensor::PseudoSectionView view_;
  QPixmap drawn_;  // null: to be drawn again
  std::optional<std::pair<QPointF, QPointF>> band_;
};
