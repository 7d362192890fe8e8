#include "platform/graph/axis_ticks.h"

#include <algorithm>
#include <cmath>

#include <qcustomplot.h>

namespace graph {
namespace {

double power_of_ten(int exponent) { return std::pow(10.0, exponent); }

/// Plain decimals; zero has no sign.
QString decimal_label(double value, int decimals) {
  const QString text = QString::number(value, 'f', std::max(decimals, 0));
  return text.toDouble() == 0.0 ? QString::number(0.0, 'f', std::max(decimals, 0)) : text;
}

QString power_label(int exponent) { return QStringLiteral("1e%1").arg(exponent); }

/// A power is drawn as a 10 and a smaller exponent, about as wide as "1e5", which is measured here.
bool labels_fit(const AxisTicks& ticks, const std::function<double(double)>& position, const TickRoom& room) {
  for (qsizetype i = 0; i < ticks.major.size(); ++i) {
    if (ticks.labels[i].size() > room.max_characters && !ticks.labels[i].contains(QLatin1Char('e'))) {
      return false;
    }
    if (i > 0) {
      const double distance = std::abs(position(ticks.major[i]) - position(ticks.major[i - 1]));
      const double needed =
          0.5 * (room.extent(ticks.labels[i]) + room.extent(ticks.labels[i - 1])) + room.gap;
      if (distance < needed) {
        return false;
      }
    }
  }
  return true;
}

/// One decade's label: as a plain number from 0.0001 to 1000000 where wanted, else as a power.
QString decade_label(int exponent, bool plain) {
  return plain && exponent >= -4 && exponent <= 6 ? decimal_label(power_of_ten(exponent), -exponent)
                                                  : power_label(exponent);
}

/// Decades `step` apart; the minor ticks are the decades between, or else the multiples 2 to 9.
AxisTicks decades(int first, int last, int step, bool plain) {
  AxisTicks ticks;
  for (int exponent = first; exponent <= last; ++exponent) {
    if (exponent % step == 0) {
      ticks.major.append(power_of_ten(exponent));
      ticks.labels.append(decade_label(exponent, plain));
    } else {
      ticks.minor.append(power_of_ten(exponent));
    }
  }
  if (step == 1) {
    for (int exponent = first - 1; exponent <= last; ++exponent) {
      for (int multiple = 2; multiple <= 9; ++multiple) {
        ticks.minor.append(multiple * power_of_ten(exponent));
      }
    }
  }
  return ticks;
}

/// Labels at 1, 2 and 5 (or, with `dense`, at every multiple) of each decade in the range.
AxisTicks multiples(const AxisRange& range, bool dense) {
  AxisTicks ticks;
  const int first = static_cast<int>(std::floor(std::log10(range.lower)));
  const int last = static_cast<int>(std::ceil(std::log10(range.upper)));
  for (int exponent = first; exponent <= last; ++exponent) {
    for (int multiple = 1; multiple <= 9; ++multiple) {
      const double value = multiple * power_of_ten(exponent);
      if (value < range.lower * (1.0 - 1e-9) || value > range.upper * (1.0 + 1e-9)) {
        continue;
      }
      if (dense || multiple == 1 || multiple == 2 || multiple == 5) {
        ticks.major.append(value);
        ticks.labels.append(decimal_label(value, -exponent));
      } else {
        ticks.minor.append(value);
      }
    }
  }
  return ticks;
}

/// The next of the steps 1, 2, 5, 10, 20, ... at or above a value, with the number of minor steps in it.
struct Step {
  double size = 1.0;
  int minor_count = 5;
  int decimals = 0;
};

Step step_at_least(double value) {
  const int exponent = static_cast<int>(std::floor(std::log10(value) + 1e-9));
  const double magnitude = power_of_ten(exponent);
  const double mantissa = value / magnitude;
  const int decimals = std::max(0, -exponent);
  if (mantissa <= 1.0 + 1e-9) {
    return {magnitude, 5, decimals};
  }
  if (mantissa <= 2.0 + 1e-9) {
    return {2.0 * magnitude, 4, decimals};
  }
  if (mantissa <= 5.0 + 1e-9) {
    return {5.0 * magnitude, 5, decimals};
  }
  return {10.0 * magnitude, 5, std::max(0, -exponent - 1)};
}

AxisTicks stepped(const AxisRange& range, const Step& step, bool plain) {
  AxisTicks ticks;
  const double tolerance = 1e-6;
  const double first = std::ceil(range.lower / step.size - tolerance);
  const double last = std::floor(range.upper / step.size + tolerance);
  const double minor_size = step.size / step.minor_count;
  const int steps = static_cast<int>(last - first);
  for (int i = 0; i <= steps; ++i) {
    const double value = (first + i) * step.size;
    ticks.major.append(value);
    ticks.labels.append(plain ? decimal_label(value, step.decimals) : QString::number(value, 'g', 4));
  }
  for (int i = -1; i <= steps; ++i) {
    for (int m = 1; m < step.minor_count; ++m) {
      ticks.minor.append((first + i) * step.size + m * minor_size);
    }
  }
  return ticks;
}

void invert(QVector<double>& values) {
  for (double& value : values) {
    value = 1.0 / value;
  }
}

constexpr const char* whole_numbers = "whole_numbers";  // property of an axis

class ChartTicker final : public QCPAxisTicker {
 public:
  ChartTicker(const QCPAxis& axis, AxisType type, TickLabels labels)
      : axis_(axis), type_(type), inverse_(labels == TickLabels::inverse) {}

