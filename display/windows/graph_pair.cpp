#include "display/windows/graph_pair.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "display/plot_colours.h"

namespace {

constexpr float frequency_cutoff = 0.001F;  // Hz

}  // namespace

void hand_over(VexGraphControl& graph, Module_display_data::PanePlot plot) {
  graph.clear_graph();
  graph.set_xaxismin(static_cast<float>(plot.x.minimum));
  graph.set_xaxismax(static_cast<float>(plot.x.maximum));
  graph.set_yaxismin(static_cast<float>(plot.y.minimum));
  graph.set_yaxismax(static_cast<float>(plot.y.maximum));
  graph.set_points_beyond_marked(plot.mark_points_beyond);
  graph.set_graph_data(std::move(plot.table));
  graph.set_graph_styles(std::move(plot.point_styles));
  for (std::size_t series = 0; series < plot.series_styles.size(); ++series) {
    graph.set_series_style(static_cast<int>(series), plot.series_styles[series]);
  }
}

GraphPairWidget::GraphPairWidget(const QString& name, XAxis x_axis, QWidget* parent) : QWidget(parent) {
  for (std::size_t index = 0; index < graphs_.size(); ++index) {
    auto* const graph = new VexGraphControl(this);
    graphs_[index] = graph;
    graph->setObjectName(QString("%1_%2").arg(name).arg(index));
    if (x_axis == XAxis::frequency) {
      graph->set_xaxistype(graph::AxisType::logarithmic);
      graph->set_xaxiscutoff(frequency_cutoff);
      graph->set_x_frequency();
    }
    const auto component = static_cast<Component>(index);
    connect(graph, &VexGraphControl::point_selected, this,
            [this, component](int series, int point) { Q_EMIT point_selected(component, series, point); });
    connect(graph, &VexGraphControl::points_enclosed, this,
            [this, component](const std::vector<graph::PointIndex>& points) {
              std::vector<Module_display_data::PlotPlace> places;
              places.reserve(points.size());
              for (const graph::PointIndex& at : points) {
                places.push_back({static_cast<std::size_t>(at.series), static_cast<std::size_t>(at.point)});
              }
              Q_EMIT points_enclosed(component, places);
            });
    connect(graph, &VexGraphControl::pointer_moved, this,
            [this, component](bool off, double x, double y) { Q_EMIT pointer_moved(component, off, x, y); });
    connect(graph, &VexGraphControl::error_bars_toggled, this, &GraphPairWidget::show_error_bars);
  }
  graphs_[0]->set_yaxistype(graph::AxisType::logarithmic);
  graphs_[0]->set_y_title("Apparent resistivity (ohm-m)");
  graphs_[0]->set_x_labels_shown(false);
  graphs_[1]->set_y_title("Phase (deg)");
  graphs_[0]->share_x_zoom(*graphs_[1]);
}

QSize GraphPairWidget::minimumSizeHint() const {
  const QSize upper = graphs_[0]->minimumSizeHint();
  const QSize lower = graphs_[1]->minimumSizeHint();
  return {std::max(upper.width(), lower.width()), upper.height() + lower.height()};
}

/// The axis labels under the lower graph serve both; what is left is shared three to two.
void GraphPairWidget::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  const int upper_frame = graphs_[0]->frame_height();
  const int areas = std::max(height() - upper_frame - graphs_[1]->frame_height(), 0);
  const int upper = std::min(upper_frame + areas * 3 / 5, height());
  graphs_[0]->setGeometry(0, 0, width(), upper);
  graphs_[1]->setGeometry(0, upper, width(), height() - upper);
}

void GraphPairWidget::show_error_bars(bool shown) {
  for (VexGraphControl* const graph : graphs_) {
    if (graph->error_bars_shown() != shown) {
      graph->set_error_bars_shown(shown);
      graph->draw_graph();
    }
  }
}

void GraphPairWidget::clear() {
  for (VexGraphControl* const graph : graphs_) {
    graph->begin_overlay();
    graph->clear_graph();
    graph->draw_graph();
  }
}

void GraphPairWidget::show_plot(Module_display_data::GraphPair plot, std::optional<double> marked_x) {
  hand_over(*graphs_[0], std::move(plot.resistivity));
  hand_over(*graphs_[1], std::move(plot.phase));
  put_mark(marked_x);
  for (VexGraphControl* const graph : graphs_) {
    graph->draw_graph();
  }
}

void GraphPairWidget::mark_x(std::optional<double> x) {
  put_mark(x);
  for (VexGraphControl* const graph : graphs_) {
    graph->draw_overlay();
  }
}

void GraphPairWidget::put_mark(std::optional<double> x) {
  constexpr double edge = std::numeric_limits<double>::infinity();
  for (std::size_t index = 0; index < graphs_.size(); ++index) {
    VexGraphControl* const graph = graphs_[index];
    graph->begin_overlay();
    if (x) {
      graph->draw_overlay_line(*x, -edge, *x, edge, Module_display_data::blue);
    }
    for (const graph::PlotLabel& label : labels_[index]) {
      graph->draw_overlay_label(label);
    }
  }
}

void GraphPairWidget::reset_zoom() {
  for (VexGraphControl* const graph : graphs_) {
    graph->reset_zoom();
  }
}

GraphPairWidget::Views GraphPairWidget::views() const { return {graphs_[0]->view(), graphs_[1]->view()}; }

void GraphPairWidget::set_views(const Views& views) {
  for (std::size_t index = 0; index < graphs_.size(); ++index) {
    graphs_[index]->set_view(views[index]);
  }
}

void GraphPairWidget::set_marking(bool marking) {
  for (VexGraphControl* const graph : graphs_) {
    graph->set_marking(marking);
  }
}

void GraphPairWidget::set_point_text(const PointText& text) {
  for (std::size_t index = 0; index < graphs_.size(); ++index) {
    graphs_[index]->set_point_text([text, component = static_cast<Component>(index)](int series, int point) {
      return QString::fromStdString(
          text(static_cast<std::size_t>(series), static_cast<std::size_t>(point), component));
    });
  }
}

void GraphPairWidget::place_on(graph::PdfPages& pages, const QRectF& part) {
  constexpr double upper_share = 0.57;  // the axis labels under the lower graph serve both
  const double upper = part.height() * upper_share;
  pages.place(*graphs_[0], {part.x(), part.y(), part.width(), upper});
  pages.place(*graphs_[1], {part.x(), part.y() + upper, part.width(), part.height() - upper});
}
