// profile_legend.h: which colour of the profile is which frequency; a frequency that is chosen stands out.
#pragma once
#include <QWidget>
#include <cstddef>
#include <optional>
#include <vector>

class QCheckBox;
class QListWidget;

class ProfileLegend : public QWidget {
  Q_OBJECT

 public:
  explicit ProfileLegend(QWidget* parent = nullptr);

  /// Lists the frequencies of the profile data set that are in use, high ones on top; what was chosen stays
  /// so.
  void list_frequencies();
  /// The frequency that stands out, by its index in the data set.
  [[nodiscard]] std::optional<std::size_t> chosen() const;
  void forget_choice();
  [[nodiscard]] bool labels_wanted() const;

 Q_SIGNALS:
  void changed();

 private:
  [[nodiscard]] QString text_of(std::size_t index) const;

  QListWidget* List_frequencies_;
  QCheckBox* Check_labels_;
  std::vector<float> listed_;  // Hz; absent where one isn't in use
};
