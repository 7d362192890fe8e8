#include "app/panels/plan_colours.h"

#include <QComboBox>
#include <QSignalBlocker>
#include <algorithm>
#include <cmath>

#include "core/absent_value.h"
#include "core/number_text.h"
#include "core/session_state.h"
#include "core/user_interface.h"
#include "platform/widgets/panel_controls.h"
#include "reduction/data_sets/data_sets.h"

using Module_averaged_data::Component;
using Module_tensor::ScalePalette;

PlanColours::PlanColours(QObject* parent)
    : QObject(parent),
      Combo_plan_colour_(make_list("Combo_plan_colour")),
      Combo_plan_frequency_(make_list("Combo_plan_frequency")) {
  Combo_plan_colour_->addItem("Plain dots");
  Combo_plan_colour_->setToolTip("What the dots of the stations are coloured by, of their merged curves");
  Combo_plan_frequency_->setToolTip("Frequency (Hz) of the values that colour the stations");
  Combo_plan_frequency_->setAccessibleName("Frequency of the plan's colours");
  Combo_plan_frequency_->setEnabled(false);
  connect(Combo_plan_colour_, &QComboBox::currentIndexChanged, this, [this](int index) {
    Combo_plan_frequency_->setEnabled(index > 0);
    made_.reset();
    Q_EMIT changed();
  });
  connect(Combo_plan_frequency_, &QComboBox::currentIndexChanged, this, [this] {
    made_.reset();
    Q_EMIT changed();
  });
}

void PlanColours::list(const std::vector<std::string>& data_types) {
  const QSignalBlocker quiet(Combo_plan_colour_);
  const QString chosen = Combo_plan_colour_->currentText();
  while (Combo_plan_colour_->count() > 1) {
    Combo_plan_colour_->removeItem(1);
  }
  choices_.clear();
  for (const std::string& type : data_types) {
    for (const auto& [component, words] :
         {std::pair(Component::resistivity, " resistivity"), std::pair(Component::phase, " phase")}) {
      choices_.push_back({type, component});
      Combo_plan_colour_->addItem(qt_text(type) + words);
    }
  }
  Combo_plan_colour_->setCurrentIndex(std::max(Combo_plan_colour_->findText(chosen), 0));
  Combo_plan_frequency_->setEnabled(Combo_plan_colour_->currentIndex() > 0);
  forget_values();
}

/// High frequencies first, as everywhere; at first the middle one.
void PlanColours::list_frequencies() {
  const std::vector<float>& present = session().frequencies.list;
  if (present == listed_) {
    return;
  }
  const QSignalBlocker quiet(Combo_plan_frequency_);
  const QString chosen = Combo_plan_frequency_->currentText();
  listed_ = present;
  made_.reset();
  Combo_plan_frequency_->clear();
  for (auto frequency = listed_.rbegin(); frequency != listed_.rend(); ++frequency) {
    Combo_plan_frequency_->addItem(qt_text(plain_text(*frequency)) + " Hz");
  }
  const int kept = Combo_plan_frequency_->findText(chosen);
  Combo_plan_frequency_->setCurrentIndex(kept >= 0 ? kept : Combo_plan_frequency_->count() / 2);
}

void PlanColours::forget_values() {
  values_.forget();
  made_.reset();
  list_frequencies();
}

void PlanColours::take_line() {
  values_.take_line(Module_averaged_data::data_sets().profile);
  made_.reset();
}

std::shared_ptr<const PlanColouring> PlanColours::colouring() {
  const int index = Combo_plan_colour_->currentIndex();
  list_frequencies();
  if (index < 1 || listed_.empty() || session().station_count == 0) {
    return nullptr;
  }
  const Choice& choice = choices_[static_cast<std::size_t>(index) - 1];
  if (!values_.are_of(choice.data_type)) {
    made_.reset();
    const BusyPointer busy;
    if (values_.read(choice.data_type) != 0) {
      Combo_plan_colour_->setCurrentIndex(0);
      return nullptr;
    }
  }
  if (!made_) {
    const auto place = static_cast<std::size_t>(std::max(Combo_plan_frequency_->currentIndex(), 0));
    made_ = std::make_shared<const PlanColouring>(make_colouring(choice, listed_.size() - 1 - place));
  }
  return made_;
}

PlanColouring PlanColours::make_colouring(const Choice& choice, std::size_t frequency_index) const {
  PlanColouring colouring;
  colouring.values = values_.at(choice.component, frequency_index);
  const Module_display_data::PlanRange range =
      Module_display_data::plan_range(choice.component, colouring.values);
  colouring.scale = {ScalePalette::sequential, range.lower, range.upper, false};
  colouring.powers = choice.component == Component::resistivity;
  colouring.unit = colouring.powers ? "ohm-m" : "deg";
  colouring.title = qt_text(choice.data_type) + "\n" + Combo_plan_frequency_->currentText();
  if (colouring.powers) {
    for (double& value : colouring.values) {
      value = is_absent(value) ? value : std::log10(value);
    }
  }
  return colouring;
}
