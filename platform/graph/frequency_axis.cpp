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

}  // namespace graph
