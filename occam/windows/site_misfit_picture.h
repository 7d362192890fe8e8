// site_misfit_picture.h: the misfit of each site as a bar, sites from left to right in their order.
#pragma once
#include <QWidget>

#include "occam/results/response_plots.h"

class SiteMisfitPicture : public QWidget {
  Q_OBJECT

 public:
  explicit SiteMisfitPicture(QWidget* parent = nullptr);

  /// @param note  what stands in place of the bars
  void show_note(const QString& note);
  /// @param site_names  of the misfits' sites
  void show_misfits(const Module_occam::MisfitTable& misfits, const std::vector<std::string>& site_names);

  QSize sizeHint() const override { return {300, 150}; }
  QSize minimumSizeHint() const override { return {160, 100}; }

 Q_SIGNALS:
  void hovered(const QString& text);
  void site_chosen(int site_number);  // from 1

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  struct Bar {
    std::string name;
    Module_occam::MisfitTable::Cell misfit;
  };

  [[nodiscard]] QRectF plot() const;
  /// Number of the site, from 1, at a place; 0 beside them.
  [[nodiscard]] int site_at(QPointF at) const;
  void paint_bars(QPainter& painter) const;
  void paint_axes(QPainter& painter) const;

  std::vector<Bar> bars_;
  double highest_ = 0.0;  // RMS
  double of_all_ = 0.0;   // RMS
  QString note_;
};
