// pseudo_section_controls.h: what a user chooses for one of the panes of the pseudo-section's window.
#pragma once
#include <QWidget>
#include <map>

#include "tensor/pseudo_section.h"
#include "tensor/section_texts.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;

class PseudoSectionControls : public QWidget {
  Q_OBJECT

 public:
  /// @param suffix  of the names of the controls, "_0" say
  PseudoSectionControls(const QString& suffix, Module_tensor::SectionQuantity quantity,
                        QWidget* parent = nullptr);

  [[nodiscard]] Module_tensor::SectionQuantity quantity() const;
  /// Colours and limits for a section of this quantity; the limits are shown.
  Module_tensor::ColourScale scale_for(const Module_tensor::PseudoSection& section);

 Q_SIGNALS:
  void quantity_chosen();
  void look_changed();
  /// What was typed makes no range; why.
  void limits_refused(const QString& fault);

 private:
  /// Where the limits of the colours come from.
  enum class RangeSource { usual, data, typed };

  struct Choice {
    Module_tensor::ColourScale scale;
    RangeSource source = RangeSource::usual;
  };

  Choice& chosen();
  void lay_out();
  void show_choice();
  void mark_limits(const Module_tensor::LimitFaults& faults);
  void take_typed();
  void choose_source(int index);

  std::map<Module_tensor::SectionQuantity, Choice> choices_;  // a quantity that comes back is as it was left
  QComboBox* Combo_quantity_;
  QComboBox* Combo_palette_;
  QCheckBox* Check_invert_;
  QComboBox* Combo_range_;
  QLineEdit* Text_lower_;
  QLineEdit* Text_upper_;
  QLabel* Label_unit_;
};
