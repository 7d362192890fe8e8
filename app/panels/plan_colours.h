// plan_colours.h: the lists from which the plan's colours are chosen, and the values behind them.
#pragma once
#include <QObject>
#include <memory>
#include <string>
#include <vector>

#include "app/panels/plan_painter.h"
#include "display/plan_values.h"

class QComboBox;

class PlanColours : public QObject {
  Q_OBJECT

 public:
  explicit PlanColours(QObject* parent = nullptr);

  [[nodiscard]] QComboBox* quantities() const { return Combo_plan_colour_; }
  [[nodiscard]] QComboBox* frequencies() const { return Combo_plan_frequency_; }

  /// Lists what the survey has; what was chosen stays so while it is there.
  void list(const std::vector<std::string>& data_types);
  /// The readings of any station may have changed, or others are selected.
  void forget_values();
  /// Only those of the line that is displayed have.
  void take_line();

  /// What is chosen, read where it has to be; none for plain dots, and after a message where reading failed.
  [[nodiscard]] std::shared_ptr<const PlanColouring> colouring();

 Q_SIGNALS:
  void changed();

 private:
  struct Choice {
    std::string data_type;
    Module_averaged_data::Component component;
  };
  void list_frequencies();
  [[nodiscard]] PlanColouring make_colouring(const Choice& choice, std::size_t frequency_index) const;

  QComboBox* Combo_plan_colour_;
  QComboBox* Combo_plan_frequency_;
  std::vector<Choice> choices_;  // of the list's items after the first one
  std::vector<float> listed_;    // Hz, ascending
  Module_display_data::PlanValues values_;
  std::shared_ptr<const PlanColouring> made_;  // of the lists' choice now; none: to be made
};
