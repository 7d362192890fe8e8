#include "tensor/windows/strike_controls.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>
#include <cmath>
#include <utility>

#include "core/number_text.h"
#include "platform/widgets/panel_controls.h"

using Module_tensor::FrequencyBand;
using Module_tensor::StrikeQuestion;
using numerics::impedance::StrikeMethod;
using numerics::impedance::StrikeWeights;

namespace {

constexpr int end_characters = 8;

QDoubleSpinBox* make_limit(const QString& name, double value, double highest, int decimals, double step) {
  auto* const limit = named(new QDoubleSpinBox, name);
  limit->setLocale(QLocale::c());
  limit->setDecimals(decimals);
  limit->setRange(0.0, highest);
  limit->setSingleStep(step);
  limit->setValue(value);
  limit->setKeyboardTracking(false);
  return limit;
}

}  // namespace

StrikeControls::StrikeControls(QWidget* parent)
    : QWidget(parent),
      from_(make_text("Text_band_from", end_characters)),
      to_(make_text("Text_band_to", end_characters)),
      all_(named(new QPushButton("&All"), "Command_whole_band")),
      periods_(named(new QLabel, "Label_periods")),
      method_(make_list("Combo_strike_method")),
      weights_(make_list("Combo_strike_weights")),
      skew_(make_limit("Spin_skew_limit", StrikeQuestion{}.choices.skew_limit, 90.0, 1, 0.5)),
      ellipticity_(
          make_limit("Spin_least_ellipticity", StrikeQuestion{}.choices.least_ellipticity, 1.0, 2, 0.05)),
      bins_(make_list("Combo_rose_bins")),
      with_errors_(named(new QCheckBox("3-D only be&yond the error"), "Check_with_errors")) {
  for (const StrikeMethod method : {StrikeMethod::phase_tensor_azimuth, StrikeMethod::phase_tensor_alpha,
                                    StrikeMethod::swift_sum, StrikeMethod::tipper}) {
    method_->addItem(qt_text(std::string(Module_tensor::method_name(method))), static_cast<int>(method));
  }
  weights_->addItem("Ellipticity squared", static_cast<int>(StrikeWeights::ellipticity_squared));
  weights_->addItem("None", static_cast<int>(StrikeWeights::none));
  for (const int width : {10, 5}) {
    bins_->addItem(QString::number(width) + "°", width);
  }
  lay_out();
  connect_controls();
}

void StrikeControls::lay_out() {
  all_->setAutoDefault(false);
  all_->setToolTip("All frequencies of the line");
  from_->setToolTip("One end of the band, Hz; empty: that of the data");
  to_->setToolTip("The other end of the band, Hz; empty: that of the data");
  bins_->setToolTip("How wide the bins of the roses are");
  method_->setToolTip("What the best strike, the large rose and the table are made from");
  weights_->setToolTip(
      "Of the phase tensors: by ellipticity squared those near to one dimension have little say");
  skew_->setToolTip("Degrees: tensors of a larger skew are three-dimensional and have no say");
  ellipticity_->setToolTip("Tensors of a smaller ellipticity are one-dimensional and have no say");
  with_errors_->setToolTip("Three-dimensional only where the skew exceeds its limit by its own error");
  auto* const first = new QHBoxLayout;
  add_labelled(*first, "&Band", from_);
  add_labelled(*first, "&to", to_);
  first->addWidget(new QLabel("Hz"));
  first->addWidget(all_);
  first->addWidget(periods_);
  first->addStretch(1);
  add_labelled(*first, "Best &strike by", method_);
  add_labelled(*first, "&weights", weights_);
  auto* const second = new QHBoxLayout;
  add_labelled(*second, "S&kew up to", skew_);
  second->addWidget(new QLabel("degrees"));
  add_labelled(*second, "   Elli&pticity from", ellipticity_);
  second->addSpacing(10);
  second->addWidget(with_errors_);
  second->addStretch(1);
  add_labelled(*second, "B&ins of", bins_);
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(4);
  rows->addLayout(first);
  rows->addLayout(second);
}

void StrikeControls::connect_controls() {
  const auto tell = [this] {
    show_periods();
    Q_EMIT changed();
  };
  connect(from_, &QLineEdit::editingFinished, this, tell);
  connect(to_, &QLineEdit::editingFinished, this, tell);
  connect(all_, &QPushButton::clicked, this, [this, tell] {
    from_->clear();
    to_->clear();
    tell();
  });
  for (QComboBox* const list : {method_, weights_, bins_}) {
    connect(list, &QComboBox::currentIndexChanged, this, tell);
  }
  connect(skew_, &QDoubleSpinBox::valueChanged, this, tell);
  connect(ellipticity_, &QDoubleSpinBox::valueChanged, this, tell);
  connect(with_errors_, &QCheckBox::toggled, this, &StrikeControls::dimensions_changed);
}

bool StrikeControls::band_typed() const {
  return !from_->text().trimmed().isEmpty() || !to_->text().trimmed().isEmpty();
}

std::optional<FrequencyBand> StrikeControls::band() const {
  return Module_tensor::read_band(from_->text().toStdString(), to_->text().toStdString(), data_);
}

void StrikeControls::take_data_band(const std::optional<FrequencyBand>& whole) {
  data_ = whole.value_or(FrequencyBand{});
  from_->setPlaceholderText(whole ? qt_text(plain_text(static_cast<float>(whole->lower))) : QString());
  to_->setPlaceholderText(whole ? qt_text(plain_text(static_cast<float>(whole->upper))) : QString());
  show_periods();
}

void StrikeControls::show_periods() {
  const auto asked = band();
  const bool known = asked && asked->lower > 0.0 && std::isfinite(asked->upper);
  periods_->setText(!asked  ? "A frequency is a number above 0"
                    : known ? qt_text("(" + Module_tensor::period_text(*asked) + ")")
                            : QString());
}

std::optional<StrikeQuestion> StrikeControls::question() const {
  const auto asked = band();
  if (!asked) {
    return std::nullopt;
  }
  StrikeQuestion question;
  question.band = band_typed() ? asked : std::nullopt;
  question.choices.method = static_cast<StrikeMethod>(method_->currentData().toInt());
  question.choices.weights = static_cast<StrikeWeights>(weights_->currentData().toInt());
  question.choices.skew_limit = skew_->value();
  question.choices.least_ellipticity = ellipticity_->value();
  question.bin_width = bins_->currentData().toInt();
  return question;
}

numerics::impedance::DimensionalityLimits StrikeControls::limits() const {
  return {skew_->value(), ellipticity_->value(), with_errors_->isChecked()};
}
