// picture_stats.h: the panel of the mask commands: by frequency, by sign of the phase, by outliers.
#pragma once
#include <QWidget>
#include <array>
#include <functional>
#include <string>

#include "reduction/edits/masks.h"

class QGridLayout;
class QLineEdit;
class QRadioButton;

class StatsPanel : public QWidget {
  Q_OBJECT

 public:
  explicit StatsPanel(QWidget* parent = nullptr);

  /// Where the text of the selected frequency comes from.
  void set_frequency_source(std::function<std::string()> frequency_text);
  /// A count of outliers that is none isn't taken along into another survey.
  void leave_survey();
  /// The quantity that outlier commands apply to.
  void choose_outlier_field(Module_averaged_data::Component component);

 Q_SIGNALS:
  void edited();
  /// A command needs a frequency, and its text is none: why not.
  void frequency_refused(const QString& fault);
  /// Why a command has changed nothing.
  void told(const QString& text);

 private:
  void add_outlier_field(QGridLayout& grid);
  void add_frequency_commands(QGridLayout& grid);
  void add_outlier_commands(QGridLayout& grid);
  void run_frequency_command(Module_averaged_data::FrequencyCommand command);
  void run_outlier_command(Module_averaged_data::ClipEnds ends);
  void mark_outlier_count();
  [[nodiscard]] Module_averaged_data::OutlierField outlier_field() const;

  std::function<std::string()> frequency_text_;
  std::array<QRadioButton*, 3> Option_outlier_{};
  QLineEdit* Text_outliers_;
};
