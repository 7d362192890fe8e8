// response_graph.h: a chart of a response's values with the names of its curves above it.
#pragma once
#include <QLabel>
#include <QWidget>

#include "occam/results/response_plots.h"
#include "platform/graph/VexGraphControl.h"

/// Gives a plot to a chart and draws it.
void give_to_chart(VexGraphControl& chart, const Module_occam::ResponsePlot& plot);

class ResponseGraph : public QWidget {
  Q_OBJECT

 public:
  /// @param name of the chart
  ResponseGraph(const QString& name, const QString& x_title, const QString& y_title,
                QWidget* parent = nullptr);

  void set_title(const QString& title);
  /// What is said of the whole graph where the pointer rests on its title.
  void set_explanation(const QString& text);
  void clear();
  /// @param legend  name the curves in their colours above the chart
  void show_plot(Module_occam::ResponsePlot plot, bool legend = true);
  [[nodiscard]] const Module_occam::ResponsePlot& plot() const { return plot_; }
  /// A blue line at a place of the x axis; draws the chart.
  void mark_x(double x);
  [[nodiscard]] VexGraphControl& chart() { return *chart_; }

 private:
  void show_heading(bool legend);

  QString title_;
  QLabel* heading_;
  VexGraphControl* chart_;
  Module_occam::ResponsePlot plot_;
};
