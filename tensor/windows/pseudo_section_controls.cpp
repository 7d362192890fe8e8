#include "tensor/windows/pseudo_section_controls.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "platform/widgets/entry_mark.h"
#include "platform/widgets/panel_controls.h"

using namespace Module_tensor;

namespace {

constexpr int limit_characters = 7;

QString text_of(std::string_view text) { return QString::fromStdString(std::string(text)); }

}  // namespace

PseudoSectionControls::PseudoSectionControls(const QString& suffix, SectionQuantity quantity, QWidget* parent)
    : QWidget(parent),
      Combo_quantity_(make_list("Combo_quantity" + suffix)),
      Combo_palette_(make_list("Combo_palette" + suffix)),
      Check_invert_(named(new QCheckBox("Invert"), "Check_invert" + suffix)),
      Combo_range_(make_list("Combo_range" + suffix)),
      Text_lower_(make_text("Text_lower" + suffix, limit_characters)),
      Text_upper_(make_text("Text_upper" + suffix, limit_characters)),
      Label_unit_(named(new QLabel, "Label_unit" + suffix)) {
  for (const QuantityFacts& facts : section_quantities()) {
    Combo_quantity_->addItem(text_of(facts.title));
  }
  for (const std::string_view name : scale_palette_names) {
    Combo_palette_->addItem(text_of(name));
  }
  Combo_range_->addItems({"Usual range", "Range of the data", "Range as typed"});
  Combo_quantity_->setCurrentIndex(static_cast<int>(quantity));
  Combo_quantity_->setToolTip("What the section shows");
  Combo_palette_->setToolTip("Colours from the lower to the upper limit");
  Check_invert_->setToolTip("Colours in the opposite order");
  Combo_range_->setToolTip("The usual range is the same for all lines, so that they can be compared");
  Text_lower_->setToolTip("Value of the first colour");
  Text_upper_->setToolTip("Value of the last colour");
  Text_lower_->setAccessibleName("Lower limit");
  Text_upper_->setAccessibleName("Upper limit");
  lay_out();
  show_choice();
  connect(Combo_quantity_, &QComboBox::activated, this, [this] {
    show_choice();
    Q_EMIT quantity_chosen();
  });
  connect(Combo_palette_, &QComboBox::activated, this, [this](int index) {
    chosen().scale.palette = static_cast<ScalePalette>(index);
    Q_EMIT look_changed();
  });
  connect(Check_invert_, &QCheckBox::clicked, this, [this](bool inverted) {
    chosen().scale.inverted = inverted;
    Q_EMIT look_changed();
  });
  connect(Combo_range_, &QComboBox::activated, this, &PseudoSectionControls::choose_source);
  connect(Text_lower_, &QLineEdit::editingFinished, this, &PseudoSectionControls::take_typed);
  connect(Text_upper_, &QLineEdit::editingFinished, this, &PseudoSectionControls::take_typed);
}

void PseudoSectionControls::lay_out() {
  auto* const what = new QHBoxLayout;
  what->addWidget(Combo_quantity_);
  what->addStretch(1);
  auto* const colours = new QHBoxLayout;
  colours->addWidget(Combo_palette_);
  colours->addWidget(Check_invert_);
  colours->addSpacing(8);
  colours->addWidget(Combo_range_);
  colours->addWidget(Text_lower_);
  colours->addWidget(new QLabel("to"));
  colours->addWidget(Text_upper_);
  colours->addWidget(Label_unit_);
  colours->addStretch(1);
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(4);
  rows->addLayout(what);
  rows->addLayout(colours);
}

SectionQuantity PseudoSectionControls::quantity() const {
  return static_cast<SectionQuantity>(Combo_quantity_->currentIndex());
}

PseudoSectionControls::Choice& PseudoSectionControls::chosen() {
  const SectionQuantity shown = quantity();
  return choices_.try_emplace(shown, Choice{usual_scale(facts_of(shown).scale), RangeSource::usual})
      .first->second;
}

void PseudoSectionControls::show_choice() {
  const Choice& choice = chosen();
  const QuantityFacts& facts = facts_of(quantity());
  Combo_palette_->setCurrentIndex(static_cast<int>(choice.scale.palette));
  Check_invert_->setChecked(choice.scale.inverted);
  Combo_range_->setCurrentIndex(static_cast<int>(choice.source));
  const QSignalBlocker lower(Text_lower_);
  const QSignalBlocker upper(Text_upper_);
  Text_lower_->setText(qt_text(range_text(facts, choice.scale.lower)));
  Text_upper_->setText(qt_text(range_text(facts, choice.scale.upper)));
  mark_limits({});
  Label_unit_->setText(text_of(facts.unit));
}

ColourScale PseudoSectionControls::scale_for(const PseudoSection& section) {
  Choice& choice = chosen();
  if (choice.source == RangeSource::data) {
    if (const auto range = range_of_data(section)) {
      choice.scale.lower = range->lower;
      choice.scale.upper = range->upper;
      show_choice();
    }
  }
  return choice.scale;
}

void PseudoSectionControls::choose_source(int index) {
  Choice& choice = chosen();
  choice.source = static_cast<RangeSource>(index);
  if (choice.source == RangeSource::usual) {
    const ColourScale usual = usual_scale(facts_of(quantity()).scale);
    choice.scale.lower = usual.lower;
    choice.scale.upper = usual.upper;
  }
  show_choice();
  Q_EMIT look_changed();
}

void PseudoSectionControls::mark_limits(const LimitFaults& faults) {
  mark_entry(*Text_lower_, qt_text(faults.lower));
  mark_entry(*Text_upper_, qt_text(faults.upper));
}

/// What makes no range stays as it was typed, to be mended, and the colours stay as they were.
void PseudoSectionControls::take_typed() {
  const QuantityFacts& facts = facts_of(quantity());
  Choice& choice = chosen();
  const std::string lower = Text_lower_->text().toStdString();
  const std::string upper = Text_upper_->text().toStdString();
  if (lower == range_text(facts, choice.scale.lower) && upper == range_text(facts, choice.scale.upper)) {
    mark_limits({});  // only left, or typed back
    return;
  }
  const auto range = typed_range(facts, lower, upper);
  if (!range) {
    const LimitFaults faults = limit_faults(facts, lower, upper);
    mark_limits(faults);
    Q_EMIT limits_refused(qt_text(faults.lower.empty() ? faults.upper : faults.lower));
    return;
  }
  choice.scale.lower = range->lower;
  choice.scale.upper = range->upper;
  choice.source = RangeSource::typed;
  show_choice();
  Q_EMIT look_changed();
}
