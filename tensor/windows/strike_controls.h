// strike_controls.h: what a user asks of the strike: band, method, weights, limits, bins.
#pragma once
#include <QWidget>
#include <optional>

#include "numerics/impedance/phase_tensor.h"
#include "tensor/strike_summary.h"

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QLabel;
class QLineEdit;
class QPushButton;

class StrikeControls : public QWidget {
  Q_OBJECT

 public:
  explicit StrikeControls(QWidget* parent = nullptr);

  /// The frequencies that the line has: what an empty end of the band means.
  void take_data_band(const std::optional<Module_tensor::FrequencyBand>& whole);
  /// None while a typed end of the band is no frequency; the label beside it says so.
  [[nodiscard]] std::optional<Module_tensor::StrikeQuestion> question() const;
  [[nodiscard]] numerics::impedance::DimensionalityLimits limits() const;

 Q_SIGNALS:
  void changed();
  /// Only of the limits that the dimensions are told by.
  void dimensions_changed();

 private:
  void lay_out();
  void connect_controls();
  void show_periods();
  [[nodiscard]] std::optional<Module_tensor::FrequencyBand> band() const;
  [[nodiscard]] bool band_typed() const;

  QLineEdit* from_;
  QLineEdit* to_;
  QPushButton* all_;
  QLabel* periods_;
  QComboBox* method_;
  QComboBox* weights_;
  QDoubleSpinBox* skew_;
  QDoubleSpinBox* ellipticity_;
  QComboBox* bins_;
  QCheckBox* with_errors_;
  Module_tensor::FrequencyBand data_;
};
