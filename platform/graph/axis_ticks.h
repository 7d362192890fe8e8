// axis_ticks.h: the ticks of an axis and their labels.
//
// The rules don't depend on widgets: a caller gives the range, the length of the axis in pixels and a measure
// of a label along the axis. Labels are thinned out until they don't overlap.
#pragma once
#include <QFont>
#include <QSharedPointer>
#include <QString>
#include <QVector>
#include <functional>

#include "platform/graph/axis_limits.h"

class QCPAxis;
class QCPAxisTicker;
class QWidget;

namespace graph {

struct AxisTicks {
  QVector<double> major;
  QVector<QString> labels;  // one for each major tick; "1e5" is drawn as 10 with an exponent
  QVector<double> minor;
};

struct TickRoom {
  double pixels = 0.0;                           // length of the axis
  double gap = 0.0;                              // minimum distance between two labels, pixels
  int max_characters = 100;                      // a longer label is written as a power
  std::function<double(const QString&)> extent;  // of a label along the axis, pixels
  double least_step = 0.0;                       // between the ticks of a linear axis
};

/// Ticks at the decades (every second, third ... if there is little room), with the multiples 2 to 9 as minor
/// ticks. A range with few decades has labels at 1, 2 and 5 too; within one decade the ticks are evenly
/// spaced.
AxisTicks logarithmic_ticks(const AxisRange& range, const TickRoom& room);

/// Ticks at steps of 1, 2 or 5 times a power of ten.
AxisTicks linear_ticks(const AxisRange& range, const TickRoom& room);

/// What the labels say of a coordinate. Inverses are for axes above 0, which then run downwards.
enum class TickLabels { coordinates, inverse };

/// A ticker for a chart's axis that measures the axis at each drawing.
QSharedPointer<QCPAxisTicker> make_ticker(const QCPAxis& axis, AxisType type, TickLabels labels);

/// Counts, such as iterations, have no marks between whole numbers.
/// @param chart  a VexGraphControl
void use_whole_numbers_along_x(QWidget& chart);

/// Longest label that fits into the left margin of every chart, so that charts above each other line up.
inline constexpr int longest_left_label = 6;

}  // namespace graph
