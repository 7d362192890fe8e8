// picture_error.h: Picture_res_error and Picture_phase_error, the misfits of all sites and frequencies as an
// image: sites across, high frequencies on top as in every
// section of frequencies.
#pragma once
#include <QWidget>
#include <optional>
#include <vector>

#include "formats/occam/occam_response.h"
#include "platform/graph/image_palette.h"

class PictureError : public QWidget {
  Q_OBJECT

 public:
  /// @param response  that is on show; it outlives the picture
  PictureError(const QString& name, const Module_occam::OccamResponse& response, QWidget* parent = nullptr);

  void clear();
  /// What the picture is of; nothing: the response has no such data.
  void choose(const QString& title, std::optional<Module_occam::DataType> type);
  void show_misfits(const graph::Palette& palette);
  /// Frames the column of a site, numbered from 1.
  void mark_site(int site_number);

  QSize sizeHint() const override { return {320, 150}; }
  QSize minimumSizeHint() const override { return {200, 100}; }

 Q_SIGNALS:
  void hovered(const QString& text);
  void site_chosen(int site_number);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  [[nodiscard]] QRectF plot() const;
  void paint_cells(QPainter& painter) const;
  void paint_labels(QPainter& painter) const;
  [[nodiscard]] double frequency_of(int frequency_number) const;
  [[nodiscard]] double misfit_of(int site_number, int frequency_number) const;
  [[nodiscard]] QString text_at(QPointF at) const;

  QString title_;
  const Module_occam::OccamResponse& response_;
  std::optional<Module_occam::DataType> type_;
  graph::Palette palette_ = {};
  std::vector<int> rows_;  // the number of the frequency of each row, from the top
  int marked_site_ = 0;
  bool shown_ = false;
};
