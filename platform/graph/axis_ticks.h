// axis_ticks.h: where an axis has its ticks and what stands beside them.
//
// The rules know nothing of widgets: a caller gives the range, the length of the axis in pixels and a measure
// of a label along the axis; so that labels never overlap they are thinned out until they fit.
#pragma once
#include <QFont>
#include <QSharedPointer>
#include <QString>
#include <QVector>
#include <functional>

#include "platform/graph/axis_limits.h"

class QCPAxis;
class QCPAxisTicker;

namespace graph {

struct AxisTicks {
  QVector<double> major;
  QVector<QString>
      labels;  // one for each major tick; "1e5" stands for a power to be set as 10 with an exponent
  QVector<double> minor;
};

struct TickRoom {
  double pixels = 0.0;                           // length of the axis
  double gap = 0.0;                              // least distance between two labels, pixels
  int max_characters = 100;                      // a longer label is written as a power
  std::function<double(const QString&)> extent;  // of a label along the axis, pixels
};

/// Ticks at the decades (every second, third ... where room lacks), with the multiples 2 to 9 as minor ticks.
/// A range with few decades has labels at 1, 2 and 5 too; within one decade the ticks are evenly spaced.
AxisTicks logarithmic_ticks(const AxisRange& range, const TickRoom& room);

/// Ticks at steps of 1, 2 or 5 times a power of ten.
AxisTicks linear_ticks(const AxisRange& range, const TickRoom& room);

/// A ticker for a chart's axis that asks the axis for its room at each drawing.
QSharedPointer<QCPAxisTicker> make_ticker(const QCPAxis& axis, AxisType type);

/// Longest label that the left margin of every chart has room for, so that charts above each other line up.
inline constexpr int longest_left_label = 6;

}  // namespace graph
