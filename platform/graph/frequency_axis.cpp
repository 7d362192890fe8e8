#include "platform/graph/frequency_axis.h"

namespace graph {

FrequencyAxis& FrequencyAxis::instance() {
  static FrequencyAxis axis;
  return axis;
}

void FrequencyAxis::show_periods(bool shown) {
  if (shown != shows_periods_) {
    shows_periods_ = shown;
    Q_EMIT changed();
  }
}

QString FrequencyAxis::title() const {
  return shows_periods_ ? QStringLiteral("Period (s)") : QStringLiteral("Frequency (Hz)");
}

QString FrequencyAxis::text(double shown) const {
  constexpr int digits = 4;
  return QString::number(shown, shows_periods_ ? 'g' : 'f', digits);
}

QString FrequencyAxis::short_text(double frequency) const {
  constexpr double whole = 1000.0;
  constexpr int digits = 4;
  const double value = shown(frequency);
  return value < whole ? QString::number(value, 'g', digits) : QString::number(value, 'f', 0);
}

}  // namespace graph
