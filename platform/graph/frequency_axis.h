// frequency_axis.h: whether axes of frequency are labelled with frequencies or with periods.
//
// One choice for all charts of the program. Data are frequencies either way, and so are the coordinates of a
// chart: an axis of periods runs the other way, so that long periods, which come from depth, are on its
// right.
#pragma once
#include <QObject>
#include <QString>

namespace graph {

class FrequencyAxis final : public QObject {
  Q_OBJECT

 public:
  static FrequencyAxis& instance();

  [[nodiscard]] bool shows_periods() const { return shows_periods_; }
  void show_periods(bool shown);

  /// "Frequency (Hz)" or "Period (s)"
  [[nodiscard]] QString title() const;
  /// What the axis says at a frequency: Hz or s.
  [[nodiscard]] double shown(double frequency) const { return shows_periods_ ? 1.0 / frequency : frequency; }

  /// "64.0000" of a frequency; a period in four digits, as short ones have no decimals to lose.
  [[nodiscard]] QString text(double shown) const;

  /// A frequency of the data as the axis says it, where there is little room: four digits, "4096", "0.1221".
  [[nodiscard]] QString short_text(double frequency) const;

 Q_SIGNALS:
  void changed();

 private:
  FrequencyAxis() = default;

  bool shows_periods_ = false;
};

}  // namespace graph