  void generate(const QCPRange& range, const QLocale& /*locale*/, QChar /*format*/, int /*precision*/,
                QVector<double>& ticks, QVector<double>* sub_ticks, QVector<QString>* labels) override {
    const AxisRange shown =
        inverse_ ? AxisRange{1.0 / range.upper, 1.0 / range.lower} : AxisRange{range.lower, range.upper};
    const TickRoom space = room();
    AxisTicks made =
        type_ == AxisType::logarithmic ? logarithmic_ticks(shown, space) : linear_ticks(shown, space);
    // Minor ticks cover whole decades and steps; the axis would draw those beyond its ends, too.
    made.minor.removeIf([&](double tick) { return tick < shown.lower || tick > shown.upper; });
    if (inverse_) {
      invert(made.major);
      invert(made.minor);
    }
    if (space.least_step > 0.0) {
      made.minor.removeIf([](double tick) { return std::abs(tick - std::round(tick)) > 1e-6; });
    }
    ticks = made.major;
    if (sub_ticks != nullptr) {
      *sub_ticks = made.minor;
    }
    if (labels != nullptr) {
      *labels = made.labels;
    }
  }

 private:
  /// Measured from the viewport: ticks are generated before the axis rectangle has its new size.
  TickRoom room() const {
    const QFontMetricsF metrics(axis_.tickLabelFont());
    const QMargins margins = axis_.axisRect()->margins();
    const QRect viewport = axis_.parentPlot()->viewport();
    TickRoom room;
    room.least_step = axis_.property(whole_numbers).toBool() ? 1.0 : 0.0;
    if (axis_.orientation() == Qt::Horizontal) {
      room.pixels = viewport.width() - margins.left() - margins.right();
      room.gap = metrics.horizontalAdvance(QStringLiteral("000"));
      room.extent = [metrics](const QString& label) { return metrics.horizontalAdvance(label); };
    } else {
      room.pixels = viewport.height() - margins.top() - margins.bottom();
      room.gap = metrics.height() * 0.7;
      room.max_characters = longest_left_label;
      room.extent = [metrics](const QString& /*label*/) { return metrics.height(); };
    }
    return room;
  }

  const QCPAxis& axis_;
  AxisType type_;
  bool inverse_;
};

/// Ticks whose labels have their gap.
AxisTicks spaced_decades(const AxisRange& range, const TickRoom& room) {
  const double low = std::log10(range.lower);
  const double span = std::log10(range.upper) - low;
  if (!(span > 0.0) || room.pixels <= 0.0) {
    return {};
  }
  const auto position = [&](double value) { return (std::log10(value) - low) / span * room.pixels; };
  constexpr double tolerance = 1e-9;
  const int first = static_cast<int>(std::ceil(low - tolerance));
  const int last = static_cast<int>(std::floor(low + span + tolerance));
  if (last - first < 2) {
    constexpr int fewest = 3;
    for (const bool dense : {false, true}) {
      AxisTicks ticks = multiples(range, dense);
      if (ticks.major.size() >= fewest && labels_fit(ticks, position, room)) {
        return ticks;
      }
    }
    if (last <= first) {
      return linear_ticks(range, room);
    }
  }
  for (int step = 1; step <= last - first + 1; ++step) {
    for (const bool plain : {true, false}) {
      AxisTicks ticks = decades(first, last, step, plain);
      if (labels_fit(ticks, position, room)) {
        return ticks;
      }
    }
  }
  return decades(first, first, 1, false);
}

}  // namespace

AxisTicks logarithmic_ticks(const AxisRange& range, const TickRoom& room) {
  AxisTicks ticks = spaced_decades(range, room);
  if (ticks.major.size() < 2) {  // one number gives no scale: rather several that stand close
    TickRoom close = room;
    constexpr double share_of_gap = 0.3;
    close.gap *= share_of_gap;
    if (AxisTicks closer = spaced_decades(range, close); closer.major.size() > ticks.major.size()) {
      return closer;
    }
  }
  return ticks;
}

AxisTicks linear_ticks(const AxisRange& range, const TickRoom& room) {
  const double span = range.upper - range.lower;
  if (!(span > 0.0) || room.pixels <= 0.0) {
    return {};
  }
  const auto position = [&](double value) { return (value - range.lower) / span * room.pixels; };
  // Start with more ticks than anyone wants to read and widen the step until each label fits.
  const double min_distance = room.extent(QStringLiteral("0")) + room.gap;
  const double densest = span * std::max(min_distance / room.pixels, 1.0 / 50.0);
  constexpr int max_attempts = 12;
  for (const bool plain : {true, false}) {
    double wanted = std::max(densest, room.least_step);
    for (int attempt = 0; attempt < max_attempts; ++attempt) {
      const Step step = step_at_least(wanted);
      AxisTicks ticks = stepped(range, step, plain);
      if (labels_fit(ticks, position, room)) {
        return ticks;
      }
      wanted = step.size * 1.5;
    }
  }
  return {};  // labels too long for the axis, however few
}

void use_whole_numbers_along_x(QWidget& chart) {
  if (const auto* const plot = chart.findChild<QCustomPlot*>()) {
    plot->xAxis->setProperty(whole_numbers, true);
  }
}

QSharedPointer<QCPAxisTicker> make_ticker(const QCPAxis& axis, AxisType type, TickLabels labels) {
  return QSharedPointer<ChartTicker>::create(axis, type, labels);
}

}  // namespace graph
