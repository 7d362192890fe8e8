// Form_pseudo_section.h: the line as pseudo-sections, one or two side by side. It follows the main window's
// line, station and edits; axes, zoom and frame of both go together.
#pragma once
#include <QDialog>
#include <array>
#include <optional>
#include <string>
#include <vector>

#include "rhoplus/section_residuals.h"
#include "tensor/pseudo_section.h"
#include "tensor/windows/pseudo_section_painter.h"
#include "tensor/windows/shown_line.h"

class ConsistencyPanel;
class PseudoSectionControls;
class PseudoSectionPane;
class QCheckBox;
class QPushButton;
class QStatusBar;

class Form_pseudo_section : public QDialog {
  Q_OBJECT

 public:
  /// @param shown  outlives this window
  explicit Form_pseudo_section(ShownLine& shown, QWidget* parent = nullptr);

  /// Writes what is shown as PNG or PDF, by the ending of the path.
  /// @return 0, or -1 after a message; an earlier file at the path is then as before
  [[nodiscard]] int save_picture(const std::string& path);

 Q_SIGNALS:
  void undo_wanted();
  void redo_wanted();

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  static constexpr std::size_t pane_count = 2;

  void make_panes();
  void lay_out();
  QWidget* make_switches();
  void connect_controls();
  void add_shortcuts();
  void follow_line();
  void follow_positions();
  void choose_positions(bool by_distance);
  /// The sections of both panes again, from the line as it is.
  void rebuild();
  /// The pictures again, from the sections as they are.
  void show_pictures();
  void update_residuals();
  [[nodiscard]] const Module_rhoplus::LineConsistency* consistency_of_line();
  /// The points of a misfit that are proposed to be masked.
  [[nodiscard]] std::vector<Module_tensor::RingedPoint> proposed_points(
      const Module_tensor::QuantityFacts& facts) const;
  [[nodiscard]] bool shows_misfit() const;
  [[nodiscard]] Module_tensor::PseudoSection make_section(Module_tensor::SectionQuantity quantity);
  void compare(bool second);
  void mask(std::size_t pane, const Module_tensor::SectionColumn& column,
            const Module_tensor::SectionPoint& point);
  void step_station(int step);
  void ask_and_save();

  ShownLine& shown_;
  Module_display_data::LineAxis axis_;
  std::optional<bool> own_by_distance_;  // none: as the main window
  bool main_by_distance_ = false;
  Module_tensor::LineChoice shown_choice_;
  std::vector<Module_tensor::StationPhaseTensors> phase_tensors_;
  Module_rhoplus::SectionResiduals residuals_;
  bool residuals_stopped_ = false;  // by the user: not again until they are asked for
  bool inverting_ = false;          // events run meanwhile
  bool changed_meanwhile_ = false;  // what is shown: it is looked at again then
  std::array<Module_tensor::PseudoSection, pane_count> sections_;
  std::array<PseudoSectionPane*, pane_count> panes_{};
  std::array<PseudoSectionControls*, pane_count> controls_{};
  std::array<QWidget*, pane_count> columns_{};  // controls above their pane
  ConsistencyPanel* consistency_ = nullptr;     // beneath sections of the misfit
  QCheckBox* Check_compare_;
  QCheckBox* Check_period_up_;
  QCheckBox* Check_section_by_distance_;
  QCheckBox* Check_in_order_;
  QCheckBox* Check_contours_;
  QCheckBox* Check_points_;
  QCheckBox* Check_section_hide_masked_;
  QPushButton* Command_save_section_;
  QPushButton* Command_done_;
  QStatusBar* Status_section_;
};
