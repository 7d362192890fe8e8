#include "platform/graph/graph_look.h"

#include <cmath>

#include <qcustomplot.h>

#include "platform/graph/axis_ticks.h"

namespace graph {
namespace {

const QColor text_colour(40, 40, 40);
const QColor axis_colour(110, 110, 110);
const QColor major_grid_colour(205, 205, 205);
const QColor minor_grid_colour(238, 238, 238);

constexpr int tick_length = 4;
constexpr int minor_tick_length = 2;
constexpr int label_padding = 3;
constexpr int edge = 4;  // free pixels along the widget's edges

void style_axis(QCPAxis& axis) {
  axis.setBasePen(QPen(axis_colour, 1.0));
  axis.setTickPen(QPen(axis_colour, 1.0));
  axis.setSubTickPen(QPen(axis_colour, 1.0));
  axis.setTickLength(0, tick_length);
  axis.setSubTickLength(0, minor_tick_length);
  axis.setTickLabelPadding(label_padding);
  axis.setLabelPadding(label_padding);
  axis.setTickLabelColor(text_colour);
  axis.setLabelColor(text_colour);
  axis.setNumberFormat(QStringLiteral("gb"));  // labels like 1e5 are set as a power
  axis.grid()->setPen(QPen(major_grid_colour, 1.0));
  axis.grid()->setSubGridPen(QPen(minor_grid_colour, 1.0));
  axis.grid()->setZeroLinePen(QPen(major_grid_colour, 1.0));
  axis.grid()->setSubGridVisible(true);
}

void style_frame(QCPAxis& axis) {
  axis.setVisible(true);
  axis.setTicks(false);
  axis.setTickLabels(false);
  axis.setBasePen(QPen(axis_colour, 1.0));
}

}  // namespace

QCPItemText* apply_look(QCustomPlot& plot) {
  plot.setBackground(QBrush(Qt::white));
  plot.setAutoAddPlottableToLegend(false);
  plot.axisRect()->setAutoMargins(QCP::msNone);
  style_axis(*plot.xAxis);
  style_axis(*plot.yAxis);
  style_frame(*plot.xAxis2);
  style_frame(*plot.yAxis2);
  auto* title = new QCPItemText(&plot);
  title->setLayer(QStringLiteral("axes"));
  title->setClipToAxisRect(false);
  title->setColor(text_colour);
  title->setRotation(-90.0);
  title->setPositionAlignment(Qt::AlignCenter);
  title->setPadding(QMargins());
  title->position->setTypeX(QCPItemPosition::ptAbsolute);
  title->position->setTypeY(QCPItemPosition::ptAxisRectRatio);
  title->position->setAxisRect(plot.axisRect());
  return title;
}

void apply_fonts(QCustomPlot& plot, QCPItemText& y_title, const QFont& font, bool horizontal_labels) {
  for (QCPAxis* axis : {plot.xAxis, plot.yAxis}) {
    axis->setTickLabelFont(font);
    axis->setLabelFont(font);
  }
  y_title.setFont(font);
  const QFontMetricsF metrics(font);
  const double line = metrics.height();
  const double widest_label = metrics.horizontalAdvance(QString(longest_left_label, QLatin1Char('0')));
  const double ticks = tick_length + label_padding;
  const double left = edge + line + edge + widest_label + ticks;
  const double bottom = horizontal_labels ? ticks + line + label_padding + line + edge : 0.5 * line + edge;
  const double right = edge + metrics.horizontalAdvance(QStringLiteral("000"));
  plot.axisRect()->setMargins({static_cast<int>(std::ceil(left)),
                               static_cast<int>(std::ceil(0.5 * line)) + edge,
                               static_cast<int>(std::ceil(right)), static_cast<int>(std::ceil(bottom))});
  plot.xAxis->setTickLabels(horizontal_labels);
  y_title.position->setCoords(edge + 0.5 * line, 0.5);
}

QString fitting_title(const QString& title, const QFont& font, double length) {
  const QFontMetricsF metrics(font);
  QString text = title;
  while (metrics.horizontalAdvance(text) > length) {
    const qsizetype space = text.indexOf(QLatin1Char(' '));
    if (space < 0 || text.startsWith(QLatin1Char('('))) {  // a part of a unit is another unit
      return {};
    }
    text = text.mid(space + 1);
    if (!text.isEmpty()) {
      text[0] = text[0].toUpper();
    }
  }
  return text;
}

}  // namespace graph
