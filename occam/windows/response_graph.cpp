#include "occam/windows/response_graph.h"

#include <QPalette>
#include <QVBoxLayout>
#include <limits>
#include <utility>

#include "core/number_text.h"
#include "platform/widgets/panel_controls.h"

namespace {

constexpr graph::Colour mark_colour{0, 0, 255};

QString legend_entry(const graph::SeriesStyle& style, const std::string& name) {
  const graph::Colour colour = style.colour.value_or(graph::Colour{});
  return QString("<span style=\"color:rgb(%1,%2,%3)\">%4</span>&nbsp;%5")
      .arg(colour.red)
      .arg(colour.green)
      .arg(colour.blue)
      .arg(style.marker == graph::Marker::square ? "&#9632;" : "&#9679;")
      .arg(QString::fromStdString(name).toHtmlEscaped());
}

}  // namespace

ResponseGraph::ResponseGraph(const QString& name, const QString& x_title, const QString& y_title,
                             QWidget* parent)
    : QWidget(parent), heading_(new QLabel), chart_(named(new VexGraphControl, name)) {
  heading_->setTextFormat(Qt::RichText);
  // White as the chart below, whatever the desktop's own colours: the curves' colours are chosen for it.
  QPalette colours = heading_->palette();
  colours.setColor(QPalette::Window, Qt::white);
  colours.setColor(QPalette::WindowText, Qt::black);
  heading_->setPalette(colours);
  heading_->setAutoFillBackground(true);
  heading_->setWordWrap(true);  // an entry that has no room goes to a second row
  QSizePolicy narrow(QSizePolicy::Ignored, QSizePolicy::Minimum);
  narrow.setHeightForWidth(true);
  heading_->setSizePolicy(narrow);
  chart_->set_x_title(x_title);
  chart_->set_y_title(y_title);
  chart_->set_point_text([this](int series, int point) {
    const auto s = static_cast<std::size_t>(series);
    const auto p = static_cast<std::size_t>(point);
    return QString::fromStdString(plot_.series_names[s] + "\n" +
                                  plain_text(chart_->shown_x(plot_.table.series[s].x[p])) + ", " +
                                  format_number(plot_.table.series[s].y[p], "0.0000"));
  });
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(0);
  rows->addWidget(heading_);
  rows->addWidget(chart_, 1);
  show_heading(false);
}

void ResponseGraph::set_title(const QString& title) {
  title_ = title;
  show_heading(true);
}

void ResponseGraph::set_explanation(const QString& text) { heading_->setToolTip(text); }

void ResponseGraph::show_heading(bool legend) {
  QStringList parts;
  if (!title_.isEmpty()) {
    parts.append("<b>" + title_.toHtmlEscaped() + "</b>");
  }
  const std::vector<std::string>& names = plot_.legend.empty() ? plot_.series_names : plot_.legend;
  for (std::size_t s = 0; legend && s < names.size(); ++s) {
    if (!names[s].empty()) {
      parts.append(legend_entry(plot_.styles[s], names[s]));
    }
  }
  heading_->setText(parts.join("&nbsp;&nbsp; "));
}

void ResponseGraph::clear() { show_plot({}); }

void give_to_chart(VexGraphControl& chart, const Module_occam::ResponsePlot& plot) {
  chart.begin_overlay();
  chart.clear_graph();
  chart.set_xaxistype(plot.x.type);
  chart.set_yaxistype(plot.y.type);
  chart.set_xaxismin(static_cast<float>(plot.x.minimum));
  chart.set_xaxismax(static_cast<float>(plot.x.maximum));
  chart.set_yaxismin(static_cast<float>(plot.y.minimum));
  chart.set_yaxismax(static_cast<float>(plot.y.maximum));
  chart.set_graph_data(plot.table);
  for (std::size_t s = 0; s < plot.styles.size(); ++s) {
    chart.set_series_style(static_cast<int>(s), plot.styles[s]);
  }
  chart.draw_graph();
}

void ResponseGraph::show_plot(Module_occam::ResponsePlot plot, bool legend) {
  plot_ = std::move(plot);
  give_to_chart(*chart_, plot_);
  show_heading(legend);
}

void ResponseGraph::mark_x(double x) {
  constexpr double edge = std::numeric_limits<double>::infinity();
  chart_->begin_overlay();
  chart_->draw_overlay_line(x, -edge, x, edge, mark_colour);
  chart_->draw_graph();
}
