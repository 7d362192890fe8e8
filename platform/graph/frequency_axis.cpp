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

}  // namespace graph
